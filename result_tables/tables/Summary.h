#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "result_tables/tables/ResultTable.h"

namespace Kestrel::ResultTables {

/// How much of its limit a value takes: |value| / |limit|, infinite where the limit is 0 and the value is
/// not. None without a limit, without a number, and of an item that is not valid; and where value and limit
/// are both infinite, or the limit is a NaN.
[[nodiscard]] std::optional<double> utilisationOf(TableValue const& value,
                                                  std::optional<ColumnLimit> const& limit, bool isValid);

/// Reports list so many of the values that take the most of their limits.
inline constexpr std::size_t s_listedUtilisations = 10;

/// A value of one of some tables.
struct UtilisedValue {
  double utilisation;
  std::size_t table;  ///< index of its table
  ResultTable::Place place;
  TableValue value;
};

/// The values that take the most of their limits.
class HighestUtilisations {
 public:
  /// Keeps as many as `most`; more than 0.
  explicit HighestUtilisations(std::size_t most) : m_most(most) {}

  /// Takes logarithmic time in the number of kept values.
  void add(UtilisedValue const& value);

  /// From the highest down; equal ones in the order in which they were added. Empties it.
  [[nodiscard]] std::vector<UtilisedValue> take();

 private:
  struct Added {
    UtilisedValue value;
    std::size_t order;
  };
  static bool isHigher(Added const& one, Added const& other);

  std::size_t m_most;
  std::size_t m_count = 0;
  std::vector<Added> m_heap;  ///< the lowest first
};

/// What a person wants to know first of some tables; `check` counts the same.
struct TableCounts {
  std::size_t exceeded = 0;
  std::size_t notANumber = 0;  ///< limited values whose series holds a NaN
  std::size_t invalid = 0;     ///< elements of families that say what is wrong with them
  std::size_t compared = 0;    ///< values with a limit and a number, of valid items
  std::size_t withoutData = 0;

  void add(TableCounts const& other);
  /// Adds a value of a column that has a limit.
  void addLimited(TableValue const& value, bool isValid);
};

struct Summary {
  std::vector<TableCounts> ofTables;   ///< one for each table
  std::vector<UtilisedValue> highest;  ///< as many as were wanted, at the most

  [[nodiscard]] TableCounts total() const;
};

/// Passes once over the series of the columns that have a limit.
[[nodiscard]] Summary genSummary(std::vector<ResultTable> const& tables, std::size_t highest);

}  // namespace Kestrel::ResultTables

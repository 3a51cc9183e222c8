#pragma once

#include <any>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "result_tables/tables/ResultTable.h"

namespace Kestrel::ResultTables {

/// A value that has a limit.
struct CheckedValue {
  ResultTable::Place place;
  double value;
  bool isValid;     ///< whether its item is
  bool isExceeded;  ///< only where the item is valid
  std::optional<std::size_t> step;
  std::optional<double> time;
  std::size_t count;     ///< numbers that it was chosen from
  std::size_t nanCount;  ///< values that are no numbers

  /// Whether it says something about the limit.
  [[nodiscard]] bool isCompared() const { return isValid && count > 0; }
  [[nodiscard]] bool isWithoutData() const { return isValid && count == 0 && nanCount == 0; }
};

/// A row whose values cannot be trusted: indices in the table's first section.
struct InvalidItem {
  std::size_t subGroup;
  std::size_t item;
};

enum class FindingKind { exceeded, notANumber, invalid };

/// The name of a kind in reports, the same in every language.
[[nodiscard]] std::string_view nameOf(FindingKind kind);

/// Where something stands in a table, by names.
struct NamedPlace {
  std::string_view group;     ///< empty for an invalid item
  std::string_view subGroup;  ///< empty where the item is in none
  std::string_view item;
  TableColumn const* column = nullptr;  ///< null for an invalid item
};

/// Something in a table that a person should look at.
struct Finding {
  FindingKind kind;
  NamedPlace place;
  CheckedValue const* value = nullptr;  ///< null for an invalid item
};

/// What is found in one table. Does not refer to the unit.
struct TableFindings {
  std::string unit;  ///< the unit's name
  std::string unitId;
  std::string_view family;  ///< the family's untranslated name
  std::shared_ptr<MaxValueGroupContainer const> container;
  std::vector<std::vector<TableColumn>> columns;  ///< per section
  /// In the order of the first section's rows, where the family says what invalid means.
  std::vector<InvalidItem> invalidItems;
  std::vector<CheckedValue> values;  ///< section by section, row by row

  [[nodiscard]] NamedPlace placeOf(CheckedValue const& value) const;

  /// Calls `visit` with the invalid items, then with the values: those beyond their limits, and those of
  /// series that hold a NaN; a value that is both comes twice, first as exceeded.
  void forEachFinding(std::function<void(Finding const&)> const& visit) const;

  /// What is found in one value: nothing, or one or two findings.
  void forEachFindingOf(CheckedValue const& value, std::function<void(Finding const&)> const& visit) const;
  [[nodiscard]] Finding findingOf(InvalidItem const& invalid) const;

  [[nodiscard]] bool hasFindings() const;
  [[nodiscard]] std::size_t countCompared() const;
  [[nodiscard]] std::size_t countWithoutData() const;
};

/// What is found in one file, or why the file could not be checked.
struct FileFindings {
  std::string file;  ///< as it was given
  std::vector<TableFindings> tables;
  std::optional<std::string> error;
  /// What a form of output keeps of the tables besides, as it knows best.
  std::any kept = {};

  [[nodiscard]] bool hasFindings() const;
  [[nodiscard]] std::size_t countCompared() const;
  [[nodiscard]] std::size_t countWithoutData() const;
};

/// Calls `visit` with the places of the values whose columns have a limit, section by section, row by row,
/// and whether their items are valid.
void forEachLimitedValue(ResultTable const& table,
                         std::function<void(ResultTable::Place const& place, bool isValid)> const& visit);

/// The rows of a table whose values cannot be trusted, in the order of the first section's rows. None where
/// the family does not say what invalid means.
[[nodiscard]] std::vector<InvalidItem> findInvalidItems(ResultTable const& table);

/// Passes once over the series of the columns that have a limit.
[[nodiscard]] TableFindings genFindings(ResultTable const& table);

}  // namespace Kestrel::ResultTables

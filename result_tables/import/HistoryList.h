#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "result_tables/import/Histories.h"

namespace Kestrel::ResultTables {

/// What there is to know of a history before a map is written for it.
struct ListedHistory {
  using Range = std::pair<double, double>;  ///< the smallest and the largest

  std::string name;    ///< by which a map finds it
  std::string kind;    ///< what the input calls its values: "forces", "total force"; "column" of a wide table
  std::string entity;  ///< node set, measured point; may be empty
  std::string component;       ///< of the kind
  std::string unit;            ///< as the input has it; empty: it does not say
  std::size_t entities = 1;    ///< how many nodes or the like have a value at each time
  std::size_t count = 0;       ///< values that are not NaN, of all entities
  std::size_t nans = 0;        ///< and those that are
  std::optional<Range> range;  ///< of the values that are not NaN; none without such
  std::size_t times = 0;
  std::optional<Range> timeRange;
  std::string timeUnit;
};

/// All histories in the order of the input; linear in the number of values.
[[nodiscard]] std::vector<ListedHistory> listHistories(Histories const& histories);

/// One line for each, in columns, in the language of the environment.
[[nodiscard]] std::string renderHistoriesAsText(std::vector<ListedHistory> const& histories);

/// { "histories": [ … ] } with the members of `ListedHistory` (docs/importing.md).
[[nodiscard]] std::string renderHistoriesAsJson(std::vector<ListedHistory> const& histories);

}  // namespace Kestrel::ResultTables

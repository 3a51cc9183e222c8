#pragma once

#include <cstddef>
#include <string>

#include "Business_TableProperties/MaxValueGroupContainer.h"
#include "result_tables/study/Database.h"
#include "result_tables/tables/Trend.h"

namespace Kestrel::ResultTables {

/// What value is to be seen through the runs.
struct TrendSelection {
  std::string unit;  ///< id or name
  MaxValueGroupContainer::DataType family{};
  std::string item;
  std::string key;
  std::string by;  ///< name of a label whose number orders the runs; empty: in the order of adding
};

struct TrendAnswer {
  /// One for each place in the tables that has such a value, in the order of the first run that has it. Units
  /// of the runs are the same by id; what is left over by name, where only one unit on each side has it.
  Trends trends;
  std::size_t leftOut = 0;  ///< runs without a number for the label
};

/// A unit, an element or a key that no run has is an `Error` that lists those that there are.
///
/// Cost: finds the elements by their name and looks each value up, which takes the same time however many
/// others there are.
[[nodiscard]] TrendAnswer askTrend(Database& database, TrendSelection const& selection);

}  // namespace Kestrel::ResultTables

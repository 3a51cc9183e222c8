#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "result_tables/tables/ResultTable.h"
#include "result_tables/tables/Statistics.h"

namespace Kestrel::ResultTables {

/// A value of one of the runs of a study.
struct TrendPoint {
  std::string run;
  std::string file;   ///< of the run, as it was given
  std::string label;  ///< by which the runs are ordered; empty where they are in the order of adding
  double at;          ///< the label's number, or the number of the run in the order of adding, from 1
  TableValue value;
  bool isValid;
  std::optional<ColumnLimit> limit;

  /// Whether the value is a number that can be trusted.
  [[nodiscard]] bool isShown() const { return isValid && value.origin.count > 0; }
};

/// One value of a table through the runs of a study. Refers to nothing.
struct Trend {
  std::string unit;  ///< the unit's name in the first run
  std::string unitId;
  std::string_view family;  ///< the family's untranslated name
  std::string title;        ///< its translated one
  std::string group;        ///< the section's name
  std::string subGroup;     ///< empty where the item is in none
  std::string item;
  std::size_t occurrence = 0;      ///< how often that item has come before in the sub-group
  TableColumn column;              ///< without limit, which each run has for itself
  std::string by;                  ///< the name of the label; empty: by the order of adding
  std::vector<TrendPoint> points;  ///< of the runs that have the value, by place

  [[nodiscard]] ValueStatistics statistics() const;
};

using Trends = std::vector<Trend>;

}  // namespace Kestrel::ResultTables

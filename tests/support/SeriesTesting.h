#pragma once

#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

#include "result_tables/tables/Series.h"

namespace Kestrel::ResultTables {

inline constexpr double s_infinity = std::numeric_limits<double>::infinity();
inline constexpr double s_nan = std::numeric_limits<double>::quiet_NaN();

/// The series of a bolt's normal force with these numbers; the value of the table is the first of largest
/// magnitude.
inline TableSeries seriesOf(std::vector<double> values, std::vector<double> times = {}) {
  TableSeries series;
  series.file = "r.json";
  series.unit = "OP20";
  series.unitId = "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01";
  series.family = "Bolts";
  series.title = "Bolts";
  series.group = "Forces";
  series.item = series.shownItem = "B1";
  series.column.key = "ClampNormalForce";
  series.column.tableDisplayName = "Max Normal Force";
  series.column.unit = "N";
  for (std::size_t i = 0; i < values.size(); ++i) {
    series.series.steps.push_back(i);
    if (!(std::abs(values[i]) > std::abs(series.value))) continue;
    series.value = values[i];
    series.extreme = i;
  }
  series.series.values = std::move(values);
  series.series.companions = std::move(times);
  return series;
}

/// The same with a limit, which the value of the table may exceed.
inline TableSeries withLimit(TableSeries series, double limit) {
  series.column.limit = ColumnLimit{limit, "N"};
  series.isExceeded = std::abs(series.value) > limit;
  return series;
}

/// The series of a line join with a minimum and a maximum for steps 2, 3 and so on.
inline TableSeries seriesOfRanges(std::vector<std::pair<double, double>> const& ranges) {
  auto series = seriesOf({});
  series.family = "LineWelds";
  series.title = "Line Joins";
  series.item = series.shownItem = "Seam";
  for (auto const& [minimum, maximum] : ranges) {
    double const value = std::abs(minimum) > std::abs(maximum) ? minimum : maximum;
    series.series.steps.push_back(series.series.steps.size() + 2);
    series.series.values.push_back(value);
    series.series.minima.push_back(minimum);
    series.series.maxima.push_back(maximum);
    if (!(std::abs(value) > std::abs(series.value))) continue;
    series.value = value;
    series.extreme = series.series.values.size() - 1;
  }
  return series;
}

}  // namespace Kestrel::ResultTables

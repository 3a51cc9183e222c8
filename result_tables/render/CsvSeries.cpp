#include "result_tables/render/CsvSeries.h"

#include <cmath>

#include "result_tables/base/Text.h"

namespace Kestrel::ResultTables {

namespace {

void appendSeries(CsvWriter& csv, TableSeries const& series) {
  auto const file = toValidUtf8(series.file);
  auto const unit = toValidUtf8(series.unit);
  auto const group = toValidUtf8(series.group);
  auto const subGroup = toValidUtf8(series.subGroup);
  auto const item = toValidUtf8(series.item);
  auto const key = toValidUtf8(series.column.key);
  auto const column = toValidUtf8(series.column.tableDisplayName);
  auto const& [name, steps, values, times, minima, maxima] = series.series;
  for (std::size_t i = 0; i < values.size(); ++i) {
    bool const hasTime = !times.empty() && !std::isnan(times[i]);
    csv.record({file, unit, series.unitId, series.family, group, subGroup, item, key, column,
                std::to_string(steps[i]), hasTime ? csv.number(times[i]) : "", csv.number(values[i]),
                series.hasRanges() ? csv.number(minima[i]) : "",
                series.hasRanges() ? csv.number(maxima[i]) : ""});
  }
}

}  // namespace

std::string renderCsv(std::vector<TableSeries> const& list, CsvDialect const& dialect) {
  CsvWriter csv(dialect);
  csv.record({"file", "unit", "unitId", "family", "group", "subGroup", "item", "key", "column", "step",
              "time", "value", "minimum", "maximum"});
  for (auto const& series : list) appendSeries(csv, series);
  return csv.take();
}

}  // namespace Kestrel::ResultTables

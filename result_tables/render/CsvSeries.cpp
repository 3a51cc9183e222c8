#include "result_tables/render/CsvSeries.h"

#include <cmath>
#include <optional>

namespace Kestrel::ResultTables {

namespace {

void appendSeries(CsvWriter& csv, TableSeries const& series) {
  auto const same =
      csv.spell({series.file, series.unit, series.unitId, series.family, series.group, series.subGroup,
                 series.item, series.column.key, series.column.tableDisplayName});
  auto const& [name, steps, values, times, minima, maxima] = series.series;
  for (std::size_t i = 0; i < values.size(); ++i) {
    bool const hasTime = !times.empty() && !std::isnan(times[i]);
    csv.spelt(same);
    csv.integer(steps[i]);
    csv.number(hasTime ? std::optional(times[i]) : std::nullopt);
    csv.number(values[i]);
    csv.number(series.hasRanges() ? std::optional(minima[i]) : std::nullopt);
    csv.number(series.hasRanges() ? std::optional(maxima[i]) : std::nullopt);
    csv.endRecord();
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

#include "result_tables/render/CsvTrends.h"

namespace Kestrel::ResultTables {

namespace {

void appendPoint(CsvWriter& csv, Trend const& trend, TrendPoint const& point) {
  auto const& [value, origin, isExceeded] = point.value;
  csv.text(point.run);
  csv.text(point.label);
  csv.spelt(csv.spell(
      {point.file, trend.unit, trend.unitId, trend.family, trend.group, trend.subGroup, trend.item}));
  csv.integer(trend.occurrence);
  csv.flag(point.isValid);
  csv.spelt(csv.spell({trend.column.key, trend.column.tableDisplayName}));
  csv.number(value);
  csv.text(trend.column.unit);
  csv.number(point.limit ? std::optional(point.limit->value) : std::nullopt);
  csv.flag(isExceeded);
  csv.integer(origin.step);
  csv.number(origin.companion);
  csv.integer(origin.count);
  csv.integer(origin.nanCount);
  csv.endRecord();
}

}  // namespace

std::string renderCsv(Trends const& trends, CsvDialect const& dialect) {
  CsvWriter csv(dialect);
  csv.record({"run",       "label", "file",       "unit",  "unitId", "family", "group",
              "subGroup",  "item",  "occurrence", "valid", "key",    "column", "value",
              "valueUnit", "limit", "exceeded",   "step",  "time",   "count",  "nans"});
  for (auto const& trend : trends) {
    for (auto const& point : trend.points) appendPoint(csv, trend, point);
  }
  return csv.take();
}

}  // namespace Kestrel::ResultTables

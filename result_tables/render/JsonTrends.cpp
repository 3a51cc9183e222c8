#include "result_tables/render/JsonTrends.h"

#include "result_tables/json/JsonWriter.h"

namespace Kestrel::ResultTables {

namespace {

void writeOptionalNumber(JsonWriter& json, std::string_view key, std::optional<double> number) {
  number ? json.number(key, *number) : json.null(key);
}

void writePoint(JsonWriter& json, Trend const& trend, TrendPoint const& point) {
  auto const& [value, origin, isExceeded] = point.value;
  json.beginObject();
  json.text("run", point.run);
  json.text("file", point.file);
  trend.by.empty() ? json.null("label") : json.text("label", point.label);
  json.number("value", value);
  writeOptionalNumber(json, "limit", point.limit ? std::optional(point.limit->value) : std::nullopt);
  json.flag("valid", point.isValid);
  json.flag("exceeded", isExceeded);
  origin.step ? json.integer("step", *origin.step) : json.null("step");
  writeOptionalNumber(json, "time", origin.companion);
  json.integer("count", origin.count);
  json.integer("nans", origin.nanCount);
  json.endObject();
}

void writeStatistics(JsonWriter& json, ValueStatistics const& statistics) {
  json.beginObject("statistics");
  json.integer("count", statistics.count());
  writeOptionalNumber(json, "minimum", statistics.minimum());
  writeOptionalNumber(json, "maximum", statistics.maximum());
  writeOptionalNumber(json, "mean", statistics.mean());
  writeOptionalNumber(json, "standardDeviation", statistics.standardDeviation());
  writeOptionalNumber(json, "shareBeyondLimit", statistics.shareBeyondLimit());
  json.endObject();
}

void writeTrend(JsonWriter& json, Trend const& trend) {
  json.beginObject();
  json.text("unit", trend.unit);
  json.text("unitId", trend.unitId);
  json.text("family", trend.family);
  json.text("group", trend.group);
  json.text("subGroup", trend.subGroup);
  json.text("item", trend.item);
  json.integer("occurrence", trend.occurrence);
  json.text("key", trend.column.key);
  json.text("column", trend.column.tableDisplayName);
  json.text("unitOfValue", trend.column.unit);
  trend.by.empty() ? json.null("by") : json.text("by", trend.by);
  json.beginArray("runs");
  for (auto const& point : trend.points) writePoint(json, trend, point);
  json.endArray();
  writeStatistics(json, trend.statistics());
  json.endObject();
}

}  // namespace

std::string renderTrendsAsJson(Trends const& trends) {
  JsonWriter json;
  json.beginObject();
  json.beginArray("trends");
  for (auto const& trend : trends) writeTrend(json, trend);
  json.endArray();
  json.endObject();
  return json.take();
}

}  // namespace Kestrel::ResultTables

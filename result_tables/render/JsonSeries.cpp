#include "result_tables/render/JsonSeries.h"

#include "result_tables/json/JsonWriter.h"

namespace Kestrel::ResultTables {

namespace {

void writeNumbers(JsonWriter& json, std::string_view key, std::vector<double> const& numbers) {
  json.beginInlineArray(key);
  for (double const number : numbers) json.number(number);
  json.endInlineArray();
}

void writeRanges(JsonWriter& json, MaxValueSeries const& series) {
  json.beginInlineArray("values");
  for (std::size_t i = 0; i < series.minima.size(); ++i) {
    json.beginInlineArray();
    json.number(series.minima[i]);
    json.number(series.maxima[i]);
    json.endInlineArray();
  }
  json.endInlineArray();
}

void writeLists(JsonWriter& json, TableSeries const& series) {
  json.beginInlineArray("steps");
  for (auto const step : series.series.steps) json.integer(step);
  json.endInlineArray();
  if (series.series.companions.empty())
    json.null("times");
  else
    writeNumbers(json, "times", series.series.companions);
  if (series.hasRanges())
    writeRanges(json, series.series);
  else
    writeNumbers(json, "values", series.series.values);
}

void writeSeries(JsonWriter& json, TableSeries const& series) {
  auto const& column = series.column;
  json.beginObject();
  json.text("file", series.file);
  json.text("unit", series.unit);
  json.text("unitId", series.unitId);
  json.text("family", series.family);
  json.text("item", series.item);
  json.text("key", column.key);
  json.text("column", column.tableDisplayName);
  json.text("unitOfValue", column.unit);
  column.limit ? json.number("limit", column.limit->value) : json.null("limit");
  auto const step = series.step();
  step ? json.integer("extremeStep", *step) : json.null("extremeStep");
  writeLists(json, series);
  json.endObject();
}

}  // namespace

std::string renderSeriesAsJson(std::vector<TableSeries> const& list) {
  JsonWriter json;
  json.beginObject();
  json.beginArray("series");
  for (auto const& series : list) writeSeries(json, series);
  json.endArray();
  json.endObject();
  return json.take();
}

}  // namespace Kestrel::ResultTables

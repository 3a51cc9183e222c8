#include "result_tables/render/JsonFindings.h"

#include "result_tables/json/JsonWriter.h"

namespace Kestrel::ResultTables {

namespace {

void writeValue(JsonWriter& json, Finding const& finding) {
  auto const& value = *finding.value;
  json.text("key", finding.place.column->key);
  json.text("column", finding.place.column->tableDisplayName);
  json.number("value", value.value);
  json.number("limit", finding.place.column->limit->value);
  value.step ? json.integer("step", *value.step) : json.null("step");
  value.time ? json.number("time", *value.time) : json.null("time");
}

void writeFinding(JsonWriter& json, std::string const& file, TableFindings const& table,
                  Finding const& finding) {
  json.beginObject();
  json.text("file", file);
  json.text("unit", table.unit);
  json.text("unitId", table.unitId);
  json.text("family", table.family);
  json.text("group", finding.place.group);
  json.text("subGroup", finding.place.subGroup);
  json.text("item", finding.place.item);
  json.text("kind", nameOf(finding.kind));
  if (finding.value != nullptr)
    writeValue(json, finding);
  else
    for (auto const* const key : {"key", "column", "value", "limit", "step", "time"}) json.null(key);
  json.endObject();
}

void writeError(JsonWriter& json, FileFindings const& file) {
  json.beginObject();
  json.text("file", file.file);
  json.text("message", *file.error);
  json.endObject();
}

}  // namespace

std::string renderFindingsAsJson(std::vector<FileFindings> const& files) {
  JsonWriter json;
  std::size_t compared = 0;
  std::size_t withoutData = 0;
  json.beginObject();
  json.beginArray("findings");
  for (auto const& file : files) {
    for (auto const& table : file.tables)
      table.forEachFinding([&](Finding const& finding) { writeFinding(json, file.file, table, finding); });
    compared += file.countCompared();
    withoutData += file.countWithoutData();
  }
  json.endArray();
  json.beginArray("errors");
  for (auto const& file : files) {
    if (file.error) writeError(json, file);
  }
  json.endArray();
  json.integer("compared", compared);
  json.integer("withoutData", withoutData);
  json.endObject();
  return json.take();
}

}  // namespace Kestrel::ResultTables

#include "result_tables/render/JsonFindings.h"

#include "result_tables/json/JsonWriter.h"

namespace Kestrel::ResultTables {

namespace {

void writeFinding(JsonWriter& json, std::string const& file, TableFindings const& table,
                  Finding const& finding) {
  json.beginObject();
  json.text("file", file);
  json.text("unit", table.unit);
  json.text("family", table.family);
  json.text("group", finding.group);
  json.text("subGroup", finding.subGroup);
  json.text("item", finding.item);
  json.text("kind", finding.exceeded ? "exceeded" : "invalid");
  if (finding.exceeded) {
    json.text("column", finding.exceeded->column);
    json.number("value", finding.exceeded->value);
    json.number("limit", finding.exceeded->limit.value);
  } else {
    for (auto const* const key : {"column", "value", "limit"}) json.null(key);
  }
  json.endObject();
}

}  // namespace

std::string renderFindingsAsJson(std::vector<FileFindings> const& files) {
  JsonWriter json;
  json.beginObject();
  json.beginArray("findings");
  for (auto const& file : files) {
    for (auto const& table : file.tables) {
      for (auto const& finding : table.findings) writeFinding(json, file.file, table, finding);
    }
  }
  json.endArray();
  json.endObject();
  return json.take();
}

}  // namespace Kestrel::ResultTables

#include "result_tables/render/JsonDifferences.h"

#include "result_tables/json/JsonWriter.h"

namespace Kestrel::ResultTables {

namespace {

void writeNumber(JsonWriter& json, std::string_view key, std::optional<double> number) {
  number ? json.number(key, *number) : json.null(key);
}

void writeFlag(JsonWriter& json, std::string_view key, std::optional<ComparedValue> const& value,
               bool ComparedValue::*flag) {
  value ? json.flag(key, *value.*flag) : json.null(key);
}

void writeDifference(JsonWriter& json, TableDifferences const& table, RowDifferences const& row,
                     ValueDifference const& value) {
  json.beginObject();
  json.text("unit", table.unit);
  json.text("unitId", table.unitId);
  json.text("family", table.family);
  json.text("group", row.group);
  json.text("subGroup", row.subGroup);
  json.text("item", row.item);
  json.text("key", value.column->key);
  json.text("column", value.column->tableDisplayName);
  json.text("kind", nameOf(value.kind));
  value.before ? json.number("before", value.before->value) : json.null("before");
  value.after ? json.number("after", value.after->value) : json.null("after");
  writeNumber(json, "change", value.change());
  writeNumber(json, "relative", value.relativeChange());
  writeFlag(json, "validBefore", value.before, &ComparedValue::isValid);
  writeFlag(json, "validAfter", value.after, &ComparedValue::isValid);
  writeFlag(json, "exceededBefore", value.before, &ComparedValue::isExceeded);
  writeFlag(json, "exceededAfter", value.after, &ComparedValue::isExceeded);
  json.endObject();
}

}  // namespace

std::string renderDifferencesAsJson(ResultDifferences const& differences) {
  JsonWriter json;
  json.beginObject();
  json.beginArray("differences");
  for (auto const& table : differences.tables) {
    for (auto const& row : table.rows) {
      for (auto const& value : row.values) writeDifference(json, table, row, value);
    }
  }
  json.endArray();
  json.integer("compared", differences.countCompared());
  json.endObject();
  return json.take();
}

}  // namespace Kestrel::ResultTables

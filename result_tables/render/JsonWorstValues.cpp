#include "result_tables/render/JsonWorstValues.h"

#include "result_tables/json/JsonWriter.h"

namespace Kestrel::ResultTables {

namespace {

void writeWorst(JsonWriter& json, WorstValue const& worst) {
  auto const& origin = worst.value.origin;
  json.beginObject();
  json.text("run", worst.run);
  json.text("file", worst.file);
  json.text("unit", worst.unit);
  json.text("unitId", worst.unitId);
  json.text("family", worst.family);
  json.text("subGroup", worst.subGroup);
  json.text("item", worst.item);
  json.text("key", worst.column.key);
  json.number("value", worst.value.value);
  json.number("limit", worst.column.limit->value);
  json.number("utilisation", worst.utilisation);
  origin.step ? json.integer("step", *origin.step) : json.null("step");
  origin.companion ? json.number("time", *origin.companion) : json.null("time");
  json.endObject();
}

}  // namespace

std::string renderWorstValuesAsJson(WorstValues const& values) {
  JsonWriter json;
  json.beginObject();
  json.beginArray("worst");
  for (auto const& worst : values) writeWorst(json, worst);
  json.endArray();
  json.endObject();
  return json.take();
}

}  // namespace Kestrel::ResultTables

#include "result_tables/render/JsonLimits.h"

#include "result_tables/json/JsonWriter.h"
#include "result_tables/limits/LimitType.h"

namespace Kestrel::ResultTables {

std::string renderLimitsAsJson(std::vector<ListedLimit> const& limits) {
  JsonWriter json;
  json.beginObject();
  json.beginArray("limits");
  for (auto const& listed : limits) {
    json.beginObject();
    json.beginObject("unit");
    json.text("id", listed.unit->getID().toString());
    json.text("name", listed.unit->getSimulationUnitName());
    json.endObject();
    json.integer("type", static_cast<std::uint32_t>(listed.limit->getType()));
    json.text("typeName", limitTypeName(listed.limit->getType()));
    json.number("limit", listed.limit->getLimit());
    json.text("unitString", listed.limit->getUnitString());
    json.endObject();
  }
  json.endArray();
  json.endObject();
  return json.take();
}

}  // namespace Kestrel::ResultTables

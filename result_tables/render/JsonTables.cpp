#include "result_tables/render/JsonTables.h"

#include "result_tables/base/Family.h"
#include "result_tables/json/JsonWriter.h"

namespace Kestrel::ResultTables {

namespace {

class JsonTables {
 public:
  std::string render(std::vector<ResultTable> const& tables) {
    m_json.beginObject();
    m_json.beginArray("tables");
    for (auto const& table : tables) writeTable(table);
    m_json.endArray();
    m_json.endObject();
    return m_json.take();
  }

 private:
  void writeTable(ResultTable const& table);
  void writeValidity(MaxValueGroupContainer const& container);
  void writeGroup(ResultTable const& table, std::size_t index);
  void writeColumn(TableColumn const& column);
  void writeItem(ResultTable const& table, ResultTable::Place const& place);

  template <typename Elements, typename Write>
  void inlineArray(std::string_view key, Elements const& elements, Write write) {
    m_json.beginInlineArray(key);
    for (auto const& element : elements) write(element);
    m_json.endInlineArray();
  }

  JsonWriter m_json;
};

void JsonTables::writeTable(ResultTable const& table) {
  auto const& container = table.container();
  m_json.beginObject();
  m_json.text("file", table.file());
  m_json.beginObject("unit");
  m_json.text("id", container.simulationUnitId.toString());
  m_json.text("name", table.unit().getSimulationUnitName());
  m_json.endObject();
  m_json.integer("dataType", static_cast<std::uint32_t>(container.dataType));
  m_json.text("family", familyName(container.dataType));
  m_json.text("title", container.title);
  m_json.text("unitTitle", container.unitTitle);
  m_json.flag("isDefaultFamily", container.isDefaultFamily);
  inlineArray("elementNames", container.elementNames, [&](auto const& name) { m_json.string(name); });
  writeValidity(container);
  m_json.text("invalidValuesText", container.invalidValuesText);
  m_json.text("invalidValuesNameAppendix", container.invalidValuesNameAppendix);
  m_json.beginArray("groups");
  for (std::size_t i = 0; i < container.groups.size(); ++i) writeGroup(table, i);
  m_json.endArray();
  m_json.endObject();
}

void JsonTables::writeValidity(MaxValueGroupContainer const& container) {
  m_json.beginObject("valuesAreValid");
  for (auto const& [name, isValid] : container.valuesAreValid) m_json.flag(name, isValid);
  m_json.endObject();
}

void JsonTables::writeGroup(ResultTable const& table, std::size_t index) {
  auto const& group = table.container().groups[index];
  m_json.beginObject();
  m_json.text("name", group.name);
  m_json.flag("isTeachingGroup", group.isTeachingGroup);
  m_json.flag("isForceGroup", group.isForceGroup);
  inlineArray("limitTypes", group.limitTypes,
              [&](auto type) { m_json.integer(static_cast<std::uint32_t>(type)); });
  inlineArray("valueNames", group.valueNames, [&](auto const& name) { m_json.string(name); });
  m_json.beginArray("columns");
  for (auto const& column : table.columns(index)) writeColumn(column);
  m_json.endArray();
  m_json.beginArray("subGroups");
  for (std::size_t i = 0; i < group.subGroups.size(); ++i) {
    m_json.beginObject();
    m_json.text("name", group.subGroups[i].name);
    m_json.beginArray("items");
    for (std::size_t k = 0; k < group.subGroups[i].items.size(); ++k) writeItem(table, {index, i, k, 0});
    m_json.endArray();
    m_json.endObject();
  }
  m_json.endArray();
  m_json.endObject();
}

void JsonTables::writeColumn(TableColumn const& column) {
  m_json.beginObject();
  m_json.text("key", column.key);
  m_json.text("displayName", column.displayName);
  m_json.text("shortDisplayName", column.shortDisplayName);
  m_json.text("tableDisplayName", column.tableDisplayName);
  m_json.text("shortTableDisplayName", column.shortTableDisplayName);
  m_json.text("unit", column.unit);
  m_json.integer("limitType", static_cast<std::uint32_t>(column.limitType));
  if (column.limit) {
    m_json.beginObject("limit");
    m_json.number("value", column.limit->value);
    m_json.text("unit", column.limit->unit);
    m_json.endObject();
  } else {
    m_json.null("limit");
  }
  m_json.endObject();
}

void JsonTables::writeItem(ResultTable const& table, ResultTable::Place const& place) {
  auto const& item = table.container().groups[place.group].subGroups[place.subGroup].items[place.item];
  auto const row = table.genRow(place.group, place.subGroup, place.item);
  m_json.beginObject();
  m_json.text("name", item.name);
  m_json.text("displayName", table.displayName(item));
  m_json.flag("valid", table.isValid(item));
  inlineArray("maxValues", item.maxValues, [&](double value) { m_json.number(value); });
  inlineArray("exceeded", row, [&](TableValue const& value) { m_json.boolean(value.isExceeded); });
  inlineArray("steps", row, [&](TableValue const& value) {
    value.origin.step ? m_json.integer(*value.origin.step) : m_json.null();
  });
  inlineArray("times", row, [&](TableValue const& value) {
    value.origin.companion ? m_json.number(*value.origin.companion) : m_json.null();
  });
  inlineArray("counts", row, [&](TableValue const& value) { m_json.integer(value.origin.count); });
  inlineArray("nans", row, [&](TableValue const& value) { m_json.integer(value.origin.nanCount); });
  m_json.endObject();
}

}  // namespace

std::string renderJson(std::vector<ResultTable> const& tables) { return JsonTables().render(tables); }

}  // namespace Kestrel::ResultTables

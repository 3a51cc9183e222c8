#include "result_tables/render/JsonTables.h"

#include "result_tables/json/JsonWriter.h"
#include "result_tables/tables/Family.h"

namespace Kestrel::ResultTables {

namespace {

class JsonTables {
 public:
  std::string render(std::vector<ResultTable> const& tables) {
    m_json.beginObject();
    m_json.key("tables");
    m_json.beginArray();
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
  void writeItem(ResultTable const& table, std::size_t group, MaxValueItem const& item);

  void text(std::string_view key, std::string_view value) {
    m_json.key(key);
    m_json.string(value);
  }
  void flag(std::string_view key, bool value) {
    m_json.key(key);
    m_json.boolean(value);
  }
  template <typename Elements, typename Write>
  void inlineArray(std::string_view key, Elements const& elements, Write write) {
    m_json.key(key);
    m_json.beginInlineArray();
    for (auto const& element : elements) write(element);
    m_json.endInlineArray();
  }

  JsonWriter m_json;
};

void JsonTables::writeTable(ResultTable const& table) {
  auto const& container = table.container();
  m_json.beginObject();
  m_json.key("unit");
  m_json.beginObject();
  text("id", container.simulationUnitId.toString());
  text("name", table.unit().getSimulationUnitName());
  m_json.endObject();
  m_json.key("dataType");
  m_json.integer(static_cast<std::uint32_t>(container.dataType));
  text("family", familyName(container.dataType));
  text("title", container.title);
  text("unitTitle", container.unitTitle);
  flag("isDefaultFamily", container.isDefaultFamily);
  inlineArray("elementNames", container.elementNames, [&](auto const& name) { m_json.string(name); });
  writeValidity(container);
  text("invalidValuesText", container.invalidValuesText);
  text("invalidValuesNameAppendix", container.invalidValuesNameAppendix);
  m_json.key("groups");
  m_json.beginArray();
  for (std::size_t i = 0; i < container.groups.size(); ++i) writeGroup(table, i);
  m_json.endArray();
  m_json.endObject();
}

void JsonTables::writeValidity(MaxValueGroupContainer const& container) {
  m_json.key("valuesAreValid");
  m_json.beginObject();
  for (auto const& [name, isValid] : container.valuesAreValid) flag(name, isValid);
  m_json.endObject();
}

void JsonTables::writeGroup(ResultTable const& table, std::size_t index) {
  auto const& group = table.container().groups[index];
  m_json.beginObject();
  text("name", group.name);
  flag("isTeachingGroup", group.isTeachingGroup);
  flag("isForceGroup", group.isForceGroup);
  inlineArray("limitTypes", group.limitTypes,
              [&](auto type) { m_json.integer(static_cast<std::uint32_t>(type)); });
  inlineArray("valueNames", group.valueNames, [&](auto const& name) { m_json.string(name); });
  m_json.key("columns");
  m_json.beginArray();
  for (auto const& column : table.columns(index)) writeColumn(column);
  m_json.endArray();
  m_json.key("subGroups");
  m_json.beginArray();
  for (auto const& subGroup : group.subGroups) {
    m_json.beginObject();
    text("name", subGroup.name);
    m_json.key("items");
    m_json.beginArray();
    for (auto const& item : subGroup.items) writeItem(table, index, item);
    m_json.endArray();
    m_json.endObject();
  }
  m_json.endArray();
  m_json.endObject();
}

void JsonTables::writeColumn(TableColumn const& column) {
  m_json.beginObject();
  text("key", column.key);
  text("displayName", column.displayName);
  text("shortDisplayName", column.shortDisplayName);
  text("tableDisplayName", column.tableDisplayName);
  text("shortTableDisplayName", column.shortTableDisplayName);
  text("unit", column.unit);
  m_json.key("limitType");
  m_json.integer(static_cast<std::uint32_t>(column.limitType));
  m_json.key("limit");
  if (column.limit) {
    m_json.beginObject();
    m_json.key("value");
    m_json.number(column.limit->value);
    text("unit", column.limit->unit);
    m_json.endObject();
  } else {
    m_json.null();
  }
  m_json.endObject();
}

void JsonTables::writeItem(ResultTable const& table, std::size_t group, MaxValueItem const& item) {
  m_json.beginObject();
  text("name", item.name);
  text("displayName", table.displayName(item));
  flag("valid", table.isValid(item));
  inlineArray("maxValues", item.maxValues, [&](double value) { m_json.number(value); });
  m_json.key("exceeded");
  m_json.beginInlineArray();
  for (std::size_t i = 0; i < item.maxValues.size(); ++i) m_json.boolean(table.isExceeded(group, i, item));
  m_json.endInlineArray();
  m_json.endObject();
}

}  // namespace

std::string renderJson(std::vector<ResultTable> const& tables) { return JsonTables().render(tables); }

}  // namespace Kestrel::ResultTables

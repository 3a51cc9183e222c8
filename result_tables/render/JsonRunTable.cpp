#include "result_tables/render/JsonRunTable.h"

#include <optional>
#include <vector>

#include "result_tables/base/Family.h"
#include "result_tables/render/RunTableTexts.h"

namespace Kestrel::ResultTables {

namespace {

void writeJsonNumber(JsonWriter& json, std::string_view key, std::optional<double> value) {
  if (value)
    json.number(key, *value);
  else
    json.null(key);
}

void appendRunQuantity(JsonWriter& json, RunQuantity const& quantity) {
  json.text("key", quantity.key);
  json.text("column", quantity.name());
}

void appendRunColumn(JsonWriter& json, RunTable const& table, RunTableColumn const& column,
                     std::string const& name) {
  auto const& section = table.section(column);
  auto const& element = table.element(column);
  auto const& quantity = table.quantity(column);
  json.beginObject();
  json.text("name", name);
  json.text("unit", section.unit);
  json.text("unitId", section.unitId);
  json.text("family", familyName(section.family));
  json.text("group", section.name);
  json.text("subGroup", element.subGroup);
  json.text("item", element.item);
  json.integer("occurrence", element.occurrence);
  appendRunQuantity(json, quantity);
  json.text("valueUnit", quantity.unit);
  writeJsonNumber(json, "limit", quantity.limit ? std::optional(quantity.limit->value) : std::nullopt);
  json.endObject();
}

/// The indices of the columns whose number in the run is such.
template <typename IsSuch>
void appendColumnsWhere(JsonWriter& json, std::string_view key, RunTable const& table, std::size_t run,
                        IsSuch const& isSuch) {
  json.beginInlineArray(key);
  for (std::size_t i = 0; i < table.columns().size(); ++i) {
    auto const number = table.number(run, table.columns()[i]);
    if (number.isThere && isSuch(number)) json.integer(i);
  }
  json.endInlineArray();
}

void appendRunOfTable(JsonWriter& json, RunTable const& table, std::size_t index) {
  auto const& run = table.runs()[index];
  json.beginObject();
  json.text("run", run.name);
  json.text("file", run.file);
  json.text("added", run.added);
  json.beginObject("labels");
  for (auto const& [name, value] : run.labels) json.text(name, value);
  json.endObject();
  writeJsonNumber(json, "worstUtilisation", run.worst);
  json.beginInlineArray("values");
  for (auto const& column : table.columns()) {
    auto const found = table.number(index, column);
    if (found.isThere)
      json.number(found.value);
    else
      json.null();
  }
  json.endInlineArray();
  appendColumnsWhere(json, "notANumber", table, index, [](RunNumber const& found) { return found.isNaN; });
  appendColumnsWhere(json, "exceeded", table, index, [](RunNumber const& found) { return found.isExceeded; });
  appendColumnsWhere(json, "invalid", table, index, [](RunNumber const& found) { return !found.isValid; });
  json.endObject();
}

void appendRunStatistics(JsonWriter& json, RunTableColumn const& column, std::string const& name) {
  auto const& statistics = column.statistics;
  json.beginObject();
  json.text("name", name);
  json.integer("count", statistics.count());
  writeJsonNumber(json, "minimum", statistics.minimum());
  writeJsonNumber(json, "maximum", statistics.maximum());
  writeJsonNumber(json, "mean", statistics.mean());
  writeJsonNumber(json, "standardDeviation", statistics.standardDeviation());
  writeJsonNumber(json, "shareBeyondLimit", statistics.shareBeyondLimit());
  writeJsonNumber(json, "worstUtilisation", column.worst);
  json.endObject();
}

}  // namespace

std::string renderRunTableAsJson(RunTable const& table) {
  JsonWriter json;
  auto const names = genColumnNames(table);
  json.beginObject();
  json.beginArray("columns");
  for (std::size_t i = 0; i < names.size(); ++i) appendRunColumn(json, table, table.columns()[i], names[i]);
  json.endArray();
  json.beginArray("runs");
  for (std::size_t i = 0; i < table.runs().size(); ++i) appendRunOfTable(json, table, i);
  json.endArray();
  json.beginArray("statistics");
  for (std::size_t i = 0; i < names.size(); ++i) appendRunStatistics(json, table.columns()[i], names[i]);
  json.endArray();
  json.endObject();
  return json.take();
}

JsonRunValues::JsonRunValues() {
  m_json.beginObject();
  m_json.beginArray("values");
}

std::string JsonRunValues::write(RunValues const& run) {
  for (auto const& section : run.sections) {
    for (auto const& row : section.rows) {
      for (auto const& cell : row.cells) writeCell(run, section, row, cell);
    }
  }
  return m_json.takeWritten();
}

std::string JsonRunValues::finish() {
  m_json.endArray();
  m_json.endObject();
  return m_json.take();
}

void JsonRunValues::writeCell(RunValues const& run, RunSectionValues const& section, RunRow const& row,
                              RunCell const& cell) {
  auto const& [value, origin, isExceeded] = cell.value;
  auto const& quantity = section.columns[cell.column];
  m_json.beginObject();
  m_json.text("run", run.run.name);
  m_json.text("file", run.run.file);
  m_json.text("unit", section.unit);
  m_json.text("unitId", section.unitId);
  m_json.text("family", familyName(section.family));
  m_json.text("group", section.name);
  m_json.text("subGroup", row.subGroup);
  m_json.text("item", row.item);
  m_json.integer("occurrence", row.occurrence);
  m_json.flag("valid", row.isValid);
  appendRunQuantity(m_json, quantity);
  m_json.number("value", value);
  m_json.text("valueUnit", quantity.unit);
  writeJsonNumber(m_json, "limit", quantity.limit ? std::optional(quantity.limit->value) : std::nullopt);
  m_json.flag("exceeded", isExceeded);
  if (origin.step)
    m_json.integer("step", *origin.step);
  else
    m_json.null("step");
  writeJsonNumber(m_json, "time", origin.companion);
  m_json.integer("count", origin.count);
  m_json.integer("nans", origin.nanCount);
  m_json.endObject();
}

}  // namespace Kestrel::ResultTables

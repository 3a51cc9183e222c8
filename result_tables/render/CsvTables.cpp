#include "result_tables/render/CsvTables.h"

#include <initializer_list>
#include <string_view>

#include "result_tables/base/Family.h"
#include "result_tables/base/Text.h"

namespace Kestrel::ResultTables {

namespace {

void appendField(std::string& out, std::string_view field) {
  if (field.find_first_of(",\"\r\n") == field.npos) {
    out += field;
    return;
  }
  out += '"';
  for (char const c : field) {
    if (c == '"') out += '"';
    out += c;
  }
  out += '"';
}

void appendRecord(std::string& out, std::initializer_list<std::string_view> fields) {
  bool isFirst = true;
  for (auto const field : fields) {
    if (!isFirst) out += ',';
    isFirst = false;
    appendField(out, field);
  }
  out += "\r\n";
}

std::string_view textOf(bool value) { return value ? "true" : "false"; }

void appendItem(std::string& out, ResultTable const& table, std::size_t group, std::string_view subGroup,
                MaxValueItem const& item) {
  auto const& container = table.container();
  auto const& columns = table.columns(group);
  auto const unit = toValidUtf8(table.unit().getSimulationUnitName());
  auto const unitId = container.simulationUnitId.toString();
  auto const section = toValidUtf8(container.groups[group].name);
  auto const name = toValidUtf8(item.name);
  for (std::size_t i = 0; i < columns.size() && i < item.maxValues.size(); ++i) {
    auto const& column = columns[i];
    appendRecord(
        out,
        {unit, unitId, familyName(container.dataType), section, subGroup, name, textOf(table.isValid(item)),
         toValidUtf8(column.key), toValidUtf8(column.tableDisplayName), shortestForm(item.maxValues[i]),
         toValidUtf8(column.unit), column.limit ? shortestForm(column.limit->value) : std::string(),
         textOf(table.isExceeded(group, i, item))});
  }
}

}  // namespace

std::string renderCsv(std::vector<ResultTable> const& tables) {
  std::string out;
  appendRecord(out, {"unit", "unitId", "family", "group", "subGroup", "item", "valid", "key", "column",
                     "value", "valueUnit", "limit", "exceeded"});
  for (auto const& table : tables) {
    for (std::size_t i = 0; i < table.container().groups.size(); ++i) {
      for (auto const& subGroup : table.container().groups[i].subGroups) {
        auto const name = toValidUtf8(subGroup.name);
        for (auto const& item : subGroup.items) appendItem(out, table, i, name, item);
      }
    }
  }
  return out;
}

}  // namespace Kestrel::ResultTables

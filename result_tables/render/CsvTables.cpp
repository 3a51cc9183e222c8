#include "result_tables/render/CsvTables.h"

#include <string_view>

#include "result_tables/base/Family.h"
#include "result_tables/base/Text.h"

namespace Kestrel::ResultTables {

namespace {

std::string_view textOf(bool value) { return value ? "true" : "false"; }

/// What is the same for all values of a table.
struct TableFields {
  std::string file;
  std::string unit;
  std::string unitId;
  std::string_view family;
};

std::string textOf(std::optional<std::size_t> number) { return number ? std::to_string(*number) : ""; }
std::string textOf(CsvWriter const& csv, std::optional<double> number) {
  return number ? csv.number(*number) : "";
}

void appendItem(CsvWriter& csv, ResultTable const& table, TableFields const& fields,
                ResultTable::Place const& place) {
  auto const& group = table.container().groups[place.group];
  auto const& subGroup = group.subGroups[place.subGroup];
  auto const& item = subGroup.items[place.item];
  auto const groupName = toValidUtf8(group.name);
  auto const subGroupName = toValidUtf8(subGroup.name);
  auto const name = toValidUtf8(item.name);
  auto const row = table.genRow(place.group, place.subGroup, place.item);
  for (std::size_t i = 0; i < row.size(); ++i) {
    auto const& column = table.columns(place.group)[i];
    auto const& [value, origin, isExceeded] = row[i];
    csv.record({fields.file, fields.unit, fields.unitId, fields.family, groupName, subGroupName, name,
                textOf(table.isValid(item)), toValidUtf8(column.key), toValidUtf8(column.tableDisplayName),
                csv.number(value), toValidUtf8(column.unit),
                column.limit ? csv.number(column.limit->value) : std::string(), textOf(isExceeded),
                textOf(origin.step), textOf(csv, origin.companion), std::to_string(origin.count),
                std::to_string(origin.nanCount)});
  }
}

void appendTable(CsvWriter& csv, ResultTable const& table) {
  auto const& container = table.container();
  TableFields const fields{toValidUtf8(table.file()), toValidUtf8(table.unit().getSimulationUnitName()),
                           container.simulationUnitId.toString(), familyName(container.dataType)};
  for (std::size_t i = 0; i < container.groups.size(); ++i) {
    auto const& subGroups = container.groups[i].subGroups;
    for (std::size_t k = 0; k < subGroups.size(); ++k) {
      for (std::size_t m = 0; m < subGroups[k].items.size(); ++m)
        appendItem(csv, table, fields, {i, k, m, 0});
    }
  }
}

}  // namespace

std::string renderCsv(std::vector<ResultTable> const& tables, CsvDialect const& dialect) {
  CsvWriter csv(dialect);
  csv.record({"file", "unit", "unitId", "family", "group", "subGroup", "item", "valid", "key", "column",
              "value", "valueUnit", "limit", "exceeded", "step", "time", "count", "nans"});
  for (auto const& table : tables) appendTable(csv, table);
  return csv.take();
}

}  // namespace Kestrel::ResultTables

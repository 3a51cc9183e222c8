#include "result_tables/tables/Findings.h"

#include "result_tables/base/Family.h"

namespace Kestrel::ResultTables {

namespace {

void appendInvalidItems(std::vector<Finding>& findings, ResultTable const& table) {
  auto const& container = table.container();
  if (container.invalidValuesText.empty() || container.groups.empty()) return;
  for (auto const& subGroup : container.groups.front().subGroups) {
    for (auto const& item : subGroup.items) {
      if (!table.isValid(item)) findings.push_back({"", subGroup.name, item.name, std::nullopt});
    }
  }
}

void appendExceededValues(std::vector<Finding>& findings, ResultTable const& table, std::size_t group) {
  auto const& section = table.container().groups[group];
  auto const& columns = table.columns(group);
  for (auto const& subGroup : section.subGroups) {
    for (auto const& item : subGroup.items) {
      for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!table.isExceeded(group, i, item)) continue;
        findings.push_back(
            {section.name, subGroup.name, item.name,
             ExceededValue{columns[i].tableDisplayName, item.maxValues[i], *columns[i].limit}});
      }
    }
  }
}

}  // namespace

TableFindings genFindings(ResultTable const& table) {
  TableFindings found{table.unit().getSimulationUnitName(),
                      std::string(familyName(table.container().dataType)),
                      table.container().invalidValuesText,
                      {}};
  appendInvalidItems(found.findings, table);
  for (std::size_t i = 0; i < table.container().groups.size(); ++i)
    appendExceededValues(found.findings, table, i);
  return found;
}

}  // namespace Kestrel::ResultTables

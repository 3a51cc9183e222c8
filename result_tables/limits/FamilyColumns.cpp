#include "result_tables/limits/FamilyColumns.h"

#include <memory>

#include "result_tables/base/Family.h"
#include "result_tables/results/FamilyTable.h"

namespace Kestrel::ResultTables {

namespace {

/// A unit with an element of every family. The library tells the columns of a family by the table of a unit
/// that has elements, and no other way.
ResultsUnit genUnitWithElements() {
  auto unit = std::make_unique<SimulationUnit>(SimulationUnitId(), "");
  auto const step = std::make_shared<SimulationStep>();
  constexpr BodyJoinInterface::JoinState state{};
  EvalSimulationUnitJoinGUID const lineJoin;
  for (auto const& family : s_families) {
    if (!family.toolKind) continue;
    std::string const id(family.name);
    unit->addTool(id, *family.toolKind);
    step->addJoiningTong(std::make_shared<EvalJoiningTong>(id, id, state));
    if (family.toolKind == ToolForceDataType::spotWeld)
      step->addJoin(EvalJoinGUID(), std::make_shared<SimulationBodyJoin>(id, id, state));
  }
  step->addLineJoin(EvalLineJoinGUID(), std::make_shared<SimulationBodyLineJoin>("", "", state, lineJoin));
  unit->addJoinDefinedInSimUnit(lineJoin);
  unit->setVisibleSteps(0, 0);
  return {std::move(unit), std::make_shared<SimulationResult>(std::vector{step}), {}};
}

}  // namespace

std::vector<FamilyColumn> familyColumns(MaxValueGroupContainer::DataType dataType) {
  auto const unit = genUnitWithElements();
  auto const table = genFamilyTable(unit, familyOf(dataType), true);
  std::vector<FamilyColumn> columns;
  for (auto const& section : table->groups) {
    for (std::size_t i = 0; i < section.valueNames.size(); ++i) {
      auto& column = columns.emplace_back(FamilyColumn{columnKey(section.valueNames[i])});
      if (i < section.limitTypes.size()) column.limitType = section.limitTypes[i];
    }
  }
  return columns;
}

}  // namespace Kestrel::ResultTables

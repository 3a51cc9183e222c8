#include "result_tables/results/ResultsBuilder.h"

#include <memory>
#include <utility>

#include "Business_Skin/Skin.h"

namespace Kestrel::ResultTables {

namespace {

using JoinState = BodyJoinInterface::JoinState;

std::shared_ptr<SkinBase> genSkin(std::optional<SkinRange> const& range) {
  if (!range) return std::make_shared<Skin<int>>();
  return std::make_shared<Skin<double>>(range->minimum, range->maximum);
}

std::shared_ptr<SimulationBodyLineJoin> genLineJoin(LineJoinRecord const& record) {
  auto lineJoin = std::make_shared<SimulationBodyLineJoin>(
      record.id, record.name, JoinState{record.state}, EvalSimulationUnitJoinGUID(record.simulationUnitJoin));
  for (auto const& [name, range] : record.skins) lineJoin->setSkin(SkinKey(name, 0, "", ""), genSkin(range));
  return lineJoin;
}

std::shared_ptr<SimulationStep> genStep(std::optional<StepRecords> const& records) {
  if (!records) return nullptr;
  auto step = std::make_shared<SimulationStep>();
  for (auto const& zone : records->suctionZones)
    step->addSuctionZone(EvalSuctionZoneGUID(zone.guid),
                         std::make_shared<EvalSuctionZone>(zone.name, zone.active));
  for (auto const& tong : records->joiningTongs)
    step->addJoiningTong(std::make_shared<EvalJoiningTong>(tong.id, tong.name, JoinState{tong.state}));
  for (auto const& join : records->joins)
    step->addJoin(EvalJoinGUID(join.guid),
                  std::make_shared<SimulationBodyJoin>(join.id, join.name, JoinState{join.state}));
  for (auto const& join : records->lineJoins)
    step->addLineJoin(EvalLineJoinGUID(join.guid), genLineJoin(join));
  return step;
}

ResultsUnit genUnit(UnitRecords const& records) {
  auto unit = std::make_unique<SimulationUnit>(SimulationUnitId(records.id), records.name);
  if (records.visibleSteps) {
    auto const [first, last] = *records.visibleSteps;
    unit->setVisibleSteps(static_cast<unsigned int>(first), static_cast<unsigned int>(last));
  }
  for (auto const& tool : records.tools) unit->addTool(tool.id, tool.type, tool.series, tool.tangentialForce);
  for (auto const& join : records.joinsDefinedInUnit)
    unit->addJoinDefinedInSimUnit(EvalSimulationUnitJoinGUID(join));
  std::vector<std::shared_ptr<SimulationStep>> steps;
  steps.reserve(records.steps.size());
  for (auto const& step : records.steps) steps.push_back(genStep(step));
  ResultsUnit built{std::move(unit), std::make_shared<SimulationResult>(std::move(steps)), {}};
  for (auto const& [family, groups] : records.toolGroupings) built.toolGroupings[family] = groups;
  return built;
}

}  // namespace

ResultsFile buildResults(std::string const& name, std::vector<UnitRecords> const& units) {
  ResultsFile file{name, name, {}};
  for (auto const& unit : units) file.units.push_back(genUnit(unit));
  return file;
}

}  // namespace Kestrel::ResultTables

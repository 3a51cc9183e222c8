#include "result_tables/import/ResultsBuilder.h"

#include <memory>
#include <utility>
#include <vector>

#include "Business_Skin/Skin.h"
#include "result_tables/base/Family.h"
#include "result_tables/base/ToolKind.h"

namespace Kestrel::ResultTables {

namespace {

using JoinState = BodyJoinInterface::JoinState;

StepValues<double> valuesOf(ImportSeries const& series) {
  auto const times = series.formula.times();
  if (!series.isPairs) {
    std::vector<double> values;
    values.reserve(times.size());
    for (std::size_t i = 0; i < times.size(); ++i) values.push_back(series.formula.at(i));
    return StepValues<double>(std::move(values));
  }
  std::vector<std::pair<double, double>> pairs;
  pairs.reserve(times.size());
  for (std::size_t i = 0; i < times.size(); ++i) pairs.emplace_back(series.formula.at(i), times[i]);
  return StepValues<double>(std::move(pairs));
}

void addTool(SimulationUnit& unit, ImportTool const& tool) {
  unit.addTool(tool.id, *toolKindOf(tool.kind));
  for (auto const& series : tool.series)
    unit.addToolForce(tool.id, series.quantity, std::make_shared<StepValues<double>>(valuesOf(series)));
  if (tool.tangentialForce) unit.setJoinTangentialForce(tool.id, valuesOf(*tool.tangentialForce));
}

std::shared_ptr<SimulationBodyLineJoin> genLineJoin(ImportRecord const& record, JoinState state,
                                                    ImportTime const& time) {
  auto lineJoin = std::make_shared<SimulationBodyLineJoin>(
      record.id, record.name, state, EvalSimulationUnitJoinGUID(record.simulationUnitJoin));
  for (auto const& [name, formulas] : record.skins) {
    auto const range = rangeAt(formulas, time);
    auto skin = range ? std::make_shared<Skin<double>>(range->first, range->second)
                      : std::make_shared<Skin<double>>(std::nullopt, std::nullopt);
    lineJoin->setSkin(SkinKey(name, 0, "", ""), std::move(skin));
  }
  return lineJoin;
}

/// Calls `add` with every record that the step holds and with its state.
template <typename Add>
void forEachRecord(std::vector<ImportRecord> const& records, std::size_t step, Add const& add) {
  for (auto const& record : records) {
    if (record.states[step]) add(record, JoinState{static_cast<std::uint32_t>(*record.states[step])});
  }
}

std::shared_ptr<SimulationStep> genStep(ImportUnit const& unit, std::size_t index) {
  auto const& time = unit.stepTimes[index];
  if (!time) return nullptr;
  auto step = std::make_shared<SimulationStep>();
  forEachRecord(unit.suctionZones, index, [&step](ImportRecord const& zone, JoinState active) {
    step->addSuctionZone(EvalSuctionZoneGUID(zone.guid),
                         std::make_shared<EvalSuctionZone>(zone.name, active != JoinState{0}));
  });
  forEachRecord(unit.joiningTongs, index, [&step](ImportRecord const& tong, JoinState state) {
    step->addJoiningTong(std::make_shared<EvalJoiningTong>(tong.id, tong.name, state));
  });
  forEachRecord(unit.joins, index, [&step](ImportRecord const& join, JoinState state) {
    step->addJoin(EvalJoinGUID(join.guid), std::make_shared<SimulationBodyJoin>(join.id, join.name, state));
  });
  forEachRecord(unit.lineJoins, index, [&](ImportRecord const& join, JoinState state) {
    step->addLineJoin(EvalLineJoinGUID(join.guid), genLineJoin(join, state, *time));
  });
  return step;
}

ResultsUnit genUnit(ImportUnit const& source) {
  auto unit = std::make_unique<SimulationUnit>(SimulationUnitId(source.id), source.name);
  if (source.visibleSteps) {
    unit->setVisibleSteps(static_cast<unsigned int>(source.visibleSteps->first),
                          static_cast<unsigned int>(source.visibleSteps->last));
  }
  for (auto const& tool : source.tools) addTool(*unit, tool);
  for (auto const& join : source.joinsDefinedInUnit)
    unit->addJoinDefinedInSimUnit(EvalSimulationUnitJoinGUID(join));
  std::vector<std::shared_ptr<SimulationStep>> steps;
  for (std::size_t i = 0; i < source.stepTimes.size(); ++i) steps.push_back(genStep(source, i));
  ResultsUnit built{std::move(unit), std::make_shared<SimulationResult>(std::move(steps)), {}};
  for (auto const& [family, groups] : source.toolGroupings)
    built.toolGroupings[familyNamed(family)->dataType] = groups;
  return built;
}

}  // namespace

ResultsFile buildResults(std::string const& name, ImportMap const& map) {
  ResultsFile file{name, name, {}};
  for (auto const& unit : map.units) file.units.push_back(genUnit(unit));
  return file;
}

}  // namespace Kestrel::ResultTables

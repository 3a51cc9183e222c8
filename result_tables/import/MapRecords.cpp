#include "result_tables/import/MapRecords.h"

#include <memory>
#include <utility>

#include "result_tables/base/Family.h"
#include "result_tables/base/ToolKind.h"

namespace Kestrel::ResultTables {

namespace {

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

ToolDraft genTool(ImportTool const& tool) {
  ToolDraft made{tool.id, *toolKindOf(tool.kind), {}, {}};
  for (auto const& series : tool.series)
    made.series.append(series.quantity, std::make_shared<StepValues<double>>(valuesOf(series)));
  if (tool.tangentialForce) made.tangentialForce = valuesOf(*tool.tangentialForce);
  return made;
}

LineJoinRecord genLineJoin(ImportRecord const& record, std::uint32_t state, ImportTime const& time) {
  LineJoinRecord made{record.guid, record.id, record.name, state, record.simulationUnitJoin, {}};
  for (auto const& [name, formulas] : record.skins) {
    auto const range = rangeAt(formulas, time);
    made.skins.emplace_back(name, range ? SkinRange{range->first, range->second} : SkinRange{});
  }
  return made;
}

/// Calls `add` with every record that the step holds and with its state.
template <typename Add>
void forEachRecord(std::vector<ImportRecord> const& records, std::size_t step, Add const& add) {
  for (auto const& record : records) {
    if (record.states[step]) add(record, static_cast<std::uint32_t>(*record.states[step]));
  }
}

std::optional<StepRecords> genStep(ImportUnit const& unit, std::size_t index) {
  auto const& time = unit.stepTimes[index];
  if (!time) return std::nullopt;
  StepRecords step;
  forEachRecord(unit.suctionZones, index, [&step](ImportRecord const& zone, std::uint32_t active) {
    step.suctionZones.push_back({zone.guid, zone.name, active != 0});
  });
  forEachRecord(unit.joiningTongs, index, [&step](ImportRecord const& tong, std::uint32_t state) {
    step.joiningTongs.push_back({tong.id, tong.name, state});
  });
  forEachRecord(unit.joins, index, [&step](ImportRecord const& join, std::uint32_t state) {
    step.joins.push_back({join.guid, join.id, join.name, state});
  });
  forEachRecord(unit.lineJoins, index, [&](ImportRecord const& join, std::uint32_t state) {
    step.lineJoins.push_back(genLineJoin(join, state, *time));
  });
  return step;
}

UnitRecords genUnit(ImportUnit const& source) {
  UnitRecords unit{source.id, source.name, source.visibleSteps};
  for (auto const& tool : source.tools) unit.tools.push_back(genTool(tool));
  unit.joinsDefinedInUnit = source.joinsDefinedInUnit;
  for (auto const& [family, groups] : source.toolGroupings)
    unit.toolGroupings.emplace_back(familyNamed(family)->dataType, groups);
  for (std::size_t i = 0; i < source.stepTimes.size(); ++i) unit.steps.push_back(genStep(source, i));
  return unit;
}

}  // namespace

std::vector<UnitRecords> genUnitRecords(ImportMap const& map) {
  std::vector<UnitRecords> units;
  for (auto const& unit : map.units) units.push_back(genUnit(unit));
  return units;
}

}  // namespace Kestrel::ResultTables

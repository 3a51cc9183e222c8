#include "Business_TableProperties/SimUnitMaxValuesProvider.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <deque>
#include <functional>
#include <iterator>
#include <memory_resource>
#include <span>
#include <string_view>
#include <tuple>
#include <unordered_map>

#include "Business_TableProperties/FamilySections.h"
#include "Business_TableProperties/LargestMagnitude.h"
#include "Business_TableProperties/MaxValueSources.h"
#include "Business_TableProperties/NaturalStringCompare.h"
#include "VantaService_Translator/Translator.h"

namespace Kestrel {

namespace {

using DataType = MaxValueGroupContainer::DataType;
using namespace MaxValueSources;

constexpr unsigned int s_noStep = 0xFFFFFFFF;  // what a bound of the visible steps reads where there is none

/// The solver's states of failed joins, the only ones that make the values of a join meaningless.
constexpr std::array<unsigned int, 3> s_failedJoinStates = {5, 9, 10};

template <typename Series>
constexpr bool s_hasRawAccess = requires(Series& series) {
  std::span<double const>(series.values());
  std::span<std::pair<double, double> const>(series.pairs());
};

/// What `GreaterMagnitude` makes of the values.
template <typename Series>
double largestMagnitudeOf(Series& series) {
  if constexpr (s_hasRawAccess<Series>) {
    std::span<double const> const values = series.values();
    return values.empty() ? largestMagnitude(series.pairs()) : largestMagnitude(values);
  } else {
    double current = 0.0;
    series.forEachValue([&current](double value) {
      // Said to be unlikely, as the comparisons would otherwise wait for each other.
      if (std::abs(value) > std::abs(current)) [[unlikely]]
        current = value;
    });
    return current;
  }
}

/// What any other comparator makes of them. Said to be cold, as short series take a tenth longer otherwise.
[[gnu::cold]] double preferredValueOf(StepValues<double>& series,
                                      std::function<bool(double, double)> const& isPreferred) {
  double current = 0.0;
  series.forEachValue([&](double value) {
    auto const compare = isPreferred;  // a comparator may have a state, which each value finds as it was
    if (compare(current, value)) current = value;
  });
  return current;
}

std::string translate(char const* text) {
  return Translator::translate("SimUnitMaxValuesProvider", text, nullptr, -1);
}

MaxValueGroup newSection(SectionDefinition const& definition) {
  return {translate(definition.name), definition.isTeachingGroup, definition.isForceGroup,
          definition.limitTypes,      definition.valueNames,      {}};
}

/// Appends an unnamed sub-group with one item.
void appendItem(MaxValueGroup& section, std::string name, std::vector<double> row) {
  section.subGroups.emplace_back().items.push_back({std::move(name), std::move(row)});
}

void setFailureTexts(MaxValueGroupContainer& container) {
  container.invalidValuesText = translate("Joining Failed");
  container.invalidValuesNameAppendix = SimUnitMaxValuesProvider::s_invalidValues_elementNameAppendix;
}

bool isValid(BodyJoinInterface::JoinState state) {
  return std::ranges::find(s_failedJoinStates, static_cast<unsigned int>(state)) == s_failedJoinStates.end();
}

/// Whether the last records of the elements `ids` are valid, by the name that `nameOf` gives. Elements
/// without records get no entry; of elements that share a name the last one counts.
template <typename Records, typename NameOf>
std::map<std::string, bool> validityOf(std::vector<std::string> const& ids, Records const& records,
                                       NameOf const& nameOf) {
  std::map<std::string, bool> validity;
  for (auto const& id : ids) {
    auto const found = records.find(id);
    if (found == records.end()) continue;
    auto& last = *found->second.back();
    bool const lastIsValid = isValid(last.getState());
    validity[nameOf(last)] = lastIsValid;
  }
  return validity;
}

std::string nameOfTong(EvalJoiningTong& tong) { return tong.getTongPresentationName(); }

std::string nameOfPointJoin(SimulationBodyJoin& join) { return join.getName(0); }

/// The record of a line join, whatever the step.
std::shared_ptr<SimulationBodyLineJoin> const& itself(std::shared_ptr<SimulationBodyLineJoin> const& lineJoin,
                                                      unsigned int) {
  return lineJoin;
}

void setTitles(MaxValueGroupContainer& container, FamilyDefinition const& family,
               SimulationUnit const& unit) {
  container.title = translate(family.title);
  container.unitTitle = unit.getSimulationUnitName() + container.title;
  if (!family.isDefaultFamily) container.isDefaultFamily = false;
}

void makeAbsolute(MaxValueGroup& section) {
  for (auto& subGroup : section.subGroups) {
    for (auto& item : subGroup.items) {
      for (double& value : item.maxValues) value = std::abs(value);
    }
  }
}

/// How many series a tool has, where the host tells.
template <typename ToolForces>
std::size_t numberOfSeries(ToolForces const* toolForces) {
  if constexpr (requires { toolForces->size(); })
    return toolForces == nullptr ? 0 : toolForces->size();
  else
    return 0;
}

}  // namespace

std::string const SimUnitMaxValuesProvider::s_invalidValues_elementNameAppendix =
    translate(" (Joining Failed)");

SimUnitMaxValuesProvider::SimUnitMaxValuesProvider(SimulationUnit const& simulationUnit,
                                                   std::weak_ptr<SimulationResult> simulationResult)
    : m_compare(GreaterMagnitude{}),
      m_simulationUnit(&simulationUnit),
      m_simulationResult(std::move(simulationResult)) {}

SimUnitMaxValuesProvider::SimUnitMaxValuesProvider(SimUnitMaxValuesProvider const& other) = default;

SimUnitMaxValuesProvider::~SimUnitMaxValuesProvider() = default;

std::shared_ptr<MaxValueGroupContainer> SimUnitMaxValuesProvider::genGetMaxValuesCollection(
    DataType dataType) const {
  auto container = std::make_shared<MaxValueGroupContainer>(dataType, m_simulationUnit->getID());
  switch (dataType) {
    case DataType::Clamps:
    case DataType::Bolts:
      assembleClampGroupContainer(*container, dataType, false);
      break;
    case DataType::JoiningTongs:
      assembleJoiningTongGroupContainer(*container);
      break;
    case DataType::Pilots:
      assemblePilotGroupContainer(*container);
      break;
    case DataType::SuctionZones:
      assembleSuctionZoneContainer(*container);
      break;
    case DataType::SpotWelds:
      assembleSpotWeldGroupContainer(*container);
      break;
    case DataType::LineJoiningTools:
      assembleLineJoiningToolGroupContainer(*container);
      break;
    case DataType::LineWelds:
      assembleLineWeldGroupContainer(*container);
      break;
    case DataType::ClampingTools:
    case DataType::Rollers:
    case DataType::Steels:
    case DataType::HemmingBed:
      break;
  }
  return container;
}

std::shared_ptr<MaxValueGroupContainer> SimUnitMaxValuesProvider::genGetClampMaxValuesCollection(
    DataType dataType, bool withTeaching) const {
  auto container = std::make_shared<MaxValueGroupContainer>(dataType, m_simulationUnit->getID());
  assembleClampGroupContainer(*container, dataType, withTeaching);
  return container;
}

std::shared_ptr<MaxValueGroupContainer> SimUnitMaxValuesProvider::genGetToolMaxValuesCollection(
    ToolGrouping const& grouping, DataType dataType) const {
  auto container = std::make_shared<MaxValueGroupContainer>(dataType, m_simulationUnit->getID());
  assembleToolContainer(*container, grouping, dataType);
  return container;
}

std::shared_ptr<SimulationResult> SimUnitMaxValuesProvider::getSimulationResult() const {
  return m_simulationResult.lock();
}

std::map<std::string, unsigned int> SimUnitMaxValuesProvider::createValueNameToColumnIndexMap(
    std::vector<std::string> const& valueNames) const {
  return columnsOf(valueNames);
}

double SimUnitMaxValuesProvider::computeMaxValue(StepValues<double>& values) const {
  return m_compare.target<GreaterMagnitude>() != nullptr ? largestMagnitudeOf(values)
                                                         : preferredValueOf(values, m_compare);
}

/// Makes the rows of a section, one tool after the other.
class SimUnitMaxValuesProvider::RowMaker {
 public:
  RowMaker(SimUnitMaxValuesProvider const& provider,
           std::map<std::string, unsigned int> valueNameToColumnIndex)
      : m_provider(provider), m_series(std::move(valueNameToColumnIndex)) {}

  /// The maxima of one tool, one per entry of the map; 0.0 in the columns that the tool has no series for.
  /// `toolForces` are the tool's series, null where the host has none.
  template <typename ToolForces>
  std::vector<double> makeRow(std::string const& toolId, ToolForces* toolForces) const {
    std::vector<double> row(m_series.numberOfColumns(), 0.0);
    m_series.forEach(*m_provider.m_simulationUnit, toolId, toolForces,
                     [&](unsigned int column, StepValues<double>& series) {
                       // A map of repeated names holds a column beyond the row, which has one value per
                       // entry.
                       if (column < row.size()) row[column] = m_provider.computeMaxValue(series);
                     });
    return row;
  }

 private:
  SimUnitMaxValuesProvider const& m_provider;
  ToolSeries m_series;
};

void SimUnitMaxValuesProvider::assembleGroup(
    std::vector<std::string> const& itemIds, std::vector<std::string> const& itemNames,
    std::map<std::string, unsigned int> const& valueNameToColumnIndex, MaxValueGroup& group) const {
  if (itemIds.size() != itemNames.size()) return;
  group.subGroups.reserve(itemIds.size());
  RowMaker const rows(*this, valueNameToColumnIndex);
  for (std::size_t i = 0; i < itemIds.size(); ++i) {
    auto row = rows.makeRow(itemIds[i], m_simulationUnit->getToolForces(itemIds[i]));
    appendItem(group, itemNames[i], std::move(row));
  }
}

void SimUnitMaxValuesProvider::assembleClampGroupContainer(MaxValueGroupContainer& container,
                                                           DataType dataType, bool withTeaching) const {
  auto const family = dataType == DataType::Bolts ? FamilySections::bolts() : FamilySections::clamps();
  auto const ids = toolIdsOf(*m_simulationUnit, family.toolKind);
  if (ids.empty()) return;

  setTitles(container, family, *m_simulationUnit);
  auto sections = family.genSections();
  if (!withTeaching) std::erase_if(sections, [](auto const& section) { return section.isTeachingGroup; });
  appendSections(container, sections, ids, ids);
}

void SimUnitMaxValuesProvider::assemblePilotGroupContainer(MaxValueGroupContainer& container) const {
  auto const family = FamilySections::pilots();
  auto const pilotTool = findPilotTool(*m_simulationUnit);
  if (!pilotTool) return;

  setTitles(container, family, *m_simulationUnit);
  auto section = newSection(family.genSections().front());
  assemblePilotsGroup(pilotTool->id, createValueNameToColumnIndexMap(section.valueNames), section,
                      pilotTool->boltIds);
  container.groups.push_back(std::move(section));
}

void SimUnitMaxValuesProvider::assemblePilotsGroup(
    std::string const& pilotToolId, std::map<std::string, unsigned int> const& valueNameToColumnIndex,
    MaxValueGroup& group, std::vector<std::string> const& boltIds) const {
  if (group.subGroups.capacity() < 20) group.subGroups.reserve(20);
  auto* const toolForces = m_simulationUnit->getToolForces(pilotToolId);
  std::pmr::monotonic_buffer_resource memory;
  std::pmr::unordered_map<std::string, std::size_t> rowOfPilot(&memory);
  rowOfPilot.reserve(numberOfSeries(toolForces));
  auto const setMaxValue = [&](std::string_view pilot, unsigned int column, std::string const&,
                               std::shared_ptr<StepValues<double>> const& series) {
    auto const [entry, isNew] = rowOfPilot.try_emplace(std::string(pilot), rowOfPilot.size());
    if (isNew) {
      group.subGroups.resize(entry->second);
      appendItem(group, entry->first, std::vector<double>(valueNameToColumnIndex.size(), 0.0));
    }
    auto& row = group.subGroups[entry->second].items.front().maxValues;
    if (column < row.size()) row[column] = computeMaxValue(*series);
  };
  forEachPilotSeries(toolForces, valueNameToColumnIndex, boltIds, setMaxValue);
}

void SimUnitMaxValuesProvider::assembleToolContainer(MaxValueGroupContainer& container,
                                                     ToolGrouping const& grouping, DataType dataType) const {
  auto const family = FamilySections::tools(dataType);
  auto const ids = toolIdsOf(*m_simulationUnit, family.toolKind);
  if (ids.empty()) return;

  // The title is set afterwards: the tables of the forming tools are titled by the unit alone.
  container.unitTitle = m_simulationUnit->getSimulationUnitName() + container.title;
  if (*family.title != '\0') container.title = translate(family.title);
  if (!family.isDefaultFamily) container.isDefaultFamily = false;
  auto section = newSection(family.genSections().front());
  assembleGroupWithGrouping(ids, ids, createValueNameToColumnIndexMap(section.valueNames), grouping, section);
  if (dataType == DataType::HemmingBed) makeAbsolute(section);
  container.groups.push_back(std::move(section));
}

void SimUnitMaxValuesProvider::assembleGroupWithGrouping(
    std::vector<std::string> const& itemIds, std::vector<std::string> const& itemNames,
    std::map<std::string, unsigned int> const& valueNameToColumnIndex, ToolGrouping const& grouping,
    MaxValueGroup& group) const {
  if (itemIds.size() != itemNames.size()) return;
  group.subGroups.reserve(itemIds.size());
  RowMaker const rows(*this, valueNameToColumnIndex);
  for (auto const& [name, toolIds] : grouping) {
    MaxValueSubGroup subGroup{name, {}};
    subGroup.items.reserve(toolIds.size());
    for (auto const& toolId : toolIds)
      subGroup.items.push_back({toolId, rows.makeRow(toolId, m_simulationUnit->getToolForces(toolId))});
    group.subGroups.push_back(std::move(subGroup));
  }
}

void SimUnitMaxValuesProvider::assembleSuctionZoneContainer(MaxValueGroupContainer& container) const {
  auto const family = FamilySections::suctionZones();
  auto const ids = toolIdsOf(*m_simulationUnit, family.toolKind);
  if (ids.empty()) return;

  container.valuesAreValid = getSuctionZoneValuesAreValid();
  setTitles(container, family, *m_simulationUnit);
  appendSection(container, family.genSections().front(), ids, ids);
}

std::map<std::string, bool> SimUnitMaxValuesProvider::getSuctionZoneValuesAreValid() const {
  std::map<std::string, bool> validity;
  if (!m_simulationUnit->hasVisibleSimulationSteps()) return validity;
  RecurringKeys wasActive(validity);
  forEachVisibleStep(*m_simulationUnit, getSimulationResult(), [&](SimulationStep& step, unsigned int) {
    wasActive.startRound();
    std::for_each(step.beginSuctionZoneMap(), step.endSuctionZoneMap(), [&](auto const& entry) {
      auto const& zone = entry.second;
      if (!zone) return;
      bool& isValid = wasActive[zone->getSuctionZonePresentationName()];
      if (!isValid) isValid = zone->getActive();
    });
  });
  return validity;
}

void SimUnitMaxValuesProvider::assembleJoiningTongGroupContainer(MaxValueGroupContainer& container) const {
  auto const family = FamilySections::joiningTongs();
  auto const ids = toolIdsOf(*m_simulationUnit, family.toolKind);
  if (ids.empty()) return;

  container.elementNames = ids;
  container.valuesAreValid = getJoiningTongValuesAreValid(ids);
  setFailureTexts(container);
  setTitles(container, family, *m_simulationUnit);
  if (m_simulationUnit->getFirstVisibleStep() == s_noStep ||
      m_simulationUnit->getLastVisibleStep() == s_noStep)
    return;
  auto const referenceStep =
      findVisibleStep(*m_simulationUnit, getSimulationResult(),
                      [](SimulationStep& step, unsigned int) { return step.getNumberOfJoiningTongs() != 0; });
  if (!referenceStep) return;
  std::vector<std::string> names;
  names.reserve(ids.size());
  for (auto const& id : ids) {
    auto const tong = referenceStep->getJoiningTongByID(id);
    names.push_back(tong ? tong->getTongPresentationName() : id);
  }
  appendSections(container, family.genSections(), ids, names);
}

void SimUnitMaxValuesProvider::getAllEvalJoiningTongs(JoiningTongMap& tongs) const {
  tongs.clear();
  if (!m_simulationUnit->hasVisibleSimulationSteps()) return;
  RecurringKeys recordsOf(tongs);
  forEachVisibleStep(*m_simulationUnit, getSimulationResult(), [&](SimulationStep& step, unsigned int) {
    recordsOf.startRound();
    std::for_each(step.beginJoiningTong(), step.endJoiningTong(), [&](auto const& tong) {
      if (tong) recordsOf[tong->getJoiningTongStringID()].push_back(tong);
    });
  });
}

std::map<std::string, bool> SimUnitMaxValuesProvider::getJoiningTongValuesAreValid(
    std::vector<std::string> const& stringIDs) const {
  JoiningTongMap tongs;
  getAllEvalJoiningTongs(tongs);
  return validityOf(stringIDs, tongs, nameOfTong);
}

void SimUnitMaxValuesProvider::assembleSpotWeldGroupContainer(MaxValueGroupContainer& container) const {
  auto const family = FamilySections::spotWelds();
  PointJoinMap joins;
  getAllPointJoins(joins);
  auto ids = toolIdsOf(*m_simulationUnit, family.toolKind);
  std::erase_if(ids, [&joins](std::string const& id) { return !joins.contains(id); });
  if (ids.empty()) return;

  std::vector<std::string> names;
  names.reserve(ids.size());
  for (auto const& id : ids) names.push_back(nameOfPointJoin(*joins.at(id).front()));
  container.elementNames = ids;
  container.valuesAreValid = validityOf(ids, joins, nameOfPointJoin);
  setFailureTexts(container);
  setTitles(container, family, *m_simulationUnit);
  appendSection(container, family.genSections().front(), ids, names);
}

void SimUnitMaxValuesProvider::getAllPointJoins(PointJoinMap& joins) const {
  joins.clear();
  if (!m_simulationUnit->hasVisibleSimulationSteps()) return;
  RecurringKeys recordsOf(joins);
  forEachVisibleStep(*m_simulationUnit, getSimulationResult(), [&](SimulationStep& step, unsigned int) {
    recordsOf.startRound();
    std::for_each(step.beginJoinMap(), step.endJoinMap(), [&](auto const& entry) {
      auto const& join = entry.second;
      if (join) recordsOf[join->getStringID()].push_back(join);
    });
  });
}

std::map<std::string, bool> SimUnitMaxValuesProvider::getPointJoinValuesAreValid(
    std::vector<std::string> const& stringIDs) const {
  PointJoinMap joins;
  getAllPointJoins(joins);
  return validityOf(stringIDs, joins, nameOfPointJoin);
}

void SimUnitMaxValuesProvider::assembleLineWeldGroupContainer(MaxValueGroupContainer& container) const {
  LineJoinMap lineJoins;
  getAllLineJoins(lineJoins);
  assembleLineJoinContainer(container, FamilySections::lineWelds(), lineJoins);
}

void SimUnitMaxValuesProvider::assembleLineJoiningToolGroupContainer(
    MaxValueGroupContainer& container) const {
  LineJoinMap lineJoins;
  getLineJoinsDefinedInCurrentSimUnit(lineJoins);
  assembleLineJoinContainer(container, FamilySections::lineJoiningTools(), lineJoins);
}

void SimUnitMaxValuesProvider::assembleLineJoinContainer(MaxValueGroupContainer& container,
                                                         FamilyDefinition const& family,
                                                         LineJoinMap const& lineJoins) const {
  if (lineJoins.empty()) return;
  container.elementNames = genGetLineJoinsStringIDs(lineJoins);
  container.valuesAreValid = getLineJoinValuesAreValid(lineJoins);
  setFailureTexts(container);
  setTitles(container, family, *m_simulationUnit);
  auto section = newSection(family.genSections().front());
  assembleLineWeldGroup(createValueNameToColumnIndexMap(section.valueNames), lineJoins, section);
  container.groups.push_back(std::move(section));
}

void SimUnitMaxValuesProvider::assembleLineWeldGroup(
    std::map<std::string, unsigned int> const& valueNameToColumnIndex, LineJoinMap const& lineJoins,
    MaxValueGroup& group) const {
  std::deque<std::pair<SkinKey, unsigned int>> columns;  // keys stay where they are made
  for (auto const& [valueName, column] : valueNameToColumnIndex)
    columns.emplace_back(std::piecewise_construct, std::forward_as_tuple(valueName, 0, "", ""),
                         std::forward_as_tuple(column));
  group.subGroups.reserve(group.subGroups.size() + lineJoins.size());
  for (auto const& [name, records] : lineJoins) {
    std::vector<double> row(columns.size(), 0.0);
    for (auto const& [key, column] : columns) {
      if (column < row.size()) row[column] = computeMaxValueOfSkins(records, key);
    }
    appendItem(group, name, std::move(row));
  }
}

double SimUnitMaxValuesProvider::computeMaxValueOfSkins(
    std::vector<std::shared_ptr<SimulationBodyLineJoin>> const& records, SkinKey const& key) const {
  double current = 0.0;
  for (auto const& record : records) {
    auto const range = record ? rangeOfSkin(*record, key) : std::nullopt;
    if (!range) continue;
    double const candidate = range->extreme();
    if (m_compare(current, candidate)) current = candidate;
  }
  return current;
}

void SimUnitMaxValuesProvider::getAllLineJoins(LineJoinMap& lineJoins) const {
  collectAllLineJoins(lineJoins, *m_simulationUnit, m_simulationResult, itself);
}

void SimUnitMaxValuesProvider::getLineJoinsDefinedInCurrentSimUnit(LineJoinMap& lineJoins) const {
  collectDefinedLineJoins(lineJoins, *m_simulationUnit, m_simulationResult, itself);
}

std::vector<std::string> SimUnitMaxValuesProvider::genGetLineJoinsStringIDs(
    LineJoinMap const& lineJoins) const {
  std::vector<std::string> ids;
  ids.reserve(lineJoins.size());
  for (auto const& [name, records] : lineJoins) {
    if (!records.empty() && records.front()) ids.push_back(records.front()->getStringID());
  }
  return ids;
}

std::map<std::string, bool> SimUnitMaxValuesProvider::getLineJoinValuesAreValid(
    LineJoinMap const& lineJoins) const {
  std::map<std::string, bool> validity;
  for (auto const& [name, records] : lineJoins) {
    if (!records.empty() && records.back())
      validity[records.back()->getDisplayName()] = isValid(records.back()->getState());
  }
  return validity;
}

bool SimUnitMaxValuesProvider::genGetJoinValueIsValid(BodyJoinInterface::JoinState state) const {
  return isValid(state);
}

void SimUnitMaxValuesProvider::appendSection(MaxValueGroupContainer& container,
                                             SectionDefinition const& definition,
                                             std::vector<std::string> const& itemIds,
                                             std::vector<std::string> const& itemNames) const {
  auto section = newSection(definition);
  assembleGroup(itemIds, itemNames, createValueNameToColumnIndexMap(section.valueNames), section);
  container.groups.push_back(std::move(section));
}

void SimUnitMaxValuesProvider::appendSections(MaxValueGroupContainer& container,
                                              std::vector<SectionDefinition> const& definitions,
                                              std::vector<std::string> const& itemIds,
                                              std::vector<std::string> const& itemNames) const {
  std::vector<MaxValueGroup> sections;
  std::vector<RowMaker> rows;
  sections.reserve(definitions.size());
  rows.reserve(definitions.size());
  for (auto const& definition : definitions) {
    auto& section = sections.emplace_back(newSection(definition));
    section.subGroups.reserve(itemIds.size());
    rows.emplace_back(*this, createValueNameToColumnIndexMap(section.valueNames));
  }
  for (std::size_t i = 0; i < itemIds.size(); ++i) {
    auto* const toolForces = m_simulationUnit->getToolForces(itemIds[i]);
    for (std::size_t k = 0; k < sections.size(); ++k)
      appendItem(sections[k], itemNames[i], rows[k].makeRow(itemIds[i], toolForces));
  }
  std::move(sections.begin(), sections.end(), std::back_inserter(container.groups));
}

}  // namespace Kestrel

#include "Business_TableProperties/SimUnitMaxValuesProvider.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <iterator>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

#include "Business_Skin/Skin.h"
#include "Business_TableProperties/FamilySections.h"
#include "Business_TableProperties/NaturalStringCompare.h"
#include "Persistence_DaoAdapter/SolverTableDataKeys.h"
#include "VantaService_Translator/Translator.h"

namespace Kestrel {

namespace {

using DataType = MaxValueGroupContainer::DataType;

constexpr unsigned int s_noStep = 0xFFFFFFFF;  // what a bound of the visible steps reads where there is none

/// The solver's states of failed joins, the only ones that make the values of a join meaningless.
constexpr std::array<unsigned int, 3> s_failedJoinStates = {5, 9, 10};

struct GreaterMagnitude {
  bool operator()(double current, double value) const { return std::abs(value) > std::abs(current); }
};

/// What `GreaterMagnitude` makes of the values. That a greater one is said to be unlikely keeps the
/// comparisons from waiting for each other, which makes the pass about four times as fast.
double largestMagnitude(StepValues<double>& values) {
  double current = 0.0;
  double magnitude = 0.0;
  values.forEachValue([&](double value) {
    if (std::abs(value) > magnitude) [[unlikely]] {
      current = value;
      magnitude = std::abs(value);
    }
  });
  return current;
}

std::string translate(char const* text) {
  return Translator::translate("SimUnitMaxValuesProvider", text, nullptr, -1);
}

std::vector<std::string> toolIdsOf(SimulationUnit const& unit, ToolForceDataType kind) {
  std::vector<std::string> ids;
  unit.getToolStringIDsOfToolForceType(ids, kind);
  return ids;
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

/// Access to the entries of a map for keys that come in rounds, mostly the same keys in the same order in
/// each round: such a key costs one comparison with the key that came at its place in the round before.
///
/// The tables of 20,000 joining tongs over 100 steps take 159 ms with it and 410 ms without, spot welds 390
/// and 937 ms, line welds 1.0 and 2.8 s (benchmarks/families).
template <typename Map>
class RecurringKeys {
 public:
  explicit RecurringKeys(Map& map) : m_map(map) {}

  void startRound() { m_place = 0; }

  /// The entry of `key`, which is made if there is none.
  typename Map::mapped_type& operator[](typename Map::key_type const& key) {
    if (m_place == m_entries.size()) {
      m_entries.push_back(m_map.try_emplace(key).first);
    } else if (m_entries[m_place]->first != key) {
      m_entries[m_place] = m_map.try_emplace(key).first;
    }
    return m_entries[m_place++]->second;
  }

 private:
  Map& m_map;
  std::vector<typename Map::iterator> m_entries;  // by place in the round
  std::size_t m_place = 0;
};

/// The number behind the last step that a walk up to `last` has to ask for. A result that tells how many
/// steps it has keeps the walk from asking for those beyond.
template <typename Result>
std::uint64_t endOfSteps(Result const& result, unsigned int last) {
  std::uint64_t const end = std::uint64_t{last} + 1;
  if constexpr (requires { result.getNumberOfSteps(); })
    return std::min<std::uint64_t>(end, result.getNumberOfSteps());
  else
    return end;
}

/// The first visible step that is wanted, ascending; empty where there is none. Steps without data, and those
/// of a result that is gone, are passed over.
template <typename IsWanted>
std::shared_ptr<SimulationStep> findVisibleStep(SimulationUnit const& unit,
                                                std::shared_ptr<SimulationResult> const& result,
                                                IsWanted const& isWanted) {
  if (!result) return nullptr;
  auto const end = endOfSteps(*result, unit.getLastVisibleStep());
  for (std::uint64_t number = unit.getFirstVisibleStep(); number < end; ++number) {
    auto step = result->getStep(static_cast<unsigned int>(number));
    if (step && isWanted(*step)) return step;
  }
  return nullptr;
}

template <typename Visit>
void forEachVisibleStep(SimulationUnit const& unit, std::shared_ptr<SimulationResult> const& result,
                        Visit const& visit) {
  findVisibleStep(unit, result, [&visit](SimulationStep& step) {
    visit(step);
    return false;
  });
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

/// The identifiers of the joins that a unit defines. They are compared; where the host orders them too, that
/// is used.
template <typename Id>
class DefinedJoins {
 public:
  explicit DefinedJoins(std::vector<Id> ids) : m_ids(std::move(ids)) {
    if constexpr (s_isOrdered) std::sort(m_ids.begin(), m_ids.end(), isBefore);
  }

  [[nodiscard]] bool contains(Id const& id) const {
    if constexpr (s_isOrdered)
      return std::binary_search(m_ids.begin(), m_ids.end(), id, isBefore);
    else
      return std::find(m_ids.begin(), m_ids.end(), id) != m_ids.end();
  }

 private:
  static constexpr bool s_isOrdered = requires(Id const& a, Id const& b) { a < b; };
  static bool isBefore(Id const& a, Id const& b) { return a < b; }

  std::vector<Id> m_ids;
};

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

/// Finds strings by parts of other ones.
struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
};

/// What follows the quantity and its underscore in the name of a pilot's series. Where no underscore follows
/// the quantity, the search's "not found" (the greatest number) plus the length of both wraps around to the
/// length of the quantity.
std::string_view pilotNameOf(std::string_view seriesName, std::string_view quantityAndUnderscore) {
  return seriesName.substr(seriesName.find(quantityAndUnderscore) + quantityAndUnderscore.size());
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
  std::map<std::string, unsigned int> columns;
  for (unsigned int i = 0; i < valueNames.size(); ++i) columns[valueNames[i]] = i;
  return columns;
}

double SimUnitMaxValuesProvider::computeMaxValue(StepValues<double>& values) const {
  if (m_compare.target<GreaterMagnitude>() != nullptr) return largestMagnitude(values);
  double current = 0.0;
  values.forEachValue([&](double value) {
    auto const compare = m_compare;  // a comparator may have a state, which each value finds as it was
    if (compare(current, value)) current = value;
  });
  return current;
}

/// Makes the rows of a section, one tool after the other.
class SimUnitMaxValuesProvider::RowMaker {
 public:
  RowMaker(SimUnitMaxValuesProvider const& provider,
           std::map<std::string, unsigned int> valueNameToColumnIndex)
      : m_provider(provider),
        m_columns(std::move(valueNameToColumnIndex)),
        m_tangentialForce(columnOf(SolverTableDataKeys::getNameOfJoinTangentialForce())) {}
  RowMaker(RowMaker const&) = delete;
  RowMaker(RowMaker&&) = default;

  /// The maxima of one tool, one per entry of the map; 0.0 in the columns that the tool has no series for.
  /// `toolForces` are the tool's series, null where the host has none.
  template <typename ToolForces>
  std::vector<double> makeRow(std::string const& toolId, ToolForces* toolForces) {
    std::vector<double> row(m_columns.size(), 0.0);
    if (toolForces != nullptr) {
      for (auto const& [quantity, series] : *toolForces) {
        if (series) setMaxValue(row, columnOf(quantity), *series);
      }
    }
    if (m_tangentialForce != nullptr) {
      auto const series = m_provider.m_simulationUnit->genGetJoinTangentialForceStepValues(toolId);
      if (series) setMaxValue(row, m_tangentialForce, *series);
    }
    return row;
  }

 private:
  /// Null where there is no such column.
  [[nodiscard]] unsigned int const* columnOf(std::string const& quantity) const {
    auto const found = m_columns.find(quantity);
    return found == m_columns.end() ? nullptr : &found->second;
  }

  void setMaxValue(std::vector<double>& row, unsigned int const* column, StepValues<double>& series) const {
    // A map of repeated names holds a column beyond the row, which has one value per entry.
    if (column != nullptr && *column < row.size()) row[*column] = m_provider.computeMaxValue(series);
  }

  SimUnitMaxValuesProvider const& m_provider;
  std::map<std::string, unsigned int> m_columns;
  unsigned int const* m_tangentialForce;  // into the map
};

void SimUnitMaxValuesProvider::assembleGroup(
    std::vector<std::string> const& itemIds, std::vector<std::string> const& itemNames,
    std::map<std::string, unsigned int> const& valueNameToColumnIndex, MaxValueGroup& group) const {
  if (itemIds.size() != itemNames.size()) return;
  group.subGroups.reserve(itemIds.size());
  RowMaker rows(*this, valueNameToColumnIndex);
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
  auto const pilotToolIds = toolIdsOf(*m_simulationUnit, family.toolKind);
  if (pilotToolIds.empty()) return;
  auto const boltIds = toolIdsOf(*m_simulationUnit, FamilySections::bolts().toolKind);

  setTitles(container, family, *m_simulationUnit);
  auto section = newSection(family.genSections().front());
  assemblePilotsGroup(pilotToolIds.front(), createValueNameToColumnIndexMap(section.valueNames), section,
                      boltIds);
  container.groups.push_back(std::move(section));
}

void SimUnitMaxValuesProvider::assemblePilotsGroup(
    std::string const& pilotToolId, std::map<std::string, unsigned int> const& valueNameToColumnIndex,
    MaxValueGroup& group, std::vector<std::string> const& boltIds) const {
  if (group.subGroups.capacity() < 20) group.subGroups.reserve(20);
  auto* const toolForces = m_simulationUnit->getToolForces(pilotToolId);
  if (toolForces == nullptr) return;
  std::unordered_set<std::string_view> const bolts(boltIds.begin(), boltIds.end());
  std::unordered_map<std::string, std::size_t, TextHash, std::equal_to<>> rowOfPilot;
  for (auto const& [valueName, column] : valueNameToColumnIndex) {
    auto const valueNameAndUnderscore = valueName + '_';
    for (auto const& [seriesName, series] : *toolForces) {
      if (!series || seriesName.find(valueName) == std::string::npos) continue;
      auto const pilot = pilotNameOf(seriesName, valueNameAndUnderscore);
      if (bolts.contains(pilot)) continue;
      auto entry = rowOfPilot.find(pilot);
      if (entry == rowOfPilot.end()) {
        entry = rowOfPilot.emplace(pilot, rowOfPilot.size()).first;
        group.subGroups.resize(entry->second);
        appendItem(group, entry->first, std::vector<double>(valueNameToColumnIndex.size(), 0.0));
      }
      auto& row = group.subGroups[entry->second].items.front().maxValues;
      if (column < row.size()) row[column] = computeMaxValue(*series);
    }
  }
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
  RowMaker rows(*this, valueNameToColumnIndex);
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
  forEachVisibleStep(*m_simulationUnit, getSimulationResult(), [&](SimulationStep& step) {
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
                      [](SimulationStep& step) { return step.getNumberOfJoiningTongs() != 0; });
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
  forEachVisibleStep(*m_simulationUnit, getSimulationResult(), [&](SimulationStep& step) {
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
  forEachVisibleStep(*m_simulationUnit, getSimulationResult(), [&](SimulationStep& step) {
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
    if (!record) continue;
    auto const skin = record->getSkin(key);
    auto* const values = dynamic_cast<Skin<double>*>(skin.get());
    if (values == nullptr) continue;
    auto const& minimum = values->getRangeMinimum();
    auto const& maximum = values->getRangeMaximum();
    if (!minimum || !maximum) continue;
    double const candidate = std::abs(*minimum) > std::abs(*maximum) ? *minimum : *maximum;
    if (m_compare(current, candidate)) current = candidate;
  }
  return current;
}

void SimUnitMaxValuesProvider::getAllLineJoins(LineJoinMap& lineJoins) const {
  lineJoins.clear();
  if (!m_simulationUnit->hasVisibleSimulationSteps()) return;
  RecurringKeys recordsOf(lineJoins);
  forEachVisibleStep(*m_simulationUnit, getSimulationResult(), [&](SimulationStep& step) {
    recordsOf.startRound();
    std::for_each(step.beginLineJoinMap(), step.endLineJoinMap(), [&](auto const& entry) {
      auto const& lineJoin = entry.second;
      if (lineJoin) recordsOf[lineJoin->getDisplayName()].push_back(lineJoin);
    });
  });
}

void SimUnitMaxValuesProvider::getLineJoinsDefinedInCurrentSimUnit(LineJoinMap& lineJoins) const {
  lineJoins.clear();
  if (!m_simulationUnit->hasVisibleSimulationSteps()) return;
  DefinedJoins const definedHere(m_simulationUnit->getEvalIDOfJoinDefinedInSimUnitVector());
  RecurringKeys recordsOf(lineJoins);
  forEachVisibleStep(*m_simulationUnit, getSimulationResult(), [&](SimulationStep& step) {
    recordsOf.startRound();
    std::for_each(step.beginLineJoinMap(), step.endLineJoinMap(), [&](auto const& entry) {
      auto const& lineJoin = entry.second;
      if (lineJoin && definedHere.contains(lineJoin->getEvalSimulationUnitJoinGUID()))
        recordsOf[lineJoin->getDisplayName()].push_back(lineJoin);
    });
  });
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

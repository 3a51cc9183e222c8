#include "Business_TableProperties/SimUnitMaxValuesProvider.h"

#include <cmath>

#include "Business_TableProperties/FamilySections.h"
#include "Persistence_DaoAdapter/SolverTableDataKeys.h"
#include "VantaService_Translator/Translator.h"

namespace Kestrel {

namespace {

using DataType = MaxValueGroupContainer::DataType;

struct GreaterMagnitude {
  bool operator()(double current, double value) const { return std::abs(value) > std::abs(current); }
};

template <typename Compare>
double largest(StepValues<double> const& values, Compare const& compare) {
  double current = 0.0;
  values.forEachValue([&](double value) {
    if (compare(current, value)) current = value;
  });
  return current;
}

std::string translate(char const* text) {
  return Translator::translate("SimUnitMaxValuesProvider", text, nullptr, -1);
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
    default:
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
    ToolGrouping const& /*grouping*/, DataType dataType) const {
  return std::make_shared<MaxValueGroupContainer>(dataType, m_simulationUnit->getID());
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
  // The comparator of the constructor has no state, so it is called directly; any other one through a copy
  // per value.
  if (auto const* comparator = m_compare.target<GreaterMagnitude>()) return largest(values, *comparator);
  return largest(values, [this](double current, double value) {
    auto const compare = m_compare;
    return compare(current, value);
  });
}

void SimUnitMaxValuesProvider::assembleGroup(
    std::vector<std::string> const& itemIds, std::vector<std::string> const& itemNames,
    std::map<std::string, unsigned int> const& valueNameToColumnIndex, MaxValueGroup& group) const {
  if (itemIds.size() != itemNames.size()) return;
  auto const tangentialForce =
      valueNameToColumnIndex.find(SolverTableDataKeys::getNameOfJoinTangentialForce());
  group.subGroups.reserve(itemIds.size());
  for (std::size_t i = 0; i < itemIds.size(); ++i) {
    std::vector<double> row(valueNameToColumnIndex.size(), 0.0);
    auto const setMaxValue = [&](unsigned int column, StepValues<double>& series) {
      // A map of repeated names holds a column beyond the row, which has one value per entry.
      if (column < row.size()) row[column] = computeMaxValue(series);
    };
    if (auto const* toolForces = m_simulationUnit->getToolForces(itemIds[i])) {
      for (auto const& [quantity, series] : *toolForces) {
        auto const column = valueNameToColumnIndex.find(quantity);
        if (column != valueNameToColumnIndex.end() && series) setMaxValue(column->second, *series);
      }
    }
    if (tangentialForce != valueNameToColumnIndex.end()) {
      auto const series = m_simulationUnit->genGetJoinTangentialForceStepValues(itemIds[i]);
      if (series) setMaxValue(tangentialForce->second, *series);
    }
    group.subGroups.emplace_back().items.push_back({itemNames[i], std::move(row)});
  }
}

MaxValueGroup SimUnitMaxValuesProvider::genSection(SectionDefinition const& definition,
                                                   std::vector<std::string> const& itemIds,
                                                   std::vector<std::string> const& itemNames) const {
  MaxValueGroup section{translate(definition.name), definition.isTeachingGroup, definition.isForceGroup,
                        definition.limitTypes,      definition.valueNames,      {}};
  assembleGroup(itemIds, itemNames, createValueNameToColumnIndexMap(definition.valueNames), section);
  return section;
}

void SimUnitMaxValuesProvider::assembleClampGroupContainer(MaxValueGroupContainer& container,
                                                           DataType dataType, bool withTeaching) const {
  bool const isBolts = dataType == DataType::Bolts;
  std::vector<std::string> ids;
  m_simulationUnit->getToolStringIDsOfToolForceType(
      ids, isBolts ? ToolForceDataType::bolt : ToolForceDataType::clamp);
  if (ids.empty()) return;

  container.title = translate(isBolts ? "Bolts" : "Clamps");
  container.unitTitle = m_simulationUnit->getSimulationUnitName() + container.title;
  for (auto const& section : isBolts ? FamilySections::bolts() : FamilySections::clamps()) {
    if (section.isTeachingGroup && !withTeaching) continue;
    container.groups.push_back(genSection(section, ids, ids));
  }
}

}  // namespace Kestrel

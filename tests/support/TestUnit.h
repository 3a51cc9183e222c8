#pragma once

#include <initializer_list>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Business_SimulationResult/SimulationResult.h"
#include "Business_SimulationResult/SimulationUnit.h"
#include "Business_TableProperties/SimUnitMaxValuesProvider.h"

namespace Kestrel {

using DataType = MaxValueGroupContainer::DataType;
using Names = std::vector<std::string>;

/// The identifier that ends in the digit `digit`, all other digits being 0.
template <typename Id>
Id idEndingIn(char digit) {
  return Id(*GUIdentifier::fromString(std::string("00000000-0000-0000-0000-00000000000") + digit));
}

inline std::shared_ptr<StepValues<double>> series(std::vector<double> values) {
  return std::make_shared<StepValues<double>>(std::move(values));
}

/// The unit OP20 and its result, which a test fills.
struct TestUnit {
  using Series = std::pair<std::string, std::vector<double>>;

  SimulationUnit unit{idEndingIn<SimulationUnitId>('7'), "OP20"};
  std::vector<std::shared_ptr<SimulationStep>> steps;

  void addTool(std::string const& id, ToolForceDataType type, std::initializer_list<Series> forces = {}) {
    unit.addTool(id, type);
    for (auto const& [quantity, values] : forces) unit.addToolForce(id, quantity, series(values));
  }

  SimulationStep& addStep() { return *steps.emplace_back(std::make_shared<SimulationStep>()); }
  void addStepWithoutData() { steps.push_back(nullptr); }

  [[nodiscard]] std::shared_ptr<SimulationResult> result() const {
    return std::make_shared<SimulationResult>(steps);
  }
};

inline std::shared_ptr<EvalSuctionZone> suctionZone(std::string name, bool active) {
  return std::make_shared<EvalSuctionZone>(std::move(name), active);
}

inline std::shared_ptr<EvalJoiningTong> joiningTong(std::string id, std::string name, unsigned int state) {
  return std::make_shared<EvalJoiningTong>(std::move(id), std::move(name),
                                           BodyJoinInterface::JoinState(state));
}

inline std::shared_ptr<SimulationBodyJoin> spotWeld(std::string id, std::string name, unsigned int state) {
  return std::make_shared<SimulationBodyJoin>(std::move(id), std::move(name),
                                              BodyJoinInterface::JoinState(state));
}

inline std::shared_ptr<SimulationBodyLineJoin> lineJoin(std::string id, std::string name, unsigned int state,
                                                        EvalSimulationUnitJoinGUID const& definition = {}) {
  return std::make_shared<SimulationBodyLineJoin>(std::move(id), std::move(name),
                                                  BodyJoinInterface::JoinState(state), definition);
}

/// A row of a section with the name of the sub-group that holds it.
struct Row {
  std::string subGroup;
  std::string name;
  std::vector<double> maxValues;

  friend bool operator==(Row const&, Row const&) = default;
  friend std::ostream& operator<<(std::ostream& out, Row const& row) {
    out << '{' << row.subGroup << '|' << row.name << ':';
    for (double const value : row.maxValues) out << ' ' << value;
    return out << '}';
  }
};

inline std::vector<Row> rowsOf(MaxValueGroup const& group) {
  std::vector<Row> rows;
  for (auto const& subGroup : group.subGroups) {
    for (auto const& item : subGroup.items) rows.push_back({subGroup.name, item.name, item.maxValues});
  }
  return rows;
}

inline std::vector<unsigned int> numbersOf(std::vector<TablePropertyLimitType> const& limitTypes) {
  std::vector<unsigned int> numbers;
  numbers.reserve(limitTypes.size());
  for (auto const limitType : limitTypes) numbers.push_back(static_cast<unsigned int>(limitType));
  return numbers;
}

/// A section without its rows; limit types by number.
struct Section {
  std::string name;
  bool isTeachingGroup;
  bool isForceGroup;
  std::vector<unsigned int> limitTypes;
  Names valueNames;

  friend bool operator==(Section const&, Section const&) = default;
  friend std::ostream& operator<<(std::ostream& out, Section const& section) {
    out << section.name << (section.isTeachingGroup ? " teaching" : "")
        << (section.isForceGroup ? " force" : "");
    for (auto const limitType : section.limitTypes) out << ' ' << limitType;
    for (auto const& valueName : section.valueNames) out << ' ' << valueName;
    return out;
  }
};

inline Section sectionOf(MaxValueGroup const& group) {
  return {group.name, group.isTeachingGroup, group.isForceGroup, numbersOf(group.limitTypes),
          group.valueNames};
}

/// Whether a family routine left `table` as the constructor made it.
inline bool isUntouched(MaxValueGroupContainer const& table) {
  return table.groups.empty() && table.elementNames.empty() && table.valuesAreValid.empty() &&
         table.invalidValuesText.empty() && table.invalidValuesNameAppendix.empty() &&
         table.unitTitle.empty() && table.title.empty() && table.isDefaultFamily;
}

}  // namespace Kestrel

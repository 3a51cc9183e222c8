#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Business_EvaluationInterface/SimulationUnitId.h"
#include "Business_SimulationResult/EvalGUIDs.h"
#include "Business_SimulationResult/SequenceMap.h"
#include "Business_SimulationResult/StepValues.h"
#include "Business_SimulationResult/ToolForceDataType.h"

namespace Kestrel {

/// One unit of a process simulation (an operation, a station) with the result series of its tools.
///
/// A unit is filled on one thread and may then be read on any number of threads. References and pointers that
/// it returns are valid as long as the unit and no further tool or series is added.
class SimulationUnit {
 public:
  /// The series of one tool: (quantity name, series) in stored order.
  using ToolForces = SequenceMap<std::string, std::shared_ptr<StepValues<double>>>;

  /// What the visible step bounds read in a unit without visible steps.
  static constexpr unsigned int s_noStep = 0xFFFFFFFF;

  /// A unit without tools, joins and visible steps.
  SimulationUnit(SimulationUnitId const& id, std::string name);
  SimulationUnit(SimulationUnit const&) = delete;
  SimulationUnit& operator=(SimulationUnit const&) = delete;
  ~SimulationUnit();

  /// The identifier by which limits and outputs know the unit.
  [[nodiscard]] SimulationUnitId const& getID() const { return m_id; }
  /// The name that the user sees; need not be unique.
  [[nodiscard]] std::string const& getSimulationUnitName() const { return m_name; }

  /// Appends the identifiers of the tools of one kind to `ids`, in the order in which the tools were added.
  void getToolStringIDsOfToolForceType(std::vector<std::string>& ids, ToolForceDataType type) const;

  /// The series of the tool `toolId`; null for a tool that the unit does not have. Owned by the unit. O(1).
  [[nodiscard]] ToolForces* getToolForces(std::string const& toolId) const;

  /// A new series of the join's tangential force; an empty series where none is stored. Shares the numbers.
  [[nodiscard]] std::unique_ptr<StepValues<double>> genGetJoinTangentialForceStepValues(
      std::string const& toolId) const;

  /// Whether `setVisibleSteps` has named steps.
  [[nodiscard]] bool hasVisibleSimulationSteps() const { return m_firstVisibleStep != s_noStep; }
  ///@{
  /// Inclusive bounds of the steps that the user sees; the first may be greater than the last (an empty
  /// range).
  /// Both are `s_noStep` in a unit without visible steps.
  [[nodiscard]] unsigned int getFirstVisibleStep() const { return m_firstVisibleStep; }
  [[nodiscard]] unsigned int getLastVisibleStep() const { return m_lastVisibleStep; }
  ///@}

  /// The identifiers of the joins that are defined in this unit.
  [[nodiscard]] std::vector<EvalSimulationUnitJoinGUID> const& getEvalIDOfJoinDefinedInSimUnitVector() const {
    return m_joinsDefinedInUnit;
  }

  /// Adds a tool without series. Returns false, and adds nothing, when the unit already has a tool `toolId`.
  bool addTool(std::string const& toolId, ToolForceDataType type);

  /// Adds a tool with its series, the names and the tangential force of which are as below. Returns false,
  /// and adds nothing, as above.
  bool addTool(std::string toolId, ToolForceDataType type, ToolForces forces,
               std::optional<StepValues<double>> tangentialForce);

  /// Appends a series to the tool `toolId`, which the unit must have (else std::out_of_range). The series of
  /// the total tool force is kept under its business name, all others under `quantity` as given.
  void addToolForce(std::string const& toolId, std::string const& quantity,
                    std::shared_ptr<StepValues<double>> series);

  /// Stores the tangential force of the join `toolId`, which the unit must have (else std::out_of_range).
  void setJoinTangentialForce(std::string const& toolId, StepValues<double> series);

  /// Names the bounds of the visible steps, both inclusive. `first` may be greater than `last`: an empty
  /// range.
  void setVisibleSteps(unsigned int first, unsigned int last);
  /// Adds the identifier of a join that is defined in this unit, behind the others.
  void addJoinDefinedInSimUnit(EvalSimulationUnitJoinGUID const& id) { m_joinsDefinedInUnit.push_back(id); }

 private:
  struct Tool;

  Tool& tool(std::string const& toolId);

  SimulationUnitId m_id;
  std::string m_name;
  std::vector<std::unique_ptr<Tool>> m_tools;
  std::unordered_map<std::string_view, Tool*> m_toolsById;
  std::vector<EvalSimulationUnitJoinGUID> m_joinsDefinedInUnit;
  unsigned int m_firstVisibleStep = s_noStep;
  unsigned int m_lastVisibleStep = s_noStep;
};

}  // namespace Kestrel

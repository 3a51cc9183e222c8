#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Business_EvaluationInterface/SimulationUnitId.h"
#include "Business_SimulationResult/EvalGUIDs.h"
#include "Business_SimulationResult/SequenceMap.h"
#include "Business_SimulationResult/StepValues.h"
#include "Business_SimulationResult/ToolForceDataType.h"

namespace Kestrel {

namespace StrictHost {

/// A unit as the application fills it in.
struct UnitContent {
  using Series = std::pair<std::string, std::shared_ptr<StepValues<double>>>;

  SimulationUnitId id = {};
  std::string name = {};
  std::vector<std::pair<unsigned int, std::string>> tools = {};  ///< (kind, string identifier)
  std::map<std::string, std::vector<Series>> toolForces = {};    ///< by string identifier
  std::map<std::string, std::vector<double>> tangentialForces = {};
  bool hasVisibleSteps = false;  ///< whatever the bounds are
  unsigned int firstVisibleStep = 0xFFFFFFFF;
  unsigned int lastVisibleStep = 0xFFFFFFFF;
  std::vector<EvalSimulationUnitJoinGUID> joinsDefinedInUnit = {};
  std::function<void()> onHasVisibleSteps = [] {};  ///< called when the unit is asked
};

}  // namespace StrictHost

class SimulationUnit {
 public:
  explicit SimulationUnit(StrictHost::UnitContent content);
  SimulationUnit(SimulationUnit const&) = delete;

  SimulationUnitId const& getID() const;
  std::string const& getSimulationUnitName() const;
  void getToolStringIDsOfToolForceType(std::vector<std::string>& out, ToolForceDataType type) const;
  SequenceMap<std::string, std::shared_ptr<StepValues<double>>>* getToolForces(
      std::string const& toolId) const;
  std::unique_ptr<StepValues<double>> genGetJoinTangentialForceStepValues(std::string const& toolId) const;
  bool hasVisibleSimulationSteps() const;
  unsigned int getFirstVisibleStep() const;
  unsigned int getLastVisibleStep() const;
  std::vector<EvalSimulationUnitJoinGUID> getEvalIDOfJoinDefinedInSimUnitVector() const;

 private:
  StrictHost::UnitContent m_content;
  std::map<std::string, std::unique_ptr<SequenceMap<std::string, std::shared_ptr<StepValues<double>>>>>
      m_toolForces;
};

}  // namespace Kestrel

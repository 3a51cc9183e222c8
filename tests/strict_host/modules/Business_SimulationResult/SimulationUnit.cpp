#include "Business_SimulationResult/SimulationUnit.h"

#include "StrictHost/CallLog.h"

namespace Kestrel {

using StrictHost::callLog;

SimulationUnit::SimulationUnit(StrictHost::UnitContent content) : m_content(std::move(content)) {
  for (auto const& [toolId, series] : m_content.toolForces)
    m_toolForces.emplace(
        toolId, std::make_unique<SequenceMap<std::string, std::shared_ptr<StepValues<double>>>>(series));
}

SimulationUnitId const& SimulationUnit::getID() const {
  callLog().push_back("getID");
  return m_content.id;
}

std::string const& SimulationUnit::getSimulationUnitName() const {
  callLog().push_back("getSimulationUnitName");
  return m_content.name;
}

void SimulationUnit::getToolStringIDsOfToolForceType(std::vector<std::string>& out,
                                                     ToolForceDataType type) const {
  auto const kind = static_cast<unsigned int>(type);
  callLog().push_back("getToolStringIDsOfToolForceType " + std::to_string(kind));
  for (auto const& [kindOfTool, toolId] : m_content.tools)
    if (kindOfTool == kind) out.push_back(toolId);
}

SequenceMap<std::string, std::shared_ptr<StepValues<double>>>* SimulationUnit::getToolForces(
    std::string const& toolId) const {
  callLog().push_back("getToolForces " + toolId);
  auto const found = m_toolForces.find(toolId);
  return found != m_toolForces.end() ? found->second.get() : nullptr;
}

std::unique_ptr<StepValues<double>> SimulationUnit::genGetJoinTangentialForceStepValues(
    std::string const& toolId) const {
  callLog().push_back("genGetJoinTangentialForceStepValues " + toolId);
  auto const found = m_content.tangentialForces.find(toolId);
  return std::make_unique<StepValues<double>>(
      found != m_content.tangentialForces.end() ? found->second : std::vector<double>());
}

bool SimulationUnit::hasVisibleSimulationSteps() const {
  callLog().push_back("hasVisibleSimulationSteps");
  m_content.onHasVisibleSteps();
  return m_content.hasVisibleSteps;
}

unsigned int SimulationUnit::getFirstVisibleStep() const { return m_content.firstVisibleStep; }

unsigned int SimulationUnit::getLastVisibleStep() const { return m_content.lastVisibleStep; }

std::vector<EvalSimulationUnitJoinGUID> SimulationUnit::getEvalIDOfJoinDefinedInSimUnitVector() const {
  callLog().push_back("getEvalIDOfJoinDefinedInSimUnitVector");
  return m_content.joinsDefinedInUnit;
}

}  // namespace Kestrel

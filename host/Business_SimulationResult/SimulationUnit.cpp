#include "Business_SimulationResult/SimulationUnit.h"

#include <stdexcept>
#include <utility>

#include "Business_IncSimulationPrimitives/GlobalForcesDefinition.h"
#include "Business_IncSimulationPrimitives/ToolForceBusinessName.h"

namespace Kestrel {

struct SimulationUnit::Tool {
  std::string id;
  ToolForceDataType type;
  ToolForces forces;
  std::optional<StepValues<double>> tangentialForce;
};

namespace {

void useBusinessName(std::string& quantity) {
  if (quantity == GlobalForcesDefinition::s_totalToolForces)
    quantity = ToolForceBusinessName::getTranslated(quantity);
}

}  // namespace

SimulationUnit::SimulationUnit(SimulationUnitId const& id, std::string name)
    : m_id(id), m_name(std::move(name)) {}

SimulationUnit::~SimulationUnit() = default;

void SimulationUnit::getToolStringIDsOfToolForceType(std::vector<std::string>& ids,
                                                     ToolForceDataType type) const {
  for (auto const& tool : m_tools) {
    if (tool->type == type) ids.push_back(tool->id);
  }
}

SimulationUnit::ToolForces* SimulationUnit::getToolForces(std::string const& toolId) const {
  auto const found = m_toolsById.find(toolId);
  return found == m_toolsById.end() ? nullptr : &found->second->forces;
}

std::unique_ptr<StepValues<double>> SimulationUnit::genGetJoinTangentialForceStepValues(
    std::string const& toolId) const {
  auto const found = m_toolsById.find(toolId);
  if (found == m_toolsById.end() || !found->second->tangentialForce)
    return std::make_unique<StepValues<double>>();
  return std::make_unique<StepValues<double>>(*found->second->tangentialForce);
}

bool SimulationUnit::addTool(std::string const& toolId, ToolForceDataType type) {
  return addTool(toolId, type, {}, std::nullopt);
}

bool SimulationUnit::addTool(std::string toolId, ToolForceDataType type, ToolForces forces,
                             std::optional<StepValues<double>> tangentialForce) {
  if (m_toolsById.contains(toolId)) return false;
  for (auto& [quantity, series] : forces) useBusinessName(quantity);
  auto tool =
      std::make_unique<Tool>(Tool{std::move(toolId), type, std::move(forces), std::move(tangentialForce)});
  m_toolsById.emplace(tool->id, tool.get());
  m_tools.push_back(std::move(tool));
  return true;
}

void SimulationUnit::addToolForce(std::string const& toolId, std::string const& quantity,
                                  std::shared_ptr<StepValues<double>> series) {
  auto name = quantity;
  useBusinessName(name);
  tool(toolId).forces.append(std::move(name), std::move(series));
}

void SimulationUnit::setJoinTangentialForce(std::string const& toolId, StepValues<double> series) {
  tool(toolId).tangentialForce = std::move(series);
}

void SimulationUnit::setVisibleSteps(unsigned int first, unsigned int last) {
  m_firstVisibleStep = first;
  m_lastVisibleStep = last;
}

SimulationUnit::Tool& SimulationUnit::tool(std::string const& toolId) {
  auto const found = m_toolsById.find(toolId);
  if (found == m_toolsById.end()) throw std::out_of_range("the simulation unit has no tool " + toolId);
  return *found->second;
}

}  // namespace Kestrel

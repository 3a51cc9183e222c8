#include "Business_SimulationResult/SimulationResult.h"

#include <utility>

namespace Kestrel {

SimulationResult::SimulationResult(std::vector<std::shared_ptr<SimulationStep>> steps)
    : m_steps(std::move(steps)) {}

std::shared_ptr<SimulationStep> SimulationResult::getStep(unsigned int step) const {
  return step < m_steps.size() ? m_steps[step] : nullptr;
}

}  // namespace Kestrel

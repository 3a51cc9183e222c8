#include "Business_SimulationResult/SimulationResult.h"

#include "StrictHost/CallLog.h"

namespace Kestrel {

std::shared_ptr<SimulationStep> SimulationResult::getStep(unsigned int step) {
  StrictHost::callLog().push_back("getStep " + std::to_string(step));
  auto const found = m_steps.find(step);
  return found != m_steps.end() ? found->second : nullptr;
}

}  // namespace Kestrel

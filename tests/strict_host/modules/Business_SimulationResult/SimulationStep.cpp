#include "Business_SimulationResult/SimulationStep.h"

namespace Kestrel {

std::shared_ptr<EvalJoiningTong> SimulationStep::getJoiningTongByID(std::string const& id) {
  for (auto const& tong : m_content.joiningTongs)
    if (tong && tong->getJoiningTongStringID() == id) return tong;
  return nullptr;
}

}  // namespace Kestrel

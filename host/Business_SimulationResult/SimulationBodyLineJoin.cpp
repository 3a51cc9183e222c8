#include "Business_SimulationResult/SimulationBodyLineJoin.h"

#include <utility>

namespace Kestrel {

SimulationBodyLineJoin::SimulationBodyLineJoin(std::string stringId, std::string displayName,
                                               BodyJoinInterface::JoinState state,
                                               EvalSimulationUnitJoinGUID const& simulationUnitJoin)
    : m_stringId(std::move(stringId)),
      m_displayName(std::move(displayName)),
      m_state(state),
      m_simulationUnitJoin(simulationUnitJoin) {}

std::shared_ptr<SkinBase> SimulationBodyLineJoin::getSkin(SkinKey const& key) const {
  auto const found = m_skins.find(key);
  return found == m_skins.end() ? nullptr : found->second;
}

void SimulationBodyLineJoin::setSkin(SkinKey const& key, std::shared_ptr<SkinBase> skin) {
  m_skins.insert_or_assign(key, std::move(skin));
}

}  // namespace Kestrel

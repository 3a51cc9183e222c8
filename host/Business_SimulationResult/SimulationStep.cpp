#include "Business_SimulationResult/SimulationStep.h"

#include <utility>

namespace Kestrel {

std::shared_ptr<EvalJoiningTong> SimulationStep::getJoiningTongByID(std::string const& id) const {
  auto const found = m_joiningTongIndex.find(id);
  return found == m_joiningTongIndex.end() ? nullptr : m_joiningTongs[found->second];
}

bool SimulationStep::addSuctionZone(EvalSuctionZoneGUID const& id, std::shared_ptr<EvalSuctionZone> zone) {
  return m_suctionZones.emplace(id, std::move(zone)).second;
}

bool SimulationStep::addJoin(EvalJoinGUID const& id, std::shared_ptr<SimulationBodyJoin> join) {
  return m_joins.emplace(id, std::move(join)).second;
}

bool SimulationStep::addLineJoin(EvalLineJoinGUID const& id,
                                 std::shared_ptr<SimulationBodyLineJoin> lineJoin) {
  return m_lineJoins.emplace(id, std::move(lineJoin)).second;
}

void SimulationStep::addJoiningTong(std::shared_ptr<EvalJoiningTong> tong) {
  if (tong) m_joiningTongIndex.emplace(tong->getJoiningTongStringID(), m_joiningTongs.size());
  m_joiningTongs.push_back(std::move(tong));
}

}  // namespace Kestrel

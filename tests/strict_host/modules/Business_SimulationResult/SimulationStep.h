#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Business_IncSimulationPrimitives/EvalJoiningTong.h"
#include "Business_IncSimulationPrimitives/EvalSuctionZone.h"
#include "Business_SimulationResult/EvalGUIDs.h"
#include "Business_SimulationResult/SimulationBodyJoin.h"
#include "Business_SimulationResult/SimulationBodyLineJoin.h"

namespace Kestrel {

namespace StrictHost {

/// The records of a step, as the application fills them in.
struct StepContent {
  std::map<EvalSuctionZoneGUID, std::shared_ptr<EvalSuctionZone>> suctionZones = {};
  std::vector<std::shared_ptr<EvalJoiningTong>> joiningTongs = {};
  std::map<EvalJoinGUID, std::shared_ptr<SimulationBodyJoin>> joins = {};
  std::map<EvalLineJoinGUID, std::shared_ptr<SimulationBodyLineJoin>> lineJoins = {};
};

}  // namespace StrictHost

class SimulationStep {
 public:
  explicit SimulationStep(StrictHost::StepContent content) : m_content(std::move(content)) {}
  SimulationStep(SimulationStep const&) = delete;

  auto beginSuctionZoneMap() { return m_content.suctionZones.begin(); }
  auto endSuctionZoneMap() { return m_content.suctionZones.end(); }
  std::size_t getNumberOfJoiningTongs() const { return m_content.joiningTongs.size(); }
  std::shared_ptr<EvalJoiningTong> getJoiningTongByID(std::string const& id);
  auto beginJoiningTong() { return m_content.joiningTongs.begin(); }
  auto endJoiningTong() { return m_content.joiningTongs.end(); }
  auto beginJoinMap() { return m_content.joins.begin(); }
  auto endJoinMap() { return m_content.joins.end(); }
  auto beginLineJoinMap() { return m_content.lineJoins.begin(); }
  auto endLineJoinMap() { return m_content.lineJoins.end(); }

 private:
  StrictHost::StepContent m_content;
};

}  // namespace Kestrel

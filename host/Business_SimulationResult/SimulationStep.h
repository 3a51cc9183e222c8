#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Business_IncSimulationPrimitives/EvalJoiningTong.h"
#include "Business_IncSimulationPrimitives/EvalSuctionZone.h"
#include "Business_SimulationResult/EvalGUIDs.h"
#include "Business_SimulationResult/SimulationBodyJoin.h"
#include "Business_SimulationResult/SimulationBodyLineJoin.h"

namespace Kestrel {

/// The records of one simulation step. A record may be null.
class SimulationStep {
 public:
  using SuctionZoneMap = std::map<EvalSuctionZoneGUID, std::shared_ptr<EvalSuctionZone>>;
  using JoiningTongs = std::vector<std::shared_ptr<EvalJoiningTong>>;
  using JoinMap = std::map<EvalJoinGUID, std::shared_ptr<SimulationBodyJoin>>;
  using LineJoinMap = std::map<EvalLineJoinGUID, std::shared_ptr<SimulationBodyLineJoin>>;

  SimulationStep() = default;
  SimulationStep(SimulationStep const&) = delete;
  SimulationStep& operator=(SimulationStep const&) = delete;

  [[nodiscard]] SuctionZoneMap::const_iterator beginSuctionZoneMap() const { return m_suctionZones.begin(); }
  [[nodiscard]] SuctionZoneMap::const_iterator endSuctionZoneMap() const { return m_suctionZones.end(); }

  [[nodiscard]] std::size_t getNumberOfJoiningTongs() const { return m_joiningTongs.size(); }
  /// The tong with the string identifier `id`, the first of several; empty where there is none. O(1).
  [[nodiscard]] std::shared_ptr<EvalJoiningTong> getJoiningTongByID(std::string const& id) const;
  /// The tongs in the order in which they were added.
  [[nodiscard]] JoiningTongs::const_iterator beginJoiningTong() const { return m_joiningTongs.begin(); }
  [[nodiscard]] JoiningTongs::const_iterator endJoiningTong() const { return m_joiningTongs.end(); }

  [[nodiscard]] JoinMap::const_iterator beginJoinMap() const { return m_joins.begin(); }
  [[nodiscard]] JoinMap::const_iterator endJoinMap() const { return m_joins.end(); }

  [[nodiscard]] LineJoinMap::const_iterator beginLineJoinMap() const { return m_lineJoins.begin(); }
  [[nodiscard]] LineJoinMap::const_iterator endLineJoinMap() const { return m_lineJoins.end(); }

  /// The adders return false, and add nothing, when the step already has a record under the identifier.
  bool addSuctionZone(EvalSuctionZoneGUID const& id, std::shared_ptr<EvalSuctionZone> zone);
  bool addJoin(EvalJoinGUID const& id, std::shared_ptr<SimulationBodyJoin> join);
  bool addLineJoin(EvalLineJoinGUID const& id, std::shared_ptr<SimulationBodyLineJoin> lineJoin);
  void addJoiningTong(std::shared_ptr<EvalJoiningTong> tong);

 private:
  SuctionZoneMap m_suctionZones;
  JoiningTongs m_joiningTongs;
  std::unordered_map<std::string_view, std::size_t> m_joiningTongIndex;  // views into the tongs themselves
  JoinMap m_joins;
  LineJoinMap m_lineJoins;
};

}  // namespace Kestrel

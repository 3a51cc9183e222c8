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
  /// Records of suction zones, ordered by identifier.
  using SuctionZoneMap = std::map<EvalSuctionZoneGUID, std::shared_ptr<EvalSuctionZone>>;
  /// Records of joining tongs, in the order in which they were added.
  using JoiningTongs = std::vector<std::shared_ptr<EvalJoiningTong>>;
  /// Records of spot welds, ordered by identifier.
  using JoinMap = std::map<EvalJoinGUID, std::shared_ptr<SimulationBodyJoin>>;
  /// Records of line joins, ordered by identifier.
  using LineJoinMap = std::map<EvalLineJoinGUID, std::shared_ptr<SimulationBodyLineJoin>>;

  SimulationStep() = default;
  SimulationStep(SimulationStep const&) = delete;
  SimulationStep& operator=(SimulationStep const&) = delete;

  ///@{
  /// The first suction zone by identifier, and behind the last one. Valid as long as the step.
  [[nodiscard]] SuctionZoneMap::const_iterator beginSuctionZoneMap() const { return m_suctionZones.begin(); }
  [[nodiscard]] SuctionZoneMap::const_iterator endSuctionZoneMap() const { return m_suctionZones.end(); }
  ///@}

  /// How many records of tongs the step holds.
  [[nodiscard]] std::size_t getNumberOfJoiningTongs() const { return m_joiningTongs.size(); }
  /// The tong with the string identifier `id`, the first of several; empty where there is none. O(1).
  [[nodiscard]] std::shared_ptr<EvalJoiningTong> getJoiningTongByID(std::string const& id) const;
  /// The tongs in the order in which they were added.
  [[nodiscard]] JoiningTongs::const_iterator beginJoiningTong() const { return m_joiningTongs.begin(); }
  /// Behind the last tong.
  [[nodiscard]] JoiningTongs::const_iterator endJoiningTong() const { return m_joiningTongs.end(); }

  ///@{
  /// The first spot weld by identifier, and behind the last one. Valid as long as the step.
  [[nodiscard]] JoinMap::const_iterator beginJoinMap() const { return m_joins.begin(); }
  [[nodiscard]] JoinMap::const_iterator endJoinMap() const { return m_joins.end(); }
  ///@}

  ///@{
  /// The first line join by identifier, and behind the last one. Valid as long as the step.
  [[nodiscard]] LineJoinMap::const_iterator beginLineJoinMap() const { return m_lineJoins.begin(); }
  [[nodiscard]] LineJoinMap::const_iterator endLineJoinMap() const { return m_lineJoins.end(); }
  ///@}

  ///@{
  /// Adds a record under an identifier. Returns false, and adds nothing, when the step has one under it
  /// already.
  bool addSuctionZone(EvalSuctionZoneGUID const& id, std::shared_ptr<EvalSuctionZone> zone);
  bool addJoin(EvalJoinGUID const& id, std::shared_ptr<SimulationBodyJoin> join);
  bool addLineJoin(EvalLineJoinGUID const& id, std::shared_ptr<SimulationBodyLineJoin> lineJoin);
  ///@}

  /// Adds a tong behind the others.
  void addJoiningTong(std::shared_ptr<EvalJoiningTong> tong);

 private:
  SuctionZoneMap m_suctionZones;
  JoiningTongs m_joiningTongs;
  std::unordered_map<std::string_view, std::size_t> m_joiningTongIndex;  // views into the tongs themselves
  JoinMap m_joins;
  LineJoinMap m_lineJoins;
};

}  // namespace Kestrel

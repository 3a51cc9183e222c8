#pragma once

#include <map>
#include <memory>
#include <string>

#include "Business_IncSimulationPrimitives/BodyJoinInterface.h"
#include "Business_SimulationResult/EvalGUIDs.h"
#include "Business_Skin/SkinBase.h"
#include "Business_Skin/SkinKey.h"

namespace Kestrel {

/// A line join (a weld seam, an adhesive bead) in one simulation step, with its result fields.
class SimulationBodyLineJoin {
 public:
  /// A record of the join `stringId`, shown as `displayName`, that was defined as `simulationUnitJoin`;
  /// without fields.
  SimulationBodyLineJoin(std::string stringId, std::string displayName, BodyJoinInterface::JoinState state,
                         EvalSimulationUnitJoinGUID const& simulationUnitJoin);

  /// The identifier of the join, the same in every step.
  [[nodiscard]] std::string const& getStringID() const { return m_stringId; }
  /// The name that the user sees.
  [[nodiscard]] std::string const& getDisplayName() const { return m_displayName; }
  /// How far the join has come in this step.
  [[nodiscard]] BodyJoinInterface::JoinState getState() const { return m_state; }
  /// Where the join was defined.
  [[nodiscard]] EvalSimulationUnitJoinGUID const& getEvalSimulationUnitJoinGUID() const {
    return m_simulationUnitJoin;
  }

  /// The result field stored under `key`; empty where there is none.
  [[nodiscard]] std::shared_ptr<SkinBase> getSkin(SkinKey const& key) const;

  /// Stores `skin` under `key`, in place of one stored before.
  void setSkin(SkinKey const& key, std::shared_ptr<SkinBase> skin);

 private:
  std::string m_stringId;
  std::string m_displayName;
  BodyJoinInterface::JoinState m_state;
  EvalSimulationUnitJoinGUID m_simulationUnitJoin;
  std::map<SkinKey, std::shared_ptr<SkinBase>> m_skins;
};

}  // namespace Kestrel

#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Business_IncSimulationPrimitives/BodyJoinInterface.h"
#include "Business_SimulationResult/EvalGUIDs.h"
#include "Business_Skin/SkinBase.h"
#include "Business_Skin/SkinKey.h"

namespace Kestrel {

class SimulationBodyLineJoin {
 public:
  using Skins = std::vector<std::pair<std::string, std::shared_ptr<SkinBase>>>;

  SimulationBodyLineJoin(std::string stringId, std::string displayName, unsigned int state,
                         unsigned int definition, Skins skins)
      : m_stringId(std::move(stringId)),
        m_displayName(std::move(displayName)),
        m_state(state),
        m_definition(definition),
        m_skins(std::move(skins)) {}
  SimulationBodyLineJoin(SimulationBodyLineJoin const&) = delete;

  std::string getDisplayName() const { return m_displayName; }
  std::string getStringID() const { return m_stringId; }
  BodyJoinInterface::JoinState getState() { return BodyJoinInterface::JoinState(m_state); }
  EvalSimulationUnitJoinGUID getEvalSimulationUnitJoinGUID() const { return m_definition; }
  std::shared_ptr<SkinBase> getSkin(SkinKey const& key);

 private:
  std::string m_stringId;
  std::string m_displayName;
  unsigned int m_state;
  EvalSimulationUnitJoinGUID m_definition;
  Skins m_skins;
};

}  // namespace Kestrel

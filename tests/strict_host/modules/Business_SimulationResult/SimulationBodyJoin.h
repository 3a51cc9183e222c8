#pragma once

#include <string>
#include <utility>

#include "Business_IncSimulationPrimitives/BodyJoinInterface.h"

namespace Kestrel {

class SimulationBodyJoin {
 public:
  SimulationBodyJoin(std::string stringId, std::string name, unsigned int state)
      : m_stringId(std::move(stringId)), m_name(std::move(name)), m_state(state) {}
  SimulationBodyJoin(SimulationBodyJoin const&) = delete;
  virtual ~SimulationBodyJoin() = default;

  virtual std::string const& getStringID() { return m_stringId; }
  virtual std::string getName(int form) const { return form == 0 ? m_name : "another form of " + m_name; }
  BodyJoinInterface::JoinState getState() { return BodyJoinInterface::JoinState(m_state); }

 private:
  std::string m_stringId;
  std::string m_name;
  unsigned int m_state;
};

}  // namespace Kestrel

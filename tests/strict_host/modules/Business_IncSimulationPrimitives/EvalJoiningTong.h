#pragma once

#include <string>
#include <utility>

#include "Business_IncSimulationPrimitives/BodyJoinInterface.h"

namespace Kestrel {

class EvalJoiningTong {
 public:
  EvalJoiningTong(std::string stringId, std::string presentationName, unsigned int state)
      : m_stringId(std::move(stringId)), m_presentationName(std::move(presentationName)), m_state(state) {}
  EvalJoiningTong(EvalJoiningTong const&) = delete;

  std::string getJoiningTongStringID() const { return m_stringId; }
  std::string getTongPresentationName() const { return m_presentationName; }
  BodyJoinInterface::JoinState getState() { return BodyJoinInterface::JoinState(m_state); }

 private:
  std::string m_stringId;
  std::string m_presentationName;
  unsigned int m_state;
};

}  // namespace Kestrel

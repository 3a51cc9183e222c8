#pragma once

#include <string>
#include <utility>

#include "Business_IncSimulationPrimitives/BodyJoinInterface.h"

namespace Kestrel {

/// A joining tong in one simulation step; never changes once it is made.
class EvalJoiningTong {
 public:
  /// A record of the tong that the unit lists as `stringId`, shown as `presentationName`.
  EvalJoiningTong(std::string stringId, std::string presentationName, BodyJoinInterface::JoinState state)
      : m_stringId(std::move(stringId)), m_presentationName(std::move(presentationName)), m_state(state) {}

  /// The identifier under which the unit lists the tong as a tool.
  [[nodiscard]] std::string const& getJoiningTongStringID() const { return m_stringId; }
  /// The name that the user sees.
  [[nodiscard]] std::string const& getTongPresentationName() const { return m_presentationName; }
  /// How far the tong's join has come in this step.
  [[nodiscard]] BodyJoinInterface::JoinState getState() const { return m_state; }

 private:
  std::string m_stringId;
  std::string m_presentationName;
  BodyJoinInterface::JoinState m_state;
};

}  // namespace Kestrel

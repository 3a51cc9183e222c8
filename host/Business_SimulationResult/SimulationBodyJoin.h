#pragma once

#include <string>
#include <utility>

#include "Business_IncSimulationPrimitives/BodyJoinInterface.h"

namespace Kestrel {

/// A spot weld in one simulation step; never changes once it is made.
class SimulationBodyJoin : public BodyJoinInterface {
 public:
  /// A record of the weld that the unit lists as `stringId`, with the user's name for it.
  SimulationBodyJoin(std::string stringId, std::string name, JoinState state)
      : m_stringId(std::move(stringId)), m_name(std::move(name)), m_state(state) {}

  [[nodiscard]] std::string const& getStringID() const override { return m_stringId; }
  /// The substitute knows the plain name only and gives it for every form.
  [[nodiscard]] std::string getName(int /*form*/) const override { return m_name; }
  /// How far the weld has come in this step.
  [[nodiscard]] JoinState getState() const { return m_state; }

 private:
  std::string m_stringId;
  std::string m_name;
  JoinState m_state;
};

}  // namespace Kestrel

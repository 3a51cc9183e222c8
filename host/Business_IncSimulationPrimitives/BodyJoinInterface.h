#pragma once

#include <cstdint>
#include <string>

namespace Kestrel {

/// What every record of a join has in common, whatever joins the bodies.
class BodyJoinInterface {
 public:
  /// How far a join has come. The numbers are the solver's; any 32-bit number can occur.
  enum class JoinState : std::uint32_t {};

  virtual ~BodyJoinInterface() = default;

  /// The identifier under which the unit lists the join as a tool.
  [[nodiscard]] virtual std::string const& getStringID() const = 0;

  /// The name that the user gave to the join; form 0 is the plain name.
  [[nodiscard]] virtual std::string getName(int form) const = 0;

 protected:
  BodyJoinInterface() = default;
  /// For derived classes alone, so that no record is cut.
  BodyJoinInterface(BodyJoinInterface const&) = default;
  /// As the copy.
  BodyJoinInterface& operator=(BodyJoinInterface const&) = default;
};

}  // namespace Kestrel

#pragma once

#include <cstdint>

namespace Kestrel {

class BodyJoinInterface {
 public:
  enum class JoinState : std::uint32_t {};
};

}  // namespace Kestrel

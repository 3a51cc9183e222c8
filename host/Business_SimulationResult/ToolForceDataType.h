#pragma once

#include <cstdint>

namespace Kestrel {

/// What kind of tool a series of forces belongs to.
enum class ToolForceDataType : std::uint32_t {
  pilot = 2,
  clamp = 3,
  tool = 5,
  spotWeld = 6,
  joiningTong = 7,
  suctionZone = 8,
  bolt = 9,
};

}  // namespace Kestrel

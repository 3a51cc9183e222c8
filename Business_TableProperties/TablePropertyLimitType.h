#pragma once

#include <cstdint>

namespace Kestrel {

/// Kinds of limits. A column of a result table refers to the limit that applies to it by this number;
/// documents store the numbers, so a number never changes its meaning.
enum class TablePropertyLimitType : std::uint32_t {
  NoLimit = 0,  ///< a column without a limit
  JoiningTongNormalForce = 1,
  JoiningTongDistance = 2,
  JoiningTongGap = 3,
  LineJoiningToolDistanceToInput = 4,
  JoinNormalForce = 5,
  JoinTangentialForce = 6,
  ForceLimit7 = 7,  ///< no column refers to it; documents hold it
  ForceLimit8 = 8,  ///< no column refers to it; documents hold it
  LineJoiningToolGap = 9,
  ClampingToolForce = 10,
  JoiningTeachingX = 11,
  JoiningTeachingY = 12,
  JoiningTeachingZ = 13,
  Reserved14 = 14,
  Reserved15 = 15,
  Reserved16 = 16,
  SuctionDistance = 17,
  SuctionZoneForce = 18,
  PilotForce = 19,
  RollerForce = 20,
  SteelForce = 21,
  HemmingBedForce = 22,
  BoltNormalForce = 23,
  ClampClosingForce = 24,
};

}  // namespace Kestrel

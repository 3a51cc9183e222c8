#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "Business_TableProperties/TablePropertyLimitType.h"

namespace Kestrel::ResultTables {

/// The kinds of limits by their numbers, under the names that options and outputs use; never translated.
inline constexpr std::array<std::string_view, 25> s_limitTypeNames = {
    "NoLimit",
    "JoiningTongNormalForce",
    "JoiningTongDistance",
    "JoiningTongGap",
    "LineJoiningToolDistanceToInput",
    "JoinNormalForce",
    "JoinTangentialForce",
    "ForceLimit7",
    "ForceLimit8",
    "LineJoiningToolGap",
    "ClampingToolForce",
    "JoiningTeachingX",
    "JoiningTeachingY",
    "JoiningTeachingZ",
    "Reserved14",
    "Reserved15",
    "Reserved16",
    "SuctionDistance",
    "SuctionZoneForce",
    "PilotForce",
    "RollerForce",
    "SteelForce",
    "HemmingBedForce",
    "BoltNormalForce",
    "ClampClosingForce",
};

/// Empty for a number that no kind has; documents may hold any.
[[nodiscard]] constexpr std::string_view limitTypeName(TablePropertyLimitType type) {
  auto const number = static_cast<std::size_t>(type);
  return number < s_limitTypeNames.size() ? s_limitTypeNames[number] : std::string_view();
}

}  // namespace Kestrel::ResultTables

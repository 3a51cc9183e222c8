#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "Business_TableProperties/MaxValueGroupContainer.h"

namespace Kestrel::ResultTables {

/// A family of elements under the name that options and outputs use; never translated.
struct Family {
  MaxValueGroupContainer::DataType dataType;
  std::string_view name;
};

/// All families in the order of their numbers, which is the order of their tables.
inline constexpr std::array<Family, 12> s_families = {{
    {MaxValueGroupContainer::DataType::Clamps, "Clamps"},
    {MaxValueGroupContainer::DataType::ClampingTools, "ClampingTools"},
    {MaxValueGroupContainer::DataType::JoiningTongs, "JoiningTongs"},
    {MaxValueGroupContainer::DataType::Pilots, "Pilots"},
    {MaxValueGroupContainer::DataType::Bolts, "Bolts"},
    {MaxValueGroupContainer::DataType::LineJoiningTools, "LineJoiningTools"},
    {MaxValueGroupContainer::DataType::SuctionZones, "SuctionZones"},
    {MaxValueGroupContainer::DataType::Rollers, "Rollers"},
    {MaxValueGroupContainer::DataType::Steels, "Steels"},
    {MaxValueGroupContainer::DataType::HemmingBed, "HemmingBed"},
    {MaxValueGroupContainer::DataType::SpotWelds, "SpotWelds"},
    {MaxValueGroupContainer::DataType::LineWelds, "LineWelds"},
}};

[[nodiscard]] constexpr std::string_view familyName(MaxValueGroupContainer::DataType dataType) {
  return s_families[static_cast<std::size_t>(dataType)].name;
}

}  // namespace Kestrel::ResultTables

#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Business_SimulationResult/ToolForceDataType.h"
#include "Business_TableProperties/MaxValueGroupContainer.h"

namespace Kestrel::ResultTables {

/// How the library is asked for the table of a family.
enum class FamilyAsking {
  plain,    ///< by its number
  clamps,   ///< and with or without the teaching section
  grouped,  ///< and with the unit's grouping of its tools
};

/// A family of elements: all that the program knows of it.
struct Family {
  MaxValueGroupContainer::DataType dataType{};
  std::string_view name;   ///< that options, outputs and results files use; never translated
  char const* title = "";  ///< of its table, before translation
  FamilyAsking asking{};
  std::optional<ToolForceDataType> toolKind;  ///< of the tools that are its elements; none: records of steps
};

/// The row of a family, which the compiler misses here when there is none. A number that is no family has no
/// name.
[[nodiscard]] constexpr Family familyOf(MaxValueGroupContainer::DataType dataType) {
  using enum MaxValueGroupContainer::DataType;
  using enum FamilyAsking;
  using Kind = ToolForceDataType;
  switch (dataType) {
    case Clamps:
      return {dataType, "Clamps", "Clamps", clamps, Kind::clamp};
    case ClampingTools:
      return {dataType, "ClampingTools", "Clamping Tools", grouped, Kind::tool};
    case JoiningTongs:
      return {dataType, "JoiningTongs", "Joining Tools", plain, Kind::joiningTong};
    case Pilots:
      return {dataType, "Pilots", "Pilots", plain, Kind::pilot};
    case Bolts:
      return {dataType, "Bolts", "Bolts", clamps, Kind::bolt};
    case LineJoiningTools:
      return {dataType, "LineJoiningTools", "Line Joining Tools", plain, std::nullopt};
    case SuctionZones:
      return {dataType, "SuctionZones", "Suction Zones", plain, Kind::suctionZone};
    case Rollers:
      return {dataType, "Rollers", "Rollers", grouped, Kind::tool};
    case Steels:
      return {dataType, "Steels", "Steels", grouped, Kind::tool};
    case HemmingBed:
      return {dataType, "HemmingBed", "Hemming Bed", grouped, Kind::tool};
    case SpotWelds:
      return {dataType, "SpotWelds", "Joins", plain, Kind::spotWeld};
    case LineWelds:
      return {dataType, "LineWelds", "Line Joins", plain, std::nullopt};
  }
  return {};
}

[[nodiscard]] constexpr std::string_view familyName(MaxValueGroupContainer::DataType dataType) {
  return familyOf(dataType).name;
}

/// All families in the order of their numbers, which is the order of their tables.
inline constexpr auto s_families = [] {
  constexpr auto numbers = [] {
    std::size_t count = 0;
    while (!familyName(static_cast<MaxValueGroupContainer::DataType>(count)).empty()) ++count;
    return count;
  };
  std::array<Family, numbers()> families;
  for (std::size_t i = 0; i < families.size(); ++i)
    families[i] = familyOf(static_cast<MaxValueGroupContainer::DataType>(i));
  return families;
}();

/// The family of that name; null for any other name.
[[nodiscard]] Family const* familyNamed(std::string_view name);

/// The names of the families whose tools a unit groups.
[[nodiscard]] std::vector<std::string> groupedFamilyNames();

/// The title of a family's table in the language of the environment.
[[nodiscard]] std::string familyTitle(MaxValueGroupContainer::DataType dataType);

/// The key of a column that the library calls `valueName`, the same in every language: `valueName` itself,
/// but for the total tool force, which the library calls by its name in the user's language.
[[nodiscard]] std::string columnKey(std::string const& valueName);

/// What the library calls the column of that key.
[[nodiscard]] std::string valueNameOf(std::string const& key);

}  // namespace Kestrel::ResultTables

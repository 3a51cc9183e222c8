#pragma once

#include <string>
#include <vector>

#include "Business_SimulationResult/ToolForceDataType.h"
#include "Business_TableProperties/MaxValueGroupContainer.h"
#include "Business_TableProperties/TablePropertyLimitType.h"

namespace Kestrel {

/// What is fixed about one section of a family's table.
struct SectionDefinition {
  char const* name;  ///< untranslated
  bool isTeachingGroup;
  bool isForceGroup;
  std::vector<TablePropertyLimitType> limitTypes;  ///< in column order
  std::vector<std::string> valueNames;             ///< in column order
};

/// What is fixed about the table of one family.
struct FamilyDefinition {
  char const* title;           ///< untranslated
  ToolForceDataType toolKind;  ///< the unit's tools that are the elements; 0 for line joins, no tools
  bool isDefaultFamily;        ///< whether the table is among those shown first
  /// The sections in display order. Asks the host for its keys, so that a unit without such elements costs
  /// none of that.
  std::vector<SectionDefinition> (*genSections)();
};

/// The definition of each family.
namespace FamilySections {

[[nodiscard]] FamilyDefinition clamps();
[[nodiscard]] FamilyDefinition bolts();
[[nodiscard]] FamilyDefinition pilots();
/// The forming tools of one kind. A number that is none of theirs gives a section without columns and no
/// title.
[[nodiscard]] FamilyDefinition tools(MaxValueGroupContainer::DataType dataType);
[[nodiscard]] FamilyDefinition suctionZones();
[[nodiscard]] FamilyDefinition joiningTongs();
[[nodiscard]] FamilyDefinition spotWelds();
[[nodiscard]] FamilyDefinition lineWelds();
[[nodiscard]] FamilyDefinition lineJoiningTools();

}  // namespace FamilySections

}  // namespace Kestrel

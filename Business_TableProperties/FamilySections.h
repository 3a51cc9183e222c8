#pragma once

#include <string>
#include <vector>

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

/// The sections of each family, in display order. Made on first use, valid as long as the library is loaded.
namespace FamilySections {

[[nodiscard]] std::vector<SectionDefinition> const& clamps();
[[nodiscard]] std::vector<SectionDefinition> const& bolts();

}  // namespace FamilySections

}  // namespace Kestrel

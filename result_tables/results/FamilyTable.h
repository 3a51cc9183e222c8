#pragma once

#include <memory>

#include "Business_TableProperties/MaxValueGroupContainer.h"
#include "result_tables/base/Family.h"
#include "result_tables/results/ResultsFile.h"

namespace Kestrel::ResultTables {

/// What the library makes of a family of a unit, with the unit's grouping of its tools; `teaching` is for
/// clamps and bolts. Never null; without sections where the unit has no such elements.
[[nodiscard]] std::shared_ptr<MaxValueGroupContainer> genFamilyTable(ResultsUnit const& unit,
                                                                     Family const& family, bool teaching);

}  // namespace Kestrel::ResultTables

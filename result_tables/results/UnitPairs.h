#pragma once

#include <string>
#include <vector>

#include "result_tables/base/Pairs.h"
#include "result_tables/results/UnitSelection.h"

namespace Kestrel::ResultTables {

/// The units of two sides by index, those of `before` in its order, then those that `after` alone has. They
/// are paired by id; what is left over by name, where only one of the left-over units of each side has it.
[[nodiscard]] std::vector<IndexPair> pairUnits(NamedUnits const& before, NamedUnits const& after);

/// The pairs of which one unit is wanted by id, in either case, or by name; none wanted: all. An `Error` for
/// a wanted one that leads to no unit of one of the sides.
[[nodiscard]] std::vector<IndexPair> selectUnitPairs(NamedUnits const& before, NamedUnits const& after,
                                                     std::vector<std::string> const& wanted);

}  // namespace Kestrel::ResultTables

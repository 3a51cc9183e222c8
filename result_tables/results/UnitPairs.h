#pragma once

#include <string>
#include <vector>

#include "result_tables/results/ResultsFile.h"

namespace Kestrel::ResultTables {

/// A unit in two results files; null where a file does not have it.
struct UnitPair {
  ResultsUnit const* before;
  ResultsUnit const* after;
};

/// The units of two files, those of `before` in its order, then those that `after` alone has. They are paired
/// by id; what is left over by name, where only one of the left-over units of each file has it.
[[nodiscard]] std::vector<UnitPair> pairUnits(ResultsFile const& before, ResultsFile const& after);

/// The pairs of which one unit is wanted by id, in either case, or by name; none wanted: all. An `Error` for
/// a wanted one that leads to no unit of one of the files.
[[nodiscard]] std::vector<UnitPair> selectUnitPairs(ResultsFile const& before, ResultsFile const& after,
                                                    std::vector<std::string> const& wanted);

}  // namespace Kestrel::ResultTables

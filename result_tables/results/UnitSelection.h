#pragma once

#include <string>
#include <vector>

#include "result_tables/results/ResultsFile.h"

namespace Kestrel::ResultTables {

/// The units of a file that are wanted by id, in either case, or by name, which several may have; in the
/// file's order. None wanted: all. `fileName` is for the `Error` that an unknown unit is.
[[nodiscard]] std::vector<ResultsUnit const*> selectUnits(ResultsFile const& file,
                                                          std::string const& fileName,
                                                          std::vector<std::string> const& wanted);

}  // namespace Kestrel::ResultTables

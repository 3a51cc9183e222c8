#pragma once

#include <string>

#include "result_tables/study/Study.h"
#include "result_tables/tables/Differences.h"
#include "result_tables/tables/ResultTable.h"

namespace Kestrel::ResultTables {

/// What differs between the tables of two runs of a study. A run that it lacks and a unit that one of them
/// lacks are an `Error`.
[[nodiscard]] ResultDifferences genRunDifferences(Study const& study, std::string const& before,
                                                  std::string const& after, TableSelection const& selection,
                                                  Tolerance const& tolerance);

}  // namespace Kestrel::ResultTables

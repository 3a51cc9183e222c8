#pragma once

#include <functional>

#include "result_tables/study/Study.h"
#include "result_tables/tables/ResultTable.h"
#include "result_tables/tables/RunValues.h"

namespace Kestrel::ResultTables {

/// Checks that the study has the selected units; one that no run has is an `Error`.
void checkSelection(Study const& study, TableSelection const& selection);

/// The selected values of a run, which its counts are of, but for that of invalid elements, which is of the
/// whole run. REQUIRES: checkSelection.
[[nodiscard]] RunValues readRunValues(Study const& study, std::string const& run,
                                      TableSelection const& selection);

}  // namespace Kestrel::ResultTables

#pragma once

#include "result_tables/results/ResultsFile.h"

namespace Kestrel::ResultTables {

/// The sample that is built into the program: the units of the results files in `examples/`.
[[nodiscard]] ResultsFile readSample();

}  // namespace Kestrel::ResultTables

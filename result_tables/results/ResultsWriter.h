#pragma once

#include <string>
#include <vector>

#include "result_tables/results/UnitRecords.h"

namespace Kestrel::ResultTables {

/// The text of a results file (docs/results-file.md) with these units. Linear in what is written.
[[nodiscard]] std::string writeResults(std::vector<UnitRecords> const& units);

}  // namespace Kestrel::ResultTables

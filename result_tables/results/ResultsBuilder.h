#pragma once

#include <string>
#include <vector>

#include "result_tables/results/ResultsFile.h"
#include "result_tables/results/UnitRecords.h"

namespace Kestrel::ResultTables {

/// What the reader of results files makes of `writeResults(units)`, without the text between, which is
/// several times as long as the numbers. `name` is what messages and reports call the results. The numbers
/// are shared, not copied.
[[nodiscard]] ResultsFile buildResults(std::string const& name, std::vector<UnitRecords> const& units);

}  // namespace Kestrel::ResultTables

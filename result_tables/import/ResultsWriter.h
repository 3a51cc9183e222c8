#pragma once

#include <string>

#include "result_tables/import/ImportMap.h"

namespace Kestrel::ResultTables {

/// The text of a results file (docs/results-file.md) with the units of the map and the values that their
/// formulas have. The histories that the map refers to must still exist. Linear in what is written.
[[nodiscard]] std::string writeResults(ImportMap const& map);

}  // namespace Kestrel::ResultTables

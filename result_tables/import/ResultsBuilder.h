#pragma once

#include <string>

#include "result_tables/import/ImportMap.h"
#include "result_tables/results/ResultsFile.h"

namespace Kestrel::ResultTables {

/// What the reader of results files makes of `writeResults(map)`, without the text between, which is several
/// times as long as the numbers. `name` is what messages and reports call the results. The histories that the
/// map refers to must still exist; the results do not refer to them. Linear in the number of values.
[[nodiscard]] ResultsFile buildResults(std::string const& name, ImportMap const& map);

}  // namespace Kestrel::ResultTables

#pragma once

#include <cstddef>

#include "result_tables/study/Database.h"
#include "result_tables/tables/ResultTable.h"
#include "result_tables/tables/WorstValues.h"

namespace Kestrel::ResultTables {

/// The selected values of all runs that take the most of their limits, as many as `most`, which is more than
/// 0. A unit that no run has is an `Error`.
///
/// Cost: looks at what is stored of each column of each run, and reads the values of as many columns as
/// values are wanted, and hardly ever one more.
[[nodiscard]] WorstValues askWorst(Database& database, TableSelection const& selection, std::size_t most);

}  // namespace Kestrel::ResultTables

#pragma once

#include <string>

#include "result_tables/tables/Differences.h"

namespace Kestrel::ResultTables {

/// One record per difference with a header record, as RFC 4180 has it. What there is none of is empty.
[[nodiscard]] std::string renderDifferencesAsCsv(ResultDifferences const& differences);

}  // namespace Kestrel::ResultTables

#pragma once

#include <string>

#include "result_tables/tables/Differences.h"

namespace Kestrel::ResultTables {

/// One JSON object with all differences in order. What there is none of is null.
[[nodiscard]] std::string renderDifferencesAsJson(ResultDifferences const& differences);

}  // namespace Kestrel::ResultTables

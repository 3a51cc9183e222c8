#pragma once

#include <string>

#include "result_tables/tables/Trend.h"

namespace Kestrel::ResultTables {

/// { "trends": [ { …, "runs": [ … ], "statistics": { … } } ] }
[[nodiscard]] std::string renderTrendsAsJson(Trends const& trends);

}  // namespace Kestrel::ResultTables

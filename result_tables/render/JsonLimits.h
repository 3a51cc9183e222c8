#pragma once

#include <string>
#include <vector>

#include "result_tables/limits/Limits.h"

namespace Kestrel::ResultTables {

/// One JSON object with all limits in order.
[[nodiscard]] std::string renderLimitsAsJson(std::vector<ListedLimit> const& limits);

}  // namespace Kestrel::ResultTables

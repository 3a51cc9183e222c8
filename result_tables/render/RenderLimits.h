#pragma once

#include <string>
#include <vector>

#include "result_tables/limits/Limits.h"

namespace Kestrel::ResultTables {

/// The limits for a person to read, under their units; what is not the default is marked. Numbers in the
/// shortest form that reads back. With `colour` the text holds escape sequences for a terminal.
[[nodiscard]] std::string renderLimitsAsText(std::vector<ListedLimit> const& limits, bool colour);

/// One JSON object with all limits in order.
[[nodiscard]] std::string renderLimitsAsJson(std::vector<ListedLimit> const& limits);

}  // namespace Kestrel::ResultTables

#pragma once

#include <string>
#include <vector>

#include "result_tables/limits/Limits.h"
#include "result_tables/render/TextStyle.h"

namespace Kestrel::ResultTables {

/// The limits for a person to read, under their units; what is not the default is marked. Numbers in the
/// shortest form that reads back. In colour the text holds escape sequences for a terminal.
[[nodiscard]] std::string renderLimitsAsText(std::vector<ListedLimit> const& limits, TextStyle const& style);

}  // namespace Kestrel::ResultTables

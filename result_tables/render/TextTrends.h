#pragma once

#include <string>

#include "result_tables/render/TextStyle.h"
#include "result_tables/tables/Trend.h"

namespace Kestrel::ResultTables {

/// For each trend a line per run, a plot of the values with their limits, and what they are together.
[[nodiscard]] std::string renderTrendsAsText(Trends const& trends, TextStyle const& style);

}  // namespace Kestrel::ResultTables

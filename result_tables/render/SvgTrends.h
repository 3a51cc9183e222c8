#pragma once

#include <string>

#include "result_tables/tables/Trend.h"

namespace Kestrel::ResultTables {

/// The pictures of the trends, one below the other, as an SVG document: the values through the runs with
/// their limits, those beyond them marked.
[[nodiscard]] std::string renderTrendsAsSvg(Trends const& trends);

}  // namespace Kestrel::ResultTables

#pragma once

#include <string>
#include <vector>

#include "result_tables/tables/Series.h"

namespace Kestrel::ResultTables {

/// The series as one SVG document, a chart each, one below the other. It stands alone: no scripts, no style
/// sheets, nothing that is fetched, any sans-serif font. A series of millions of values takes no more room
/// than what can be told apart in the picture.
[[nodiscard]] std::string renderSeriesAsSvg(std::vector<TableSeries> const& list);

}  // namespace Kestrel::ResultTables

#pragma once

#include <cstddef>
#include <vector>

#include "result_tables/render/Chart.h"

// The points of a chart that are drawn, where there are more than can be told apart or than there is room
// for.

namespace Kestrel::ResultTables {

/// The points of a line that can be told apart where it is drawn over so many columns: of neighbours in one
/// column the first, the lowest, the highest and the last.
[[nodiscard]] std::vector<ChartPoint> thinned(std::vector<ChartPoint> const& line, std::size_t columns);

inline constexpr std::size_t s_fewestReduced = 8;

/// Lines with no more than so many points in all: as they are where they have no more. Else their ends stay,
/// and in each of at least a quarter as many columns the lowest and the highest point at which a line turns;
/// of the others those that the picture would miss most, without those that it would not. Of more lines than
/// an eighth of `most` some are lost: there the first, the lowest, the highest and the last of neighbours
/// stay, in whatever line they are. Takes linear time in the number of points.
/// REQUIRES: most >= s_fewestReduced.
[[nodiscard]] std::vector<std::vector<ChartPoint>> reduced(std::vector<std::vector<ChartPoint>> const& lines,
                                                           std::size_t most);

/// The same of points that no line joins: those of neighbours that stay where there are too many lines.
/// REQUIRES: most >= s_fewestReduced.
[[nodiscard]] std::vector<ChartPoint> reducedPoints(std::vector<ChartPoint> const& points, std::size_t most);

}  // namespace Kestrel::ResultTables

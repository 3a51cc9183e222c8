#pragma once

#include <string>

#include "result_tables/tables/Series.h"

namespace Kestrel::ResultTables {

/// The picture of a series for a page that draws it itself: JSON on one line, without characters that mean
/// something in HTML. An object with width and height ("w", "h") in pixels, what the picture shows in words
/// ("a"), and shapes ("s") in the order in which they are drawn, each an array of kind, role and integer
/// pixels: ["l", role, x1, y1, x2, y2] a line, ["t", role, x, y, text, "s"|"m"|"e"] a text with its anchor at
/// its start, middle or end, ["p", role, path] a path as SVG writes it, to be filled where its role is
/// "infinite", ["c", role, x, y, radius] a circle. Curves have 240 points at the most. `decimalMark` stands
/// for the point in texts.
[[nodiscard]] std::string curveAsJson(TableSeries const& series, char decimalMark);

}  // namespace Kestrel::ResultTables

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "result_tables/tables/Series.h"

namespace Kestrel::ResultTables {

/// The picture of a series for a page that draws it itself, as the parts of a JSON object on one line,
/// without characters that mean something in HTML.
struct HtmlCurve {
  /// The members width and height ("w", "h") in pixels, and what the picture shows in words ("a").
  std::string head;
  /// The elements of the member "s", in the order in which they are drawn, each an array of kind, role and
  /// integer pixels: ["l", role, x1, y1, x2, y2] a line, ["t", role, x, y, text, "s"|"m"|"e"] a text with its
  /// anchor at its start, middle or end, ["p", role, path] a path as SVG writes it, to be filled where its
  /// role is "infinite", ["c", role, x, y, radius] a circle. A path of dots is left out where there is one at
  /// each point of the curve before it.
  std::vector<std::string> shapes;
};

inline constexpr std::size_t s_mostCurvePoints = 240;
inline constexpr std::size_t s_fewestCurvePoints = 32;

/// `decimalMark` stands for the point in texts. Curves have `mostPoints` at the most, of which there are not
/// less than `s_fewestCurvePoints`.
[[nodiscard]] HtmlCurve genHtmlCurve(TableSeries const& series, char decimalMark,
                                     std::size_t mostPoints = s_mostCurvePoints);

}  // namespace Kestrel::ResultTables

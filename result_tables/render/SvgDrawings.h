#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "result_tables/render/Drawing.h"

namespace Kestrel::ResultTables {

/// Draws the picture of that index below what ends at `top`.
using DrawNext = std::function<Drawing(std::size_t index, DrawingLayout const& layout, double top)>;

/// An SVG document of `count` pictures one below the other; the text `nothing` where there are none.
[[nodiscard]] std::string renderDrawingsAsSvg(std::size_t count, DrawNext const& draw,
                                              std::string const& nothing);

}  // namespace Kestrel::ResultTables

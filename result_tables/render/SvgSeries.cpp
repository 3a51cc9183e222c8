#include "result_tables/render/SvgSeries.h"

#include "result_tables/base/Translate.h"
#include "result_tables/render/SvgDrawings.h"

namespace Kestrel::ResultTables {

std::string renderSeriesAsSvg(std::vector<TableSeries> const& list) {
  return renderDrawingsAsSvg(
      list.size(),
      [&list](std::size_t index, DrawingLayout const& layout, double top) {
        return drawSeries(list[index], layout, top);
      },
      tr("no series"));
}

}  // namespace Kestrel::ResultTables

#include "result_tables/render/SvgTrends.h"

#include "result_tables/base/Translate.h"
#include "result_tables/render/SvgDrawings.h"

namespace Kestrel::ResultTables {

std::string renderTrendsAsSvg(Trends const& trends) {
  return renderDrawingsAsSvg(
      trends.size(),
      [&trends](std::size_t index, DrawingLayout const& layout, double top) {
        return drawTrend(trends[index], layout, top);
      },
      tr("no runs"));
}

}  // namespace Kestrel::ResultTables

#include "result_tables/render/TextSeries.h"

#include <fmt/format.h>

#include <utility>

#include "result_tables/base/Translate.h"
#include "result_tables/render/Ansi.h"
#include "result_tables/render/Chart.h"
#include "result_tables/render/SeriesTexts.h"
#include "result_tables/render/TextLine.h"
#include "result_tables/render/TextPlot.h"

namespace Kestrel::ResultTables {

namespace {

void appendExtreme(std::string& out, TableSeries const& series, TextPlot const& plot,
                   TextStyle const& style) {
  auto const text = extremeText(series, style.digits);
  auto line = fmt::format("  {}{}", plot.chart().extreme ? plotSigns(style).extreme + ' ' : "", text);
  if (series.isExceeded) line += ", " + tr("beyond its limit");
  appendLine(out, red(line, style.colour && series.isExceeded));
}

void appendLimit(std::string& out, ColumnLimit const& limit, TextPlot const& plot, int digits) {
  bool const isShown = !plot.chart().isEmpty() && !plot.chart().limits.empty();
  appendLine(out, fmt::format("  {}{}", isShown ? plot.signs().limit + ' ' : "",
                              limitText(limit.value, limit.unit, digits)));
}

void appendSeries(std::string& out, TableSeries const& series, TextStyle const& style) {
  auto chart = genChart(series, plotIntervals(style));
  auto const axisName = chart.isOverTime ? tr("time") : tr("step");
  TextPlot const plot(std::move(chart), axisName, series.isExceeded, style);
  if (!plot.chart().isEmpty()) {
    plot.appendTo(out);
    out += '\n';
  }
  appendExtreme(out, series, plot, style);
  if (series.column.limit) appendLimit(out, *series.column.limit, plot, style.digits);
  if (!series.series.values.empty()) appendLine(out, "  " + extentText(series));
}

}  // namespace

std::string renderSeriesAsText(std::vector<TableSeries> const& list, TextStyle const& style) {
  std::string out;
  for (auto const& series : list) {
    if (!out.empty()) out += '\n';
    out += bold(titleText(series), style.colour) + "\n\n";
    appendSeries(out, series, style);
  }
  return out.empty() ? tr("no series") + '\n' : out;
}

}  // namespace Kestrel::ResultTables

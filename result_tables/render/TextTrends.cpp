#include "result_tables/render/TextTrends.h"

#include <fmt/format.h>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/Ansi.h"
#include "result_tables/render/SeriesTexts.h"
#include "result_tables/render/TextColumns.h"
#include "result_tables/render/TextLine.h"
#include "result_tables/render/TextPlot.h"
#include "result_tables/render/TrendTexts.h"

namespace Kestrel::ResultTables {

namespace {

std::string trendNumber(TableValue const& value, int digits) {
  if (!value.hasData()) return std::string(s_noData);
  return value.isNaN() ? "NaN" : formatNumber(value.value, digits);
}

/// What there is to say of a value besides numbers.
std::string remarkOf(TrendPoint const& point) {
  std::string remark;
  auto const append = [&remark](bool is, std::string const& text) {
    if (is) remark += (remark.empty() ? "" : ", ") + text;
  };
  append(!point.isValid, tr("not valid"));
  append(point.value.isExceeded, tr("beyond its limit"));
  append(point.value.origin.nanCount > 0, tr("its series holds values that are not numbers"));
  return remark;
}

std::vector<std::string> pointCells(Trend const& trend, TrendPoint const& point, int digits) {
  auto const& origin = point.value.origin;
  return {trend.by.empty() ? formatNumber(point.at, digits) : toPrintable(point.label),
          toPrintable(point.run),
          trendNumber(point.value, digits),
          point.limit ? formatNumber(point.limit->value, digits) : "",
          origin.step ? fmt::format("{}", *origin.step) : "",
          origin.companion ? formatNumber(*origin.companion, digits) : "",
          remarkOf(point)};
}

std::string tableOf(Trend const& trend, TextStyle const& style) {
  constexpr auto number = TextColumns::Kind::number;
  TextColumns columns({{trend.by.empty() ? "#" : toPrintable(trend.by), number},
                       {tr("run")},
                       {tr("value"), number},
                       {tr("limit"), number},
                       {tr("step"), number},
                       {tr("time"), number},
                       {tr("remark")}});
  for (auto const& point : trend.points)
    columns.add(pointCells(trend, point, style.digits), point.value.isExceeded);
  return columns.render(style.colour, style.width);
}

void appendTrend(std::string& out, Trend const& trend, TextStyle const& style) {
  out += bold(titleText(trend), style.colour) + "\n\n" + tableOf(trend, style) + '\n';
  TextPlot const plot(genChart(trend, plotIntervals(style)), axisText(trend), true, style);
  auto const& chart = plot.chart();
  if (!chart.isEmpty()) {
    plot.appendTo(out);
    out += '\n';
  }
  if (!chart.exceeded.empty())
    appendLine(out, fmt::format("  {} {}", plot.signs().extreme, tr("beyond its limit")));
  if (!chart.limits.empty()) {
    auto const& limit = *trend.points.front().limit;
    appendLine(out,
               fmt::format("  {} {}", plot.signs().limit, limitText(limit.value, limit.unit, style.digits)));
  } else if (!chart.limitSteps.empty()) {
    appendLine(out, fmt::format("  {} {}", plot.signs().limit, tr("limit of each run")));
  }
  appendWrapped(out, 2, statisticsText(trend, style.digits), style.width);
}

}  // namespace

std::string renderTrendsAsText(Trends const& trends, TextStyle const& style) {
  std::string out;
  for (auto const& trend : trends) {
    if (!out.empty()) out += '\n';
    appendTrend(out, trend, style);
  }
  return out.empty() ? tr("no runs") + '\n' : out;
}

}  // namespace Kestrel::ResultTables

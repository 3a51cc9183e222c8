#include "result_tables/render/HtmlTrend.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "result_tables/render/Chart.h"
#include "result_tables/render/Drawing.h"
#include "result_tables/render/HtmlPage.h"
#include "result_tables/render/SeriesTexts.h"
#include "result_tables/render/Thinning.h"
#include "result_tables/render/TrendTexts.h"

namespace Kestrel::ResultTables {

namespace {

constexpr double s_trendWidth = 320;
constexpr double s_trendTop = 10;
constexpr double s_trendPlotHeight = 96;
constexpr double s_trendFoot = 20;
constexpr double s_trendRight = 10;
constexpr double s_labelWidth = 7;              ///< of a character
constexpr std::size_t s_mostTrendPoints = 400;  ///< of the curve
constexpr ChartIntervals s_trendIntervals{4, 3};

/// Has a point for each run, so that those without the value are gaps. These have the limit of the run
/// before.
Trend genTrend(RunTable const& table, RunTableColumn const& column) {
  Trend trend;
  trend.column.unit = table.quantity(column).unit;
  auto limit = table.quantity(column).limit;
  for (std::size_t i = 0; i < table.runs().size(); ++i) {
    auto const number = table.number(i, column);
    auto const ofRun = table.limit(i, column);
    if (ofRun)
      limit = ColumnLimit{*ofRun, {}};
    else if (number.isThere)
      limit.reset();
    std::size_t const count = number.isThere && !number.isNaN ? 1 : 0;
    TableValue const value{number.value, {{}, {}, {}, count, 0}, number.isExceeded};
    trend.points.push_back({{}, {}, {}, static_cast<double>(i + 1), value, number.isValid, limit});
  }
  return trend;
}

/// Marks, of which those that would lie on the one before are left out.
class MarkPath {
 public:
  void add(std::string mark) {
    if (mark != m_last) m_text += mark;
    m_last = std::move(mark);
  }
  [[nodiscard]] std::string const& text() const { return m_text; }

 private:
  std::string m_text;
  std::string m_last;
};

class TrendWriter {
 public:
  TrendWriter(HtmlWriter& html, Chart chart) : m_html(&html), m_chart(std::move(chart)) {
    std::size_t longest = 1;
    for (auto const& tick : m_chart.y.ticks) longest = std::max(longest, tick.label.size());
    m_left = 10 + s_labelWidth * static_cast<double>(longest);
  }

  /// `words` say what the picture shows.
  void write(std::string const& words);

 private:
  [[nodiscard]] int x(double fraction) const {
    return static_cast<int>(std::lround(m_left + fraction * (s_trendWidth - s_trendRight - m_left)));
  }
  [[nodiscard]] int y(double fraction) const {
    return static_cast<int>(std::lround(s_trendTop + (1 - fraction) * s_trendPlotHeight));
  }
  [[nodiscard]] std::string at(ChartPoint const& point) const {
    return fmt::format("{} {}", x(point.x), y(point.y));
  }
  [[nodiscard]] std::string pathOf(std::vector<std::vector<ChartPoint>> const& lines) const;
  [[nodiscard]] std::string dotAt(ChartPoint const& point) const { return 'M' + at(point) + "h0"; }
  /// A triangle that points beyond the picture.
  [[nodiscard]] std::string arrowAt(ChartPoint const& point) const {
    int const height = static_cast<int>(point.y > 0.5 ? Arrow::height : -Arrow::height);
    return fmt::format("M{} {}l4 {}h-8z", x(point.x), y(point.y) - height / 2, height);
  }

  void writeLine(std::string_view role, ChartPoint const& from, ChartPoint const& to);
  void writeText(int x, int y, std::string_view anchor, std::string text);
  void writePath(std::string_view role, std::string const& path);
  void writeAxes();
  void writeCurve();
  void writeMarks();

  HtmlWriter* m_html;
  Chart m_chart;
  double m_left = 0;
};

void TrendWriter::write(std::string const& words) {
  m_html->open("svg", {{"viewBox",
                        fmt::format("0 0 {} {}", s_trendWidth, s_trendTop + s_trendPlotHeight + s_trendFoot)},
                       {"role", "img"},
                       {"aria-label", words}});
  writeAxes();
  for (auto const& limit : m_chart.limits) writeLine("limit", {0, limit.y}, {1, limit.y});
  writePath("limit", pathOf(m_chart.limitSteps));
  writeCurve();
  writeMarks();
  m_html->close();
}

std::string TrendWriter::pathOf(std::vector<std::vector<ChartPoint>> const& lines) const {
  std::string path;
  for (auto const& line : lines) {
    char command = 'M';
    for (auto const& point : line) {
      path += command + at(point);
      command = 'L';
    }
  }
  return path;
}

void TrendWriter::writeLine(std::string_view role, ChartPoint const& from, ChartPoint const& to) {
  m_html->leaf("line", {{"class", role},
                        {"x1", std::to_string(x(from.x))},
                        {"y1", std::to_string(y(from.y))},
                        {"x2", std::to_string(x(to.x))},
                        {"y2", std::to_string(y(to.y))}});
}

void TrendWriter::writeText(int x, int y, std::string_view anchor, std::string text) {
  std::ranges::replace(text, '.', decimalMarkInHtml());
  m_html->element("text", text,
                  {{"x", std::to_string(x)}, {"y", std::to_string(y)}, {"text-anchor", anchor}});
}

void TrendWriter::writePath(std::string_view role, std::string const& path) {
  if (!path.empty()) m_html->leaf("path", {{"class", role}, {"d", path}});
}

void TrendWriter::writeAxes() {
  for (auto const& tick : m_chart.y.ticks) {
    writeLine("grid", {0, tick.fraction}, {1, tick.fraction});
    writeText(x(0) - 5, y(tick.fraction) + 4, "end", tick.label);
  }
  for (auto const& tick : m_chart.x.ticks) writeText(x(tick.fraction), y(0) + 16, "middle", tick.label);
  writeLine("axis", {0, 0}, {1, 0});
}

void TrendWriter::writeCurve() {
  auto const lines = reduced(m_chart.lines, s_mostTrendPoints);
  MarkPath dots;
  for (auto const& line : lines) {
    for (auto const& point : line) dots.add(dotAt(point));
  }
  writePath("curve", pathOf(lines));
  writePath("dots", dots.text());
}

/// What is infinite, and what is beyond its limit.
void TrendWriter::writeMarks() {
  auto const isAmong = [](std::vector<ChartPoint> const& points, ChartPoint const& point) {
    return std::ranges::binary_search(points, point.x, {}, &ChartPoint::x);
  };
  MarkPath arrows;
  MarkPath arrowsBeyond;
  MarkPath dots;
  for (auto const& point : m_chart.infinite)
    (isAmong(m_chart.exceeded, point) ? arrowsBeyond : arrows).add(arrowAt(point));
  for (auto const& point : m_chart.exceeded) {
    if (!isAmong(m_chart.infinite, point)) dots.add(dotAt(point));
  }
  writePath("infinite", arrows.text());
  writePath("infiniteBeyond", arrowsBeyond.text());
  writePath("beyond", dots.text());
}

}  // namespace

void writeHtmlTrend(HtmlWriter& html, RunTable const& table, RunTableColumn const& column, int digits) {
  auto const trend = genTrend(table, column);
  auto words = statisticsText(trend, digits, decimalMarkInHtml());
  if (auto const& limit = table.quantity(column).limit)
    words += ", " + limitText(limit->value, limit->unit, digits, decimalMarkInHtml());
  TrendWriter(html, genChart(trend, s_trendIntervals)).write(words);
}

}  // namespace Kestrel::ResultTables

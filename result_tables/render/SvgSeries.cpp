#include "result_tables/render/SvgSeries.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <iterator>
#include <pugixml.hpp>
#include <sstream>
#include <utility>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/Chart.h"
#include "result_tables/render/SeriesTexts.h"
#include "result_tables/render/TextStyle.h"

namespace Kestrel::ResultTables {

namespace {

// Lengths are pixels at the document's own size.
constexpr double s_width = 800;
constexpr double s_margin = 24;
constexpr double s_fontSize = 12;
constexpr double s_characterWidth = 7;  ///< on average, generously
constexpr double s_headHeight = 64;     ///< title, what the chart shows, and room for the text of a value
constexpr double s_plotHeight = 220;
constexpr double s_footHeight = 56;   ///< numbers and name of the horizontal axis, and what is between charts
constexpr double s_emptyHeight = 80;  ///< of a series without values
constexpr double s_lineSpacing = 14;  ///< of texts that stand one above the other
constexpr std::size_t s_mostDots = 100;  ///< up to so many values are shown one by one

constexpr ChartIntervals s_intervals{8, 5};

constexpr char const* s_textColour = "#1f2933";
constexpr char const* s_faintColour = "#616e7c";
constexpr char const* s_gridColour = "#e4e7eb";
constexpr char const* s_curveColour = "#1f5fa8";
constexpr char const* s_limitColour = "#b45309";
constexpr char const* s_exceededColour = "#c81e1e";

struct Attribute {
  char const* name;
  std::string value;
};

pugi::xml_node append(pugi::xml_node& parent, char const* name, std::initializer_list<Attribute> attributes) {
  auto node = parent.append_child(name);
  for (auto const& [attribute, value] : attributes) node.append_attribute(attribute) = value.c_str();
  return node;
}

/// A length with as many digits as can be seen.
std::string length(double pixels) { return fmt::format("{:.6g}", std::round(pixels * 10) / 10); }

enum class Anchor { start, middle, end };

/// Where `anchor` of a text stands, on its base line.
struct TextPlace {
  double x;
  double y;
  Anchor anchor = Anchor::start;
};

pugi::xml_node appendText(pugi::xml_node& parent, TextPlace const& place, std::string const& text,
                          char const* colour = s_textColour) {
  auto node = append(parent, "text", {{"x", length(place.x)}, {"y", length(place.y)}, {"fill", colour}});
  if (place.anchor != Anchor::start)
    node.append_attribute("text-anchor") = place.anchor == Anchor::middle ? "middle" : "end";
  node.text() = text.c_str();
  return node;
}

/// One chart, below what stands above `top`.
class ChartDrawing {
 public:
  ChartDrawing(pugi::xml_node& svg, TableSeries const& series, double top)
      : m_series(series), m_chart(genChart(series, s_intervals)), m_node(svg.append_child("g")), m_top(top) {
    std::size_t longestTick = 0;
    for (auto const& tick : m_chart.y.ticks) longestTick = std::max(longestTick, tick.label.size());
    std::size_t longestLimit = 0;
    for (auto const& limit : m_chart.limits)
      longestLimit = std::max(longestLimit, displayWidth(textOf(limit)));
    m_left = s_margin + 8 + s_characterWidth * static_cast<double>(longestTick);
    m_right = s_width - s_margin -
              (longestLimit > 0 ? 8 + s_characterWidth * static_cast<double>(longestLimit) : 0);
  }

  /// Returns the height that the chart takes.
  double draw() {
    drawHead();
    if (m_chart.isEmpty()) return s_emptyHeight;
    drawAxes();
    drawLimits();
    drawCurve();
    drawInfiniteValues();
    drawExtreme();
    return s_headHeight + s_plotHeight + s_footHeight;
  }

 private:
  [[nodiscard]] double x(double fraction) const { return m_left + fraction * (m_right - m_left); }
  [[nodiscard]] double y(double fraction) const {
    return m_top + s_headHeight + (1 - fraction) * s_plotHeight;
  }

  [[nodiscard]] std::string textOf(LimitLine const& limit) const {
    return limitText(limit.value, m_series.column.limit->unit, TextStyle().digits);
  }
  [[nodiscard]] char const* extremeColour() const {
    return m_series.isExceeded ? s_exceededColour : s_textColour;
  }

  void drawLine(double x1, double y1, double x2, double y2, char const* colour, char const* dashes = nullptr);
  void drawHead();
  void drawAxes();
  void drawLimits();
  void drawCurve();
  void drawDots();
  void drawInfiniteValues();
  void drawExtreme();

  TableSeries const& m_series;
  Chart m_chart;
  pugi::xml_node m_node;
  double m_top;
  double m_left;
  double m_right;
};

void ChartDrawing::drawLine(double x1, double y1, double x2, double y2, char const* colour,
                            char const* dashes) {
  auto line = append(
      m_node, "line",
      {{"x1", length(x1)}, {"y1", length(y1)}, {"x2", length(x2)}, {"y2", length(y2)}, {"stroke", colour}});
  if (dashes != nullptr) line.append_attribute("stroke-dasharray") = dashes;
}

void ChartDrawing::drawHead() {
  auto const title = titleText(m_series);
  m_node.append_child("title").text() = title.c_str();
  appendText(m_node, {s_margin, m_top + 16}, title).append_attribute("font-weight") = "bold";
  auto about = toPrintable(m_series.file) + ", " + extentText(m_series);
  if (m_chart.isEmpty())
    about = toPrintable(m_series.file) + ", " + extremeText(m_series, TextStyle().digits);
  appendText(m_node, {s_margin, m_top + 34}, about, s_faintColour);
}

void ChartDrawing::drawAxes() {
  for (auto const& tick : m_chart.y.ticks) {
    drawLine(m_left, y(tick.fraction), m_right, y(tick.fraction), s_gridColour);
    appendText(m_node, {m_left - 8, y(tick.fraction) + 4, Anchor::end}, tick.label, s_faintColour);
  }
  for (auto const& tick : m_chart.x.ticks) {
    drawLine(x(tick.fraction), y(0), x(tick.fraction), y(0) + 5, s_faintColour);
    appendText(m_node, {x(tick.fraction), y(0) + 18, Anchor::middle}, tick.label, s_faintColour);
  }
  drawLine(m_left, y(0), m_right, y(0), s_faintColour);
  drawLine(m_left, y(0), m_left, y(1), s_faintColour);
  appendText(m_node, {(m_left + m_right) / 2, y(0) + 34, Anchor::middle},
             m_chart.isOverTime ? tr("time") : tr("step"), s_faintColour);
}

/// Of two limits that lie too close together for two texts, the first has one.
void ChartDrawing::drawLimits() {
  for (auto const& limit : m_chart.limits) {
    drawLine(m_left, y(limit.y), m_right, y(limit.y), s_limitColour, "6 4");
    bool const hasRoom = &limit == &m_chart.limits.front() ||
                         std::abs(y(limit.y) - y(m_chart.limits.front().y)) >= s_lineSpacing;
    if (hasRoom) appendText(m_node, {m_right + 8, y(limit.y) + 4}, textOf(limit), s_limitColour);
  }
}

void ChartDrawing::drawCurve() {
  constexpr std::size_t columnsPerPixel = 2;
  auto const columns = columnsPerPixel * static_cast<std::size_t>(m_right - m_left);
  std::string path;
  for (auto const& line : m_chart.lines) {
    char command = 'M';
    for (auto const& point : thinned(line, columns)) {
      fmt::format_to(std::back_inserter(path), "{}{} {}", command, length(x(point.x)), length(y(point.y)));
      command = 'L';
    }
  }
  if (path.empty()) return;
  append(m_node, "path",
         {{"fill", "none"},
          {"stroke", s_curveColour},
          {"stroke-width", "1.5"},
          {"stroke-linejoin", "round"},
          {"d", path}});
  drawDots();
}

/// Dots for few values, and for those that no line leads to.
void ChartDrawing::drawDots() {
  std::size_t count = 0;
  for (auto const& line : m_chart.lines) count += line.size();
  std::string path;
  for (auto const& line : m_chart.lines) {
    if (count > s_mostDots && line.size() > 1) continue;
    for (auto const& point : line)
      fmt::format_to(std::back_inserter(path), "M{} {}h0", length(x(point.x)), length(y(point.y)));
  }
  if (path.empty()) return;
  append(m_node, "path",
         {{"fill", "none"},
          {"stroke", s_curveColour},
          {"stroke-width", "4"},
          {"stroke-linecap", "round"},
          {"d", path}});
}

void ChartDrawing::drawInfiniteValues() {
  std::string path;
  for (auto const& point : m_chart.infinite) {
    int const upwards = point.y > 0.5 ? -1 : 1;
    fmt::format_to(std::back_inserter(path), "M{} {}l4 {}h-8z", length(x(point.x)),
                   length(y(point.y) + upwards * 4), -upwards * 8);
  }
  if (!path.empty()) append(m_node, "path", {{"fill", s_curveColour}, {"d", path}});
}

/// The value that the table has. Its text lies beyond it, where the curve does not come, unless there is no
/// room; a light edge keeps it readable on other lines.
void ChartDrawing::drawExtreme() {
  if (!m_chart.extreme) return;
  auto const [across, up] = *m_chart.extreme;
  append(m_node, "circle",
         {{"cx", length(x(across))},
          {"cy", length(y(up))},
          {"r", "5"},
          {"fill", "none"},
          {"stroke", extremeColour()},
          {"stroke-width", "2"}});
  bool const isRight = across > 0.5;
  bool const isBelow = m_series.series.values[*m_series.extreme] < 0 && up * s_plotHeight > 20;
  TextPlace const place{x(across) + (isRight ? -9 : 9), y(up) + (isBelow ? 18 : -9),
                        isRight ? Anchor::end : Anchor::start};
  auto text = appendText(m_node, place, extremeText(m_series, TextStyle().digits), extremeColour());
  for (auto const& [name, value] : {std::pair("paint-order", "stroke"), std::pair("stroke", "#ffffff"),
                                    std::pair("stroke-width", "4"), std::pair("stroke-linejoin", "round")})
    text.append_attribute(name) = value;
}

}  // namespace

std::string renderSeriesAsSvg(std::vector<TableSeries> const& list) {
  pugi::xml_document document;
  auto svg = append(document, "svg",
                    {{"xmlns", "http://www.w3.org/2000/svg"},
                     {"font-family", "sans-serif"},
                     {"font-size", length(s_fontSize)}});
  append(svg, "rect", {{"width", "100%"}, {"height", "100%"}, {"fill", "#ffffff"}});
  double height = s_margin;
  for (auto const& series : list) height += ChartDrawing(svg, series, height).draw();
  if (list.empty()) {
    appendText(svg, {s_margin, height + 16}, tr("no series"));
    height += s_emptyHeight;
  }
  svg.append_attribute("width") = length(s_width).c_str();
  svg.append_attribute("height") = length(height).c_str();
  svg.append_attribute("viewBox") = fmt::format("0 0 {} {}", length(s_width), length(height)).c_str();
  std::ostringstream out;
  document.save(out, "  ", pugi::format_default, pugi::encoding_utf8);
  return out.str();
}

}  // namespace Kestrel::ResultTables

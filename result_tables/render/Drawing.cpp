#include "result_tables/render/Drawing.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/Chart.h"
#include "result_tables/render/SeriesTexts.h"
#include "result_tables/render/TextStyle.h"
#include "result_tables/render/Thinning.h"
#include "result_tables/render/TrendTexts.h"

namespace Kestrel::ResultTables {

namespace {

constexpr double s_margin = 24;
constexpr double s_characterWidth = 7;   ///< on average, generously
constexpr double s_lineHeight = 18;      ///< of title and what is said below it
constexpr double s_headHeight = 46;      ///< what is said of the series, and room for the text of a value
constexpr double s_emptyHeight = 62;     ///< of a series without values
constexpr double s_lineSpacing = 14;     ///< of texts that stand one above the other
constexpr std::size_t s_mostDots = 100;  ///< up to so many values are shown one by one

constexpr ChartIntervals s_intervals{8, 5};

class PictureDrawing {
 public:
  PictureDrawing(Picture const& picture, DrawingLayout const& layout, double top)
      : m_picture(picture), m_layout(layout), m_chart(picture.chart), m_top(top) {
    std::size_t count = 0;
    for (auto const& line : m_chart.lines) count += line.size();
    m_hasDots = count <= s_mostDots;
    if (layout.mostPoints) reduceTo(*layout.mostPoints);
    setDecimalMarks();
    std::size_t longestTick = 0;
    for (auto const& tick : m_chart.y.ticks) longestTick = std::max(longestTick, tick.label.size());
    std::size_t longestLimit = 0;
    for (auto const& text : m_picture.limitTexts) longestLimit = std::max(longestLimit, displayWidth(text));
    m_left = s_margin + 8 + s_characterWidth * static_cast<double>(longestTick);
    m_right = m_layout.width - s_margin -
              (longestLimit > 0 ? 8 + s_characterWidth * static_cast<double>(longestLimit) : 0);
  }

  Drawing draw() && {
    drawHead();
    if (m_chart.isEmpty()) return {titleHeight() + s_emptyHeight, std::move(m_shapes)};
    drawAxes();
    drawLimits();
    drawCurve();
    drawInfiniteValues();
    drawMarks();
    return {titleHeight() + s_headHeight + m_layout.plotHeight + m_layout.footHeight, std::move(m_shapes)};
  }

 private:
  [[nodiscard]] double titleHeight() const { return m_layout.hasTitle ? s_lineHeight : 0; }
  [[nodiscard]] double x(double fraction) const { return m_left + fraction * (m_right - m_left); }
  [[nodiscard]] double y(double fraction) const {
    return m_top + titleHeight() + s_headHeight + (1 - fraction) * m_layout.plotHeight;
  }
  [[nodiscard]] PixelPoint at(ChartPoint const& point) const { return {x(point.x), y(point.y)}; }

  void drawText(ShapeRole role, PixelPoint const& place, TextAnchor anchor, std::string text) {
    m_shapes.emplace_back(TextShape{role, place, anchor, std::move(text)});
  }
  void drawLine(ShapeRole role, PixelPoint const& from, PixelPoint const& to) {
    m_shapes.emplace_back(LineShape{role, from, to});
  }

  void reduceTo(std::size_t mostPoints);
  void setDecimalMarks();
  void drawHead();
  void drawAxes();
  void drawLimits();
  void drawCurve();
  void drawDots();
  void drawInfiniteValues();
  void drawMarks();
  void drawExtreme();

  Picture const& m_picture;
  DrawingLayout const& m_layout;
  Chart m_chart;
  bool m_hasDots;  ///< for every value
  double m_top;
  double m_left;
  double m_right;
  std::vector<Shape> m_shapes;
};

void PictureDrawing::reduceTo(std::size_t mostPoints) {
  m_chart.infinite = reducedPoints(m_chart.infinite, mostPoints / 4);
  m_chart.lines = reduced(m_chart.lines, mostPoints - m_chart.infinite.size());
}

void PictureDrawing::setDecimalMarks() {
  for (auto* const ticks : {&m_chart.x.ticks, &m_chart.y.ticks}) {
    for (auto& tick : *ticks) std::replace(tick.label.begin(), tick.label.end(), '.', m_layout.decimalMark);
  }
}

void PictureDrawing::drawHead() {
  auto about = m_picture.about;
  if (m_layout.hasTitle) {
    drawText(ShapeRole::title, {s_margin, m_top + 16}, TextAnchor::start, m_picture.title);
    if (!m_picture.source.empty()) about = m_picture.source + ", " + about;
  }
  drawText(ShapeRole::about, {s_margin, m_top + titleHeight() + 16}, TextAnchor::start, std::move(about));
}

void PictureDrawing::drawAxes() {
  for (auto const& tick : m_chart.y.ticks) {
    drawLine(ShapeRole::grid, {m_left, y(tick.fraction)}, {m_right, y(tick.fraction)});
    drawText(ShapeRole::label, {m_left - 8, y(tick.fraction) + 4}, TextAnchor::end, tick.label);
  }
  for (auto const& tick : m_chart.x.ticks) {
    drawLine(ShapeRole::tick, {x(tick.fraction), y(0)}, {x(tick.fraction), y(0) + 5});
    drawText(ShapeRole::label, {x(tick.fraction), y(0) + 18}, TextAnchor::middle, tick.label);
  }
  drawLine(ShapeRole::axis, {m_left, y(0)}, {m_right, y(0)});
  drawLine(ShapeRole::axis, {m_left, y(0)}, {m_left, y(1)});
  drawText(ShapeRole::label, {(m_left + m_right) / 2, y(0) + 34}, TextAnchor::middle, m_picture.axisName);
}

/// Of two limits that lie too close together for two texts, the first has one.
void PictureDrawing::drawLimits() {
  for (std::size_t i = 0; i < m_chart.limits.size(); ++i) {
    auto const height = y(m_chart.limits[i].y);
    drawLine(ShapeRole::limit, {m_left, height}, {m_right, height});
    bool const hasRoom = i == 0 || std::abs(height - y(m_chart.limits.front().y)) >= s_lineSpacing;
    if (hasRoom)
      drawText(ShapeRole::limitText, {m_right + 8, height + 4}, TextAnchor::start, m_picture.limitTexts[i]);
  }
  for (auto const& line : m_chart.limitSteps) {
    for (std::size_t i = 1; i < line.size(); ++i) drawLine(ShapeRole::limit, at(line[i - 1]), at(line[i]));
  }
}

void PictureDrawing::drawCurve() {
  constexpr std::size_t columnsPerPixel = 2;
  auto const columns = columnsPerPixel * static_cast<std::size_t>(m_right - m_left);
  CurveShape curve;
  for (auto const& line : m_chart.lines) {
    auto& points = curve.lines.emplace_back();
    for (auto const& point : thinned(line, columns)) points.push_back(at(point));
  }
  if (curve.lines.empty()) return;
  m_shapes.emplace_back(std::move(curve));
  drawDots();
}

/// Dots for few values, and for those that no line leads to.
void PictureDrawing::drawDots() {
  DotsShape dots;
  for (auto const& line : m_chart.lines) {
    if (!m_hasDots && line.size() > 1) continue;
    for (auto const& point : line) dots.centres.push_back(at(point));
  }
  if (!dots.centres.empty()) m_shapes.emplace_back(std::move(dots));
}

/// Their middle lies at the end of the axis.
void PictureDrawing::drawInfiniteValues() {
  ArrowsShape infinite;
  for (auto const& point : m_chart.infinite) {
    bool const isUp = point.y > 0.5;
    infinite.arrows.push_back({{x(point.x), y(point.y) + (isUp ? -1 : 1) * Arrow::height / 2}, isUp});
  }
  if (!infinite.arrows.empty()) m_shapes.emplace_back(std::move(infinite));
}

void PictureDrawing::drawMarks() {
  for (auto const& point : m_chart.exceeded)
    m_shapes.emplace_back(CircleShape{ShapeRole::extremeExceeded, at(point), 5});
  if (m_chart.extreme) drawExtreme();
}

/// The text of the value lies beyond it, where the curve does not come, unless there is no room.
void PictureDrawing::drawExtreme() {
  auto const [across, up] = *m_chart.extreme;
  auto const& [text, isExceeded, isNegative] = m_picture.extreme;
  m_shapes.emplace_back(
      CircleShape{isExceeded ? ShapeRole::extremeExceeded : ShapeRole::extreme, at(*m_chart.extreme), 5});
  bool const isRight = across > 0.5;
  bool const isBelow = isNegative && up * m_layout.plotHeight > 20;
  drawText(isExceeded ? ShapeRole::extremeTextExceeded : ShapeRole::extremeText,
           {x(across) + (isRight ? -9 : 9), y(up) + (isBelow ? 18 : -9)},
           isRight ? TextAnchor::end : TextAnchor::start, text);
}

std::vector<std::string> limitTextsOf(Chart const& chart, std::string const& unit, char decimalMark) {
  std::vector<std::string> texts;
  for (auto const& limit : chart.limits)
    texts.push_back(limitText(limit.value, unit, TextStyle().digits, decimalMark));
  return texts;
}

}  // namespace

Drawing drawPicture(Picture const& picture, DrawingLayout const& layout, double top) {
  return PictureDrawing(picture, layout, top).draw();
}

Drawing drawSeries(TableSeries const& series, DrawingLayout const& layout, double top) {
  constexpr int digits = TextStyle().digits;
  Picture picture{genChart(series, s_intervals), titleText(series), toPrintable(series.file), {}, {}, {}};
  auto const& chart = picture.chart;
  picture.about = chart.isEmpty() ? extremeText(series, digits) : extentText(series);
  picture.axisName = chart.isOverTime ? tr("time") : tr("step");
  if (series.column.limit)
    picture.limitTexts = limitTextsOf(chart, series.column.limit->unit, layout.decimalMark);
  if (chart.extreme) {
    picture.extreme = {extremeText(series, digits, layout.decimalMark), series.isExceeded,
                       series.series.values[*series.extreme] < 0};
  }
  return drawPicture(picture, layout, top);
}

Drawing drawTrend(Trend const& trend, DrawingLayout const& layout, double top) {
  Picture picture{genChart(trend, s_intervals), titleText(trend), {}, {}, axisText(trend), {}};
  picture.about = statisticsText(trend, TextStyle().digits, layout.decimalMark);
  if (!picture.chart.limits.empty()) {
    picture.limitTexts = limitTextsOf(picture.chart, trend.points.front().limit->unit, layout.decimalMark);
  }
  return drawPicture(picture, layout, top);
}

}  // namespace Kestrel::ResultTables

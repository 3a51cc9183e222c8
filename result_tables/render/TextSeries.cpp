#include "result_tables/render/TextSeries.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string_view>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/Ansi.h"
#include "result_tables/render/Chart.h"
#include "result_tables/render/DotGrid.h"
#include "result_tables/render/SeriesTexts.h"
#include "result_tables/render/TextLine.h"

namespace Kestrel::ResultTables {

namespace {

constexpr std::size_t s_rows = 16;
constexpr std::size_t s_leastColumns = 60;
constexpr std::size_t s_usualWidth = 80;
constexpr std::size_t s_columnsPerTick = 14;
constexpr std::size_t s_verticalIntervals = 5;

/// The signs that a plot is made of, each one column wide.
struct Signs {
  DotGrid::Characters dots;
  std::string_view extreme;
  std::string_view limit;
  std::string_view infinite;          ///< at the upper end
  std::string_view negativeInfinite;  ///< at the lower end
  std::string_view vertical;
  std::string_view verticalTick;
  std::string_view corner;
  std::string_view horizontal;
  std::string_view horizontalTick;
};

// Those that stand in the plot are one column wide in terminals of all languages.
constexpr Signs s_unicodeSigns{DotGrid::Characters::braille, "◉", "╌", "▴", "▾", "│", "┤", "└", "─", "┬"};
constexpr Signs s_asciiSigns{DotGrid::Characters::ascii, "X", "-", "^", "v", "|", "+", "+", "-", "+"};

class Plot {
 public:
  Plot(TableSeries const& series, TextStyle const& style)
      : m_series(series),
        m_style(style),
        m_signs(style.unicode ? s_unicodeSigns : s_asciiSigns),
        m_chart(genChart(series, {columnsBeside(0) / s_columnsPerTick, s_verticalIntervals})) {
    m_labelWidth = displayWidth(axisName());
    for (auto const& tick : m_chart.y.ticks) m_labelWidth = std::max(m_labelWidth, tick.label.size());
  }

  void appendTo(std::string& out) const {
    if (!m_chart.isEmpty()) {
      appendPicture(out);
      out += '\n';
    }
    appendLine(out, extremeLine());
    if (m_series.column.limit) appendLine(out, limitLine());
    if (!m_series.series.values.empty()) appendLine(out, "  " + extentText(m_series));
  }

 private:
  [[nodiscard]] std::size_t columnsBeside(std::size_t labels) const {
    auto const width = m_style.width == 0 ? s_usualWidth : m_style.width;
    return std::max(width, s_leastColumns + labels) - labels;
  }
  [[nodiscard]] std::string axisName() const { return m_chart.isOverTime ? tr("time") : tr("step"); }

  void appendPicture(std::string& out) const;
  [[nodiscard]] DotGrid genGrid(std::size_t columns) const;
  void appendHorizontalAxis(std::string& out, DotGrid const& grid, std::size_t columns) const;
  [[nodiscard]] std::string extremeLine() const;
  [[nodiscard]] std::string limitLine() const;

  [[nodiscard]] std::string shownExtreme(std::string_view text) const {
    return red(text, m_style.colour && m_series.isExceeded);
  }
  [[nodiscard]] std::string shownLimit(std::string_view text) const { return yellow(text, m_style.colour); }

  TableSeries const& m_series;
  TextStyle m_style;
  Signs m_signs;
  Chart m_chart;
  std::size_t m_labelWidth;
};

DotGrid Plot::genGrid(std::size_t columns) const {
  DotGrid grid(columns, s_rows, m_signs.dots);
  for (auto const& line : m_chart.lines) grid.draw(line);
  for (auto const& point : m_chart.infinite)
    grid.mark(point, point.y > 0.5 ? m_signs.infinite : m_signs.negativeInfinite);
  if (m_chart.extreme) grid.mark(*m_chart.extreme, shownExtreme(m_signs.extreme));
  for (auto const& limit : m_chart.limits) grid.rule(limit.y, shownLimit(m_signs.limit));
  return grid;
}

void Plot::appendPicture(std::string& out) const {
  auto const columns = columnsBeside(m_labelWidth + 2);
  auto const grid = genGrid(columns);
  for (std::size_t row = 0; row < s_rows; ++row) {
    auto const tick = std::find_if(m_chart.y.ticks.begin(), m_chart.y.ticks.end(),
                                   [&](Tick const& each) { return grid.rowOf(each.fraction) == row; });
    bool const hasTick = tick != m_chart.y.ticks.end();
    appendLine(out, fmt::format("{:>{}} {}{}", hasTick ? tick->label : "", m_labelWidth,
                                hasTick ? m_signs.verticalTick : m_signs.vertical, grid.text(row)));
  }
  appendHorizontalAxis(out, grid, columns);
}

/// The line below the rows, and the numbers below that, as far as they have room beside each other.
void Plot::appendHorizontalAxis(std::string& out, DotGrid const& grid, std::size_t columns) const {
  std::vector<bool> hasTick(columns, false);
  std::string labels;
  for (auto const& tick : m_chart.x.ticks) {
    auto const column = grid.columnOf(tick.fraction);
    auto const width = tick.label.size();
    auto const begin = std::min(column - std::min(column, width / 2), columns - width);
    if (!labels.empty() && begin <= labels.size()) continue;
    hasTick[column] = true;
    labels.append(begin - labels.size(), ' ').append(tick.label);
  }
  auto line = std::string(m_labelWidth + 1, ' ').append(m_signs.corner);
  for (bool const isTick : hasTick) line += isTick ? m_signs.horizontalTick : m_signs.horizontal;
  appendLine(out, line);
  auto const name = axisName();
  appendLine(out, std::string(m_labelWidth - displayWidth(name), ' ') + name + "  " + labels);
}

std::string Plot::extremeLine() const {
  auto const text = extremeText(m_series, m_style.digits);
  auto line = fmt::format("  {}{}", m_chart.extreme ? fmt::format("{} ", m_signs.extreme) : "", text);
  if (m_series.isExceeded) line += ", " + tr("beyond its limit");
  return shownExtreme(line);
}

std::string Plot::limitLine() const {
  auto const& limit = *m_series.column.limit;
  bool const isLimitShown = !m_chart.isEmpty() && !m_chart.limits.empty();
  return fmt::format("  {}{}", isLimitShown ? shownLimit(m_signs.limit) + ' ' : "",
                     limitText(limit.value, limit.unit, m_style.digits));
}

}  // namespace

std::string renderSeriesAsText(std::vector<TableSeries> const& list, TextStyle const& style) {
  std::string out;
  for (auto const& series : list) {
    if (!out.empty()) out += '\n';
    out += bold(titleText(series), style.colour) + "\n\n";
    Plot(series, style).appendTo(out);
  }
  return out.empty() ? tr("no series") + '\n' : out;
}

}  // namespace Kestrel::ResultTables

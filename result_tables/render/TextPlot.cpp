#include "result_tables/render/TextPlot.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "result_tables/base/Text.h"
#include "result_tables/render/Ansi.h"
#include "result_tables/render/DotGrid.h"
#include "result_tables/render/TextLine.h"

namespace Kestrel::ResultTables {

namespace {

constexpr std::size_t s_rows = 16;
constexpr std::size_t s_leastColumns = 40;
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

Signs const& signsOf(TextStyle const& style) { return style.unicode ? s_unicodeSigns : s_asciiSigns; }

std::size_t columnsBeside(std::size_t labels, TextStyle const& style) {
  auto const width = style.width == 0 ? s_usualWidth : style.width;
  return std::max(width, s_leastColumns + labels) - labels;
}

/// The picture as characters.
DotGrid genGrid(Chart const& chart, PlotSigns const& shown, Signs const& signs, std::size_t columns) {
  DotGrid grid(columns, s_rows, signs.dots);
  for (auto const& line : chart.lines) grid.draw(line);
  for (auto const& point : chart.infinite)
    grid.mark(point, point.y > 0.5 ? signs.infinite : signs.negativeInfinite);
  for (auto const& point : chart.exceeded) grid.mark(point, shown.extreme);
  if (chart.extreme) grid.mark(*chart.extreme, shown.extreme);
  for (auto const& limit : chart.limits) grid.rule(limit.y, shown.limit);
  for (auto const& line : chart.limitSteps) {
    for (std::size_t i = 1; i < line.size(); ++i) grid.rule(line[i].y, shown.limit, line[i - 1].x, line[i].x);
  }
  return grid;
}

}  // namespace

ChartIntervals plotIntervals(TextStyle const& style) {
  return {columnsBeside(0, style) / s_columnsPerTick, s_verticalIntervals};
}

PlotSigns plotSigns(TextStyle const& style) {
  auto const& signs = signsOf(style);
  return {std::string(signs.extreme), std::string(signs.limit)};
}

TextPlot::TextPlot(Chart chart, std::string axisName, bool isExceeded, TextStyle const& style)
    : m_chart(std::move(chart)),
      m_axisName(std::move(axisName)),
      m_style(style),
      m_shown{red(signsOf(style).extreme, style.colour && isExceeded),
              yellow(signsOf(style).limit, style.colour)},
      m_labelWidth(displayWidth(m_axisName)) {
  for (auto const& tick : m_chart.y.ticks) m_labelWidth = std::max(m_labelWidth, tick.label.size());
}

void TextPlot::appendTo(std::string& out) const {
  auto const& signs = signsOf(m_style);
  auto const columns = columnsBeside(m_labelWidth + 2, m_style);
  auto const grid = genGrid(m_chart, m_shown, signs, columns);
  for (std::size_t row = 0; row < s_rows; ++row) {
    auto const tick = std::find_if(m_chart.y.ticks.begin(), m_chart.y.ticks.end(),
                                   [&](Tick const& each) { return grid.rowOf(each.fraction) == row; });
    bool const hasTick = tick != m_chart.y.ticks.end();
    appendLine(out, fmt::format("{:>{}} {}{}", hasTick ? tick->label : "", m_labelWidth,
                                hasTick ? signs.verticalTick : signs.vertical, grid.text(row)));
  }
  appendHorizontalAxis(out, grid, columns);
}

/// The line below the rows, and the numbers below that, as far as they have room beside each other.
void TextPlot::appendHorizontalAxis(std::string& out, DotGrid const& grid, std::size_t columns) const {
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
  auto const& signs = signsOf(m_style);
  auto line = std::string(m_labelWidth + 1, ' ').append(signs.corner);
  for (bool const isTick : hasTick) line += isTick ? signs.horizontalTick : signs.horizontal;
  appendLine(out, line);
  appendLine(out, std::string(m_labelWidth - displayWidth(m_axisName), ' ') + m_axisName + "  " + labels);
}

}  // namespace Kestrel::ResultTables

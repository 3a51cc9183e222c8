#include "result_tables/render/DotGrid.h"

#include <algorithm>
#include <cmath>

namespace Kestrel::ResultTables {

namespace {

/// Bits of the dots in a Braille pattern, row by row.
constexpr unsigned char s_brailleDots[4][2] = {{0x01, 0x08}, {0x02, 0x10}, {0x04, 0x20}, {0x40, 0x80}};

/// The pattern with these dots in UTF-8: U+2800 to U+28FF.
std::string brailleOf(unsigned char dots) {
  return {'\xE2', static_cast<char>(0xA0 | (dots >> 6)), static_cast<char>(0x80 | (dots & 0x3F))};
}

}  // namespace

DotGrid::DotGrid(std::size_t columns, std::size_t rows, Characters characters)
    : m_columns(columns),
      m_rows(rows),
      m_characters(characters),
      m_dotsAcross(characters == Characters::braille ? 2 : 1),
      m_dotsDown(characters == Characters::braille ? 4 : 1),
      m_cells(columns * rows) {}

std::size_t DotGrid::dotOf(double fraction, std::size_t count) {
  return static_cast<std::size_t>(std::lround(fraction * static_cast<double>(count - 1)));
}

void DotGrid::set(std::size_t across, std::size_t down) {
  cellAt(across / m_dotsAcross, down / m_dotsDown).dots |=
      s_brailleDots[down % m_dotsDown][across % m_dotsAcross];
}

void DotGrid::draw(std::vector<ChartPoint> const& line) {
  for (std::size_t i = 0; i < line.size(); ++i) drawSegment(line[i == 0 ? 0 : i - 1], line[i]);
}

/// A dot in each row or column of dots, whichever are more.
void DotGrid::drawSegment(ChartPoint const& from, ChartPoint const& to) {
  auto const across = [this](double x) { return static_cast<double>(dotOf(x, m_columns * m_dotsAcross)); };
  auto const down = [this](double y) { return static_cast<double>(dotOf(1.0 - y, m_rows * m_dotsDown)); };
  double const x = across(from.x);
  double const y = down(from.y);
  double const width = across(to.x) - x;
  double const height = down(to.y) - y;
  auto const count = static_cast<std::size_t>(std::max({std::abs(width), std::abs(height), 1.0}));
  for (std::size_t i = 0; i <= count; ++i) {
    double const part = static_cast<double>(i) / static_cast<double>(count);
    set(static_cast<std::size_t>(std::lround(x + width * part)),
        static_cast<std::size_t>(std::lround(y + height * part)));
  }
}

void DotGrid::mark(ChartPoint const& point, std::string_view shown) {
  cellAt(columnOf(point.x), rowOf(point.y)).shown = shown;
}

void DotGrid::rule(double y, std::string_view shown, double from, double to) {
  auto const row = rowOf(y);
  for (auto column = columnOf(from); column <= columnOf(to); ++column) {
    auto& cell = cellAt(column, row);
    if (cell.dots == 0 && cell.shown.empty()) cell.shown = shown;
  }
}

std::string DotGrid::shown(Cell const& cell) const {
  if (!cell.shown.empty()) return cell.shown;
  if (cell.dots == 0) return " ";
  return m_characters == Characters::braille ? brailleOf(cell.dots) : "*";
}

std::string DotGrid::text(std::size_t row) const {
  std::string text;
  for (std::size_t column = 0; column < m_columns; ++column) text += shown(m_cells[row * m_columns + column]);
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

}  // namespace Kestrel::ResultTables

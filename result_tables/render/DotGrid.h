#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "result_tables/render/Chart.h"

namespace Kestrel::ResultTables {

/// A picture out of characters, all of which take one column of a terminal.
class DotGrid {
 public:
  enum class Characters {
    braille,  ///< two by four dots each
    ascii,    ///< a "*" is a dot
  };

  /// REQUIRES: columns and rows > 0.
  DotGrid(std::size_t columns, std::size_t rows, Characters characters);

  /// The dots of a line, which may be one point.
  void draw(std::vector<ChartPoint> const& line);

  /// Puts a character in the place of the dots that lie at a point. `shown` is one column wide: the same in
  /// colour.
  void mark(ChartPoint const& point, std::string_view shown);

  /// Fills what is free in the row at that height, from one fraction of the width to another, once all dots
  /// and marks are there.
  void rule(double y, std::string_view shown, double from = 0.0, double to = 1.0);

  /// The column and the row, from above, of a point.
  [[nodiscard]] std::size_t columnOf(double x) const {
    return dotOf(x, m_columns * m_dotsAcross) / m_dotsAcross;
  }
  [[nodiscard]] std::size_t rowOf(double y) const { return dotOf(1.0 - y, m_rows * m_dotsDown) / m_dotsDown; }

  /// The characters of a row, from above, without blanks at the end.
  [[nodiscard]] std::string text(std::size_t row) const;

 private:
  struct Cell {
    unsigned char dots = 0;  ///< a bit each, as they stand in a Braille pattern's number
    std::string shown;       ///< in their place; empty where there is nothing
  };

  [[nodiscard]] static std::size_t dotOf(double fraction, std::size_t count);
  void set(std::size_t across, std::size_t down);
  void drawSegment(ChartPoint const& from, ChartPoint const& to);
  [[nodiscard]] Cell& cellAt(std::size_t column, std::size_t row) {
    return m_cells[row * m_columns + column];
  }
  [[nodiscard]] std::string shown(Cell const& cell) const;

  std::size_t m_columns;
  std::size_t m_rows;
  Characters m_characters;
  std::size_t m_dotsAcross;  ///< of a character
  std::size_t m_dotsDown;
  std::vector<Cell> m_cells;  ///< row by row
};

}  // namespace Kestrel::ResultTables

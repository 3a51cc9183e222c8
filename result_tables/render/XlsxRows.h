#pragma once

#include <xlsxwriter.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Kestrel::ResultTables {

/// Rows and columns of a sheet that a workbook can hold.
inline constexpr std::size_t s_mostXlsxRows = LXW_ROW_MAX;
inline constexpr std::size_t s_mostXlsxColumns = LXW_COL_MAX;

/// Characters as spreadsheets count them: one beyond the first 65,536 of Unicode is two.
[[nodiscard]] std::size_t countXlsxCharacters(std::string_view utf8);

/// What people call a column, counted from 0: "A", "AB".
[[nodiscard]] std::string xlsxColumn(std::size_t column);

/// The number of the cells in `format`, for `XlsxRows`.
[[nodiscard]] int styleOf(lxw_format& format);

/// Writes the rows of a sheet that is in constant memory, one after the other, cell by cell, from the first.
///
/// They go straight to where libxlsxwriter would put its own. That prints numbers with 16 digits, with which
/// half of all doubles come back as others, and takes several times as long.
class XlsxRows {
 public:
  /// REQUIRES: nobody else writes cells of the sheet.
  explicit XlsxRows(lxw_worksheet& sheet);

  /// What a text looks like in the file; empty for an empty one.
  [[nodiscard]] static std::string spell(std::string_view text);
  /// The same for one that recurs, which the workbook keeps in memory.
  [[nodiscard]] std::string share(std::string_view text);

  /// Makes the row as high, in points. REQUIRES: no cell of it is written.
  void setHeight(int points) { m_height = points; }

  /// Leaves the cell empty where the text is.
  void spelt(std::string_view spelt, int style = 0);
  void text(std::string_view text, int style = 0) { spelt(spell(text), style); }
  /// A text that leads to a place in the workbook: "'Clamps'!A2".
  void link(std::string_view text, std::string const& place, int style);
  /// A number, or the word for what is none: "NaN", "inf", "-inf".
  void number(double value, int style = 0);
  void flag(bool value, int style = 0);
  /// A formula, as it stands behind "=", with its result, which is a number or a word as above.
  void formula(std::string_view formula, double result, int style = 0);
  /// The same where the result is an empty text.
  void formulaOfNothing(std::string_view formula, int style = 0);
  /// Leaves cells empty.
  void skip(std::size_t cells = 1) { m_column += cells; }

  /// An `Error` where there is no room for temporary files.
  void endRow();

  /// The row that is being written, from 0, and what people call it.
  [[nodiscard]] std::size_t row() const { return m_row; }
  [[nodiscard]] std::string const& rowNumber() const { return m_rowNumber; }
  /// The column of the next cell.
  [[nodiscard]] std::size_t column() const { return m_column; }

  /// Ends the sheet. Returns the bytes of all its rows. REQUIRES: there is one.
  std::size_t finish();

 private:
  void beginRow();
  void beginCell(int style);
  [[nodiscard]] std::string const& letters(std::size_t column);
  void flush();

  lxw_worksheet* m_sheet;
  std::size_t m_row = 0;
  std::string m_rowNumber = "1";
  std::size_t m_column = 0;
  std::size_t m_columns = 0;  ///< of the longest row
  bool m_isBegun = false;     ///< whether the row has a cell
  int m_height = 0;           ///< of the row; 0: that of all
  std::vector<std::string> m_letters;
  std::string m_out;
  std::size_t m_written = 0;
};

}  // namespace Kestrel::ResultTables

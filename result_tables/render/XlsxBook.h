#pragma once

#include <xlsxwriter.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "result_tables/base/File.h"
#include "result_tables/render/XlsxRows.h"

namespace Kestrel::ResultTables {

/// A workbook while it is written, with its sheets in constant memory: what is written to a sheet lies in the
/// temporary folder until the workbook is saved. What cannot be done is an `Error`.
class XlsxBook {
 public:
  XlsxBook();
  XlsxBook(XlsxBook const&) = delete;
  XlsxBook& operator=(XlsxBook const&) = delete;
  ~XlsxBook();

  /// A sheet whose name is the title or, where that is no legal or no new name, close to it. Sheets come in
  /// the order in which they are added and can be written in any order.
  [[nodiscard]] lxw_worksheet& addSheet(std::string const& title);

  /// A format of cells that lives as long as the workbook.
  [[nodiscard]] lxw_format& addFormat();

  /// A chart that lives as long as the workbook.
  [[nodiscard]] lxw_chart& addChart(lxw_chart_type type);

  /// Ends the rows of a sheet.
  void finish(XlsxRows& rows);

  /// The workbook as bytes, the same for the same content. Nothing can be added later. REQUIRES: the rows of
  /// all sheets are finished.
  [[nodiscard]] std::string save();

 private:
  UnnamedFile m_file;
  std::string m_folder;
  lxw_workbook* m_book;
  std::vector<lxw_worksheet*> m_sheets;
  std::size_t m_largestSheet = 0;  ///< bytes of its rows
  std::size_t m_allSheets = 0;
};

/// An `Error` unless libxlsxwriter has done what it was asked for.
void expectDone(lxw_error error);

/// The name of a sheet as formulas and links write it: "'Joining Tools'".
[[nodiscard]] std::string quotedNameOf(lxw_worksheet const& sheet);

/// A table: a row of heads that stays in sight, and rows below it, on as many sheets as they need.
class XlsxTable {
 public:
  struct Column {
    std::string head;
    double width;  ///< in characters
  };
  /// What remains to be done for a sheet that has rows from 1 to `lastRow`.
  using Finish = std::function<void(lxw_worksheet& sheet, lxw_row_t lastRow)>;

  /// The first sheet is added at once; `title` is its name and begins those of others. The first `frozen`
  /// columns stay in sight. REQUIRES: rowsPerSheet > 1; the workbook and the format outlive the table.
  XlsxTable(XlsxBook& book, std::string title, std::vector<Column> columns, std::size_t frozen,
            lxw_format& ofHeads, Finish finish, std::size_t rowsPerSheet);

  /// Where to write the next row: cells, then its end.
  [[nodiscard]] XlsxRows& nextRow();
  /// How a text that recurs is spelt in all rows.
  [[nodiscard]] std::string share(std::string_view text) { return m_rows->share(text); }
  /// The sheet on which that is.
  [[nodiscard]] lxw_worksheet const& sheet() const { return *m_written.back(); }
  /// All that there are.
  [[nodiscard]] std::vector<lxw_worksheet*> const& sheets() const { return m_written; }

  /// Ends the last sheet. REQUIRES: once, after all rows.
  void finish();

 private:
  void beginSheet();

  XlsxBook* m_book;
  std::string m_title;
  std::vector<Column> m_columns;
  std::size_t m_frozen;
  int m_ofHeads;
  Finish m_finish;
  std::size_t m_rowsPerSheet;
  std::vector<lxw_worksheet*> m_written;
  std::optional<XlsxRows> m_rows;
};

}  // namespace Kestrel::ResultTables

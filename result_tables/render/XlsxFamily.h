#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "result_tables/render/XlsxLimits.h"
#include "result_tables/tables/Summary.h"

namespace Kestrel::ResultTables {

/// What the sheets of a workbook have in common.
struct XlsxSheets {
  XlsxBook& book;
  XlsxStyles& styles;
  std::vector<ResultTable> const& tables;
  bool severalFiles;  ///< that the tables come from
  std::size_t rowsPerSheet;
};

/// What is found while the sheets are written.
struct XlsxTotals {
  TableCounts counts = {};
  HighestUtilisations highest;
};

/// The sheet of a family, with all units below each other. A row is an element in one section of its table; a
/// quantity that has a limit somewhere has columns for the limit and for how much of it is taken as well.
class XlsxFamily {
 public:
  /// Adds the sheet. `tables` are indices of tables of one family, ascending; at least one. REQUIRES:
  /// `sheets` outlives it.
  XlsxFamily(XlsxSheets const& sheets, std::vector<std::size_t> tables);
  XlsxFamily(XlsxFamily const&) = delete;
  XlsxFamily& operator=(XlsxFamily const&) = delete;

  /// Writes the rows and their limits. Once. `limits` may be null where no column has one.
  void write(XlsxLimits* limits, XlsxTotals& totals);

  [[nodiscard]] std::string title() const { return front().title(); }
  [[nodiscard]] std::size_t countRows() const;
  /// Whether the table of that index is one of its.
  [[nodiscard]] bool holds(std::size_t table) const { return std::ranges::binary_search(m_tables, table); }

  /// The cell of the first head, of a value, and of that value's limit: "'Clamps'!$G$12". REQUIRES: written,
  /// and the value is of a table that it holds.
  [[nodiscard]] std::string begin() const;
  [[nodiscard]] std::string cellOf(UtilisedValue const& value) const;
  [[nodiscard]] std::string const& limitOf(UtilisedValue const& value) const;

 private:
  /// A quantity of the family's sections, with its columns of the sheet.
  struct Quantity {
    std::string key;
    std::string name;
    std::string head;
    bool isLimited = false;
    std::size_t column = 0;
    std::string value = {};  ///< the letters of its columns
    std::string limit = {};
  };
  /// A section of a table while its rows are written.
  struct Section {
    std::size_t table;
    std::size_t group;
    std::vector<std::optional<std::size_t>> columns;  ///< by quantity
    std::vector<std::string> limits;                  ///< where they stand, by column; empty: none
  };

  [[nodiscard]] ResultTable const& front() const { return m_sheets->tables[m_tables.front()]; }
  [[nodiscard]] std::vector<Quantity> collectQuantities() const;
  [[nodiscard]] std::vector<XlsxTable::Column> genColumns() const;

  void finishSheet(lxw_worksheet& sheet, lxw_row_t lastRow) const;
  void markExceeded(lxw_worksheet& sheet, Quantity const& quantity, lxw_row_t lastRow) const;

  [[nodiscard]] Section genSection(std::size_t table, std::size_t group, XlsxLimits* limits) const;
  void writeSection(Section const& section, XlsxTotals& totals);
  void writeValues(XlsxRows& rows, Section const& section, ResultTable::Place const& place,
                   XlsxTotals& totals);
  void writeNumber(XlsxRows& rows, TableValue const& value) const;
  void writeLimit(XlsxRows& rows, Quantity const& quantity, std::string const& cell, ColumnLimit const& limit,
                  TableValue const& value, bool isValid);

  XlsxSheets const* m_sheets;
  std::vector<std::size_t> m_tables;
  std::size_t m_validColumn;
  std::string m_valid;  ///< its letters
  std::vector<Quantity> m_quantities;
  int m_ofWord;
  int m_withNaN;
  int m_ofLimit;
  int m_ofUtilisation;
  int m_ofValid;
  XlsxTable m_rows;
  std::string m_noData;                                         ///< as it is spelt
  std::vector<std::vector<std::vector<std::string>>> m_limits;  ///< by table, section and column
  std::string m_formula;                                        ///< reused
};

}  // namespace Kestrel::ResultTables

#pragma once

#include <cstddef>
#include <string>

#include "result_tables/render/XlsxBook.h"
#include "result_tables/render/XlsxStyles.h"
#include "result_tables/tables/ResultTable.h"

namespace Kestrel::ResultTables {

/// What people call the quantity of a column.
[[nodiscard]] std::string const& quantityNameOf(TableColumn const& column);

/// The sheet of limits: one for each unit and limited quantity, in a cell of its own.
class XlsxLimits {
 public:
  /// REQUIRES: the workbook and the styles outlive it.
  XlsxLimits(XlsxBook& book, XlsxStyles& styles, bool severalFiles, std::size_t rowsPerSheet);

  /// Writes the limit of a column, and says where: "'Limits'!$G$2". REQUIRES: it has one.
  [[nodiscard]] std::string add(ResultTable const& table, std::size_t group, TableColumn const& column);

  /// The cell of the first head.
  [[nodiscard]] std::string begin() const { return quotedNameOf(*m_table.sheets().front()) + "!$A$1"; }

  void finish() { m_table.finish(); }

 private:
  bool m_severalFiles;
  int m_ofLimit;
  XlsxTable m_table;
};

}  // namespace Kestrel::ResultTables

#pragma once

#include <memory>
#include <string>

#include "result_tables/render/RunValuesWriter.h"
#include "result_tables/render/XlsxRows.h"
#include "result_tables/tables/RunTable.h"

namespace Kestrel::ResultTables {

/// A workbook with a sheet of runs, one with a row for each run and a column for each value, named by
/// `genColumnNames`, and one of statistics with a row for each value. Where there are more values than
/// `mostColumns`, less one, the second sheet says so instead. The same bytes for the same table.
[[nodiscard]] std::string renderXlsx(RunTable const& table, std::size_t mostColumns);

[[nodiscard]] inline std::string renderRunTableAsXlsx(RunTable const& table) {
  return renderXlsx(table, s_mostXlsxColumns);
}

/// A workbook with a row for each value of each run, on as many sheets as they need. Meanwhile everything
/// lies in the temporary folder.
class XlsxRunValues : public RunValuesWriter {
 public:
  explicit XlsxRunValues(std::size_t rowsPerSheet = s_mostXlsxRows);
  ~XlsxRunValues() override;

  [[nodiscard]] std::string write(RunValues const& run) override;
  [[nodiscard]] std::string finish() override;

 private:
  class Book;
  std::unique_ptr<Book> m_book;
};

}  // namespace Kestrel::ResultTables

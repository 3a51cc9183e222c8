#pragma once

#include <cstddef>
#include <string>

#include "result_tables/render/XlsxRows.h"
#include "result_tables/tables/Tables.h"

namespace Kestrel::ResultTables {

/// The tables as a workbook of Office Open XML, which spreadsheets open: a summary, the limits, and a sheet
/// for each family. Marks and utilisations follow the limits when these are changed there. The same bytes for
/// the same tables.
///
/// Passes once over the series. Takes no memory for a value but that of the result; meanwhile everything lies
/// in the temporary folder. `rowsPerSheet` is how many a sheet holds at the most; what is beyond follows on
/// another. REQUIRES: rowsPerSheet > 1.
[[nodiscard]] std::string renderXlsx(Tables const& tables, std::size_t rowsPerSheet);

[[nodiscard]] inline std::string renderAsXlsx(Tables const& tables) {
  return renderXlsx(tables, s_mostXlsxRows);
}

}  // namespace Kestrel::ResultTables

#pragma once

#include <deque>

#include "result_tables/render/XlsxFamily.h"
#include "result_tables/tables/Tables.h"

namespace Kestrel::ResultTables {

/// Writes the sheet that says what was read and found, with links to the others, and draws the highest
/// utilisations. `limits` is null where there are none. REQUIRES: the others are written.
void writeXlsxSummary(lxw_worksheet& sheet, XlsxSheets const& sheets, Tables const& tables,
                      std::deque<XlsxFamily> const& families, XlsxLimits const* limits, XlsxTotals& totals);

}  // namespace Kestrel::ResultTables

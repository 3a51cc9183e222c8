#pragma once

#include "result_tables/render/HtmlWriter.h"
#include "result_tables/tables/RunTable.h"

namespace Kestrel::ResultTables {

/// A small picture of a value through the runs, from left to right in their order: a dot for each that has a
/// number for it, of valid elements, marked where that is beyond the limit, and the limits. Of very many runs
/// those that can be told apart.
void writeHtmlTrend(HtmlWriter& html, RunTable const& table, RunTableColumn const& column, int digits);

}  // namespace Kestrel::ResultTables

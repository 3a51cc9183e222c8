#pragma once

#include <string>

#include "result_tables/render/TextStyle.h"
#include "result_tables/tables/Differences.h"

namespace Kestrel::ResultTables {

/// A report of what differs: what was compared, how much of it differs, and a table of differences for each
/// section of a table that has any, with an arrow where a value crossed its limit. Of files that could not be
/// compared it says why.
[[nodiscard]] std::string renderDifferencesAsHtml(ResultDifferences const& differences,
                                                  TextStyle const& style);

}  // namespace Kestrel::ResultTables

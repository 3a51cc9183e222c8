#pragma once

#include <string>
#include <vector>

#include "result_tables/tables/Findings.h"

namespace Kestrel::ResultTables {

/// One JSON object with all findings in order. A file that could not be checked has none.
[[nodiscard]] std::string renderFindingsAsJson(std::vector<FileFindings> const& files);

}  // namespace Kestrel::ResultTables

#pragma once

#include <string>
#include <vector>

#include "result_tables/tables/Findings.h"

namespace Kestrel::ResultTables {

/// A JUnit report: a suite per file, a case per table, failed when there are findings. A file that could not
/// be checked is a suite with one case in error.
[[nodiscard]] std::string renderFindingsAsJunit(std::vector<FileFindings> const& files);

}  // namespace Kestrel::ResultTables

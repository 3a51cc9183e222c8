#pragma once

#include <string>
#include <vector>

#include "result_tables/tables/Findings.h"

namespace Kestrel::ResultTables {

/// A JUnit report: a suite per file, a case per element and limited quantity: failed where something
/// is found, skipped where there is no data. An invalid element has a failed case of its own and its
/// quantities are skipped. A file that could not be checked is a suite with one case in error. No two cases
/// of a suite have the same names.
[[nodiscard]] std::string renderFindingsAsJunit(std::vector<FileFindings> const& files);

}  // namespace Kestrel::ResultTables

#pragma once

#include <string>
#include <vector>

#include "result_tables/render/TextStyle.h"
#include "result_tables/tables/Findings.h"

namespace Kestrel::ResultTables {

/// One line per finding, and a last line that counts them. In colour the text holds escape sequences.
[[nodiscard]] std::string renderFindingsAsText(std::vector<FileFindings> const& files,
                                               TextStyle const& style);

/// One JSON object with all findings in order. A file that could not be checked has none.
[[nodiscard]] std::string renderFindingsAsJson(std::vector<FileFindings> const& files);

/// A JUnit report: a suite per file, a case per table, failed when there are findings. A file that could not
/// be checked is a suite with one case in error.
[[nodiscard]] std::string renderFindingsAsJunit(std::vector<FileFindings> const& files);

}  // namespace Kestrel::ResultTables

#pragma once

#include <string>
#include <vector>

#include "result_tables/render/TextStyle.h"
#include "result_tables/tables/Findings.h"

namespace Kestrel::ResultTables {

/// One line per finding, and a last line that counts them. In colour the text holds escape sequences.
[[nodiscard]] std::string renderFindingsAsText(std::vector<FileFindings> const& files,
                                               TextStyle const& style);

/// The finding in one line for a person to read, as
/// "OP20, Clamps, Forces, Clamp 1, Max Closing Force: -846.15 N, limit 500 N".
[[nodiscard]] std::string findingLine(TableFindings const& table, Finding const& finding);

}  // namespace Kestrel::ResultTables

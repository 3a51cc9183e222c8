#pragma once

#include <string>
#include <vector>

#include "result_tables/render/TextStyle.h"
#include "result_tables/tables/Findings.h"

namespace Kestrel::ResultTables {

/// One line per finding, one per file that could not be checked, and a last line that counts findings and
/// what was compared. In colour the text holds escape sequences.
[[nodiscard]] std::string renderFindingsAsText(std::vector<FileFindings> const& files,
                                               TextStyle const& style);

/// The finding in one line for a person to read, as
/// "OP20, Clamps, Forces, Clamp 1, Max Closing Force: -846.15 N, limit 500 N, step 3, time 0.6".
[[nodiscard]] std::string findingLine(TableFindings const& table, Finding const& finding, int digits);

/// Family, section, sub-group, element and column, as they stand there.
[[nodiscard]] std::string placeLine(TableFindings const& table, NamedPlace const& place);

}  // namespace Kestrel::ResultTables

#pragma once

#include <string>

#include "result_tables/render/TextStyle.h"
#include "result_tables/tables/Differences.h"

namespace Kestrel::ResultTables {

/// The differences for a person to read, under their units, families and sections: a line each with the value
/// before and after, the change, and what became of it (beyond its limit, within it again, valid or not,
/// added, removed). Where a line has no room for all of that the element stands above its numbers, and what
/// became of it below. The last two lines count. In colour the text holds escape sequences for a terminal.
[[nodiscard]] std::string renderDifferencesAsText(ResultDifferences const& differences,
                                                  TextStyle const& style);

/// A difference in one line for a person to read, as
/// "Max Normal Force: -7.25 N → -8.5 N, change -1.25 N, -17.2 %".
[[nodiscard]] std::string differenceLine(ValueDifference const& difference, int digits);

/// Section, sub-group and element, as they stand there.
[[nodiscard]] std::string rowLine(RowDifferences const& row);

}  // namespace Kestrel::ResultTables

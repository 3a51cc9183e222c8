#pragma once

#include <string>
#include <vector>

#include "result_tables/render/TextStyle.h"
#include "result_tables/tables/ResultTable.h"

namespace Kestrel::ResultTables {

/// The tables for a person to read: in columns of characters, numbers with up to seven digits and their
/// decimal points in line. The column heads of a long section are repeated, so that a pager always shows
/// some. Columns that a line has no room for follow in blocks with names and heads of their own; a block has
/// one column at least. A summary stands first where the text is longer than the screen. In colour the text
/// holds escape sequences for a terminal.
[[nodiscard]] std::string renderText(std::vector<ResultTable> const& tables, TextStyle const& style);

}  // namespace Kestrel::ResultTables

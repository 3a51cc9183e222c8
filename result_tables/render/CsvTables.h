#pragma once

#include <string>
#include <vector>

#include "result_tables/tables/ResultTable.h"

namespace Kestrel::ResultTables {

/// One record per value with a header record, as RFC 4180 has it: commas, CRLF, quotation marks where needed.
[[nodiscard]] std::string renderCsv(std::vector<ResultTable> const& tables);

}  // namespace Kestrel::ResultTables

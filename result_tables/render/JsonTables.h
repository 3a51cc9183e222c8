#pragma once

#include <string>
#include <vector>

#include "result_tables/tables/ResultTable.h"

namespace Kestrel::ResultTables {

/// The tables as one JSON object, everything that is known about them included.
[[nodiscard]] std::string renderJson(std::vector<ResultTable> const& tables);

}  // namespace Kestrel::ResultTables

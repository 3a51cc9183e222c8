#pragma once

#include <string>

#include "result_tables/tables/WorstValues.h"

namespace Kestrel::ResultTables {

/// { "worst": [ … ] }
[[nodiscard]] std::string renderWorstValuesAsJson(WorstValues const& values);

}  // namespace Kestrel::ResultTables

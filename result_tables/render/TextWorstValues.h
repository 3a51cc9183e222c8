#pragma once

#include <string>

#include "result_tables/render/TextStyle.h"
#include "result_tables/tables/WorstValues.h"

namespace Kestrel::ResultTables {

/// One line per value; those beyond their limits are red.
[[nodiscard]] std::string renderWorstValuesAsText(WorstValues const& values, TextStyle const& style);

}  // namespace Kestrel::ResultTables

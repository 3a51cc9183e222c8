#pragma once

#include <string>

#include "result_tables/render/CsvWriter.h"
#include "result_tables/tables/WorstValues.h"

namespace Kestrel::ResultTables {

/// One record per value with a header record.
[[nodiscard]] std::string renderCsv(WorstValues const& values, CsvDialect const& dialect);

}  // namespace Kestrel::ResultTables

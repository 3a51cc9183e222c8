#pragma once

#include <string>

#include "result_tables/render/CsvWriter.h"
#include "result_tables/tables/Trend.h"

namespace Kestrel::ResultTables {

/// One record per run of each trend with a header record; fields as `show` has them.
[[nodiscard]] std::string renderCsv(Trends const& trends, CsvDialect const& dialect);

}  // namespace Kestrel::ResultTables

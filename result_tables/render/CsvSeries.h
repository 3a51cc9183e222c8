#pragma once

#include <string>
#include <vector>

#include "result_tables/render/CsvWriter.h"
#include "result_tables/tables/Series.h"

namespace Kestrel::ResultTables {

/// One record per value of the series with a header record. Of line joins, a value is the one of minimum and
/// maximum that stands for the step, and both follow; for all others they are empty.
[[nodiscard]] std::string renderCsv(std::vector<TableSeries> const& list, CsvDialect const& dialect);

}  // namespace Kestrel::ResultTables

#pragma once

#include <string>
#include <vector>

#include "result_tables/tables/Series.h"

namespace Kestrel::ResultTables {

/// The series as one JSON object, their numbers in stored order. Of line joins, a value is an array of
/// minimum and maximum.
[[nodiscard]] std::string renderSeriesAsJson(std::vector<TableSeries> const& list);

}  // namespace Kestrel::ResultTables

#pragma once

#include <string>
#include <vector>

#include "result_tables/render/TextStyle.h"
#include "result_tables/tables/ResultTable.h"
#include "result_tables/tables/Summary.h"

namespace Kestrel::ResultTables {

/// What a person wants to know before the tables: of each unit its elements and what is found in it, and the
/// ten values that take the most of their limits. Lines are wrapped at the width. Passes over the series of
/// the columns that have a limit.
[[nodiscard]] std::string renderSummaryAsText(std::vector<ResultTable> const& tables, TextStyle const& style);

/// "values beyond their limits: 3, values with NaN: 0, …"
[[nodiscard]] std::string countsText(TableCounts const& counts);

}  // namespace Kestrel::ResultTables

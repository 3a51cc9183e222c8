#pragma once

#include <string>

#include "result_tables/render/TextStyle.h"
#include "result_tables/tables/RunTable.h"

namespace Kestrel::ResultTables {

/// A report of runs: what is found in them, the values that take the most of their limits, the runs, pictures
/// of values through the runs, and what the runs make of each value together. However large the study is, the
/// report is one that a browser opens: of runs, pictures and values no more than some are in it, those that
/// matter most, and it says so.
[[nodiscard]] std::string renderRunTableAsHtml(RunTable const& table, TextStyle const& style);

}  // namespace Kestrel::ResultTables

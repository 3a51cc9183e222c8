#pragma once

#include <string>
#include <vector>

#include "result_tables/render/TextStyle.h"
#include "result_tables/tables/Series.h"

namespace Kestrel::ResultTables {

/// The series for a person to read, each as a plot with the value that the table has, its step and time, and
/// the limit below. A plot fits the width, or 80 columns where none is known, but takes at least 60 columns
/// and always 16 rows beside its axes. In colour the text holds escape sequences for a terminal.
[[nodiscard]] std::string renderSeriesAsText(std::vector<TableSeries> const& list, TextStyle const& style);

}  // namespace Kestrel::ResultTables

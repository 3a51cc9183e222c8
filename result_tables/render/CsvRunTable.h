#pragma once

#include <string>

#include "result_tables/render/CsvWriter.h"
#include "result_tables/tables/RunTable.h"

namespace Kestrel::ResultTables {

/// One record per run with a header record whose fields differ: "label/NAME" for each label, "run", "file",
/// "added", and a field for each value, named by `genColumnNames`. A field is empty where the run has no such
/// value, or no data for it.
[[nodiscard]] std::string renderCsv(RunTable const& table, CsvDialect const& dialect);

/// One record per value with what the runs make of it together; a field is empty where there is no such
/// number, and `limit` is the one of the last run that has one.
[[nodiscard]] std::string renderStatisticsAsCsv(RunTable const& table, CsvDialect const& dialect);

}  // namespace Kestrel::ResultTables

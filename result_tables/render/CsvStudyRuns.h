#pragma once

#include <string>
#include <vector>

#include "result_tables/render/CsvWriter.h"
#include "result_tables/tables/StudyRun.h"

namespace Kestrel::ResultTables {

/// One record per run with a header record. The labels are one field: "key=value", separated by line feeds.
[[nodiscard]] std::string renderCsv(std::vector<StudyRun> const& runs, CsvDialect const& dialect);

}  // namespace Kestrel::ResultTables

#pragma once

#include <string>

#include "result_tables/render/CsvWriter.h"
#include "result_tables/tables/Differences.h"

namespace Kestrel::ResultTables {

/// One record per difference with a header record. What there is none of is empty.
[[nodiscard]] std::string renderCsv(ResultDifferences const& differences,
                                    CsvDialect const& dialect = s_plainCsv);

}  // namespace Kestrel::ResultTables

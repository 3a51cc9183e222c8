#pragma once

#include <string>
#include <vector>

#include "result_tables/render/CsvWriter.h"
#include "result_tables/tables/ResultTable.h"

namespace Kestrel::ResultTables {

/// One record per value with a header record.
[[nodiscard]] std::string renderCsv(std::vector<ResultTable> const& tables,
                                    CsvDialect const& dialect = s_plainCsv);

}  // namespace Kestrel::ResultTables

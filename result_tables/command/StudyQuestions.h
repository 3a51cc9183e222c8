#pragma once

#include "result_tables/command/Command.h"

namespace Kestrel::ResultTables {

/// `study worst`
[[nodiscard]] Run declareStudyWorst(Arguments& arguments);

/// `study trend`
[[nodiscard]] Run declareStudyTrend(Arguments& arguments);

/// `study compare`
[[nodiscard]] Run declareStudyCompare(Arguments& arguments);

}  // namespace Kestrel::ResultTables

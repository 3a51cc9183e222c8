#pragma once

#include "result_tables/command/Command.h"

namespace Kestrel::ResultTables {

/// `study compare`
[[nodiscard]] Run declareStudyCompare(Arguments& arguments);

}  // namespace Kestrel::ResultTables

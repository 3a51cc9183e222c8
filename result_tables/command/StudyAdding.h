#pragma once

#include "result_tables/command/Command.h"

namespace Kestrel::ResultTables {

/// study add
[[nodiscard]] Run declareStudyAdd(Arguments& arguments);

}  // namespace Kestrel::ResultTables

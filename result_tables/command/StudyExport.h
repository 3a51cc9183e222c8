#pragma once

#include "result_tables/command/Command.h"

namespace Kestrel::ResultTables {

/// study export
[[nodiscard]] Run declareStudyExport(Arguments& arguments);

}  // namespace Kestrel::ResultTables

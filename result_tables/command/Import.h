#pragma once

#include <span>

#include "result_tables/command/Command.h"

namespace Kestrel::ResultTables {

/// `import ...`: a results file out of a solver's histories, one command per solver's format.
std::span<Command const> importCommands();

}  // namespace Kestrel::ResultTables

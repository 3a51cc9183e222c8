#pragma once

#include <span>

#include "result_tables/command/Command.h"

namespace Kestrel::ResultTables {

/// `limits ...`: shows and changes the limits of a results file.
std::span<Command const> limitsCommands();

}  // namespace Kestrel::ResultTables

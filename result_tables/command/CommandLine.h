#pragma once

#include "result_tables/command/Command.h"

namespace Kestrel::ResultTables {

/// The program `result-tables`: does what the arguments say. Data goes to standard output, messages to
/// standard error.
[[nodiscard]] ExitCode runCommandLine(int argc, char const* const* argv);

}  // namespace Kestrel::ResultTables

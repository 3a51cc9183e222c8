#pragma once

#include <span>

#include "result_tables/command/Command.h"

namespace Kestrel::ResultTables {

/// The commands of the program, in the order in which help lists them.
[[nodiscard]] std::span<Command const> programCommands();

/// The program `result-tables`: does what the arguments say. Data goes to standard output, messages to
/// standard error.
[[nodiscard]] ExitCode runCommandLine(int argc, char const* const* argv,
                                      std::span<Command const> commands = programCommands());

}  // namespace Kestrel::ResultTables

#pragma once

namespace Kestrel::ResultTables {

/// What the program tells its caller.
enum class ExitCode {
  nothingFound = 0,  ///< done; `check` found nothing
  found = 1,         ///< `check` found something
  failed = 2,        ///< it could not be done; one line on standard error says why
};

/// The program `result-tables`: does what the arguments say. Data goes to standard output, messages to
/// standard error.
[[nodiscard]] ExitCode runCommandLine(int argc, char const* const* argv);

}  // namespace Kestrel::ResultTables

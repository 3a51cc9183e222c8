#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "result_tables/command/Arguments.h"

namespace Kestrel::ResultTables {

/// What the program tells its caller.
enum class ExitCode {
  nothingFound = 0,     ///< done; `check` and `diff` found nothing
  found = 1,            ///< `check` found something, or `diff` a difference
  failed = 2,           ///< it could not be done; one line on standard error says why
  nothingCompared = 3,  ///< `check` found nothing, but had nothing to compare with a limit either
};

/// Does what a command was told.
using Run = std::function<ExitCode()>;

/// A command of the program: one that runs, or the common first word of others.
struct Command {
  std::string_view name;
  std::string (*help)();  ///< one line in the language of the environment
  /// Declares what the command takes and returns what it does with it; null for a first word.
  Run (*declare)(Arguments& arguments) = nullptr;
  std::span<Command const> commands = {};  ///< behind a first word
};

}  // namespace Kestrel::ResultTables

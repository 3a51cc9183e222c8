#pragma once

#include <filesystem>
#include <string>

#include "support/TemporaryFolder.h"

namespace Kestrel::ResultTables {

struct ShellResult {
  int exitCode;
  std::string out;
  std::string err;
};

/// Runs a script of the POSIX shell, in which "$P" is the program result-tables, with `folder` as working
/// directory and English as the language unless the script chooses another.
[[nodiscard]] ShellResult runShell(std::filesystem::path const& folder, std::string const& script);

}  // namespace Kestrel::ResultTables

#include "support/Shell.h"

#include <sys/wait.h>

#include <cstdlib>

namespace Kestrel::ResultTables {

ShellResult runShell(std::filesystem::path const& folder, std::string const& script) {
  TemporaryFolder const capture;
  auto const file =
      capture.write("script", "unset LANGUAGE LC_ALL LC_MESSAGES LANG NO_COLOR\ncd '" + folder.string() +
                                  "' || exit 99\nP='" KESTREL_PROGRAM "'\n" + script + "\n");
  auto const command = "sh '" + file.string() + "' >'" + (capture.path() / "out").string() + "' 2>'" +
                       (capture.path() / "err").string() + "' </dev/null";
  int const status = std::system(command.c_str());  // NOLINT(cert-env33-c): the shell is what is asked for
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, capture.read("out"), capture.read("err")};
}

}  // namespace Kestrel::ResultTables

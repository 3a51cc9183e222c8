#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace Kestrel {

inline std::string quotedForShell(std::string const& word) {
  std::string quoted = "'";
  for (char const c : word) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + '\'';
}

/// What the shell command writes to its standard output; throws unless it ends with 0.
inline std::string outputOfCommand(std::string const& command) {
  auto* pipe = ::popen(command.c_str(), "r");  // NOLINT(cert-env33-c): the shell is what is asked for
  if (!pipe) throw std::runtime_error("cannot start " + command);
  std::string output;
  std::array<char, 4096> buffer{};
  for (std::size_t n = 0; (n = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;) {
    output.append(buffer.data(), n);
  }
  int const status = ::pclose(pipe);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) throw std::runtime_error("failed: " + command);
  return output;
}

/// What this program writes to its standard output when it is started anew with `arguments` in an environment
/// of nothing but `environment` ("NAME=value").
inline std::string outputOfThisProgram(std::vector<std::string> const& environment,
                                       std::vector<std::string> const& arguments) {
  std::string command = "env -i";
  for (auto const& variable : environment) command += ' ' + quotedForShell(variable);
  command += ' ' + quotedForShell(std::filesystem::read_symlink("/proc/self/exe").native());
  for (auto const& argument : arguments) command += ' ' + quotedForShell(argument);
  return outputOfCommand(command);
}

}  // namespace Kestrel

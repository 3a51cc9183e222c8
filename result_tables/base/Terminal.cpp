#include "result_tables/base/Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <string_view>

namespace Kestrel::ResultTables {

namespace {

/// The value of an environment variable; empty where there is none.
std::string_view environment(char const* name) {
  auto const* const value = std::getenv(name);
  return value == nullptr ? std::string_view() : value;
}

std::size_t columnsOfEnvironment() {
  auto const text = environment("COLUMNS");
  std::size_t columns = 0;
  auto const* const end = text.data() + text.size();
  auto const result = std::from_chars(text.data(), end, columns);
  return result.ec == std::errc() && result.ptr == end ? columns : 0;
}

}  // namespace

bool terminalHasColour() {
  auto const kind = environment("TERM");
  return ::isatty(STDOUT_FILENO) != 0 && environment("NO_COLOR").empty() && !kind.empty() && kind != "dumb";
}

std::size_t terminalWidth() {
  if (::isatty(STDOUT_FILENO) == 0) return 0;
  winsize size{};
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
  return columnsOfEnvironment();
}

}  // namespace Kestrel::ResultTables

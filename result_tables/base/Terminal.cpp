#include "result_tables/base/Terminal.h"

#include <langinfo.h>
#include <locale.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <boost/algorithm/string/predicate.hpp>
#include <charconv>
#include <cstdlib>
#include <locale>
#include <string>
#include <string_view>

namespace Kestrel::ResultTables {

namespace {

/// The value of an environment variable; empty where there is none.
std::string_view environment(char const* name) {
  auto const* const value = std::getenv(name);
  return value == nullptr ? std::string_view() : value;
}

std::size_t countInEnvironment(char const* name) {
  auto const text = environment(name);
  std::size_t count = 0;
  auto const* const end = text.data() + text.size();
  auto const result = std::from_chars(text.data(), end, count);
  return result.ec == std::errc() && result.ptr == end ? count : 0;
}

/// What the terminal says of its size or, where it does not, the environment.
std::size_t terminalSize(unsigned short winsize::*extent, char const* variable) {
  if (!standardOutputIsTerminal()) return 0;
  winsize size{};
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.*extent > 0) return size.*extent;
  return countInEnvironment(variable);
}

std::string localeName() {
  for (auto const* const name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    if (auto const value = environment(name); !value.empty()) return std::string(value);
  }
  return "C";
}

/// The character set that the name of a locale says: "UTF-8" of "de_DE.UTF-8@euro"; empty where it says none.
std::string_view charsetNamedBy(std::string_view locale) {
  auto const point = locale.find('.');
  if (point == locale.npos) return {};
  locale.remove_prefix(point + 1);
  return locale.substr(0, locale.find('@'));
}

/// The character set of an installed locale; empty where there is no such locale.
std::string charsetOf(std::string const& name) {
  auto* const locale = ::newlocale(LC_CTYPE_MASK, name.c_str(), nullptr);
  if (locale == nullptr) return {};
  std::string charset = ::nl_langinfo_l(CODESET, locale);
  ::freelocale(locale);
  return charset;
}

}  // namespace

bool standardOutputIsTerminal() { return ::isatty(STDOUT_FILENO) != 0; }

bool terminalHasColour() {
  auto const kind = environment("TERM");
  return standardOutputIsTerminal() && environment("NO_COLOR").empty() && !kind.empty() && kind != "dumb";
}

std::size_t terminalWidth() { return terminalSize(&winsize::ws_col, "COLUMNS"); }
std::size_t terminalHeight() { return terminalSize(&winsize::ws_row, "LINES"); }

bool localeIsUtf8() {
  auto const name = localeName();
  auto const named = charsetNamedBy(name);
  auto const charset = named.empty() ? charsetOf(name) : std::string(named);
  auto const isCalled = [&](char const* utf8) {
    return boost::algorithm::iequals(charset, utf8, std::locale::classic());
  };
  return isCalled("UTF-8") || isCalled("UTF8");
}

}  // namespace Kestrel::ResultTables

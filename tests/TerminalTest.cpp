#include "result_tables/base/Terminal.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/ForkedTest.h"
#include "support/TemporaryFolder.h"

namespace Kestrel::ResultTables {
namespace {

using testing::ExitedWithCode;

/// Makes standard output a terminal of that size.
void openTerminal(unsigned short columns, unsigned short rows = 24) {
  int outer = 0;
  int inner = 0;
  winsize const size{rows, columns, 0, 0};
  if (::openpty(&outer, &inner, nullptr, nullptr, &size) != 0) ::_exit(2);
  if (::dup2(inner, STDOUT_FILENO) < 0) ::_exit(2);
  ::setenv("TERM", "xterm", 1);
  ::unsetenv("NO_COLOR");
  ::unsetenv("COLUMNS");
  ::unsetenv("LINES");
}

void closeTerminal() {
  if (::dup2(::open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO) < 0) ::_exit(2);
}

TEST(TerminalDeathTest, HasColourUnlessItOrTheUserHasNone) {
  auto const ask = [] {
    openTerminal(80);
    bool asExpected = terminalHasColour();
    ::setenv("NO_COLOR", "", 1);
    asExpected = asExpected && terminalHasColour();
    ::setenv("NO_COLOR", "0", 1);
    asExpected = asExpected && !terminalHasColour();
    ::unsetenv("NO_COLOR");
    for (auto const* const kind : {"dumb", ""}) {
      ::setenv("TERM", kind, 1);
      asExpected = asExpected && !terminalHasColour();
    }
    ::unsetenv("TERM");
    exitWith(asExpected && !terminalHasColour());
  };
  EXPECT_EXIT(ask(), ExitedWithCode(0), "");
}

TEST(TerminalDeathTest, HasTheSizeThatItTells) {
  auto const ask = [] {
    openTerminal(132, 50);
    ::setenv("COLUMNS", "40", 1);
    ::setenv("LINES", "30", 1);
    exitWith(terminalWidth() == 132 && terminalHeight() == 50);
  };
  EXPECT_EXIT(ask(), ExitedWithCode(0), "");
}

TEST(TerminalDeathTest, HasTheSizeOfTheEnvironmentWhereItTellsNone) {
  auto const ask = [] {
    openTerminal(0, 0);
    bool asExpected = terminalWidth() == 0 && terminalHeight() == 0;
    ::setenv("COLUMNS", "40", 1);
    ::setenv("LINES", "30", 1);
    asExpected = asExpected && terminalWidth() == 40 && terminalHeight() == 30;
    for (auto const* const text : {"", "wide", "40x", "-1"}) {
      ::setenv("COLUMNS", text, 1);
      ::setenv("LINES", text, 1);
      asExpected = asExpected && terminalWidth() == 0 && terminalHeight() == 0;
    }
    exitWith(asExpected);
  };
  EXPECT_EXIT(ask(), ExitedWithCode(0), "");
}

TEST(TerminalDeathTest, IsNoneWhereOutputIsRedirected) {
  auto const ask = [] {
    openTerminal(80);
    ::setenv("COLUMNS", "40", 1);
    ::setenv("LINES", "30", 1);
    closeTerminal();
    exitWith(!terminalHasColour() && terminalWidth() == 0 && terminalHeight() == 0);
  };
  EXPECT_EXIT(ask(), ExitedWithCode(0), "");
}

// ---- the character set

/// Sets the variables that say the locale; an empty value counts as none.
void setLocale(char const* all, char const* characters, char const* language) {
  ::setenv("LC_ALL", all, 1);
  ::setenv("LC_CTYPE", characters, 1);
  ::setenv("LANG", language, 1);
}

TEST(LocaleDeathTest, IsUtf8WhereItsNameSaysSo) {
  auto const ask = [] {
    bool asExpected = true;
    for (auto const* const name : {"C.UTF-8", "de_DE.UTF-8", "ja_JP.utf8", "xx_YY.utf-8@euro", ".UTF-8"}) {
      setLocale("", "", name);
      asExpected = asExpected && localeIsUtf8();
    }
    for (auto const* const name :
         {"C", "POSIX", "de_DE.ISO-8859-15@euro", "ja_JP.eucJP", "xx_YY", "UTF-8", "xx."}) {
      setLocale("", "", name);
      asExpected = asExpected && !localeIsUtf8();
    }
    exitWith(asExpected);
  };
  EXPECT_EXIT(ask(), ExitedWithCode(0), "");
}

TEST(LocaleDeathTest, IsTheFirstThatTheEnvironmentNames) {
  auto const ask = [] {
    setLocale("C.UTF-8", "C", "C");
    bool asExpected = localeIsUtf8();
    setLocale("C", "C.UTF-8", "C.UTF-8");
    asExpected = asExpected && !localeIsUtf8();
    setLocale("", "C.UTF-8", "C");
    asExpected = asExpected && localeIsUtf8();
    setLocale("", "C", "C.UTF-8");
    asExpected = asExpected && !localeIsUtf8();
    setLocale("", "", "");
    asExpected = asExpected && !localeIsUtf8();
    for (auto const* const name : {"LC_ALL", "LC_CTYPE", "LANG"}) ::unsetenv(name);
    exitWith(asExpected && !localeIsUtf8());
  };
  EXPECT_EXIT(ask(), ExitedWithCode(0), "");
}

TEST(LocaleDeathTest, IsAskedForWhereItsNameSaysNothing) {
  TemporaryFolder const locales;
  std::filesystem::path const utf8 = "/usr/lib/locale/C.utf8";
  ASSERT_TRUE(std::filesystem::exists(utf8));
  std::filesystem::copy(utf8, locales.path() / "xx_YY", std::filesystem::copy_options::recursive);
  auto const ask = [&] {
    ::setenv("LOCPATH", locales.path().c_str(), 1);
    setLocale("", "", "xx_YY");
    exitWith(localeIsUtf8());
  };
  EXPECT_EXIT(ask(), ExitedWithCode(0), "");
}

}  // namespace
}  // namespace Kestrel::ResultTables

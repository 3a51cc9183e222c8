#include "result_tables/base/Terminal.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>

#include "support/ForkedTest.h"

namespace Kestrel::ResultTables {
namespace {

using testing::ExitedWithCode;

/// Makes standard output a terminal with so many columns.
void openTerminal(unsigned short columns) {
  int outer = 0;
  int inner = 0;
  winsize const size{24, columns, 0, 0};
  if (::openpty(&outer, &inner, nullptr, nullptr, &size) != 0) ::_exit(2);
  if (::dup2(inner, STDOUT_FILENO) < 0) ::_exit(2);
  ::setenv("TERM", "xterm", 1);
  ::unsetenv("NO_COLOR");
  ::unsetenv("COLUMNS");
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

TEST(TerminalDeathTest, HasTheWidthThatItTells) {
  auto const ask = [] {
    openTerminal(132);
    ::setenv("COLUMNS", "40", 1);
    exitWith(terminalWidth() == 132);
  };
  EXPECT_EXIT(ask(), ExitedWithCode(0), "");
}

TEST(TerminalDeathTest, HasTheWidthOfTheEnvironmentWhereItTellsNone) {
  auto const ask = [] {
    openTerminal(0);
    bool asExpected = terminalWidth() == 0;
    ::setenv("COLUMNS", "40", 1);
    asExpected = asExpected && terminalWidth() == 40;
    for (auto const* const text : {"", "wide", "40x", "-1"}) {
      ::setenv("COLUMNS", text, 1);
      asExpected = asExpected && terminalWidth() == 0;
    }
    exitWith(asExpected);
  };
  EXPECT_EXIT(ask(), ExitedWithCode(0), "");
}

TEST(TerminalDeathTest, IsNoneWhereOutputIsRedirected) {
  auto const ask = [] {
    openTerminal(80);
    ::setenv("COLUMNS", "40", 1);
    closeTerminal();
    exitWith(!terminalHasColour() && terminalWidth() == 0);
  };
  EXPECT_EXIT(ask(), ExitedWithCode(0), "");
}

}  // namespace
}  // namespace Kestrel::ResultTables

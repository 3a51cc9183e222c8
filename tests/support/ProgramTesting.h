#pragma once

#include <gtest/gtest.h>

#include <string>

#include "support/Shell.h"
#include "support/TemporaryFolder.h"

namespace Kestrel::ResultTables {

/// The program as a process in a folder of its own.
class ProgramFixture : public testing::Test {
 protected:
  [[nodiscard]] ShellResult run(std::string const& script) const { return runShell(m_folder.path(), script); }

  /// Runs a script that is to succeed and to say nothing but what it returns.
  [[nodiscard]] std::string outputOf(std::string const& script) const {
    auto const result = run(script);
    EXPECT_EQ(result.exitCode, 0) << script;
    EXPECT_EQ(result.err, "") << script;
    return result.out;
  }
  void expectSilence(std::string const& script) const { EXPECT_EQ(outputOf(script), "") << script; }

  void expectFailure(std::string const& script, std::string const& message) const {
    auto const result = run(script);
    EXPECT_EQ(result.exitCode, 2) << script;
    EXPECT_EQ(result.out, "") << script;
    EXPECT_EQ(result.err, "result-tables: " + message + "\n") << script;
  }

  TemporaryFolder m_folder;
};

}  // namespace Kestrel::ResultTables

#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "support/Shell.h"

namespace Kestrel::ResultTables {

inline constexpr char const* s_mapOfABolt = R"({"format": "import-map", "version": 1, "units": [
  {"id": "00000000-0000-0000-0000-000000000001", "name": "U", "tools": [
    {"id": "B1", "kind": "bolt", "series": [{"quantity": "ClampNormalForce", "form": "pairs",
                                             "sum": [{"history": "B1.fz"}]}]}]}]})";

/// A folder with prints of one bolt, and a map for all of them.
class PrintFixture : public testing::Test {
 protected:
  PrintFixture() {
    m_folder.write("trial.csv", "t,B1.fz\ns,N\n0,1.5\n1,-812.5\n");
    m_folder.write("comma.csv", "t;B1.fz\n0;1,5\n1;-812,5\n");
    m_folder.write("print.dat",
                   " forces (fx,fy,fz) for set B1 and time  0.5\n\n 7 1.0 2.0 3.0\n 8 1.0 2.0 -43.5\n\n");
    m_folder.write("map.json", s_mapOfABolt);
  }

  [[nodiscard]] ShellResult run(std::string const& script) const { return runShell(m_folder.path(), script); }

  [[nodiscard]] std::string outputOf(std::string const& script, int exitCode = 0) const {
    auto const result = run(script);
    EXPECT_EQ(result.exitCode, exitCode) << script;
    EXPECT_EQ(result.err, "") << script;
    return result.out;
  }
  /// What the program says, in one line, of arguments that it refuses.
  [[nodiscard]] std::string messageOf(std::string const& arguments, std::string const& language = "C") const {
    auto const result = run("LANG=" + language + " $P " + arguments);
    EXPECT_EQ(result.exitCode, 2) << arguments;
    EXPECT_EQ(result.out, "") << arguments;
    EXPECT_THAT(result.err, testing::MatchesRegex("result-tables: .*\n")) << arguments;
    return result.err.substr(result.err.find(' ') + 1, result.err.find('\n') - result.err.find(' ') - 1);
  }
  /// The tables of `show --format json` without the name of the file.
  [[nodiscard]] nlohmann::json tablesOf(std::string const& arguments) const {
    auto tables = nlohmann::json::parse(outputOf("$P show --format json " + arguments)).at("tables");
    for (auto& table : tables) table.erase("file");
    return tables;
  }

  TemporaryFolder m_folder;
};

}  // namespace Kestrel::ResultTables

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/DifferenceLines.h"
#include "support/DifferencesTesting.h"
#include "support/Shell.h"

// The command `diff`, as a process.

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Diff : public testing::Test {
 protected:
  Diff() {
    m_folder.write("a.json", resultsOf(unitOf('1', "OP10", bolt("Bolt 1", "4")) + ", " + oneBolt("20")));
    m_folder.write("b.json", resultsOf(unitOf('1', "OP10", bolt("Bolt 1", "5")) + ", " + oneBolt("31")));
  }

  [[nodiscard]] ShellResult run(std::string const& script) const { return runShell(m_folder.path(), script); }

  /// The differences that the arguments lead to, as "OP20 changed 20 31".
  [[nodiscard]] std::vector<std::string> differences(std::string const& arguments) const {
    SCOPED_TRACE(arguments);
    return differenceLines(run("$P diff " + arguments + " --format json"));
  }

  void expectFailure(std::string const& arguments, std::string const& message) const {
    auto const result = run("$P diff " + arguments);
    EXPECT_EQ(result.exitCode, 2) << arguments;
    EXPECT_EQ(result.out, "") << arguments;
    EXPECT_EQ(result.err, "result-tables: " + message + "\n") << arguments;
  }

  TemporaryFolder m_folder;
};

TEST_F(Diff, ExitsWithOneWhereTheFilesDiffer) {
  EXPECT_THAT(differences("a.json b.json"), ElementsAre("OP10 changed 4 5", "OP20 changed 20 31"));
  EXPECT_THAT(differences("a.json a.json"), IsEmpty());
  EXPECT_EQ(run("$P diff a.json b.json").exitCode, 1);
  EXPECT_EQ(run("$P diff a.json a.json").exitCode, 0);
}

TEST_F(Diff, TakesTolerances) {
  EXPECT_THAT(differences("a.json b.json --abs 1"), ElementsAre("OP20 changed 20 31"));
  EXPECT_THAT(differences("a.json b.json --rel 0.25"), ElementsAre("OP20 changed 20 31"));
  EXPECT_THAT(differences("a.json b.json --abs 1 --rel 0.5"), ElementsAre("OP20 state 20 31"));
  EXPECT_THAT(differences("b.json a.json --abs 1e1 --rel 0x1p-2"), ElementsAre("OP20 state 31 20"));
}

TEST_F(Diff, RefusesTolerancesThatAreNone) {
  expectFailure("a.json b.json --abs -1",
                "--abs: expected a finite number that is not negative, found \"-1\"");
  expectFailure("a.json b.json --rel nan",
                "--rel: expected a finite number that is not negative, found \"nan\"");
  expectFailure("a.json b.json --rel inf",
                "--rel: expected a finite number that is not negative, found \"inf\"");
  expectFailure("a.json b.json --abs 1N",
                "--abs: expected a finite number that is not negative, found \"1N\"");
}

TEST_F(Diff, TakesAUnitThatBothFilesHave) {
  EXPECT_THAT(differences("a.json b.json --unit OP10"), ElementsAre("OP10 changed 4 5"));
  m_folder.write("c.json", resultsOf(unitOf('2', "OP21", bolt("Bolt 1", "21"))));
  EXPECT_THAT(differences("a.json c.json --unit OP20"), ElementsAre("OP20 changed 20 21"));
  EXPECT_THAT(differences("a.json c.json --unit OP21"), ElementsAre("OP20 changed 20 21"));
  expectFailure("a.json c.json --unit OP10",
                "c.json: expected the id or the name of one of its units (\"OP21\"), found \"OP10\"");
  expectFailure(
      "a.json b.json --unit OP99",
      "a.json: expected the id or the name of one of its units (\"OP10\", \"OP20\"), found \"OP99\"");
}

TEST_F(Diff, TakesFamilies) {
  EXPECT_THAT(differences("a.json b.json --family Clamps"), IsEmpty());
  EXPECT_THAT(differences("a.json b.json --family Bolts --unit OP10"), ElementsAre("OP10 changed 4 5"));
}

TEST_F(Diff, ComparesEachFileWithItsOwnLimitsOrBothWithThoseThatAreNamed) {
  EXPECT_EQ(
      run("cp a.json c.json; $P limits set c.json --unit OP20 --type BoltNormalForce --value 10").exitCode,
      0);
  EXPECT_THAT(differences("a.json c.json"), ElementsAre("OP20 state 20 20"));
  EXPECT_THAT(differences("a.json c.json --limits c.json.limits"), IsEmpty());
  expectFailure("a.json b.json --limits none.limits", "none.limits: cannot read: No such file or directory");
  EXPECT_THAT(m_folder.names(),
              ElementsAre("a.json", "b.json", "c.json", "c.json.limits", "c.json.limits.lock"))
      << "it writes none";
}

TEST_F(Diff, ReadsOneOfTheFilesFromStandardInput) {
  EXPECT_EQ(run("$P diff - b.json <a.json").out, run("$P diff a.json b.json").out);
  EXPECT_EQ(run("$P diff a.json - <b.json").out, run("$P diff a.json b.json").out);
  expectFailure("- - <a.json", "BEFORE, AFTER: expected standard input for one of them, found it for both");
}

TEST_F(Diff, NamesEachFileThatCannotBeRead) {
  m_folder.write("bad.json", "{");
  expectFailure("none.json b.json", "none.json: cannot read: No such file or directory");
  auto const both = run("$P diff none.json bad.json --format json --output out.json");
  EXPECT_EQ(both.exitCode, 2);
  EXPECT_THAT(both.err, testing::MatchesRegex("result-tables: none.json: .*\nresult-tables: bad.json: .*\n"));
  EXPECT_THAT(m_folder.names(), ElementsAre("a.json", "b.json", "bad.json")) << "nothing is written";
}

TEST_F(Diff, ReportsAFileThatCannotBeReadInAJunitReport) {
  auto const result = run("$P diff a.json none.json --format junit --output out.xml");
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.err, "result-tables: none.json: cannot read: No such file or directory\n");
  EXPECT_THAT(m_folder.read("out.xml"),
              HasSubstr("<error message=\"none.json: cannot read: No such file or directory\" />"));
}

TEST_F(Diff, ReportsAFileThatCannotBeReadOnAPage) {
  auto const result = run("$P diff none.json b.json --format html --output out.html");
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.err, "result-tables: none.json: cannot read: No such file or directory\n");
  EXPECT_THAT(m_folder.read("out.html"),
              HasSubstr("<li dir=\"auto\">none.json: cannot read: No such file or directory</li>"));
}

TEST_F(Diff, WritesAPage) {
  auto const result = run("$P diff a.json b.json --rel 0.01 --format html");
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.out, HasSubstr("<h1>Comparison of results</h1>"));
  EXPECT_THAT(result.out, HasSubstr("Numbers count as the same up to 0 and 1 % of the one before."));
}

TEST_F(Diff, NeedsTwoFiles) {
  expectFailure("a.json", "AFTER is required (--help says more)");
  expectFailure("a.json b.json a.json", "unexpected argument \"a.json\" (--help says more)");
}

TEST_F(Diff, SpeaksTheLanguageOfTheEnvironment) {
  EXPECT_EQ(run("$P diff a.json b.json --unit OP20").out, R"(OP20: Bolts

  Forces
                                   before   after     change   relative [%]
    ----------------------------   ------   -------   ------   ------------
    Bolt 1, Max Normal Force [N]       20      31 !      +11            +55   now beyond its limit

! beyond its limit

changed: 1, in state alone: 0, added: 0, removed: 0, values in both files: 5
now beyond their limits: 1, back within their limits: 0
)");
  EXPECT_EQ(run("LANG=de_DE.UTF-8 $P diff a.json b.json --unit OP20").out, R"(OP20: Bolzen

  Kräfte
                                   vorher   nachher     Änderung   relativ [%]
    ----------------------------   ------   ---------   --------   -----------
    Bolt 1, Max. Normalkraft [N]       20        31 !        +11           +55   jetzt über der Grenze

! über der Grenze

geändert: 1, nur im Zustand: 0, hinzugekommen: 0, entfallen: 0, Werte in beiden Dateien: 5
jetzt über ihrer Grenze: 1, wieder innerhalb ihrer Grenze: 0
)");
  EXPECT_EQ(run("LANG=ja_JP.UTF-8 $P diff a.json b.json --unit OP20").out, R"(OP20: ボルト

  力
                             比較前   比較後     変化量   変化率 [%]
    ----------------------   ------   --------   ------   ----------
    Bolt 1, 最大法線力 [N]       20       31 !      +11          +55   限界値を新たに超過

! 限界値超過

変化: 1, 状態のみ変化: 0, 追加: 0, 削除: 0, 両方のファイルにある値: 5
限界値を新たに超過した値: 1, 限界値内に復帰した値: 0
)");
}

TEST_F(Diff, GivesKeysAndNumbersInEveryLanguageAlike) {
  for (auto const* const language : {"de_DE.UTF-8", "ja_JP.UTF-8"}) {
    auto const result = run(fmt::format("LANG={} $P diff a.json b.json --unit OP20 --format json", language));
    auto const difference = json::parse(result.out).at("differences").at(0);
    EXPECT_EQ(difference.at("family"), "Bolts");
    EXPECT_EQ(difference.at("key"), "ClampNormalForce");
    EXPECT_EQ(difference.at("kind"), "changed");
    EXPECT_EQ(difference.at("relative"), 0.55);
  }
}

TEST_F(Diff, TakesTheDigitsAndTheColourOfItsText) {
  m_folder.write("c.json", resultsOf(oneBolt("20.123456")));
  auto const text = run("$P diff a.json c.json --unit OP20 --digits 3 --colour always").out;
  EXPECT_THAT(text, HasSubstr(" 20.1 "));
  EXPECT_THAT(text, HasSubstr("+0.123 "));
  EXPECT_THAT(run("$P diff a.json b.json --colour always").out,
              HasSubstr("\x1b[31mnow beyond its limit\x1b[0m"));
  EXPECT_THAT(run("$P diff b.json a.json --colour always").out,
              HasSubstr("\x1b[32mback within its limit\x1b[0m"));
  EXPECT_THAT(run("$P diff a.json b.json").out, testing::Not(HasSubstr("\x1b")));
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Shell.h"

namespace Kestrel::ResultTables {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr char const* s_results = R"({"format": "simulation-results", "version": 1, "units": [
  {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02", "name": "OP20", "tools": [
    {"id": "Clamp 1", "kind": "clamp", "series": [
      {"quantity": "ClampNormalForce", "values": [0, 3.5, -7.25]},
      {"quantity": "ClampClosingForce", "pairs": [[0, 0.1], [-12, 0.2]]}]},
    {"id": "Bolt 1", "kind": "bolt", "series": [{"quantity": "ClampTeachingDistanceX", "values": [0.5]}]}]},
  {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP10", "tools": [{"id": "Clamp A", "kind": "clamp"}]},
  {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a03", "name": "OP20", "tools": [{"id": "Clamp B", "kind": "clamp"}]}]})";

class Program : public testing::Test {
 protected:
  Program() { m_folder.write("r.json", s_results); }

  ShellResult run(std::string const& script) const { return runShell(m_folder.path(), script); }
  void expectFailure(std::string const& script, std::string const& message) const {
    auto const result = run(script);
    EXPECT_EQ(result.exitCode, 2) << script;
    EXPECT_EQ(result.out, "") << script;
    EXPECT_EQ(result.err, message + "\n") << script;
  }

  TemporaryFolder m_folder;
};

TEST_F(Program, ShowsTheUnitsInTheFilesOrderWhateverTheOrderOfTheOptions) {
  auto const result = run("$P show r.json --unit OP10 --unit OP20 | grep :");
  EXPECT_EQ(result.out, "OP20: Clamps\nOP20: Bolts\nOP10: Clamps\nOP20: Clamps\n");
  EXPECT_EQ(result.err, "");
}

TEST_F(Program, TakesAUnitByItsIdInEitherCase) {
  EXPECT_EQ(run("$P show r.json --unit 0B6F6D3E-6c1e-4a57-9b52-0f6f2f1b6a03 | grep :").out, "OP20: Clamps\n");
}

TEST_F(Program, TakesEveryUnitOfAName) {
  EXPECT_EQ(run("$P show r.json --unit OP20 --family Clamps | grep :").out, "OP20: Clamps\nOP20: Clamps\n");
}

TEST_F(Program, RefusesAnUnknownUnit) {
  expectFailure("$P show r.json --unit OP20 --unit OP99",
                "result-tables: r.json: expected the id or the name of one of its units, found \"OP99\"");
  expectFailure("$P show r.json --unit op20",
                "result-tables: r.json: expected the id or the name of one of its units, found \"op20\"");
}

TEST_F(Program, ShowsFamiliesInTheOrderOfTheirNumbers) {
  EXPECT_EQ(run("$P show r.json --family Bolts --family Clamps --unit OP20 | grep :").out,
            "OP20: Clamps\nOP20: Bolts\nOP20: Clamps\nOP20: Bolts\n");
}

TEST_F(Program, ShowsANamedFamilyAlsoWhenItIsEmpty) {
  EXPECT_EQ(run("$P show r.json --family Bolts --unit OP10").out, "OP10: Bolts\n  no elements\n");
  EXPECT_EQ(run("$P show r.json --unit OP10 | grep :").out, "OP10: Clamps\n");
}

TEST_F(Program, RefusesAnUnknownFamily) {
  expectFailure(
      "$P show r.json --family clamps",
      "result-tables: --family: expected one of Clamps, ClampingTools, JoiningTongs, Pilots, Bolts, "
      "LineJoiningTools, SuctionZones, Rollers, Steels, HemmingBed, SpotWelds, LineWelds, found \"clamps\"");
}

TEST_F(Program, ShowsTheTeachingSectionOnRequestOnly) {
  EXPECT_THAT(run("$P show r.json --family Bolts").out, Not(HasSubstr("Teaching")));
  EXPECT_THAT(run("$P show r.json --family Bolts --teaching").out, HasSubstr("Teaching"));
}

TEST_F(Program, TakesOptionsBeforeAndAfterTheFile) {
  EXPECT_EQ(run("$P show --unit OP10 r.json | grep :").out, "OP10: Clamps\n");
}

TEST_F(Program, WritesTheOutputToAFileInPlaceOfStandardOutput) {
  auto const result = run("$P show r.json --unit OP10 --output out.txt");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(m_folder.read("out.txt"), StartsWith("OP10: Clamps\n"));
}

TEST_F(Program, LeavesAnOldOutputFileAloneWhenTheResultsAreBad) {
  m_folder.write("out.txt", "old");
  m_folder.write("bad.json", "{");
  expectFailure(
      "$P show bad.json --output out.txt",
      "result-tables: bad.json: line 1, column 2: expected a member name in quotation marks, found the end "
      "of the file");
  EXPECT_EQ(m_folder.read("out.txt"), "old");
}

TEST_F(Program, NamesAFileThatCannotBeRead) {
  expectFailure("$P show missing.json",
                "result-tables: missing.json: cannot read: No such file or directory");
  expectFailure("$P show .", "result-tables: .: cannot read: Is a directory");
}

TEST_F(Program, NamesAnOutputThatCannotBeWritten) {
  expectFailure("$P show r.json --output missing/out.txt",
                "result-tables: missing/out.txt: cannot write: No such file or directory");
  expectFailure("$P show r.json --output /dev/full",
                "result-tables: /dev/full: cannot write: No space left on device");
  expectFailure("$P show r.json >/dev/full",
                "result-tables: standard output: cannot write: No space left on device");
  expectFailure("$P show r.json >&-", "result-tables: standard output: cannot write: Bad file descriptor");
}

TEST_F(Program, ReportsAFileThatMayNotGrow) {
  m_folder.write("out.txt", "old");
  auto const result = run("ulimit -f 1; $P demo --output out.txt");
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.err, "result-tables: out.txt: cannot write: File too large\n");
  EXPECT_EQ(run("ls").out, "out.txt\nr.json\n");
  EXPECT_EQ(m_folder.read("out.txt"), "old");
}

TEST_F(Program, EndsQuietlyWhenThePagerIsClosedEarly) {
  auto const result = run("{ $P demo --format json; echo $? >code; } | head -n 1; cat code");
  EXPECT_EQ(result.out, "{\n0\n");
  EXPECT_EQ(result.err, "");
}

TEST_F(Program, WritesNoEscapeSequencesIntoAPipe) {
  EXPECT_THAT(run("$P show r.json").out, Not(HasSubstr("\x1b")));
  EXPECT_THAT(run("TERM=xterm-256color COLORTERM=truecolor CLICOLOR_FORCE=1 $P show r.json").out,
              Not(HasSubstr("\x1b")));
}

TEST_F(Program, WritesColourToATerminalUnlessItIsUnwelcome) {
  EXPECT_THAT(run("script -qec \"$P show r.json\" /dev/null").out, HasSubstr("\x1b[1mOP20: Clamps\x1b[0m"));
  EXPECT_THAT(run("NO_COLOR=1 script -qec \"$P show r.json\" /dev/null").out, Not(HasSubstr("\x1b")));
}

TEST_F(Program, WritesNumbersIndependentlyOfTheLocale) {
  auto const text = run("LC_ALL=de_DE.UTF-8 LANGUAGE=en $P show r.json --unit OP20 --family Clamps");
  EXPECT_THAT(text.out, HasSubstr("-7.25"));
  auto const json =
      run("LC_ALL=de_DE.UTF-8 LANGUAGE=en $P show r.json --unit OP20 --family Clamps --format json");
  EXPECT_THAT(json.out, HasSubstr("[-7.25, -12, 0, 0]"));
}

TEST_F(Program, ShowsTheSampleWithoutAFile) {
  auto const result = run("$P demo --family Clamps --unit 'Clamped panel'");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, testing::ContainsRegex("C3 .* -1314\\.547"));
}

TEST_F(Program, HasAtLeastThreeUnitsInItsSample) {
  EXPECT_THAT(run("$P demo | grep ': ' | sed 's/: .*//' | uniq").out,
              "Clamped panel\nOP30 Joining\nOP40 Hemming, Tür links\n");
}

TEST_F(Program, ExplainsEveryCommand) {
  for (auto const* const command :
       {"", "show", "check", "demo", "limits", "limits list", "limits set", "limits reset", "limits sync",
        "limits dump", "import", "import calculix", "import csv"}) {
    for (auto const* const option : {"-h", "--help"}) {
      auto const result = run(std::string("$P ") + command + " " + option);
      EXPECT_EQ(result.exitCode, 0) << command;
      EXPECT_THAT(result.out, HasSubstr("Usage: result-tables")) << command;
      EXPECT_EQ(result.err, "") << command;
    }
  }
}

TEST_F(Program, TellsItsVersion) {
  EXPECT_THAT(run("$P --version").out, testing::MatchesRegex("result-tables [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(Program, RefusesWrongArgumentsInOneLine) {
  expectFailure("$P", "result-tables: A subcommand is required (--help says more)");
  expectFailure("$P show", "result-tables: RESULTS is required (--help says more)");
  expectFailure("$P show r.json --fromat=json",
                "result-tables: The following argument was not expected: --fromat=json (--help says more)");
  expectFailure("$P show r.json --format yaml",
                "result-tables: --format: yaml not in {text,csv,json} (--help says more)");
  expectFailure("$P show r.json more.json",
                "result-tables: The following argument was not expected: more.json (--help says more)");
  expectFailure("$P import calculix in.dat", "result-tables: --map is required (--help says more)");
}

TEST_F(Program, ChecksTheValuesAgainstTheDefaultLimits) {
  auto const result =
      run("$P check '" KESTREL_SOURCE_DIR "/examples/door_line/door_line.results.json' --family Bolts");
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out,
            "OP30 Joining, Bolts, Forces, Bolt 1, Max Normal Force: 812.4 N, limit 30 N\n"
            "OP30 Joining, Bolts, Forces, Bolt 3, Max Normal Force: 1540.2 N, limit 30 N\n"
            "values beyond their limits: 2, invalid elements: 0\n");
  EXPECT_EQ(result.err, "");
}

TEST_F(Program, ExitsWithNothingFoundWhenNothingIs) {
  auto const result = run("$P check r.json");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "values beyond their limits: 0, invalid elements: 0\n");
}

TEST_F(Program, GoesOnAfterAFileThatCannotBeCheckedAndExitsWithTheHighestCode) {
  auto const result = run("$P check missing.json '" KESTREL_SOURCE_DIR
                          "/examples/door_line/door_line.results.json' r.json --family "
                          "Bolts --format json");
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_THAT(result.out, HasSubstr("\"item\": \"Bolt 3\""));
  EXPECT_EQ(result.err, "result-tables: missing.json: cannot read: No such file or directory\n");
}

TEST_F(Program, TakesAUnitThatOneFileLacksForAnErrorOfThatFileAlone) {
  auto const result = run("$P check r.json '" KESTREL_SOURCE_DIR
                          "/examples/door_line/door_line.results.json' --unit 'OP30 Joining' --family Bolts");
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_THAT(result.out, HasSubstr("Bolt 1"));
  EXPECT_EQ(
      result.err,
      "result-tables: r.json: expected the id or the name of one of its units, found \"OP30 Joining\"\n");
}

TEST_F(Program, NamesFailedJoinsButNotSuctionZones) {
  auto const result =
      run("$P check '" KESTREL_SOURCE_DIR
          "/examples/door_line/door_line.results.json' --family SuctionZones --family JoiningTongs");
  EXPECT_THAT(result.out, HasSubstr("OP30 Joining, JoiningTongs, Tong sill: Joining Failed\n"));
  EXPECT_THAT(result.out, Not(HasSubstr("SZ-3")));
  EXPECT_THAT(result.out, HasSubstr("SZ-2, Distance: 1.27 mm, limit 1 mm\n"));
}

TEST_F(Program, MarksValuesBeyondTheirLimitAndInvalidOnesAlsoInAPipe) {
  auto const result = run("$P show '" KESTREL_SOURCE_DIR "/examples/door_line/door_line.results.json'");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, HasSubstr("    SZ-2   203.1         1.27 !\n    SZ-3     0   ?       0    ?\n"));
  EXPECT_THAT(result.out, HasSubstr("! beyond its limit   ? not valid\n"));
}

TEST_F(Program, SpeaksTheLanguageOfTheEnvironment) {
  EXPECT_THAT(run("LANG=de_DE.UTF-8 $P demo --family JoiningTongs").out,
              HasSubstr("OP30 Joining: Fügezangen\n\n  Kräfte\n"));
  EXPECT_THAT(run("LANG=ja_JP.UTF-8 $P show r.json --family Bolts").out, HasSubstr("OP20: ボルト\n"));
  EXPECT_THAT(run("LANG=de_DE.UTF-8 $P --help").out, HasSubstr("Ergebnistabellen"));
}

TEST_F(Program, TranslatesNoKeyFamilyOrMemberOfItsData) {
  auto const json = run("LANG=de_DE.UTF-8 $P show r.json --family Bolts --format json").out;
  EXPECT_THAT(json, HasSubstr("\"family\": \"Bolts\""));
  EXPECT_THAT(json, HasSubstr("\"title\": \"Bolzen\""));
  EXPECT_THAT(json, HasSubstr("\"key\": \"ClampNormalForce\""));
  EXPECT_THAT(run("LANG=de_DE.UTF-8 $P show r.json --family Bolts --format csv").out,
              testing::StartsWith("unit,unitId,family,"));
}

TEST_F(Program, KeepsTheTotalToolForceInEveryLanguage) {
  for (auto const* const language : {"C", "de_DE.UTF-8", "ja_JP.UTF-8"}) {
    EXPECT_THAT(run(std::string("LANG=") + language + " $P demo --family Rollers --format csv").out,
                HasSubstr("Roller 90°,true,"))
        << language;
    EXPECT_THAT(run(std::string("LANG=") + language + " $P demo --family Rollers --format csv").out,
                HasSubstr(",-1240.35,N,500,true"))
        << language;
  }
}

TEST_F(Program, ReadsResultsFromAPipe) {
  EXPECT_EQ(run("cat r.json | $P show /dev/stdin --unit OP10 | grep :").out, "OP10: Clamps\n");
}

}  // namespace
}  // namespace Kestrel::ResultTables

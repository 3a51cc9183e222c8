#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/Shell.h"

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;
using testing::ElementsAre;
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

  [[nodiscard]] ShellResult run(std::string const& script) const { return runShell(m_folder.path(), script); }
  [[nodiscard]] json jsonOf(std::string const& script) const {
    auto const result = run(script);
    EXPECT_EQ(result.exitCode, 0) << script;
    EXPECT_EQ(result.err, "") << script;
    return json::parse(result.out);
  }
  /// The tables that `show` or `demo` gives, as "OP20 Clamps".
  [[nodiscard]] std::vector<std::string> tablesOf(std::string const& command) const {
    std::vector<std::string> tables;
    auto const output = jsonOf(command + " --format json");
    for (auto const& table : output.at("tables")) {
      tables.push_back(table.at("unit").at("name").get<std::string>() + ' ' +
                       table.at("family").get<std::string>());
    }
    return tables;
  }
  void expectFailure(std::string const& script, std::string const& message) const {
    auto const result = run(script);
    EXPECT_EQ(result.exitCode, 2) << script;
    EXPECT_EQ(result.out, "") << script;
    EXPECT_EQ(result.err, message + "\n") << script;
  }

  TemporaryFolder m_folder;
};

TEST_F(Program, ShowsTheUnitsInTheFilesOrderWhateverTheOrderOfTheOptions) {
  EXPECT_THAT(tablesOf("$P show r.json --unit OP10 --unit OP20"),
              ElementsAre("OP20 Clamps", "OP20 Bolts", "OP10 Clamps", "OP20 Clamps"));
}

TEST_F(Program, TakesAUnitByItsIdInEitherCase) {
  auto const tables =
      jsonOf("$P show r.json --unit 0B6F6D3E-6c1e-4a57-9b52-0f6f2f1b6a03 --format json").at("tables");
  ASSERT_EQ(tables.size(), 1U);
  EXPECT_EQ(tables[0].at("unit").at("id"), "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a03");
}

TEST_F(Program, TakesEveryUnitOfAName) {
  EXPECT_THAT(tablesOf("$P show r.json --unit OP20 --family Clamps"),
              ElementsAre("OP20 Clamps", "OP20 Clamps"));
}

TEST_F(Program, RefusesAnUnknownUnit) {
  expectFailure("$P show r.json --unit OP20 --unit OP99",
                "result-tables: r.json: expected the id or the name of one of its units (\"OP20\", "
                "\"OP10\"), found \"OP99\"");
  expectFailure("$P show r.json --unit op20",
                "result-tables: r.json: expected the id or the name of one of its units (\"OP20\", "
                "\"OP10\"), found \"op20\"");
}

TEST_F(Program, ShowsFamiliesInTheOrderOfTheirNumbers) {
  EXPECT_THAT(tablesOf("$P show r.json --family Bolts --family Clamps --unit OP20"),
              ElementsAre("OP20 Clamps", "OP20 Bolts", "OP20 Clamps", "OP20 Bolts"));
}

TEST_F(Program, ShowsANamedFamilyAlsoWhenItIsEmpty) {
  EXPECT_EQ(run("$P show r.json --family SpotWelds --unit OP10").out, "OP10: Joins\n  no elements\n");
  EXPECT_EQ(run("LANG=de_DE.UTF-8 $P show r.json --family SpotWelds --unit OP10").out,
            "OP10: Fügepunkte\n  keine Elemente\n");
  EXPECT_THAT(tablesOf("$P show r.json --unit OP10"), ElementsAre("OP10 Clamps"));
}

TEST_F(Program, RefusesAnUnknownFamily) {
  expectFailure(
      "$P show r.json --family clamps",
      "result-tables: --family: expected one of Clamps, ClampingTools, JoiningTongs, Pilots, Bolts, "
      "LineJoiningTools, SuctionZones, Rollers, Steels, HemmingBed, SpotWelds, LineWelds, found \"clamps\"; "
      "did you mean \"Clamps\"?");
}

TEST_F(Program, ShowsTheTeachingSectionOnRequestOnly) {
  auto const hasTeaching = [this](std::string const& option) {
    auto const table =
        jsonOf("$P show r.json --unit OP20 --family Bolts --format json" + option).at("tables").at(0);
    std::vector<bool> sections;
    for (auto const& section : table.at("groups")) sections.push_back(section.at("isTeachingGroup"));
    return sections;
  };
  EXPECT_THAT(hasTeaching(""), ElementsAre(false, false));
  EXPECT_THAT(hasTeaching(" --teaching"), ElementsAre(false, false, true));
}

TEST_F(Program, TakesOptionsBeforeAndAfterTheFile) {
  EXPECT_THAT(tablesOf("$P show --unit OP10 r.json"), ElementsAre("OP10 Clamps"));
}

TEST_F(Program, WritesCsvForGermanSpreadsheets) {
  for (auto const* options : {"--format csv --csv excel-de", "--csv excel-de"}) {
    auto const output = run(std::string("$P show r.json --family Clamps --unit OP20 ") + options).out;
    EXPECT_THAT(output, StartsWith("file;unit;unitId;family;")) << options;
    EXPECT_THAT(output, HasSubstr("Max Normal Force;-7,25;N;;false")) << options;
  }
  EXPECT_EQ(run("$P demo --csv plain").out, run("$P demo --format csv").out);
  EXPECT_THAT(run("$P demo --csv excel-de").out, HasSubstr(";family;group;"));
  EXPECT_THAT(run("$P series r.json --csv excel-de --unit OP20 --family Clamps").out,
              HasSubstr(";ClampNormalForce;Max Normal Force;2;;-7,25;;\r\n"));
  EXPECT_THAT(run("sed 's/-7.25/-8.5/' r.json >s.json; $P diff r.json s.json --csv excel-de").out,
              HasSubstr(";ClampNormalForce;Max Normal Force;changed;-7,25;-8,5;-1,25;"));
  expectFailure("$P show r.json --format json --csv plain",
                "result-tables: --csv: expected the form csv, found json");
  expectFailure("$P demo --format text --csv excel-de",
                "result-tables: --csv: expected the form csv, found text");
  expectFailure("$P demo --csv excel",
                "result-tables: --csv: expected one of plain, excel-de, found \"excel\"");
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

TEST_F(Program, WritesAWorkbookWholeOrNotAtAll) {
  m_folder.write("old.xlsx", "old");
  auto const failing = [this](std::string const& script, std::string const& message) {
    expectFailure("mkdir t; TMPDIR=$PWD/t; export TMPDIR; " + script, "result-tables: " + message);
    EXPECT_EQ(run("ls -A t; rmdir t").out, "");
    EXPECT_EQ(m_folder.read("old.xlsx"), "old");
  };
  failing("$P demo --format xlsx --output /dev/full", "/dev/full: cannot write: No space left on device");
  failing("$P demo --format xlsx >/dev/full", "standard output: cannot write: No space left on device");
  auto const t = (m_folder.path() / "t").native();
  failing("ulimit -f 1; $P demo --format xlsx --output old.xlsx", t + ": cannot write: File too large");
  failing("TMPDIR=nowhere $P demo --format xlsx --output old.xlsx",
          "nowhere: cannot write: No such file or directory");
  failing("TMPDIR=nowhere $P demo --format xlsx | cat; exit 2",
          "nowhere: cannot write: No such file or directory");
  EXPECT_EQ(run("ls").out, "old.xlsx\nr.json\n");
  EXPECT_EQ(run("$P demo --format xlsx --output - | head -c 2; $P demo --format xlsx | head -c 2").out,
            "PKPK");
}

TEST_F(Program, KeepsAWorkbookFromTerminals) {
  auto const result = run("script -qec \"$P demo --format xlsx\" /dev/null </dev/null; echo $?");
  EXPECT_THAT(result.out,
              testing::HasSubstr("result-tables: --format xlsx: expected --output with the name of a "
                                 "file, as this is no text, found a terminal\r\n2\n"));
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
  auto const onTerminal = "script -qec \"$P show r.json\" /dev/null";
  EXPECT_THAT(run(std::string("TERM=xterm ") + onTerminal).out, HasSubstr("\x1b[1mOP20: Clamps\x1b[0m"));
  EXPECT_THAT(run(std::string("TERM=xterm NO_COLOR=1 ") + onTerminal).out, Not(HasSubstr("\x1b")));
  EXPECT_THAT(run(std::string("TERM=dumb ") + onTerminal).out, Not(HasSubstr("\x1b")));
}

TEST_F(Program, WritesASummaryToATerminalThatIsTooLow) {
  auto const onTerminal = [&](std::string const& rows, std::string const& command) {
    return run("TERM=dumb script -qec 'stty rows " + rows + "; '\"" + command + "\" /dev/null").out;
  };
  EXPECT_THAT(onTerminal("24", "$P demo"), StartsWith("Summary\r\n"));
  EXPECT_THAT(onTerminal("1000", "$P demo"), StartsWith("Clamped panel: Clamps\r\n"));
  EXPECT_THAT(onTerminal("24", "$P demo | cat"), StartsWith("Clamped panel: Clamps\r\n"));
  EXPECT_THAT(onTerminal("24", "$P demo --output t.txt; head -n 1 t.txt"),
              StartsWith("Clamped panel: Clamps\r\n"));
}

TEST_F(Program, WritesNumbersIndependentlyOfTheLocale) {
  auto const text = run("LC_ALL=de_DE.UTF-8 LANGUAGE=en $P show r.json --unit OP20 --family Clamps");
  EXPECT_THAT(text.out, HasSubstr("-7.25"));
  auto const data =
      run("LC_ALL=de_DE.UTF-8 LANGUAGE=en $P show r.json --unit OP20 --family Clamps --format json");
  EXPECT_THAT(data.out, HasSubstr("[-7.25, -12, 0, 0]"));
}

TEST_F(Program, ShowsTheSampleWithoutAFile) {
  auto const tables = jsonOf("$P demo --family Clamps --unit 'Clamped panel' --format json").at("tables");
  auto const& item = tables.at(0).at("groups").at(0).at("subGroups").at(2).at("items").at(0);
  EXPECT_EQ(item.at("name"), "C3");
  EXPECT_EQ(item.at("maxValues").at(1), -1314.547);
}

TEST_F(Program, HasAtLeastThreeUnitsInItsSample) {
  std::vector<std::string> units;
  auto const output = jsonOf("$P demo --format json");
  for (auto const& table : output.at("tables")) {
    auto const name = table.at("unit").at("name").get<std::string>();
    if (units.empty() || units.back() != name) units.push_back(name);
  }
  EXPECT_THAT(units, ElementsAre("Clamped panel", "OP30 Joining", "OP40 Hemming, Tür links"));
}

TEST_F(Program, TellsItsVersion) {
  EXPECT_THAT(run("$P --version").out, testing::MatchesRegex("result-tables [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(Program, ChecksTheValuesAgainstTheDefaultLimits) {
  auto const result =
      run("$P check '" KESTREL_SOURCE_DIR "/examples/door_line/door_line.results.json' --family Bolts");
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out,
            "OP30 Joining, Bolts, Forces, Bolt 1, Max Normal Force: 812.4 N, limit 30 N, step 3\n"
            "OP30 Joining, Bolts, Forces, Bolt 3, Max Normal Force: 1540.2 N, limit 30 N, step 3\n"
            "values beyond their limits: 2, values with NaN: 0, invalid elements: 0, values compared: 3, "
            "without data: 0\n");
  EXPECT_EQ(result.err, "");
}

TEST_F(Program, ExitsWithACodeOfItsOwnWhenNothingWasCompared) {
  auto const result = run("$P check r.json");
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_EQ(result.out,
            "values beyond their limits: 0, values with NaN: 0, invalid elements: 0, values compared: 0, "
            "without data: 1\n");
}

TEST_F(Program, GoesOnAfterAFileThatCannotBeCheckedAndExitsWithTheHighestCode) {
  auto const result = run("$P check missing.json '" KESTREL_SOURCE_DIR
                          "/examples/door_line/door_line.results.json' r.json --family "
                          "Bolts --format json");
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(json::parse(result.out).at("findings").at(1).at("item"), "Bolt 3");
  EXPECT_EQ(result.err, "result-tables: missing.json: cannot read: No such file or directory\n");
}

TEST_F(Program, TakesAUnitThatOneFileLacksForAnErrorOfThatFileAlone) {
  auto const result = run("$P check r.json '" KESTREL_SOURCE_DIR
                          "/examples/door_line/door_line.results.json' --unit 'OP30 Joining' --family Bolts");
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_THAT(result.out, HasSubstr("Bolt 1"));
  EXPECT_EQ(result.err,
            "result-tables: r.json: expected the id or the name of one of its units (\"OP20\", \"OP10\"), "
            "found \"OP30 Joining\"\n");
}

TEST_F(Program, NamesFailedJoinsButNotSuctionZones) {
  auto const result =
      run("$P check '" KESTREL_SOURCE_DIR
          "/examples/door_line/door_line.results.json' --family SuctionZones --family JoiningTongs");
  EXPECT_THAT(result.out, HasSubstr("OP30 Joining, JoiningTongs, Tong sill: Joining Failed\n"));
  EXPECT_THAT(result.out, Not(HasSubstr("SZ-3")));
  EXPECT_THAT(result.out, HasSubstr("SZ-2, Distance: 1.27 mm, limit 1 mm, step 4\n"));
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
  auto const table =
      jsonOf("LANG=de_DE.UTF-8 $P show r.json --family Bolts --format json").at("tables").at(0);
  EXPECT_EQ(table.at("family"), "Bolts");
  EXPECT_EQ(table.at("title"), "Bolzen");
  EXPECT_EQ(table.at("groups").at(0).at("columns").at(0).at("key"), "ClampNormalForce");
  EXPECT_THAT(run("LANG=de_DE.UTF-8 $P show r.json --family Bolts --format csv").out,
              testing::StartsWith("file,unit,unitId,family,"));
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
  EXPECT_THAT(tablesOf("cat r.json | $P show /dev/stdin --unit OP10"), ElementsAre("OP10 Clamps"));
}

TEST_F(Program, TakesADashForStandardInputAndStandardOutput) {
  EXPECT_THAT(tablesOf("cat r.json | $P show - --unit OP10"), ElementsAre("OP10 Clamps"));
  auto const result = run("$P show r.json --unit OP10 --output -; ls");
  EXPECT_THAT(result.out, StartsWith("OP10: Clamps\n"));
  EXPECT_THAT(result.out, testing::EndsWith("\nr.json\n"));
  expectFailure("echo x | $P show -",
                "result-tables: standard input: line 1, column 1: expected a JSON value, found \"x\"");
}

TEST_F(Program, ReportsStandardInputUnderTheNameThatWasGiven) {
  m_folder.write("bad.json", "{");
  auto const result = run("$P check - r.json --format junit <bad.json");
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_THAT(result.out,
              HasSubstr("<testsuite name=\"-\" tests=\"1\" failures=\"0\" errors=\"1\" skipped=\"0\">"));
  EXPECT_THAT(result.out, HasSubstr("<testsuite name=\"r.json\" "));
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include "result_tables/command/Completion.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <sstream>

#include "support/LimitsTesting.h"
#include "support/Shell.h"

// What the program answers to shells that ask what can stand at the cursor.

namespace Kestrel::ResultTables {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

using Lines = std::vector<std::string>;

class Completion : public testing::Test {
 protected:
  Completion() { m_folder.write("r.json", s_resultsOfThreeUnits); }

  [[nodiscard]] ShellResult ask(std::string const& shell, std::string const& before,
                                std::string const& behind = "", std::string const& breaks = "") const {
    std::string script = m_environment + " $P __complete " + shell;
    for (auto const& word : {before, behind, breaks}) script += " '" + quoteForShell(word, '\'') + '\'';
    return runShell(m_folder.path(), script);
  }
  /// What zsh gets, without meanings.
  [[nodiscard]] Lines answerTo(std::string const& before, std::string const& behind = "") const {
    auto const result = ask("zsh", before, behind);
    EXPECT_EQ(result.exitCode, 0) << before;
    EXPECT_EQ(result.err, "") << before;
    Lines lines;
    std::istringstream stream(result.out);
    for (std::string line; std::getline(stream, line);) lines.push_back(line.substr(0, line.find('\t')));
    return lines;
  }
  [[nodiscard]] Lines wordsFor(std::string const& before, std::string const& behind = "") const {
    auto lines = answerTo(before, behind);
    EXPECT_FALSE(lines.empty()) << before;
    if (lines.empty()) return lines;
    EXPECT_EQ(lines.front(), "words") << before;
    lines.erase(lines.begin());
    return lines;
  }
  /// Whether files are offered, and nothing else.
  [[nodiscard]] bool offersFiles(std::string const& before) const {
    return answerTo(before) == Lines{"files"};
  }

  TemporaryFolder m_folder;
  std::string m_environment;
};

// ---- commands and options

TEST_F(Completion, OffersCommands) {
  EXPECT_THAT(wordsFor("result-tables "),
              ElementsAre("show", "check", "diff", "series", "demo", "limits", "import", "study"));
  EXPECT_THAT(wordsFor("result-tables s"), ElementsAre("show", "series", "study"));
  EXPECT_THAT(wordsFor("result-tables limits "),
              ElementsAre("list", "set", "reset", "sync", "export", "import", "dump"));
  EXPECT_THAT(wordsFor("result-tables import c"), ElementsAre("calculix", "csv"));
  EXPECT_THAT(wordsFor("result-tables x"), IsEmpty());
}

TEST_F(Completion, OffersTheOptionsOfTheCommand) {
  EXPECT_THAT(wordsFor("result-tables -"), ElementsAre("--help", "--version"));
  EXPECT_THAT(wordsFor("result-tables limits reset r.json -"), ElementsAre("--help", "--limits", "--unit"));
  EXPECT_THAT(wordsFor("result-tables show --f"), ElementsAre("--family", "--format", "--from"));
  EXPECT_THAT(wordsFor("result-tables show r.json --jo"), IsEmpty());
  EXPECT_THAT(wordsFor("result-tables check r.json --jo"), ElementsAre("--jobs"));
}

TEST_F(Completion, OffersOptionsWhereNothingElseIsTaken) {
  EXPECT_THAT(wordsFor("result-tables limits sync r.json "), ElementsAre("--help", "--limits"));
  EXPECT_THAT(wordsFor("result-tables demo "), Contains("--family"));
}

TEST_F(Completion, OffersAgainWhatCanBeRepeated) {
  EXPECT_THAT(wordsFor("result-tables limits reset r.json --unit OP10 --limits l -"),
              ElementsAre("--help", "--unit"));
  EXPECT_THAT(wordsFor("result-tables limits reset r.json --unit=OP10 --limits=l -"),
              ElementsAre("--help", "--unit"));
}

TEST_F(Completion, OffersNoOptionsBehindTwoHyphens) {
  EXPECT_TRUE(offersFiles("result-tables show -- --"));
  EXPECT_THAT(wordsFor("result-tables limits sync --limits -- --"), ElementsAre("--help"))
      << "where they are the name of a document";
}

TEST_F(Completion, SaysWhatIsMeant) {
  m_environment = "LANG=de_DE.UTF-8";
  EXPECT_THAT(ask("zsh", "result-tables se").out, testing::MatchesRegex("words\nseries\tDie .* zeigen.*\n"));
  EXPECT_THAT(ask("zsh", "result-tables limits reset r.json --u").out,
              testing::MatchesRegex("words\n--unit\tNur die Einheiten .*\n"));
}

// ---- values

TEST_F(Completion, OffersTheFormatsOfTheCommand) {
  EXPECT_THAT(wordsFor("result-tables show --format "), ElementsAre("text", "csv", "json", "html", "xlsx"));
  EXPECT_THAT(wordsFor("result-tables check --format j"), ElementsAre("json", "junit"));
  EXPECT_THAT(wordsFor("result-tables series --format=s"), ElementsAre("svg"));
  EXPECT_THAT(wordsFor("result-tables study export s.db --format "),
              ElementsAre("csv", "json", "html", "xlsx"));
}

TEST_F(Completion, OffersFamiliesAndKindsOfLimits) {
  EXPECT_THAT(wordsFor("result-tables demo --family "),
              ElementsAre("Clamps", "ClampingTools", "JoiningTongs", "Pilots", "Bolts", "LineJoiningTools",
                          "SuctionZones", "Rollers", "Steels", "HemmingBed", "SpotWelds", "LineWelds"));
  EXPECT_THAT(wordsFor("result-tables study trend s.db --family S"),
              ElementsAre("SuctionZones", "Steels", "SpotWelds"));
  EXPECT_THAT(wordsFor("result-tables limits set r.json --type S"),
              ElementsAre("SuctionDistance", "SuctionZoneForce", "SteelForce"));
}

TEST_F(Completion, OffersWhatElseIsOneOfAFew) {
  EXPECT_THAT(wordsFor("result-tables demo --colour "), ElementsAre("auto", "always", "never"));
  EXPECT_THAT(wordsFor("result-tables demo --csv "), ElementsAre("plain", "excel-de"));
  EXPECT_THAT(wordsFor("result-tables demo --curves "), ElementsAre("none", "findings", "all"));
  EXPECT_THAT(wordsFor("result-tables show p.txt --from "), ElementsAre("calculix", "csv"));
  EXPECT_THAT(wordsFor("result-tables import calculix p.dat --step "), ElementsAre("all"));
}

TEST_F(Completion, OffersFilesForFilesAlone) {
  for (auto const* const line :
       {"result-tables show ", "result-tables show r.json r", "result-tables diff a ",
        "result-tables limits dump ", "result-tables study list ", "result-tables import csv ",
        "result-tables show r.json --limits ", "result-tables show r.json --output=o",
        "result-tables show r.json --map ", "result-tables demo > ", "result-tables demo 2>>e",
        "result-tables study add s.db "})
    EXPECT_TRUE(offersFiles(line)) << line;
  for (auto const* const line :
       {"result-tables check r.json --jobs ", "result-tables demo --digits=",
        "result-tables study compare s.db r", "result-tables limits set r.json --value ",
        "result-tables demo --teaching=", "result-tables demo --no=", "result-tables series r.json --item "})
    EXPECT_THAT(wordsFor(line), IsEmpty()) << line;
}

// ---- units

TEST_F(Completion, OffersNamesAndIdsOfTheUnitsInTheResults) {
  for (auto const* const line :
       {"result-tables show r.json --unit ", "result-tables show --digits 3 r.json --unit=",
        "result-tables limits set r.json --type BoltNormalForce --unit ",
        "result-tables series --unit OP10 r.json --family Clamps --unit "}) {
    EXPECT_THAT(wordsFor(line), ElementsAre("OP20", "OP10", s_firstUnit, s_secondUnit, s_thirdUnit)) << line;
  }
  EXPECT_THAT(wordsFor("result-tables show r.json --unit OP1"), ElementsAre("OP10"));
  EXPECT_THAT(wordsFor("result-tables show r.json --unit 0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a03"),
              ElementsAre(s_thirdUnit));
  EXPECT_THAT(ask("zsh", "result-tables show r.json --unit OP1").out,
              std::string("words\nOP10\t") + s_secondUnit + "\n");
}

TEST_F(Completion, FindsTheResultsBehindTheCursor) {
  EXPECT_THAT(wordsFor("result-tables show --unit O", " r.json"), ElementsAre("OP20", "OP10"));
  EXPECT_THAT(wordsFor("result-tables show --unit=O", "P --teaching -- r.json"), ElementsAre("OP20", "OP10"));
  EXPECT_THAT(wordsFor("result-tables show --unit O", "r.json"), IsEmpty()) << "which is the word itself";
  EXPECT_THAT(wordsFor("result-tables show --unit O", " --limits r.json"), IsEmpty());
}

TEST_F(Completion, OffersTheUnitsOfAllResultsEachOnce) {
  m_folder.write("s.json", R"({"format": "simulation-results", "version": 1, "units": [
    {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a09", "name": "OP30"},
    {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02", "name": "OP20"}]})");
  EXPECT_THAT(wordsFor("result-tables diff r.json s.json --unit OP"), ElementsAre("OP20", "OP10", "OP30"));
  EXPECT_THAT(wordsFor("result-tables check r.json s.json --unit OP"), ElementsAre("OP20", "OP10", "OP30"));
}

TEST_F(Completion, OffersTheUnitsOfTheSampleForTheSample) {
  EXPECT_THAT(wordsFor("result-tables demo --unit OP"),
              ElementsAre("OP30 Joining", "OP40 Hemming, Tür links"));
}

TEST_F(Completion, FindsResultsInTheHomeFolder) {
  m_environment = "HOME=$PWD";
  EXPECT_THAT(wordsFor("result-tables show ~/r.json --unit OP"), ElementsAre("OP20", "OP10"));
}

TEST_F(Completion, SaysNothingOfResultsThatItCannotRead) {
  m_folder.write("bad.json", "{");
  EXPECT_THAT(wordsFor("result-tables show bad.json missing.json - . r.json --unit OP1"),
              ElementsAre("OP10"));
  EXPECT_THAT(wordsFor("result-tables show --unit "), IsEmpty());
}

TEST_F(Completion, WaitsForNoPipe) {
  auto const result =
      runShell(m_folder.path(),
               "mkfifo pipe\ntimeout 20 $P __complete zsh 'result-tables show pipe /dev/zero --unit ' '' ''");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "words\n");
}

TEST_F(Completion, LeavesOutNamesThatNoLineHolds) {
  m_folder.write("n.json", R"({"format": "simulation-results", "version": 1, "units": [
    {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02", "name": "a\nb\tc"},
    {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a03", "name": ""}]})");
  EXPECT_EQ(ask("zsh", "result-tables show n.json --unit ").out,
            std::string("words\n") + s_firstUnit + "\ta␊b␉c\n" + s_thirdUnit + "\t\n");
}

// ---- bash

TEST_F(Completion, TellsBashWhatTakesThePlaceOfTheEndOfTheWord) {
  constexpr auto const* breaks = " \t\n\"'><=;|&(:";
  EXPECT_EQ(ask("bash", "result-tables demo --unit OP3", "", breaks).out, "words\nOP30\\ Joining\n");
  EXPECT_EQ(ask("bash", "result-tables demo --unit='OP3", "", breaks).out, "words\nOP30 Joining\n");
  EXPECT_EQ(ask("bash", "result-tables demo --unit=OP3", "", breaks).out, "words\nOP30\\ Joining\n");
  EXPECT_EQ(ask("bash", "result-tables demo --unit=OP3", "", " ").out, "words\n--unit=OP30\\ Joining\n");
  EXPECT_EQ(ask("bash", "result-tables show ", "", breaks).out, "files\n");
}

// ---- the word by which shells ask

TEST_F(Completion, IsAskedForByAWordThatHelpDoesNotName) {
  EXPECT_THAT(runShell(m_folder.path(), "$P --help").out, Not(testing::HasSubstr("__complete")));
  EXPECT_THAT(wordsFor("result-tables _"), IsEmpty());
  auto const result = runShell(m_folder.path(), "$P __complete zsh");
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_THAT(result.err, testing::StartsWith("result-tables: expected one of the commands show, "));
}

/// The names in the part of a help text under that heading.
Lines namesUnder(std::string const& heading, std::string const& help) {
  Lines names;
  auto const begin = help.find('\n' + heading + ":\n");
  if (begin == help.npos) return names;
  auto const part = help.substr(begin, help.find("\n\n", begin + 1) - begin);
  std::regex const name(R"(\n  (?:-h, )?([^ \n]+))");
  for (std::sregex_iterator match(part.begin(), part.end(), name), end; match != end; ++match)
    names.push_back((*match)[1]);
  return names;
}

TEST_F(Completion, OffersEachCommandAndOptionThatHelpNames) {
  std::vector<std::string> lines = {"result-tables "};
  for (std::size_t i = 0; i < lines.size(); ++i) {
    auto const line = lines[i];
    auto const help = runShell(m_folder.path(), "$P " + line.substr(line.find(' ')) + "--help").out;
    EXPECT_THAT(wordsFor(line + "--"), testing::ElementsAreArray(namesUnder("Options", help))) << line;
    auto const commands = namesUnder("Commands", help);
    if (!commands.empty()) {
      EXPECT_THAT(wordsFor(line), testing::ElementsAreArray(commands)) << line;
    }
    for (auto const& command : commands) lines.push_back(line + command + ' ');
  }
  EXPECT_THAT(lines, Contains("result-tables limits set "));
  EXPECT_THAT(lines, Contains("result-tables study export "));
}

}  // namespace
}  // namespace Kestrel::ResultTables

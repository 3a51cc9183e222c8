#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "support/ProgramTesting.h"

// `series` as a process.

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr char const* s_results = R"({"format": "simulation-results", "version": 1, "units": [
  {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02", "name": "OP20", "visibleSteps": {"first": 0, "last": 1},
   "tools": [
    {"id": "Bolt 1", "kind": "bolt", "series": [
      {"quantity": "ClampNormalForce", "pairs": [[0, 0], [-40.5, 0.25], [null, 0.5]]}]},
    {"id": "Tool 1", "kind": "tool", "series": [{"quantity": "TotalToolForces", "values": [7]}]}],
   "toolGroupings": {"HemmingBed": [{"name": "Left", "tools": ["Tool 1"]}]},
   "steps": [
    null,
    {"lineJoins": [{"guid": "11111111-70f2-4b2f-9a0b-6d7b5f0f9c11", "id": "L", "name": "Seam", "state": 2,
       "simulationUnitJoin": "7d0e0d5c-70f2-4b2f-9a0b-6d7b5f0f9c11",
       "skins": {"LineJoinSumForceN": {"min": -1, "max": 2}}}]}]},
  {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP10", "tools": [{"id": "Bolt 1", "kind": "bolt"}]}]})";

class SeriesCommand : public ProgramFixture {
 protected:
  SeriesCommand() { m_folder.write("r.json", s_results); }

  [[nodiscard]] json seriesOf(std::string const& arguments) const {
    return json::parse(outputOf("$P series r.json --format json " + arguments)).at("series");
  }
  [[nodiscard]] std::string messageOf(std::string const& script) const {
    auto const result = run(script);
    EXPECT_EQ(result.exitCode, 2) << script;
    EXPECT_EQ(result.out, "") << script;
    return result.err;
  }
};

TEST_F(SeriesCommand, GivesTheNumbersBehindAValue) {
  EXPECT_EQ(seriesOf("--unit OP20 --family Bolts --item 'Bolt 1' --key ClampNormalForce"), json::parse(R"([
    {"file": "r.json", "unit": "OP20", "unitId": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02", "family": "Bolts",
     "item": "Bolt 1", "key": "ClampNormalForce", "column": "Max Normal Force", "unitOfValue": "N", "limit": 30,
     "extremeStep": 1, "steps": [0, 1, 2], "times": [0, 0.25, 0.5], "values": [0, -40.5, null]}])"));
}

TEST_F(SeriesCommand, GivesMinimumAndMaximumOfALineJoin) {
  auto const list = seriesOf("--item Seam --key LineJoinSumForceN");
  ASSERT_EQ(list.size(), 1U);
  EXPECT_EQ(list[0].at("steps"), json::parse("[1]"));
  EXPECT_EQ(list[0].at("values"), json::parse("[[-1, 2]]"));
  EXPECT_EQ(list[0].at("extremeStep"), 1);
}

TEST_F(SeriesCommand, TakesSeveralElementsAndKeys) {
  std::vector<std::string> found;
  for (auto const& series : seriesOf("--item Seam --item 'Bolt 1' --key LineJoinSumForceT --key "
                                     "ClampNormalForce --key ClampClosingForce"))
    found.push_back(series.at("unit").get<std::string>() + ' ' + series.at("key").get<std::string>());
  EXPECT_THAT(found, ElementsAre("OP20 ClampNormalForce", "OP20 ClampClosingForce", "OP20 LineJoinSumForceT",
                                 "OP10 ClampNormalForce", "OP10 ClampClosingForce"));
}

TEST_F(SeriesCommand, TakesKeysThatAreTheSameInEveryLanguage) {
  for (auto const* const language : {"C", "de_DE.UTF-8", "ja_JP.UTF-8"}) {
    auto const list = json::parse(outputOf(std::string("LANG=") + language +
                                           " $P series r.json --key TotalToolForces --format json"))
                          .at("series");
    ASSERT_EQ(list.size(), 1U) << language;
    EXPECT_EQ(list[0].at("key"), "TotalToolForces") << language;
    EXPECT_EQ(list[0].at("values"), json::parse("[7]")) << language;
  }
}

TEST_F(SeriesCommand, ComparesWithTheLimitsOfTheFile) {
  EXPECT_EQ(run("$P limits set r.json --unit OP20 --type BoltNormalForce --value 41").exitCode, 0);
  EXPECT_EQ(seriesOf("--unit OP20 --key ClampNormalForce")[0].at("limit"), 41);
  EXPECT_EQ(run("mv r.json.limits my.limits").exitCode, 0);
  EXPECT_EQ(seriesOf("--unit OP20 --key ClampNormalForce")[0].at("limit"), 30);
  EXPECT_EQ(seriesOf("--unit OP20 --key ClampNormalForce --limits my.limits")[0].at("limit"), 41);
}

TEST_F(SeriesCommand, WritesCsv) {
  EXPECT_EQ(
      outputOf("$P series - --unit OP20 --key ClampNormalForce --format csv <r.json"),
      "file,unit,unitId,family,group,subGroup,item,key,column,step,time,value,minimum,maximum\r\n"
      "-,OP20,0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02,Bolts,Forces,,Bolt 1,ClampNormalForce,Max Normal Force,"
      "0,0,0,,\r\n"
      "-,OP20,0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02,Bolts,Forces,,Bolt 1,ClampNormalForce,Max Normal Force,"
      "1,0.25,-40.5,,\r\n"
      "-,OP20,0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02,Bolts,Forces,,Bolt 1,ClampNormalForce,Max Normal Force,"
      "2,0.5,nan,,\r\n");
}

TEST_F(SeriesCommand, WritesAPictureToAFile) {
  EXPECT_EQ(outputOf("$P series r.json --item 'Bolt 1' --format svg --output s.svg"), "");
  EXPECT_THAT(m_folder.read("s.svg"),
              AllOf(StartsWith("<?xml version=\"1.0\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\""),
                    HasSubstr(">-40.5 N, step 1, time 0.25</text>")));
}

TEST_F(SeriesCommand, PlotsInTheCharactersOfTheLocale) {
  auto const plot = [this](std::string const& locale) {
    return outputOf(locale + " $P series r.json --unit OP20 --key ClampNormalForce");
  };
  for (auto const* const locale : {"LC_ALL=C.UTF-8", "LC_CTYPE=xx_YY.UTF-8", "LANG=en_GB.utf8"})
    EXPECT_THAT(plot(locale), AllOf(HasSubstr("\n  ◉ -40.5 N, step 1, time 0.25, beyond its limit\n"),
                                    HasSubstr("\n  ╌ limit 30 N\n"), HasSubstr("┤"), HasSubstr("⠤")))
        << locale;
  for (auto const* const locale :
       {"LANG=", "LC_ALL=C", "LANG=en_GB.ISO-8859-1", "LC_ALL=POSIX LANG=C.UTF-8"}) {
    auto const text = plot(locale);
    EXPECT_THAT(text, AllOf(HasSubstr("\n  X -40.5 N, step 1, time 0.25, beyond its limit\n"),
                            HasSubstr("\n  - limit 30 N\n"), HasSubstr("***")))
        << locale;
    EXPECT_TRUE(std::all_of(text.begin(), text.end(), [](char c) { return c >= 0; })) << text;
  }
}

TEST_F(SeriesCommand, SpeaksTheLanguageOfTheEnvironment) {
  EXPECT_THAT(
      outputOf("LANG=de_DE.UTF-8 $P series r.json --unit OP20 --key ClampNormalForce"),
      AllOf(StartsWith("OP20: Bolzen, Kräfte, Bolt 1, Max. Normalkraft [N]\n\n"), HasSubstr("\nZeit  0"),
            HasSubstr("\n  ◉ -40.5 N, Schritt 1, Zeit 0.25, über der Grenze\n  ╌ Grenze 30 N\n  "
                      "Werte: 3, davon keine Zahlen: 1\n")));
  EXPECT_THAT(outputOf("LANG=ja_JP.UTF-8 $P series r.json --unit OP20 --key ClampNormalForce"),
              AllOf(HasSubstr("\n時刻  0"),
                    HasSubstr("\n  ◉ -40.5 N, ステップ 1, 時刻 0.25, 限界値超過\n  ╌ 限界値 30 N\n"
                              "  値: 3、数値でないもの: 1\n")));
  EXPECT_THAT(outputOf("LANG=de_DE.UTF-8 $P series r.json --unit OP10 --key ClampNormalForce"),
              HasSubstr("\n\n  keine Daten\n  Grenze 30 N\n"));
}

TEST_F(SeriesCommand, FitsThePlotIntoTheTerminal) {
  auto const shown =
      outputOf("TERM=xterm LC_ALL=C.UTF-8 script -qec 'stty cols 100; " KESTREL_PROGRAM
               " series r.json --unit OP20 --key ClampNormalForce --colour never' /dev/null | tr -d '\\r'");
  EXPECT_THAT(shown, HasSubstr("0.25"));
  std::string line = "     └┬";  // axis and first tick
  auto const at = shown.find(line);
  ASSERT_NE(at, std::string::npos) << shown;
  auto const axis = shown.substr(at, shown.find('\n', at) - at);
  EXPECT_EQ((axis.size() - 5) / 3, 95U) << "of 100 columns, five are for numbers and a blank";
}

TEST_F(SeriesCommand, SaysWhatIsUnknown) {
  EXPECT_EQ(messageOf("$P series r.json --item 'Bolt 2' --unit OP20"),
            "result-tables: r.json: expected the name of an element of the selected tables (\"Bolt 1\", "
            "\"Tool 1\", \"Seam\"), found \"Bolt 2\"; did you mean \"Bolt 1\"?\n");
  EXPECT_EQ(messageOf("$P series r.json --item Seam --key LineJoinSumForce"),
            "result-tables: r.json: expected the key of a column of the selected elements "
            "(\"LineJoinSumForceN\", \"LineJoinSumForceT\"), found \"LineJoinSumForce\"; did you mean "
            "\"LineJoinSumForceN\"?\n");
  EXPECT_EQ(messageOf("LANG=de_DE.UTF-8 $P series r.json --item Seam --key X"),
            "result-tables: r.json: erwartet: der Schlüssel einer Spalte der gewählten Elemente "
            "(\"LineJoinSumForceN\", \"LineJoinSumForceT\"); gefunden: \"X\"\n");
  EXPECT_EQ(messageOf("LANG=ja_JP.UTF-8 $P series r.json --unit OP10 --item X"),
            "result-tables: r.json: 期待: 選択した表の要素の名前（\"Bolt 1\"）、実際: \"X\"\n");
  EXPECT_EQ(messageOf("$P series r.json --format yaml"),
            "result-tables: --format: expected one of text, csv, json, svg, found \"yaml\"\n");
  EXPECT_EQ(messageOf("$P series none.json"),
            "result-tables: none.json: cannot read: No such file or directory\n");
}

TEST_F(SeriesCommand, SaysWhenAFamilyHasNone) {
  EXPECT_EQ(outputOf("$P series r.json --family Pilots"), "no series\n");
  EXPECT_EQ(outputOf("LANG=de_DE.UTF-8 $P series r.json --family Pilots"), "keine Reihen\n");
  EXPECT_EQ(seriesOf("--family Pilots"), json::array());
}

TEST_F(SeriesCommand, ExplainsItself) {
  EXPECT_THAT(
      outputOf("$P series --help"),
      AllOf(HasSubstr("Usage: result-tables series RESULTS [OPTIONS]\n"), HasSubstr("\n  --item NAME "),
            HasSubstr("\n  --key KEY "), HasSubstr("text, csv, json, svg"), Not(HasSubstr("--when"))));
}

}  // namespace
}  // namespace Kestrel::ResultTables

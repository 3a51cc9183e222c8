#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <pugixml.hpp>

#include "support/DifferencesTesting.h"
#include "support/ProgramTesting.h"

// The command `study trend`, as a process.

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

class StudyTrend : public ProgramFixture {
 protected:
  void add(std::string const& run, std::string const& units, std::string const& options = {}) const {
    m_folder.write(run, resultsOf(units));
    EXPECT_EQ(this->run("$P study add s '" + run + "' " + options).exitCode, 0) << run;
  }

  static std::string of(std::string const& unit, std::string const& item = "Bolt 1") {
    return fmt::format("$P study trend s --unit '{}' --family Bolts --item '{}' --key ClampNormalForce ",
                       unit, item);
  }

  [[nodiscard]] json trends(std::string const& script) const {
    return json::parse(outputOf(script + " --format json")).at("trends");
  }

  /// The values of a trend, each as "run 29".
  [[nodiscard]] static std::vector<std::string> valuesOf(json const& trend) {
    std::vector<std::string> values;
    for (auto const& run : trend.at("runs"))
      values.push_back(run.at("run").get<std::string>() + " " + run.at("value").dump());
    return values;
  }
};

TEST_F(StudyTrend, PutsOutAllThatIsKnownOfEachRunAndOfThemTogether) {
  add("b", oneBolt("0, -31"), "--label speed=2");
  add("a", oneBolt("29, null"));
  EXPECT_EQ(outputOf(of("OP20") + "--format json"), R"({
  "trends": [
    {
      "unit": "OP20",
      "unitId": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02",
      "family": "Bolts",
      "group": "Forces",
      "subGroup": "",
      "item": "Bolt 1",
      "occurrence": 0,
      "key": "ClampNormalForce",
      "column": "Max Normal Force",
      "unitOfValue": "N",
      "by": null,
      "runs": [
        {
          "run": "b",
          "file": "b",
          "label": null,
          "value": -31,
          "limit": 30,
          "valid": true,
          "exceeded": true,
          "step": 1,
          "time": null,
          "count": 2,
          "nans": 0
        },
        {
          "run": "a",
          "file": "a",
          "label": null,
          "value": 29,
          "limit": 30,
          "valid": true,
          "exceeded": false,
          "step": 0,
          "time": null,
          "count": 1,
          "nans": 1
        }
      ],
      "statistics": {
        "count": 2,
        "minimum": -31,
        "maximum": 29,
        "mean": -1,
        "standardDeviation": 42.42640687119285,
        "shareBeyondLimit": 0.5
      }
    }
  ]
}
)");
  EXPECT_EQ(
      outputOf(of("OP20") + "--format csv"),
      "run,label,file,unit,unitId,family,group,subGroup,item,occurrence,valid,key,column,value,valueUnit,"
      "limit,exceeded,step,time,count,nans\r\n"
      "b,,b,OP20,0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02,Bolts,Forces,,Bolt 1,0,true,ClampNormalForce,"
      "Max Normal Force,-31,N,30,true,1,,2,0\r\n"
      "a,,a,OP20,0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02,Bolts,Forces,,Bolt 1,0,true,ClampNormalForce,"
      "Max Normal Force,29,N,30,false,0,,1,1\r\n");
}

TEST_F(StudyTrend, ShowsALineForEachRunAndAPlotWithTheLimit) {
  add("b", oneBolt("0, -31"));
  add("a", oneBolt("29"));
  add("c", oneBolt("null"));
  add("d", oneBolt(""));
  add("e", oneBolt("\"Infinity\""));
  EXPECT_EQ(outputOf(of("OP20")), R"(OP20: Bolts, Forces, Bolt 1, Max Normal Force [N]

#   run   value   limit   step   remark
1   b       -31      30      1   beyond its limit
2   a        29      30      0
3   c       NaN      30          its series holds values that are not numbers
4   d         –      30
5   e       inf      30      0   beyond its limit

 40 +                                                                          X
    |
    |-------------------*-------------------------------------------------------
    |                 **
 20 +               **
    |             **
    |            *
    |          **
  0 +        **
    |       *
    |     **
-20 +   **
    | **
    |X--------------------------------------------------------------------------
    |
-40 +
    ++------------------+-----------------+------------------+-----------------+
run  1                  2                 3                  4                 5

  X beyond its limit
  - limit 30 N
  runs: 3, minimum -31 N, maximum inf N, mean inf N, beyond the limit 66.7 %
)");
}

TEST_F(StudyTrend, OrdersByTheNumberOfALabelAndCountsTheRunsWithoutOne) {
  add("a", oneBolt("1"), "--label speed=10");
  add("b", oneBolt("2"), "--label speed=9.5");
  add("c", oneBolt("3"), "--label speed=fast");
  add("d", oneBolt("4"), "--label speed=1e1");
  add("e", oneBolt("5"));
  add("f", oneBolt("6"), "--label speed=nan");
  auto const result = run(of("OP20") + "--by speed --format json");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err,
            "result-tables: --by: runs left out, as they have no number under the label \"speed\": 3\n");
  auto const found = json::parse(result.out).at("trends");
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(found[0].at("by"), "speed");
  EXPECT_THAT(valuesOf(found[0]), ElementsAre("b 2", "a 1", "d 4"));
  EXPECT_EQ(found[0].at("runs")[0].at("label"), "9.5");
  EXPECT_EQ(json::parse(run(of("OP20") + "--by none --format json").out), json::parse(R"({"trends": []})"));
}

TEST_F(StudyTrend, IsOneForEachPlaceOfTheElement) {
  add("a", unitOf('1', "OP10", bolt("Bolt 1", "1")) + ", " + unitOf('2', "OP10", bolt("Bolt 1", "2")));
  add("b", unitOf('2', "OP10", bolt("Bolt 1", "3")) + ", " + unitOf('1', "OP10", bolt("Bolt 1", "4")));
  auto const found = trends(of("OP10"));
  ASSERT_THAT(found, SizeIs(2));
  EXPECT_EQ(found[0].at("unitId"), "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01");
  EXPECT_THAT(valuesOf(found[0]), ElementsAre("a 1", "b 4"));
  EXPECT_THAT(valuesOf(found[1]), ElementsAre("a 2", "b 3"));
  auto const one = trends(of("0B6F6D3E-6c1e-4a57-9b52-0f6f2f1b6a02"));
  ASSERT_THAT(one, SizeIs(1));
  EXPECT_THAT(valuesOf(one[0]), ElementsAre("a 2", "b 3"));
}

TEST_F(StudyTrend, FollowsAUnitByItsNameWhereItsIdIsAnother) {
  add("a", unitOf('1', "OP10", bolt("Bolt 1", "1")));
  add("b", unitOf('2', "OP10", bolt("Bolt 1", "2")));
  add("c", unitOf('1', "OP10", bolt("Bolt 1", "3")) + ", " + unitOf('3', "OP10", bolt("Bolt 1", "4")));
  auto const found = trends(of("OP10"));
  ASSERT_THAT(found, SizeIs(2));
  EXPECT_THAT(valuesOf(found[0]), ElementsAre("a 1", "b 2", "c 3"));
  EXPECT_THAT(valuesOf(found[1]), ElementsAre("c 4"));
}

TEST_F(StudyTrend, FollowsRunsOfOtherLayouts) {
  add("a", oneBolt("1"));
  add("b", unitOf('2', "OP20", bolt("Bolt 0", "7") + ", " + bolt("Bolt 1", "2")));
  add("c", unitOf('2', "OP20", bolt("Bolt 0", "7")));
  auto const found = trends(of("OP20"));
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_THAT(valuesOf(found[0]), ElementsAre("a 1", "b 2"));
}

TEST_F(StudyTrend, DrawsTheRunsTheLimitAndWhatIsBeyondIt) {
  m_folder.write("l", R"({"format": "limits", "version": 1, "all": {"limits": {"BoltNormalForce": 20}}})");
  add("a", oneBolt("25"));
  add("b", oneBolt("10"));
  auto const circles = [this] {
    pugi::xml_document document;
    EXPECT_TRUE(document.load_string(outputOf(of("OP20") + "--format svg").c_str()));
    return document.select_nodes("//circle").size();
  };
  auto const lines = [this] {
    pugi::xml_document document;
    document.load_string(outputOf(of("OP20") + "--format svg").c_str());
    return document.select_nodes("//line[@stroke-dasharray]").size();
  };
  EXPECT_EQ(circles(), 0U);
  EXPECT_EQ(lines(), 1U) << "30 is near enough, -30 is not";
  EXPECT_THAT(outputOf(of("OP20") + "--format svg"), HasSubstr("limit 30 N"));
  add("c", oneBolt("25"), "--limits l");
  EXPECT_EQ(circles(), 1U) << "beyond the limit of its run";
  EXPECT_GT(lines(), 1U) << "steps from limit to limit";
  EXPECT_THAT(outputOf(of("OP20") + "--format svg"), Not(HasSubstr("limit 30 N")));
}

TEST_F(StudyTrend, RefusesWhatIsNotThere) {
  add("a", oneBolt("1"));
  expectFailure(
      of("OP30"),
      R"(s: expected the id or the name of a unit of the study ("OP20"), found "OP30"; did you mean "OP20"?)");
  expectFailure(
      of("OP20", "Bolt 2"),
      R"(s: expected the name of an element of the selected tables ("Bolt 1"), found "Bolt 2"; did you mean "Bolt 1"?)");
  auto const key = run("$P study trend s --unit OP20 --family Bolts --item 'Bolt 1' --key X");
  EXPECT_EQ(key.exitCode, 2);
  EXPECT_THAT(key.err,
              HasSubstr(R"(expected the key of a column of the selected elements ("ClampNormalForce", )"));
  EXPECT_EQ(run("$P study trend s --unit OP20 --family Bolts --item 'Bolt 1'").exitCode, 2);
}

TEST_F(StudyTrend, KeepsNamesFromTheTerminal) {
  add("a\x1b[31m", oneBolt("1"), "--label 's\x1b=1'");
  auto const text = outputOf(of("OP20") + "--by 's\x1b'");
  EXPECT_THAT(text, Not(HasSubstr("\x1b")));
  EXPECT_THAT(text, HasSubstr("a␛[31m"));
  pugi::xml_document document;
  EXPECT_TRUE(document.load_string(outputOf(of("OP20") + "--by 's\x1b' --format svg").c_str()));
}

}  // namespace
}  // namespace Kestrel::ResultTables

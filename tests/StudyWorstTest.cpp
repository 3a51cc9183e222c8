#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/DifferencesTesting.h"
#include "support/ProgramTesting.h"

// The command `study worst`, as a process.

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class StudyWorst : public ProgramFixture {
 protected:
  void add(std::string const& run, std::string const& units) const {
    m_folder.write(run + ".json", resultsOf(units));
    EXPECT_EQ(this->run("$P study add s '" + run + ".json'").exitCode, 0) << run;
  }

  /// Each as "run OP20 Bolt 1 29 0.966…".
  [[nodiscard]] std::vector<std::string> worst(std::string const& arguments) const {
    auto const output = json::parse(outputOf("$P study worst s --format json " + arguments));
    std::vector<std::string> lines;
    for (auto const& each : output.at("worst")) {
      lines.push_back(fmt::format("{} {} {} {} {}", each.at("run").get<std::string>(),
                                  each.at("unit").get<std::string>(), each.at("item").get<std::string>(),
                                  each.at("value").dump(), each.at("utilisation").dump()));
    }
    return lines;
  }
};

TEST_F(StudyWorst, ListsFromTheHighestDownAndEqualOnesInTheOrderOfRunsAndTables) {
  add("b", unitOf('1', "OP10", bolt("Bolt 1", "15") + ", " + bolt("Bolt 2", "-30")) + ", " + oneBolt("24"));
  add("a", unitOf('1', "OP10", bolt("Bolt 1", "30") + ", " + bolt("Bolt 2", "-15")) + ", " + oneBolt("-45"));
  EXPECT_THAT(worst(""),
              ElementsAre("a OP20 Bolt 1 -45 1.5", "b OP10 Bolt 2 -30 1", "a OP10 Bolt 1 30 1",
                          "b OP20 Bolt 1 24 0.8", "b OP10 Bolt 1 15 0.5", "a OP10 Bolt 2 -15 0.5"));
  EXPECT_THAT(worst("--top 2"), ElementsAre("a OP20 Bolt 1 -45 1.5", "b OP10 Bolt 2 -30 1"));
  EXPECT_THAT(worst("--top 1 --unit OP10"), ElementsAre("b OP10 Bolt 2 -30 1"));
  EXPECT_THAT(worst("--family Pilots"), IsEmpty());
}

TEST_F(StudyWorst, ListsTwentyWhereNothingIsSaid) {
  std::string bolts;
  for (int i = 0; i < 21; ++i)
    bolts += (i > 0 ? ", " : "") + bolt(fmt::format("Bolt {}", i), std::to_string(i + 1));
  add("a", unitOf('1', "OP10", bolts));
  auto const listed = worst("");
  ASSERT_THAT(listed, testing::SizeIs(20));
  EXPECT_EQ(listed.back(), "a OP10 Bolt 1 2 0.06666666666666667");
}

TEST_F(StudyWorst, PutsOutTheMembersInTheirOrder) {
  add("a <b>", oneBolt("0, -29"));
  EXPECT_EQ(outputOf("$P study worst s --format json"), R"({
  "worst": [
    {
      "run": "a <b>",
      "file": "a <b>.json",
      "unit": "OP20",
      "unitId": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02",
      "family": "Bolts",
      "subGroup": "",
      "item": "Bolt 1",
      "key": "ClampNormalForce",
      "value": -29,
      "limit": 30,
      "utilisation": 0.9666666666666667,
      "step": 1,
      "time": null
    }
  ]
}
)");
  EXPECT_EQ(outputOf("$P study worst s --format csv"),
            "run,file,unit,unitId,family,group,subGroup,item,key,column,value,valueUnit,limit,utilisation,"
            "step,time\r\n"
            "a <b>,a <b>.json,OP20,0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02,Bolts,Forces,,Bolt 1,"
            "ClampNormalForce,Max Normal Force,-29,N,30,0.9666666666666667,1,\r\n");
  EXPECT_THAT(outputOf("$P study worst s --csv excel-de"), HasSubstr(";-29;N;30;0,9666666666666667;1;\r\n"));
}

TEST_F(StudyWorst, ShowsALineForEachValue) {
  add("a", oneBolt("0, -31.5"));
  add("b", oneBolt("2"));
  EXPECT_EQ(
      outputOf("$P study worst s"),
      "utilisation [%]   value   limit       run   place                                           step\n"
      "        105       -31.5      30   N   a     OP20: Bolts, Forces, Bolt 1, Max Normal Force      1\n"
      "          6.667     2        30   N   b     OP20: Bolts, Forces, Bolt 1, Max Normal Force      0\n");
  EXPECT_THAT(outputOf("$P study worst s --colour always --digits 2"), HasSubstr("\x1b[31m"));
  EXPECT_EQ(outputOf("$P study worst s --family Pilots"), "no values with a limit\n");
}

TEST_F(StudyWorst, KnowsLimitsOfZeroAndInfiniteValues) {
  m_folder.write("l", R"({"format": "limits", "version": 1, "all": {"limits": {"BoltNormalForce": 0}}})");
  m_folder.write("a", resultsOf(unitOf('1', "OP10", bolt("Bolt 1", "0") + ", " + bolt("Bolt 2", "1e-320"))));
  ASSERT_EQ(run("$P study add s a --limits l").exitCode, 0);
  add("b",
      unitOf('1', "OP10",
             bolt("Bolt 1", "\"-Infinity\"") + ", " + bolt("Bolt 2", "null") + ", " + bolt("Bolt 3", "")));
  EXPECT_THAT(worst(""), ElementsAre("a OP10 Bolt 2 1e-320 \"Infinity\"",
                                     "b OP10 Bolt 1 \"-Infinity\" \"Infinity\"", "a OP10 Bolt 1 0 0"))
      << "what holds no number takes nothing of its limit";
}

TEST_F(StudyWorst, RefusesWhatIsNotThere) {
  add("a", oneBolt("1"));
  expectFailure(
      "$P study worst s --unit OP30",
      R"(s: expected the id or the name of a unit of the study ("OP20"), found "OP30"; did you mean "OP20"?)");
  expectFailure("$P study worst s --top 0", R"(--top: expected a whole number from 1 to 1000000, found "0")");
}

}  // namespace
}  // namespace Kestrel::ResultTables

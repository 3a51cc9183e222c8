#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/DifferenceLines.h"
#include "support/DifferencesTesting.h"
#include "support/ProgramTesting.h"

// The command `study compare`, as a process.

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class StudyCompare : public ProgramFixture {
 protected:
  StudyCompare() {
    m_folder.write("a.json", resultsOf(unitOf('1', "OP10", bolt("Bolt 1", "4")) + ", " + oneBolt("20")));
    m_folder.write("b.json", resultsOf(unitOf('1', "OP10", bolt("Bolt 1", "5")) + ", " + oneBolt("31")));
    EXPECT_EQ(run("$P study add s a.json b.json").exitCode, 0);
    std::filesystem::remove(m_folder.path() / "a.json");
    std::filesystem::remove(m_folder.path() / "b.json");
  }

  [[nodiscard]] std::vector<std::string> differences(std::string const& arguments) const {
    SCOPED_TRACE(arguments);
    return differenceLines(run("$P study compare s " + arguments + " --format json"));
  }
};

TEST_F(StudyCompare, NeedsNoFilesAndExitsWithOneWhereTheRunsDiffer) {
  EXPECT_THAT(differences("a b"), ElementsAre("OP10 changed 4 5", "OP20 changed 20 31"));
  EXPECT_THAT(differences("b a"), ElementsAre("OP10 changed 5 4", "OP20 changed 31 20"));
  EXPECT_THAT(differences("a a"), IsEmpty());
}

TEST_F(StudyCompare, TakesSelectionAndTolerances) {
  EXPECT_THAT(differences("a b --unit OP20"), ElementsAre("OP20 changed 20 31"));
  EXPECT_THAT(differences("a b --abs 1"), ElementsAre("OP20 changed 20 31"));
  EXPECT_THAT(differences("a b --rel 1"), ElementsAre("OP20 state 20 31")) << "beyond its limit of 30 N";
  EXPECT_THAT(differences("a b --family Pilots"), IsEmpty());
}

TEST_F(StudyCompare, CallsTheRunsByTheirNames) {
  EXPECT_THAT(run("$P study compare s a b --format junit").out, HasSubstr("name=\"a → b\""));
  auto const page = run("$P study compare s a b --format html").out;
  EXPECT_THAT(page, HasSubstr("before: a<"));
  EXPECT_THAT(page, HasSubstr("default limits"));
  EXPECT_THAT(page, Not(HasSubstr("a.json")));
}

TEST_F(StudyCompare, SaysThatLimitsWereStoredWithARun) {
  m_folder.write("c.json", resultsOf(oneBolt("20")));
  m_folder.write("l.json",
                 R"({"format": "limits", "version": 1, "all": {"limits": {"BoltNormalForce": 5}}})");
  ASSERT_EQ(run("$P study add s c.json --limits l.json").exitCode, 0);
  EXPECT_THAT(differences("a c --unit OP20"), ElementsAre("OP20 state 20 20"));
  EXPECT_THAT(run("$P study compare s a c --unit OP20 --format html").out, HasSubstr("stored with the run"));
}

TEST_F(StudyCompare, RefusesWhatIsNotThere) {
  expectFailure("$P study compare s a d", R"(s: expected the name of a run ("a", "b"), found "d")");
  expectFailure("$P study compare s a b --unit OP30",
                R"(a: expected the id or the name of one of its units ("OP10", "OP20"), found "OP30")");
  expectFailure("$P study compare t a b", "t: there is no such study");
}

TEST_F(StudyCompare, KnowsColumnsByTheirKeysInEveryLanguage) {
  m_folder.write("c.json", R"({"format": "simulation-results", "version": 1, "units": [
    {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP10",
     "tools": [{"id": "Tool 1", "kind": "tool", "series": [{"quantity": "TotalToolForces", "values": [7]}]}],
     "toolGroupings": {"ClampingTools": [{"name": "Left", "tools": ["Tool 1"]}]}}]})");
  ASSERT_EQ(run("sed s/7/8/ c.json >d.json && LANGUAGE=de $P study add s c.json && LANGUAGE=en $P study add "
                "s d.json")
                .exitCode,
            0);
  auto const result =
      run("LC_ALL=C.UTF-8 LANGUAGE=de $P study compare s c d --format json --family ClampingTools");
  auto const found = json::parse(result.out).at("differences");
  ASSERT_THAT(found, testing::SizeIs(1));
  EXPECT_EQ(found[0].at("key"), "TotalToolForces");
  EXPECT_EQ(found[0].at("column"),
            json::parse(run("LC_ALL=C.UTF-8 LANGUAGE=de $P diff c.json d.json --format json").out)
                .at("differences")[0]
                .at("column"));
}

}  // namespace
}  // namespace Kestrel::ResultTables

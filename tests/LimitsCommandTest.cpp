#include <fcntl.h>
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "result_tables/base/File.h"
#include "result_tables/limits/Limits.h"
#include "result_tables/limits/LimitsDocument.h"
#include "support/DamagedDocument.h"
#include "support/LimitsTesting.h"
#include "support/LimitsWriter.h"
#include "support/ProgramTesting.h"

namespace Kestrel::ResultTables {
namespace {

namespace fs = std::filesystem;

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class LimitsCommand : public ProgramFixture {
 protected:
  LimitsCommand() { m_folder.write("r.json", s_resultsOfThreeUnits); }

  /// The limits that `limits list` gives.
  [[nodiscard]] json limitsOf(std::string const& options) const {
    return json::parse(outputOf("$P limits list --format json " + options)).at("limits");
  }
  /// The values of the limits of one kind, in the order of the list; what is no finite number as in JSON.
  [[nodiscard]] json listed(std::string const& options, unsigned int type) const {
    auto values = json::array();
    for (auto const limits = limitsOf("r.json " + options); auto const& limit : limits) {
      if (limit.at("type") == type) values.push_back(limit.at("limit"));
    }
    return values;
  }
  /// The units in the order of the list, each once.
  [[nodiscard]] std::vector<std::string> listedUnits(std::string const& options) const {
    std::vector<std::string> ids;
    for (auto const limits = limitsOf("r.json " + options); auto const& limit : limits) {
      auto const id = limit.at("unit").at("id").get<std::string>();
      if (ids.empty() || ids.back() != id) ids.push_back(id);
    }
    return ids;
  }
  /// The number of limits that stand in a document.
  [[nodiscard]] std::size_t countLimitsIn(std::string const& document) const {
    return loadDocument<TablePropertiesData>(m_folder.read(document))->getChildCount();
  }
};

// ---- list

TEST_F(LimitsCommand, ListsTheDefaultsWhereThereIsNoDocument) {
  EXPECT_EQ(outputOf("$P limits list r.json --unit OP10"), R"(OP10  0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01
   1  JoiningTongNormalForce          500 N
   2  JoiningTongDistance               1 mm
   3  JoiningTongGap                    1 mm
   4  LineJoiningToolDistanceToInput    1 mm
   5  JoinNormalForce                 500 N
   6  JoinTangentialForce             500 N
   7  ForceLimit7                     500 N
   8  ForceLimit8                     500 N
   9  LineJoiningToolGap                1 mm
  19  PilotForce                      500 N
  23  BoltNormalForce                  30 N
  20  RollerForce                     500 N
  21  SteelForce                      500 N
  22  HemmingBedForce                 500 N
  18  SuctionZoneForce                500 N
  17  SuctionDistance                   1 mm
)");
  EXPECT_THAT(m_folder.names(), ElementsAre("r.json")) << "listing writes nothing";
}

TEST_F(LimitsCommand, ListsInTheOrderOfTheCollection) {
  EXPECT_THAT(listedUnits(""), ElementsAre(s_firstUnit, s_secondUnit, s_thirdUnit));
  expectSilence("$P limits sync r.json");
  EXPECT_THAT(listedUnits(""), ElementsAre(s_secondUnit, s_firstUnit, s_thirdUnit));
}

TEST_F(LimitsCommand, ListsEveryUnitThatIsNamed) {
  EXPECT_THAT(listedUnits("--unit OP20"), ElementsAre(s_firstUnit, s_thirdUnit));
  EXPECT_THAT(listedUnits("--unit OP10 --unit 0B6F6D3E-6C1E-4A57-9B52-0F6F2F1B6A03"),
              ElementsAre(s_secondUnit, s_thirdUnit));
  expectFailure(
      "$P limits list r.json --unit OP99",
      "r.json: expected the id or the name of one of its units (\"OP20\", \"OP10\"), found \"OP99\"");
}

TEST_F(LimitsCommand, MarksWhatIsNotTheDefault) {
  expectSilence("$P limits set r.json --unit OP10 --type BoltNormalForce --value 1234.5678901234567");
  expectSilence("$P limits set r.json --unit OP10 --type PilotForce --value nan");
  expectSilence("$P limits set r.json --unit OP10 --type RollerForce --value 500");
  EXPECT_THAT(outputOf("$P limits list r.json --unit OP10"),
              HasSubstr("   9  LineJoiningToolGap                 1               mm\n"
                        "  19  PilotForce                       nan               N  *\n"
                        "  23  BoltNormalForce                 1234.5678901234567 N  *\n"
                        "  20  RollerForce                      500               N\n"));
  EXPECT_THAT(outputOf("$P limits list r.json"), testing::EndsWith("\n\n* not the default\n"));
  EXPECT_THAT(outputOf("$P limits list r.json --unit OP20"), Not(HasSubstr("*")));
}

TEST_F(LimitsCommand, WritesColourToATerminalUnlessItIsUnwelcome) {
  expectSilence("$P limits set r.json --unit OP10 --type 23 --value 31");
  EXPECT_THAT(run("TERM=xterm script -qec \"$P limits list r.json --unit OP10\" /dev/null").out,
              testing::AllOf(HasSubstr("\x1b[1mOP10\x1b[0m"), HasSubstr("\x1b[33m31\x1b[0m N  *")));
  EXPECT_THAT(run("TERM=xterm NO_COLOR=1 script -qec \"$P limits list r.json\" /dev/null").out,
              Not(HasSubstr("\x1b")));
  EXPECT_THAT(outputOf("$P limits list r.json"), Not(HasSubstr("\x1b")));
}

TEST_F(LimitsCommand, ListsAsJson) {
  expectSilence("$P limits set r.json --unit OP10 --type 1 --value nan");
  expectSilence("$P limits set r.json --unit OP10 --type 2 --value -inf");
  expectSilence("$P limits set r.json --unit OP10 --type 3 --value 0x1p-1074");
  auto const listed = outputOf("$P limits list r.json --unit OP10 --format json");
  auto const limits = json::parse(listed).at("limits");
  EXPECT_EQ(limits.size(), 16U);
  EXPECT_EQ(limits.at(0), json::parse(R"({
    "unit": {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP10"},
    "type": 1, "typeName": "JoiningTongNormalForce", "limit": null, "unitString": "N"})"));
  EXPECT_EQ(limits.at(1).at("limit"), "-Infinity");
  EXPECT_EQ(limits.at(2).at("limit"), 5e-324);
  EXPECT_EQ(outputOf("LANG=de_DE.UTF-8 $P limits list r.json --unit OP10 --format json"), listed);
  m_folder.write("none.json", R"({"format": "simulation-results", "version": 1, "units": []})");
  EXPECT_EQ(outputOf("$P limits list none.json --format json"), "{\n  \"limits\": []\n}\n");
}

TEST_F(LimitsCommand, ListsTextsOfADocumentSafely) {
  m_folder.write("r.json.limits",
                 LimitsWriter{.limits = {{23, unitId(s_secondUnit), 45, "k\xFF\x1b\n"}}}.genDocument());
  EXPECT_THAT(outputOf("$P limits list r.json --unit OP10"),
              HasSubstr("  23  BoltNormalForce  45 k\uFFFD␛␊ *\n"));
  EXPECT_EQ(limitsOf("r.json --unit OP10").at(0).at("unitString"), "k\uFFFD\x1b\n");
}

TEST_F(LimitsCommand, ReadsDocumentsOfEveryVersion) {
  m_folder.write("v.json", R"({"format": "simulation-results", "version": 1, "units": [
    {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP10"}]})");
  auto const listedIn = [&](std::string const& document) {
    auto const file = KESTREL_SOURCE_DIR "/tests/data/limits_documents/" + document + ".limits";
    return limitsOf("v.json --limits '" + file + "'");
  };
  auto const limit = [](json const& limits, unsigned int type) {
    for (auto const& entry : limits) {
      if (entry.at("type") == type) return json::array({entry.at("limit"), entry.at("unitString")});
    }
    return json();
  };
  auto const defaults = limitsOf("v.json");
  EXPECT_EQ(defaults.size(), 16U);
  for (auto const* const document : {"class-500001", "empty"})
    EXPECT_EQ(listedIn(document), defaults) << document;
  for (auto const limits = listedIn("data-30"); auto const& entry : limits)
    EXPECT_NE(std::find(defaults.begin(), defaults.end(), entry), defaults.end()) << entry;
  EXPECT_EQ(limit(listedIn("class-500002"), 23), json::array({31.5, "N"}));
  EXPECT_EQ(limit(listedIn("class-500002"), 21), json::array({nullptr, "N"}));
  EXPECT_EQ(limit(listedIn("data-20"), 1), json::array({480, "N"}));
  EXPECT_EQ(limit(listedIn("limit-500001"), 1), json::array({480, ""}));
  EXPECT_EQ(limit(listedIn("limit-500001"), 2), json::array({1.25, ""}));
}

// ---- set

TEST_F(LimitsCommand, SetsALimitByNameOrNumberOfItsKind) {
  expectSilence("$P limits set r.json --unit OP10 --type BoltNormalForce --value 45.5");
  EXPECT_EQ(listed("--unit OP10", 23), json({45.5}));
  expectSilence("$P limits set --value 46 --type=23 --unit=OP10 r.json");
  EXPECT_EQ(listed("", 23), json({46, 30, 30}));
}

TEST_F(LimitsCommand, SetsTheLimitOfEveryUnitThatIsNamed) {
  expectSilence("$P limits set r.json --unit OP20 --type 23 --value 7");
  EXPECT_EQ(listed("", 23), json({30, 7, 7}));
  expectSilence(
      "$P limits set r.json --unit OP10 --unit 0B6F6D3E-6C1E-4A57-9B52-0F6F2F1B6A03 --type 23 --value 8");
  EXPECT_EQ(listed("", 23), json({8, 7, 8}));
}

TEST_F(LimitsCommand, TakesAnyNumberForALimit) {
  struct Case {
    char const* option;
    char const* number;
  };
  for (auto const& [option, number] :
       {Case{"--value -5", "-5"}, Case{"--value=-5", "-5"}, Case{"--value -inf", "\"-Infinity\""},
        Case{"--value inf", "\"Infinity\""}, Case{"--value +0x1.8p+1", "3"}, Case{"--value -nan", "null"},
        Case{"--value 'nan(17)'", "null"}, Case{"--value -.5e-3", "-0.0005"},
        Case{"--value 1e999", "\"Infinity\""}, Case{"--value 4.9e-324", "5e-324"}, Case{"--value -0", "-0"},
        Case{"--value 0.1", "0.1"}}) {
    expectSilence(fmt::format("LC_ALL=de_DE.UTF-8 $P limits set r.json --unit OP10 --type 23 {}", option));
    EXPECT_EQ(listed("--unit OP10", 23), json::array({json::parse(number)})) << option;
  }
  expectSilence("$P limits set r.json --unit OP10 --type 23 --value -0");
  EXPECT_THAT(outputOf("$P limits list r.json --unit OP10 --format json"), HasSubstr("\"limit\": -0,"));
}

TEST_F(LimitsCommand, RefusesAnythingElseForALimit) {
  for (auto const* const value : {"", " 5", "5 ", "5N", "5,5", "0x", "five", "--unit"}) {
    expectFailure(fmt::format("$P limits set r.json --unit OP10 --type 23 --value '{}'", value),
                  fmt::format("--value: expected a number, found \"{}\"", value));
  }
  expectFailure("$P limits set r.json --unit OP10 --type 23 --value",
                "--value: expected a value, found nothing (--help says more)");
  EXPECT_THAT(m_folder.names(), ElementsAre("r.json"));
}

TEST_F(LimitsCommand, RefusesAnUnknownKindAndNamesTheKnownOnes) {
  for (auto const* const type : {"25", "-1", "", "BoltForces", "23 ", "0x17", "18446744073709551616"}) {
    expectFailure(
        fmt::format("$P limits set r.json --unit OP10 --type '{}' --value 5", type),
        fmt::format("--type: expected a number from 0 to 24 or one of NoLimit, JoiningTongNormalForce, "
                    "JoiningTongDistance, JoiningTongGap, LineJoiningToolDistanceToInput, JoinNormalForce, "
                    "JoinTangentialForce, ForceLimit7, ForceLimit8, LineJoiningToolGap, ClampingToolForce, "
                    "JoiningTeachingX, JoiningTeachingY, JoiningTeachingZ, Reserved14, Reserved15, "
                    "Reserved16, SuctionDistance, SuctionZoneForce, PilotForce, RollerForce, SteelForce, "
                    "HemmingBedForce, BoltNormalForce, ClampClosingForce, found \"{}\"",
                    type));
  }
  EXPECT_THAT(m_folder.names(), ElementsAre("r.json"));
}

TEST_F(LimitsCommand, RefusesAKindThatAUnitHasNoLimitOf) {
  // The first unit has a limit of kind 24, the other ones have none.
  auto const content =
      LimitsWriter{.limits = {{1, unitId(s_firstUnit), 7, "N"}, {24, unitId(s_firstUnit), 8, "N"}}}
          .genDocument();
  m_folder.write("r.json.limits", content);
  expectFailure("$P limits set r.json --unit OP20 --type ClampClosingForce --value 5",
                "--type: expected a kind of limit that the unit \"OP20\" has (one of JoiningTongNormalForce, "
                "JoiningTongDistance, JoiningTongGap, LineJoiningToolDistanceToInput, JoinNormalForce, "
                "JoinTangentialForce, ForceLimit7, ForceLimit8, LineJoiningToolGap, PilotForce, "
                "BoltNormalForce, RollerForce, SteelForce, HemmingBedForce, SuctionZoneForce, "
                "SuctionDistance), found ClampClosingForce");
  EXPECT_EQ(m_folder.read("r.json.limits"), content);
  expectSilence(fmt::format("$P limits set r.json --unit {} --type 24 --value 9", s_firstUnit));
  EXPECT_EQ(listed("", 24), json({9}));
}

TEST_F(LimitsCommand, SetsTheLimitThatApplies) {
  auto const id = unitId(s_secondUnit);
  m_folder.write("r.json.limits", LimitsWriter{.limits = {{23, id, 1, "N"}, {23, id, 2, "N"}}}.genDocument());
  expectSilence("$P limits set r.json --unit OP10 --type 23 --value 45");
  EXPECT_EQ(listed("--unit OP10", 23), json({45, 2}));
}

TEST_F(LimitsCommand, RefusesASetWithoutUnitKindOrValue) {
  expectFailure("$P limits set r.json --type 23 --value 5", "--unit or --all is required (--help says more)");
  expectFailure("$P limits set r.json --unit OP10 --value 5", "--type is required (--help says more)");
  expectFailure("$P limits set r.json --unit OP10 --type 23", "--value is required (--help says more)");
  expectFailure(
      "$P limits set r.json --unit OP99 --type 23 --value 5",
      "r.json: expected the id or the name of one of its units (\"OP20\", \"OP10\"), found \"OP99\"");
  expectFailure("$P limits set none.json --unit OP10 --type 23 --value 5",
                "none.json: cannot read: No such file or directory");
  EXPECT_THAT(m_folder.names(), ElementsAre("r.json"));
}

// ---- reset and sync

TEST_F(LimitsCommand, PutsTheLimitsOfAUnitBack) {
  expectSilence("$P limits set r.json --unit OP10 --unit OP20 --type 23 --value 7");
  expectSilence("$P limits reset r.json --unit OP20");
  EXPECT_EQ(listed("", 23), json({7, 30, 30}));
}

TEST_F(LimitsCommand, PutsTheLimitsOfAllUnitsBack) {
  auto const id = unitId(s_secondUnit);
  m_folder.write(
      "r.json.limits",
      LimitsWriter{.limits = {{23, id, 1, "kN"}, {24, id, 2, "N"}, {77, id, 3, ""}}}.genDocument());
  EXPECT_EQ(listed("--unit OP10", 77), json({3}));
  EXPECT_EQ(limitsOf("r.json --unit OP10").back().at("typeName"), "");
  expectSilence("$P limits reset r.json");
  EXPECT_EQ(listed("", 77), json::array());
  EXPECT_EQ(listed("", 24), json::array());
  EXPECT_EQ(listed("", 23), json({30, 30, 30}));
  EXPECT_EQ(limitsOf("r.json").size(), 48U);
  EXPECT_THAT(outputOf("$P limits list r.json"), Not(HasSubstr("*")));
  expectFailure(
      "$P limits reset r.json --unit OP99",
      "r.json: expected the id or the name of one of its units (\"OP20\", \"OP10\"), found \"OP99\"");
}

TEST_F(LimitsCommand, BringsTheDocumentInStepWithTheUnits) {
  expectSilence("$P limits set r.json --unit OP10 --type 23 --value 7");
  m_folder.write("r.json", R"({"format": "simulation-results", "version": 1, "units": [
    {"id": "7d0e0d5c-70f2-4b2f-9a0b-6d7b5f0f9c11", "name": "OP5"},
    {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP15"}]})");
  EXPECT_EQ(countLimitsIn("r.json.limits"), 48U);
  EXPECT_EQ(listed("", 23), json({7, 30}));
  EXPECT_EQ(countLimitsIn("r.json.limits"), 48U) << "listing writes nothing";
  expectSilence("$P limits sync r.json");
  EXPECT_EQ(countLimitsIn("r.json.limits"), 32U);
  EXPECT_EQ(listed("", 23), json({7, 30}));
}

// ---- where the document is

TEST_F(LimitsCommand, ComparesWithTheLimitsOfTheDocument) {
  EXPECT_EQ(run("$P check r.json").out,
            "OP20, Bolts, Forces, Bolt 1, Max Normal Force: -40.5 N, limit 30 N, step 1\n"
            "values beyond their limits: 1, values with NaN: 0, invalid elements: 0, values compared: 1, "
            "without data: 0\n");
  expectSilence("$P limits set r.json --unit OP20 --type 23 --value 40.5");
  EXPECT_EQ(outputOf("$P check r.json"),
            "values beyond their limits: 0, values with NaN: 0, invalid elements: 0, values compared: 1, "
            "without data: 0\n");
  EXPECT_THAT(outputOf("$P show r.json --format csv"), HasSubstr(",-40.5,N,40.5,false,1,,2,0\r\n"));
}

TEST_F(LimitsCommand, TakesAnotherDocumentThatIsNamed) {
  expectSilence("$P limits set r.json --limits my.limits --unit OP20 --type 23 --value 99");
  EXPECT_THAT(m_folder.names(), ElementsAre("my.limits", "my.limits.lock", "r.json"));
  EXPECT_EQ(run("$P check r.json").exitCode, 1);
  EXPECT_EQ(run("$P check r.json --limits my.limits").exitCode, 0);
  EXPECT_THAT(outputOf("$P show r.json --limits my.limits --format csv"),
              HasSubstr(",N,99,false,1,,2,0\r\n"));
  EXPECT_EQ(listed("--limits my.limits --unit OP10", 23), json({30}));
  expectSilence("$P limits reset r.json --limits my.limits");
  EXPECT_EQ(run("$P check r.json --limits my.limits").exitCode, 1);
}

TEST_F(LimitsCommand, FindsTheDocumentAlsoWithoutStandardInput) {
  expectSilence("$P limits set r.json --unit OP20 --type 23 --value 40.5 <&-");
  EXPECT_EQ(run("$P check r.json <&-").exitCode, 0);
  expectSilence("$P show r.json --output /dev/null <&-");
}

TEST_F(LimitsCommand, TakesALimitsDocumentForTheSample) {
  m_folder.write("sample.json",
                 outputOf("cat '" KESTREL_SOURCE_DIR "/examples/door_line/door_line.results.json'"));
  expectSilence("$P limits set sample.json --unit 'OP30 Joining' --type 23 --value 2000 --limits my.limits");
  EXPECT_THAT(outputOf("$P demo --family Bolts --limits my.limits"), Not(HasSubstr("!")));
  EXPECT_THAT(outputOf("$P demo --family Bolts"), HasSubstr("!"));
}

TEST_F(LimitsCommand, ReadsTheDocumentOfEachCheckedFile) {
  m_folder.write("other.json", s_resultsOfThreeUnits);
  m_folder.write("bad.json", s_resultsOfThreeUnits);
  m_folder.write("bad.json.limits", "not a document");
  expectSilence("$P limits set other.json --unit OP20 --type 23 --value 40.5");
  auto const result = run("$P check bad.json r.json other.json");
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.out,
            "bad.json: could not be checked\n"
            "r.json: OP20, Bolts, Forces, Bolt 1, Max Normal Force: -40.5 N, limit 30 N, step 1\n"
            "values beyond their limits: 1, values with NaN: 0, invalid elements: 0, values compared: 2, "
            "without data: 0\n");
  EXPECT_THAT(result.err, testing::MatchesRegex("result-tables: bad\\.json\\.limits: byte [0-9]+: .+\n"));
  expectFailure("$P check r.json other.json --limits other.json.limits",
                "--limits: expected one results file, as each has its own limits, found 2");
}

TEST_F(LimitsCommand, LeavesADamagedDocumentUntouched) {
  expectSilence("$P limits sync r.json");
  auto const whole = m_folder.read("r.json.limits");
  auto const damaged = whole.substr(0, whole.size() - 1);
  m_folder.write("r.json.limits", damaged);
  for (auto const* const command :
       {"show r.json", "check r.json --family Clamps", "limits list r.json", "limits reset r.json",
        "limits sync r.json", "limits set r.json --unit OP10 --type 23 --value 5",
        "demo --limits r.json.limits"}) {
    auto const result = run(std::string("$P ") + command);
    EXPECT_EQ(result.exitCode, 2) << command;
    EXPECT_THAT(result.err, testing::MatchesRegex("result-tables: r\\.json\\.limits: byte [0-9]+: .+\n"))
        << command;
    EXPECT_EQ(m_folder.read("r.json.limits"), damaged) << command;
  }
  EXPECT_THAT(m_folder.names(), ElementsAre("r.json", "r.json.limits", "r.json.limits.lock"));
}

TEST_F(LimitsCommand, ReadsWithoutLockAndWritesNothing) {
  expectSilence("$P limits sync r.json; rm r.json.limits.lock");
  auto const content = m_folder.read("r.json.limits");
  for (auto const* const command :
       {"show r.json", "check r.json --unit OP10 || test $? = 3", "limits list r.json",
        "limits dump r.json.limits", "demo --limits r.json.limits"}) {
    (void)outputOf(std::string("$P ") + command);
    EXPECT_THAT(m_folder.names(), ElementsAre("r.json", "r.json.limits")) << command;
    EXPECT_EQ(m_folder.read("r.json.limits"), content) << command;
  }
  FileLock const lock(m_folder.path() / "r.json.limits");
  EXPECT_NE(outputOf("$P limits list r.json"), "") << "while somebody writes";
}

TEST_F(LimitsCommand, NamesADocumentThatCannotBeUsed) {
  fs::create_directory(m_folder.path() / "r.json.limits");
  expectFailure("$P show r.json", "r.json.limits: cannot read: Is a directory");
  expectFailure("$P limits list r.json", "r.json.limits: cannot read: Is a directory");
  expectFailure("$P limits sync r.json", "r.json.limits: cannot lock: Is a directory");
  expectFailure("$P limits sync r.json --limits none/l",
                "none/l.lock: cannot lock: No such file or directory");
  expectFailure("$P limits sync r.json --limits /dev/full",
                "/dev/full: cannot lock: expected a regular file, found a pipe or a device");
  EXPECT_THAT(m_folder.names(), ElementsAre("r.json", "r.json.limits"));
}

TEST_F(LimitsCommand, LeavesTheDocumentWholeWhenAFileMayNotGrow) {
  expectSilence("$P limits set r.json --unit OP10 --type 23 --value 5");
  auto const content = m_folder.read("r.json.limits");
  expectFailure("ulimit -f 1; $P limits set r.json --unit OP10 --type 23 --value 6",
                "r.json.limits: cannot write: File too large");
  EXPECT_EQ(m_folder.read("r.json.limits"), content);
  EXPECT_THAT(m_folder.names(), ElementsAre("r.json", "r.json.limits", "r.json.limits.lock"));
}

// ---- dump

/// Two units; the limits are of a class version before unit texts.
constexpr char const* s_document = KESTREL_SOURCE_DIR "/tests/data/limits_documents/limit-500001.limits";

constexpr char const* s_firstRecords = R"(      24  TablePropertiesData 500002  @41 25
      29    Object 500002  @30 ""  @31 0  @32 4294967295  @37 3  @38 0  @39 1  @40 2
      46    -  @47 3
      52      TablePropertyLimit 500001  @62 1  @69 480.0
      57        Object 500002  @58 "TablePropertyLimit"  @59 29  @60 0  @61 0
      67        SimulationUnitId 500002  @68 bytes:0b6f6d3e6c1e4a579b520f6f2f1b6a01
      81      TablePropertyLimit 500001  @91 2  @98 1.25
      86        Object 500002  @87 "TablePropertyLimit"  @88 29  @89 1  @90 0
      96        SimulationUnitId 500002  @97 bytes:0b6f6d3e6c1e4a579b520f6f2f1b6a01
)";

constexpr char const* s_lastRecords = R"(     110      TablePropertyLimit 500001  @120 24  @127 -3.5
     115        Object 500002  @116 "TablePropertyLimit"  @117 29  @118 2  @119 0
     125        SimulationUnitId 500002  @126 bytes:7d0e0d5c70f24b2f9a0b6d7b5f0f9c11
)";

TEST_F(LimitsCommand, DumpsTheRecordsOfADocument) {
  EXPECT_EQ(outputOf(fmt::format("$P limits dump '{}'", s_document)),
            std::string(s_firstRecords) + s_lastRecords);
  expectFailure("$P limits dump none", "none: cannot read: No such file or directory");
  expectFailure("$P limits dump .", ".: cannot read: Is a directory");
}

TEST_F(LimitsCommand, DumpsADamagedDocumentAsFarAsItGoes) {
  auto document = outputOf(fmt::format("cat '{}'", s_document));
  constexpr std::size_t classOfTheLastLimit = 110;
  document.at(classOfTheLastLimit) = 99;
  m_folder.write("damaged", genResealedDocument(document));
  auto const result = run("$P limits dump damaged");
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.out, s_firstRecords + std::string("     110      -\n"));
  EXPECT_EQ(result.err, "result-tables: damaged: byte 111: expected one of 4 classes, found number 99\n");
}

TEST_F(LimitsCommand, DumpsNothingOfWhatIsNoDocument) {
  expectFailure("$P limits dump r.json", "r.json: byte 0: expected the mark of an object archive");
}

// ---- crashes and other writers

/// A run of `limits set` that is not waited for.
class Setting {
 public:
  Setting(fs::path const& folder, std::string const& value) {
    auto const results = (folder / "r.json").string();
    std::vector<std::string> arguments = {KESTREL_PROGRAM, "limits", "set", results,   "--unit",
                                          "OP10",          "--type", "23",  "--value", value};
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (auto& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    EXPECT_EQ(::posix_spawn(&m_process, KESTREL_PROGRAM, nullptr, nullptr, pointers.data(), environ), 0);
  }
  Setting(Setting const&) = delete;
  Setting& operator=(Setting const&) = delete;
  ~Setting() {
    int status = 0;
    ::waitpid(m_process, &status, 0);
  }
  void kill() const { ::kill(m_process, SIGKILL); }

 private:
  pid_t m_process = 0;
};

/// Seconds that a whole run takes on the document.
double timeOfSetting(TemporaryFolder const& folder, std::string const& document) {
  folder.write("r.json.limits", document);
  auto const start = std::chrono::steady_clock::now();
  { Setting const whole(folder.path(), "2"); }
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST_F(LimitsCommand, LeavesTheOldOrTheNewDocumentWheneverItIsKilled) {
  expectSilence("$P limits set r.json --unit OP10 --type 23 --value 1");
  auto const oldContent = m_folder.read("r.json.limits");
  std::vector<double> times;
  times.reserve(9);
  for (int i = 0; i < 9; ++i) times.push_back(timeOfSetting(m_folder, oldContent));
  std::nth_element(times.begin(), times.begin() + 4, times.end());
  auto const newContent = m_folder.read("r.json.limits");
  ASSERT_NE(newContent, oldContent);

  std::mt19937 random(20'261'121);
  std::uniform_real_distribution<double> delay(0.0, times[4]);
  int replaced = 0;
  for (int i = 0; i < 200; ++i) {
    m_folder.write("r.json.limits", oldContent);
    {
      Setting const setting(m_folder.path(), "2");
      std::this_thread::sleep_for(std::chrono::duration<double>(delay(random)));
      setting.kill();
    }
    auto const content = m_folder.read("r.json.limits");
    EXPECT_TRUE(content == oldContent || content == newContent) << i;
    if (content == newContent) ++replaced;
    int const lockFile = ::open((m_folder.path() / "r.json.limits.lock").c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(::flock(lockFile, LOCK_EX | LOCK_NB), 0) << i;
    ::close(lockFile);
  }
  RecordProperty("replaced", replaced);
  expectSilence("$P limits set r.json --unit OP10 --type 23 --value 3");
}

TEST_F(LimitsCommand, LosesNoValueToOtherWriters) {
  constexpr int writers = 8;
  constexpr int valuesOfAWriter = 50;
  // 25 units with 16 limits each: one for each value.
  std::string units;
  for (int unit = 0; unit < 25; ++unit) {
    units += fmt::format(R"({}{{"id": "00000000-0000-0000-0000-0000000000{:02}", "name": "U{}"}})",
                         unit > 0 ? "," : "", unit, unit);
  }
  m_folder.write("r.json", R"({"format": "simulation-results", "version": 1, "units": [)" + units + "]}");
  constexpr int kinds[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 17, 18, 19, 20, 21, 22, 23};
  std::string script;
  for (int writer = 0; writer < writers; ++writer) {
    script += "(\n";
    for (int i = 0; i < valuesOfAWriter; ++i) {
      int const value = writer * valuesOfAWriter + i;
      script +=
          fmt::format("$P limits set r.json --unit U{} --type {} --value {}.5 || echo failed >>failures\n",
                      value / 16, kinds[value % 16], value);
    }
    script += ") &\n";
  }
  expectSilence(script + "wait");
  EXPECT_THAT(m_folder.names(), ElementsAre("r.json", "r.json.limits", "r.json.limits.lock"));
  auto const file = readResultsFile(m_folder.path() / "r.json");
  auto const limits = readLimits(m_folder.path() / "r.json.limits", file).collection;
  for (int value = 0; value < writers * valuesOfAWriter; ++value) {
    auto const& unit = *file.units[static_cast<std::size_t>(value / 16)].unit;
    EXPECT_EQ(limits->getLimit(unit.getID(), TablePropertyLimitType(kinds[value % 16]))->getLimit(),
              value + 0.5);
  }
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/ProgramTesting.h"

// Texts of limits on the command line: written, applied to documents, compared with.

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

/// A clamp, a bolt and a clamping tool.
constexpr char const* s_results = R"({"format": "simulation-results", "version": 1, "units": [
  {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02", "name": "OP20", "tools": [
    {"id": "C1", "kind": "clamp", "series": [{"quantity": "ClampClosingForce", "values": [0, -900.5]}]},
    {"id": "B1", "kind": "bolt", "series": [{"quantity": "ClampNormalForce", "values": [0, -40.5]}]},
    {"id": "T1", "kind": "tool", "series": [{"quantity": "TotalToolForces", "values": [70]}]}],
   "toolGroupings": {"ClampingTools": [{"name": "Left", "tools": ["T1"]}]}},
  {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP10"}]})";

/// No bolt is beyond its limit; the clamp and the tool are.
constexpr char const* s_policy = R"({"format": "limits", "version": 1,
  "all": {"limits": {"BoltNormalForce": 45.5},
          "columns": {"Clamps": {"ClampClosingForce": 900}, "ClampingTools": {"TotalToolForces": 69.5}}},
  "units": [{"name": "OP99", "limits": {"PilotForce": 1}}]})";

class LimitsTextCommand : public ProgramFixture {
 protected:
  LimitsTextCommand() {
    m_folder.write("r.json", s_results);
    m_folder.write("policy.json", s_policy);
  }

  /// The limits of bolts that `limits list` gives, in the order of the list.
  [[nodiscard]] std::vector<double> boltLimits(std::string const& options = "") const {
    std::vector<double> values;
    auto const listed = json::parse(outputOf("$P limits list r.json --format json " + options));
    for (auto const& limit : listed.at("limits")) {
      if (limit.at("typeName") == "BoltNormalForce") values.push_back(limit.at("limit"));
    }
    return values;
  }

  /// A text whose only mistake is an unknown kind, and what is said of it.
  void writeBadText() const {
    m_folder.write("bad.json", R"({"format": "limits", "version": 1, "all": {"limits": {"PilotForc": 1}}})");
  }
};

// ---- compared with

TEST_F(LimitsTextCommand, AreComparedWithByCheck) {
  auto const result = run("$P check r.json --limits policy.json --format json");
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err, "");
  std::vector<std::string> found;
  for (auto const findings = json::parse(result.out).at("findings"); auto const& finding : findings) {
    found.push_back(fmt::format("{} {} {}", finding.at("family").get<std::string>(),
                                finding.at("value").get<double>(), finding.at("limit").get<double>()));
  }
  EXPECT_THAT(found, ElementsAre("Clamps -900.5 900", "ClampingTools 70 69.5"));
  EXPECT_EQ(run("$P check r.json").exitCode, 1) << "the bolt";
  EXPECT_THAT(m_folder.names(), ElementsAre("policy.json", "r.json")) << "checking writes nothing";
}

TEST_F(LimitsTextCommand, AreForEveryFileThatIsChecked) {
  m_folder.write("q.json", s_results);
  auto const result = run("$P check r.json q.json --limits policy.json --format json");
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(json::parse(result.out).at("findings").size(), 4U);
  expectFailure("$P limits sync r.json && $P check r.json q.json --limits r.json.limits",
                "--limits: expected one results file, as each has its own limits, found 2");
  EXPECT_EQ(
      json::parse(run("cat policy.json | $P check r.json q.json --limits /dev/stdin --format json").out),
      json::parse(result.out))
      << "read once";
  writeBadText();
  auto const refused = run("$P check r.json q.json --limits bad.json");
  EXPECT_EQ(refused.exitCode, 2);
  EXPECT_THAT(refused.err,
              testing::MatchesRegex("(result-tables: bad\\.json: /all/limits/PilotForc: [^\n]+\n){2}"))
      << "each file could not be checked";
  EXPECT_EQ(run("$P check r.json q.json --limits none.json").err,
            "result-tables: none.json: cannot read: No such file or directory\n"
            "result-tables: none.json: cannot read: No such file or directory\n");
}

TEST_F(LimitsTextCommand, MarkTheValuesOfColumnsInEveryForm) {
  auto const column = [](json const& table) { return table.at("groups").at(0).at("columns").at(1); };
  auto const show = "$P show r.json --limits policy.json --family Clamps --unit OP20 --format ";
  auto const clamps = json::parse(outputOf(show + std::string("json"))).at("tables").at(0);
  EXPECT_EQ(column(clamps).at("limitType"), 24);
  EXPECT_EQ(column(clamps).at("limit"), json::parse(R"({"value": 900, "unit": "N"})"));
  auto const item = clamps.at("groups").at(0).at("subGroups").at(0).at("items").at(0);
  EXPECT_EQ(item.at("exceeded"), json::parse("[false, true, false, false]"));
  EXPECT_THAT(outputOf(show + std::string("csv")), HasSubstr(",Max Closing Force,-900.5,N,900,true"));
  auto const text = outputOf(show + std::string("text"));
  EXPECT_THAT(text, HasSubstr("≤ 900"));
  EXPECT_THAT(text, HasSubstr("-900.5 !"));
}

TEST_F(LimitsTextCommand, MeanTheSameColumnInEveryLanguage) {
  for (auto const* const language : {"C", "de_DE.UTF-8", "ja_JP.UTF-8"}) {
    auto const result = run(fmt::format(
        "LANG={} $P check r.json --limits policy.json --family ClampingTools --format json", language));
    EXPECT_EQ(result.exitCode, 1) << language;
    EXPECT_EQ(json::parse(result.out).at("findings").at(0).at("limit"), 69.5) << language;
  }
}

TEST_F(LimitsTextCommand, AreTakenByEveryCommandThatOnlyReads) {
  EXPECT_EQ(boltLimits("--limits policy.json"), std::vector({45.5, 45.5}));
  m_folder.write("sample.limits",
                 R"({"format": "limits", "version": 1, "all": {"limits": {"BoltNormalForce": 1e9}}})");
  EXPECT_THAT(outputOf("$P demo --family Bolts --limits sample.limits"), testing::Not(HasSubstr("!")));
  EXPECT_THAT(outputOf("$P show - --limits policy.json <r.json"), HasSubstr("≤ 45.5"));
  EXPECT_THAT(outputOf("cp policy.json r.json.limits; $P show r.json"), HasSubstr("≤ 45.5"));
}

TEST_F(LimitsTextCommand, StartFromTheDefaultsWhateverLiesBesideTheResults) {
  expectSilence("$P limits set r.json --all --type PilotForce --value 7");
  EXPECT_THAT(outputOf("$P limits list r.json --limits policy.json --unit OP10"),
              testing::AllOf(HasSubstr("PilotForce                      500"),
                             HasSubstr("BoltNormalForce                  45.5")));
}

TEST_F(LimitsTextCommand, AreNotChanged) {
  for (auto const* const command :
       {"set r.json --all --type 23 --value 5", "reset r.json", "sync r.json", "import r.json policy.json"}) {
    m_folder.write("t.json", R"({"format": "limits", "version": 1})");
    auto const result = run(fmt::format("$P limits {} --limits t.json", command));
    EXPECT_EQ(result.exitCode, 2) << command;
    EXPECT_EQ(m_folder.read("t.json"), R"({"format": "limits", "version": 1})") << command;
  }
  expectFailure("$P limits sync r.json --limits t.json",
                "t.json: expected a limits document, found a text of limits, which limits import reads");
}

TEST_F(LimitsTextCommand, HoldForTheSampleAsItsPolicySays) {
  std::string const line = KESTREL_SOURCE_DIR "/examples/door_line/";
  auto const result = run(fmt::format(
      "$P check '{0}door_line.results.json' --limits '{0}policy.limits.json' --format json", line));
  EXPECT_EQ(result.exitCode, 1);
  std::vector<std::string> beyond;
  for (auto const findings = json::parse(result.out).at("findings"); auto const& finding : findings) {
    if (finding.at("kind") == "exceeded") beyond.push_back(finding.at("item"));
  }
  EXPECT_THAT(beyond, ElementsAre("Tong A-pillar", "Bolt 3", "LJ 2", "Clamp hinge upper",
                                  "Clamping frame left", "Clamping frame right", "Roller 90°"));
}

// ---- export and import

TEST_F(LimitsTextCommand, AreExportedAndImported) {
  expectSilence("$P limits set r.json --unit OP20 --type BoltNormalForce --value 0x1.8p+1");
  expectSilence("$P limits set r.json --unit OP10 --type PilotForce --value -nan");
  expectSilence("$P limits set r.json --unit OP10 --type SteelForce --value 4.9e-324");
  expectSilence("$P limits export r.json --output t.json");
  auto const units = json::parse(m_folder.read("t.json")).at("units");
  ASSERT_EQ(units.size(), 2U);
  EXPECT_EQ(units.at(0).at("id"), "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01") << "in the order of the document";
  EXPECT_EQ(units.at(0).at("limits").at("PilotForce"), nullptr);
  EXPECT_EQ(units.at(0).at("limits").at("SteelForce"), 5e-324);
  EXPECT_EQ(units.at(1).at("name"), "OP20");
  EXPECT_EQ(units.at(1).at("limits").at("BoltNormalForce"), 3);
  EXPECT_EQ(units.at(1).at("limits").size(), 16U);
  EXPECT_EQ(units.at(1).at("columns"), json::object());

  expectSilence("$P limits import r.json t.json --limits other.limits");
  EXPECT_EQ(outputOf("$P limits list r.json --limits other.limits"), outputOf("$P limits list r.json"));
  EXPECT_EQ(outputOf("$P limits list r.json --limits t.json --unit OP10"),
            outputOf("$P limits list r.json --unit OP10"));
  EXPECT_EQ(outputOf("$P limits export r.json --limits other.limits"), m_folder.read("t.json"));
}

TEST_F(LimitsTextCommand, AreExportedForTheUnitsThatAreNamed) {
  auto const exported = json::parse(outputOf("$P limits export r.json --unit OP20 --output -"));
  EXPECT_EQ(exported.at("format"), "limits");
  EXPECT_EQ(exported.at("version"), 1);
  ASSERT_EQ(exported.at("units").size(), 1U);
  EXPECT_EQ(exported.at("units").at(0).at("name"), "OP20");
  expectFailure(
      "$P limits export r.json --unit OP99",
      "r.json: expected the id or the name of one of its units (\"OP20\", \"OP10\"), found \"OP99\"");
  auto const columns = json::parse(outputOf("$P limits export r.json --limits policy.json --unit OP10"));
  EXPECT_EQ(
      columns.at("units").at(0).at("columns"),
      json::parse(R"({"Clamps": {"ClampClosingForce": 900}, "ClampingTools": {"TotalToolForces": 69.5}})"));
}

TEST_F(LimitsTextCommand, AreImportedFromStandardInput) {
  expectSilence(R"(echo '{"format": "limits", "version": 1, "all": {"limits": {"BoltNormalForce": 7}}}' |
    $P limits import r.json -)");
  EXPECT_EQ(boltLimits(), std::vector({7.0, 7.0}));
}

TEST_F(LimitsTextCommand, ChangeNothingWhenSomethingIsWrong) {
  expectSilence("$P limits set r.json --all --type 23 --value 7");
  auto const content = m_folder.read("r.json.limits");
  expectFailure(
      "$P limits import r.json policy.json",
      "policy.json: /all/columns/Clamps/ClampClosingForce: expected no limit of a column, which documents "
      "cannot hold, found 900");
  writeBadText();
  EXPECT_THAT(run("$P limits import r.json bad.json").err,
              testing::EndsWith("found \"PilotForc\"; did you mean \"PilotForce\"?\n"));
  m_folder.write("t.json", R"({"format": "limits", "version": 1,
    "all": {"limits": {"BoltNormalForce": 8, "ClampClosingForce": 9}}})");
  EXPECT_THAT(run("$P limits import r.json t.json").err,
              HasSubstr("t.json: /all/limits/ClampClosingForce: expected a kind of limit that the unit "));
  expectFailure("$P limits import r.json none.json", "none.json: cannot read: No such file or directory");
  expectFailure("$P limits import r.json r.json",
                "r.json: /format: expected \"limits\", found \"simulation-results\"");
  EXPECT_EQ(m_folder.read("r.json.limits"), content);
  expectFailure("$P limits import - policy.json <r.json",
                "--limits: expected the name of a document, as none stands beside standard input");
}

TEST_F(LimitsTextCommand, LeaveNoDocumentWhenSomethingIsWrong) {
  EXPECT_EQ(run("$P limits import r.json policy.json").exitCode, 2);
  EXPECT_THAT(m_folder.names(), ElementsAre("policy.json", "r.json"));
}

TEST_F(LimitsTextCommand, AreRefusedInTheLanguageOfTheEnvironment) {
  EXPECT_EQ(run("LANG=de_DE.UTF-8 $P limits import r.json policy.json").err,
            "result-tables: policy.json: /all/columns/Clamps/ClampClosingForce: erwartet: keine Grenze einer "
            "Spalte, die Dokumente nicht aufnehmen können; gefunden: 900\n");
  m_folder.write("t.json", R"({"format": "limits", "version": 1, "units": [{}]})");
  EXPECT_EQ(run("LANG=ja_JP.UTF-8 $P show r.json --limits t.json").err,
            "result-tables: t.json: /units/0: 期待: メンバー \"id\" または \"name\"、実際: なし\n");
}

// ---- set --all

TEST_F(LimitsTextCommand, CanBeReplacedByOneLimitForAllUnits) {
  expectSilence("$P limits set r.json --all --type BoltNormalForce --value 9");
  EXPECT_EQ(boltLimits(), std::vector({9.0, 9.0}));
  expectSilence("$P limits set r.json --unit OP20 --type BoltNormalForce --value 10");
  EXPECT_EQ(boltLimits(), std::vector({9.0, 10.0}));
  expectFailure("$P limits set r.json --all --unit OP20 --type 23 --value 5",
                "--all: expected no --unit beside it, found \"OP20\"");
  expectFailure("$P limits set r.json --type 23 --value 5", "--unit or --all is required (--help says more)");
  EXPECT_EQ(boltLimits(), std::vector({9.0, 10.0}));
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <pugixml.hpp>
#include <set>
#include <string>
#include <vector>

#include "support/Shell.h"
#include "support/TemporaryFolder.h"

// The command `check` as a process: what it says must never be green by mistake.

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

/// A results file with one unit and one bolt that has these series.
std::string bolt(std::string const& unit, std::string const& series) {
  return R"({"format": "simulation-results", "version": 1, "units": [{"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01",
    "name": ")" +
         unit + R"(", "tools": [{"id": "Bolt 1", "kind": "bolt", "series": [)" + series + "]}]}]}";
}

class CheckCommand : public testing::Test {
 protected:
  CheckCommand() {
    m_folder.write("good.json", bolt("OP10", R"({"quantity": "ClampNormalForce", "values": [0, 29]})"));
    m_folder.write("exceeded.json",
                   bolt("OP20", R"({"quantity": "ClampNormalForce", "pairs": [[0, 0.5], [-40.5, 0.75]]})"));
    m_folder.write("nan.json", bolt("OP30", R"({"quantity": "ClampNormalForce", "values": [null, 1]})"));
    m_folder.write("empty.json", bolt("OP40", ""));
    m_folder.write("broken.json", "{");
  }

  [[nodiscard]] ShellResult run(std::string const& script) const { return runShell(m_folder.path(), script); }
  [[nodiscard]] json jsonOf(std::string const& files) const {
    return json::parse(run("$P check " + files + " --format json 2>/dev/null").out);
  }

  TemporaryFolder m_folder;
};

TEST_F(CheckCommand, SaysByItsExitCodeWhetherAnythingWasFoundOrComparedAtAll) {
  EXPECT_EQ(run("$P check good.json").exitCode, 0);
  EXPECT_EQ(run("$P check exceeded.json").exitCode, 1);
  EXPECT_EQ(run("$P check nan.json").exitCode, 1);
  EXPECT_EQ(run("$P check empty.json").exitCode, 3);
  EXPECT_EQ(run("$P check broken.json").exitCode, 2);
  EXPECT_EQ(run("$P check empty.json good.json").exitCode, 0) << "something was compared";
  EXPECT_EQ(run("$P check exceeded.json broken.json empty.json").exitCode, 2);
  EXPECT_EQ(run("$P check good.json --family Pilots").exitCode, 3);
}

TEST_F(CheckCommand, CountsWhatItCompared) {
  auto const report = jsonOf("good.json exceeded.json nan.json empty.json");
  EXPECT_EQ(report["compared"], 3);
  EXPECT_EQ(report["withoutData"], 1);
  EXPECT_EQ(report["errors"], json::array());
  EXPECT_THAT(run("$P check good.json exceeded.json nan.json empty.json").out,
              testing::EndsWith("values beyond their limits: 1, values with NaN: 1, invalid elements: 0, "
                                "values compared: 3, without data: 1\n"));
}

TEST_F(CheckCommand, SaysAllThatIsKnownOfAFinding) {
  EXPECT_EQ(jsonOf("exceeded.json")["findings"], json::parse(R"([
    {"file": "exceeded.json", "unit": "OP20", "unitId": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "family": "Bolts",
     "group": "Forces", "subGroup": "", "item": "Bolt 1", "kind": "exceeded", "key": "ClampNormalForce",
     "column": "Max Normal Force", "value": -40.5, "limit": 30, "step": 1, "time": 0.75}])"));
}

TEST_F(CheckCommand, NamesTotalsByTheSameKeyInEveryLanguage) {
  m_folder.write("tool.json", R"({"format": "simulation-results", "version": 1, "units": [
    {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP10", "tools": [{"id": "T1", "kind": "tool",
     "series": [{"quantity": "TotalToolForces", "values": [1e9]}]}],
     "toolGroupings": {"Rollers": [{"name": "", "tools": ["T1"]}]}}]})");
  for (auto const* const language : {"C", "de_DE.UTF-8", "ja_JP.UTF-8"}) {
    auto const environment = "export LANG=" + std::string(language) + "; ";
    EXPECT_EQ(json::parse(run(environment + "$P check tool.json --format json").out)
                  .at("/findings/0/key"_json_pointer),
              "TotalToolForces")
        << language;
    EXPECT_EQ(json::parse(run(environment + "$P show tool.json --family Rollers --format json").out)
                  .at("/tables/0/groups/0/columns/0/key"_json_pointer),
              "TotalToolForces")
        << language;
  }
}

TEST_F(CheckCommand, ReportsWhatCouldNotBeReadInEveryForm) {
  auto const script = "$P check broken.json good.json missing.json --format ";
  auto const text = run(std::string(script) + "text");
  EXPECT_EQ(text.exitCode, 2);
  EXPECT_THAT(text.out,
              testing::StartsWith("broken.json: could not be checked\nmissing.json: could not be checked\n"));
  EXPECT_EQ(
      text.err,
      "result-tables: broken.json: line 1, column 2: expected a member name in quotation marks, found the "
      "end of the file\n"
      "result-tables: missing.json: cannot read: No such file or directory\n");
  auto const errors = json::parse(run(std::string(script) + "json").out)["errors"];
  ASSERT_EQ(errors.size(), 2U);
  EXPECT_EQ(errors[1], json::parse(R"({"file": "missing.json",
                                       "message": "missing.json: cannot read: No such file or directory"})"));
  auto const junit = run(std::string(script) + "junit").out;
  EXPECT_THAT(junit, HasSubstr("<error message=\"missing.json: cannot read: No such file or directory\" />"));
}

TEST_F(CheckCommand, IsTheSameToTheByteForEveryNumberOfJobs) {
  std::string files;
  for (int i = 0; i < 60; ++i) {
    auto const name = "r" + std::to_string(i) + ".json";
    m_folder.write(
        name, i % 7 == 3 ? "{"
                         : bolt("OP" + std::to_string(i), R"({"quantity": "ClampNormalForce", "values": [)" +
                                                              std::to_string(i) + "]}"));
    files += ' ' + name;
  }
  for (auto const* const format : {"text", "json", "junit"}) {
    auto const check = [&](std::string const& jobs) {
      return run(fmt::format("$P check {} --format {} {} 2>&1", jobs, format, files));
    };
    auto const one = check("--jobs 1");
    EXPECT_EQ(one.exitCode, 2);
    for (auto const* const jobs : {"--jobs 2", "--jobs 8", "--jobs 100", ""})
      EXPECT_EQ(check(jobs).out, one.out);
  }
}

TEST_F(CheckCommand, ReadsTheLimitsOfSeveralFilesSideBySide) {
  std::string files;
  for (int i = 0; i < 20; ++i) {
    auto const name = fmt::format("r{}.json", i);
    m_folder.write(name, bolt("OP10", R"({"quantity": "ClampNormalForce", "values": [100]})"));
    EXPECT_EQ(
        run(fmt::format("$P limits set {} --all --type BoltNormalForce --value {}", name, 90 + i)).exitCode,
        0);
    files += ' ' + name;
  }
  std::vector<std::string> exceeded;
  auto const report = jsonOf(files + " --jobs 4");
  for (auto const& finding : report["findings"]) exceeded.push_back(finding["file"]);
  EXPECT_THAT(exceeded, ElementsAre("r0.json", "r1.json", "r2.json", "r3.json", "r4.json", "r5.json",
                                    "r6.json", "r7.json", "r8.json", "r9.json"));
  m_folder.write("policy.json",
                 R"({"format": "limits", "version": 1, "all": {"limits": {"BoltNormalForce": 100}}})");
  EXPECT_EQ(run("$P check --jobs 4 --limits policy.json" + files).exitCode, 0);
}

TEST_F(CheckCommand, RefusesJobsAndDigitsThatAreNoCounts) {
  EXPECT_EQ(run("$P check good.json --jobs 0").err,
            "result-tables: --jobs: expected a whole number from 1 to 1024, found \"0\"\n");
  EXPECT_EQ(run("$P check good.json --digits 18").err,
            "result-tables: --digits: expected a whole number from 1 to 17, found \"18\"\n");
  EXPECT_EQ(run("$P check good.json --digits 1x").exitCode, 2);
}

TEST_F(CheckCommand, WritesItsReportToAFile) {
  auto const result = run("$P check exceeded.json --format json --output report.json");
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(json::parse(m_folder.read("report.json"))["findings"].size(), 1U);
}

TEST_F(CheckCommand, IsColouredWhereThatIsAskedFor) {
  EXPECT_THAT(run("$P check exceeded.json --colour always").out, HasSubstr("\x1b[31mOP20"));
  EXPECT_EQ(run("$P check exceeded.json --colour never").out, run("$P check exceeded.json").out);
  EXPECT_EQ(run("$P check exceeded.json --colour blue").err,
            "result-tables: --colour: expected one of auto, always, never, found \"blue\"\n");
}

TEST_F(CheckCommand, SpeaksTheLanguageOfTheEnvironment) {
  EXPECT_EQ(run("LANG=de_DE.UTF-8 $P check exceeded.json nan.json broken.json 2>/dev/null").out,
            "exceeded.json: OP20, Bolts, Kräfte, Bolt 1, Max. Normalkraft: -40.5 N, Grenze 30 N, Schritt 1, "
            "Zeit 0.75\n"
            "nan.json: OP30, Bolts, Kräfte, Bolt 1, Max. Normalkraft: 1 N, Grenze 30 N, Schritt 1, 1 von 2 "
            "Werten sind "
            "keine Zahlen\n"
            "broken.json: konnte nicht geprüft werden\n"
            "Werte über ihrer Grenze: 1, Werte mit NaN: 1, ungültige Elemente: 0, verglichene Werte: 2, "
            "ohne Daten: "
            "0\n");
  EXPECT_THAT(
      run("LANG=ja_JP.UTF-8 $P check empty.json").out,
      HasSubstr("限界値を超えた値: 0, NaN を含む値: 0, 無効な要素: 0, 比較した値: 0, データなし: 1\n"));
}

// ---- JUnit, as build servers read it

/// What the schema allows for an element: attributes (those that must be there end in "!") and children.
struct ElementRule {
  std::set<std::string> attributes;
  std::set<std::string> children;
};

std::map<std::string, ElementRule> const s_junit = {
    {"testsuites", {{"name", "time", "tests", "failures", "disabled", "errors"}, {"testsuite"}}},
    {"testsuite",
     {{"name!", "tests!", "failures", "errors", "time", "disabled", "skipped", "timestamp", "hostname", "id",
       "package", "group", "file", "log", "url", "version"},
      {"properties", "testcase", "system-out", "system-err", "testsuite"}}},
    {"testcase",
     {{"name!", "assertions", "time", "classname", "status", "group", "line", "file"},
      {"skipped", "error", "failure", "rerunFailure", "rerunError", "flakyFailure", "flakyError",
       "system-out", "system-err"}}},
    {"failure", {{"message", "type"}, {}}},
    {"error", {{"message", "type"}, {}}},
    {"skipped", {{"message", "type"}, {}}},
};

void appendFaults(std::vector<std::string>& faults, pugi::xml_node const& node) {
  auto const rule = s_junit.find(node.name());
  if (rule == s_junit.end()) return faults.push_back("unknown element " + std::string(node.name()));
  for (auto const& attribute : node.attributes()) {
    std::string const name = attribute.name();
    if (!rule->second.attributes.contains(name) && !rule->second.attributes.contains(name + '!'))
      faults.push_back(rule->first + " has " + name);
  }
  for (auto const& name : rule->second.attributes) {
    if (name.ends_with('!') && !node.attribute(name.substr(0, name.size() - 1).c_str()))
      faults.push_back(rule->first + " lacks " + name);
  }
  for (auto const& child : node.children()) {
    if (child.type() != pugi::node_element) continue;
    if (!rule->second.children.contains(child.name()))
      faults.push_back(rule->first + " holds " + child.name());
    else
      appendFaults(faults, child);
  }
}

/// What the sums of the suites say and what they hold, where that differs.
void appendWrongSums(std::vector<std::string>& faults, pugi::xml_node const& suite) {
  std::map<std::string, unsigned> counts{{"tests", 0}, {"failures", 0}, {"errors", 0}, {"skipped", 0}};
  std::set<std::string> names;
  for (auto const& testCase : suite.children("testcase")) {
    ++counts["tests"];
    counts["failures"] += testCase.child("failure") ? 1U : 0U;
    counts["errors"] += testCase.child("error") ? 1U : 0U;
    counts["skipped"] += testCase.child("skipped") ? 1U : 0U;
    if (!names
             .insert(std::string(testCase.attribute("classname").value()) + '\n' +
                     testCase.attribute("name").value())
             .second)
      faults.push_back(std::string("twice: ") + testCase.attribute("name").value());
  }
  for (auto const& [name, count] : counts) {
    if (suite.attribute(name.c_str()).as_uint() != count) faults.push_back("sum of " + name);
  }
}

std::vector<std::string> faultsOf(std::string const& junit) {
  pugi::xml_document document;
  std::vector<std::string> faults;
  auto const parsed = document.load_string(junit.c_str());
  if (!parsed) return {parsed.description()};
  if (std::string(document.document_element().name()) != "testsuites") faults.emplace_back("another root");
  appendFaults(faults, document.document_element());
  for (auto const& suite : document.document_element().children("testsuite")) appendWrongSums(faults, suite);
  return faults;
}

TEST(JunitRules, NoticeWhatTheSchemaDoesNotAllow) {
  EXPECT_THAT(
      faultsOf(
          R"(<testsuites><testsuite name="a" tests="1"><testcase classname="b"/></testsuite></testsuites>)"),
      ElementsAre("testcase lacks name!"));
  EXPECT_THAT(
      faultsOf(R"(<testsuites><testsuite name="a" tests="2" failures="1" colour="red"/></testsuites>)"),
      ElementsAre("testsuite has colour", "sum of failures", "sum of tests"));
  EXPECT_THAT(faultsOf("<testsuites><testcase name=\"a\"/></testsuites>"),
              ElementsAre("testsuites holds testcase"));
  EXPECT_EQ(faultsOf("<testsuites>").size(), 1U);
}

TEST_F(CheckCommand, WritesJunitThatTheSchemaAllows) {
  m_folder.write("all.json",
                 bolt("a<&>\\u0001\\\"", R"({"quantity": "ClampNormalForce", "values": [null, 99]})"));
  auto const junit = run("$P check all.json broken.json good.json empty.json '" KESTREL_SOURCE_DIR
                         "/examples/door_line/door_line.results.json' '" KESTREL_SOURCE_DIR
                         "/examples/clamped_panel/panel.results.json' --format junit 2>/dev/null")
                         .out;
  EXPECT_THAT(faultsOf(junit), ElementsAre());
  EXPECT_THAT(junit, HasSubstr("<failure "));
  EXPECT_THAT(junit, HasSubstr("<skipped "));
  EXPECT_THAT(junit, HasSubstr("<error "));
}

// ---- several files to show

TEST_F(CheckCommand, IsNotAloneWithSeveralFiles) {
  auto const result = run("$P show good.json broken.json exceeded.json --format json");
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_THAT(result.err, HasSubstr("result-tables: broken.json: line 1, column 2: "));
  std::vector<std::string> files;
  auto const report = json::parse(result.out);
  for (auto const& table : report["tables"]) files.push_back(table["file"]);
  EXPECT_THAT(files, ElementsAre("good.json", "exceeded.json"));
  EXPECT_EQ(run("$P show broken.json").out, "") << "nothing to show";
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "support/ProgramTesting.h"

// The command `study export` as a process, read back by others.

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

std::string bolts(std::string const& unit, std::string const& tools) {
  return R"({"format": "simulation-results", "version": 1, "units": [{"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01",
    "name": ")" +
         unit + R"(", "tools": [)" + tools + "]}]}";
}

std::string bolt(std::string const& name, std::string const& values) {
  return R"({"id": ")" + name +
         R"(", "kind": "bolt", "series": [{"quantity": "ClampNormalForce", "values": )" + values + "}]}";
}

class StudyExportCommand : public ProgramFixture {
 protected:
  StudyExportCommand() {
    m_folder.write("a.json", bolts("OP20", bolt("B1", "[-45, 3]") + "," + bolt("B\\n\\\"2\\\"", "[null]")));
    m_folder.write("b.json", bolts("OP20", bolt("B1", "[15]")));
    EXPECT_EQ(run("$P study add s.db a.json --label speed=1 && $P study add s.db b.json").exitCode, 0);
  }

  /// What a Python program prints that has read the export.
  [[nodiscard]] std::string readBy(std::string const& python, std::string const& options) const {
    m_folder.write("read.py", python);
    return outputOf("$P study export s.db " + options +
                    " --output out.xlsx && /usr/bin/python3 read.py out.xlsx");
  }
};

TEST_F(StudyExportCommand, WritesCsvThatOthersRead) {
  EXPECT_EQ(readBy(R"(import csv, sys
rows = list(csv.reader(open(sys.argv[1], newline='', encoding='utf-8')))
assert len(set(rows[0])) == len(rows[0])
for row in csv.DictReader(open(sys.argv[1], newline='', encoding='utf-8')):
    print(row['label/speed'], row['run'], row['OP20/Bolts/Forces//B1/0/ClampNormalForce'],
          row['OP20/Bolts/Forces//B\n"2"/0/ClampNormalForce'] or 'none')
)",
                   ""),
            "1 a -45 nan\n b 15 none\n");
}

TEST_F(StudyExportCommand, WritesValuesOneByOneAsTheTablesOfTheFilesDo) {
  m_folder.write("compare.py", R"(import csv
long, show = [list(csv.DictReader(open(name, newline='', encoding='utf-8'))) for name in ('long', 'show')]
for row in long:
    assert row.pop('run') == row['file'].removesuffix('.json') and row.pop('occurrence') == '0'
assert long == show
print(len(show))
)");
  EXPECT_EQ(outputOf("for t in clamped_panel/panel door_line/door_line; do cp '" KESTREL_SOURCE_DIR
                     "/examples/'$t.results.json .; done\n"
                     "$P study add t.db panel.results.json door_line.results.json >added\n"
                     "$P study export t.db --long >long\n"
                     "$P show panel.results.json door_line.results.json --format csv >show\n"
                     "/usr/bin/python3 compare.py"),
            "148\n");
}

TEST_F(StudyExportCommand, WritesStatisticsInPlaceOfRuns) {
  EXPECT_THAT(
      outputOf("$P study export s.db --statistics --csv excel-de"),
      HasSubstr("B1;0;ClampNormalForce;Max Normal Force;N;30;2;-45;15;-15;42,42640687119285;0,5;1,5\r\n"));
}

TEST_F(StudyExportCommand, WritesJson) {
  auto const wide = json::parse(outputOf("$P study export s.db --format json"));
  EXPECT_EQ(wide["runs"][1]["values"][0], 15);
  EXPECT_EQ(wide["statistics"][0]["mean"], -15);
  auto const all = json::parse(outputOf("$P study export s.db --long --format json"));
  EXPECT_EQ(all["values"].size(), 15U);
  EXPECT_EQ(all["values"][0]["exceeded"], true);
}

TEST_F(StudyExportCommand, WritesWorkbooksThatOthersRead) {
  std::string const read = R"(import openpyxl, sys
for sheet in openpyxl.load_workbook(sys.argv[1]):
    print(sheet.title, sheet.max_row, sheet.max_column, sheet.cell(2, 2).value)
)";
  EXPECT_EQ(readBy(read, "--format xlsx"),
            "Runs 3 11 a.json\nValues 3 11 -45\nStatistics 11 17 "
            "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01\n");
  EXPECT_EQ(readBy(read, "--format xlsx --long"), "Values 16 20 a.json\n");
}

TEST_F(StudyExportCommand, WritesAReport) {
  EXPECT_THAT(outputOf("$P study export s.db --format html"), StartsWith("<!DOCTYPE html>"));
  EXPECT_THAT(outputOf("$P study export s.db --format html --curves none"),
              testing::Not(HasSubstr("<figure")));
}

TEST_F(StudyExportCommand, PutsOutWhatIsSelected) {
  m_folder.write("c.json", R"({"format": "simulation-results", "version": 1, "units": [
      {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02", "name": "OP30", "tools": [
        {"id": "C1", "kind": "clamp", "series": [{"quantity": "ClampNormalForce", "values": [7]}]}]}]})");
  ASSERT_EQ(run("$P study add s.db c.json").exitCode, 0);
  auto const selected =
      json::parse(outputOf("$P study export s.db --unit OP30 --family Clamps --format json"));
  EXPECT_EQ(selected["columns"][0]["name"], "OP30/Clamps/Forces//C1/0/ClampNormalForce");
  EXPECT_EQ(selected["runs"][0]["values"][0], nullptr);
  EXPECT_EQ(selected["runs"][0]["worstUtilisation"], nullptr) << "of the selected values";
  EXPECT_EQ(selected["runs"][2]["values"][0], 7);
}

TEST_F(StudyExportCommand, RefusesWhatThereIsNot) {
  for (auto const* const form : {"", " --long"}) {
    expectFailure(
        std::string("$P study export s.db --unit OP21 --output out") + form,
        "s.db: expected the id or the name of a unit of the study (\"OP20\"), found \"OP21\"; did you mean "
        "\"OP20\"?");
  }
  expectFailure("$P study export none.db", "none.db: there is no such study");
  expectFailure("$P study export s.db --long --statistics",
                "--statistics: expected to stand without --long, found both");
  expectFailure("$P study export s.db --statistics --format json",
                "--statistics: expected the form csv, found json");
  expectFailure("$P study export s.db --long --format html",
                "--long: expected the form csv, json, xlsx, found html");
  EXPECT_EQ(run("test -e out").exitCode, 1);
}

TEST_F(StudyExportCommand, WritesTheSameFromAServer) {
  m_folder.write("export.sh", R"(set -e
$P study add postgresql:// s.db >added
for form in '' '--long' '--statistics' '--format json' '--format html'; do
  $P study export s.db $form >of-file
  $P study export postgresql:// $form >of-server
  cmp of-file of-server
done
)");
  auto const result = run("export P; " KESTREL_SOURCE_DIR "/tests/support/with-postgresql.sh sh export.sh");
  if (result.exitCode == 77) GTEST_SKIP() << "there is no PostgreSQL";
  EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
}

TEST_F(StudyExportCommand, LeavesAStudyOfNoRunsAsItIs) {
  ASSERT_EQ(run("$P study remove s.db a b").exitCode, 0);
  EXPECT_EQ(outputOf("$P study export s.db"), "run,file,added\r\n");
  EXPECT_THAT(outputOf("$P study export s.db --format html"),
              HasSubstr("Not one value was compared with a limit"));
}

}  // namespace
}  // namespace Kestrel::ResultTables

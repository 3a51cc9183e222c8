#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "result_tables/base/File.h"
#include "support/PrintFixture.h"

// import --list, --make-map and --decimal-comma with the program as a process.

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;

class ImportCommand : public PrintFixture {};

// ---- what an input holds

TEST_F(ImportCommand, ListsTheHistoriesOfAnInput) {
  EXPECT_EQ(outputOf("$P import csv trial.csv --list"),
            "B1.fz  column  entities: 1  values: 2  range: -812.5 to 1.5 N  times: 0 to 1 s\n");
  EXPECT_EQ(outputOf("LANG=de_DE.UTF-8 $P import csv trial.csv --list"),
            "B1.fz  column  Entitäten: 1  Werte: 2  Bereich: -812.5 bis 1.5 N  Zeiten: 0 bis 1 s\n");
  EXPECT_EQ(outputOf("LANG=ja_JP.UTF-8 $P import csv trial.csv --list"),
            "B1.fz  column  エンティティ数: 1  値: 2  範囲: -812.5～1.5 N  時刻: 0～1 s\n");
  auto const histories =
      json::parse(outputOf("$P import calculix - --list --format json <print.dat")).at("histories");
  ASSERT_EQ(histories.size(), 3U);
  EXPECT_EQ(histories[2],
            json::parse(R"({"name": "B1.fz", "kind": "forces", "entity": "B1", "component": "fz",
    "unit": "", "entities": 2, "count": 2, "nans": 0, "min": -43.5, "max": 3, "times": 1, "firstTime": 0.5,
    "lastTime": 0.5, "timeUnit": ""})"));
}

TEST_F(ImportCommand, WritesTheListToAFile) {
  EXPECT_EQ(outputOf("$P import csv trial.csv --list --output list.txt && cat list.txt"),
            "B1.fz  column  entities: 1  values: 2  range: -812.5 to 1.5 N  times: 0 to 1 s\n");
}

TEST_F(ImportCommand, MakesAMapThatImports) {
  for (auto const* input : {"csv trial.csv", "calculix print.dat", "csv comma.csv --decimal-comma"}) {
    SCOPED_TRACE(input);
    EXPECT_EQ(outputOf(fmt::format("$P import {0} --make-map --output made.json && "
                                   "$P import {0} --map made.json --output made.results.json",
                                   input)),
              "");
    auto const table = tablesOf("made.results.json").at(0);
    EXPECT_EQ(table.at("family"), "Bolts");
    auto const value = std::string_view(input) == "calculix print.dat" ? -40.5 : -812.5;
    auto const& item = table.at("groups").at(0).at("subGroups").at(0).at("items").at(0);
    EXPECT_EQ(item.at("name"), "B1");
    EXPECT_EQ(item.at("maxValues").at(0), value);
  }
}

TEST_F(ImportCommand, MakesAMapOfATableWithUnitsAndGaps) {
  m_folder.write("rig.csv",
                 readFile(std::filesystem::path(KESTREL_SOURCE_DIR) / "tests/data/import/rig.csv"));
  EXPECT_EQ(outputOf("$P import csv rig.csv --decimal-comma --make-map --output rig.map.json"), "");
  auto const tables = tablesOf("rig.csv --decimal-comma --map rig.map.json");
  auto const valuesOf = [&tables](std::size_t table, std::size_t group) {
    return tables.at(table).at("groups").at(group).at("subGroups").at(0).at("items").at(0).at("maxValues");
  };
  ASSERT_EQ(tables.size(), 2U);
  EXPECT_EQ(tables[0].at("family"), "Clamps");
  EXPECT_EQ(valuesOf(0, 0), json::parse("[0, -612, 0, 0]"));
  EXPECT_EQ(valuesOf(0, 1), json::parse("[0.025]"));
  EXPECT_EQ(tables[1].at("family"), "SpotWelds");
  EXPECT_EQ(valuesOf(1, 0), json::parse("[215.5, 0]"));
}

TEST_F(ImportCommand, MakesTheSameMapWhereverTheInputIs) {
  EXPECT_EQ(outputOf("mkdir sub && cp trial.csv sub && $P import csv sub/trial.csv --make-map"),
            outputOf("$P import csv trial.csv --make-map"));
  EXPECT_EQ(json::parse(outputOf("$P import csv - --make-map <trial.csv")).at("units").at(0).at("name"),
            "input");
}

TEST_F(ImportCommand, DoesOneThingAtATime) {
  std::string const expected = "expected exactly one of --map, --list, --make-map, found ";
  EXPECT_EQ(messageOf("import csv trial.csv"), expected + "none");
  EXPECT_EQ(messageOf("import csv trial.csv --list --make-map"), expected + "--list, --make-map");
  EXPECT_EQ(messageOf("import csv trial.csv --make-map --list --map map.json"),
            expected + "--map, --list, --make-map");
  EXPECT_EQ(messageOf("import csv trial.csv --make-map --format json"),
            "--format: expected --list beside it, found --make-map");
  EXPECT_EQ(messageOf("import csv trial.csv --map map.json --format text"),
            "--format: expected --list beside it, found --map");
  EXPECT_EQ(messageOf("import csv trial.csv --list --format csv"),
            "--format: expected one of text, json, found \"csv\"");
  EXPECT_EQ(messageOf("import csv trial.csv", "de_DE.UTF-8"),
            "erwartet: genau eines von --map, --list, --make-map; gefunden: nichts");
  EXPECT_EQ(messageOf("import csv trial.csv", "ja_JP.UTF-8"),
            "期待: --map, --list, --make-map のいずれか 1 つ、実際: なし");
}

// ---- decimal commas

TEST_F(ImportCommand, ReadsDecimalCommasWhenTold) {
  EXPECT_EQ(outputOf("$P import csv comma.csv --map map.json --decimal-comma"),
            outputOf("$P import csv trial.csv --map map.json"));
  EXPECT_EQ(messageOf("import csv comma.csv --map map.json"),
            "comma.csv: line 2: expected a number, found \"1,5\" (--decimal-comma reads decimal commas)");
  EXPECT_EQ(
      messageOf("import csv comma.csv --map map.json", "de_DE.UTF-8"),
      "comma.csv: Zeile 2: erwartet: eine Zahl; gefunden: \"1,5\" (--decimal-comma liest Dezimalkommas)");
  EXPECT_EQ(messageOf("import csv comma.csv --map map.json", "ja_JP.UTF-8"),
            "comma.csv: 2 行: 期待: 数値、実際: \"1,5\"（小数点がコンマなら --decimal-comma）");
  EXPECT_EQ(messageOf("import calculix print.dat --list --decimal-comma"),
            "unknown option \"--decimal-comma\" (--help says more)");
}

TEST_F(ImportCommand, RefusesAFormulaOfHistoriesWithDifferentGaps) {
  m_folder.write("gaps.csv", "t,a,b\n0,1,\n1,2,3\n");
  m_folder.write("sum.json", R"({"format": "import-map", "version": 1, "units": [
    {"id": "00000000-0000-0000-0000-000000000001", "name": "U", "tools": [{"id": "C", "kind": "clamp",
     "series": [{"quantity": "Q", "norm": [{"history": "a"}, {"history": "b"}]}]}]}]})");
  EXPECT_EQ(
      messageOf("import csv gaps.csv --map sum.json"),
      "sum.json: /units/0/tools/0/series/0/norm/1: expected the times of the first term (2 times from 0 "
      "to 1), found 1 times from 1 to 1");
  m_folder.write("gaps.csv", "t,a,b\n0,1,\n1,2,\n");
  EXPECT_EQ(
      messageOf("import csv gaps.csv --map sum.json"),
      "sum.json: /units/0/tools/0/series/0/norm/1: expected the times of the first term (2 times from 0 "
      "to 1), found no times");
}

}  // namespace
}  // namespace Kestrel::ResultTables

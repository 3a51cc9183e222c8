#include "result_tables/import/MapDraft.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>

#include "result_tables/base/File.h"
#include "result_tables/import/CalculixHistories.h"
#include "result_tables/import/CsvHistories.h"
#include "result_tables/import/ImportMap.h"
#include "result_tables/import/MapRecords.h"
#include "result_tables/results/ResultsFile.h"
#include "result_tables/results/ResultsWriter.h"
#include "support/ImportTesting.h"

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;
using testing::ElementsAre;

std::filesystem::path const s_source = KESTREL_SOURCE_DIR;

Histories panel() {
  return readCalculixHistories("panel.dat", readFile(s_source / "examples/clamped_panel/panel.dat"));
}

json draftOf(std::string const& input, Histories const& histories) {
  return json::parse(draftImportMap(input, histories));
}

json draftOfCsv(std::string const& text) { return draftOf("a.csv", readCsvHistories("a.csv", text)); }

json toolOf(json const& unit, std::string const& id) {
  for (auto const& tool : unit.at("tools")) {
    if (tool.at("id") == id) return tool;
  }
  ADD_FAILURE() << "no tool " << id;
  return {};
}

std::vector<std::string> quantitiesOf(json const& tool) {
  std::vector<std::string> quantities;
  for (auto const& series : tool.at("series")) quantities.push_back(series.at("quantity"));
  return quantities;
}

/// The names of all histories that a map mentions.
std::multiset<std::string> mentionedIn(json const& part) {
  std::multiset<std::string> names;
  for (auto const& [key, value] : part.items()) {
    if (part.is_object() && key == "history") {
      names.insert(value.get<std::string>());
    } else if (value.is_structured()) {
      names.merge(mentionedIn(value));
    }
  }
  return names;
}

/// Reads the draft for the histories, and what it imports as results.
ResultsFile resultsOf(std::string const& input, Histories const& histories) {
  auto const map = readImportMap("draft", draftImportMap(input, histories), histories);
  return readResults("results", writeResults(genUnitRecords(map)));
}

void expectEveryHistory(Histories const& histories, json const& draft) {
  auto const mentioned = mentionedIn(draft);
  for (auto const& table : histories.tables()) {
    for (std::size_t i = 0; i < table.components.size(); ++i) {
      auto const name = histories.usualName({&table, i});
      EXPECT_GE(mentioned.count(name), 1U) << name;
    }
  }
}

TEST(MapDraft, OfTheClampedPanelFeedsWhatItsOwnMapFeeds) {
  auto const unit = draftOf("panel.dat", panel()).at("units").at(0);
  auto const ownMap = json::parse(readFile(s_source / "examples/clamped_panel/panel.map.json"));
  for (auto const* id : {"C1", "C6"}) {
    auto series = toolOf(unit, id).at("series");
    ASSERT_EQ(series.size(), 6U);
    EXPECT_EQ(series[4].at("quantity"), id + std::string("_REST.fx"));
    EXPECT_EQ(series[5].at("quantity"), id + std::string("_REST.fy"));
    series.erase(5);
    series.erase(4);
    EXPECT_EQ(series, toolOf(ownMap.at("units").at(0), id).at("series")) << id;
  }
  EXPECT_EQ(toolOf(unit, "W01").at("kind"), "spotWeld");
  EXPECT_EQ(toolOf(unit, "W01").at("tangentialForce").at("norm"),
            json::parse(R"([{"history": "W01.fx"}, {"history": "W01.fy"}])"));
}

TEST(MapDraft, MentionsEveryHistoryAndImports) {
  auto const read = [](char const* name) { return readFile(s_source / "tests/data/import" / name); };
  struct {
    char const* input;
    Histories histories;
  } const cases[] = {{"panel.dat", panel()},
                     {"cube.dat", readCalculixHistories("cube.dat", read("cube.dat"))},
                     {"press.csv", readCsvHistories("press.csv", read("press.csv"))},
                     {"bead.csv", readCsvHistories("bead.csv", read("bead.csv"))}};
  for (auto const& c : cases) {
    expectEveryHistory(c.histories, draftOf(c.input, c.histories));
    auto const results = resultsOf(c.input, c.histories);
    ASSERT_EQ(results.units.size(), 1U) << c.input;
  }
  auto const results = resultsOf("panel.dat", cases[0].histories);
  EXPECT_TRUE(results.units[0].unit->hasVisibleSimulationSteps());
  EXPECT_EQ(results.units[0].unit->getSimulationUnitName(), "panel");
}

TEST(MapDraft, DerivesIdentifiersFromTheNamesOfInputAndUnit) {
  auto const ids = [](std::string const& input) {
    auto const draft = draftOf(input, readCsvHistories("a.csv", "t,OP10.W1.fz,OP20.W1.fz\n0,1,2\n"));
    std::vector<std::string> found;
    for (auto const& unit : draft.at("units")) {
      found.push_back(unit.at("name"));
      found.push_back(unit.at("id"));
      found.push_back(unit.at("joins").at(0).at("guid"));
    }
    return found;
  };
  EXPECT_THAT(
      ids("a.csv"),
      ElementsAre("OP10", "161c4701-b187-53cb-b308-1a756e941613", "8dea5e37-7da4-5966-b5d9-e0012d6d71ca",
                  "OP20", "591b70fe-970a-519e-9279-00b421c59b6b", "a559215f-ddca-54f1-ae77-93066286b4c3"));
  EXPECT_THAT(
      ids("b.csv"),
      ElementsAre("OP10", "b4a8b826-bae2-50e3-95e3-ef50a7d80849", "e187a24f-fb16-5883-b181-43f31f6ada73",
                  "OP20", "142e574d-ee9f-572b-87a0-28eaf4758363", "12b23741-5eea-59e3-9494-4c98f7003b6b"));
}

TEST(MapDraft, NamesTheUnitAfterTheInputWhereNoNameSaysMore) {
  EXPECT_EQ(draftOf("trial.7.csv", readCsvHistories("x", "t,a\n0,1\n")).at("units").at(0).at("name"),
            "trial.7");
  EXPECT_EQ(draftOf("-", readCsvHistories("x", "t,a\n0,1\n")).at("units").at(0).at("name"), "input");
}

TEST(MapDraft, GathersThePilotsOfAUnitInOneTool) {
  auto const unit = draftOfCsv("t,P1.fx,P1.fy,P2.force,P2.speed\n0,1,2,3,4\n").at("units").at(0);
  EXPECT_EQ(unit.at("tools"), json::parse(R"([{"id": "Pilots", "kind": "pilot", "series": [
    {"quantity": "PilotForce_P1", "form": "pairs", "norm": [{"history": "P1.fx"}, {"history": "P1.fy"}]},
    {"quantity": "PilotForce_P2", "form": "pairs", "sum": [{"history": "P2.force"}]},
    {"quantity": "P2.speed", "form": "pairs", "sum": [{"history": "P2.speed"}]}]}])"));
}

TEST(MapDraft, CallsThePilotsOtherwiseThanAnyTool) {
  auto const histories = readCsvHistories("a.csv", "t,Pilots.ClampNormalForce,P1.force\n0,1,2\n");
  EXPECT_EQ(toolOf(draftOf("a.csv", histories).at("units").at(0), "Pilots_").at("kind"), "pilot");
  EXPECT_EQ(resultsOf("a.csv", histories).units.size(), 1U);
}

TEST(MapDraft, GroupsTheToolsThatHaveAForce) {
  auto const unit = draftOfCsv("t,punch.force,Roller 1.force,dial.angle\n0,1,2,3\n").at("units").at(0);
  EXPECT_EQ(unit.at("toolGroupings"),
            json::parse(R"({"ClampingTools": [{"name": "Tools", "tools": ["punch"]}],
                                                      "Rollers": [{"name": "Tools", "tools": ["Roller 1"]}]})"));
  EXPECT_THAT(quantitiesOf(toolOf(unit, "dial")), ElementsAre("dial.angle"));
  EXPECT_FALSE(draftOfCsv("t,dial.angle\n0,1\n").at("units").at(0).contains("toolGroupings"));
}

TEST(MapDraft, FeedsAColumnOfTheSameNameAsItIs) {
  auto const unit = draftOfCsv(
                        "t,left.ClampClosingForce,left.fz,W1.SuctionDistance,B1.ClampNormalForce\n"
                        "0,1,2,3,4\n")
                        .at("units")
                        .at(0);
  EXPECT_EQ(toolOf(unit, "left").at("kind"), "clamp");
  EXPECT_THAT(quantitiesOf(toolOf(unit, "left")), ElementsAre("ClampNormalForce", "ClampClosingForce"));
  EXPECT_EQ(toolOf(unit, "W1").at("kind"), "suctionZone") << "no weld has it";
  EXPECT_EQ(toolOf(unit, "B1").at("kind"), "bolt") << "as it is called";
}

TEST(MapDraft, ScalesToNewtonAndMillimetre) {
  auto const unit = draftOfCsv("t,tong.force,tong.gap,tong.way\ns,kN,m,m\n0,1,2,3\n").at("units").at(0);
  EXPECT_EQ(toolOf(unit, "tong").at("series"), json::parse(R"([
    {"quantity": "JoiningTongNormalForce", "form": "pairs", "sum": [{"history": "tong.force", "scale": 1000}]},
    {"quantity": "JoiningTongGap", "form": "pairs", "sum": [{"history": "tong.gap", "scale": 1000}]},
    {"quantity": "tong.way", "form": "pairs", "sum": [{"history": "tong.way"}]}])"))
      << "what feeds no column stays as it is";
}

TEST(MapDraft, JoinsOnlyHistoriesWithTheSameTimes) {
  auto const unit = draftOfCsv("t,W1.fx,W1.fy,W1.fz\n0,1,2,3\n1,1,,3\n").at("units").at(0);
  EXPECT_THAT(quantitiesOf(toolOf(unit, "W1")), ElementsAre("JoinForceN", "W1.fx", "W1.fy"));
  EXPECT_EQ(unit.at("stepTimes"), json::parse("[1]"));
  EXPECT_EQ(unit.at("joins").at(0).at("states"), json::parse("[0]"));
}

TEST(MapDraft, CountsAForceOnceThatIsPrintedTwice) {
  Histories histories("a.dat");
  histories.add({"C1", "forces", {"fz"}, {1, 2}, {0}, {1, 2}});
  histories.add({"C1", "total force", {"fz"}, {}, {0}, {3}});
  histories.add({"C1", "displacements", {"vz"}, {1, 2}, {0}, {1, 2}});
  histories.index();
  auto const unit = draftOf("a.dat", histories).at("units").at(0);
  EXPECT_EQ(toolOf(unit, "C1").at("series"), json::parse(R"([
    {"quantity": "ClampNormalForce", "form": "pairs", "sum": [{"history": "C1.forces fz"}]},
    {"quantity": "ClampNormalDisplacement", "form": "pairs", "sum": [{"history": "C1.vz", "node": "mean"}]},
    {"quantity": "C1.total force fz", "form": "pairs", "sum": [{"history": "C1.total force fz"}]}])"));
}

TEST(MapDraft, HasTheHistoriesWithoutAToolInOneThatIsCalledAsTheUnit) {
  auto const unit = draftOfCsv("t,fx,fy,fz\n0,1,2,3\n").at("units").at(0);
  EXPECT_EQ(toolOf(unit, "a").at("series").at(0),
            json::parse(R"({"quantity": "TotalToolForces", "form": "pairs",
    "norm": [{"history": "fx"}, {"history": "fy"}, {"history": "fz"}]})"));
}

TEST(MapDraft, ImportsHistoriesWithoutAnyValue) {
  auto const histories = readCsvHistories("a.csv", "t,W1.fx,W1.fy,W1.fz\n0,,,1\n");
  EXPECT_EQ(resultsOf("a.csv", histories).units.size(), 1U);
}

TEST(MapDraft, RefusesHistoriesThatNoNameTellsApart) {
  Histories histories("a.dat");
  histories.add({"C1", "forces", {"fz"}, {}, {0}, {1}});
  histories.add({"C1", "forces", {"fz"}, {}, {0}, {1}});
  histories.index();
  EXPECT_EQ(errorOf([&] { (void)draftImportMap("a.dat", histories); }),
            R"(a.dat: expected names that tell the histories apart, found a second "C1.forces fz")");
}

}  // namespace
}  // namespace Kestrel::ResultTables

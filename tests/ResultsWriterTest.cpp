#include "result_tables/import/MapRecords.h"
#include "result_tables/results/ResultsWriter.h"

#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "result_tables/results/ResultsFile.h"

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;

GUIdentifier id(char lastDigit) {
  return *GUIdentifier::fromString(std::string("00000000-0000-0000-0000-00000000000") + lastDigit);
}

/// Four values of "a" at the times 0, 1, 1 and 2.
class ResultsWriter : public testing::Test {
 protected:
  ResultsWriter() {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    m_table =
        &m_histories.add({"", "", {"a", "b"}, {}, {0, 1, 1, 2}, {1, 5, -2.5, notANumber, 3, 7, infinity, 8}});
  }

  [[nodiscard]] ImportFormula formula(std::size_t component) const {
    ImportTerm term;
    term.history = {m_table, component};
    return {false, {term}};
  }

  /// What is written of one unit. It must be what readers of results files take.
  static json written(ImportUnit const& unit) {
    auto const text = writeResults(genUnitRecords({{unit}}));
    EXPECT_EQ(readResults("r.json", text).units.size(), 1U);
    return json::parse(text).at("units").at(0);
  }

  Histories m_histories{"a.csv"};
  HistoryTable const* m_table;
  ImportUnit m_unit{.id = id('1'),
                    .name = "OP20",
                    .visibleSteps = {},
                    .stepTimes = {},
                    .tools = {},
                    .joinsDefinedInUnit = {},
                    .toolGroupings = {},
                    .suctionZones = {},
                    .joiningTongs = {},
                    .joins = {},
                    .lineJoins = {}};
};

TEST_F(ResultsWriter, WritesFormatVersionAndUnits) {
  EXPECT_EQ(json::parse(writeResults({})),
            json::parse(R"({"format": "simulation-results", "version": 1, "units": []})"));
  EXPECT_EQ(written(m_unit),
            json::parse(R"({"id": "00000000-0000-0000-0000-000000000001", "name": "OP20", "tools": []})"));
}

TEST_F(ResultsWriter, WritesSeriesAsValuesOrWithTheirTimes) {
  m_unit.tools.push_back({"C", "clamp", {{"Q", false, formula(0)}, {"P", true, formula(1)}}, {}});
  m_unit.tools.push_back({"W", "spotWeld", {}, ImportSeries{"", false, formula(0)}});
  EXPECT_EQ(written(m_unit).at("tools"), json::parse(R"([
    {"id": "C", "kind": "clamp", "series": [
      {"quantity": "Q", "values": [1, -2.5, 3, "Infinity"]},
      {"quantity": "P", "pairs": [[5, 0], [null, 1], [7, 1], [8, 2]]}]},
    {"id": "W", "kind": "spotWeld", "series": [], "tangentialForce": {"values": [1, -2.5, 3, "Infinity"]}}])"));
}

TEST_F(ResultsWriter, WritesBoundsJoinsAndGroupings) {
  m_unit.visibleSteps = {1, 0};
  m_unit.stepTimes = {std::nullopt, std::nullopt};
  m_unit.joinsDefinedInUnit = {id('2')};
  m_unit.toolGroupings = {{"Rollers", {{"Left", {"T1", "T2"}}, {"Right", {}}}}};
  auto const unit = written(m_unit);
  EXPECT_EQ(unit.at("visibleSteps"), json::parse(R"({"first": 1, "last": 0})"));
  EXPECT_EQ(unit.at("joinsDefinedInUnit"), json::parse(R"(["00000000-0000-0000-0000-000000000002"])"));
  EXPECT_EQ(unit.at("toolGroupings"), json::parse(R"({"Rollers": [{"name": "Left", "tools": ["T1", "T2"]},
                                                                 {"name": "Right", "tools": []}]})"));
  EXPECT_EQ(unit.at("steps"), json::parse("[null, null]"));
}

TEST_F(ResultsWriter, WritesOfEachStepTheRecordsThatItHolds) {
  m_unit.stepTimes = {ImportTime{0.0}, std::nullopt, ImportTime{2.0}};
  ImportRecord zone;
  zone.guid = id('3');
  zone.name = "Z";
  zone.states = {0, std::nullopt, 1};
  ImportRecord tong;
  tong.id = "T";
  tong.name = "Tong";
  tong.states = {std::nullopt, std::nullopt, 4294967295};
  m_unit.suctionZones = {zone};
  m_unit.joiningTongs = {tong};
  EXPECT_EQ(written(m_unit).at("steps"), json::parse(R"([
    {"suctionZones": [{"guid": "00000000-0000-0000-0000-000000000003", "name": "Z", "active": false}]},
    null,
    {"suctionZones": [{"guid": "00000000-0000-0000-0000-000000000003", "name": "Z", "active": true}],
     "joiningTongs": [{"id": "T", "name": "Tong", "state": 4294967295}]}])"));
}

TEST_F(ResultsWriter, WritesTheRangeOfASkinAtTheTimeOfItsStep) {
  m_unit.stepTimes = {ImportTime{0.0}, ImportTime{1.0}, ImportTime{2.0}};
  ImportRecord line;
  line.guid = id('4');
  line.simulationUnitJoin = id('5');
  line.id = "L";
  line.name = "Line";
  line.states = {2, 2, 2};
  line.skins = {{"LineJoinGap", {formula(1), formula(0)}}};
  m_unit.lineJoins = {line};
  auto const unit = written(m_unit);
  std::vector<json> ranges;
  for (auto const& step : unit.at("steps"))
    ranges.push_back(step.at("lineJoins").at(0).at("skins").at("LineJoinGap"));
  EXPECT_EQ(ranges,
            (std::vector<json>{json::parse(R"({"min": 1, "max": 5})"), json::parse(R"({"min": 3, "max": 7})"),
                               json::parse(R"({"min": null, "max": null})")}))
      << "the last value of a time; no range where a value is not finite";
  m_unit.lineJoins.front().skins.clear();
  auto const bare = written(m_unit);
  for (auto const& step : bare.at("steps")) EXPECT_FALSE(step.at("lineJoins").at(0).contains("skins"));
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include "result_tables/tables/Series.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "result_tables/base/Error.h"
#include "result_tables/limits/Limits.h"

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using DataType = MaxValueGroupContainer::DataType;

constexpr char const* s_results = R"({"format": "simulation-results", "version": 1, "units": [
  {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02", "name": "OP20", "visibleSteps": {"first": 0, "last": 2},
   "tools": [
    {"id": "B1", "kind": "bolt", "series": [
      {"quantity": "ClampNormalForce", "values": [0, 3.5, -40.25, 40.25]},
      {"quantity": "ClampClosingForce", "pairs": [[0, 0.1], [-12, 0.2], [null, 0.3], ["Infinity", null]]}]},
    {"id": "B2", "kind": "bolt"},
    {"id": "Tong 1", "kind": "joiningTong",
     "series": [{"quantity": "JoiningTongNormalForce", "values": [7, 600]}]},
    {"id": "Tool", "kind": "tool", "series": [{"quantity": "TotalToolForces", "values": [-5, 4]}]}],
   "toolGroupings": {"HemmingBed": [{"name": "Left", "tools": ["Tool"]}]},
   "steps": [
    null,
    {"joiningTongs": [{"id": "Tong 1", "name": "Tong left", "state": 5}],
     "lineJoins": [{"guid": "11111111-70f2-4b2f-9a0b-6d7b5f0f9c11", "id": "L", "name": "Seam", "state": 2,
       "simulationUnitJoin": "7d0e0d5c-70f2-4b2f-9a0b-6d7b5f0f9c11",
       "skins": {"LineJoinSumForceN": {"min": -1, "max": 2}, "LineJoinSumForceT": null}}]},
    {"lineJoins": [{"guid": "11111111-70f2-4b2f-9a0b-6d7b5f0f9c11", "id": "L", "name": "Seam", "state": 2,
       "simulationUnitJoin": "7d0e0d5c-70f2-4b2f-9a0b-6d7b5f0f9c11",
       "skins": {"LineJoinSumForceN": {"min": -3, "max": 2}}}]}]},
  {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP10", "tools": [{"id": "B1", "kind": "bolt"}]}]})";

class Series : public testing::Test {
 protected:
  [[nodiscard]] std::vector<TableSeries> select(SeriesSelection const& selection) const {
    return genSeries(m_file, selection, m_limits);
  }
  /// The only series of that selection.
  [[nodiscard]] TableSeries only(std::string const& item, std::string const& key) const {
    auto const list = select({{{"OP20"}, {}, false}, {item}, {key}});
    EXPECT_EQ(list.size(), 1U) << item << ' ' << key;
    return list.at(0);
  }
  [[nodiscard]] std::string messageOf(SeriesSelection const& selection) const {
    try {
      (void)select(selection);
    } catch (Error const& error) {
      return error.what();
    }
    return "no error";
  }

  ResultsFile m_file = readResults("r.json", s_results);
  ResultLimits m_limits{.collection = genDefaultLimits(m_file)};
};

/// "OP20 Bolts B1 ClampNormalForce"
std::vector<std::string> namesOf(std::vector<TableSeries> const& list) {
  std::vector<std::string> names;
  names.reserve(list.size());
  for (auto const& series : list)
    names.push_back(series.unit + ' ' + std::string(series.family) + ' ' + series.item + ' ' +
                    series.column.key);
  return names;
}

TEST_F(Series, AreOneForEachSelectedValueInTheOrderOfTheTables) {
  EXPECT_EQ(select({}).size(), 26U);
  EXPECT_THAT(
      namesOf(select({{{}, {DataType::Bolts}, false}, {}, {"ClampNormalForce", "ClampClosingForce"}})),
      ElementsAre("OP20 Bolts B1 ClampNormalForce", "OP20 Bolts B1 ClampClosingForce",
                  "OP20 Bolts B2 ClampNormalForce", "OP20 Bolts B2 ClampClosingForce",
                  "OP10 Bolts B1 ClampNormalForce", "OP10 Bolts B1 ClampClosingForce"));
  EXPECT_THAT(namesOf(select({{{"OP10"}, {}, false}, {"B1"}, {"ClampNormalForce"}})),
              ElementsAre("OP10 Bolts B1 ClampNormalForce"));
}

TEST_F(Series, HaveWhatIsKnownOfTheirValue) {
  auto const series = only("B1", "ClampNormalForce");
  EXPECT_EQ(series.file, "r.json");
  EXPECT_EQ(series.unitId, "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02");
  EXPECT_EQ(series.title, "Bolts");
  EXPECT_EQ(series.group, "Forces");
  EXPECT_EQ(series.subGroup, "");
  EXPECT_EQ(series.shownItem, "B1");
  EXPECT_EQ(series.column.tableDisplayName, "Max Normal Force");
  ASSERT_TRUE(series.column.limit.has_value());
  EXPECT_EQ(series.column.limit->value, 30.0);
  EXPECT_EQ(series.value, -40.25);
  EXPECT_TRUE(series.isExceeded);
  EXPECT_EQ(series.extreme, 2U);
  EXPECT_EQ(series.step(), 2U) << "the first of those of largest magnitude";
  EXPECT_EQ(series.time(), std::nullopt);
  EXPECT_THAT(series.series.values, ElementsAre(0.0, 3.5, -40.25, 40.25));
  EXPECT_THAT(series.series.steps, ElementsAre(0U, 1U, 2U, 3U));
  EXPECT_FALSE(series.hasRanges());
}

TEST_F(Series, HaveTheTimeOfTheirValueUnlessItIsNone) {
  auto const series = only("B1", "ClampClosingForce");
  EXPECT_EQ(series.value, std::numeric_limits<double>::infinity());
  EXPECT_EQ(series.step(), 3U);
  EXPECT_EQ(series.time(), std::nullopt) << "null in the file";
  auto earlier = series;
  earlier.extreme = 1;
  EXPECT_EQ(earlier.time(), 0.2);
  earlier.extreme = std::nullopt;
  EXPECT_EQ(earlier.step(), std::nullopt);
  EXPECT_EQ(earlier.time(), std::nullopt);
}

TEST_F(Series, AreEmptyWhereThereIsNoData) {
  auto const series = only("B2", "ClampNormalForce");
  EXPECT_EQ(series.value, 0.0);
  EXPECT_EQ(series.extreme, std::nullopt);
  EXPECT_THAT(series.series.values, IsEmpty());
  EXPECT_FALSE(series.hasRanges());
}

TEST_F(Series, KeepTheSignWhereTheTableHasAbsoluteValues) {
  auto const series = only("Tool", "TotalToolForces");
  EXPECT_EQ(series.family, "HemmingBed");
  EXPECT_EQ(series.subGroup, "Left");
  EXPECT_EQ(series.value, 5.0);
  EXPECT_EQ(series.step(), 0U);
  EXPECT_THAT(series.series.values, ElementsAre(-5.0, 4.0));
}

TEST_F(Series, OfLineJoinsHaveMinimumAndMaximumOfEachStep) {
  auto const series = only("Seam", "LineJoinSumForceN");
  EXPECT_TRUE(series.hasRanges());
  EXPECT_THAT(series.series.steps, ElementsAre(1U, 2U));
  EXPECT_THAT(series.series.minima, ElementsAre(-1.0, -3.0));
  EXPECT_THAT(series.series.maxima, ElementsAre(2.0, 2.0));
  EXPECT_THAT(series.series.values, ElementsAre(2.0, -3.0));
  EXPECT_EQ(series.extreme, 1U);
  EXPECT_EQ(series.step(), 2U);
}

TEST_F(Series, AreFoundByTheShownNameToo) {
  auto const byName = only("Tong left", "JoiningTongNormalForce");
  auto const byShownName = only("Tong left (Joining Failed)", "JoiningTongNormalForce");
  for (auto const& series : {byName, byShownName}) {
    EXPECT_EQ(series.item, "Tong left");
    EXPECT_EQ(series.shownItem, "Tong left (Joining Failed)");
    EXPECT_EQ(series.value, 600.0);
    EXPECT_FALSE(series.isExceeded) << "it is not valid";
  }
}

TEST_F(Series, OfAnUnknownElementAreAnErrorThatListsThem) {
  EXPECT_EQ(messageOf({{}, {"B1", "Tong lfet"}, {}}),
            "r.json: expected the name of an element of the selected tables (\"Tong left\", \"B1\", \"B2\", "
            "\"Tool\", \"Seam\"), found \"Tong lfet\"; did you mean \"Tong left\"?")
      << "in the order of the tables";
  EXPECT_EQ(messageOf({{{}, {DataType::Pilots}, false}, {"B1"}, {}}),
            "r.json: expected the name of an element of the selected tables (none), found \"B1\"");
}

TEST_F(Series, OfAnUnknownKeyAreAnErrorThatListsThoseOfTheSelectedElements) {
  EXPECT_EQ(messageOf({{}, {"Seam"}, {"LineJoinSumForceM"}}),
            "r.json: expected the key of a column of the selected elements (\"LineJoinSumForceN\", "
            "\"LineJoinSumForceT\"), found \"LineJoinSumForceM\"; did you mean \"LineJoinSumForceN\"?");
  EXPECT_EQ(messageOf({{}, {"Seam"}, {"ClampNormalForce"}}),
            "r.json: expected the key of a column of the selected elements (\"LineJoinSumForceN\", "
            "\"LineJoinSumForceT\"), found \"ClampNormalForce\"")
      << "which others have";
}

TEST_F(Series, OfAnUnknownUnitAreAnError) {
  EXPECT_EQ(messageOf({{{"OP30"}, {}, false}, {}, {}}),
            "r.json: expected the id or the name of one of its units (\"OP20\", \"OP10\"), found \"OP30\"");
}

}  // namespace
}  // namespace Kestrel::ResultTables

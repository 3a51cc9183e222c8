#include "result_tables/tables/Differences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "support/DifferencesTesting.h"
#include "support/TableTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> boltLines(std::string const& before, std::string const& after,
                                   Tolerance const& tolerance = {}) {
  return linesOf(differencesOf(oneBolt(before), oneBolt(after), tolerance));
}

// ---- one value

TEST(Differences, SayByHowMuchAndByWhichPartAValueHasChanged) {
  EXPECT_THAT(boltLines("0, -7.25, 3", "0, -8.5, 3"),
              ElementsAre("OP20 Bolts/Forces//Bolt 1 ClampNormalForce changed -7.25 -8.5 -1.25 "
                          "-0.1724137931034483"));
  EXPECT_THAT(boltLines("8", "-8"),
              ElementsAre("OP20 Bolts/Forces//Bolt 1 ClampNormalForce changed 8 -8 -16 -2"));
  EXPECT_THAT(boltLines("-7.25", "-7.25"), IsEmpty());
}

TEST(Differences, HaveNoPartOfZero) {
  EXPECT_THAT(boltLines("0", "5"), ElementsAre("OP20 Bolts/Forces//Bolt 1 ClampNormalForce changed 0 5 5 -"));
  EXPECT_THAT(boltLines("0.5", "20"),
              ElementsAre("OP20 Bolts/Forces//Bolt 1 ClampNormalForce changed 0.5 20 19.5 39"));
  EXPECT_THAT(boltLines("4e-308", "20"),
              ElementsAre("OP20 Bolts/Forces//Bolt 1 ClampNormalForce changed 4e-308 20 20 -"))
      << "a part that no double holds";
}

TEST(Differences, AreMoreThanTheAbsoluteTolerance) {
  EXPECT_THAT(boltLines("10", "12", {.absolute = 2}), IsEmpty());
  EXPECT_THAT(boltLines("12", "10", {.absolute = 2}), IsEmpty());
  EXPECT_EQ(boltLines("10", "12", {.absolute = 1.9999}).size(), 1U);
}

TEST(Differences, AreMoreThanThePartOfTheFirstValue) {
  EXPECT_THAT(boltLines("-8", "-10", {.relative = 0.25}), IsEmpty());
  EXPECT_EQ(boltLines("-8", "-10", {.relative = 0.24}).size(), 1U);
  EXPECT_THAT(boltLines("-10", "-8", {.relative = 0.2}), IsEmpty()) << "0.2 of 10, not of 8";
  EXPECT_EQ(boltLines("0", "1", {.relative = 1000}).size(), 1U);
}

TEST(Differences, AreMoreThanBothTolerancesTogether) {
  EXPECT_THAT(boltLines("8", "11", {.absolute = 1, .relative = 0.25}), IsEmpty());
  EXPECT_EQ(boltLines("8", "11.5", {.absolute = 1, .relative = 0.25}).size(), 1U);
}

TEST(Differences, OfInfinitiesAreThatTheyAreNotEqual) {
  constexpr Tolerance large{.absolute = 1e308, .relative = 1e308};
  EXPECT_THAT(boltLines("\"Infinity\"", "\"Infinity\""), IsEmpty());
  EXPECT_THAT(boltLines("\"Infinity\"", "\"-Infinity\"", large),
              ElementsAre("OP20 Bolts/Forces//Bolt 1 ClampNormalForce changed inf! -inf! - -"));
  EXPECT_THAT(boltLines("\"Infinity\"", "5", large),
              ElementsAre("OP20 Bolts/Forces//Bolt 1 ClampNormalForce changed inf! 5 - -"));
  EXPECT_THAT(boltLines("5", "\"-Infinity\"", large),
              ElementsAre("OP20 Bolts/Forces//Bolt 1 ClampNormalForce changed 5 -inf! - -"));
}

TEST(Differences, HaveNoChangeThatNoDoubleHolds) {
  EXPECT_THAT(boltLines("-1.7e308", "1.7e308", {.absolute = 1e308}),
              ElementsAre("OP20 Bolts/Forces//Bolt 1 ClampNormalForce changed -1.7e+308! 1.7e+308! - -"));
}

TEST(Differences, AreNoneBetweenValuesWithoutNumbersAndZero) {
  EXPECT_THAT(boltLines("null", "0"), IsEmpty());
  EXPECT_THAT(boltLines("", "null"), IsEmpty());
  EXPECT_THAT(boltLines("null, 4", "4"), IsEmpty());
}

TEST(Differences, SayFromHowMuchDataTheirValuesAre) {
  auto const found = differencesOf(oneBolt("null, 4"), oneBolt("1, 2, 5, null, null"));
  auto const& value = found.tables.at(0).rows.at(0).values.at(0);
  EXPECT_EQ(value.before->count, 1U);
  EXPECT_EQ(value.before->nanCount, 1U);
  EXPECT_EQ(value.after->count, 3U);
  EXPECT_EQ(value.after->nanCount, 2U);
}

TEST(Differences, OfStateAreOfValuesThatHaveNotChanged) {
  auto const lines = boltLines("29", "31", {.absolute = 2});
  EXPECT_THAT(lines, ElementsAre("OP20 Bolts/Forces//Bolt 1 ClampNormalForce state 29 31! 2 "
                                 "0.06896551724137931"));
  EXPECT_THAT(boltLines("29", "31"),
              ElementsAre("OP20 Bolts/Forces//Bolt 1 ClampNormalForce changed 29 31! 2 "
                          "0.06896551724137931"));
}

TEST(Differences, CompareEachFileWithItsOwnLimits) {
  auto const before = limitedResultsOf("before.json", oneBolt("29"));
  auto const after = limitedResultsOf("after.json", oneBolt("29"));
  setLimits(*after.limits.collection, {&after.file.units.front()}, TablePropertyLimitType::BoltNormalForce,
            28);
  EXPECT_THAT(linesOf(genDifferences(before, after, {}, {})),
              ElementsAre("OP20 Bolts/Forces//Bolt 1 ClampNormalForce state 29 29! 0 0"));
}

/// A joint whose state in the only step is this.
std::string weldIn(int state) {
  return fmt::format(
      R"({{"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02", "name": "OP20", "visibleSteps": {{"first": 0, "last": 0}},
          "tools": [{{"id": "Weld 1", "kind": "spotWeld", "series": [{{"quantity": "JoinForceN", "values": [600]}}]}}],
          "steps": [{{"joins": [{{"guid": "7d0e0d5c-70f2-4b2f-9a0b-6d7b5f0f9c11", "id": "Weld 1", "name": "Spot 1",
                                  "state": {}}}]}}]}})",
      state);
}

TEST(Differences, AreInWhetherAnElementIsValid) {
  EXPECT_THAT(linesOf(differencesOf(weldIn(1), weldIn(9))),
              ElementsAre("OP20 SpotWelds/Forces//Spot 1 JoinForceN state 600! 600? 0 0",
                          "OP20 SpotWelds/Forces//Spot 1 JoinTangentialForce state 0 0? 0 -"));
}

TEST(Differences, TellWhichValuesWentBeyondTheirLimitsAndWhichCameBack) {
  constexpr ComparedValue within{1, true, false};
  constexpr ComparedValue beyond{40, true, true};
  constexpr ComparedValue invalid{40, false, false};
  auto const between = [](std::optional<ComparedValue> before, std::optional<ComparedValue> after) {
    ValueDifference const difference{DifferenceKind::changed, nullptr, before, after};
    return std::pair(difference.wentBeyondLimit(), difference.cameBackWithinLimit());
  };
  constexpr std::pair neither(false, false);
  constexpr std::pair wentBeyond(true, false);
  constexpr std::pair cameBack(false, true);
  EXPECT_EQ(between(within, beyond), wentBeyond);
  EXPECT_EQ(between(std::nullopt, beyond), wentBeyond);
  EXPECT_EQ(between(invalid, beyond), wentBeyond);
  EXPECT_EQ(between(beyond, within), cameBack);
  EXPECT_EQ(between(beyond, beyond), neither);
  EXPECT_EQ(between(beyond, invalid), neither);
  EXPECT_EQ(between(beyond, std::nullopt), neither);
  EXPECT_EQ(between(std::nullopt, within), neither);
}

// ---- what only one file has

TEST(Differences, AreTheValuesOfARowThatOnlyOneFileHas) {
  auto const one = unitOf('2', "OP20", bolt("Bolt 1", "3"));
  auto const two = unitOf('2', "OP20", bolt("Bolt 1", "3") + ", " + bolt("Bolt 2", "40"));
  EXPECT_THAT(linesOf(differencesOf(one, two)),
              ElementsAre("OP20 Bolts/Forces//Bolt 2 ClampNormalForce added - 40! - -",
                          "OP20 Bolts/Forces//Bolt 2 ClampClosingForce added - 0 - -",
                          "OP20 Bolts/Forces//Bolt 2 ClampSupportingForce added - 0 - -",
                          "OP20 Bolts/Forces//Bolt 2 ClampTangentialForce added - 0 - -",
                          "OP20 Bolts/Distances//Bolt 2 ClampNormalDisplacement added - 0 - -"));
  EXPECT_THAT(linesOf(differencesOf(two, one)),
              ElementsAre("OP20 Bolts/Forces//Bolt 2 ClampNormalForce removed 40! - - -",
                          "OP20 Bolts/Forces//Bolt 2 ClampClosingForce removed 0 - - -",
                          "OP20 Bolts/Forces//Bolt 2 ClampSupportingForce removed 0 - - -",
                          "OP20 Bolts/Forces//Bolt 2 ClampTangentialForce removed 0 - - -",
                          "OP20 Bolts/Distances//Bolt 2 ClampNormalDisplacement removed 0 - - -"));
}

TEST(Differences, AreTheValuesOfAUnitThatOnlyOneFileHas) {
  EXPECT_THAT(linesOf(differencesOf(unitOf('1', "OP10", pilots({{"P1", 2}})),
                                    unitOf('2', "OP20", pilots({{"P1", 2}})))),
              ElementsAre("OP10 Pilots/Forces//P1 PilotForce removed 2 - - -",
                          "OP20 Pilots/Forces//P1 PilotForce added - 2 - -"));
}

TEST(Differences, AreTheValuesOfAFamilyThatOnlyOneFileHas) {
  auto const found = differencesOf(
      unitOf('2', "OP20", pilots({{"P1", 2}})),
      unitOf('2', "OP20", R"({"id": "Zone 1", "kind": "suctionZone"}, )" + pilots({{"P1", 2}})));
  EXPECT_THAT(linesOf(found),
              ElementsAre("OP20 SuctionZones/Forces//Zone 1 SuctionZoneAbsForce added - 0 - -",
                          "OP20 SuctionZones/Forces//Zone 1 SuctionDistance added - 0 - -"));
  EXPECT_EQ(found.countCompared(), 1U);
}

// ---- selection, order, counts

TEST(Differences, AreThoseOfTheSelectedUnitsAndFamilies) {
  auto const units = [](double force) {
    auto const tools = bolt("Bolt 1", shortestForm(force)) + ", " + pilots({{"P1", force}});
    return unitOf('1', "OP10", tools) + ", " + unitOf('2', "OP20", tools);
  };
  TableSelection selection;
  selection.units = {"OP20"};
  selection.families = {MaxValueGroupContainer::DataType::Pilots};
  auto const found = differencesOf(units(1), units(2), {}, selection);
  EXPECT_THAT(linesOf(found), ElementsAre("OP20 Pilots/Forces//P1 PilotForce changed 1 2 1 1"));
  EXPECT_EQ(found.countCompared(), 1U);
  selection.families = {MaxValueGroupContainer::DataType::Rollers};
  EXPECT_EQ(differencesOf(units(1), units(2), {}, selection).countCompared(), 0U);
}

TEST(Differences, IncludeTheTeachingSectionOnRequest) {
  auto const taught = [](std::string const& x) {
    return unitOf(
        '2', "OP20",
        R"({"id": "Bolt 1", "kind": "bolt", "series": [{"quantity": "ClampTeachingDistanceX", "values": [)" +
            x + "]}]}");
  };
  EXPECT_THAT(linesOf(differencesOf(taught("1"), taught("2"))), IsEmpty());
  TableSelection selection;
  selection.teaching = true;
  EXPECT_THAT(linesOf(differencesOf(taught("1"), taught("2"), {}, selection)),
              ElementsAre("OP20 Bolts/Teaching//Bolt 1 ClampTeachingDistanceX changed 1 2 1 1"));
}

TEST(Differences, StandInTheOrderOfTheFirstFileWithWhatTheSecondAloneHasBehind) {
  auto const before =
      unitOf('3', "OP30", pilots({{"P3", 3}})) + ", " +
      unitOf('1', "OP10", R"({"id": "Zone", "kind": "suctionZone"}, )" + pilots({{"P1", 1}, {"P2", 2}}));
  auto const after =
      unitOf('4', "OP40", pilots({{"P4", 4}})) + ", " + unitOf('1', "OP10", pilots({{"P0", 0.5}, {"P2", 3}}));
  EXPECT_THAT(linesOf(differencesOf(before, after)),
              ElementsAre("OP30 Pilots/Forces//P3 PilotForce removed 3 - - -",
                          "OP10 Pilots/Forces//P1 PilotForce removed 1 - - -",
                          "OP10 Pilots/Forces//P2 PilotForce changed 2 3 1 0.5",
                          "OP10 Pilots/Forces//P0 PilotForce added - 0.5 - -",
                          "OP10 SuctionZones/Forces//Zone SuctionZoneAbsForce removed 0 - - -",
                          "OP10 SuctionZones/Forces//Zone SuctionDistance removed 0 - - -",
                          "OP40 Pilots/Forces//P4 PilotForce added - 4 - -"));
}

TEST(Differences, NameTheUnitAsTheFirstFileDoes) {
  auto const found =
      differencesOf(unitOf('2', "OP20", bolt("Bolt 1", "1")), unitOf('2', "OP30", bolt("Bolt 1", "2")));
  ASSERT_EQ(found.tables.size(), 1U);
  EXPECT_EQ(found.tables[0].unit, "OP20");
  EXPECT_EQ(found.tables[0].unitId, "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02");
  auto const byName =
      differencesOf(unitOf('2', "OP20", bolt("Bolt 1", "1")), unitOf('3', "OP20", bolt("Bolt 1", "2")));
  ASSERT_EQ(byName.tables.size(), 1U);
  EXPECT_EQ(byName.tables[0].unitId, "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02");
}

TEST(Differences, CountTheValuesOfBothFiles) {
  auto const found = differencesOf(oneBolt("1"), oneBolt("2"));
  EXPECT_EQ(found.countCompared(), 5U) << "four forces, one distance";
  EXPECT_TRUE(found.hasDifferences());
  EXPECT_EQ(found.before, "before.json");
  EXPECT_EQ(found.after, "after.json");
  auto const same = differencesOf(oneBolt("1"), oneBolt("1"));
  EXPECT_EQ(same.countCompared(), 5U);
  EXPECT_FALSE(same.hasDifferences());
  EXPECT_EQ(same.tables.at(0).rows.size(), 2U) << "rows that agree are there as well";
}

// ---- rows, columns and sections of tables that no results file leads to

class TableDifference : public testing::Test {
 protected:
  using Group = MaxValueGroup;

  [[nodiscard]] ResultTable table(std::vector<Group> groups) const {
    auto const container =
        std::make_shared<MaxValueGroupContainer>(MaxValueGroupContainer::DataType::Rollers, m_unit.getID());
    container->groups = std::move(groups);
    return genTable(m_unit, container, m_limits);
  }
  [[nodiscard]] std::vector<std::string> between(std::vector<Group> before, std::vector<Group> after) const {
    auto const first = table(std::move(before));
    auto const second = table(std::move(after));
    return linesOf(genTableDifferences(&first, &second, {}));
  }
  static Group rows(std::vector<MaxValueSubGroup> subGroups) {
    return {"S", false, false, {}, {"K"}, std::move(subGroups)};
  }

  SimulationUnit const m_unit{SimulationUnitId(), "U"};
  ResultLimits m_limits;
};

TEST_F(TableDifference, PairsElementsOfOneNameByHowOftenItHasComeBefore) {
  EXPECT_THAT(between({rows({{"", {{"A", {1}}, {"B", {0}}, {"A", {2}}}}})},
                      {rows({{"", {{"A", {1}}, {"A", {3}}, {"A", {4}}, {"B", {0}}}}})}),
              ElementsAre("U Rollers/S//A K changed 2 3 1 0.5", "U Rollers/S//A K added - 4 - -"));
}

TEST_F(TableDifference, PairsElementsOfOneSubGroup) {
  EXPECT_THAT(between({rows({{"Left", {{"A", {1}}}}, {"Right", {{"A", {2}}}}})},
                      {rows({{"Right", {{"A", {2}}}}, {"Left", {{"A", {5}}}}})}),
              ElementsAre("U Rollers/S/Left/A K changed 1 5 4 4"));
  EXPECT_THAT(between({rows({{"Left", {{"A", {1}}}}})}, {rows({{"", {{"A", {1}}}}})}),
              ElementsAre("U Rollers/S/Left/A K removed 1 - - -", "U Rollers/S//A K added - 1 - -"));
}

TEST_F(TableDifference, TakesSubGroupsOfOneNameForOne) {
  EXPECT_THAT(between({rows({{"Left", {{"A", {1}}}}, {"Left", {{"A", {2}}}}})},
                      {rows({{"Left", {{"A", {1}}, {"A", {3}}}}})}),
              ElementsAre("U Rollers/S/Left/A K changed 2 3 1 0.5"));
}

TEST_F(TableDifference, PairsColumnsByTheirKeys) {
  EXPECT_THAT(between({{"S", false, false, {}, {"K", "L", "M"}, {{"", {{"A", {1, 2, 3}}}}}}},
                      {{"S", false, false, {}, {"N", "M", "K"}, {{"", {{"A", {4, 3, 5}}}}}}}),
              ElementsAre("U Rollers/S//A K changed 1 5 4 4", "U Rollers/S//A L removed 2 - - -",
                          "U Rollers/S//A N added - 4 - -"));
}

TEST_F(TableDifference, PairsSectionsByTheirNames) {
  auto const section = [](std::string const& name, double value) {
    return Group{name, false, false, {}, {"K"}, {{"", {{"A", {value}}}}}};
  };
  EXPECT_THAT(
      between({section("S", 1), section("T", 2)}, {section("V", 4), section("T", 3), section("S", 1)}),
      ElementsAre("U Rollers/T//A K changed 2 3 1 0.5", "U Rollers/V//A K added - 4 - -"));
}

TEST_F(TableDifference, LeavesOutWhatHasNoColumnOrNoValue) {
  EXPECT_THAT(between({rows({{"", {{"A", {1, 2}}, {"B", {}}}}})}, {rows({{"", {{"A", {1, 3}}, {"B", {}}}}})}),
              IsEmpty());
  EXPECT_THAT(between({rows({{"", {{"A", {}}}}})}, {rows({{"", {{"A", {3}}}}})}),
              ElementsAre("U Rollers/S//A K added - 3 - -"));
}

TEST_F(TableDifference, TakesBothZerosForOneNumber) {
  EXPECT_THAT(between({rows({{"", {{"A", {-0.0}}}}})}, {rows({{"", {{"A", {0.0}}}}})}), IsEmpty());
  EXPECT_THAT(between({rows({{"", {{"A", {-0.0}}}}})}, {rows({{"", {{"A", {2}}}}})}),
              ElementsAre("U Rollers/S//A K changed -0 2 2 -"));
}

TEST_F(TableDifference, NeedsOneOfTheTablesAlone) {
  auto const only = table({rows({{"", {{"A", {1}}}}})});
  EXPECT_THAT(linesOf(genTableDifferences(&only, nullptr, {})),
              ElementsAre("U Rollers/S//A K removed 1 - - -"));
  EXPECT_THAT(linesOf(genTableDifferences(nullptr, &only, {})),
              ElementsAre("U Rollers/S//A K added - 1 - -"));
}

TEST_F(TableDifference, OutlivesTheTables) {
  auto const found = [this] {
    auto const first = table({rows({{"", {{"A", {1}}}}})});
    auto const second = table({rows({{"", {{"A", {2}}}}})});
    return genTableDifferences(&first, &second, {});
  }();
  EXPECT_THAT(linesOf(found), ElementsAre("U Rollers/S//A K changed 1 2 1 1"));
}

}  // namespace
}  // namespace Kestrel::ResultTables

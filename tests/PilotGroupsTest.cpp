#include <gmock/gmock.h>

#include "support/SimUnitMaxValuesProviderTestAccess.h"
#include "support/TestUnit.h"

namespace Kestrel {
namespace {

using Access = SimUnitMaxValuesProviderTestAccess;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

std::shared_ptr<MaxValueGroupContainer> pilotTable(TestUnit const& test) {
  return SimUnitMaxValuesProvider(test.unit, {}).genGetMaxValuesCollection(DataType::Pilots);
}

TEST(PilotGroups, AreOneForceSectionOutsideTheDefaultFamilies) {
  TestUnit test;
  test.addTool("B1", ToolForceDataType::bolt);
  test.addTool("Pilots", ToolForceDataType::pilot,
               {{"PilotForce_P2", {1.0, -4.0, 3.0}},
                {"PilotForce_P1", {2.5}},
                {"PilotForce_B1", {88.0}},
                {"Friction_P3", {77.0}}});
  auto const table = pilotTable(test);
  EXPECT_EQ(table->dataType, DataType::Pilots);
  EXPECT_EQ(table->simulationUnitId, test.unit.getID());
  EXPECT_EQ(table->title, "Pilots");
  EXPECT_EQ(table->unitTitle, "OP20Pilots");
  EXPECT_FALSE(table->isDefaultFamily);
  EXPECT_THAT(table->elementNames, IsEmpty());
  EXPECT_THAT(table->valuesAreValid, IsEmpty());
  EXPECT_EQ(table->invalidValuesText, "");
  EXPECT_EQ(table->invalidValuesNameAppendix, "");
  ASSERT_THAT(table->groups, SizeIs(1));
  EXPECT_EQ(sectionOf(table->groups[0]), (Section{"Forces", false, true, {19}, {"PilotForce"}}));
  EXPECT_THAT(rowsOf(table->groups[0]), ElementsAre(Row{"", "P2", {-4.0}}, Row{"", "P1", {2.5}}));
  EXPECT_THAT(table->groups[0].subGroups, SizeIs(2)) << "one sub-group per pilot";
}

TEST(PilotGroups, LeaveTheTableAloneWithoutAPilotTool) {
  TestUnit test;
  test.addTool("B1", ToolForceDataType::bolt, {{"PilotForce_P1", {1.0}}});
  EXPECT_TRUE(isUntouched(*pilotTable(test)));
}

TEST(PilotGroups, ComeFromTheFirstPilotToolAlone) {
  TestUnit test;
  test.addTool("first", ToolForceDataType::pilot, {{"PilotForce_P1", {1.0}}});
  test.addTool("second", ToolForceDataType::pilot, {{"PilotForce_P2", {2.0}}});
  EXPECT_THAT(rowsOf(pilotTable(test)->groups.at(0)), ElementsAre(Row{"", "P1", {1.0}}));
}

TEST(PilotGroups, AreTheSameAfterTheResultIsGone) {
  TestUnit test;
  test.addTool("Pilots", ToolForceDataType::pilot, {{"PilotForce_P1", {1.0}}});
  SimUnitMaxValuesProvider const provider(test.unit, test.result());
  auto const table = provider.genGetMaxValuesCollection(DataType::Pilots);
  EXPECT_THAT(rowsOf(table->groups.at(0)), ElementsAre(Row{"", "P1", {1.0}}));
}

/// The rows that the series of a pilot tool make with the value name F.
class PilotRows : public ::testing::Test {
 protected:
  std::vector<Row> rows(std::initializer_list<TestUnit::Series> forces, Names const& boltIds = {},
                        Access::Columns const& columns = {{"F", 0}}) {
    TestUnit test;
    test.addTool("Pilots", ToolForceDataType::pilot, forces);
    MaxValueGroup group;
    Access::assemblePilots(SimUnitMaxValuesProvider(test.unit, {}), "Pilots", columns, group, boltIds);
    return rowsOf(group);
  }
};

TEST_F(PilotRows, AreOneForEachPilotThatIsNoBolt) {
  EXPECT_THAT(rows({{"F_P1", {1.0}}, {"F_P2", {2.0}}, {"F_B1", {3.0}}}, {"B1"}),
              ElementsAre(Row{"", "P1", {1.0}}, Row{"", "P2", {2.0}}));
}

TEST_F(PilotRows, LeaveOutBoltsByTheirWholeNames) {
  EXPECT_THAT(rows({{"F_B10", {1.0}}, {"F_B", {2.0}}, {"F_b1", {3.0}}, {"F_B1", {4.0}}}, {"B2", "B1"}),
              ElementsAre(Row{"", "B10", {1.0}}, Row{"", "B", {2.0}}, Row{"", "b1", {3.0}}));
}

TEST_F(PilotRows, OfAPilotThatIsMetTwiceHoldTheLaterMaximum) {
  EXPECT_THAT(rows({{"F_P1", {-9.0}}, {"F_P2", {5.0}}, {"F_P1", {2.0}}}),
              ElementsAre(Row{"", "P1", {2.0}}, Row{"", "P2", {5.0}}));
}

TEST_F(PilotRows, FindTheValueNameAnywhereInTheSeriesName) {
  EXPECT_THAT(rows({{"XF_P3", {1.0}}, {"FF_P4", {2.0}}, {"F_P5_F_P6", {3.0}}, {"FXF_P7", {4.0}}}),
              ElementsAre(Row{"", "P3", {1.0}}, Row{"", "P4", {2.0}}, Row{"", "P5_F_P6", {3.0}},
                          Row{"", "P7", {4.0}}));
}

TEST_F(PilotRows, SkipSeriesOfOtherQuantities) {
  EXPECT_THAT(rows({{"G_P1", {1.0}}, {"", {2.0}}, {"f_P2", {3.0}}}), IsEmpty());
}

TEST_F(PilotRows, TakeThePositionOfTheValueNamesLengthWhereNoUnderscoreFollowsIt) {
  EXPECT_THAT(
      rows({{"FX", {1.0}}, {"XF", {2.0}}, {"F", {3.0}}, {"XYF", {4.0}}}),
      ElementsAre(Row{"", "X", {1.0}}, Row{"", "F", {2.0}}, Row{"", "", {3.0}}, Row{"", "YF", {4.0}}));
  EXPECT_THAT(rows({{"abForce", {1.0}}, {"Force-P1", {2.0}}}, {}, {{"Force", 0}}),
              ElementsAre(Row{"", "ce", {1.0}}, Row{"", "-P1", {2.0}}));
}

TEST_F(PilotRows, MayHaveAnEmptyName) {
  EXPECT_THAT(rows({{"F_", {1.0}}, {"XF_", {2.0}}}), ElementsAre(Row{"", "", {2.0}}));
}

TEST_F(PilotRows, ComeInTheOrderInWhichTheColumnsMeetThem) {
  EXPECT_THAT(
      rows({{"G_P1", {1.0}}, {"F_P2", {2.0}}, {"G_P2", {3.0}}, {"F_P3", {4.0}}}, {}, {{"G", 0}, {"F", 1}}),
      ElementsAre(Row{"", "P2", {3.0, 2.0}}, Row{"", "P3", {0.0, 4.0}}, Row{"", "P1", {1.0, 0.0}}));
}

TEST_F(PilotRows, HaveRoomForTwentyAndHoldAll) {
  TestUnit test;
  test.addTool("Pilots", ToolForceDataType::pilot);
  SimUnitMaxValuesProvider const provider(test.unit, {});
  MaxValueGroup group;
  Access::assemblePilots(provider, "Pilots", {{"F", 0}}, group, {});
  EXPECT_EQ(group.subGroups.capacity(), 20u);

  MaxValueGroup roomy;
  roomy.subGroups.reserve(21);
  Access::assemblePilots(provider, "Pilots", {{"F", 0}}, roomy, {});
  EXPECT_EQ(roomy.subGroups.capacity(), 21u);

  for (int i = 0; i < 45; ++i)
    test.unit.addToolForce("Pilots", std::string("F_P") + std::to_string(i), series({i + 0.5}));
  Access::assemblePilots(provider, "Pilots", {{"F", 0}}, group, {});
  auto const rows = rowsOf(group);
  ASSERT_THAT(rows, SizeIs(45));
  EXPECT_EQ(rows[44], (Row{"", "P44", {44.5}}));
}

TEST_F(PilotRows, PassOverASeriesThatTheHostFailsToGive) {
  TestUnit test;
  test.addTool("Pilots", ToolForceDataType::pilot);
  test.unit.addToolForce("Pilots", "F_P1", nullptr);
  test.unit.addToolForce("Pilots", "F_P2", series({-1.0}));
  test.unit.addToolForce("Pilots", "F_P2", nullptr);
  MaxValueGroup group;
  Access::assemblePilots(SimUnitMaxValuesProvider(test.unit, {}), "Pilots", {{"F", 0}}, group, {});
  EXPECT_THAT(rowsOf(group), ElementsAre(Row{"", "P2", {-1.0}}));
}

TEST_F(PilotRows, AreNoneForAToolThatTheUnitDoesNotHave) {
  TestUnit const test;
  MaxValueGroup group;
  Access::assemblePilots(SimUnitMaxValuesProvider(test.unit, {}), "Pilots", {{"F", 0}}, group, {});
  EXPECT_THAT(group.subGroups, IsEmpty());
}

TEST_F(PilotRows, HoldOnlyTheColumnsThatHaveAPlace) {
  EXPECT_THAT(rows({{"F_P1", {1.0}}, {"G_P1", {2.0}}}, {}, {{"F", 2}, {"G", 1}}),
              ElementsAre(Row{"", "P1", {0.0, 2.0}}));
}

}  // namespace
}  // namespace Kestrel

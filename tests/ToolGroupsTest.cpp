#include <gmock/gmock.h>

#include <limits>

#include "support/SimUnitMaxValuesProviderTestAccess.h"
#include "support/TestUnit.h"

namespace Kestrel {
namespace {

using Access = SimUnitMaxValuesProviderTestAccess;
using Grouping = SimUnitMaxValuesProvider::ToolGrouping;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// Three forming tools, of which the third has no force, and a clamp that has one.
class ToolGroups : public ::testing::Test {
 protected:
  ToolGroups() {
    m_test.addTool("Tool 1", ToolForceDataType::tool, {{"TotalToolForces", {1.0, -3.5, 2.0}}});
    m_test.addTool("Tool 2", ToolForceDataType::tool, {{"other", {9.0}}, {"TotalToolForces", {4.0}}});
    m_test.addTool("Tool 3", ToolForceDataType::tool);
    m_test.addTool("Clamp 1", ToolForceDataType::clamp, {{"TotalToolForces", {-6.0}}});
  }

  std::shared_ptr<MaxValueGroupContainer> table(Grouping const& grouping, DataType dataType) const {
    return SimUnitMaxValuesProvider(m_test.unit, {}).genGetToolMaxValuesCollection(grouping, dataType);
  }

  TestUnit m_test;
  Grouping const m_grouping{{"Left", {"Tool 2", "Tool 1"}}, {"Right", {"Tool 3"}}};
};

void expectToolTable(MaxValueGroupContainer const& table, std::string const& title, bool isDefaultFamily,
                     std::vector<unsigned int> const& limitTypes) {
  EXPECT_EQ(table.title, title);
  EXPECT_EQ(table.unitTitle, "OP20") << "the unit's name alone";
  EXPECT_EQ(table.isDefaultFamily, isDefaultFamily);
  EXPECT_THAT(table.elementNames, IsEmpty());
  EXPECT_THAT(table.valuesAreValid, IsEmpty());
  EXPECT_EQ(table.invalidValuesText, "");
  EXPECT_EQ(table.invalidValuesNameAppendix, "");
  ASSERT_THAT(table.groups, SizeIs(1));
  EXPECT_EQ(sectionOf(table.groups[0]), (Section{"Forces", false, true, limitTypes, {"Total Tool Forces"}}));
}

TEST_F(ToolGroups, OfClampingToolsCheckTheirOneColumnAgainstTwoLimits) {
  auto const table = this->table(m_grouping, DataType::ClampingTools);
  EXPECT_EQ(table->dataType, DataType::ClampingTools);
  EXPECT_EQ(table->simulationUnitId, m_test.unit.getID());
  expectToolTable(*table, "Clamping Tools", true, {10, 24});
  EXPECT_THAT(rowsOf(table->groups[0]),
              ElementsAre(Row{"Left", "Tool 2", {4.0}}, Row{"Left", "Tool 1", {-3.5}},
                          Row{"Right", "Tool 3", {0.0}}));
}

TEST_F(ToolGroups, OfRollersAndSteelsKeepTheSign) {
  auto const rollers = table(m_grouping, DataType::Rollers);
  expectToolTable(*rollers, "Rollers", false, {20});
  EXPECT_THAT(rowsOf(rollers->groups[0]),
              ElementsAre(Row{"Left", "Tool 2", {4.0}}, Row{"Left", "Tool 1", {-3.5}},
                          Row{"Right", "Tool 3", {0.0}}));
  auto const steels = table(m_grouping, DataType::Steels);
  expectToolTable(*steels, "Steels", false, {21});
  EXPECT_EQ(rowsOf(steels->groups[0]), rowsOf(rollers->groups[0]));
}

TEST_F(ToolGroups, OfTheHemmingBedAreAbsoluteValues) {
  m_test.addTool("Bed", ToolForceDataType::tool,
                 {{"TotalToolForces", {-std::numeric_limits<double>::infinity()}}});
  auto const table = this->table({{"Left", {"Tool 2", "Tool 1"}}, {"Right", {"Bed"}}}, DataType::HemmingBed);
  expectToolTable(*table, "Hemming Bed", false, {22});
  EXPECT_THAT(rowsOf(table->groups[0]),
              ElementsAre(Row{"Left", "Tool 2", {4.0}}, Row{"Left", "Tool 1", {3.5}},
                          Row{"Right", "Bed", {std::numeric_limits<double>::infinity()}}));
}

TEST_F(ToolGroups, OfAnUnknownFamilyHaveItemsWithoutColumns) {
  for (unsigned int const number : {0u, 2u, 3u, 11u, 12u}) {
    auto const table = this->table(m_grouping, static_cast<DataType>(number));
    EXPECT_EQ(static_cast<unsigned int>(table->dataType), number);
    EXPECT_EQ(table->title, "");
    EXPECT_EQ(table->unitTitle, "OP20");
    EXPECT_TRUE(table->isDefaultFamily);
    ASSERT_THAT(table->groups, SizeIs(1));
    EXPECT_EQ(sectionOf(table->groups[0]), (Section{"Forces", false, true, {}, {}}));
    EXPECT_THAT(rowsOf(table->groups[0]), ElementsAre(Row{"Left", "Tool 2", {}}, Row{"Left", "Tool 1", {}},
                                                      Row{"Right", "Tool 3", {}}));
  }
}

TEST_F(ToolGroups, LeaveTheTableAloneWithoutFormingTools) {
  TestUnit test;
  test.addTool("Clamp 1", ToolForceDataType::clamp, {{"TotalToolForces", {1.0}}});
  SimUnitMaxValuesProvider const provider(test.unit, {});
  for (unsigned int const number : {1u, 7u, 8u, 9u, 12u})
    EXPECT_TRUE(isUntouched(
        *provider.genGetToolMaxValuesCollection({{"Left", {"Clamp 1"}}}, static_cast<DataType>(number))));
}

TEST_F(ToolGroups, WithoutAGroupingAreOneSectionWithoutRows) {
  auto const table = this->table({}, DataType::ClampingTools);
  expectToolTable(*table, "Clamping Tools", true, {10, 24});
  EXPECT_THAT(table->groups[0].subGroups, IsEmpty());
}

TEST_F(ToolGroups, KeepTheNameOfAGroupingWithoutTools) {
  auto const table = this->table({{"Empty", {}}, {"", {"Tool 2"}}}, DataType::Steels);
  ASSERT_THAT(table->groups[0].subGroups, SizeIs(2));
  EXPECT_EQ(table->groups[0].subGroups[0].name, "Empty");
  EXPECT_THAT(table->groups[0].subGroups[0].items, IsEmpty());
  EXPECT_THAT(rowsOf(table->groups[0]), ElementsAre(Row{"", "Tool 2", {4.0}}));
}

TEST_F(ToolGroups, ShowWhatTheGroupingListsAndNothingElse) {
  auto const table = this->table({{"All", {"Clamp 1", "unknown", "Tool 1", "Tool 1"}}}, DataType::Rollers);
  EXPECT_THAT(rowsOf(table->groups[0]),
              ElementsAre(Row{"All", "Clamp 1", {-6.0}}, Row{"All", "unknown", {0.0}},
                          Row{"All", "Tool 1", {-3.5}}, Row{"All", "Tool 1", {-3.5}}));
}

TEST_F(ToolGroups, DoNotDependOnTheResult) {
  SimUnitMaxValuesProvider const provider(m_test.unit, m_test.result());
  auto const table = provider.genGetToolMaxValuesCollection({{"All", {"Tool 1"}}}, DataType::Rollers);
  EXPECT_THAT(rowsOf(table->groups.at(0)), ElementsAre(Row{"All", "Tool 1", {-3.5}}));
}

/// Rows of any columns, laid out by a grouping.
class GroupedRows : public ::testing::Test {
 protected:
  void assemble(Names const& ids, Names const& names, Grouping const& grouping) {
    Access::assembleGroupWithGrouping(m_provider, ids, names,
                                      {{"F", 1}, {"N", 0}, {"JoinTangentialForce", 2}}, grouping, m_group);
  }

  TestUnit m_test;
  SimUnitMaxValuesProvider m_provider{m_test.unit, {}};
  MaxValueGroup m_group;
};

TEST_F(GroupedRows, OfARepeatedQuantityHoldTheLastSeries) {
  m_test.addTool("T1", ToolForceDataType::tool, {{"F", {-9.0}}, {"N", {1.0}}, {"F", {2.0}}});
  m_test.unit.addToolForce("T1", "N", nullptr);
  assemble({}, {}, {{"Left", {"T1"}}});
  EXPECT_THAT(rowsOf(m_group), ElementsAre(Row{"Left", "T1", {1.0, 2.0, 0.0}}));
}

TEST_F(GroupedRows, TakeTheTangentialForceFromTheSeriesThatIsMadeForIt) {
  m_test.addTool("T1", ToolForceDataType::tool, {{"JoinTangentialForce", {99.0}}});
  m_test.unit.setJoinTangentialForce("T1", StepValues<double>(std::vector<double>{0.5, -0.75}));
  m_test.addTool("T2", ToolForceDataType::tool, {{"JoinTangentialForce", {99.0}}});
  assemble({}, {}, {{"Left", {"T1", "T2", "unknown"}}});
  EXPECT_THAT(rowsOf(m_group),
              ElementsAre(Row{"Left", "T1", {0.0, 0.0, -0.75}}, Row{"Left", "T2", {0.0, 0.0, 0.0}},
                          Row{"Left", "unknown", {0.0, 0.0, 0.0}}));
}

TEST_F(GroupedRows, MakeRoomForAsManySubGroupsAsThereAreItems) {
  assemble(Names(37, "T1"), Names(37, "T1"), {});
  EXPECT_THAT(m_group.subGroups, IsEmpty());
  EXPECT_EQ(m_group.subGroups.capacity(), 37u);
}

TEST_F(GroupedRows, AreNoneWhenIdsAndNamesDifferInNumber) {
  assemble({"T1"}, {}, {{"Left", {"T1"}}});
  assemble({}, {"T1"}, {{"Left", {"T1"}}});
  EXPECT_THAT(m_group.subGroups, IsEmpty());
  EXPECT_EQ(m_group.subGroups.capacity(), 0u);
}

}  // namespace
}  // namespace Kestrel

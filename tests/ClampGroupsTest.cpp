#include <gmock/gmock.h>

#include "support/AllocationFailure.h"
#include "support/TestUnit.h"

namespace Kestrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// Two clamps and a bolt, with a series for every column and one for none.
class ClampGroups : public ::testing::Test {
 protected:
  ClampGroups() {
    m_test.addTool("Clamp 10", ToolForceDataType::clamp,
                   {{"ClampTangentialForce", {4.0, -4.5}},
                    {"ClampClosingForce", {0.0, -12.0, 8.0}},
                    {"ClampNormalForce", {1.0, 2.0}},
                    {"ClampSupportingForce", {-3.0}},
                    {"ClampNormalDisplacement", {0.1, -0.2}},
                    {"ClampTotalVariation", {77.0}},
                    {"ClampTeachingDistanceZ", {0.7}},
                    {"ClampTeachingDistanceX", {0.5}},
                    {"ClampTeachingDistanceY", {-0.6}}});
    m_test.addTool("Bolt 1", ToolForceDataType::bolt,
                   {{"ClampNormalForce", {-50.0}}, {"ClampTeachingDistanceY", {1.5}}});
    m_test.addTool("Clamp 2", ToolForceDataType::clamp, {{"ClampClosingForce", {6.0}}});
  }

  TestUnit m_test;
  SimUnitMaxValuesProvider const m_provider{m_test.unit, {}};
};

Names const forces{"ClampNormalForce", "ClampClosingForce", "ClampSupportingForce", "ClampTangentialForce"};
Names const distances{"ClampNormalDisplacement"};
Names const teaching{"ClampTeachingDistanceX", "ClampTeachingDistanceY", "ClampTeachingDistanceZ"};

TEST_F(ClampGroups, OfClampsAreForcesAndDistances) {
  auto const table = m_provider.genGetMaxValuesCollection(DataType::Clamps);
  EXPECT_EQ(table->dataType, DataType::Clamps);
  EXPECT_EQ(table->simulationUnitId, m_test.unit.getID());
  EXPECT_EQ(table->title, "Clamps");
  EXPECT_EQ(table->unitTitle, "OP20Clamps");
  EXPECT_TRUE(table->isDefaultFamily);
  EXPECT_THAT(table->elementNames, IsEmpty());
  EXPECT_THAT(table->valuesAreValid, IsEmpty());
  EXPECT_EQ(table->invalidValuesText, "");
  EXPECT_EQ(table->invalidValuesNameAppendix, "");

  ASSERT_THAT(table->groups, SizeIs(2));
  EXPECT_EQ(sectionOf(table->groups[0]), (Section{"Forces", false, true, {0, 24, 0, 0}, forces}));
  EXPECT_EQ(sectionOf(table->groups[1]), (Section{"Distances", false, false, {0}, distances}));
  EXPECT_THAT(rowsOf(table->groups[0]), ElementsAre(Row{"", "Clamp 10", {2.0, -12.0, -3.0, -4.5}},
                                                    Row{"", "Clamp 2", {0.0, 6.0, 0.0, 0.0}}));
  EXPECT_THAT(rowsOf(table->groups[1]), ElementsAre(Row{"", "Clamp 10", {-0.2}}, Row{"", "Clamp 2", {0.0}}));
  EXPECT_THAT(table->groups[0].subGroups, SizeIs(2)) << "one sub-group per clamp";
}

TEST_F(ClampGroups, OfBoltsLimitTheNormalForceInstead) {
  auto const table = m_provider.genGetMaxValuesCollection(DataType::Bolts);
  EXPECT_EQ(table->dataType, DataType::Bolts);
  EXPECT_EQ(table->title, "Bolts");
  EXPECT_EQ(table->unitTitle, "OP20Bolts");
  EXPECT_TRUE(table->isDefaultFamily);
  ASSERT_THAT(table->groups, SizeIs(2));
  EXPECT_EQ(sectionOf(table->groups[0]), (Section{"Forces", false, true, {23, 0, 0, 0}, forces}));
  EXPECT_EQ(sectionOf(table->groups[1]), (Section{"Distances", false, false, {0}, distances}));
  EXPECT_THAT(rowsOf(table->groups[0]), ElementsAre(Row{"", "Bolt 1", {-50.0, 0.0, 0.0, 0.0}}));
}

TEST_F(ClampGroups, HaveTeachingAsThirdSectionOnRequest) {
  auto const clamps = m_provider.genGetClampMaxValuesCollection(DataType::Clamps, true);
  ASSERT_THAT(clamps->groups, SizeIs(3));
  EXPECT_EQ(sectionOf(clamps->groups[0]), (Section{"Forces", false, true, {0, 24, 0, 0}, forces}));
  EXPECT_EQ(sectionOf(clamps->groups[1]), (Section{"Distances", false, false, {0}, distances}));
  EXPECT_EQ(sectionOf(clamps->groups[2]), (Section{"Teaching", true, false, {0, 0, 0}, teaching}));
  EXPECT_THAT(rowsOf(clamps->groups[2]),
              ElementsAre(Row{"", "Clamp 10", {0.5, -0.6, 0.7}}, Row{"", "Clamp 2", {0.0, 0.0, 0.0}}));

  auto const bolts = m_provider.genGetClampMaxValuesCollection(DataType::Bolts, true);
  ASSERT_THAT(bolts->groups, SizeIs(3));
  EXPECT_EQ(sectionOf(bolts->groups[0]), (Section{"Forces", false, true, {23, 0, 0, 0}, forces}));
  EXPECT_THAT(rowsOf(bolts->groups[2]), ElementsAre(Row{"", "Bolt 1", {0.0, 1.5, 0.0}}));

  EXPECT_THAT(m_provider.genGetClampMaxValuesCollection(DataType::Clamps, false)->groups, SizeIs(2));
  EXPECT_THAT(m_provider.genGetClampMaxValuesCollection(DataType::Bolts, false)->groups, SizeIs(2));
}

TEST_F(ClampGroups, ServeEveryFamilyButBoltsAsClamps) {
  for (unsigned int const number : {1u, 2u, 3u, 11u, 12u}) {
    auto const table = m_provider.genGetClampMaxValuesCollection(static_cast<DataType>(number), true);
    EXPECT_EQ(static_cast<unsigned int>(table->dataType), number);
    EXPECT_EQ(table->title, "Clamps");
    ASSERT_THAT(table->groups, SizeIs(3));
    EXPECT_THAT(numbersOf(table->groups[0].limitTypes), ElementsAre(0u, 24u, 0u, 0u));
    EXPECT_THAT(rowsOf(table->groups[1]),
                ElementsAre(Row{"", "Clamp 10", {-0.2}}, Row{"", "Clamp 2", {0.0}}));
  }
}

TEST_F(ClampGroups, DoNotDependOnTheResult) {
  auto result = m_test.result();
  SimUnitMaxValuesProvider const provider(m_test.unit, result);
  result.reset();
  auto const table = provider.genGetClampMaxValuesCollection(DataType::Clamps, true);
  ASSERT_THAT(table->groups, SizeIs(3));
  EXPECT_THAT(rowsOf(table->groups[1]), ElementsAre(Row{"", "Clamp 10", {-0.2}}, Row{"", "Clamp 2", {0.0}}));
}

TEST(ClampGroupsOfAUnit, WithoutBoltsLeaveTheBoltTableAlone) {
  TestUnit test;
  test.addTool("Clamp 1", ToolForceDataType::clamp);
  SimUnitMaxValuesProvider const provider(test.unit, {});
  auto const bolts = provider.genGetMaxValuesCollection(DataType::Bolts);
  EXPECT_EQ(bolts->dataType, DataType::Bolts);
  EXPECT_TRUE(isUntouched(*bolts));
  EXPECT_EQ(provider.genGetMaxValuesCollection(DataType::Clamps)->title, "Clamps");
}

TEST(ClampGroupsOfAUnit, WithoutClampsLeaveTheClampTableAlone) {
  TestUnit test;
  test.addTool("Bolt 1", ToolForceDataType::bolt);
  SimUnitMaxValuesProvider const provider(test.unit, {});
  EXPECT_TRUE(isUntouched(*provider.genGetClampMaxValuesCollection(DataType::Clamps, true)));
  EXPECT_EQ(provider.genGetMaxValuesCollection(DataType::Bolts)->title, "Bolts");
}

TEST(ClampGroupsOfAUnit, LetAFailedAllocationOutAndLoseNothing) {
  TestUnit test;
  for (char const* id : {"Clamp 1", "A clamp whose name is longer than a short string"})
    test.addTool(id, ToolForceDataType::clamp, {{"ClampClosingForce", {0.0, -12.0, 8.0}}});
  SimUnitMaxValuesProvider const provider(test.unit, {});
  static_cast<void>(provider.genGetClampMaxValuesCollection(DataType::Clamps, true));
  auto const failures = TestSupport::failEachAllocation(
      [&provider] { return SimUnitMaxValuesProvider(provider); },
      [](SimUnitMaxValuesProvider& subject) {
        static_cast<void>(subject.genGetClampMaxValuesCollection(DataType::Clamps, true));
      },
      [](SimUnitMaxValuesProvider& subject) {
        auto const table = subject.genGetClampMaxValuesCollection(DataType::Clamps, false);
        EXPECT_THAT(rowsOf(table->groups[0])[0], (Row{"", "Clamp 1", {0.0, -12.0, 0.0, 0.0}}));
      });
  EXPECT_GT(failures.count, 20U);
  EXPECT_EQ(failures.swallowed, 0U);
  EXPECT_EQ(failures.leaking, 0U);
}

}  // namespace
}  // namespace Kestrel

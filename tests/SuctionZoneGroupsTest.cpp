#include <gmock/gmock.h>

#include <random>

#include "support/SimUnitMaxValuesProviderTestAccess.h"
#include "support/TestUnit.h"

namespace Kestrel {
namespace {

using Access = SimUnitMaxValuesProviderTestAccess;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;

/// A unit with two zones of which tests add the steps.
class SuctionZoneGroups : public ::testing::Test {
 protected:
  SuctionZoneGroups() {
    m_test.addTool("Z2", ToolForceDataType::suctionZone,
                   {{"SuctionDistance", {0.1, -0.3}},
                    {"SuctionZoneAbsForce", {5.0, 2.0}},
                    {"SuctionZoneForceX", {99.0}}});
    m_test.addTool("Z1", ToolForceDataType::suctionZone, {{"SuctionZoneAbsForce", {-8.0}}});
  }

  void addZone(SimulationStep& step, char id, std::string name, bool active) {
    ASSERT_TRUE(
        step.addSuctionZone(idEndingIn<EvalSuctionZoneGUID>(id), suctionZone(std::move(name), active)));
  }

  std::map<std::string, bool> validity() {
    auto const result = m_test.result();
    return Access::suctionZoneValidity(SimUnitMaxValuesProvider(m_test.unit, result));
  }

  TestUnit m_test;
};

TEST_F(SuctionZoneGroups, AreAForceSectionThatIsNotMarkedAsOne) {
  auto& step = m_test.addStep();
  addZone(step, '1', "Zone A", true);
  addZone(step, '2', "Zone B", false);
  m_test.unit.setVisibleSteps(0, 0);
  auto const result = m_test.result();
  auto const table =
      SimUnitMaxValuesProvider(m_test.unit, result).genGetMaxValuesCollection(DataType::SuctionZones);
  EXPECT_EQ(table->dataType, DataType::SuctionZones);
  EXPECT_EQ(table->simulationUnitId, m_test.unit.getID());
  EXPECT_EQ(table->title, "Suction Zones");
  EXPECT_EQ(table->unitTitle, "OP20Suction Zones");
  EXPECT_TRUE(table->isDefaultFamily);
  EXPECT_THAT(table->elementNames, IsEmpty());
  EXPECT_EQ(table->invalidValuesText, "");
  EXPECT_EQ(table->invalidValuesNameAppendix, "");
  EXPECT_THAT(table->valuesAreValid, ElementsAre(Pair("Zone A", true), Pair("Zone B", false)));
  ASSERT_THAT(table->groups, SizeIs(1));
  EXPECT_EQ(sectionOf(table->groups[0]),
            (Section{"Forces", false, false, {18, 17}, {"SuctionZoneAbsForce", "SuctionDistance"}}));
  EXPECT_THAT(rowsOf(table->groups[0]), ElementsAre(Row{"", "Z2", {5.0, -0.3}}, Row{"", "Z1", {-8.0, 0.0}}));
  EXPECT_THAT(table->groups[0].subGroups, SizeIs(2)) << "one sub-group per zone";
}

TEST_F(SuctionZoneGroups, LeaveTheTableAloneWithoutZones) {
  TestUnit test;
  test.addTool("Clamp 1", ToolForceDataType::clamp);
  addZone(test.addStep(), '1', "Zone A", true);
  test.unit.setVisibleSteps(0, 0);
  auto const result = test.result();
  EXPECT_TRUE(isUntouched(
      *SimUnitMaxValuesProvider(test.unit, result).genGetMaxValuesCollection(DataType::SuctionZones)));
}

TEST_F(SuctionZoneGroups, AreBuiltWithoutValidityWhenNoStepIsVisible) {
  addZone(m_test.addStep(), '1', "Zone A", true);
  auto const result = m_test.result();
  auto const table =
      SimUnitMaxValuesProvider(m_test.unit, result).genGetMaxValuesCollection(DataType::SuctionZones);
  EXPECT_THAT(table->valuesAreValid, IsEmpty());
  EXPECT_THAT(rowsOf(table->groups.at(0)), SizeIs(2));
}

TEST_F(SuctionZoneGroups, AreBuiltWithoutValidityWhenTheResultIsGone) {
  addZone(m_test.addStep(), '1', "Zone A", true);
  m_test.unit.setVisibleSteps(0, 0);
  SimUnitMaxValuesProvider const provider(m_test.unit, m_test.result());
  auto const table = provider.genGetMaxValuesCollection(DataType::SuctionZones);
  EXPECT_THAT(table->valuesAreValid, IsEmpty());
  EXPECT_THAT(rowsOf(table->groups.at(0)), SizeIs(2));
}

TEST_F(SuctionZoneGroups, AreValidOnceTheyWereActive) {
  addZone(m_test.addStep(), '1', "Zone A", false);
  addZone(m_test.addStep(), '1', "Zone A", true);
  addZone(m_test.addStep(), '1', "Zone A", false);
  m_test.unit.setVisibleSteps(0, 2);
  EXPECT_THAT(validity(), ElementsAre(Pair("Zone A", true)));
}

TEST_F(SuctionZoneGroups, AreInvalidWhenActiveOutsideTheVisibleStepsOnly) {
  addZone(m_test.addStep(), '1', "Zone A", true);
  addZone(m_test.addStep(), '1', "Zone A", false);
  addZone(m_test.addStep(), '1', "Zone A", true);
  m_test.unit.setVisibleSteps(1, 1);
  EXPECT_THAT(validity(), ElementsAre(Pair("Zone A", false)));
}

TEST_F(SuctionZoneGroups, AreNeitherWhenNoVisibleStepHasThem) {
  addZone(m_test.addStep(), '1', "Zone A", true);
  addZone(m_test.addStep(), '2', "Zone B", false);
  m_test.unit.setVisibleSteps(1, 1);
  EXPECT_THAT(validity(), ElementsAre(Pair("Zone B", false)));
}

TEST_F(SuctionZoneGroups, AreNeitherWhenTheFirstVisibleStepComesAfterTheLast) {
  for (int i = 0; i < 3; ++i) addZone(m_test.addStep(), '1', "Zone A", true);
  m_test.unit.setVisibleSteps(2, 1);
  EXPECT_THAT(validity(), IsEmpty());
}

TEST_F(SuctionZoneGroups, ThatShareANameAreValidWhenEitherWasActive) {
  for (bool const firstIsActive : {false, true}) {
    auto& step = m_test.addStep();
    addZone(step, '1', "Zone A", firstIsActive);
    addZone(step, '2', "Zone A", !firstIsActive);
  }
  m_test.unit.setVisibleSteps(0, 0);
  EXPECT_THAT(validity(), ElementsAre(Pair("Zone A", true)));
  m_test.unit.setVisibleSteps(1, 1);
  EXPECT_THAT(validity(), ElementsAre(Pair("Zone A", true)));
}

TEST_F(SuctionZoneGroups, SkipStepsWithoutDataAndMissingRecords) {
  m_test.addStepWithoutData();
  m_test.addStep().addSuctionZone(idEndingIn<EvalSuctionZoneGUID>('1'), nullptr);
  addZone(m_test.addStep(), '1', "Zone A", true);
  m_test.unit.setVisibleSteps(0, 0xFFFFFFFF);
  EXPECT_THAT(validity(), ElementsAre(Pair("Zone A", true)));
}

TEST_F(SuctionZoneGroups, AreFoundWhateverTheirOrderInTheSteps) {
  std::mt19937 random(20240613);
  for (int round = 0; round < 300; ++round) {
    TestUnit test;
    std::map<std::string, bool> expected;
    for (unsigned int i = 0; i < 6; ++i) {
      auto& step = test.addStep();
      for (char id = '0'; id < '8'; ++id) {
        if (random() % 4 == 0) continue;
        auto const name = std::string("Zone ") + std::to_string(random() % 5);
        bool const isActive = random() % 4 == 0;
        addZone(step, id, name, isActive);
        if (i >= 1 && i <= 4) expected[name] = expected[name] || isActive;
      }
    }
    test.unit.setVisibleSteps(1, 4);
    auto const result = test.result();
    ASSERT_EQ(Access::suctionZoneValidity(SimUnitMaxValuesProvider(test.unit, result)), expected) << round;
  }
}

}  // namespace
}  // namespace Kestrel

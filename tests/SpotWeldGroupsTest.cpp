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

void addWeld(SimulationStep& step, char guid, std::shared_ptr<SimulationBodyJoin> weld) {
  ASSERT_TRUE(step.addJoin(idEndingIn<EvalJoinGUID>(guid), std::move(weld)));
}

/// A unit with three spot welds of which tests add the steps.
class SpotWeldGroups : public ::testing::Test {
 protected:
  SpotWeldGroups() {
    m_test.addTool("W3", ToolForceDataType::spotWeld, {{"JoinForceN", {3.0}}});
    m_test.addTool("W1", ToolForceDataType::spotWeld,
                   {{"JoinTangentialForce", {99.0}}, {"JoinForceN", {1.0, -1.5}}});
    m_test.unit.setJoinTangentialForce("W1", StepValues<double>(std::vector<double>{0.5, 0.25}));
    m_test.addTool("W2", ToolForceDataType::spotWeld);
  }

  std::shared_ptr<MaxValueGroupContainer> table() {
    m_result = m_test.result();
    return SimUnitMaxValuesProvider(m_test.unit, m_result).genGetMaxValuesCollection(DataType::SpotWelds);
  }

  TestUnit m_test;
  std::shared_ptr<SimulationResult> m_result;
};

TEST_F(SpotWeldGroups, AreOneSectionWithNormalAndTangentialForce) {
  auto& step = m_test.addStep();
  addWeld(step, '1', spotWeld("W1", "Spot 1", 10));
  addWeld(step, '2', spotWeld("W2", "Spot 2", 0));
  addWeld(step, '3', spotWeld("W3", "Spot 3", 3));
  m_test.unit.setVisibleSteps(0, 0);
  auto const table = this->table();
  EXPECT_EQ(table->dataType, DataType::SpotWelds);
  EXPECT_EQ(table->simulationUnitId, m_test.unit.getID());
  EXPECT_EQ(table->title, "Joins");
  EXPECT_EQ(table->unitTitle, "OP20Joins");
  EXPECT_TRUE(table->isDefaultFamily);
  EXPECT_THAT(table->elementNames, ElementsAre("W3", "W1", "W2"));
  EXPECT_THAT(table->valuesAreValid,
              ElementsAre(Pair("Spot 1", false), Pair("Spot 2", true), Pair("Spot 3", true)));
  EXPECT_EQ(table->invalidValuesText, "Joining Failed");
  EXPECT_EQ(table->invalidValuesNameAppendix, " (Joining Failed)");
  ASSERT_THAT(table->groups, SizeIs(1));
  EXPECT_EQ(sectionOf(table->groups[0]),
            (Section{"Forces", false, true, {5, 6}, {"JoinForceN", "JoinTangentialForce"}}));
  EXPECT_THAT(rowsOf(table->groups[0]),
              ElementsAre(Row{"", "Spot 3", {3.0, 0.0}}, Row{"", "Spot 1", {-1.5, 0.5}},
                          Row{"", "Spot 2", {0.0, 0.0}}));
  EXPECT_THAT(table->groups[0].subGroups, SizeIs(3)) << "one sub-group per weld";
}

TEST_F(SpotWeldGroups, LeaveOutWeldsThatNoVisibleStepHas) {
  addWeld(m_test.addStep(), '1', spotWeld("W1", "Spot 1", 0));
  auto& step = m_test.addStep();
  addWeld(step, '1', spotWeld("W2", "Spot 2", 0));
  addWeld(step, '2', spotWeld("W3", "Spot 3", 0));
  addWeld(step, '3', spotWeld("of another unit", "Spot 4", 0));
  m_test.unit.setVisibleSteps(1, 1);
  auto const table = this->table();
  EXPECT_THAT(table->elementNames, ElementsAre("W3", "W2"));
  EXPECT_THAT(table->valuesAreValid, ElementsAre(Pair("Spot 2", true), Pair("Spot 3", true)));
  EXPECT_THAT(rowsOf(table->groups.at(0)),
              ElementsAre(Row{"", "Spot 3", {3.0, 0.0}}, Row{"", "Spot 2", {0.0, 0.0}}));
}

TEST_F(SpotWeldGroups, LeaveTheTableAloneWithoutVisibleSteps) {
  addWeld(m_test.addStep(), '1', spotWeld("W1", "Spot 1", 0));
  EXPECT_TRUE(isUntouched(*table()));
}

TEST_F(SpotWeldGroups, LeaveTheTableAloneWhenNoVisibleStepHasThem) {
  addWeld(m_test.addStep(), '1', spotWeld("w1", "Spot 1", 0));
  m_test.unit.setVisibleSteps(0, 0);
  EXPECT_TRUE(isUntouched(*table()));
}

TEST_F(SpotWeldGroups, LeaveTheTableAloneWhenTheResultIsGone) {
  addWeld(m_test.addStep(), '1', spotWeld("W1", "Spot 1", 0));
  m_test.unit.setVisibleSteps(0, 0);
  SimUnitMaxValuesProvider const provider(m_test.unit, m_test.result());
  EXPECT_TRUE(isUntouched(*provider.genGetMaxValuesCollection(DataType::SpotWelds)));
}

TEST_F(SpotWeldGroups, LeaveTheTableAloneInAUnitWithoutWelds) {
  TestUnit test;
  addWeld(test.addStep(), '1', spotWeld("W1", "Spot 1", 0));
  test.unit.setVisibleSteps(0, 0);
  auto const result = test.result();
  EXPECT_TRUE(isUntouched(
      *SimUnitMaxValuesProvider(test.unit, result).genGetMaxValuesCollection(DataType::SpotWelds)));
}

TEST_F(SpotWeldGroups, AreNamedByTheFirstRecordAndJudgedByTheLast) {
  addWeld(m_test.addStep(), '1', spotWeld("W1", "invisible", 5));
  addWeld(m_test.addStep(), '1', spotWeld("W1", "first", 3));
  addWeld(m_test.addStep(), '1', spotWeld("W1", "last", 9));
  m_test.addStep();
  addWeld(m_test.addStep(), '1', spotWeld("W1", "invisible", 3));
  m_test.unit.setVisibleSteps(1, 3);
  auto const table = this->table();
  EXPECT_THAT(rowsOf(table->groups.at(0)), ElementsAre(Row{"", "first", {-1.5, 0.5}}));
  EXPECT_THAT(table->valuesAreValid, ElementsAre(Pair("last", false)));
}

TEST_F(SpotWeldGroups, AreValidAgainOnceTheLastRecordIs) {
  addWeld(m_test.addStep(), '1', spotWeld("W1", "Spot 1", 9));
  addWeld(m_test.addStep(), '1', spotWeld("W1", "Spot 1", 8));
  m_test.unit.setVisibleSteps(0, 1);
  EXPECT_THAT(table()->valuesAreValid, ElementsAre(Pair("Spot 1", true)));
}

TEST_F(SpotWeldGroups, ThatShareANameShareTheValidityOfTheLaterOne) {
  auto& step = m_test.addStep();
  addWeld(step, '1', spotWeld("W1", "Spot", 3));
  addWeld(step, '2', spotWeld("W2", "Spot", 5));
  m_test.unit.setVisibleSteps(0, 0);
  auto const result = m_test.result();
  SimUnitMaxValuesProvider const provider(m_test.unit, result);
  EXPECT_THAT(Access::pointJoinValidity(provider, {"W1", "W2"}), ElementsAre(Pair("Spot", false)));
  EXPECT_THAT(Access::pointJoinValidity(provider, {"W2", "W1"}), ElementsAre(Pair("Spot", true)));
  EXPECT_THAT(Access::pointJoinValidity(provider, {"unknown", "w1"}), IsEmpty());
  EXPECT_THAT(table()->valuesAreValid, ElementsAre(Pair("Spot", false))) << "W2 comes after W1";
}

TEST_F(SpotWeldGroups, EveryStateOfTheLastRecordCountsAsTheRuleSays) {
  for (unsigned int state = 0; state < 16; ++state) {
    TestUnit test;
    addWeld(test.addStep(), '1', spotWeld("W1", "Spot", state));
    test.unit.setVisibleSteps(0, 0);
    auto const result = test.result();
    SimUnitMaxValuesProvider const provider(test.unit, result);
    bool const isValid = state != 5 && state != 9 && state != 10;
    EXPECT_THAT(Access::pointJoinValidity(provider, {"W1"}), ElementsAre(Pair("Spot", isValid))) << state;
  }
}

TEST_F(SpotWeldGroups, AreShownByThePlainFormOfTheirNames) {
  struct WeldWithForms : SimulationBodyJoin {
    using SimulationBodyJoin::SimulationBodyJoin;
    [[nodiscard]] std::string getName(int form) const override { return "form " + std::to_string(form); }
  };
  addWeld(m_test.addStep(), '1', std::make_shared<WeldWithForms>("W1", "", BodyJoinInterface::JoinState(9)));
  m_test.unit.setVisibleSteps(0, 0);
  auto const table = this->table();
  EXPECT_THAT(rowsOf(table->groups.at(0)), ElementsAre(Row{"", "form 0", {-1.5, 0.5}}));
  EXPECT_THAT(table->valuesAreValid, ElementsAre(Pair("form 0", false)));
}

TEST(PointJoinRecords, ReplaceWhatTheMapHeld) {
  TestUnit const test;
  Access::PointJoinMap joins{{"old", {}}};
  Access::allPointJoins(SimUnitMaxValuesProvider(test.unit, {}), joins);
  EXPECT_THAT(joins, IsEmpty());
}

TEST(PointJoinRecords, AreTheHostsOwn) {
  TestUnit test;
  auto const record = spotWeld("W1", "Spot 1", 0);
  addWeld(test.addStep(), '1', record);
  test.addStepWithoutData();
  test.unit.setVisibleSteps(0, 0xFFFFFFFF);
  auto const result = test.result();
  Access::PointJoinMap joins;
  Access::allPointJoins(SimUnitMaxValuesProvider(test.unit, result), joins);
  EXPECT_THAT(joins, ElementsAre(Pair("W1", ElementsAre(record))));
  EXPECT_EQ(record.use_count(), 3) << "held by the test, the step and the map";
}

TEST(PointJoinRecords, AreFoundWhateverTheirOrderInTheSteps) {
  std::mt19937 random(20240614);
  for (int round = 0; round < 300; ++round) {
    TestUnit test;
    Access::PointJoinMap expected;
    for (unsigned int i = 0; i < 6; ++i) {
      if (random() % 8 == 0) {
        test.addStepWithoutData();
        continue;
      }
      auto& step = test.addStep();
      for (char guid = '0'; guid < '8'; ++guid) {
        if (random() % 4 == 0) continue;
        auto const id = std::string("W") + std::to_string(random() % 6);
        auto const record = random() % 10 == 0 ? nullptr : spotWeld(id, "Spot", i);
        addWeld(step, guid, record);
        if (record && i >= 1 && i <= 4) expected[id].push_back(record);
      }
    }
    test.unit.setVisibleSteps(1, 4);
    auto const result = test.result();
    Access::PointJoinMap joins;
    Access::allPointJoins(SimUnitMaxValuesProvider(test.unit, result), joins);
    ASSERT_EQ(joins, expected) << "round " << round;
  }
}

}  // namespace
}  // namespace Kestrel

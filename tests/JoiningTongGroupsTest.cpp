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

/// A unit with two tongs of which tests add the steps.
class JoiningTongGroups : public ::testing::Test {
 protected:
  JoiningTongGroups() {
    m_test.addTool("T2", ToolForceDataType::joiningTong,
                   {{"JoiningTongClosingForce", {2.0, -20.0}},
                    {"JoiningTongNormalForce", {1.0, 1.5}},
                    {"JoiningTongSupportingForce", {-3.0}},
                    {"JoiningTongGap", {0.2}},
                    {"JoiningTongDistance", {-0.1}},
                    {"JoiningTeachingY", {-0.5}},
                    {"JoiningTeachingX", {0.4}},
                    {"JoiningTeachingZ", {0.6}},
                    {"JoiningTeachingTotalVariation", {99.0}}});
    m_test.addTool("C1", ToolForceDataType::clamp);
    m_test.addTool("T1", ToolForceDataType::joiningTong, {{"JoiningTongNormalForce", {-7.0}}});
  }

  std::shared_ptr<MaxValueGroupContainer> table() {
    m_result = m_test.result();
    return SimUnitMaxValuesProvider(m_test.unit, m_result).genGetMaxValuesCollection(DataType::JoiningTongs);
  }

  /// The names of the rows, which are the same in every section of `table`.
  static Names rowNames(MaxValueGroupContainer const& table) {
    Names names;
    for (auto const& row : rowsOf(table.groups.at(0))) names.push_back(row.name);
    return names;
  }

  TestUnit m_test;
  std::shared_ptr<SimulationResult> m_result;
};

TEST_F(JoiningTongGroups, AreForcesDistancesAndTeaching) {
  auto& step = m_test.addStep();
  step.addJoiningTong(joiningTong("T1", "Tong left", 3));
  step.addJoiningTong(joiningTong("T2", "Tong right", 5));
  m_test.unit.setVisibleSteps(0, 0);
  auto const table = this->table();

  EXPECT_EQ(table->dataType, DataType::JoiningTongs);
  EXPECT_EQ(table->simulationUnitId, m_test.unit.getID());
  EXPECT_EQ(table->title, "Joining Tools");
  EXPECT_EQ(table->unitTitle, "OP20Joining Tools");
  EXPECT_FALSE(table->isDefaultFamily);
  EXPECT_THAT(table->elementNames, ElementsAre("T2", "T1"));
  EXPECT_THAT(table->valuesAreValid, ElementsAre(Pair("Tong left", true), Pair("Tong right", false)));
  EXPECT_EQ(table->invalidValuesText, "Joining Failed");
  EXPECT_EQ(table->invalidValuesNameAppendix, " (Joining Failed)");

  ASSERT_THAT(table->groups, SizeIs(3));
  EXPECT_EQ(sectionOf(table->groups[0]),
            (Section{"Forces",
                     false,
                     true,
                     {1, 0, 0},
                     {"JoiningTongNormalForce", "JoiningTongClosingForce", "JoiningTongSupportingForce"}}));
  EXPECT_EQ(sectionOf(table->groups[1]),
            (Section{"Distances", false, false, {2, 3}, {"JoiningTongDistance", "JoiningTongGap"}}));
  EXPECT_EQ(sectionOf(table->groups[2]),
            (Section{"Teaching",
                     true,
                     false,
                     {11, 12, 13},
                     {"JoiningTeachingX", "JoiningTeachingY", "JoiningTeachingZ"}}));
  EXPECT_THAT(rowsOf(table->groups[0]),
              ElementsAre(Row{"", "Tong right", {1.5, -20.0, -3.0}}, Row{"", "Tong left", {-7.0, 0.0, 0.0}}));
  EXPECT_THAT(rowsOf(table->groups[1]),
              ElementsAre(Row{"", "Tong right", {-0.1, 0.2}}, Row{"", "Tong left", {0.0, 0.0}}));
  EXPECT_THAT(rowsOf(table->groups[2]),
              ElementsAre(Row{"", "Tong right", {0.4, -0.5, 0.6}}, Row{"", "Tong left", {0.0, 0.0, 0.0}}));
  EXPECT_THAT(table->groups[0].subGroups, SizeIs(2)) << "one sub-group per tong";
}

TEST_F(JoiningTongGroups, LeaveTheTableAloneWithoutTongs) {
  TestUnit test;
  test.addTool("C1", ToolForceDataType::clamp);
  test.addStep().addJoiningTong(joiningTong("T1", "Tong", 5));
  test.unit.setVisibleSteps(0, 0);
  auto const result = test.result();
  auto const table =
      SimUnitMaxValuesProvider(test.unit, result).genGetMaxValuesCollection(DataType::JoiningTongs);
  EXPECT_TRUE(isUntouched(*table));
}

void expectTextsWithoutSections(MaxValueGroupContainer const& table) {
  EXPECT_EQ(table.title, "Joining Tools");
  EXPECT_EQ(table.unitTitle, "OP20Joining Tools");
  EXPECT_FALSE(table.isDefaultFamily);
  EXPECT_THAT(table.elementNames, ElementsAre("T2", "T1"));
  EXPECT_EQ(table.invalidValuesText, "Joining Failed");
  EXPECT_EQ(table.invalidValuesNameAppendix, " (Joining Failed)");
  EXPECT_THAT(table.groups, IsEmpty());
}

TEST_F(JoiningTongGroups, HaveTextsOnlyWithoutVisibleSteps) {
  m_test.addStep().addJoiningTong(joiningTong("T1", "Tong left", 5));
  auto const table = this->table();
  expectTextsWithoutSections(*table);
  EXPECT_THAT(table->valuesAreValid, IsEmpty());
}

TEST_F(JoiningTongGroups, HaveTextsAndValidityOnlyWhenTheVisibleStepsHaveNoEnd) {
  m_test.addStep().addJoiningTong(joiningTong("T1", "Tong left", 5));
  m_test.unit.setVisibleSteps(0, 0xFFFFFFFF);
  auto const table = this->table();
  expectTextsWithoutSections(*table);
  EXPECT_THAT(table->valuesAreValid, ElementsAre(Pair("Tong left", false)));
}

TEST_F(JoiningTongGroups, HaveTextsOnlyWhenNoVisibleStepHasTongs) {
  m_test.addStep().addJoiningTong(joiningTong("T1", "Tong left", 5));
  m_test.addStep();
  m_test.addStepWithoutData();
  m_test.addStep().addJoiningTong(joiningTong("T1", "Tong left", 5));
  m_test.unit.setVisibleSteps(1, 2);
  auto const table = this->table();
  expectTextsWithoutSections(*table);
  EXPECT_THAT(table->valuesAreValid, IsEmpty());
}

TEST_F(JoiningTongGroups, HaveTextsOnlyWhenTheFirstVisibleStepComesAfterTheLast) {
  for (int i = 0; i < 3; ++i) m_test.addStep().addJoiningTong(joiningTong("T1", "Tong left", 5));
  m_test.unit.setVisibleSteps(2, 1);
  auto const table = this->table();
  expectTextsWithoutSections(*table);
  EXPECT_THAT(table->valuesAreValid, IsEmpty());
}

TEST_F(JoiningTongGroups, HaveTextsOnlyWhenTheResultIsGone) {
  m_test.addStep().addJoiningTong(joiningTong("T1", "Tong left", 5));
  m_test.unit.setVisibleSteps(0, 0);
  SimUnitMaxValuesProvider const provider(m_test.unit, m_test.result());
  auto const table = provider.genGetMaxValuesCollection(DataType::JoiningTongs);
  expectTextsWithoutSections(*table);
  EXPECT_THAT(table->valuesAreValid, IsEmpty());
}

TEST_F(JoiningTongGroups, AreNamedByTheFirstVisibleStepWithTongs) {
  m_test.addStep().addJoiningTong(joiningTong("T1", "invisible", 0));
  m_test.addStep();
  m_test.addStepWithoutData();
  auto& reference = m_test.addStep();
  reference.addJoiningTong(joiningTong("T1", "one", 0));
  reference.addJoiningTong(joiningTong("T2", "two", 0));
  auto& last = m_test.addStep();
  last.addJoiningTong(joiningTong("T1", "one, renamed", 0));
  last.addJoiningTong(joiningTong("T2", "two, renamed", 0));
  m_test.unit.setVisibleSteps(1, 4);
  EXPECT_THAT(rowNames(*table()), ElementsAre("two", "one"));
}

TEST_F(JoiningTongGroups, ShowTheStringIdOfATongThatTheNamingStepLacks) {
  m_test.addStep().addJoiningTong(joiningTong("T1", "one", 0));
  m_test.addStep().addJoiningTong(joiningTong("T2", "two", 9));
  m_test.unit.setVisibleSteps(0, 1);
  auto const table = this->table();
  EXPECT_THAT(rowNames(*table), ElementsAre("T2", "one"));
  EXPECT_THAT(table->valuesAreValid, ElementsAre(Pair("one", true), Pair("two", false)));
}

TEST_F(JoiningTongGroups, AreNamedByAStepWhoseTongsAreAllMissing) {
  m_test.addStep().addJoiningTong(nullptr);
  m_test.addStep().addJoiningTong(joiningTong("T1", "one", 0));
  m_test.unit.setVisibleSteps(0, 1);
  auto const table = this->table();
  EXPECT_THAT(rowNames(*table), ElementsAre("T2", "T1"));
  EXPECT_THAT(table->valuesAreValid, ElementsAre(Pair("one", true)));
}

TEST_F(JoiningTongGroups, OnlyTheLastVisibleRecordDecidesWhetherATongIsValid) {
  auto& first = m_test.addStep();
  first.addJoiningTong(joiningTong("T1", "one", 9));
  first.addJoiningTong(joiningTong("T2", "two", 3));
  auto& second = m_test.addStep();
  second.addJoiningTong(joiningTong("T1", "one", 3));
  second.addJoiningTong(joiningTong("T2", "two", 10));
  m_test.addStep();
  m_test.addStep().addJoiningTong(joiningTong("T1", "one", 5));
  m_test.unit.setVisibleSteps(0, 2);
  EXPECT_THAT(table()->valuesAreValid, ElementsAre(Pair("one", true), Pair("two", false)));
}

TEST_F(JoiningTongGroups, OfTongsThatShareANameTheLaterOneDecides) {
  auto& step = m_test.addStep();
  step.addJoiningTong(joiningTong("T1", "Tong", 3));
  step.addJoiningTong(joiningTong("T2", "Tong", 5));
  m_test.unit.setVisibleSteps(0, 0);
  m_result = m_test.result();
  SimUnitMaxValuesProvider const provider(m_test.unit, m_result);
  EXPECT_THAT(Access::joiningTongValidity(provider, {"T1", "T2"}), ElementsAre(Pair("Tong", false)));
  EXPECT_THAT(Access::joiningTongValidity(provider, {"T2", "T1"}), ElementsAre(Pair("Tong", true)));
}

TEST_F(JoiningTongGroups, ValidityIsTheOneUnderTheNameOfTheLastRecord) {
  m_test.addStep().addJoiningTong(joiningTong("T1", "old", 9));
  m_test.addStep().addJoiningTong(joiningTong("T1", "new", 3));
  m_test.unit.setVisibleSteps(0, 1);
  EXPECT_THAT(table()->valuesAreValid, ElementsAre(Pair("new", true)));
}

TEST_F(JoiningTongGroups, TongsThatNoVisibleStepHasAreNeitherValidNorInvalid) {
  m_test.addStep().addJoiningTong(joiningTong("T1", "one", 0));
  m_test.unit.setVisibleSteps(0, 0);
  m_result = m_test.result();
  SimUnitMaxValuesProvider const provider(m_test.unit, m_result);
  EXPECT_THAT(Access::joiningTongValidity(provider, {"T2", "t1", "unknown"}), IsEmpty());
  EXPECT_THAT(Access::joiningTongValidity(provider, {}), IsEmpty());
}

TEST_F(JoiningTongGroups, FailedStatesAreFiveNineAndTen) {
  SimUnitMaxValuesProvider const provider(m_test.unit, {});
  std::vector<unsigned int> failed;
  for (unsigned int state = 0; state < 1000; ++state) {
    if (!Access::joinIsValid(provider, BodyJoinInterface::JoinState(state))) failed.push_back(state);
  }
  EXPECT_THAT(failed, ElementsAre(5u, 9u, 10u));
  EXPECT_TRUE(Access::joinIsValid(provider, BodyJoinInterface::JoinState(0xFFFFFFFF)));
}

TEST_F(JoiningTongGroups, EveryStateOfTheLastRecordCountsAsTheRuleSays) {
  for (unsigned int state = 0; state < 16; ++state) {
    TestUnit test;
    test.addStep().addJoiningTong(joiningTong("T1", "one", state));
    test.unit.setVisibleSteps(0, 0);
    auto const result = test.result();
    SimUnitMaxValuesProvider const provider(test.unit, result);
    bool const isValid = state != 5 && state != 9 && state != 10;
    EXPECT_THAT(Access::joiningTongValidity(provider, {"T1"}), ElementsAre(Pair("one", isValid))) << state;
  }
}

// --- the records of the visible steps ----------------------------------------------------------------------

TEST(JoiningTongRecords, ReplaceWhatTheMapHeld) {
  TestUnit const test;
  Access::JoiningTongMap tongs{{"old", {}}};
  Access::allJoiningTongs(SimUnitMaxValuesProvider(test.unit, {}), tongs);
  EXPECT_THAT(tongs, IsEmpty());
}

TEST(JoiningTongRecords, AreThoseOfTheVisibleStepsInOrder) {
  TestUnit test;
  std::vector<std::shared_ptr<EvalJoiningTong>> records;
  for (unsigned int i = 0; i < 5; ++i) {
    records.push_back(joiningTong("T1", "Tong", i));
    test.addStep().addJoiningTong(records.back());
  }
  test.unit.setVisibleSteps(1, 3);
  auto const result = test.result();
  Access::JoiningTongMap tongs;
  Access::allJoiningTongs(SimUnitMaxValuesProvider(test.unit, result), tongs);
  EXPECT_THAT(tongs, ElementsAre(Pair("T1", ElementsAre(records[1], records[2], records[3]))));
  EXPECT_EQ(records[1].use_count(), 3) << "held by the test, the step and the map";
}

TEST(JoiningTongRecords, BeyondTheResultAreNothingToCollect) {
  TestUnit test;
  auto const record = joiningTong("T1", "Tong", 0);
  test.addStep().addJoiningTong(record);
  test.addStepWithoutData();
  auto const result = test.result();
  SimUnitMaxValuesProvider const provider(test.unit, result);
  Access::JoiningTongMap tongs;
  for (unsigned int const last : {1u, 2u, 0xFFFFFFFEu, 0xFFFFFFFFu}) {
    test.unit.setVisibleSteps(0, last);
    Access::allJoiningTongs(provider, tongs);
    EXPECT_THAT(tongs, ElementsAre(Pair("T1", ElementsAre(record)))) << last;
  }
  test.unit.setVisibleSteps(0xFFFFFFFE, 0xFFFFFFFF);
  Access::allJoiningTongs(provider, tongs);
  EXPECT_THAT(tongs, IsEmpty());
}

TEST(JoiningTongRecords, AreFoundWhateverTheirOrderInTheSteps) {
  std::mt19937 random(20240612);
  for (int round = 0; round < 300; ++round) {
    TestUnit test;
    Access::JoiningTongMap expected;
    for (unsigned int i = 0; i < 6; ++i) {
      if (random() % 8 == 0) {
        test.addStepWithoutData();
        continue;
      }
      auto& step = test.addStep();
      for (auto tongs = random() % 8; tongs > 0; --tongs) {
        // Repeated identifiers, new and missing ones, and null records among them.
        auto const id = std::string("T") + std::to_string(random() % 6);
        auto const record = random() % 10 == 0 ? nullptr : joiningTong(id, "Tong", i);
        step.addJoiningTong(record);
        if (record && i >= 1 && i <= 4) expected[id].push_back(record);
      }
    }
    test.unit.setVisibleSteps(1, 4);
    auto const result = test.result();
    Access::JoiningTongMap tongs;
    Access::allJoiningTongs(SimUnitMaxValuesProvider(test.unit, result), tongs);
    ASSERT_EQ(tongs, expected) << "round " << round;
  }
}

}  // namespace
}  // namespace Kestrel

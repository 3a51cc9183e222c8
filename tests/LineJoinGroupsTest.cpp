#include <gmock/gmock.h>

#include <functional>
#include <limits>
#include <optional>
#include <random>

#include "Business_Skin/Skin.h"
#include "Business_TableProperties/NaturalStringCompare.h"
#include "support/SimUnitMaxValuesProviderTestAccess.h"
#include "support/TestUnit.h"

namespace Kestrel {
namespace {

using Access = SimUnitMaxValuesProviderTestAccess;
using Definition = EvalSimulationUnitJoinGUID;
using LineJoin = std::shared_ptr<SimulationBodyLineJoin>;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

LineJoin withRange(LineJoin join, std::string const& variable, std::optional<double> minimum,
                   std::optional<double> maximum) {
  join->setSkin(SkinKey(variable, 0, "", ""), std::make_shared<Skin<double>>(minimum, maximum));
  return join;
}

void addLineJoin(SimulationStep& step, char guid, LineJoin join) {
  ASSERT_TRUE(step.addLineJoin(idEndingIn<EvalLineJoinGUID>(guid), std::move(join)));
}

/// A unit of which tests add the steps.
class LineJoinGroups : public ::testing::Test {
 protected:
  std::shared_ptr<MaxValueGroupContainer> table(DataType dataType) {
    m_result = m_test.result();
    return SimUnitMaxValuesProvider(m_test.unit, m_result).genGetMaxValuesCollection(dataType);
  }

  TestUnit m_test;
  std::shared_ptr<SimulationResult> m_result;
};

TEST_F(LineJoinGroups, OfLineWeldsAreTheirSummedForcesWithoutLimits) {
  auto& first = m_test.addStep();
  addLineJoin(first, '1', withRange(lineJoin("id 10", "lj 10", 0), "LineJoinSumForceN", -12.5, 7.0));
  addLineJoin(first, '2', withRange(lineJoin("id 2", "LJ 2", 0), "LineJoinSumForceT", -7.0, 7.0));
  auto& second = m_test.addStep();
  addLineJoin(second, '1', withRange(lineJoin("id 10", "lj 10", 9), "LineJoinSumForceN", -1.0, 12.0));
  addLineJoin(second, '2', withRange(lineJoin("id 2", "LJ 2", 0), "LineJoinSumForceT", 1.0, 7.5));
  addLineJoin(second, '3', withRange(lineJoin("id 1", "LJ 1", 3), "LineJoinGap", 1.0, 2.0));
  m_test.unit.setVisibleSteps(0, 1);
  auto const table = this->table(DataType::LineWelds);
  EXPECT_EQ(table->dataType, DataType::LineWelds);
  EXPECT_EQ(table->simulationUnitId, m_test.unit.getID());
  EXPECT_EQ(table->title, "Line Joins");
  EXPECT_EQ(table->unitTitle, "OP20Line Joins");
  EXPECT_TRUE(table->isDefaultFamily);
  EXPECT_THAT(table->elementNames, ElementsAre("id 1", "id 2", "id 10"));
  EXPECT_THAT(table->valuesAreValid,
              ElementsAre(Pair("LJ 1", true), Pair("LJ 2", true), Pair("lj 10", false)));
  EXPECT_EQ(table->invalidValuesText, "Joining Failed");
  EXPECT_EQ(table->invalidValuesNameAppendix, " (Joining Failed)");
  ASSERT_THAT(table->groups, SizeIs(1));
  EXPECT_EQ(sectionOf(table->groups[0]),
            (Section{"Values", false, false, {0, 0}, {"LineJoinSumForceN", "LineJoinSumForceT"}}));
  EXPECT_THAT(rowsOf(table->groups[0]), ElementsAre(Row{"", "LJ 1", {0.0, 0.0}}, Row{"", "LJ 2", {0.0, 7.5}},
                                                    Row{"", "lj 10", {-12.5, 0.0}}));
  EXPECT_THAT(table->groups[0].subGroups, SizeIs(3)) << "one sub-group per line join";
}

TEST_F(LineJoinGroups, OfLineJoiningToolsAreDistanceAndGapOfTheUnitsOwnJoins) {
  m_test.unit.addJoinDefinedInSimUnit(idEndingIn<Definition>('a'));
  m_test.unit.addJoinDefinedInSimUnit(idEndingIn<Definition>('b'));
  auto& step = m_test.addStep();
  auto const own = lineJoin("id 1", "LJ 1", 5, idEndingIn<Definition>('b'));
  withRange(own, "LineJoinDistToInput", 0.1, 0.2);
  addLineJoin(step, '1', withRange(own, "LineJoinGap", -0.4, 0.3));
  addLineJoin(step, '2',
              withRange(lineJoin("id 2", "LJ 2", 0, idEndingIn<Definition>('c')), "LineJoinGap", 1.0, 2.0));
  m_test.unit.setVisibleSteps(0, 0);
  auto const table = this->table(DataType::LineJoiningTools);
  EXPECT_EQ(table->dataType, DataType::LineJoiningTools);
  EXPECT_EQ(table->simulationUnitId, m_test.unit.getID());
  EXPECT_EQ(table->title, "Line Joining Tools");
  EXPECT_EQ(table->unitTitle, "OP20Line Joining Tools");
  EXPECT_TRUE(table->isDefaultFamily);
  EXPECT_THAT(table->elementNames, ElementsAre("id 1"));
  EXPECT_THAT(table->valuesAreValid, ElementsAre(Pair("LJ 1", false)));
  EXPECT_EQ(table->invalidValuesText, "Joining Failed");
  EXPECT_EQ(table->invalidValuesNameAppendix, " (Joining Failed)");
  ASSERT_THAT(table->groups, SizeIs(1));
  EXPECT_EQ(sectionOf(table->groups[0]),
            (Section{"Values", false, false, {4, 9}, {"LineJoinDistToInput", "LineJoinGap"}}));
  EXPECT_THAT(rowsOf(table->groups[0]), ElementsAre(Row{"", "LJ 1", {0.2, -0.4}}));
}

TEST_F(LineJoinGroups, OfLineJoiningToolsAreTheUnitsOwnJoinsThoughJoinsComeAndGo) {
  auto const own = idEndingIn<Definition>('a');
  auto const other = idEndingIn<Definition>('c');
  m_test.unit.addJoinDefinedInSimUnit(own);
  auto& first = m_test.addStep();
  addLineJoin(first, '1', withRange(lineJoin("id 1", "LJ 1", 0, own), "LineJoinGap", 0.5, 0.5));
  addLineJoin(first, '2', withRange(lineJoin("id 2", "LJ 2", 0, other), "LineJoinGap", 9.0, 9.0));
  auto& second = m_test.addStep();
  addLineJoin(second, '2', withRange(lineJoin("id 2", "LJ 2", 0, other), "LineJoinGap", 9.0, 9.0));
  addLineJoin(second, '3', withRange(lineJoin("id 3", "LJ 3", 0, own), "LineJoinGap", 0.25, 0.25));
  addLineJoin(second, '4', withRange(lineJoin("id 4", "LJ 4", 0, other), "LineJoinGap", 9.0, 9.0));
  auto& third = m_test.addStep();
  addLineJoin(third, '3', withRange(lineJoin("id 3", "LJ 3", 0, own), "LineJoinGap", -0.75, 0.0));
  m_test.unit.setVisibleSteps(0, 2);
  auto const table = this->table(DataType::LineJoiningTools);
  ASSERT_THAT(table->groups, SizeIs(1));
  EXPECT_THAT(rowsOf(table->groups[0]),
              ElementsAre(Row{"", "LJ 1", {0.0, 0.5}}, Row{"", "LJ 3", {0.0, -0.75}}));
}

TEST_F(LineJoinGroups, LeaveTheTablesAloneWithoutLineJoins) {
  addLineJoin(m_test.addStep(), '1', lineJoin("id 1", "LJ 1", 0));
  EXPECT_TRUE(isUntouched(*table(DataType::LineWelds))) << "no visible steps";
  EXPECT_TRUE(isUntouched(*table(DataType::LineJoiningTools))) << "no visible steps";
  m_test.unit.setVisibleSteps(0, 0);
  EXPECT_TRUE(isUntouched(*table(DataType::LineJoiningTools))) << "none is defined in the unit";
  EXPECT_FALSE(isUntouched(*table(DataType::LineWelds)));
  m_test.addStep();
  m_test.unit.setVisibleSteps(1, 1);
  EXPECT_TRUE(isUntouched(*table(DataType::LineWelds))) << "no line joins in the visible step";
}

TEST_F(LineJoinGroups, LeaveTheTablesAloneWhenTheResultIsGone) {
  m_test.unit.addJoinDefinedInSimUnit(Definition());
  addLineJoin(m_test.addStep(), '1', lineJoin("id 1", "LJ 1", 0));
  m_test.unit.setVisibleSteps(0, 0);
  SimUnitMaxValuesProvider const provider(m_test.unit, m_test.result());
  EXPECT_TRUE(isUntouched(*provider.genGetMaxValuesCollection(DataType::LineWelds)));
  EXPECT_TRUE(isUntouched(*provider.genGetMaxValuesCollection(DataType::LineJoiningTools)));
}

TEST_F(LineJoinGroups, MergeJoinsOfOneDisplayName) {
  addLineJoin(m_test.addStep(), '1',
              withRange(lineJoin("invisible", "LJ 1", 0), "LineJoinSumForceN", 0.0, 99.0));
  addLineJoin(m_test.addStep(), '2', withRange(lineJoin("first", "LJ 1", 5), "LineJoinSumForceN", 0.0, 1.0));
  addLineJoin(m_test.addStep(), '3', withRange(lineJoin("last", "LJ 1", 3), "LineJoinSumForceN", 0.0, 2.0));
  m_test.unit.setVisibleSteps(1, 2);
  auto const table = this->table(DataType::LineWelds);
  EXPECT_THAT(table->elementNames, ElementsAre("first"));
  EXPECT_THAT(table->valuesAreValid, ElementsAre(Pair("LJ 1", true)));
  EXPECT_THAT(rowsOf(table->groups.at(0)), ElementsAre(Row{"", "LJ 1", {2.0, 0.0}}));
}

TEST_F(LineJoinGroups, ShowTheFirstOfEqualNamesAndJudgeUnderTheLast) {
  addLineJoin(m_test.addStep(), '1', lineJoin("first", "LJ 1", 0));
  addLineJoin(m_test.addStep(), '1', lineJoin("last", "lj1", 9));
  m_test.unit.setVisibleSteps(0, 1);
  auto const table = this->table(DataType::LineWelds);
  EXPECT_THAT(rowsOf(table->groups.at(0)), ElementsAre(Row{"", "LJ 1", {0.0, 0.0}}));
  EXPECT_THAT(table->valuesAreValid, ElementsAre(Pair("lj1", false)));
}

TEST_F(LineJoinGroups, SkipStepsWithoutDataAndMissingRecords) {
  m_test.unit.addJoinDefinedInSimUnit(Definition());
  m_test.addStepWithoutData();
  auto& step = m_test.addStep();
  addLineJoin(step, '1', nullptr);
  addLineJoin(step, '2', withRange(lineJoin("id", "LJ", 0), "LineJoinGap", 0.5, 1.0));
  m_test.unit.setVisibleSteps(0, 0xFFFFFFFF);
  EXPECT_THAT(rowsOf(table(DataType::LineJoiningTools)->groups.at(0)),
              ElementsAre(Row{"", "LJ", {0.0, 1.0}}));
  EXPECT_THAT(rowsOf(table(DataType::LineWelds)->groups.at(0)), ElementsAre(Row{"", "LJ", {0.0, 0.0}}));
}

// --- one value ---------------------------------------------------------------------------------------------

/// The value of the column V of a line join with some records.
class LineJoinValue : public ::testing::Test {
 protected:
  double value(std::vector<LineJoin> records) {
    MaxValueGroup group;
    Access::assembleLineWeldGroup(m_provider, {{"V", 0}}, {{"LJ", std::move(records)}}, group);
    return rowsOf(group).at(0).maxValues.at(0);
  }
  static LineJoin record(std::optional<double> minimum, std::optional<double> maximum) {
    return withRange(lineJoin("id", "LJ", 0), "V", minimum, maximum);
  }

  TestUnit m_test;
  SimUnitMaxValuesProvider m_provider{m_test.unit, {}};
};

TEST_F(LineJoinValue, IsTheRangeValueOfGreaterMagnitude) {
  EXPECT_EQ(value({record(-12.5, 7.0)}), -12.5);
  EXPECT_EQ(value({record(-1.0, 7.0)}), 7.0);
  EXPECT_EQ(value({record(2.0, 3.0)}), 3.0);
  EXPECT_EQ(value({record(-3.0, -2.0)}), -3.0);
}

TEST_F(LineJoinValue, IsTheSecondOfRangeValuesOfEqualMagnitude) {
  EXPECT_EQ(value({record(-7.0, 7.0)}), 7.0);
  EXPECT_EQ(value({record(7.0, -7.0)}), -7.0);
}

TEST_F(LineJoinValue, OfEqualMagnitudesInDifferentStepsIsTheFirst) {
  EXPECT_EQ(value({record(0.0, 2.0), record(-2.0, 0.0)}), 2.0);
  EXPECT_EQ(value({record(-2.0, 0.0), record(0.0, 2.0)}), -2.0);
}

TEST_F(LineJoinValue, IsTakenOverAllRecords) {
  EXPECT_EQ(value({record(0.0, 1.0), record(-4.0, 0.0), record(0.0, 3.0)}), -4.0);
}

TEST_F(LineJoinValue, NeedsBothRangeValues) {
  EXPECT_EQ(value({record(-9.0, std::nullopt), record(0.0, 1.0), record(std::nullopt, 9.0)}), 1.0);
  EXPECT_EQ(value({record(std::nullopt, std::nullopt)}), 0.0);
}

TEST_F(LineJoinValue, NeedsASkinOfNumbersUnderTheVariablesName) {
  auto const ofOtherType = lineJoin("id", "LJ", 0);
  ofOtherType->setSkin(SkinKey("V", 0, "", ""), std::make_shared<Skin<int>>(-9, 9));
  auto const withoutSkin = lineJoin("id", "LJ", 0);
  withoutSkin->setSkin(SkinKey("V", 0, "", ""), nullptr);
  auto const ofAnotherKey = lineJoin("id", "LJ", 0);
  for (auto const& key :
       {SkinKey("W", 0, "", ""), SkinKey("V", 1, "", ""), SkinKey("V", 0, "a", ""), SkinKey("V", 0, "", "a")})
    ofAnotherKey->setSkin(key, std::make_shared<Skin<double>>(-9.0, 9.0));
  EXPECT_EQ(value({record(0.0, 1.0), ofOtherType, withoutSkin, ofAnotherKey}), 1.0);
}

TEST_F(LineJoinValue, IsZeroWithoutAnyUsableRecord) {
  EXPECT_EQ(value({}), 0.0);
  EXPECT_EQ(value({nullptr, lineJoin("id", "LJ", 0)}), 0.0);
}

TEST_F(LineJoinValue, IsNeverNotANumber) {
  EXPECT_EQ(value({record(nan, 1.0)}), 1.0);
  EXPECT_EQ(value({record(5.0, nan)}), 0.0) << "the second range value is the candidate, and not a number";
  EXPECT_EQ(value({record(nan, nan), record(0.5, 0.25)}), 0.5);
}

TEST_F(LineJoinValue, AsksTheComparatorWithTheCurrentValueFirst) {
  std::vector<std::pair<double, double>> calls;
  Access::compare(m_provider) = [&calls](double current, double candidate) {
    calls.emplace_back(current, candidate);
    return candidate < 3.0;
  };
  EXPECT_EQ(value({record(0.0, 1.0), record(0.0, 4.0), record(-2.0, 0.0)}), -2.0);
  EXPECT_THAT(calls, ElementsAre(Pair(0.0, 1.0), Pair(1.0, 4.0), Pair(1.0, -2.0)));
}

TEST_F(LineJoinValue, WithoutAComparatorIsAnError) {
  Access::compare(m_provider) = nullptr;
  EXPECT_THROW(value({record(0.0, 1.0)}), std::bad_function_call);
}

TEST_F(LineJoinValue, StandsInTheColumnThatTheMapGivesIt) {
  auto const join = record(0.0, 1.0);
  withRange(join, "A", 0.0, 2.0);
  withRange(join, "B", 0.0, 3.0);
  MaxValueGroup group;
  Access::assembleLineWeldGroup(m_provider, {{"A", 2}, {"B", 0}, {"V", 1}}, {{"LJ", {join}}}, group);
  Access::assembleLineWeldGroup(m_provider, {{"A", 2}, {"B", 0}}, {{"beyond", {join}}}, group);
  EXPECT_THAT(rowsOf(group), ElementsAre(Row{"", "LJ", {3.0, 1.0, 2.0}}, Row{"", "beyond", {3.0, 0.0}}));
}

// --- the records of the visible steps ----------------------------------------------------------------------

TEST(LineJoinRecords, ReplaceWhatTheMapHeld) {
  TestUnit const test;
  SimUnitMaxValuesProvider const provider(test.unit, {});
  Access::LineJoinMap lineJoins{{"old", {}}};
  Access::allLineJoins(provider, lineJoins);
  EXPECT_THAT(lineJoins, IsEmpty());
  lineJoins = {{"old", {}}};
  Access::lineJoinsOfTheUnit(provider, lineJoins);
  EXPECT_THAT(lineJoins, IsEmpty());
}

TEST(LineJoinRecords, AreTheHostsOwn) {
  TestUnit test;
  test.unit.addJoinDefinedInSimUnit(Definition());
  auto const record = lineJoin("id", "LJ 1", 0);
  addLineJoin(test.addStep(), '1', record);
  test.unit.setVisibleSteps(0, 0);
  auto const result = test.result();
  SimUnitMaxValuesProvider const provider(test.unit, result);
  Access::LineJoinMap lineJoins;
  Access::allLineJoins(provider, lineJoins);
  EXPECT_THAT(lineJoins, ElementsAre(Pair("LJ 1", ElementsAre(record))));
  EXPECT_EQ(record.use_count(), 3) << "held by the test, the step and the map";
  Access::lineJoinsOfTheUnit(provider, lineJoins);
  EXPECT_THAT(lineJoins, ElementsAre(Pair("LJ 1", ElementsAre(record))));
}

TEST(LineJoinRecords, GiveIdsAndValidityWhereThereAreAny) {
  TestUnit const test;
  SimUnitMaxValuesProvider const provider(test.unit, {});
  Access::LineJoinMap const lineJoins{
      {"LJ 10", {lineJoin("ten", "LJ 10", 9), lineJoin("ten, later", "lj 10", 8)}},
      {"LJ 2", {lineJoin("two", "LJ 2", 8), lineJoin("two, later", "LJ 2", 10)}},
      {"LJ 3", {}},
      {"LJ 4", {nullptr}},
      {"LJ 5", {lineJoin("five", "LJ 5", 5), nullptr}}};
  EXPECT_THAT(Access::lineJoinIds(provider, lineJoins), ElementsAre("two", "five", "ten"));
  EXPECT_THAT(Access::lineJoinValidity(provider, lineJoins),
              ElementsAre(Pair("LJ 2", false), Pair("lj 10", true)));
}

TEST(LineJoinRecords, EveryStateOfTheLastRecordCountsAsTheRuleSays) {
  TestUnit const test;
  SimUnitMaxValuesProvider const provider(test.unit, {});
  for (unsigned int state = 0; state < 16; ++state) {
    bool const isValid = state != 5 && state != 9 && state != 10;
    EXPECT_THAT(Access::lineJoinValidity(provider, {{"LJ", {lineJoin("id", "LJ", state)}}}),
                ElementsAre(Pair("LJ", isValid)))
        << state;
  }
}

TEST(LineJoinRecords, AreFoundWhateverTheirOrderInTheSteps) {
  std::mt19937 random(20240617);
  for (int round = 0; round < 300; ++round) {
    TestUnit test;
    test.unit.addJoinDefinedInSimUnit(idEndingIn<Definition>('1'));
    test.unit.addJoinDefinedInSimUnit(idEndingIn<Definition>('3'));
    Access::LineJoinMap all;
    Access::LineJoinMap ofTheUnit;
    for (unsigned int i = 0; i < 6; ++i) {
      if (random() % 8 == 0) {
        test.addStepWithoutData();
        continue;
      }
      auto& step = test.addStep();
      for (char guid = '0'; guid < '8'; ++guid) {
        if (random() % 4 == 0) continue;
        auto const name = std::string(random() % 2 == 0 ? "LJ " : "lj") + std::to_string(random() % 6);
        char const definition = static_cast<char>('0' + random() % 4);
        auto const record =
            random() % 10 == 0 ? nullptr : lineJoin("id", name, i, idEndingIn<Definition>(definition));
        addLineJoin(step, guid, record);
        if (!record || i < 1 || i > 4) continue;
        all[name].push_back(record);
        if (definition == '1' || definition == '3') ofTheUnit[name].push_back(record);
      }
    }
    test.unit.setVisibleSteps(1, 4);
    auto const result = test.result();
    SimUnitMaxValuesProvider const provider(test.unit, result);
    Access::LineJoinMap lineJoins;
    Access::allLineJoins(provider, lineJoins);
    ASSERT_EQ(lineJoins, all) << "round " << round;
    Access::lineJoinsOfTheUnit(provider, lineJoins);
    ASSERT_EQ(lineJoins, ofTheUnit) << "round " << round;
  }
}

}  // namespace
}  // namespace Kestrel

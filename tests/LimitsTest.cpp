#include "result_tables/limits/Limits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "result_tables/base/Error.h"
#include "result_tables/results/UnitSelection.h"
#include "support/LimitsTesting.h"
#include "support/LimitsWriter.h"

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;
using enum TablePropertyLimitType;

/// The default limits of a file of three units: OP20, OP10, OP20.
class LimitsTest : public testing::Test {
 protected:
  [[nodiscard]] std::vector<ResultsUnit const*> units(std::vector<std::string> const& wanted) const {
    return selectUnits(m_file, wanted);
  }
  [[nodiscard]] double limitOf(char const* unit, TablePropertyLimitType type) const {
    return m_limits->getLimit(unitId(unit), type)->getLimit();
  }
  /// The limits of a document that has brought some along.
  [[nodiscard]] std::shared_ptr<TablePropertiesData> limitsWith(std::vector<WrittenLimit> const& some) const {
    auto limits = loadDocument<TablePropertiesData>(LimitsWriter{.limits = some}.genDocument());
    limits->updateLimits(unitIdsOf(m_file));
    return limits;
  }

  ResultsFile const m_file = readResults("r.json", s_resultsOfThreeUnits);
  std::shared_ptr<TablePropertiesData> const m_limits = genDefaultLimits(m_file);
};

TEST_F(LimitsTest, AreThoseOfEachUnitOfTheFile) {
  EXPECT_THAT(unitIdsOf(m_file), ElementsAre(unitId(s_firstUnit), unitId(s_secondUnit), unitId(s_thirdUnit)));
  EXPECT_EQ(m_limits->getChildCount(), 48U);
  EXPECT_EQ(limitOf(s_thirdUnit, BoltNormalForce), 30.0);
}

TEST_F(LimitsTest, AreSetInTheUnitsThatAreNamed) {
  setLimits(*m_limits, units({"OP20"}), BoltNormalForce, 45.5);
  EXPECT_EQ(limitOf(s_firstUnit, BoltNormalForce), 45.5);
  EXPECT_EQ(limitOf(s_secondUnit, BoltNormalForce), 30.0);
  EXPECT_EQ(limitOf(s_thirdUnit, BoltNormalForce), 45.5);
  EXPECT_EQ(limitOf(s_firstUnit, PilotForce), 500.0);
}

TEST_F(LimitsTest, AreNotSetInAnyUnitWhenOneHasNoneOfTheKind) {
  auto const limits = limitsWith({{24, unitId(s_firstUnit), 8, "N"}});
  try {
    setLimits(*limits, units({}), ClampClosingForce, 45.5);
    FAIL() << "no error";
  } catch (Error const& error) {
    EXPECT_STREQ(
        error.what(),
        "--type: expected a kind of limit that the unit \"OP10\" has (one of JoiningTongNormalForce, "
        "JoiningTongDistance, JoiningTongGap, LineJoiningToolDistanceToInput, JoinNormalForce, "
        "JoinTangentialForce, ForceLimit7, ForceLimit8, LineJoiningToolGap, PilotForce, "
        "BoltNormalForce, RollerForce, SteelForce, HemmingBedForce, SuctionZoneForce, "
        "SuctionDistance), found ClampClosingForce");
  }
  EXPECT_EQ(limits->getLimit(unitId(s_firstUnit), ClampClosingForce)->getLimit(), 8.0);
}

TEST_F(LimitsTest, AreRefusedWithTheKindsThatHaveNames) {
  auto const limits = limitsWith({{77, unitId(s_secondUnit), 1, ""}, {1, unitId(s_secondUnit), 2, "N"}});
  try {
    setLimits(*limits, units({"OP10"}), NoLimit, 5);
    FAIL() << "no error";
  } catch (Error const& error) {
    EXPECT_THAT(error.what(), testing::HasSubstr("(one of JoiningTongNormalForce), found NoLimit"));
  }
}

TEST_F(LimitsTest, ArePutBackInTheUnitsThatAreNamed) {
  setLimits(*m_limits, units({}), BoltNormalForce, 7);
  setLimits(*m_limits, units({}), PilotForce, 8);
  resetLimits(*m_limits, m_file, units({"OP20"}));
  EXPECT_EQ(limitOf(s_firstUnit, BoltNormalForce), 30.0);
  EXPECT_EQ(limitOf(s_firstUnit, PilotForce), 500.0);
  EXPECT_EQ(limitOf(s_secondUnit, BoltNormalForce), 7.0);
  EXPECT_EQ(limitOf(s_secondUnit, PilotForce), 8.0);
  EXPECT_EQ(limitOf(s_thirdUnit, BoltNormalForce), 30.0);
  EXPECT_EQ(m_limits->getChildCount(), 48U);
}

TEST_F(LimitsTest, OfKindsWithoutADefaultGoWhenTheyArePutBack) {
  auto const limits = limitsWith({{24, unitId(s_secondUnit), 9, "N"}});
  resetLimits(*limits, m_file, units({"OP20"}));
  EXPECT_EQ(limits->getLimit(unitId(s_secondUnit), ClampClosingForce)->getLimit(), 9.0);
  resetLimits(*limits, m_file, units({}));
  EXPECT_EQ(limits->getLimit(unitId(s_secondUnit), ClampClosingForce), nullptr);
  EXPECT_EQ(limits->getLimit(unitId(s_secondUnit), BoltNormalForce)->getLimit(), 30.0);
}

TEST_F(LimitsTest, AreListedInTheOrderOfTheCollection) {
  auto const listed = listLimits(*m_limits, m_file, units({"OP10"}));
  std::vector<TablePropertyLimitType> types;
  for (auto const& limit : listed) {
    EXPECT_EQ(limit.unit->getSimulationUnitName(), "OP10");
    EXPECT_TRUE(limit.isDefault);
    types.push_back(limit.limit->getType());
  }
  EXPECT_THAT(types,
              ElementsAre(JoiningTongNormalForce, JoiningTongDistance, JoiningTongGap,
                          LineJoiningToolDistanceToInput, JoinNormalForce, JoinTangentialForce, ForceLimit7,
                          ForceLimit8, LineJoiningToolGap, PilotForce, BoltNormalForce, RollerForce,
                          SteelForce, HemmingBedForce, SuctionZoneForce, SuctionDistance));
  EXPECT_EQ(listLimits(*m_limits, m_file, units({})).size(), 48U);
  EXPECT_TRUE(listLimits(*m_limits, m_file, {}).empty());
}

TEST_F(LimitsTest, AreDefaultsByValueAndUnitText) {
  auto const id = unitId(s_secondUnit);
  auto const limits =
      limitsWith({{23, id, 31, "N"}, {19, id, 500, "kN"}, {20, id, 500, "N"}, {24, id, 9, "N"}});
  std::vector<std::pair<TablePropertyLimitType, bool>> listed;
  for (auto const& limit : listLimits(*limits, m_file, units({"OP10"})))
    listed.emplace_back(limit.limit->getType(), limit.isDefault);
  listed.resize(4);
  EXPECT_THAT(listed, ElementsAre(std::pair(BoltNormalForce, false), std::pair(PilotForce, false),
                                  std::pair(RollerForce, true), std::pair(ClampClosingForce, false)));
}

}  // namespace
}  // namespace Kestrel::ResultTables

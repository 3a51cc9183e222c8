#include "Business_TableProperties/SimUnitMaxValueOrigins.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "Business_Skin/Skin.h"
#include "support/TestUnit.h"

namespace Kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double s_nan = std::numeric_limits<double>::quiet_NaN();
constexpr double s_infinity = std::numeric_limits<double>::infinity();

/// "name: step companion count nans", with "-" for what there is none of.
std::string describe(MaxValueOrigin const& origin) {
  auto const textOf = [](auto const& optional) {
    std::ostringstream out;
    optional ? out << *optional : out << '-';
    return out.str();
  };
  std::ostringstream out;
  out << origin.seriesName << ": " << textOf(origin.step) << ' ' << textOf(origin.companion) << ' '
      << origin.count << ' ' << origin.nanCount;
  return out.str();
}

class SimUnitMaxValueOriginsTest : public testing::Test, protected TestUnit {
 protected:
  void addPairs(std::string const& tool, std::string const& quantity,
                std::vector<std::pair<double, double>> pairs) {
    unit.addToolForce(tool, quantity, std::make_shared<StepValues<double>>(std::move(pairs)));
  }

  /// The container of a family, and the origins of its values.
  void ask(DataType dataType) {
    use(SimUnitMaxValuesProvider(unit, m_result = result()).genGetMaxValuesCollection(dataType));
  }
  void use(std::shared_ptr<MaxValueGroupContainer> container) {
    m_container = std::move(container);
    m_origins = std::make_unique<SimUnitMaxValueOrigins>(unit, m_result, m_container);
  }

  /// The origins of a row, in a section.
  std::vector<std::string> row(std::size_t group, std::size_t subGroup, std::size_t item = 0) {
    std::vector<std::string> described;
    auto const count = m_container->groups.at(group).subGroups.at(subGroup).items.at(item).maxValues.size();
    for (std::size_t i = 0; i < count; ++i)
      described.push_back(describe(m_origins->getOrigin({group, subGroup, item, i})));
    return described;
  }

  std::shared_ptr<SimulationResult> m_result;
  std::shared_ptr<MaxValueGroupContainer> m_container;
  std::unique_ptr<SimUnitMaxValueOrigins> m_origins;
};

TEST_F(SimUnitMaxValueOriginsTest, AreTheFirstOccurrenceItsCompanionAndTheNumberOfValues) {
  addTool("Clamp 1", ToolForceDataType::clamp, {{"ClampNormalForce", {0, 3.5, -7.25, 7.25, -7.25}}});
  addPairs("Clamp 1", "ClampClosingForce", {{0, 0.1}, {-12, 0.2}, {8, 0.3}});
  ask(DataType::Clamps);
  EXPECT_THAT(row(0, 0), ElementsAre("ClampNormalForce: 2 - 5 0", "ClampClosingForce: 1 0.2 3 0", ": - - 0 0",
                                     ": - - 0 0"));
}

TEST_F(SimUnitMaxValueOriginsTest, CountWhatIsNotANumberApart) {
  addTool("Clamp 1", ToolForceDataType::clamp,
          {{"ClampNormalForce", {s_nan, 1, s_nan, -2}},
           {"ClampClosingForce", {s_nan, s_nan}},
           {"ClampSupportingForce", {}},
           {"ClampTangentialForce", {0, s_nan, -0.0}}});
  ask(DataType::Clamps);
  EXPECT_THAT(row(0, 0), ElementsAre("ClampNormalForce: 3 - 2 2", "ClampClosingForce: - - 0 2",
                                     "ClampSupportingForce: - - 0 0", "ClampTangentialForce: - - 2 1"));
}

TEST_F(SimUnitMaxValueOriginsTest, HaveNoCompanionThatIsNotANumber) {
  addTool("Clamp 1", ToolForceDataType::clamp);
  addPairs("Clamp 1", "ClampNormalForce", {{1, 0.5}, {-s_infinity, s_nan}});
  ask(DataType::Clamps);
  EXPECT_EQ(row(0, 0)[0], "ClampNormalForce: 1 - 2 0");
}

TEST_F(SimUnitMaxValueOriginsTest, AreOfTheLastSeriesOfAName) {
  addTool("Clamp 1", ToolForceDataType::clamp,
          {{"ClampNormalForce", {9, 9, 9}}, {"Other", {1}}, {"ClampNormalForce", {1, 2}}});
  ask(DataType::Clamps);
  EXPECT_EQ(m_container->groups[0].subGroups[0].items[0].maxValues[0], 2);
  EXPECT_EQ(row(0, 0)[0], "ClampNormalForce: 1 - 2 0");
}

TEST_F(SimUnitMaxValueOriginsTest, AreInLineWithTheRowsOfEverySection) {
  addTool("C1", ToolForceDataType::clamp,
          {{"ClampNormalDisplacement", {1}}, {"ClampTeachingDistanceZ", {4, 5}}});
  addTool("C2", ToolForceDataType::clamp, {{"ClampNormalDisplacement", {1, 2}}});
  m_result = result();
  use(SimUnitMaxValuesProvider(unit, m_result).genGetClampMaxValuesCollection(DataType::Clamps, true));
  EXPECT_THAT(row(1, 0), ElementsAre("ClampNormalDisplacement: 0 - 1 0"));
  EXPECT_THAT(row(1, 1), ElementsAre("ClampNormalDisplacement: 1 - 2 0"));
  EXPECT_THAT(row(2, 0), ElementsAre(": - - 0 0", ": - - 0 0", "ClampTeachingDistanceZ: 1 - 2 0"));
}

TEST_F(SimUnitMaxValueOriginsTest, FindTheSeriesOfPilotsByTheirNames) {
  addTool("Pilot tool", ToolForceDataType::pilot,
          {{"PilotForce_P1", {1}},
           {"PilotForce_P2", {1, -3}},
           {"PilotForce_B1", {7, 8, 9}},
           {"PilotForce_P1", {2, 0, 4}}});
  addTool("B1", ToolForceDataType::bolt);
  ask(DataType::Pilots);
  EXPECT_THAT(row(0, 0), ElementsAre("PilotForce_P1: 2 - 3 0"));
  EXPECT_THAT(row(0, 1), ElementsAre("PilotForce_P2: 1 - 2 0"));
}

TEST_F(SimUnitMaxValueOriginsTest, FindTheTotalsUnderTheirBusinessName) {
  addTool("T1", ToolForceDataType::tool, {{"TotalToolForces", {1, -9, 2}}});
  m_result = result();
  use(SimUnitMaxValuesProvider(unit, m_result)
          .genGetToolMaxValuesCollection({{"Bed", {"missing", "T1"}}}, DataType::HemmingBed));
  EXPECT_EQ(m_container->groups[0].subGroups[0].items[1].maxValues[0], 9)
      << "of the hemming bed, without the sign";
  EXPECT_THAT(row(0, 0, 0), ElementsAre(": - - 0 0"));
  EXPECT_THAT(row(0, 0, 1), ElementsAre("Total Tool Forces: 1 - 3 0"));
  EXPECT_THAT(m_origins->genGetSeries({0, 0, 1, 0}).values, ElementsAre(1, -9, 2)) << "as they are stored";
}

TEST_F(SimUnitMaxValueOriginsTest, FindJoiningTongsByTheirIdentifiersAndNotByTheirNames) {
  addTool("Tong 1", ToolForceDataType::joiningTong, {{"JoiningTongNormalForce", {0, 5}}});
  addTool("Tong 2", ToolForceDataType::joiningTong, {{"JoiningTongNormalForce", {6}}});
  addStep().addJoiningTong(joiningTong("Tong 1", "Tong 2", 3));
  unit.setVisibleSteps(0, 0);
  ask(DataType::JoiningTongs);
  EXPECT_EQ(m_container->groups[0].subGroups[0].items[0].name, "Tong 2");
  EXPECT_EQ(row(0, 0)[0], "JoiningTongNormalForce: 1 - 2 0");
  EXPECT_EQ(row(0, 1)[0], "JoiningTongNormalForce: 0 - 1 0");
}

TEST_F(SimUnitMaxValueOriginsTest, HaveTheTangentialForceOfTheJoinInPlaceOfASeriesOfThatName) {
  addTool("W1", ToolForceDataType::spotWeld, {{"JoinForceN", {1, 2}}, {"JoinTangentialForce", {9, 9, 9}}});
  unit.setJoinTangentialForce(
      "W1", StepValues<double>(std::vector<std::pair<double, double>>{{0.5, 10}, {0.75, 20}}));
  addStep().addJoin(idEndingIn<EvalJoinGUID>('1'), spotWeld("W1", "Spot 1", 0));
  unit.setVisibleSteps(0, 0);
  ask(DataType::SpotWelds);
  EXPECT_THAT(row(0, 0), ElementsAre("JoinForceN: 1 - 2 0", "JoinTangentialForce: 1 20 2 0"));
}

/// Line joins of one display name in steps 1 and 3, the first of which is not visible at step 0.
class OriginsOfLineJoins : public SimUnitMaxValueOriginsTest {
 protected:
  OriginsOfLineJoins() {
    for (int i = 0; i < 4; ++i) addStep();
    addGap(0, -100, 100);
    addGap(1, -0.25, 0.5);
    addGap(2, std::nullopt, 9);
    addGap(3, -0.75, 0.75);
    unit.setVisibleSteps(1, 3);
    unit.addJoinDefinedInSimUnit(m_definition);
  }

  void addGap(std::size_t step, std::optional<double> minimum, std::optional<double> maximum) {
    auto join = lineJoin("LJ-1", "LJ 1", 0, m_definition);
    join->setSkin(SkinKey("LineJoinGap", 0, "", ""), std::make_shared<Skin<double>>(minimum, maximum));
    steps[step]->addLineJoin(idEndingIn<EvalLineJoinGUID>('1'), join);
  }

  EvalSimulationUnitJoinGUID const m_definition = idEndingIn<EvalSimulationUnitJoinGUID>('5');
};

TEST_F(OriginsOfLineJoins, AreTheStepsWhoseRecordsHaveBothRangeValues) {
  ask(DataType::LineJoiningTools);
  EXPECT_EQ(m_container->groups[0].subGroups[0].items[0].maxValues[1], 0.75);
  EXPECT_THAT(row(0, 0), ElementsAre(": - - 0 0", "LineJoinGap: 3 - 2 0"));
  auto const series = m_origins->genGetSeries({0, 0, 0, 1});
  EXPECT_EQ(series.name, "LineJoinGap");
  EXPECT_THAT(series.steps, ElementsAre(1, 3));
  EXPECT_THAT(series.values, ElementsAre(0.5, 0.75));
  EXPECT_THAT(series.minima, ElementsAre(-0.25, -0.75));
  EXPECT_THAT(series.maxima, ElementsAre(0.5, 0.75));
  EXPECT_THAT(series.companions, IsEmpty());
}

TEST_F(OriginsOfLineJoins, CountARecordForWhichANaNWouldStand) {
  addStep();
  addGap(4, 3, s_nan);
  unit.setVisibleSteps(1, 4);
  ask(DataType::LineJoiningTools);
  EXPECT_EQ(m_container->groups[0].subGroups[0].items[0].maxValues[1], 0.75);
  EXPECT_EQ(row(0, 0)[1], "LineJoinGap: 3 - 2 1");
}

TEST_F(OriginsOfLineJoins, AreThoseOfTheUnitForToolsAndOfAllForWelds) {
  auto const foreign = lineJoin("LJ-2", "LJ 1", 0, idEndingIn<EvalSimulationUnitJoinGUID>('6'));
  for (auto const* const key : {"LineJoinGap", "LineJoinSumForceN"})
    foreign->setSkin(SkinKey(key, 0, "", ""), std::make_shared<Skin<double>>(1, 2));
  steps[2]->addLineJoin(idEndingIn<EvalLineJoinGUID>('2'), foreign);
  ask(DataType::LineJoiningTools);
  EXPECT_EQ(row(0, 0)[1], "LineJoinGap: 3 - 2 0");
  ask(DataType::LineWelds);
  EXPECT_EQ(row(0, 0)[0], "LineJoinSumForceN: 2 - 1 0");
}

TEST_F(SimUnitMaxValueOriginsTest, GiveTheSeriesAsItIsStored) {
  addTool("Clamp 1", ToolForceDataType::clamp, {{"ClampNormalForce", {0, 3.5, -7.25}}});
  addPairs("Clamp 1", "ClampClosingForce", {{0, 0.1}, {-12, s_nan}});
  ask(DataType::Clamps);
  auto const plain = m_origins->genGetSeries({0, 0, 0, 0});
  EXPECT_EQ(plain.name, "ClampNormalForce");
  EXPECT_THAT(plain.steps, ElementsAre(0, 1, 2));
  EXPECT_THAT(plain.values, ElementsAre(0, 3.5, -7.25));
  EXPECT_THAT(plain.companions, IsEmpty());
  auto const pairs = m_origins->genGetSeries({0, 0, 0, 1});
  EXPECT_THAT(pairs.values, ElementsAre(0, -12));
  EXPECT_THAT(pairs.companions, ElementsAre(0.1, testing::IsNan()));
  EXPECT_THAT(pairs.minima, IsEmpty());
  EXPECT_EQ(m_origins->genGetSeries({0, 0, 0, 2}).name, "");
}

TEST_F(SimUnitMaxValueOriginsTest, AreNoDataForPlacesThatDoNotExist) {
  addTool("Clamp 1", ToolForceDataType::clamp, {{"ClampNormalForce", {1}}});
  ask(DataType::Clamps);
  for (auto const& place :
       {SimUnitMaxValueOrigins::Place{9, 0, 0, 0}, {0, 9, 0, 0}, {0, 0, 9, 0}, {0, 0, 0, 9}}) {
    EXPECT_EQ(describe(m_origins->getOrigin(place)), ": - - 0 0");
    EXPECT_THAT(m_origins->genGetSeries(place).values, IsEmpty());
  }
}

TEST_F(SimUnitMaxValueOriginsTest, AreNoDataForWhatTheUnitDoesNotHave) {
  addTool("Clamp 1", ToolForceDataType::clamp, {{"ClampNormalForce", {1}}});
  ask(DataType::Clamps);
  auto changed = std::make_shared<MaxValueGroupContainer>(*m_container);
  changed->groups[0].subGroups[0].items.push_back({"Clamp 2", {5, 6, 7, 8, 9}});
  changed->groups[0].valueNames.resize(1);
  use(changed);
  EXPECT_THAT(row(0, 0, 1), ElementsAre(": - - 0 0", ": - - 0 0", ": - - 0 0", ": - - 0 0", ": - - 0 0"));
  EXPECT_EQ(row(0, 0, 0)[0], "ClampNormalForce: 0 - 1 0");
}

TEST_F(SimUnitMaxValueOriginsTest, SurviveAResultThatIsGone) {
  unit.setVisibleSteps(0, 0);
  auto container = std::make_shared<MaxValueGroupContainer>(DataType::LineWelds, unit.getID());
  container->groups.push_back({"Values", false, false, {}, {"LineJoinGap"}, {{"", {{"LJ 1", {1}}}}}});
  use(container);
  EXPECT_THAT(row(0, 0), ElementsAre(": - - 0 0"));
}

TEST_F(SimUnitMaxValueOriginsTest, LeaveTheContainerAsItIs) {
  addTool("Clamp 1", ToolForceDataType::clamp, {{"ClampNormalForce", {1, -2}}});
  ask(DataType::Clamps);
  auto const before = rowsOf(m_container->groups[0]);
  row(0, 0);
  EXPECT_EQ(rowsOf(m_container->groups[0]), before);
  EXPECT_EQ(m_container.use_count(), 2) << "shared with the origins";
}

// The value that an origin points at is the value of the table, for series of all kinds.
TEST_F(SimUnitMaxValueOriginsTest, PointAtTheValueOfTheTable) {
  std::mt19937 random(20261122);
  std::uniform_int_distribution<int> length(0, 6);
  std::uniform_int_distribution<int> kind(0, 9);
  std::uniform_int_distribution<int> number(-3, 3);
  auto const genValue = [&] {
    auto const chosen = kind(random);
    return chosen == 0 ? s_nan : chosen == 1 ? -s_infinity : static_cast<double>(number(random));
  };
  for (int tool = 0; tool < 300; ++tool) {
    auto const id = "C" + std::to_string(tool);
    unit.addTool(id, ToolForceDataType::clamp);
    for (auto const* const key : {"ClampNormalForce", "ClampClosingForce", "ClampClosingForce"}) {
      std::vector<double> values(static_cast<std::size_t>(length(random)));
      std::ranges::generate(values, genValue);
      unit.addToolForce(id, key, series(std::move(values)));
    }
  }
  ask(DataType::Clamps);
  auto const& subGroups = m_container->groups[0].subGroups;
  for (std::size_t i = 0; i < subGroups.size(); ++i) {
    for (std::size_t column = 0; column < 2; ++column) {
      auto const value = subGroups[i].items[0].maxValues[column];
      auto const origin = m_origins->getOrigin({0, i, 0, column});
      auto const stored = m_origins->genGetSeries({0, i, 0, column}).values;
      EXPECT_EQ(origin.count + origin.nanCount, stored.size());
      EXPECT_EQ(origin.nanCount, static_cast<std::size_t>(
                                     std::ranges::count_if(stored, [](double v) { return std::isnan(v); })));
      ASSERT_EQ(origin.step.has_value(), value != 0.0);
      if (!origin.step) continue;
      EXPECT_EQ(stored.at(*origin.step), value);
      for (std::size_t k = 0; k < *origin.step; ++k) EXPECT_FALSE(std::abs(stored[k]) >= std::abs(value));
    }
  }
}

}  // namespace
}  // namespace Kestrel

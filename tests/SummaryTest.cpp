#include "result_tables/tables/Summary.h"

#include <gmock/gmock.h>

#include <limits>

#include "support/TableTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::DoubleEq;
using testing::ElementsAre;
using testing::Optional;

constexpr double s_infinity = std::numeric_limits<double>::infinity();
constexpr double s_nan = std::numeric_limits<double>::quiet_NaN();

std::optional<double> utilisation(double value, double limit, bool isValid = true, std::size_t count = 1) {
  TableValue tableValue{value, {}, false};
  tableValue.origin.count = count;
  return utilisationOf(tableValue, ColumnLimit{limit, "N"}, isValid);
}

TEST(Utilisation, IsThePartOfTheLimitThatAValueTakes) {
  EXPECT_THAT(utilisation(-250, 500), Optional(DoubleEq(0.5)));
  EXPECT_THAT(utilisation(750, 500), Optional(DoubleEq(1.5)));
  EXPECT_THAT(utilisation(-750, -500), Optional(DoubleEq(1.5)));
  EXPECT_THAT(utilisation(5, s_infinity), Optional(DoubleEq(0)));
  EXPECT_THAT(utilisation(-s_infinity, 500), Optional(DoubleEq(s_infinity)));
}

TEST(Utilisation, IsInfiniteWhereTheLimitIsZeroUnlessTheValueIs) {
  EXPECT_THAT(utilisation(1e-300, 0), Optional(DoubleEq(s_infinity)));
  EXPECT_THAT(utilisation(0, 0), Optional(DoubleEq(0)));
  EXPECT_THAT(utilisation(-0.0, -0.0), Optional(DoubleEq(0)));
}

TEST(Utilisation, IsNoneWhereNothingCanBeSaid) {
  EXPECT_EQ(utilisation(250, 500, false), std::nullopt) << "not valid";
  EXPECT_EQ(utilisation(0, 500, true, 0), std::nullopt) << "no number";
  EXPECT_EQ(utilisation(250, s_nan), std::nullopt);
  EXPECT_EQ(utilisation(s_infinity, s_infinity), std::nullopt);
  TableValue value{250, {}, false};
  value.origin.count = 1;
  EXPECT_EQ(utilisationOf(value, {}, true), std::nullopt) << "no limit";
}

/// The tables and utilisations of the kept values.
std::vector<std::pair<std::size_t, double>> highestOf(std::size_t most, std::vector<double> const& all) {
  HighestUtilisations highest(most);
  for (std::size_t i = 0; i < all.size(); ++i) highest.add({all[i], i, {}, {}});
  std::vector<std::pair<std::size_t, double>> kept;
  for (auto const& value : highest.take()) kept.emplace_back(value.table, value.utilisation);
  return kept;
}

TEST(HighestUtilisations, GoDownAndKeepTheOrderOfEqualOnes) {
  using Pair = std::pair<std::size_t, double>;
  EXPECT_THAT(highestOf(3, {0.5, 1, 0.25, 1, s_infinity, 1}),
              ElementsAre(Pair{4, s_infinity}, Pair{1, 1.0}, Pair{3, 1.0}));
  EXPECT_THAT(highestOf(3, {0, 0.5}), ElementsAre(Pair{1, 0.5}, Pair{0, 0.0}));
  EXPECT_THAT(highestOf(1, {}), ElementsAre());
}

/// Two spot welds, the second one failed, with the default limits of 500 N.
class SummaryTest : public testing::Test {
 protected:
  SummaryTest() {
    m_limits.collection->updateLimits({m_unit.getID()});
    m_container->valuesAreValid = {{"Spot 2", false}};
    m_container->invalidValuesText = "Joining Failed";
    m_container->groups.push_back(
        {"Forces",
         false,
         true,
         {TablePropertyLimitType::JoinNormalForce, TablePropertyLimitType::JoinTangentialForce},
         {"JoinForceN", "JoinTangentialForce", "Other"},
         {}});
    m_container->groups[0].subGroups.push_back(
        {"Left", {{"Spot 1", {-600, 250, 1e9}}, {"Spot 2", {900, s_nan, 1}}, {"Spot 3", {s_nan, 100, 1}}}});
  }

  Summary summary(std::size_t highest) {
    auto const table = genTable(m_unit, m_container, m_limits);
    return genSummary({table, table}, highest);
  }

  SimulationUnit const m_unit{SimulationUnitId(), "OP20"};
  std::shared_ptr<MaxValueGroupContainer> m_container =
      std::make_shared<MaxValueGroupContainer>(MaxValueGroupContainer::DataType::SpotWelds, m_unit.getID());
  ResultLimits m_limits;
};

TEST_F(SummaryTest, CountsWhatCheckFinds) {
  auto const all = summary(1);
  ASSERT_EQ(all.ofTables.size(), 2U);
  auto const& counts = all.ofTables[0];
  EXPECT_EQ(counts.exceeded, 1U);
  EXPECT_EQ(counts.notANumber, 2U);
  EXPECT_EQ(counts.invalid, 1U);
  EXPECT_EQ(counts.compared, 3U);
  EXPECT_EQ(counts.withoutData, 0U);
  EXPECT_EQ(all.total().exceeded, 2U);
  EXPECT_EQ(all.total().notANumber, 4U);
  EXPECT_EQ(all.total().invalid, 2U);
  EXPECT_EQ(all.total().compared, 6U);
}

TEST_F(SummaryTest, CountsNoInvalidElementsWhereTheFamilyDoesNotSayWhatThatMeans) {
  m_container->invalidValuesText.clear();
  EXPECT_EQ(summary(1).total().invalid, 0U);
}

TEST_F(SummaryTest, CountsLimitedValuesWithoutData) {
  auto const tables = genClampTables("[]");
  ResultLimits limits;
  limits.columns[tables[0].unit().getID()] = {
      {{MaxValueGroupContainer::DataType::Clamps, "ClampNormalForce"}, 5}};
  ResultTable const table("r.json", tables[0].unit(), {}, tables[0].sharedContainer(), limits);
  EXPECT_EQ(genSummary({table}, 1).total().withoutData, 1U);
  EXPECT_EQ(genSummary({table}, 1).total().compared, 0U);
  EXPECT_TRUE(genSummary({table}, 1).highest.empty());
}

TEST_F(SummaryTest, KnowsTheHighestUtilisationsOfAllTables) {
  auto const highest = summary(3).highest;
  ASSERT_EQ(highest.size(), 3U);
  EXPECT_DOUBLE_EQ(highest[0].utilisation, 1.2);
  EXPECT_EQ(highest[0].table, 0U);
  EXPECT_EQ(highest[0].value.value, -600);
  EXPECT_TRUE(highest[0].value.isExceeded);
  EXPECT_EQ(highest[1].table, 1U);
  EXPECT_DOUBLE_EQ(highest[2].utilisation, 0.5);
  EXPECT_EQ(highest[2].place.item, 0U);
  EXPECT_EQ(highest[2].place.column, 1U);
}

}  // namespace
}  // namespace Kestrel::ResultTables

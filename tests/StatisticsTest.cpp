#include "result_tables/tables/Statistics.h"

#include <gmock/gmock.h>

#include <limits>
#include <vector>

namespace Kestrel::ResultTables {
namespace {

using testing::DoubleEq;
using testing::Optional;

constexpr double s_infinity = std::numeric_limits<double>::infinity();

ValueStatistics statisticsOf(std::vector<double> const& values) {
  ValueStatistics statistics;
  for (double const value : values) statistics.add(value, true, true, true, value > 5);
  return statistics;
}

TEST(ValueStatistics, AreThoseOfASample) {
  auto const statistics = statisticsOf({2, 4, 4, 4, 5, 5, 7, 9});
  EXPECT_EQ(statistics.count(), 8U);
  EXPECT_THAT(statistics.minimum(), Optional(2.0));
  EXPECT_THAT(statistics.maximum(), Optional(9.0));
  EXPECT_THAT(statistics.mean(), Optional(DoubleEq(5)));
  EXPECT_THAT(statistics.standardDeviation(), Optional(DoubleEq(2.1380899352993947)));
  EXPECT_THAT(statistics.shareBeyondLimit(), Optional(DoubleEq(0.25)));
}

TEST(ValueStatistics, AreNoneWhereTooFewValuesAreThere) {
  auto const none = statisticsOf({});
  EXPECT_EQ(none.count(), 0U);
  EXPECT_EQ(none.minimum(), std::nullopt);
  EXPECT_EQ(none.maximum(), std::nullopt);
  EXPECT_EQ(none.mean(), std::nullopt);
  EXPECT_EQ(none.standardDeviation(), std::nullopt);
  EXPECT_EQ(none.shareBeyondLimit(), std::nullopt);
  auto const one = statisticsOf({-3});
  EXPECT_THAT(one.mean(), Optional(-3.0));
  EXPECT_THAT(one.minimum(), Optional(-3.0));
  EXPECT_THAT(one.maximum(), Optional(-3.0));
  EXPECT_EQ(one.standardDeviation(), std::nullopt);
}

TEST(ValueStatistics, PassOverValuesThatSayNothing) {
  ValueStatistics statistics;
  statistics.add(100, false, true, true, false);
  statistics.add(0, true, false, true, false);
  statistics.add(-7, true, true, false, false);
  EXPECT_EQ(statistics.count(), 1U);
  EXPECT_THAT(statistics.maximum(), Optional(-7.0));
  EXPECT_EQ(statistics.shareBeyondLimit(), std::nullopt) << "none has a limit";
}

TEST(ValueStatistics, LoseNothingWhereValuesAreLargeOrInfinite) {
  auto const near = statisticsOf({1e9 + 4, 1e9 + 7, 1e9 + 13, 1e9 + 16});
  EXPECT_THAT(near.mean(), Optional(DoubleEq(1e9 + 10)));
  EXPECT_THAT(near.standardDeviation(), Optional(DoubleEq(5.477225575051661)));
  EXPECT_THAT(statisticsOf({1.7e308, -1.7e308}).mean(), Optional(DoubleEq(0)));
  auto const infinite = statisticsOf({1, s_infinity, 2});
  EXPECT_THAT(infinite.mean(), Optional(s_infinity));
  EXPECT_THAT(infinite.maximum(), Optional(s_infinity));
  EXPECT_EQ(infinite.standardDeviation(), std::nullopt);
  EXPECT_EQ(statisticsOf({s_infinity, 3, -s_infinity}).mean(), std::nullopt);
}

}  // namespace
}  // namespace Kestrel::ResultTables

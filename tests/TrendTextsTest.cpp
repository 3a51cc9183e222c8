#include "result_tables/render/TrendTexts.h"

#include <gtest/gtest.h>

namespace Kestrel::ResultTables {
namespace {

Trend trendOf(std::vector<double> const& values, std::optional<double> limit) {
  Trend trend;
  trend.unit = "OP20";
  trend.title = "Clamps";
  trend.group = "Forces";
  trend.item = "Clamp\n1";
  trend.column.key = "ClampClosingForce";
  trend.column.tableDisplayName = "Max Closing Force";
  trend.column.unit = "N";
  for (double const value : values) {
    auto& point = trend.points.emplace_back();
    point.at = static_cast<double>(trend.points.size());
    point.value = {value, {{}, 0, {}, 1, 0}, limit && value > *limit};
    point.isValid = true;
    if (limit) point.limit = ColumnLimit{*limit, "N"};
  }
  return trend;
}

TEST(TrendTexts, SayWhatTheTrendIsOf) {
  auto trend = trendOf({}, {});
  EXPECT_EQ(titleText(trend), "OP20: Clamps, Forces, Clamp␊1, Max Closing Force [N]");
  trend.subGroup = "Left";
  trend.occurrence = 1;
  EXPECT_EQ(titleText(trend), "OP20: Clamps, Forces, Left, Clamp␊1 (2), Max Closing Force [N]");
}

TEST(TrendTexts, SayWhatTheRunsStandOn) {
  auto trend = trendOf({}, {});
  EXPECT_EQ(axisText(trend), "run");
  trend.by = "speed\x1b";
  EXPECT_EQ(axisText(trend), "speed␛");
}

TEST(TrendTexts, SayWhatTheRunsAreTogether) {
  EXPECT_EQ(
      statisticsText(trendOf({1, 2, 3.5}, 3), 3),
      "runs: 3, minimum 1 N, maximum 3.5 N, mean 2.17 N, standard deviation 1.26 N, beyond the limit 33.3 %");
  EXPECT_EQ(statisticsText(trendOf({1.5}, {}), 3, ','), "runs: 1, minimum 1,5 N, maximum 1,5 N, mean 1,5 N");
  EXPECT_EQ(statisticsText(trendOf({}, {}), 3), "runs: 0");
}

}  // namespace
}  // namespace Kestrel::ResultTables

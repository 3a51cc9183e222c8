#include "result_tables/render/Chart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <ostream>

#include "support/SeriesTesting.h"

namespace Kestrel::ResultTables {

void PrintTo(ChartPoint const& point, std::ostream* out) { *out << '(' << point.x << ", " << point.y << ')'; }

namespace {

using testing::DoubleEq;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr ChartIntervals s_intervals{5, 5};
constexpr double s_greatest = DBL_MAX;
constexpr double s_least = 5e-324;

std::vector<std::string> labelsOf(Axis const& axis) {
  std::vector<std::string> labels;
  for (auto const& tick : axis.ticks) labels.push_back(tick.label);
  return labels;
}

std::vector<double> fractionsOf(Axis const& axis) {
  std::vector<double> fractions;
  for (auto const& tick : axis.ticks) fractions.push_back(tick.fraction);
  return fractions;
}

std::vector<double> limitsOf(Chart const& chart) {
  std::vector<double> limits;
  for (auto const& limit : chart.limits) limits.push_back(limit.value);
  return limits;
}

// ---- axes

TEST(Axis, HasTicksAtRoundNumbers) {
  auto const axis = genAxis(-3, 34, AxisEnds::exact, 5);
  EXPECT_EQ(axis.low, -3.0);
  EXPECT_EQ(axis.high, 34.0);
  EXPECT_THAT(labelsOf(axis), ElementsAre("0", "10", "20", "30"));
  EXPECT_THAT(fractionsOf(axis),
              ElementsAre(DoubleEq(3 / 37.0), DoubleEq(13 / 37.0), DoubleEq(23 / 37.0), DoubleEq(33 / 37.0)));
  EXPECT_THAT(labelsOf(genAxis(0, 1, AxisEnds::exact, 5)), ElementsAre("0", "0.2", "0.4", "0.6", "0.8", "1"));
  EXPECT_THAT(labelsOf(genAxis(0, 2.4, AxisEnds::exact, 5)), ElementsAre("0", "0.5", "1", "1.5", "2"));
}

TEST(Axis, EndsAtTicksOnRequest) {
  auto const axis = genAxis(-857.6, 11.1, AxisEnds::atTicks, 5);
  EXPECT_EQ(axis.low, -1000.0);
  EXPECT_EQ(axis.high, 200.0);
  EXPECT_THAT(labelsOf(axis), ElementsAre("-1000", "-800", "-600", "-400", "-200", "0", "200"));
  EXPECT_EQ(axis.ticks.front().fraction, 0.0);
  EXPECT_EQ(axis.ticks.back().fraction, 1.0);
  auto const already = genAxis(0.2, 0.7, AxisEnds::atTicks, 5);
  EXPECT_THAT(labelsOf(already), ElementsAre("0.2", "0.3", "0.4", "0.5", "0.6", "0.7"))
      << "whatever dividing by the step gives";
}

TEST(Axis, HasNoNegativeZero) {
  EXPECT_THAT(labelsOf(genAxis(-0.5, 4.6, AxisEnds::exact, 5)), ElementsAre("0", "2", "4"));
}

TEST(Axis, HasNoSmallerStepThanIsAskedFor) {
  EXPECT_THAT(labelsOf(genAxis(0, 2, AxisEnds::exact, 5, 1)), ElementsAre("0", "1", "2"));
  EXPECT_THAT(labelsOf(genAxis(0, 2, AxisEnds::exact, 5)), ElementsAre("0", "0.5", "1", "1.5", "2"));
}

TEST(Axis, OfOneNumberHasItInItsMiddle) {
  auto const axis = genAxis(7.25, 7.25, AxisEnds::atTicks, 5);
  EXPECT_THAT(labelsOf(axis), ElementsAre("7.25"));
  EXPECT_THAT(fractionsOf(axis), ElementsAre(0.5));
  EXPECT_EQ(axis.fractionOf(7.25), 0.5);
  EXPECT_THAT(labelsOf(genAxis(0, 0, AxisEnds::atTicks, 5)), ElementsAre("0"));
}

TEST(Axis, HasAsManyDigitsAsItsTicksNeedToDiffer) {
  EXPECT_THAT(labelsOf(genAxis(1000000.5, 1000001.5, AxisEnds::exact, 5)),
              ElementsAre("1000000.6", "1000000.8", "1000001", "1000001.2", "1000001.4"));
  EXPECT_THAT(labelsOf(genAxis(0, 2e9, AxisEnds::exact, 5)),
              ElementsAre("0", "5e+08", "1e+09", "1.5e+09", "2e+09"));
}

TEST(Axis, HasItsEndsAsTicksWhereNumbersAreTooCloseTogether) {
  EXPECT_THAT(labelsOf(genAxis(1, 1 + DBL_EPSILON, AxisEnds::atTicks, 5)),
              ElementsAre("1", "1.0000000000000002"));
  auto const axis = genAxis(0, s_least, AxisEnds::atTicks, 5);
  EXPECT_THAT(labelsOf(axis), ElementsAre("0", "5e-324"));
  EXPECT_THAT(fractionsOf(axis), ElementsAre(0.0, 1.0));
}

TEST(Axis, ReachesOverAllDoubles) {
  auto const axis = genAxis(-s_greatest, s_greatest, AxisEnds::atTicks, 5);
  EXPECT_EQ(axis.low, -s_greatest) << "the next multiple is no double";
  EXPECT_EQ(axis.high, s_greatest);
  EXPECT_THAT(labelsOf(axis), ElementsAre("-1e+308", "0", "1e+308"));
  EXPECT_EQ(axis.fractionOf(0), 0.5);
  EXPECT_EQ(axis.fractionOf(-s_greatest), 0.0);
  EXPECT_EQ(axis.fractionOf(s_greatest), 1.0);
}

// ---- charts

TEST(Chart, IsOverStepsWhereThereAreNoTimes) {
  auto const chart = genChart(seriesOf({0, 5, 10}), s_intervals);
  EXPECT_FALSE(chart.isOverTime);
  EXPECT_THAT(labelsOf(chart.x), ElementsAre("0", "1", "2"));
  EXPECT_THAT(labelsOf(chart.y), ElementsAre("0", "2", "4", "6", "8", "10"));
  ASSERT_EQ(chart.lines.size(), 1U);
  EXPECT_THAT(chart.lines[0], ElementsAre(ChartPoint{0, 0}, ChartPoint{0.5, 0.5}, ChartPoint{1, 1}));
  EXPECT_EQ(chart.extreme, (ChartPoint{1, 1}));
  EXPECT_THAT(chart.infinite, IsEmpty());
  EXPECT_THAT(limitsOf(chart), IsEmpty());
}

TEST(Chart, IsOverTimesWhereThereAreAny) {
  auto const chart = genChart(seriesOf({0, 10, 5, 3}, {1, 5, 3, s_nan}), s_intervals);
  EXPECT_TRUE(chart.isOverTime);
  EXPECT_THAT(labelsOf(chart.x), ElementsAre("1", "2", "3", "4", "5"));
  ASSERT_EQ(chart.lines.size(), 1U);
  EXPECT_THAT(chart.lines[0], ElementsAre(ChartPoint{0, 0}, ChartPoint{1, 1}, ChartPoint{0.5, 0.5}))
      << "in stored order, without the value that has no time";
  EXPECT_FALSE(genChart(seriesOf({0, 10}, {s_nan, s_nan}), s_intervals).isOverTime);
}

TEST(Chart, HasNoMarkOfAValueWithoutTime) {
  EXPECT_EQ(genChart(seriesOf({1, 10}, {0.5, s_nan}), s_intervals).extreme, std::nullopt);
  EXPECT_EQ(genChart(seriesOf({1, 10}, {0.5, s_infinity}), s_intervals).extreme, std::nullopt);
}

TEST(Chart, HasGapsWhereValuesAreNoNumbers) {
  auto const chart = genChart(seriesOf({s_nan, 0, 5, s_nan, 10, s_nan}), s_intervals);
  ASSERT_EQ(chart.lines.size(), 2U);
  EXPECT_THAT(chart.lines[0], ElementsAre(ChartPoint{0.2, 0}, ChartPoint{0.4, 0.5}));
  EXPECT_THAT(chart.lines[1], ElementsAre(ChartPoint{0.8, 1}));
}

TEST(Chart, HasInfiniteValuesAtItsEnds) {
  auto const chart = genChart(seriesOf({0, s_infinity, 10, -s_infinity, 10}), s_intervals);
  EXPECT_THAT(labelsOf(chart.y), ElementsAre("0", "2", "4", "6", "8", "10"));
  EXPECT_EQ(chart.lines.size(), 3U);
  EXPECT_THAT(chart.infinite, ElementsAre(ChartPoint{0.25, 1}, ChartPoint{0.75, 0}));
  EXPECT_EQ(chart.extreme, (ChartPoint{0.25, 1}));
}

TEST(Chart, HasNoNumbersBesideInfiniteValuesAlone) {
  auto const chart = genChart(seriesOf({s_infinity, -s_infinity}), s_intervals);
  EXPECT_FALSE(chart.isEmpty());
  EXPECT_THAT(chart.y.ticks, IsEmpty());
  EXPECT_THAT(chart.lines, IsEmpty());
  EXPECT_THAT(chart.infinite, ElementsAre(ChartPoint{0, 1}, ChartPoint{1, 0}));
}

TEST(Chart, IsEmptyWithoutNumbers) {
  for (auto const& series : {seriesOf({}), seriesOf({s_nan}), seriesOfRanges({})}) {
    auto const chart = genChart(series, s_intervals);
    EXPECT_TRUE(chart.isEmpty());
    EXPECT_EQ(chart.extreme, std::nullopt);
  }
}

TEST(Chart, OfOneValueHasItInTheMiddle) {
  auto const chart = genChart(seriesOf({7}), s_intervals);
  EXPECT_THAT(labelsOf(chart.x), ElementsAre("0"));
  EXPECT_THAT(labelsOf(chart.y), ElementsAre("7"));
  EXPECT_EQ(chart.extreme, (ChartPoint{0.5, 0.5}));
  EXPECT_THAT(labelsOf(genChart(seriesOf({132.84763299795432}), s_intervals).y), ElementsAre("132.848"));
}

TEST(Chart, OfZerosHasNoMark) {
  auto const chart = genChart(seriesOf({0, 0}), s_intervals);
  EXPECT_EQ(chart.extreme, std::nullopt);
  EXPECT_THAT(chart.lines, ElementsAre(ElementsAre(ChartPoint{0, 0.5}, ChartPoint{1, 0.5})));
}

TEST(Chart, HasMinimaAndMaximaOfLineJoins) {
  auto const chart = genChart(seriesOfRanges({{-12, 4}, {-4, 0}, {0, 0}}), s_intervals);
  EXPECT_THAT(labelsOf(chart.x), ElementsAre("2", "3", "4"));
  EXPECT_THAT(labelsOf(chart.y), ElementsAre("-15", "-10", "-5", "0", "5"));
  ASSERT_EQ(chart.lines.size(), 2U);
  EXPECT_THAT(chart.lines[0], ElementsAre(ChartPoint{0, 0.15}, ChartPoint{0.5, 0.55}, ChartPoint{1, 0.75}));
  EXPECT_THAT(chart.lines[1], ElementsAre(ChartPoint{0, 0.95}, ChartPoint{0.5, 0.75}, ChartPoint{1, 0.75}));
  EXPECT_EQ(chart.extreme, (ChartPoint{0, 0.15}));
}

// ---- limits

TEST(Chart, ShowsLimitsInTheRangeOfTheValuesAndNearIt) {
  auto const limitsBeside = [](std::vector<double> values, double limit) {
    return limitsOf(genChart(withLimit(seriesOf(std::move(values)), limit), s_intervals));
  };
  EXPECT_THAT(limitsBeside({-60, 50}, 30), ElementsAre(30.0, -30.0)) << "in range";
  EXPECT_THAT(limitsBeside({0, 300}, 600), ElementsAre(600.0)) << "as far from it as it is wide";
  EXPECT_THAT(limitsBeside({0, 300}, 601), IsEmpty());
  EXPECT_THAT(limitsBeside({0, 300}, 299), ElementsAre(299.0, -299.0));
  EXPECT_THAT(limitsBeside({-300, 0}, 600), ElementsAre(-600.0));
  EXPECT_THAT(limitsBeside({250, 250}, 500), ElementsAre(500.0)) << "of one value, its distance from 0";
  EXPECT_THAT(limitsBeside({250, 250}, 501), IsEmpty());
  EXPECT_THAT(limitsBeside({-1, 1}, 0), ElementsAre(0.0)) << "once";
  EXPECT_THAT(limitsBeside({-s_greatest, s_greatest}, s_greatest), ElementsAre(s_greatest, -s_greatest));
  EXPECT_THAT(limitsBeside({-s_greatest, -1e308}, s_greatest), ElementsAre(-s_greatest));
}

TEST(Chart, ShowsNoLimitThatIsNoLine) {
  for (double const limit : {-5.0, s_infinity, -s_infinity, s_nan})
    EXPECT_THAT(limitsOf(genChart(withLimit(seriesOf({-10, 10}), limit), s_intervals)), IsEmpty()) << limit;
}

TEST(Chart, HasRoomForItsLimits) {
  auto const chart = genChart(withLimit(seriesOf({10, 20}), 28), s_intervals);
  EXPECT_EQ(chart.y.low, 10.0);
  EXPECT_EQ(chart.y.high, 30.0);
  ASSERT_EQ(chart.limits.size(), 1U);
  EXPECT_DOUBLE_EQ(chart.limits[0].y, 0.9);
}

TEST(Chart, HasLimitsAsItsRangeWhereAllValuesAreInfinite) {
  auto const chart = genChart(withLimit(seriesOf({s_infinity}), 30), s_intervals);
  EXPECT_THAT(labelsOf(chart.y), ElementsAre("-40", "-20", "0", "20", "40"));
  EXPECT_THAT(limitsOf(chart), ElementsAre(30.0, -30.0));
}

// ---- a trend

/// A value of the run of that number with a limit; a NaN stands for none.
TrendPoint pointAt(double at, double value, std::optional<double> limit = std::nullopt) {
  TrendPoint point{{}, {}, {}, at, {value, {{}, 0, {}, 1, 0}, limit && std::abs(value) > *limit}, true, {}};
  if (std::isnan(value)) point.value = {0, {{}, {}, {}, 0, 1}, false};
  if (limit) point.limit = ColumnLimit{*limit, "N"};
  return point;
}

Chart chartOf(std::vector<TrendPoint> points) {
  Trend trend;
  trend.points = std::move(points);
  return genChart(trend, s_intervals);
}

TEST(TrendChart, JoinsTheValuesOfTheRunsThatHaveNumbers) {
  auto invalid = pointAt(4, 1000);
  invalid.isValid = false;
  auto const chart =
      chartOf({pointAt(1, 0), pointAt(2, 10), pointAt(3, NAN), invalid, pointAt(5, 5), pointAt(6, HUGE_VAL)});
  EXPECT_THAT(labelsOf(chart.x), ElementsAre("1", "2", "3", "4", "5", "6"));
  EXPECT_THAT(labelsOf(chart.y), ElementsAre("0", "2", "4", "6", "8", "10"));
  ASSERT_EQ(chart.lines.size(), 2U);
  EXPECT_THAT(chart.lines[0], ElementsAre(ChartPoint{0, 0}, ChartPoint{0.2, 1}));
  EXPECT_THAT(chart.lines[1], ElementsAre(ChartPoint{0.8, 0.5}));
  EXPECT_THAT(chart.infinite, ElementsAre(ChartPoint{1, 1}));
}

TEST(TrendChart, HasOneLimitWhereItIsThatOfAllRuns) {
  auto const chart = chartOf({pointAt(1, 0, 8), pointAt(2, 10, 8)});
  EXPECT_THAT(limitsOf(chart), ElementsAre(8.0, -8.0));
  EXPECT_THAT(chart.limitSteps, IsEmpty());
  ASSERT_EQ(chart.exceeded.size(), 1U);
  EXPECT_EQ(chart.exceeded[0].x, 1.0);
}

TEST(TrendChart, HasStepsBetweenLimitsThatDiffer) {
  auto const chart = chartOf({pointAt(1, 0, 8), pointAt(2, 10, 8), pointAt(3, 0, 10), pointAt(5, 0)});
  EXPECT_THAT(chart.limits, IsEmpty());
  ASSERT_EQ(chart.limitSteps.size(), 2U) << "above and below 0";
  auto const upper = chart.limitSteps[0];
  EXPECT_THAT(
      upper,
      ElementsAre(ChartPoint{0, chart.y.fractionOf(8)}, ChartPoint{0.125, chart.y.fractionOf(8)},
                  ChartPoint{0.125, chart.y.fractionOf(8)}, ChartPoint{0.375, chart.y.fractionOf(8)},
                  ChartPoint{0.375, chart.y.fractionOf(10)}, ChartPoint{0.75, chart.y.fractionOf(10)}));
  EXPECT_EQ(chart.limitSteps[1].front().y, chart.y.fractionOf(-8));
}

TEST(TrendChart, LeavesLimitsOutThatAreFarFromTheValues) {
  auto const chart = chartOf({pointAt(1, 0, 800), pointAt(2, 10, 8)});
  EXPECT_EQ(chart.y.high, 10.0);
  ASSERT_EQ(chart.limitSteps.size(), 2U);
  EXPECT_EQ(chart.limitSteps[0].front().x, 0.5);
}

TEST(TrendChart, IsEmptyWithoutNumbers) {
  EXPECT_TRUE(chartOf({}).isEmpty());
  EXPECT_TRUE(chartOf({pointAt(1, NAN, 5)}).isEmpty());
}

}  // namespace
}  // namespace Kestrel::ResultTables

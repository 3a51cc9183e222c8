#include "result_tables/render/Thinning.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ostream>

namespace Kestrel::ResultTables {

void PrintTo(ChartPoint const& point, std::ostream* out) { *out << '(' << point.x << ", " << point.y << ')'; }

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::SizeIs;

TEST(ThinnedLine, KeepsWhatCanBeToldApart) {
  std::vector<ChartPoint> const line = {{0.01, 0.5}, {0.02, 0.9}, {0.03, 0.6}, {0.04, 0.1}, {0.05, 0.3},
                                        {0.06, 0.4}, {0.55, 0.2}, {0.56, 0.2}, {1, 1}};
  EXPECT_THAT(thinned(line, 10), ElementsAre(ChartPoint{0.01, 0.5}, ChartPoint{0.02, 0.9},
                                             ChartPoint{0.04, 0.1}, ChartPoint{0.06, 0.4},
                                             ChartPoint{0.55, 0.2}, ChartPoint{0.56, 0.2}, ChartPoint{1, 1}))
      << "in order";
  EXPECT_EQ(thinned(line, 1000), line);
  EXPECT_THAT(thinned({}, 10), IsEmpty());
}

TEST(ThinnedLine, KeepsTheOrderOfTimesThatGoBack) {
  std::vector<ChartPoint> const line = {{0.9, 0}, {0.1, 1}, {0.9, 0.5}};
  EXPECT_EQ(thinned(line, 2), line);
}

TEST(ThinnedLine, HasNoMorePointsThanThePictureNeeds) {
  std::vector<ChartPoint> line;
  for (std::size_t i = 0; i <= 100'000; ++i)
    line.push_back({static_cast<double>(i) / 100'000, i % 2 == 0 ? 0.0 : 1.0});
  EXPECT_EQ(thinned(line, 100).size(), 301U)
      << "two hundred ends, a hundred highest points, and the last point";
}

// ---- reducing

std::size_t countPoints(std::vector<std::vector<ChartPoint>> const& lines) {
  std::size_t count = 0;
  for (auto const& line : lines) count += line.size();
  return count;
}

/// A line over the whole width, whose heights go up and down between 0.25 and 0.75.
std::vector<ChartPoint> zigzag(std::size_t count) {
  std::vector<ChartPoint> line;
  for (std::size_t i = 0; i < count; ++i)
    line.push_back({static_cast<double>(i) / static_cast<double>(count - 1), i % 2 == 0 ? 0.25 : 0.75});
  return line;
}

TEST(ReducedLines, AreThemselvesWhereTheyHaveFewPoints) {
  std::vector<std::vector<ChartPoint>> const lines = {{{0, 0}, {0, 0.5}, {0, 0}, {0, 0.5}, {0, 0}},
                                                      {{0, 0}, {0, 0.5}, {0, 0}}};
  EXPECT_EQ(reduced(lines, 8), lines);
  EXPECT_THAT(reduced({}, 8), IsEmpty());
}

TEST(ReducedLines, KeepWhatStandsOutAndWhatThePictureWouldMissMost) {
  std::vector<ChartPoint> line;
  for (std::size_t i = 0; i < 16; ++i) line.push_back({static_cast<double>(i) / 15, 0.5});
  line[5].y = 0.9;
  line[10].y = 0.1;
  EXPECT_THAT(reduced({line}, 8), ElementsAre(ElementsAre(line[0], line[4], line[5], line[6], line[8],
                                                          line[10], line[11], line[15])));
}

TEST(ReducedLines, UseTheRoomThatThereIs) { EXPECT_EQ(countPoints(reduced({zigzag(100'000)}, 240)), 240U); }

TEST(ReducedLines, HaveNoPointsThatCannotBeSeen) {
  std::vector<ChartPoint> rising;
  for (std::size_t i = 0; i < 100'000; ++i)
    rising.push_back({static_cast<double>(i) / 99'999, static_cast<double>(i) / 99'999});
  EXPECT_THAT(reduced({rising}, 240), ElementsAre(ElementsAre(rising.front(), rising.back())));
}

TEST(ReducedLines, PassCloseByThePointsThatAreLeftOut) {
  std::vector<ChartPoint> wave;
  for (std::size_t i = 0; i < 100'000; ++i) {
    double const x = static_cast<double>(i) / 99'999;
    wave.push_back({x, 0.5 + 0.5 * std::sin(60 * x)});
  }
  auto const lines = reduced({wave}, 240);
  ASSERT_EQ(lines.size(), 1U);
  double farthest = 0;
  auto next = lines[0].begin();
  for (auto const& point : wave) {
    if (point.x > next->x) ++next;
    if (point.x == next->x) continue;
    auto const& last = *(next - 1);
    double const y = last.y + (point.x - last.x) / (next->x - last.x) * (next->y - last.y);
    farthest = std::max(farthest, std::abs(y - point.y));
  }
  EXPECT_LT(farthest, 0.01) << "two pixels of two hundred";
}

TEST(ReducedLines, KeepTheLowestAndTheHighestOfAll) {
  auto line = zigzag(100'000);
  line[77'777].y = 1;
  line[77'778].y = 0;
  auto const lines = reduced({line}, 240);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_THAT(lines[0], IsSupersetOf({line.front(), line[77'777], line[77'778], line.back()}));
}

TEST(ReducedLines, ShowWhereTimesAreDense) {
  std::vector<ChartPoint> line;
  for (std::size_t i = 0; i < 100; ++i)
    line.push_back({static_cast<double>(i) / 100, i % 2 == 0 ? 0.45 : 0.55});
  for (std::size_t i = 0; i < 100'000; ++i) line.push_back({0.999, i % 2 == 0 ? 0.25 : 0.75});
  auto const lines = reduced({line}, 240);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].size(), 103U) << "all of the first hundred, and of the rest one of each height";
}

TEST(ReducedLines, KeepTheirEnds) {
  auto const minima = zigzag(5'000);
  auto maxima = minima;
  for (auto& point : maxima) point.y += 0.25;
  auto const lines = reduced({minima, maxima}, 240);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].front(), minima.front());
  EXPECT_EQ(lines[0].back(), minima.back());
  EXPECT_EQ(lines[1].front(), maxima.front());
  EXPECT_EQ(lines[1].back(), maxima.back());
  EXPECT_EQ(countPoints(lines), 240U);
}

TEST(ReducedLines, LoseSomeOfVeryMany) {
  std::vector<std::vector<ChartPoint>> lines;
  for (std::size_t i = 0; i < 1000; ++i) lines.push_back({{static_cast<double>(i) / 999, 0.5}});
  lines[333][0].y = 1;
  lines[444][0].y = 0;
  auto const fewer = reduced(lines, 240);
  EXPECT_THAT(fewer, IsSupersetOf({lines[0], lines[333], lines[444], lines[999]}));
  EXPECT_THAT(fewer, Each(SizeIs(1))) << "what was no line has become none";
  EXPECT_LE(fewer.size(), 240U);
}

TEST(ReducedLines, HaveRoomForTimesThatGoBackAndForth) {
  std::vector<ChartPoint> line;
  for (std::size_t i = 0; i < 10'000; ++i)
    line.push_back({i % 2 == 0 ? 0.0 : 1.0, static_cast<double>(i) / 9'999});
  auto const lines = reduced({line}, 240);
  EXPECT_LE(countPoints(lines), 240U);
  EXPECT_GE(countPoints(lines), 120U);
  EXPECT_EQ(lines[0].front(), line.front());
  EXPECT_EQ(lines[0].back(), line.back());
}

// ---- points that no line joins

TEST(ReducedPoints, KeepWhatStandsOut) {
  auto points = zigzag(10'000);
  points[4'321].y = 1;
  auto const fewer = reducedPoints(points, 60);
  EXPECT_LE(fewer.size(), 60U);
  EXPECT_GE(fewer.size(), 45U);
  EXPECT_THAT(fewer, IsSupersetOf({points.front(), points[4'321], points.back()}));
  EXPECT_EQ(reducedPoints(fewer, 60), fewer);
  EXPECT_THAT(reducedPoints({}, 60), IsEmpty());
}

}  // namespace
}  // namespace Kestrel::ResultTables

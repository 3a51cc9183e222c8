#include "result_tables/render/Drawing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

#include "support/SeriesTesting.h"

namespace Kestrel::ResultTables {

void PrintTo(PixelPoint const& point, std::ostream* out) { *out << '(' << point.x << ", " << point.y << ')'; }

namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

constexpr DrawingLayout s_layout{400, 100, 40, false, {}};
constexpr DrawingLayout s_reducedLayout{400, 100, 40, false, 240};

template <typename Kind>
std::vector<Kind> shapesOf(Drawing const& drawing) {
  std::vector<Kind> shapes;
  for (auto const& shape : drawing.shapes) {
    if (auto const* const found = std::get_if<Kind>(&shape)) shapes.push_back(*found);
  }
  return shapes;
}

template <typename Kind>
std::vector<Kind> shapesOf(Drawing const& drawing, ShapeRole role) {
  auto shapes = shapesOf<Kind>(drawing);
  std::erase_if(shapes, [&](Kind const& shape) { return shape.role != role; });
  return shapes;
}

std::vector<std::string> textsOf(Drawing const& drawing, ShapeRole role) {
  std::vector<std::string> texts;
  for (auto const& shape : shapesOf<TextShape>(drawing, role)) texts.push_back(shape.text);
  return texts;
}

std::size_t countPoints(CurveShape const& curve) {
  std::size_t count = 0;
  for (auto const& line : curve.lines) count += line.size();
  return count;
}

TEST(Drawing, StandsBelowItsTop) {
  auto const drawing = drawSeries(seriesOf({0, 5, 10}), s_layout, 1000);
  EXPECT_EQ(drawing.height, 186.0) << "46 above the plot, 100, and 40 below";
  auto const axes = shapesOf<LineShape>(drawing, ShapeRole::axis);
  ASSERT_EQ(axes.size(), 2U);
  EXPECT_EQ(axes[0].from, (PixelPoint{46, 1146})) << "two digits of seven pixels beside the axis";
  EXPECT_EQ(axes[0].to, (PixelPoint{376, 1146}));
  EXPECT_EQ(axes[1].from, (PixelPoint{46, 1146}));
  EXPECT_EQ(axes[1].to, (PixelPoint{46, 1046}));
}

TEST(Drawing, HasAGridAndTicksWithTheirNumbers) {
  auto const drawing = drawSeries(seriesOf({0, 5, 10}), s_layout, 0);
  auto const grid = shapesOf<LineShape>(drawing, ShapeRole::grid);
  ASSERT_EQ(grid.size(), 6U);
  EXPECT_EQ(grid[1].from, (PixelPoint{46, 126}));
  EXPECT_EQ(grid[1].to, (PixelPoint{376, 126}));
  auto const ticks = shapesOf<LineShape>(drawing, ShapeRole::tick);
  ASSERT_EQ(ticks.size(), 3U);
  EXPECT_EQ(ticks[1].from, (PixelPoint{211, 146}));
  EXPECT_EQ(ticks[1].to, (PixelPoint{211, 151}));
  auto const labels = shapesOf<TextShape>(drawing, ShapeRole::label);
  ASSERT_EQ(labels.size(), 10U);
  EXPECT_EQ(labels[1].text, "2");
  EXPECT_EQ(labels[1].place, (PixelPoint{38, 130}));
  EXPECT_EQ(labels[1].anchor, TextAnchor::end);
  EXPECT_EQ(labels[7].text, "1");
  EXPECT_EQ(labels[7].place, (PixelPoint{211, 164}));
  EXPECT_EQ(labels[7].anchor, TextAnchor::middle);
  EXPECT_EQ(labels[9].text, "step");
  EXPECT_EQ(labels[9].place, (PixelPoint{211, 180}));
}

TEST(Drawing, SaysWhatItShows) {
  auto layout = s_layout;
  EXPECT_THAT(textsOf(drawSeries(seriesOf({1, 2}), layout, 0), ShapeRole::title), IsEmpty());
  EXPECT_THAT(textsOf(drawSeries(seriesOf({1, 2}), layout, 0), ShapeRole::about), ElementsAre("values: 2"));
  layout.hasTitle = true;
  auto const drawing = drawSeries(seriesOf({1, 2}), layout, 10);
  EXPECT_EQ(drawing.height, 204.0) << "a line more";
  auto const title = shapesOf<TextShape>(drawing, ShapeRole::title);
  ASSERT_EQ(title.size(), 1U);
  EXPECT_EQ(title[0].text, "OP20: Bolts, Forces, B1, Max Normal Force [N]");
  EXPECT_EQ(title[0].place, (PixelPoint{24, 26}));
  auto const about = shapesOf<TextShape>(drawing, ShapeRole::about);
  ASSERT_EQ(about.size(), 1U);
  EXPECT_EQ(about[0].text, "r.json, values: 2");
  EXPECT_EQ(about[0].place, (PixelPoint{24, 44}));
}

TEST(Drawing, OfNoNumbersSaysSo) {
  auto const empty = drawSeries(seriesOf({}), s_layout, 0);
  EXPECT_EQ(empty.height, 62.0);
  EXPECT_THAT(empty.shapes, SizeIs(1));
  EXPECT_THAT(textsOf(empty, ShapeRole::about), ElementsAre("no data"));
  EXPECT_THAT(textsOf(drawSeries(seriesOf({s_nan}), s_layout, 0), ShapeRole::about), ElementsAre("NaN"));
}

TEST(Drawing, JoinsValuesAndDotsFew) {
  auto const drawing = drawSeries(seriesOf({0, 5, s_nan, 10}), s_layout, 0);
  auto const curves = shapesOf<CurveShape>(drawing);
  ASSERT_EQ(curves.size(), 1U);
  EXPECT_THAT(curves[0].lines, ElementsAre(ElementsAre(PixelPoint{46, 146}, PixelPoint{156, 96}),
                                           ElementsAre(PixelPoint{376, 46})));
  auto const dots = shapesOf<DotsShape>(drawing);
  ASSERT_EQ(dots.size(), 1U);
  EXPECT_THAT(dots[0].centres, ElementsAre(PixelPoint{46, 146}, PixelPoint{156, 96}, PixelPoint{376, 46}));
}

TEST(Drawing, DotsOfManyValuesThoseThatNoLineLeadsTo) {
  std::vector<double> values(101, 5.0);
  EXPECT_THAT(shapesOf<DotsShape>(drawSeries(seriesOf(values), s_layout, 0)), IsEmpty());
  values[99] = s_nan;
  values.push_back(5.0);
  auto const dots = shapesOf<DotsShape>(drawSeries(seriesOf(values), s_layout, 0));
  EXPECT_THAT(dots, IsEmpty()) << "two values make a line";
  values[101] = s_nan;
  values.push_back(5.0);
  values.push_back(s_nan);
  values.push_back(5.0);
  auto const more = shapesOf<DotsShape>(drawSeries(seriesOf(values), s_layout, 0));
  ASSERT_EQ(more.size(), 1U);
  EXPECT_THAT(more[0].centres, SizeIs(3));
}

TEST(Drawing, PointsToInfiniteValues) {
  auto const arrows =
      shapesOf<ArrowsShape>(drawSeries(seriesOf({0, s_infinity, -s_infinity, 10}), s_layout, 0));
  ASSERT_EQ(arrows.size(), 1U);
  ASSERT_EQ(arrows[0].arrows.size(), 2U);
  EXPECT_TRUE(arrows[0].arrows[0].isUp);
  EXPECT_EQ(arrows[0].arrows[0].tip, (PixelPoint{156, 42})) << "its middle at the upper end";
  EXPECT_FALSE(arrows[0].arrows[1].isUp);
  EXPECT_EQ(arrows[0].arrows[1].tip, (PixelPoint{266, 150}));
}

TEST(Drawing, LeavesRoomForTheNumbersOfLimits) {
  auto const drawing = drawSeries(withLimit(seriesOf({-60, 60}), 30), s_layout, 0);
  auto const limits = shapesOf<LineShape>(drawing, ShapeRole::limit);
  ASSERT_EQ(limits.size(), 2U);
  EXPECT_EQ(limits[0].from, (PixelPoint{60, 81}));
  EXPECT_EQ(limits[0].to, (PixelPoint{291, 81})) << "eleven characters of seven pixels beside it";
  EXPECT_EQ(limits[1].from, (PixelPoint{60, 111}));
  auto const texts = shapesOf<TextShape>(drawing, ShapeRole::limitText);
  ASSERT_EQ(texts.size(), 2U);
  EXPECT_EQ(texts[0].text, "limit 30 N");
  EXPECT_EQ(texts[0].place, (PixelPoint{299, 85}));
  EXPECT_THAT(textsOf(drawSeries(withLimit(seriesOf({-600, 600}), 30), s_layout, 0), ShapeRole::limitText),
              ElementsAre("limit 30 N"))
      << "two would lie on each other";
}

TEST(Drawing, MarksTheExtreme) {
  auto const drawing = drawSeries(seriesOf({0, 10, 5}), s_layout, 0);
  auto const circles = shapesOf<CircleShape>(drawing);
  ASSERT_EQ(circles.size(), 1U);
  EXPECT_EQ(circles[0].role, ShapeRole::extreme);
  EXPECT_EQ(circles[0].centre, (PixelPoint{211, 46}));
  EXPECT_EQ(circles[0].radius, 5.0);
  auto const texts = shapesOf<TextShape>(drawing, ShapeRole::extremeText);
  ASSERT_EQ(texts.size(), 1U);
  EXPECT_EQ(texts[0].text, "10 N, step 1");
  EXPECT_EQ(texts[0].place, (PixelPoint{220, 37}));
  EXPECT_EQ(texts[0].anchor, TextAnchor::start);
  auto const right = shapesOf<TextShape>(drawSeries(seriesOf({0, 10}), s_layout, 0), ShapeRole::extremeText);
  ASSERT_EQ(right.size(), 1U);
  EXPECT_EQ(right[0].place, (PixelPoint{367, 37}));
  EXPECT_EQ(right[0].anchor, TextAnchor::end) << "where it has room";
  EXPECT_THAT(shapesOf<CircleShape>(drawSeries(seriesOf({0, 0}), s_layout, 0)), IsEmpty());
}

TEST(Drawing, TellsAnExtremeThatIsExceeded) {
  auto const drawing = drawSeries(withLimit(seriesOf({0, -40.5}), 30), s_layout, 0);
  EXPECT_THAT(shapesOf<CircleShape>(drawing, ShapeRole::extremeExceeded), SizeIs(1));
  EXPECT_THAT(textsOf(drawing, ShapeRole::extremeTextExceeded), ElementsAre("-40.5 N, step 1"));
  EXPECT_THAT(textsOf(drawing, ShapeRole::extremeText), IsEmpty());
}

TEST(Drawing, HasTheDecimalMarkThatIsAskedFor) {
  auto layout = s_layout;
  layout.decimalMark = ',';
  auto series = withLimit(seriesOf({0, 1.25}, {0, 0.5}), 0.75);
  series.column.unit = "1.5 N";
  auto const drawing = drawSeries(series, layout, 0);
  EXPECT_THAT(textsOf(drawing, ShapeRole::label), ElementsAre("-1", "-0,5", "0", "0,5", "1", "1,5", "0",
                                                              "0,1", "0,2", "0,3", "0,4", "0,5", "time"));
  EXPECT_THAT(textsOf(drawing, ShapeRole::limitText), ElementsAre("limit 0,75 N", "limit -0,75 N"));
  EXPECT_THAT(textsOf(drawing, ShapeRole::extremeTextExceeded), ElementsAre("1,25 1.5 N, step 1, time 0,5"));
}

TEST(Drawing, HasNoMorePointsThanAreAskedFor) {
  std::vector<double> values;
  for (std::size_t i = 0; i < 100'000; ++i) values.push_back(i % 2 == 0 ? -1.0 : 1.0);
  values[50'000] = 8;
  values[70'000] = -6;
  auto const drawing = drawSeries(seriesOf(values), s_reducedLayout, 0);
  auto const curves = shapesOf<CurveShape>(drawing);
  ASSERT_EQ(curves.size(), 1U);
  EXPECT_EQ(countPoints(curves[0]), 240U);
  EXPECT_THAT(curves[0].lines, ElementsAre(AllOf(Contains(Field(&PixelPoint::y, 56.0)),
                                                 Contains(Field(&PixelPoint::y, 126.0)))))
      << "8 and -6";
  EXPECT_THAT(shapesOf<DotsShape>(drawing), IsEmpty());
  EXPECT_GT(countPoints(shapesOf<CurveShape>(drawSeries(seriesOf(values), s_layout, 0)).at(0)), 1000U);
}

TEST(Drawing, CountsInfiniteValuesAmongItsPoints) {
  std::vector<double> values;
  for (std::size_t i = 0; i < 10'000; ++i)
    values.push_back(i % 3 == 0 ? s_infinity : i % 3 == 1 ? -s_infinity : 1.0);
  auto const drawing = drawSeries(seriesOf(values), s_reducedLayout, 0);
  auto const arrows = shapesOf<ArrowsShape>(drawing).at(0).arrows;
  auto const points = countPoints(shapesOf<CurveShape>(drawing).at(0));
  EXPECT_LE(arrows.size(), 60U);
  EXPECT_GE(arrows.size(), 30U);
  EXPECT_LE(points, 240 - arrows.size());
  EXPECT_GE(points, 60U);
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include "result_tables/render/TextSeries.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "result_tables/base/Text.h"
#include "support/SeriesTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string render(TableSeries const& series, TextStyle const& style = {.width = 67}) {
  return renderSeriesAsText({series}, style);
}

std::size_t widestLine(std::string const& text) {
  std::size_t widest = 0;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) widest = std::max(widest, displayWidth(line));
  return widest;
}

TEST(TextSeries, PlotInBrailleWithExtremeAndLimits) {
  EXPECT_EQ(render(withLimit(seriesOf({0, 10, -40.5, 20, 0}, {0, 0.5, 1, 1.5, 2}), 30)),
            R"(OP20: Bolts, Forces, B1, Max Normal Force [N]

  40 ┤
     │╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌
     │
  20 ┤                                            ⢀⠔⠢⢄⣀
     │              ⣀⡀                           ⡠⠊    ⠉⠒⠢⢄⣀
     │    ⣀⣀⡠⠤⠤⠒⠒⠊⠉⠉ ⠈⠢⡀                       ⢀⠜           ⠉⠒⠢⢄⣀
   0 ┤⠒⠊⠉⠉             ⠈⠢⡀                    ⡠⠃                 ⠉⠒
     │                   ⠈⠢⡀                ⢀⠎
     │                     ⠈⠢⡀             ⡔⠁
 -20 ┤                       ⠑⢄          ⡠⠊
     │                         ⠑⢄      ⢀⠔⠁
     │╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌⠑⢄╌╌╌⡠⠊╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌
 -40 ┤                             ⠑◉⠜
     │
     │
 -60 ┤
     └┬──────────────┬──────────────┬──────────────┬──────────────┬
time  0             0.5             1             1.5             2

  ◉ -40.5 N, step 2, time 1, beyond its limit
  ╌ limit 30 N
  values: 5
)");
}

TEST(TextSeries, PlotInAsciiWhereThereIsNothingElse) {
  EXPECT_EQ(render(withLimit(seriesOf({0, 10, -40.5, s_nan, 20, s_infinity, -s_infinity, 0}), 30),
                   {.width = 67, .unicode = false}),
            R"(OP20: Bolts, Forces, B1, Max Normal Force [N]

  40 +                                           X
     |-------------------------------------------------------------
     |
  20 +                                  *
     |
     |     *****
   0 +*****     *                                                 *
     |           *
     |            *
 -20 +             **
     |               *
     |----------------*--------------------------------------------
 -40 +                 *
     |
     |
 -60 +                                                   v
     ++----------------+----------------+----------------+---------
step  0                2                4                6

  X inf N, step 5, beyond its limit
  - limit 30 N
  values: 8, not numbers: 1
)");
}

TEST(TextSeries, PlotMinimaAndMaximaOfLineJoins) {
  EXPECT_EQ(render(seriesOfRanges({{-1, 1.5}, {-0.5, 1}, {0, 0}})),
            R"(OP20: Line Joins, Forces, Seam, Max Normal Force [N]

 1.5 ┤◉⠑⠒⠒⠤⠤⣀⣀⡀
     │        ⠈⠉⠉⠒⠒⠤⠤⢄⣀⣀
     │                  ⠉⠉⠒⠒⠢⠤⠤⣀⣀
   1 ┤                           ⠉⠉⠑⠒⠢⢄⡀
     │                                 ⠈⠉⠒⠤⢄⡀
     │                                      ⠈⠑⠒⠤⣀⡀
 0.5 ┤                                           ⠈⠑⠢⠤⣀
     │                                                ⠉⠑⠢⢄⣀
     │                                                     ⠉⠒⠢⢄⡀
   0 ┤                                                         ⣈⣉⡲⠤
     │                                               ⣀⣀⡠⠤⠤⠒⠒⠊⠉⠉
     │                                     ⣀⣀⡠⠤⠤⠒⠒⠊⠉⠉
-0.5 ┤                           ⣀⣀⡠⠤⠤⠒⠒⠊⠉⠉
     │                  ⣀⣀⠤⠤⠔⠒⠒⠉⠉
     │        ⢀⣀⣀⠤⠤⠒⠒⠊⠉⠉
  -1 ┤⣀⡠⠤⠤⠒⠒⠉⠉⠁
     └┬─────────────────────────────┬─────────────────────────────┬
step  2                             3                             4

  ◉ 1.5 N, step 2
  records: 3, minimum and maximum of each
)");
}

TEST(TextSeries, PlotOneValue) {
  EXPECT_EQ(render(seriesOf({7})), R"(OP20: Bolts, Forces, B1, Max Normal Force [N]

     │
     │
     │
     │
     │
     │
     │
     │
   7 ┤                              ◉
     │
     │
     │
     │
     │
     │
     │
     └──────────────────────────────┬──────────────────────────────
step                                0

  ◉ 7 N, step 0
  values: 1
)");
}

TEST(TextSeries, HaveNoPlotWithoutNumbers) {
  EXPECT_EQ(render(withLimit(seriesOf({}), 30)), R"(OP20: Bolts, Forces, B1, Max Normal Force [N]

  no data
  limit 30 N
)");
  EXPECT_EQ(render(seriesOf({s_nan, s_nan})), R"(OP20: Bolts, Forces, B1, Max Normal Force [N]

  NaN
  values: 2, not numbers: 2
)");
}

TEST(TextSeries, SayWhenThereAreNone) { EXPECT_EQ(renderSeriesAsText({}, {}), "no series\n"); }

TEST(TextSeries, StandOneBelowTheOther) {
  auto const one = render(seriesOf({7}));
  EXPECT_EQ(renderSeriesAsText({seriesOf({7}), seriesOf({7})}, {.width = 67}), one + '\n' + one);
}

TEST(TextSeries, FitTheWidthDownToSixtyColumnsBesideTheAxis) {
  auto const series = withLimit(seriesOf({0, 10, -40.5}), 30);
  EXPECT_EQ(widestLine(render(series, {.width = 120})), 120U);
  EXPECT_EQ(widestLine(render(series, {.width = 0})), 80U) << "where it is not known";
  EXPECT_EQ(widestLine(render(series, {.width = 20})), 46U) << "numbers, a blank, the axis and forty columns";
  EXPECT_EQ(render(series, {.width = 46}), render(series, {.width = 1}));
}

TEST(TextSeries, LeaveNumbersOutThatHaveNoRoom) {
  auto const text = render(seriesOf({1, 2, 3}, {1000000.001, 1000000.0025, 1000000.004}));
  EXPECT_THAT(text, HasSubstr("1000000.002"));
  EXPECT_LE(widestLine(text), 67U) << text;
}

TEST(TextSeries, HaveTheDigitsThatAreAskedFor) {
  auto const series = withLimit(seriesOf({1234.5678}), 1234567);
  EXPECT_THAT(render(series, {.digits = 3}), HasSubstr("◉ 1.23e+03 N, step 0\n  limit 1.23e+06 N\n"));
  EXPECT_THAT(render(series, {.digits = 17}), HasSubstr("◉ 1234.5678 N, step 0\n  limit 1234567 N\n"));
}

TEST(TextSeries, AreColouredOnRequest) {
  auto const text = render(withLimit(seriesOf({0, -40.5}), 30), {.colour = true});
  EXPECT_THAT(text, testing::StartsWith("\x1b[1mOP20: Bolts, Forces, B1, Max Normal Force [N]\x1b[0m\n"));
  EXPECT_THAT(text, HasSubstr("\x1b[31m◉\x1b[0m"));
  EXPECT_THAT(text, HasSubstr("\x1b[31m  ◉ -40.5 N, step 1, beyond its limit\x1b[0m\n"));
  EXPECT_THAT(text, HasSubstr("\x1b[33m╌\x1b[0m limit 30 N\n"));
  EXPECT_THAT(render(withLimit(seriesOf({0, -20}), 30), {.colour = true}), Not(HasSubstr("\x1b[31m")))
      << "nothing is exceeded";
}

TEST(TextSeries, ShowNamesThatDisturbNoLine) {
  auto series = seriesOf({7});
  series.unit = "a\x1b[31m\nb\xFF";
  EXPECT_THAT(render(series), testing::StartsWith("a␛[31m␊b\uFFFD: Bolts, "));
}

}  // namespace
}  // namespace Kestrel::ResultTables

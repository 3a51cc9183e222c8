#include "result_tables/render/SeriesTexts.h"

#include <gtest/gtest.h>

#include "support/SeriesTesting.h"

namespace Kestrel::ResultTables {
namespace {

TEST(SeriesTexts, NameTheSeriesByWhatPeopleSee) {
  auto series = seriesOf({1});
  EXPECT_EQ(titleText(series), "OP20: Bolts, Forces, B1, Max Normal Force [N]");
  EXPECT_EQ(placeText(series), "OP20: Bolts, Forces, B1, Max Normal Force");
  series.subGroup = "Left";
  series.shownItem = "B1\n(Joining Failed)";
  series.column.tableDisplayName = "";
  series.column.unit = "";
  EXPECT_EQ(titleText(series), "OP20: Bolts, Forces, Left, B1␊(Joining Failed), ClampNormalForce");
}

TEST(SeriesTexts, SayTheValueOfTheTableWithStepAndTime) {
  EXPECT_EQ(extremeText(seriesOf({1, -812.456789}), 7), "-812.4568 N, step 1");
  EXPECT_EQ(extremeText(seriesOf({1, -812.456789}, {0, 0.125}), 2), "-8.1e+02 N, step 1, time 0.12");
  EXPECT_EQ(extremeText(seriesOf({1, -s_infinity}), 7), "-inf N, step 1");
  EXPECT_EQ(extremeText(seriesOf({0, 0}), 7), "0 N") << "no step stands out";
  EXPECT_EQ(extremeText(seriesOf({s_nan, 0}), 7), "0 N");
  EXPECT_EQ(extremeText(seriesOf({s_nan, s_nan}), 7), "NaN");
  EXPECT_EQ(extremeText(seriesOf({}), 7), "no data");
  EXPECT_EQ(extremeText(seriesOf({1, 2.5}, {0, 0.125}), 7, ','), "2,5 N, step 1, time 0,125");
}

TEST(SeriesTexts, SayTheLimit) {
  EXPECT_EQ(limitText(-1234.5678, "N", 5), "limit -1234.6 N");
  EXPECT_EQ(limitText(30, "", 7), "limit 30");
  EXPECT_EQ(limitText(30.5, "N", 7, ','), "limit 30,5 N");
}

TEST(SeriesTexts, SayHowMuchDataThereIs) {
  EXPECT_EQ(extentText(seriesOf({1, 2})), "values: 2");
  EXPECT_EQ(extentText(seriesOf({1, s_nan, 3})), "values: 3, not numbers: 1");
  EXPECT_EQ(extentText(seriesOfRanges({{1, 2}})), "records: 1, minimum and maximum of each");
}

}  // namespace
}  // namespace Kestrel::ResultTables

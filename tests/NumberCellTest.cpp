#include "result_tables/render/NumberCell.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Kestrel::ResultTables {
namespace {

TEST(NumberCell, IsCutAtItsDecimalPoint) {
  NumberCell const number("-12.375");
  EXPECT_EQ(number.text(), "-12.375");
  EXPECT_EQ(number.integerWidth(), 3U);
  EXPECT_EQ(number.fractionWidth(), 4U);
  EXPECT_EQ(NumberCell("12").integerWidth(), 2U);
  EXPECT_EQ(NumberCell("12").fractionWidth(), 0U);
  EXPECT_EQ(NumberCell("1.5e-07").integerWidth(), 1U);
  EXPECT_EQ(NumberCell("1e-07").integerWidth(), 5U);
  EXPECT_EQ(NumberCell("").integerWidth(), 0U);
}

TEST(NumberCell, CountsColumnsOfTheTerminal) {
  EXPECT_EQ(NumberCell("–").integerWidth(), 1U);
  EXPECT_EQ(NumberCell("なし").integerWidth(), 4U);
}

std::vector<std::string> column(std::vector<std::string> const& texts) {
  NumberColumn column;
  for (auto const& text : texts) column.add(NumberCell(text));
  std::vector<std::string> lines;
  for (auto const& text : texts) {
    lines.push_back(column.aligned(NumberCell(text)));
    EXPECT_EQ(column.width(), 9U);
  }
  return lines;
}

TEST(NumberColumn, BringsDecimalPointsInLine) {
  EXPECT_EQ(column({"-1314.547", "7", "-0.5", "1e+30", "nan"}),
            (std::vector<std::string>{"-1314.547", "    7    ", "   -0.5  ", "1e+30    ", "  nan    "}));
}

TEST(NumberColumn, LeavesRoomForTheTextAndShowsWhatStandsForIt) {
  NumberColumn column;
  column.add(NumberCell("10.25"));
  EXPECT_EQ(column.aligned(NumberCell("1.5"), "\x1b[31m1.5\x1b[0m"), " \x1b[31m1.5\x1b[0m ");
}

TEST(NumberColumn, IsEmptyWithoutCells) { EXPECT_EQ(NumberColumn().width(), 0U); }

}  // namespace
}  // namespace Kestrel::ResultTables

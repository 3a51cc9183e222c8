#include "result_tables/render/DotGrid.h"

#include <gtest/gtest.h>

namespace Kestrel::ResultTables {
namespace {

using Characters = DotGrid::Characters;

std::string textOf(DotGrid const& grid, std::size_t rows) {
  std::string text;
  for (std::size_t row = 0; row < rows; ++row) text += grid.text(row) + '\n';
  return text;
}

TEST(DotGrid, HasTwoByFourDotsInABrailleCharacter) {
  std::string dots;
  for (double const x : {0.0, 1.0}) {
    for (double const y : {1.0, 2 / 3.0, 1 / 3.0, 0.0}) {
      DotGrid grid(1, 1, Characters::braille);
      grid.draw({{x, y}});
      dots += grid.text(0);
    }
  }
  EXPECT_EQ(dots, "⠁⠂⠄⡀⠈⠐⠠⢀");
}

TEST(DotGrid, CollectsTheDotsOfACharacter) {
  DotGrid grid(1, 1, Characters::braille);
  for (double const x : {0.0, 1.0}) grid.draw({{x, 0}, {x, 1}});
  EXPECT_EQ(grid.text(0), "⣿");
}

TEST(DotGrid, DrawsLinesWithoutHoles) {
  DotGrid grid(4, 2, Characters::braille);
  grid.draw({{0, 0}, {1, 1}});
  EXPECT_EQ(textOf(grid, 2), "  ⡠⠊\n⡠⠊\n");
  DotGrid steep(4, 2, Characters::braille);
  steep.draw({{0, 0}, {0, 1}, {1, 1}});
  EXPECT_EQ(textOf(steep, 2), "⡏⠉⠉⠉\n⡇\n");
}

TEST(DotGrid, DrawsInAscii) {
  DotGrid grid(5, 3, Characters::ascii);
  grid.draw({{0, 0}, {0.5, 1}, {1, 0}});
  EXPECT_EQ(textOf(grid, 3), "  *\n * *\n*   *\n");
}

TEST(DotGrid, DrawsNothingOfALineWithoutPoints) {
  DotGrid grid(5, 1, Characters::ascii);
  grid.draw({});
  EXPECT_EQ(grid.text(0), "");
}

TEST(DotGrid, ShowsMarksInPlaceOfDots) {
  DotGrid grid(5, 1, Characters::ascii);
  grid.draw({{0, 0}, {1, 0}});
  grid.mark({0.5, 0}, "X");
  grid.mark({1, 0}, "\x1b[31m^\x1b[0m");
  EXPECT_EQ(grid.text(0), "**X*\x1b[31m^\x1b[0m");
}

TEST(DotGrid, RulesWhatIsFree) {
  DotGrid grid(5, 2, Characters::ascii);
  grid.draw({{0, 1}, {0.25, 1}});
  grid.mark({0.5, 1}, "X");
  grid.rule(1, "-");
  EXPECT_EQ(textOf(grid, 2), "**X--\n\n");
  EXPECT_EQ(grid.rowOf(1.0), 0U);
  EXPECT_EQ(grid.rowOf(0.0), 1U);
  EXPECT_EQ(grid.columnOf(1.0), 4U);
}

TEST(DotGrid, RulesAPartOfARow) {
  DotGrid grid(6, 1, Characters::ascii);
  grid.mark({0.5, 0}, "X");
  grid.rule(0, "-", 0.2, 0.7);
  EXPECT_EQ(grid.text(0), " --X-");
}

}  // namespace
}  // namespace Kestrel::ResultTables

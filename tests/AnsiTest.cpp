#include "result_tables/render/Ansi.h"

#include <gtest/gtest.h>

namespace Kestrel::ResultTables {
namespace {

TEST(Ansi, StandsAroundTheTextInColourOnly) {
  EXPECT_EQ(bold("a", true), "\x1b[1ma\x1b[0m");
  EXPECT_EQ(red("-7.25", true), "\x1b[31m-7.25\x1b[0m");
  EXPECT_EQ(green("7", true), "\x1b[32m7\x1b[0m");
  EXPECT_EQ(yellow("500", true), "\x1b[33m500\x1b[0m");
  EXPECT_EQ(bold("a", false), "a");
  EXPECT_EQ(red("-7.25", false), "-7.25");
  EXPECT_EQ(yellow("", false), "");
}

}  // namespace
}  // namespace Kestrel::ResultTables

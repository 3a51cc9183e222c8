#include "result_tables/render/TextColumns.h"

#include <gtest/gtest.h>

namespace Kestrel::ResultTables {
namespace {

constexpr auto s_number = TextColumns::Kind::number;

TEST(TextColumns, HaveTheirDecimalPointsInLine) {
  TextColumns columns({{"name"}, {"value", s_number}, {"note"}});
  columns.add({"A", "1.5", "x"});
  columns.add({"Längst", "-12", ""});
  EXPECT_EQ(columns.render(false),
            "name     value   note\n"
            "A          1.5   x\n"
            "Längst   -12\n");
}

TEST(TextColumns, WithNothingInThemAreLeftOut) {
  TextColumns columns({{"name"}, {"empty", s_number}, {"last"}});
  columns.add({"A", "", "b"});
  EXPECT_EQ(columns.render(false), "name   last\nA      b\n");
  EXPECT_EQ(TextColumns({{"name"}}).render(false), "\n");
}

TEST(TextColumns, AreRedWhereTheyAreMarkedAndThereIsColour) {
  TextColumns columns({{"name"}});
  columns.add({"good"});
  columns.add({"bad"}, true);
  EXPECT_EQ(columns.render(true), "\x1b[1mname\x1b[0m\ngood\n\x1b[31mbad\x1b[0m\n");
  EXPECT_EQ(columns.render(false), "name\ngood\nbad\n");
}

TEST(TextColumns, ContinueInBlocksWhereTheTerminalEnds) {
  TextColumns columns({{"name"}, {"value", s_number}, {"note"}, {"remark"}});
  columns.add({"A", "1.5", "long, long", "x"}, true);
  columns.add({"B", "-12", "", "yy"});
  auto const* const whole =
      "name   value   note         remark\n"
      "A        1.5   long, long   x\n"
      "B      -12                  yy\n";
  EXPECT_EQ(columns.render(false, 34), whole);
  EXPECT_EQ(columns.render(false, 33),
            "name   value   note\n"
            "A        1.5   long, long\n"
            "B      -12\n"
            "\n"
            "name   remark\n"
            "A      x\n"
            "B      yy\n");
  EXPECT_EQ(columns.render(true, 10),
            "\x1b[1mname   value\x1b[0m\n\x1b[31mA        1.5\x1b[0m\nB      -12\n\n"
            "\x1b[1mname   note\x1b[0m\n\x1b[31mA      long, long\x1b[0m\nB\n\n"
            "\x1b[1mname   remark\x1b[0m\n\x1b[31mA      x\x1b[0m\nB      yy\n")
      << "at least one column beside the first";
}

}  // namespace
}  // namespace Kestrel::ResultTables

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

}  // namespace
}  // namespace Kestrel::ResultTables

#include "result_tables/import/Histories.h"

#include "support/ImportTesting.h"

namespace Kestrel::ResultTables {
namespace {

TEST(Histories, AreFoundByEntityAndComponent) {
  Histories histories("a.csv");
  auto const& table = histories.add({"C1", "", {"fx", "fz"}, {}, {0}, {1, 2}});
  histories.index();
  ASSERT_EQ(histories.find("C1.fz").size(), 1U);
  EXPECT_EQ(histories.find("C1.fz")[0].table, &table);
  EXPECT_EQ(histories.find("C1.fz")[0].component, 1U);
  EXPECT_TRUE(histories.find("C1.fy").empty());
  EXPECT_TRUE(histories.find("C1").empty());
  EXPECT_TRUE(histories.find("").empty());
}

TEST(Histories, OfNoEntityAreFoundByTheirComponentAlone) {
  Histories histories("a.csv");
  histories.add({"", "", {"left.force"}, {}, {0}, {1}});
  histories.index();
  EXPECT_EQ(histories.find("left.force").size(), 1U);
  EXPECT_TRUE(histories.find(".left.force").empty());
}

TEST(Histories, OfAQuantityAreAlsoFoundByTheirLongName) {
  Histories histories("a.dat");
  auto const& forces = histories.add({"C1", "forces", {"fz"}, {7}, {0}, {1}});
  auto const& totals = histories.add({"C1", "total force", {"fz"}, {}, {0}, {1}});
  histories.index();
  ASSERT_EQ(histories.find("C1.fz").size(), 2U);
  ASSERT_EQ(histories.find("C1.forces fz").size(), 1U);
  EXPECT_EQ(histories.find("C1.forces fz")[0].table, &forces);
  ASSERT_EQ(histories.find("C1.total force fz").size(), 1U);
  EXPECT_EQ(histories.find("C1.total force fz")[0].table, &totals);
  EXPECT_EQ(Histories::fullName({&totals, 0}), "C1.total force fz");
}

TEST(Histories, AreUsuallyCalledAsBrieflyAsTheInputAllows) {
  Histories histories("a.dat");
  auto const& forces = histories.add({"C1", "forces", {"fx", "fz"}, {7}, {0}, {1, 2}});
  histories.add({"C1", "total force", {"fz"}, {}, {0}, {1}});
  histories.index();
  EXPECT_EQ(histories.usualName({&forces, 0}), "C1.fx");
  EXPECT_EQ(histories.usualName({&forces, 1}), "C1.forces fz");
  EXPECT_EQ(histories.tables().size(), 2U);
  EXPECT_EQ(&histories.tables().front(), &forces);
}

TEST(Histories, AreSuggestedFromTheEntityThatTheNameBeginsWith) {
  Histories histories("a.dat");
  histories.add({"C1", "forces", {"fx", "fy"}, {7}, {0}, {1, 2}});
  histories.add({"C10", "forces", {"fx"}, {8}, {0}, {1}});
  histories.index();
  EXPECT_EQ(histories.namesLike("C1.fw"), R"("C1.fx", "C1.fy")");
  EXPECT_EQ(histories.namesLike("C2.fx"), R"("C1.fx", "C1.fy", "C10.fx")");
}

TEST(Histories, AreSuggestedUpToEight) {
  Histories histories("a.csv");
  histories.add({"", "", {"a", "b", "c", "d", "e", "f", "g", "h"}, {}, {}, {}});
  EXPECT_EQ(histories.namesLike("x"), R"("a", "b", "c", "d", "e", "f", "g", "h")");
  histories.add({"", "", {"i"}, {}, {}, {}});
  EXPECT_EQ(histories.namesLike("x"), R"("a", "b", "c", "d", "e", "f", "g", "h", … (9 in all))");
}

TEST(HistoryTable, HoldsValuesByTimeThenNodeThenComponent) {
  HistoryTable const table{"S", "forces", {"fx", "fy"}, {10, 20}, {0, 1}, {1, 2, 3, 4, 5, 6, 7, 8}};
  EXPECT_EQ(table.rowsPerTime(), 2U);
  EXPECT_EQ(table.value(0, 1, 0), 3);
  EXPECT_EQ(table.value(1, 0, 1), 6);
  HistoryTable const withoutNodes{"", "", {"a", "b"}, {}, {0, 1}, {1, 2, 3, 4}};
  EXPECT_EQ(withoutNodes.rowsPerTime(), 1U);
  EXPECT_EQ(withoutNodes.value(1, 0, 1), 4);
}

}  // namespace
}  // namespace Kestrel::ResultTables

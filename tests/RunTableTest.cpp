#include "result_tables/tables/RunTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/RunTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// "B1 ClampNormalForce"
std::vector<std::string> columnsOf(RunTable const& table) {
  std::vector<std::string> columns;
  for (auto const& column : table.columns())
    columns.push_back(table.section(column).unit + ' ' + table.element(column).item + ' ' +
                      table.quantity(column).key);
  return columns;
}

/// Of runs with bolts of one column.
RunValues runOfBolts(std::string const& name, std::vector<std::string> const& bolts,
                     std::string const& unit = "OP20", char digit = '1') {
  std::vector<RunRow> rows;
  rows.reserve(bolts.size());
  for (auto const& bolt : bolts) rows.push_back(runRow(bolt, {runValue(1)}));
  return runOf(name, {boltForces(rows, unit, digit)});
}

std::vector<std::string> itemsOf(RunTable const& table) {
  std::vector<std::string> items;
  for (auto const& column : table.columns()) items.push_back(table.element(column).item);
  return items;
}

TEST(RunTable, HasAColumnForEachValueInTheOrderOfTheFirstRun) {
  EXPECT_THAT(
      columnsOf(tableOf({runOf(
          "a", {boltForces({runRow("B2", {runValue(1), runValue(2)}), runRow("B1", {runValue(3)})})})})),
      ElementsAre("OP20 B2 ClampNormalForce", "OP20 B2 ClampClosingForce", "OP20 B1 ClampNormalForce"));
}

TEST(RunTable, PutsWhatLaterRunsHaveBehindWhatItStandsBehindThere) {
  EXPECT_THAT(itemsOf(tableOf({runOfBolts("a", {"B1", "B4"}), runOfBolts("b", {"B1", "B2", "B3", "B4"})})),
              ElementsAre("B1", "B2", "B3", "B4"));
  EXPECT_THAT(itemsOf(tableOf({runOfBolts("a", {"B2", "B3"}), runOfBolts("b", {"B0", "B1", "B2"})})),
              ElementsAre("B0", "B1", "B2", "B3"));
  EXPECT_THAT(itemsOf(tableOf({runOfBolts("a", {"B9"}), runOfBolts("b", {"B1", "B2"})})),
              ElementsAre("B9", "B1", "B2"))
      << "nothing says where";
  EXPECT_THAT(itemsOf(tableOf({runOfBolts("a", {"B1", "B2"}), runOfBolts("b", {"B2", "B1"})})),
              ElementsAre("B1", "B2"));
}

TEST(RunTable, KeepsTheSectionsOfLaterRunsTogether) {
  auto second = runOfBolts("b", {"C1"}, "OP10", '2');
  second.sections.push_back(boltForces({runRow("B1", {runValue(1)}), runRow("B2", {runValue(1)})}));
  EXPECT_THAT(
      columnsOf(tableOf({runOfBolts("a", {"B1"}), std::move(second)})),
      ElementsAre("OP10 C1 ClampNormalForce", "OP20 B1 ClampNormalForce", "OP20 B2 ClampNormalForce"));
}

TEST(RunTable, TellsWhatIsNotThereFromNothingFromZeroAndFromNaN) {
  auto const table = genBoltRuns();
  ASSERT_THAT(itemsOf(table), ElementsAre("B1", "B1", "B3", "B2", "B2"));
  auto const& columns = table.columns();
  EXPECT_EQ(table.number(0, columns[0]).value, -45);
  EXPECT_TRUE(table.number(0, columns[0]).isExceeded);
  EXPECT_FALSE(table.number(0, columns[1]).isThere) << "no data";
  EXPECT_FALSE(table.number(0, columns[2]).isThere) << "no such element in that run";
  EXPECT_TRUE(table.number(0, columns[3]).isThere && table.number(0, columns[3]).isNaN);
  EXPECT_TRUE(table.number(0, columns[4]).isThere);
  EXPECT_EQ(table.number(0, columns[4]).value, 0);
  EXPECT_FALSE(table.number(1, columns[3]).isThere);
  EXPECT_EQ(table.number(1, columns[2]).value, std::numeric_limits<double>::infinity());
}

TEST(RunTable, PairsElementsOfOneNameByTheirOrder) {
  auto const table =
      tableOf({runOf("a", {boltForces({runRow("B", {runValue(1)}), runRow("B", {runValue(2)})})}),
               runOf("b", {boltForces({runRow("B", {runValue(3)}), runRow("B", {runValue(4)}),
                                       runRow("B", {runValue(5)}, "Left")})})});
  ASSERT_EQ(table.columns().size(), 3U);
  EXPECT_EQ(table.element(table.columns()[1]).occurrence, 1U);
  EXPECT_EQ(table.number(0, table.columns()[1]).value, 2);
  EXPECT_EQ(table.number(1, table.columns()[1]).value, 4);
  EXPECT_EQ(table.element(table.columns()[2]).subGroup, "Left");
  EXPECT_EQ(table.element(table.columns()[2]).occurrence, 0U);
}

TEST(RunTable, PairsUnitsByIdAndThoseLeftOverByAUniqueName) {
  auto const one = tableOf({runOfBolts("a", {"B1"}), runOfBolts("b", {"B1"}, "other name", '1'),
                            runOfBolts("c", {"B1"}, "OP20", '2')});
  EXPECT_EQ(one.columns().size(), 1U);
  EXPECT_FALSE(one.isAmbiguous("OP20"));
  auto both = runOfBolts("b", {"B1"}, "OP20", '1');
  both.sections.push_back(runOfBolts("", {"B1"}, "OP20", '2').sections.front());
  auto const two = tableOf({runOfBolts("a", {"B1"}), std::move(both), runOfBolts("c", {"B1"}, "OP20", '3')});
  EXPECT_EQ(two.columns().size(), 3U) << "the third could be either";
  EXPECT_TRUE(two.isAmbiguous("OP20"));
}

TEST(RunTable, KeepsQuantitiesApartThatAreMeasuredInOtherUnits) {
  auto other = runOfBolts("b", {"B1"});
  other.sections.front().columns.front().unit = "kN";
  EXPECT_EQ(tableOf({runOfBolts("a", {"B1"}), std::move(other)}).columns().size(), 2U);
}

TEST(RunTable, HasTheLimitsOfEachRun) {
  auto other = runOfBolts("b", {"B1"});
  other.sections.front().columns.front().limit = ColumnLimit{60, "N"};
  auto none = runOfBolts("c", {"B1"});
  none.sections.front().columns.front().limit.reset();
  auto const table = tableOf({runOfBolts("a", {"B1"}), std::move(other), std::move(none)});
  auto const& column = table.columns().front();
  EXPECT_EQ(table.limit(0, column), 30);
  EXPECT_EQ(table.limit(1, column), 60);
  EXPECT_EQ(table.limit(2, column), std::nullopt);
  EXPECT_EQ(table.quantity(column).limit->value, 60);
}

TEST(RunTable, SaysWhatTheRunsMakeOfAValue) {
  auto const table = genBoltRuns();
  auto const& normal = table.columns()[0];
  EXPECT_EQ(normal.statistics.count(), 2U);
  EXPECT_EQ(normal.statistics.minimum(), -45);
  EXPECT_EQ(normal.statistics.maximum(), 15);
  EXPECT_EQ(normal.statistics.mean(), -15);
  EXPECT_EQ(normal.statistics.shareBeyondLimit(), 0.5);
  EXPECT_EQ(normal.worst, 1.5);
  EXPECT_EQ(normal.findings, 1U);
  EXPECT_EQ(table.columns()[3].findings, 1U) << "NaN with a limit";
  EXPECT_EQ(table.columns()[3].statistics.count(), 0U);
  EXPECT_EQ(table.columns()[4].findings, 0U);
}

TEST(RunTable, PassesOverValuesThatAreNotValid) {
  auto const table = tableOf({runOf("a", {boltForces({runRow("B1", {runValue(99)}, "", false)})})});
  auto const& column = table.columns().front();
  EXPECT_EQ(column.statistics.count(), 0U);
  EXPECT_EQ(column.worst, std::nullopt);
  EXPECT_FALSE(table.number(0, column).isValid);
  EXPECT_EQ(table.number(0, column).value, 99);
}

TEST(RunQuantity, HasANameForPeopleWhereOneIsKnown) {
  EXPECT_EQ((RunQuantity{"ClampNormalForce", "N", {}}).name(), "Max Normal Force");
  EXPECT_EQ((RunQuantity{"TotalToolForces", "N", {}}).name(), "Max Force in Working Direction");
  EXPECT_EQ((RunQuantity{"Other", "", {}}).name(), "");
  EXPECT_EQ((RunQuantity{"Other", "", {}}).shownName(), "Other");
}

TEST(RunTable, IsEmptyWithoutRuns) {
  EXPECT_THAT(tableOf({}).columns(), IsEmpty());
  EXPECT_THAT(tableOf({runOf("a", {})}).columns(), IsEmpty());
}

}  // namespace
}  // namespace Kestrel::ResultTables

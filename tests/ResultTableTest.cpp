#include "result_tables/tables/ResultTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "result_tables/base/Error.h"

#include "support/TableTesting.h"

namespace Kestrel::ResultTables {
namespace {

using DataType = MaxValueGroupContainer::DataType;
using testing::ElementsAre;

/// A table of one section with the columns of the bolts' forces, and the default limits.
class ResultTableTest : public testing::Test {
 protected:
  ResultTableTest() {
    m_container->groups.push_back({"Forces",
                                   false,
                                   true,
                                   {TablePropertyLimitType::BoltNormalForce, TablePropertyLimitType::NoLimit},
                                   {"ClampNormalForce", "ClampClosingForce"},
                                   {}});
    m_limits.collection->updateLimits({m_unit.getID()});
  }

  ResultTable table() const { return genTable(m_unit, m_container, m_limits); }

  SimulationUnit const m_unit{
      SimulationUnitId(*GUIdentifier::fromString("0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01")), "OP20"};
  std::shared_ptr<MaxValueGroupContainer> m_container =
      std::make_shared<MaxValueGroupContainer>(DataType::Bolts, m_unit.getID());
  ResultLimits m_limits;
};

TEST_F(ResultTableTest, HeadsItsColumnsFromTheCatalogue) {
  auto const column = table().columns(0)[1];
  EXPECT_EQ(column.key, "ClampClosingForce");
  EXPECT_EQ(column.displayName, "Closing Force");
  EXPECT_EQ(column.shortDisplayName, "Clos F");
  EXPECT_EQ(column.tableDisplayName, "Max Closing Force");
  EXPECT_EQ(column.shortTableDisplayName, "Max Clos F");
  EXPECT_EQ(column.unit, "N");
}

TEST_F(ResultTableTest, HasTheLimitOfTheUnitAndTheColumnsType) {
  auto const columns = table().columns(0);
  ASSERT_TRUE(columns[0].limit.has_value());
  EXPECT_EQ(columns[0].limit->value, 30.0);
  EXPECT_EQ(columns[0].limit->unit, "N");
  EXPECT_EQ(columns[0].limitType, TablePropertyLimitType::BoltNormalForce);
  EXPECT_FALSE(columns[1].limit.has_value());
}

TEST_F(ResultTableTest, HasNoLimitForAUnitOrATypeThatHasNone) {
  m_limits.collection->updateLimits({});
  EXPECT_FALSE(table().columns(0)[0].limit.has_value());
  m_limits.collection->updateLimits({m_unit.getID()});
  m_container->groups[0].limitTypes[0] = TablePropertyLimitType::ClampClosingForce;
  EXPECT_FALSE(table().columns(0)[0].limit.has_value());
}

TEST_F(ResultTableTest, HasTheLimitOfAColumnThatTheCollectionHasNoneFor) {
  m_limits.columns[m_unit.getID()] = {{{DataType::Bolts, "ClampNormalForce"}, 1.5},
                                      {{DataType::Bolts, "ClampClosingForce"}, 2.5},
                                      {{DataType::Clamps, "ClampClosingForce"}, 3.5}};
  m_limits.columns[SimulationUnitId()] = {{{DataType::Bolts, "ClampClosingForce"}, 4.5}};
  auto const columns = table().columns(0);
  EXPECT_EQ(columns[0].limit->value, 30.0) << "the collection has one";
  ASSERT_TRUE(columns[1].limit.has_value());
  EXPECT_EQ(columns[1].limit->value, 2.5);
  EXPECT_EQ(columns[1].limit->unit, "N");
  EXPECT_EQ(columns[1].limitType, TablePropertyLimitType::NoLimit);
  EXPECT_FALSE(table().isExceeded(0, 1, {"B1", {0.0, -2.5}}));
  EXPECT_TRUE(table().isExceeded(0, 1, {"B1", {0.0, -2.75}}));
}

TEST_F(ResultTableTest, HasTheLimitOfAColumnWhoseKindTheUnitHasNoLimitOf) {
  m_container->groups[0].limitTypes = {TablePropertyLimitType::NoLimit,
                                       TablePropertyLimitType::ClampClosingForce};
  m_limits.columns[m_unit.getID()] = {{{DataType::Bolts, "ClampClosingForce"}, 2.5}};
  auto const column = table().columns(0)[1];
  ASSERT_TRUE(column.limit.has_value());
  EXPECT_EQ(column.limit->value, 2.5);
  EXPECT_EQ(column.limitType, TablePropertyLimitType::ClampClosingForce);
}

TEST_F(ResultTableTest, PassesOverLimitTypesWithoutAColumn) {
  m_container->groups[0].valueNames.pop_back();
  EXPECT_EQ(table().columns(0).size(), 1U);
  m_container->groups[0].limitTypes.clear();
  EXPECT_FALSE(table().columns(0)[0].limit.has_value());
}

TEST_F(ResultTableTest, ExceedsALimitByAGreaterAbsoluteValueOnly) {
  auto const exceeded = [this](double value) { return table().isExceeded(0, 0, {"B1", {value, 1e9}}); };
  EXPECT_FALSE(exceeded(30.0));
  EXPECT_TRUE(exceeded(std::nextafter(30.0, 31.0)));
  EXPECT_TRUE(exceeded(-30.5));
  EXPECT_FALSE(exceeded(std::numeric_limits<double>::quiet_NaN()));
  EXPECT_FALSE(table().isExceeded(0, 1, {"B1", {0.0, 1e9}})) << "no limit";
  EXPECT_FALSE(table().isExceeded(0, 0, {"B1", {}})) << "no value";
}

TEST_F(ResultTableTest, CountsAnItemAsValidUnlessTheContainerSaysNo) {
  m_container->valuesAreValid = {{"yes", true}, {"no", false}};
  m_container->invalidValuesNameAppendix = " (bad)";
  EXPECT_TRUE(table().isValid({"missing", {}}));
  EXPECT_TRUE(table().isValid({"yes", {}}));
  EXPECT_FALSE(table().isValid({"no", {}}));
  EXPECT_EQ(table().displayName({"yes", {}}), "yes");
  EXPECT_EQ(table().displayName({"no", {}}), "no (bad)");
  EXPECT_FALSE(table().isExceeded(0, 0, {"no", {100.0, 0.0}}))
      << "the values of an invalid item mean nothing";
}

constexpr char const* s_results = R"({"format": "simulation-results", "version": 1, "units": [
  {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02", "name": "OP20",
   "tools": [{"id": "T1", "kind": "tool", "series": [{"quantity": "TotalToolForces", "values": [-3.5]}]},
             {"id": "B1", "kind": "bolt"}],
   "toolGroupings": {"Rollers": [{"name": "Left", "tools": ["T1"]}]}}]})";

TEST(GenResultTables, UsesTheGroupingsOfTheUnitAndAnEmptyOneWhereItHasNone) {
  auto const file = readResults("r.json", s_results);
  ResultLimits const limits;
  auto const tables = genResultTables(file, {{}, {DataType::Rollers, DataType::Steels}, false}, limits);
  ASSERT_EQ(tables.size(), 2U);
  auto const& rollers = tables[0].container().groups[0].subGroups;
  ASSERT_EQ(rollers.size(), 1U);
  EXPECT_EQ(rollers[0].name, "Left");
  EXPECT_THAT(rollers[0].items[0].maxValues, ElementsAre(-3.5));
  EXPECT_TRUE(tables[1].container().groups[0].subGroups.empty());
}

TEST(GenResultTables, LeavesOutFamiliesWithoutSectionsUnlessTheyAreNamed) {
  auto const file = readResults("r.json", s_results);
  ResultLimits const limits;
  std::vector<DataType> families;
  for (auto const& table : genResultTables(file, {}, limits)) families.push_back(table.container().dataType);
  EXPECT_THAT(families, ElementsAre(DataType::ClampingTools, DataType::Bolts, DataType::Rollers,
                                    DataType::Steels, DataType::HemmingBed));
  EXPECT_EQ(genResultTables(file, {{}, {DataType::Clamps}, false}, limits).size(), 1U);
}

TEST(GenResultTables, RefusesAUnitThatTheFileLacks) {
  auto const file = readResults("r.json", s_results);
  EXPECT_THROW(static_cast<void>(genResultTables(file, {{"OP99"}, {}, false}, ResultLimits())), Error);
}

}  // namespace
}  // namespace Kestrel::ResultTables

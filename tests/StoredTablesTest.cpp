#include "result_tables/study/StoredTables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "result_tables/base/Error.h"
#include "support/DifferencesTesting.h"

namespace Kestrel::ResultTables {
namespace {

using DataType = MaxValueGroupContainer::DataType;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// What is stored of two units with bolts.
RunData storedBolts() {
  auto const results = limitedResultsOf(
      "a.json", unitOf('1', "OP10", bolt("Bolt 1", "null, -40") + ", " + bolt("Bolt 2", "0, 5, 9")) + ", " +
                    unitOf('2', "OP20", bolt("Bolt 3", "")));
  StudyRun run;
  run.name = "a";
  run.file = "a.json";
  return genRunData(run, genResultTables(results.file, {{}, {}, true}, results.limits));
}

std::vector<std::string> namesOf(NamedUnits const& of) {
  std::vector<std::string> names;
  for (auto const* unit : of.units) names.push_back(unit->getSimulationUnitName());
  return names;
}

std::string messageOf(RunData data) {
  try {
    StoredTables const tables("s", std::move(data));
  } catch (Error const& error) {
    return error.what();
  }
  return "";
}

TEST(StoredTables, AreThoseOfTheRun) {
  StoredTables const stored("s", storedBolts());
  EXPECT_EQ(stored.units().name, "a");
  EXPECT_THAT(namesOf(stored.units()), ElementsAre("OP10", "OP20"));
  auto const tables = stored.genTables(0, {});
  ASSERT_THAT(tables, SizeIs(1));
  auto const& table = tables[0];
  EXPECT_EQ(table.file(), "a.json");
  EXPECT_EQ(table.title(), "Bolts");
  EXPECT_EQ(table.container().unitTitle, "OP10Bolts");
  EXPECT_EQ(table.container().simulationUnitId.toString(), "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01");
  ASSERT_THAT(table.container().groups, SizeIs(2));
  auto const& forces = table.container().groups[0];
  EXPECT_EQ(forces.name, "Forces");
  EXPECT_EQ(forces.valueNames.front(), "ClampNormalForce");
  EXPECT_EQ(table.columns(0)[0].tableDisplayName, "Max Normal Force");
  EXPECT_EQ(table.columns(0)[0].unit, "N");
  EXPECT_EQ(table.columns(0)[0].limit->value, 30.0);
  EXPECT_EQ(forces.subGroups[0].items[1].name, "Bolt 2");
  auto const value = table.genValue({0, 0, 0, 0});
  EXPECT_EQ(value.value, -40.0);
  EXPECT_TRUE(value.isExceeded);
  EXPECT_EQ(value.origin.step, 1U);
  EXPECT_EQ(value.origin.count, 1U);
  EXPECT_EQ(value.origin.nanCount, 1U);
  EXPECT_EQ(table.genValue({0, 0, 1, 0}).origin.count, 3U);
  EXPECT_THAT(table.genSeries({0, 0, 1, 0}).values, IsEmpty()) << "series are not stored";
}

TEST(StoredTables, AreSelectedAsThoseOfFiles) {
  StoredTables const stored("s", storedBolts());
  EXPECT_THAT(stored.genTables(0, {{}, {}, true})[0].container().groups, SizeIs(3));
  EXPECT_THAT(stored.genTables(0, {{}, {DataType::Clamps, DataType::Bolts}, false}), SizeIs(2));
  auto const empty = stored.genTables(1, {{}, {DataType::Pilots}, false});
  ASSERT_THAT(empty, SizeIs(1));
  EXPECT_THAT(empty[0].container().groups, IsEmpty());
}

TEST(StoredTables, AreRefusedWhereTheyCannotBe) {
  constexpr char const* message =
      "s: the study is damaged (a number out of range); take a copy that is not, or add the runs to a "
      "new one";
  EXPECT_EQ(messageOf(storedBolts()), "");
  auto data = storedBolts();
  data.sections[0].unitId = "OP10";
  EXPECT_EQ(messageOf(data), message);
  data = storedBolts();
  data.sections[0].elementCount = 1000;
  EXPECT_EQ(messageOf(data), message);
  data = storedBolts();
  data.sections[0].firstElement = SIZE_MAX;
  EXPECT_EQ(messageOf(data), message);
  data = storedBolts();
  data.elements[0].section = 1;
  EXPECT_EQ(messageOf(data), message);
  data = storedBolts();
  data.values[1].column = 0;
  EXPECT_EQ(messageOf(data), message);
  data = storedBolts();
  std::swap(data.values.front().element, data.values.back().element);
  EXPECT_EQ(messageOf(data), message);
}

}  // namespace
}  // namespace Kestrel::ResultTables

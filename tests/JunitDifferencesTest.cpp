#include "result_tables/render/JunitDifferences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/DifferencesTesting.h"

namespace Kestrel::ResultTables {
namespace {

TEST(JunitDifferences, AreACaseForEachElementAndSection) {
  auto const before = unitOf('2', "OP20", bolt("Bolt 1", "29") + ", " + pilots({{"P1", 2}}));
  auto const after =
      unitOf('2', "OP20",
             R"({"id": "Bolt 1", "kind": "bolt", "series": [{"quantity": "ClampNormalForce", "values": [31]},
                                                           {"quantity": "ClampClosingForce", "values": [5]}]})");
  EXPECT_EQ(renderDifferencesAsJunit(differencesOf(before, after)), R"(<?xml version="1.0"?>
<testsuites>
  <testsuite name="before.json → after.json" tests="3" failures="2" errors="0" skipped="0">
    <testcase classname="OP20" name="Pilots, Forces, P1">
      <failure message="Max Force: 2 N, removed">Max Force: 2 N, removed</failure>
    </testcase>
    <testcase classname="OP20" name="Bolts, Forces, Bolt 1">
      <failure message="Max Normal Force: 29 N → 31 N, change +2 N, +6.9 %, now beyond its limit">Max Normal Force: 29 N → 31 N, change +2 N, +6.9 %, now beyond its limit
Max Closing Force: – → 5 N</failure>
    </testcase>
    <testcase classname="OP20" name="Bolts, Distances, Bolt 1" />
  </testsuite>
</testsuites>
)");
}

TEST(JunitDifferences, HaveNamesOfTheirOwnWhereUnitsShareOne) {
  auto const pilot = pilots({{"P1", 2}});
  auto const units = unitOf('1', "OP20", pilot) + ", " + unitOf('2', "OP20", pilot);
  auto const xml = renderDifferencesAsJunit(differencesOf(units, units));
  EXPECT_THAT(xml, testing::HasSubstr("name=\"Pilots, Forces, P1\" />"));
  EXPECT_THAT(xml, testing::HasSubstr("name=\"Pilots, Forces, P1 (2)\" />"));
}

TEST(JunitDifferences, AreErrorsOfFilesThatCouldNotBeRead) {
  EXPECT_EQ(renderDifferencesAsJunit({"a.json", "b.json", {}, {{"b.json", "b.json: cannot read"}}}),
            R"(<?xml version="1.0"?>
<testsuites>
  <testsuite name="a.json → b.json" tests="1" failures="0" errors="1" skipped="0">
    <testcase classname="b.json" name="read">
      <error message="b.json: cannot read" />
    </testcase>
  </testsuite>
</testsuites>
)");
}

}  // namespace
}  // namespace Kestrel::ResultTables

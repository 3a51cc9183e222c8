#include "result_tables/tables/Findings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "result_tables/render/RenderFindings.h"

namespace Kestrel::ResultTables {
namespace {

using DataType = MaxValueGroupContainer::DataType;

/// A table of spot welds: two sections, one failed join, values beyond the default limit of 500 N.
class FindingsTest : public testing::Test {
 protected:
  FindingsTest() {
    m_limits.updateLimits({m_unit.getID()});
    m_container->valuesAreValid = {{"Spot 1", true}, {"Spot 2", false}};
    m_container->invalidValuesText = "Joining Failed";
    std::vector const types = {TablePropertyLimitType::JoinNormalForce,
                               TablePropertyLimitType::JoinTangentialForce};
    m_container->groups.push_back({"First", false, true, types, {"JoinForceN", "JoinTangentialForce"}, {}});
    m_container->groups.push_back({"Second", false, true, types, {"JoinForceN", "JoinTangentialForce"}, {}});
    m_container->groups[0].subGroups.push_back({"Left", {{"Spot 1", {-500.5, 600}}, {"Spot 2", {900, 900}}}});
    m_container->groups[1].subGroups.push_back({"", {{"Spot 1", {1, 501}}, {"Spot 2", {900, 900}}}});
  }

  TableFindings findings() const { return genFindings(ResultTable(m_unit, m_container, m_limits)); }
  FileFindings file() const { return {"r.json", {findings()}, std::nullopt}; }

  SimulationUnit const m_unit{SimulationUnitId(), "OP20"};
  std::shared_ptr<MaxValueGroupContainer> m_container =
      std::make_shared<MaxValueGroupContainer>(DataType::SpotWelds, m_unit.getID());
  TablePropertiesData m_limits;
};

TEST_F(FindingsTest, ListInvalidItemsOnceAndThenTheExceededValues) {
  EXPECT_EQ(renderFindingsAsJson({file()}), R"({
  "findings": [
    {
      "file": "r.json",
      "unit": "OP20",
      "family": "SpotWelds",
      "group": "",
      "subGroup": "Left",
      "item": "Spot 2",
      "kind": "invalid",
      "column": null,
      "value": null,
      "limit": null
    },
    {
      "file": "r.json",
      "unit": "OP20",
      "family": "SpotWelds",
      "group": "First",
      "subGroup": "Left",
      "item": "Spot 1",
      "kind": "exceeded",
      "column": "Max Normal Force",
      "value": -500.5,
      "limit": 500
    },
    {
      "file": "r.json",
      "unit": "OP20",
      "family": "SpotWelds",
      "group": "First",
      "subGroup": "Left",
      "item": "Spot 1",
      "kind": "exceeded",
      "column": "Max Tangential Force",
      "value": 600,
      "limit": 500
    },
    {
      "file": "r.json",
      "unit": "OP20",
      "family": "SpotWelds",
      "group": "Second",
      "subGroup": "",
      "item": "Spot 1",
      "kind": "exceeded",
      "column": "Max Tangential Force",
      "value": 501,
      "limit": 500
    }
  ]
}
)");
}

TEST_F(FindingsTest, LeaveOutInvalidItemsOfAFamilyThatDoesNotSayWhatInvalidMeans) {
  m_container->invalidValuesText.clear();
  auto const found = findings().findings;
  ASSERT_EQ(found.size(), 3U);
  EXPECT_TRUE(found[0].exceeded.has_value());
}

TEST_F(FindingsTest, ListAnInvalidItemOncePerRow) {
  m_container->groups[0].subGroups.push_back({"Right", {{"Spot 2", {0, 0}}}});
  auto const found = findings().findings;
  ASSERT_GE(found.size(), 2U);
  EXPECT_EQ(found[0].subGroup, "Left");
  EXPECT_EQ(found[1].subGroup, "Right");
  EXPECT_FALSE(found[1].exceeded.has_value());
}

TEST_F(FindingsTest, AreOneLineEachAsText) {
  EXPECT_EQ(renderFindingsAsText({file()}, {.colour = false}),
            "OP20, SpotWelds, Left, Spot 2: Joining Failed\n"
            "OP20, SpotWelds, First, Left, Spot 1, Max Normal Force: -500.5 N, limit 500 N\n"
            "OP20, SpotWelds, First, Left, Spot 1, Max Tangential Force: 600 N, limit 500 N\n"
            "OP20, SpotWelds, Second, Spot 1, Max Tangential Force: 501 N, limit 500 N\n"
            "values beyond their limits: 3, invalid elements: 1\n");
  EXPECT_EQ(renderFindingsAsText({}, {.colour = false}),
            "values beyond their limits: 0, invalid elements: 0\n");
}

TEST_F(FindingsTest, NameTheFileWhereThereAreSeveral) {
  EXPECT_THAT(renderFindingsAsText({file(), {"s.json", {}, "s.json: cannot read"}}, {.colour = false}),
              testing::StartsWith("r.json: OP20, SpotWelds, Left, Spot 2: Joining Failed\n"));
}

TEST_F(FindingsTest, AreRedOnATerminal) {
  EXPECT_THAT(renderFindingsAsText({file()}, {.colour = true}),
              testing::StartsWith("\x1b[31mOP20, SpotWelds, Left, Spot 2: Joining Failed\x1b[0m\n"));
}

TEST_F(FindingsTest, AreFailuresOfAJunitReport) {
  m_container->groups.pop_back();
  EXPECT_EQ(renderFindingsAsJunit({file(), {"<s>\x01.json", {}, "cannot \"read\""}}), R"(<?xml version="1.0"?>
<testsuites>
  <testsuite name="r.json" tests="1" failures="1" errors="0">
    <testcase classname="OP20" name="SpotWelds">
      <failure message="findings: 3">OP20, SpotWelds, Left, Spot 2: Joining Failed
OP20, SpotWelds, First, Left, Spot 1, Max Normal Force: -500.5 N, limit 500 N
OP20, SpotWelds, First, Left, Spot 1, Max Tangential Force: 600 N, limit 500 N
</failure>
    </testcase>
  </testsuite>
  <testsuite name="&lt;s>␁.json" tests="1" failures="0" errors="1">
    <testcase classname="&lt;s>␁.json" name="read">
      <error message="cannot &quot;read&quot;" />
    </testcase>
  </testsuite>
</testsuites>
)");
}

}  // namespace
}  // namespace Kestrel::ResultTables

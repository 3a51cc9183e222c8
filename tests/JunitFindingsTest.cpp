#include "result_tables/render/JunitFindings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/FindingsTesting.h"

namespace Kestrel::ResultTables {
namespace {

using JunitFindings = FindingsFixture;

TEST_F(JunitFindings, AreACaseForEachElementAndLimitedQuantity) {
  m_container->groups.pop_back();
  EXPECT_EQ(renderFindingsAsJunit({file(), {"<s>\x01.json", {}, "cannot \"read\""}}), R"(<?xml version="1.0"?>
<testsuites>
  <testsuite name="r.json" tests="5" failures="3" errors="0" skipped="2">
    <testcase classname="OP20" name="SpotWelds, Left, Spot 2">
      <failure message="OP20, SpotWelds, Left, Spot 2: Joining Failed">OP20, SpotWelds, Left, Spot 2: Joining Failed</failure>
    </testcase>
    <testcase classname="OP20" name="SpotWelds, First, Left, Spot 1, Max Normal Force">
      <failure message="OP20, SpotWelds, First, Left, Spot 1, Max Normal Force: -500.5 N, limit 500 N, step 0">OP20, SpotWelds, First, Left, Spot 1, Max Normal Force: -500.5 N, limit 500 N, step 0</failure>
    </testcase>
    <testcase classname="OP20" name="SpotWelds, First, Left, Spot 1, Max Tangential Force">
      <failure message="OP20, SpotWelds, First, Left, Spot 1, Max Tangential Force: 600 N, limit 500 N, step 0">OP20, SpotWelds, First, Left, Spot 1, Max Tangential Force: 600 N, limit 500 N, step 0</failure>
    </testcase>
    <testcase classname="OP20" name="SpotWelds, First, Left, Spot 2, Max Normal Force">
      <skipped message="not valid" />
    </testcase>
    <testcase classname="OP20" name="SpotWelds, First, Left, Spot 2, Max Tangential Force">
      <skipped message="not valid" />
    </testcase>
  </testsuite>
  <testsuite name="&lt;s>␁.json" tests="1" failures="0" errors="1" skipped="0">
    <testcase classname="&lt;s>␁.json" name="read">
      <error message="cannot &quot;read&quot;" />
    </testcase>
  </testsuite>
</testsuites>
)");
}

TEST_F(JunitFindings, AreSkippedWithoutDataAndPassWithinTheLimit) {
  auto const xml =
      renderFindingsAsJunit({{"r.json", {findingsOf(R"([{"quantity": "JoinForceN", "values": [1]}])")}, {}}});
  EXPECT_THAT(xml,
              testing::HasSubstr(R"(<testsuite name="r.json" tests="2" failures="0" errors="0" skipped="1">
    <testcase classname="OP20" name="SpotWelds, Forces, Spot 1, Max Normal Force" />
    <testcase classname="OP20" name="SpotWelds, Forces, Spot 1, Max Tangential Force">
      <skipped message="without data" />
    </testcase>)"));
}

TEST_F(JunitFindings, HaveOneFailureForAValueThatIsExceededAndHasNaN) {
  auto const xml = renderFindingsAsJunit(
      {{"r.json", {findingsOf(R"([{"quantity": "JoinForceN", "values": [null, 501]}])")}, {}}});
  EXPECT_THAT(
      xml,
      testing::HasSubstr(
          R"(<failure message="OP20, SpotWelds, Forces, Spot 1, Max Normal Force: 501 N, limit 500 N, step 1">OP20, SpotWelds, Forces, Spot 1, Max Normal Force: 501 N, limit 500 N, step 1
OP20, SpotWelds, Forces, Spot 1, Max Normal Force: 501 N, limit 500 N, step 1, 1 of 2 values are not numbers</failure>)"));
}

TEST_F(JunitFindings, HaveNamesOfTheirOwnWhereElementsShareOne) {
  m_container->valuesAreValid.clear();
  m_container->groups.pop_back();
  m_container->groups[0].limitTypes.pop_back();
  m_container->groups[0].subGroups = {{"", {{"Spot 1", {1, 1}}, {"Spot 1", {1, 1}}}}};
  auto const xml = renderFindingsAsJunit({file()});
  EXPECT_THAT(xml, testing::HasSubstr("name=\"SpotWelds, First, Spot 1, Max Normal Force\""));
  EXPECT_THAT(xml, testing::HasSubstr("name=\"SpotWelds, First, Spot 1, Max Normal Force (2)\""));
}

}  // namespace
}  // namespace Kestrel::ResultTables

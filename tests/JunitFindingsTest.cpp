#include "result_tables/render/JunitFindings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/FindingsTesting.h"

namespace Kestrel::ResultTables {
namespace {

using JunitFindings = FindingsFixture;

TEST_F(JunitFindings, AreFailuresOfTheirTables) {
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

#include "result_tables/render/JunitReport.h"

#include <gtest/gtest.h>

namespace Kestrel::ResultTables {
namespace {

TEST(JunitReport, CountsTheOutcomesOfEachSuite) {
  JunitReport report;
  report.beginSuite("a");
  report.addPassed("OP20", "one");
  report.addFailed("OP20", "two", "first\nsecond");
  report.addSkipped("OP20", "three", "without data");
  report.beginSuite("b");
  report.addError("b", "read", "no \"b\"");
  EXPECT_EQ(report.text(), R"(<?xml version="1.0"?>
<testsuites>
  <testsuite name="a" tests="3" failures="1" errors="0" skipped="1">
    <testcase classname="OP20" name="one" />
    <testcase classname="OP20" name="two">
      <failure message="first">first
second</failure>
    </testcase>
    <testcase classname="OP20" name="three">
      <skipped message="without data" />
    </testcase>
  </testsuite>
  <testsuite name="b" tests="1" failures="0" errors="1" skipped="0">
    <testcase classname="b" name="read">
      <error message="no &quot;b&quot;" />
    </testcase>
  </testsuite>
</testsuites>
)");
}

TEST(JunitReport, NumbersNamesThatAreTaken) {
  JunitReport report;
  report.beginSuite("a");
  report.addPassed("OP20", "x (2)");
  report.addPassed("OP20", "x");
  report.addPassed("OP20", "x");
  report.addPassed("OP20", "x");
  report.addPassed("OP20", "x (2)");
  report.addPassed("OP10", "x");
  report.addPassed("OP10", "\x01");
  report.addPassed("OP10", "␁");
  EXPECT_EQ(report.text(), R"xml(<?xml version="1.0"?>
<testsuites>
  <testsuite name="a" tests="8" failures="0" errors="0" skipped="0">
    <testcase classname="OP20" name="x (2)" />
    <testcase classname="OP20" name="x" />
    <testcase classname="OP20" name="x (3)" />
    <testcase classname="OP20" name="x (4)" />
    <testcase classname="OP20" name="x (2) (2)" />
    <testcase classname="OP10" name="x" />
    <testcase classname="OP10" name="␁" />
    <testcase classname="OP10" name="␁ (2)" />
  </testsuite>
</testsuites>
)xml");
}

TEST(JunitReport, HoldsNothingThatXmlForbids) {
  JunitReport report;
  report.beginSuite("\x02");
  report.addFailed("\x03", "n", "a\x04\nb\x05");
  EXPECT_EQ(report.text(), R"(<?xml version="1.0"?>
<testsuites>
  <testsuite name="␂" tests="1" failures="1" errors="0" skipped="0">
    <testcase classname="␃" name="n">
      <failure message="a␄">a␄
b␅</failure>
    </testcase>
  </testsuite>
</testsuites>
)");
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include "result_tables/render/RunTableTexts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/RunTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(GenColumnNames, EscapesWhatSeparatesTheParts) {
  auto section = boltForces({runRow("B\\1/2", {runValue(1)}, "a/b"), runRow("b/B\\1", {runValue(1)}, "a")});
  section.unit = "";
  EXPECT_THAT(genColumnNames(tableOf({runOf("a", {section})})),
              ElementsAre("/Bolts/Forces/a\\/b/B\\\\1\\/2/0/ClampNormalForce",
                          "/Bolts/Forces/a/b\\/B\\\\1/0/ClampNormalForce"));
}

TEST(GenColumnNames, HaveTheIdsOfUnitsThatShareAName) {
  EXPECT_THAT(genColumnNames(tableOf({runOf("a", {boltForces({runRow("B", {runValue(1)})}),
                                                  boltForces({runRow("B", {runValue(1)})}, "OP20", '2'),
                                                  boltForces({runRow("B", {runValue(1)})}, "OP30", '3')})})),
              ElementsAre("OP20/0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01/Bolts/Forces//B/0/ClampNormalForce",
                          "OP20/0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02/Bolts/Forces//B/0/ClampNormalForce",
                          "OP30/Bolts/Forces//B/0/ClampNormalForce"));
}

TEST(GenColumnNames, NumberColumnsThatShareEverything) {
  auto section = boltForces({runRow("B", {runValue(1), runValue(2)})});
  section.columns[1].key = "ClampNormalForce";
  auto const another = boltForces({runRow("B", {runValue(3)})});
  EXPECT_THAT(
      genColumnNames(tableOf({runOf("a", {section, another})})),
      ElementsAre("OP20/Bolts/Forces//B/0/ClampNormalForce", "OP20/Bolts/Forces//B/0/ClampNormalForce/2",
                  "OP20/Bolts/Forces//B/0/ClampNormalForce/3"));
}

TEST(LabelNamesOf, AreThoseOfAllRunsSorted) {
  StudyRun one;
  one.labels = {{"speed", "1"}, {"a", "x"}};
  StudyRun other;
  other.labels = {{"b", ""}};
  EXPECT_THAT(labelNamesOf({one, other}), ElementsAre("a", "b", "speed"));
  EXPECT_THAT(labelNamesOf({}), IsEmpty());
  EXPECT_EQ(labelOf(one, "a"), "x");
  EXPECT_EQ(labelOf(other, "a"), "");
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include "result_tables/tables/Findings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "result_tables/base/Text.h"
#include "support/FindingsTesting.h"

namespace Kestrel::ResultTables {
namespace {

using FindingsTest = FindingsFixture;
using testing::ElementsAre;

/// "section/sub-group/item: column value limit", of an invalid item without what stands behind the colon
std::vector<std::string> linesOf(TableFindings const& table) {
  std::vector<std::string> lines;
  for (auto const& finding : table.findings) {
    auto& line = lines.emplace_back(finding.group + '/' + finding.subGroup + '/' + finding.item);
    if (!finding.exceeded) continue;
    auto const& [column, value, limit] = *finding.exceeded;
    line += ": " + column + ' ' + shortestForm(value) + ' ' + shortestForm(limit.value) + limit.unit;
  }
  return lines;
}

TEST_F(FindingsTest, AreInvalidItemsOnceAndThenTheExceededValues) {
  auto const found = findings();
  EXPECT_EQ(found.unit, "OP20");
  EXPECT_EQ(found.family, "SpotWelds");
  EXPECT_EQ(found.invalidValuesText, "Joining Failed");
  EXPECT_THAT(linesOf(found), ElementsAre("/Left/Spot 2", "First/Left/Spot 1: Max Normal Force -500.5 500N",
                                          "First/Left/Spot 1: Max Tangential Force 600 500N",
                                          "Second//Spot 1: Max Tangential Force 501 500N"));
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

}  // namespace
}  // namespace Kestrel::ResultTables

#include "result_tables/tables/Findings.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/FindingsTesting.h"

namespace Kestrel::ResultTables {
namespace {

using FindingsTest = FindingsFixture;
using testing::ElementsAre;
using testing::IsEmpty;

/// "kind section/sub-group/item: column value limit", of an invalid item without what stands behind the colon
std::vector<std::string> linesOf(TableFindings const& table) {
  std::vector<std::string> lines;
  table.forEachFinding([&lines](Finding const& finding) {
    auto const& [group, subGroup, item, column] = finding.place;
    auto& line = lines.emplace_back(fmt::format("{} {}/{}/{}", nameOf(finding.kind), group, subGroup, item));
    if (finding.value == nullptr) return;
    line += fmt::format(": {} {} {}{}", column->tableDisplayName, finding.value->value, column->limit->value,
                        column->limit->unit);
  });
  return lines;
}

TEST_F(FindingsTest, AreInvalidItemsOnceAndThenTheExceededValues) {
  auto const found = findings();
  EXPECT_EQ(found.unit, "OP20");
  EXPECT_EQ(found.unitId, "00000000-0000-0000-0000-000000000000");
  EXPECT_EQ(found.family, "SpotWelds");
  EXPECT_THAT(linesOf(found),
              ElementsAre("invalid /Left/Spot 2", "exceeded First/Left/Spot 1: Max Normal Force -500.5 500N",
                          "exceeded First/Left/Spot 1: Max Tangential Force 600 500N",
                          "exceeded Second//Spot 1: Max Tangential Force 501 500N"));
  EXPECT_TRUE(found.hasFindings());
}

TEST_F(FindingsTest, LeaveOutInvalidItemsOfAFamilyThatDoesNotSayWhatInvalidMeans) {
  m_container->invalidValuesText.clear();
  auto const found = findings();
  EXPECT_THAT(found.invalidItems, IsEmpty());
  EXPECT_EQ(linesOf(found).size(), 3U);
}

TEST_F(FindingsTest, ListAnInvalidItemOncePerRow) {
  m_container->groups[0].subGroups.push_back({"Right", {{"Spot 2", {0, 0}}}});
  auto const lines = linesOf(findings());
  ASSERT_GE(lines.size(), 3U);
  EXPECT_EQ(lines[0], "invalid /Left/Spot 2");
  EXPECT_EQ(lines[1], "invalid /Right/Spot 2");
}

TEST_F(FindingsTest, CountTheValuesOfValidItemsThatWereCompared) {
  auto const found = findings();
  EXPECT_EQ(found.values.size(), 8U);
  EXPECT_EQ(found.countCompared(), 4U) << "Spot 1 in two sections with two columns; Spot 2 is not valid";
  EXPECT_EQ(found.countWithoutData(), 0U);
}

TEST_F(FindingsTest, AreNothingWithoutLimits) {
  m_limits.collection->updateLimits({});
  m_container->valuesAreValid.clear();
  auto const found = findings();
  EXPECT_FALSE(found.hasFindings());
  EXPECT_EQ(found.countCompared(), 0U);
  EXPECT_EQ(found.countWithoutData(), 0U);
}

TEST_F(FindingsTest, HaveNaNInAnyLimitedSeriesAfterTheExceeded) {
  auto const found = findingsOf(R"([{"quantity": "JoinForceN", "values": [null, 501, null]}])");
  EXPECT_THAT(linesOf(found), ElementsAre("exceeded Forces//Spot 1: Max Normal Force 501 500N",
                                          "notANumber Forces//Spot 1: Max Normal Force 501 500N"));
  EXPECT_EQ(found.countCompared(), 1U);
  EXPECT_EQ(found.countWithoutData(), 1U) << "the tangential force";
}

TEST_F(FindingsTest, DoNotCompareASeriesOfNaNAlone) {
  auto const found = findingsOf(R"([{"quantity": "JoinForceN", "values": [null]}])");
  EXPECT_THAT(linesOf(found), ElementsAre("notANumber Forces//Spot 1: Max Normal Force 0 500N"));
  EXPECT_EQ(found.countCompared(), 0U);
  EXPECT_EQ(found.countWithoutData(), 1U);
}

TEST_F(FindingsTest, SayWhenTheValueWas) {
  auto const found = findingsOf(R"([{"quantity": "JoinForceN", "pairs": [[1, 0.5], [-501, 0.75]]}])");
  ASSERT_EQ(found.values.size(), 2U);
  EXPECT_EQ(found.values[0].step, 1U);
  EXPECT_EQ(found.values[0].time, 0.75);
  EXPECT_EQ(found.values[1].step, std::nullopt);
}

TEST_F(FindingsTest, OfAFileAreThoseOfItsTables) {
  FileFindings both = file();
  both.tables.push_back(findingsOf(R"([{"quantity": "JoinForceN", "values": [1]}])"));
  EXPECT_TRUE(both.hasFindings());
  EXPECT_EQ(both.countCompared(), 5U);
  EXPECT_EQ(both.countWithoutData(), 1U);
  EXPECT_FALSE((FileFindings{"r.json", {findingsOf("[]")}, {}}).hasFindings());
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include "result_tables/render/TextFindings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/FindingsTesting.h"

namespace Kestrel::ResultTables {
namespace {

using TextFindings = FindingsFixture;

TEST_F(TextFindings, AreOneLineEach) {
  EXPECT_EQ(renderFindingsAsText({file()}, {.colour = false}),
            "OP20, SpotWelds, Left, Spot 2: Joining Failed\n"
            "OP20, SpotWelds, First, Left, Spot 1, Max Normal Force: -500.5 N, limit 500 N, step 0\n"
            "OP20, SpotWelds, First, Left, Spot 1, Max Tangential Force: 600 N, limit 500 N, step 0\n"
            "OP20, SpotWelds, Second, Spot 1, Max Tangential Force: 501 N, limit 500 N, step 0\n"
            "values beyond their limits: 3, values with NaN: 0, invalid elements: 1, values compared: 4, "
            "without data: 0\n");
  EXPECT_EQ(renderFindingsAsText({}, {.colour = false}),
            "values beyond their limits: 0, values with NaN: 0, invalid elements: 0, values compared: 0, "
            "without data: 0\n");
}

TEST_F(TextFindings, NameTheFileWhereThereAreSeveral) {
  EXPECT_THAT(renderFindingsAsText({file(), {"s.json", {}, "s.json: cannot read"}}, {.colour = false}),
              testing::StartsWith("r.json: OP20, SpotWelds, Left, Spot 2: Joining Failed\n"));
}

TEST_F(TextFindings, NameWhatCouldNotBeChecked) {
  EXPECT_EQ(renderFindingsAsText({{"s\n.json", {}, "s.json: cannot read"}}, {.colour = false}),
            "s␊.json: could not be checked\n"
            "values beyond their limits: 0, values with NaN: 0, invalid elements: 0, values compared: 0, "
            "without data: 0\n");
}

TEST_F(TextFindings, SayTimeAndStepInTheDigitsThatAreAskedFor) {
  auto const table =
      findingsOf(R"([{"quantity": "JoinForceN", "pairs": [[1, 0.5], [-501.23456789, 0.123456789]]}])");
  EXPECT_THAT(renderFindingsAsText({{"r.json", {table}, {}}}, {}),
              testing::StartsWith("OP20, SpotWelds, Forces, Spot 1, Max Normal Force: -501.2346 N, limit 500 "
                                  "N, step 1, time 0.1234568\n"));
  EXPECT_THAT(
      renderFindingsAsText({{"r.json", {table}, {}}}, {.digits = 4}),
      testing::StartsWith(
          "OP20, SpotWelds, Forces, Spot 1, Max Normal Force: -501.2 N, limit 500 N, step 1, time 0.1235\n"));
}

TEST_F(TextFindings, SayHowManyValuesAreNotNumbers) {
  auto const some = findingsOf(R"([{"quantity": "JoinForceN", "values": [1, null, 3]}])");
  EXPECT_THAT(renderFindingsAsText({{"r.json", {some}, {}}}, {}),
              testing::StartsWith("OP20, SpotWelds, Forces, Spot 1, Max Normal Force: 3 N, limit 500 N, step "
                                  "2, 1 of 3 values are not numbers\n"));
  auto const all = findingsOf(R"([{"quantity": "JoinForceN", "values": [null]}])");
  EXPECT_THAT(renderFindingsAsText({{"r.json", {all}, {}}}, {}),
              testing::StartsWith("OP20, SpotWelds, Forces, Spot 1, Max Normal Force: NaN, limit 500 N, 1 of "
                                  "1 values are not numbers\n"));
}

TEST_F(TextFindings, SayThatAValueBeyondANegativeLimitHasNoData) {
  auto without = file();
  without.tables[0].values[0].count = 0;
  EXPECT_THAT(renderFindingsAsText({without}, {}),
              testing::HasSubstr("Spot 1, Max Normal Force: –, limit 500 N, step 0\n"));
}

TEST_F(TextFindings, AreRedOnATerminal) {
  EXPECT_THAT(renderFindingsAsText({file()}, {.colour = true}),
              testing::StartsWith("\x1b[31mOP20, SpotWelds, Left, Spot 2: Joining Failed\x1b[0m\n"));
}

}  // namespace
}  // namespace Kestrel::ResultTables

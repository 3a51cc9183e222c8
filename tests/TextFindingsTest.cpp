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
            "OP20, SpotWelds, First, Left, Spot 1, Max Normal Force: -500.5 N, limit 500 N\n"
            "OP20, SpotWelds, First, Left, Spot 1, Max Tangential Force: 600 N, limit 500 N\n"
            "OP20, SpotWelds, Second, Spot 1, Max Tangential Force: 501 N, limit 500 N\n"
            "values beyond their limits: 3, invalid elements: 1\n");
  EXPECT_EQ(renderFindingsAsText({}, {.colour = false}),
            "values beyond their limits: 0, invalid elements: 0\n");
}

TEST_F(TextFindings, NameTheFileWhereThereAreSeveral) {
  EXPECT_THAT(renderFindingsAsText({file(), {"s.json", {}, "s.json: cannot read"}}, {.colour = false}),
              testing::StartsWith("r.json: OP20, SpotWelds, Left, Spot 2: Joining Failed\n"));
}

TEST_F(TextFindings, AreRedOnATerminal) {
  EXPECT_THAT(renderFindingsAsText({file()}, {.colour = true}),
              testing::StartsWith("\x1b[31mOP20, SpotWelds, Left, Spot 2: Joining Failed\x1b[0m\n"));
}

}  // namespace
}  // namespace Kestrel::ResultTables

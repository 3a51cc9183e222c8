#include "result_tables/render/TextLimits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "support/LimitsTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::HasSubstr;
using enum TablePropertyLimitType;

class TextLimits : public testing::Test {
 protected:
  static ListedLimit listed(SimulationUnit const& unit, TablePropertyLimitType type, double limit,
                            std::string const& unitText, bool isDefault) {
    return {&unit, std::make_shared<TablePropertyLimit>(type, unit.getID(), limit, unitText), isDefault};
  }

  SimulationUnit const m_first{unitId(s_firstUnit), "OP20"};
  SimulationUnit const m_second{unitId(s_secondUnit), "OP\n10"};
  std::vector<ListedLimit> const m_limits = {listed(m_first, HemmingBedForce, 500, "N", true),
                                             listed(m_first, SuctionZoneForce, -1234.5, "N", false),
                                             listed(m_first, SuctionDistance, 1, "mm²", false),
                                             listed(m_second, PilotForce, std::nan(""), "", true)};
};

TEST_F(TextLimits, StandUnderTheirUnitsWithTheirNumbersInLine) {
  EXPECT_EQ(renderLimitsAsText(m_limits, {}), R"(OP20  0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02
  22  HemmingBedForce     500   N
  18  SuctionZoneForce  -1234.5 N   *
  17  SuctionDistance       1   mm² *

OP␊10  0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01
  19  PilotForce          nan

* not the default
)");
}

TEST_F(TextLimits, SayNothingOfDefaultsWhereAllAre) {
  EXPECT_EQ(renderLimitsAsText({m_limits[0]}, {}),
            "OP20  0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02\n  22  HemmingBedForce  500 N\n");
  EXPECT_EQ(renderLimitsAsText({}, {}), "");
}

TEST_F(TextLimits, AreYellowWhereTheyAreNotTheDefault) {
  auto const text = renderLimitsAsText(m_limits, {.colour = true});
  EXPECT_THAT(text, testing::StartsWith("\x1b[1mOP20\x1b[0m  0b6f6d3e-"));
  EXPECT_THAT(text, HasSubstr("  \x1b[33m-1234.5\x1b[0m N   *\n"));
  EXPECT_THAT(text, HasSubstr("    500   N\n"));
}

TEST_F(TextLimits, HaveNoNameWhereTheirKindHasNone) {
  EXPECT_EQ(renderLimitsAsText({listed(m_first, TablePropertyLimitType{77}, 5, "", true)}, {}),
            "OP20  0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02\n  77    5\n");
}

}  // namespace
}  // namespace Kestrel::ResultTables

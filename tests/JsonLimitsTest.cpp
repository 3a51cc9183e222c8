#include "result_tables/render/JsonLimits.h"

#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "support/LimitsTesting.h"

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;
using enum TablePropertyLimitType;

TEST(JsonLimits, HaveAllThatIsKnownOfThemInOrder) {
  SimulationUnit const unit{unitId(s_secondUnit), "OP10"};
  auto const listed = [&unit](TablePropertyLimitType type, double limit, std::string const& unitText) {
    return ListedLimit{&unit, std::make_shared<TablePropertyLimit>(type, unit.getID(), limit, unitText),
                       true};
  };
  constexpr auto infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(
      json::parse(renderLimitsAsJson({listed(SuctionZoneForce, -1234.5, "N"),
                                      listed(TablePropertyLimitType{77}, infinity, "k\xFFN"),
                                      listed(PilotForce, std::numeric_limits<double>::quiet_NaN(), "")})),
      json::parse(R"({"limits": [
    {"unit": {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP10"},
     "type": 18, "typeName": "SuctionZoneForce", "limit": -1234.5, "unitString": "N"},
    {"unit": {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP10"},
     "type": 77, "typeName": "", "limit": "Infinity", "unitString": "k\uFFFDN"},
    {"unit": {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP10"},
     "type": 19, "typeName": "PilotForce", "limit": null, "unitString": ""}]})"));
}

TEST(JsonLimits, AreAnEmptyListWhereThereAreNone) {
  EXPECT_EQ(renderLimitsAsJson({}), "{\n  \"limits\": []\n}\n");
}

}  // namespace
}  // namespace Kestrel::ResultTables

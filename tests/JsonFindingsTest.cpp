#include "result_tables/render/JsonFindings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/FindingsTesting.h"

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;
using JsonFindings = FindingsFixture;

TEST_F(JsonFindings, HaveAllThatIsKnownOfThemInOrder) {
  EXPECT_EQ(json::parse(renderFindingsAsJson({file()})), json::parse(R"({
  "findings": [
    {
      "file": "r.json",
      "unit": "OP20",
      "unitId": "00000000-0000-0000-0000-000000000000",
      "family": "SpotWelds",
      "group": "",
      "subGroup": "Left",
      "item": "Spot 2",
      "kind": "invalid",
      "key": null, "column": null, "value": null, "limit": null, "step": null, "time": null
    },
    {
      "file": "r.json",
      "unit": "OP20",
      "unitId": "00000000-0000-0000-0000-000000000000",
      "family": "SpotWelds",
      "group": "First",
      "subGroup": "Left",
      "item": "Spot 1",
      "kind": "exceeded",
      "key": "JoinForceN", "column": "Max Normal Force",
      "value": -500.5,
      "limit": 500, "step": 0, "time": null
    },
    {
      "file": "r.json",
      "unit": "OP20",
      "unitId": "00000000-0000-0000-0000-000000000000",
      "family": "SpotWelds",
      "group": "First",
      "subGroup": "Left",
      "item": "Spot 1",
      "kind": "exceeded",
      "key": "JoinTangentialForce", "column": "Max Tangential Force",
      "value": 600,
      "limit": 500, "step": 0, "time": null
    },
    {
      "file": "r.json",
      "unit": "OP20",
      "unitId": "00000000-0000-0000-0000-000000000000",
      "family": "SpotWelds",
      "group": "Second",
      "subGroup": "",
      "item": "Spot 1",
      "kind": "exceeded",
      "key": "JoinTangentialForce", "column": "Max Tangential Force",
      "value": 501,
      "limit": 500, "step": 0, "time": null
    }
  ],
  "errors": [], "compared": 4, "withoutData": 0
}
)"));
}

TEST_F(JsonFindings, AreAnEmptyListWhereNothingIsFoundAndErrorsAreNamed) {
  EXPECT_EQ(json::parse(renderFindingsAsJson({{"r.json", {}, "r.json: cannot read"}})),
            json::parse(R"({"findings": [], "errors": [{"file": "r.json", "message": "r.json: cannot read"}],
                            "compared": 0, "withoutData": 0})"));
}

TEST_F(JsonFindings, SayTwiceWhatIsExceededAndHasNaNAndWhenItWas) {
  auto const table = findingsOf(R"([{"quantity": "JoinForceN", "pairs": [[null, 0], [-501, 0.75]]}])");
  auto const document = json::parse(renderFindingsAsJson({{"r.json", {table}, {}}}));
  ASSERT_EQ(document["findings"].size(), 2U);
  for (auto const& finding : document["findings"]) {
    EXPECT_EQ(finding["value"], -501);
    EXPECT_EQ(finding["step"], 1);
    EXPECT_EQ(finding["time"], 0.75);
  }
  EXPECT_EQ(document["findings"][0]["kind"], "exceeded");
  EXPECT_EQ(document["findings"][1]["kind"], "notANumber");
  EXPECT_EQ(document["compared"], 1);
  EXPECT_EQ(document["withoutData"], 1);
}

}  // namespace
}  // namespace Kestrel::ResultTables

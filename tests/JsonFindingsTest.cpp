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
      "family": "SpotWelds",
      "group": "",
      "subGroup": "Left",
      "item": "Spot 2",
      "kind": "invalid",
      "column": null,
      "value": null,
      "limit": null
    },
    {
      "file": "r.json",
      "unit": "OP20",
      "family": "SpotWelds",
      "group": "First",
      "subGroup": "Left",
      "item": "Spot 1",
      "kind": "exceeded",
      "column": "Max Normal Force",
      "value": -500.5,
      "limit": 500
    },
    {
      "file": "r.json",
      "unit": "OP20",
      "family": "SpotWelds",
      "group": "First",
      "subGroup": "Left",
      "item": "Spot 1",
      "kind": "exceeded",
      "column": "Max Tangential Force",
      "value": 600,
      "limit": 500
    },
    {
      "file": "r.json",
      "unit": "OP20",
      "family": "SpotWelds",
      "group": "Second",
      "subGroup": "",
      "item": "Spot 1",
      "kind": "exceeded",
      "column": "Max Tangential Force",
      "value": 501,
      "limit": 500
    }
  ]
}
)"));
}

TEST_F(JsonFindings, AreAnEmptyListWhereNothingIsFound) {
  EXPECT_EQ(renderFindingsAsJson({{"r.json", {}, "r.json: cannot read"}}), "{\n  \"findings\": []\n}\n");
}

}  // namespace
}  // namespace Kestrel::ResultTables

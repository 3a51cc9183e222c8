#include "result_tables/render/JsonDifferences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/DifferencesTesting.h"

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;
using nlohmann::ordered_json;

TEST(JsonDifferences, HaveAllMembersInOrder) {
  auto const output =
      ordered_json::parse(renderDifferencesAsJson(differencesOf(oneBolt("20"), oneBolt("31"))));
  EXPECT_EQ(output, ordered_json::parse(R"({"differences": [
      {"unit": "OP20", "unitId": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02", "family": "Bolts", "group": "Forces",
       "subGroup": "", "item": "Bolt 1", "key": "ClampNormalForce", "column": "Max Normal Force",
       "kind": "changed", "before": 20.0, "after": 31.0, "change": 11.0, "relative": 0.55,
       "validBefore": true, "validAfter": true, "exceededBefore": false, "exceededAfter": true}],
      "compared": 5})"));
}

TEST(JsonDifferences, HaveNullForWhatOneFileLacks) {
  auto const pilot = unitOf('1', "OP10", pilots({{"P1", 2}}));
  auto const added = json::parse(renderDifferencesAsJson(differencesOf("", pilot)));
  EXPECT_EQ(added.at("compared"), 0);
  EXPECT_EQ(added.at("differences"), json::parse(R"([
      {"unit": "OP10", "unitId": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "family": "Pilots", "group": "Forces",
       "subGroup": "", "item": "P1", "key": "PilotForce", "column": "Max Force", "kind": "added",
       "before": null, "after": 2.0, "change": null, "relative": null, "validBefore": null, "validAfter": true,
       "exceededBefore": null, "exceededAfter": false}])"));
  auto const removed = json::parse(renderDifferencesAsJson(differencesOf(pilot, "")));
  EXPECT_EQ(removed.at("differences"), json::parse(R"([
      {"unit": "OP10", "unitId": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "family": "Pilots", "group": "Forces",
       "subGroup": "", "item": "P1", "key": "PilotForce", "column": "Max Force", "kind": "removed",
       "before": 2.0, "after": null, "change": null, "relative": null, "validBefore": true, "validAfter": null,
       "exceededBefore": false, "exceededAfter": null}])"));
}

TEST(JsonDifferences, SpellInfinitiesAndHaveNullForWhatIsNoFiniteNumber) {
  auto const output =
      json::parse(renderDifferencesAsJson(differencesOf(oneBolt("\"-Infinity\""), oneBolt("\"Infinity\""))));
  auto const& difference = output.at("differences").at(0);
  EXPECT_EQ(difference.at("before"), "-Infinity");
  EXPECT_EQ(difference.at("after"), "Infinity");
  EXPECT_EQ(difference.at("change"), nullptr);
  EXPECT_EQ(difference.at("relative"), nullptr);
}

TEST(JsonDifferences, AreAnEmptyListWhereNothingDiffers) {
  EXPECT_EQ(json::parse(renderDifferencesAsJson(differencesOf(oneBolt("1"), oneBolt("1")))),
            json::parse(R"({"differences": [], "compared": 5})"));
}

}  // namespace
}  // namespace Kestrel::ResultTables

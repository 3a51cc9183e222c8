#include "result_tables/render/JsonTables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "support/TableTesting.h"

namespace Kestrel::ResultTables {
namespace {

using DataType = MaxValueGroupContainer::DataType;
using nlohmann::json;
using namespace nlohmann::json_literals;

SimulationUnitId idOf(char const* text) { return SimulationUnitId(*GUIdentifier::fromString(text)); }

TEST(JsonTables, HoldEverythingThatIsKnownAboutATable) {
  SimulationUnit const unit(idOf("0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01"), "OP20");
  auto container = std::make_shared<MaxValueGroupContainer>(DataType::SpotWelds, unit.getID());
  container->title = "Joins";
  container->unitTitle = "OP20Joins";
  container->isDefaultFamily = false;
  container->elementNames = {"W1", "W2"};
  container->valuesAreValid = {{"Spot 1", true}, {"Spot 2", false}};
  container->invalidValuesText = "Joining Failed";
  container->invalidValuesNameAppendix = " (Joining Failed)";
  MaxValueGroup group{
      "Forces", false,
      true,     {TablePropertyLimitType::JoinNormalForce, TablePropertyLimitType::JoinTangentialForce},
      {"K1"},   {}};
  group.subGroups.push_back({"A", {{"Spot 1", {-7.25}}, {"Spot 2", {1e300}}}});
  container->groups.push_back(group);

  EXPECT_EQ(renderJson({genTable(unit, container, ResultLimits())}), R"json({
  "tables": [
    {
      "file": "r.json",
      "unit": {
        "id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01",
        "name": "OP20"
      },
      "dataType": 10,
      "family": "SpotWelds",
      "title": "Joins",
      "unitTitle": "OP20Joins",
      "isDefaultFamily": false,
      "elementNames": ["W1", "W2"],
      "valuesAreValid": {
        "Spot 1": true,
        "Spot 2": false
      },
      "invalidValuesText": "Joining Failed",
      "invalidValuesNameAppendix": " (Joining Failed)",
      "groups": [
        {
          "name": "Forces",
          "isTeachingGroup": false,
          "isForceGroup": true,
          "limitTypes": [5, 6],
          "valueNames": ["K1"],
          "columns": [
            {
              "key": "K1",
              "displayName": "",
              "shortDisplayName": "",
              "tableDisplayName": "",
              "shortTableDisplayName": "",
              "unit": "",
              "limitType": 5,
              "limit": null
            }
          ],
          "subGroups": [
            {
              "name": "A",
              "items": [
                {
                  "name": "Spot 1",
                  "displayName": "Spot 1",
                  "valid": true,
                  "maxValues": [-7.25],
                  "exceeded": [false],
                  "steps": [null],
                  "times": [null],
                  "counts": [0],
                  "nans": [0]
                },
                {
                  "name": "Spot 2",
                  "displayName": "Spot 2 (Joining Failed)",
                  "valid": false,
                  "maxValues": [1e+300],
                  "exceeded": [false],
                  "steps": [null],
                  "times": [null],
                  "counts": [0],
                  "nans": [0]
                }
              ]
            }
          ]
        }
      ]
    }
  ]
}
)json");
}

TEST(JsonTables, AreAnEmptyListWithoutTables) {
  EXPECT_EQ(json::parse(renderJson({})), json::parse(R"({"tables": []})"));
}

TEST(JsonTables, WriteNumbersInTheirShortestFormAndNonFiniteOnesByName) {
  SimulationUnit const unit(SimulationUnitId(), "OP20");
  auto container = std::make_shared<MaxValueGroupContainer>(DataType::Clamps, unit.getID());
  auto const infinity = std::numeric_limits<double>::infinity();
  MaxValueGroup group;
  group.valueNames = {"A", "B", "C", "D", "E", "F", "G"};
  group.subGroups.push_back(
      {"",
       {{"C1", {0.1, 500.0, 5e-324, infinity, -infinity, std::numeric_limits<double>::quiet_NaN(), -0.0}}}});
  container->groups.push_back(group);
  EXPECT_THAT(renderJson({genTable(unit, container, ResultLimits())}),
              testing::HasSubstr(R"("maxValues": [0.1, 500, 5e-324, "Infinity", "-Infinity", null, -0])"));
}

TEST(JsonTables, AreValidUtf8WhateverTheNamesHold) {
  SimulationUnit const unit(SimulationUnitId(), "a\xFF\xC3z\n\"");
  auto const container = std::make_shared<MaxValueGroupContainer>(DataType::Clamps, unit.getID());
  auto const tables = json::parse(renderJson({genTable(unit, container, ResultLimits())}));
  EXPECT_EQ(tables.at("/tables/0/unit/name"_json_pointer), "a\uFFFD\uFFFDz\n\"");
}

TEST(JsonTables, SayWhereAValueComesFrom) {
  auto const tables = json::parse(renderJson(genClampTables(R"([
      {"quantity": "ClampNormalForce", "values": [0, 3.5, -7.25]},
      {"quantity": "ClampClosingForce", "pairs": [[0, 0.1], [-12, 0.2]]},
      {"quantity": "ClampSupportingForce", "values": [null, 0]}])")));
  auto const item = tables.at("/tables/0/groups/0/subGroups/0/items/0"_json_pointer);
  EXPECT_EQ(item, json::parse(R"({
    "name": "Clamp 1", "displayName": "Clamp 1", "valid": true,
    "maxValues": [-7.25, -12, 0, 0], "exceeded": [false, false, false, false],
    "steps": [2, 1, null, null], "times": [null, 0.2, null, null], "counts": [3, 2, 1, 0], "nans": [0, 0, 1, 0]})"));
  EXPECT_EQ(tables.at("/tables/0/file"_json_pointer), "r.json");
}

TEST(JsonTables, HaveTheLimitOfAColumn) {
  SimulationUnit const unit(SimulationUnitId(), "OP20");
  auto const container = std::make_shared<MaxValueGroupContainer>(DataType::Bolts, unit.getID());
  container->groups.push_back(
      {"Forces", false, true, {TablePropertyLimitType::BoltNormalForce}, {"ClampNormalForce"}, {}});
  ResultLimits limits;
  limits.collection->updateLimits({unit.getID()});
  EXPECT_EQ(json::parse(renderJson({genTable(unit, container, limits)}))
                .at("/tables/0/groups/0/columns/0/limit"_json_pointer),
            json::parse(R"({"value": 30, "unit": "N"})"));
}

}  // namespace
}  // namespace Kestrel::ResultTables

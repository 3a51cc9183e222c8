#include "result_tables/render/JsonTables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

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

  EXPECT_EQ(renderJson({ResultTable(unit, container, TablePropertiesData())}), R"json({
  "tables": [
    {
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
                  "exceeded": [false]
                },
                {
                  "name": "Spot 2",
                  "displayName": "Spot 2 (Joining Failed)",
                  "valid": false,
                  "maxValues": [1e+300],
                  "exceeded": [false]
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
  EXPECT_THAT(renderJson({ResultTable(unit, container, TablePropertiesData())}),
              testing::HasSubstr(R"("maxValues": [0.1, 500, 5e-324, "Infinity", "-Infinity", null, -0])"));
}

TEST(JsonTables, AreValidUtf8WhateverTheNamesHold) {
  SimulationUnit const unit(SimulationUnitId(), "a\xFF\xC3z\n\"");
  auto const container = std::make_shared<MaxValueGroupContainer>(DataType::Clamps, unit.getID());
  auto const tables = json::parse(renderJson({ResultTable(unit, container, TablePropertiesData())}));
  EXPECT_EQ(tables.at("/tables/0/unit/name"_json_pointer), "a\uFFFD\uFFFDz\n\"");
}

}  // namespace
}  // namespace Kestrel::ResultTables

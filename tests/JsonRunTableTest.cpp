#include "result_tables/render/JsonRunTable.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/RunTesting.h"

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;

TEST(JsonRunTable, HasColumnsRunsAndStatistics) {
  auto const document = json::parse(renderRunTableAsJson(genBoltRuns()));
  ASSERT_EQ(document["columns"].size(), 5U);
  EXPECT_EQ(document["columns"][0], json::parse(R"({
      "name": "OP20/Bolts/Forces//B1/0/ClampNormalForce", "unit": "OP20",
      "unitId": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "family": "Bolts", "group": "Forces", "subGroup": "",
      "item": "B1", "occurrence": 0, "key": "ClampNormalForce", "column": "Max Normal Force", "valueUnit": "N",
      "limit": 30})"));
  EXPECT_EQ(document["columns"][1]["limit"], nullptr);
  EXPECT_EQ(document["runs"], json::parse(R"([
      {"run": "r1", "file": "r1.json", "added": "2026-11-22T09:30:00Z",
       "labels": {"by": "Ann, \"A\"", "speed": "1"}, "worstUtilisation": 1.5,
       "values": [-45, null, null, null, 0], "notANumber": [3], "exceeded": [0], "invalid": []},
      {"run": "r2", "file": "r2.json", "added": "2026-11-22T09:30:00Z", "labels": {"speed": "2"},
       "worstUtilisation": null, "values": [15, -0.5, "Infinity", null, null], "notANumber": [],
       "exceeded": [2], "invalid": []}])"));
  EXPECT_EQ(document["statistics"][0], json::parse(R"({
      "name": "OP20/Bolts/Forces//B1/0/ClampNormalForce", "count": 2, "minimum": -45, "maximum": 15, "mean": -15,
      "standardDeviation": 42.42640687119285, "shareBeyondLimit": 0.5, "worstUtilisation": 1.5})"));
  EXPECT_EQ(document["statistics"][3], json::parse(R"({
      "name": "OP20/Bolts/Forces//B2/0/ClampNormalForce", "count": 0, "minimum": null, "maximum": null,
      "mean": null, "standardDeviation": null, "shareBeyondLimit": null, "worstUtilisation": null})"));
}

TEST(JsonRunTable, NamesValuesThatAreNotValid) {
  auto const table = tableOf({runOf("a", {boltForces({runRow("B1", {runValue(99)}, "", false)})})});
  EXPECT_EQ(json::parse(renderRunTableAsJson(table))["runs"][0]["invalid"], json::parse("[0]"));
}

TEST(JsonRunValues, HaveAnObjectForEachValueOfEachRun) {
  JsonRunValues writer;
  auto value = runValue(-45, true);
  value.origin.companion = 0.25;
  auto text = writer.write(runOf("r1", {boltForces({runRow("B1", {value})})}));
  text += writer.write(runOf("r2", {boltForces({runRow("B1", {noData(), onlyNaN()}, "Left", false)})}));
  text += writer.finish();
  auto const document = json::parse(text);
  ASSERT_EQ(document["values"].size(), 3U);
  EXPECT_EQ(document["values"][0], json::parse(R"({
      "run": "r1", "file": "r1.json", "unit": "OP20", "unitId": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01",
      "family": "Bolts", "group": "Forces", "subGroup": "", "item": "B1", "occurrence": 0, "valid": true,
      "key": "ClampNormalForce", "column": "Max Normal Force", "value": -45, "valueUnit": "N", "limit": 30,
      "exceeded": true, "step": 0, "time": 0.25, "count": 1, "nans": 0})"));
  EXPECT_EQ(document["values"][2], json::parse(R"({
      "run": "r2", "file": "r2.json", "unit": "OP20", "unitId": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01",
      "family": "Bolts", "group": "Forces", "subGroup": "Left", "item": "B1", "occurrence": 0, "valid": false,
      "key": "ClampClosingForce", "column": "Max Closing Force", "value": null, "valueUnit": "N", "limit": null,
      "exceeded": false, "step": null, "time": null, "count": 0, "nans": 2})"));
}

TEST(JsonRunValues, AreAnEmptyListWithoutRuns) {
  EXPECT_EQ(json::parse(JsonRunValues().finish()), json::parse(R"({"values": []})"));
}

}  // namespace
}  // namespace Kestrel::ResultTables

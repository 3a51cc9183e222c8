#include "result_tables/render/JsonSeries.h"

#include <gtest/gtest.h>

#include "support/SeriesTesting.h"

namespace Kestrel::ResultTables {
namespace {

TEST(JsonSeries, HaveAllThatIsKnown) {
  EXPECT_EQ(
      renderSeriesAsJson({withLimit(seriesOf({0.1, -40.5, s_nan, s_infinity}, {0, 0.25, s_nan, 0.75}), 30)}),
      R"({
  "series": [
    {
      "file": "r.json",
      "unit": "OP20",
      "unitId": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01",
      "family": "Bolts",
      "item": "B1",
      "key": "ClampNormalForce",
      "column": "Max Normal Force",
      "unitOfValue": "N",
      "limit": 30,
      "extremeStep": 3,
      "steps": [0, 1, 2, 3],
      "times": [0, 0.25, null, 0.75],
      "values": [0.1, -40.5, null, "Infinity"]
    }
  ]
}
)");
}

TEST(JsonSeries, HaveNullForWhatThereIsNot) {
  EXPECT_EQ(renderSeriesAsJson({seriesOf({})}), R"({
  "series": [
    {
      "file": "r.json",
      "unit": "OP20",
      "unitId": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01",
      "family": "Bolts",
      "item": "B1",
      "key": "ClampNormalForce",
      "column": "Max Normal Force",
      "unitOfValue": "N",
      "limit": null,
      "extremeStep": null,
      "steps": [],
      "times": null,
      "values": []
    }
  ]
}
)");
}

TEST(JsonSeries, HaveMinimumAndMaximumOfLineJoins) {
  auto const text = renderSeriesAsJson({seriesOfRanges({{-0.25, 0.5}, {-1, 0}})});
  EXPECT_EQ(text.substr(text.find("      \"extremeStep\"")), R"(      "extremeStep": 3,
      "steps": [2, 3],
      "times": null,
      "values": [[-0.25, 0.5], [-1, 0]]
    }
  ]
}
)");
}

TEST(JsonSeries, AreAnEmptyArrayWithoutSeries) {
  EXPECT_EQ(renderSeriesAsJson({}), "{\n  \"series\": []\n}\n");
}

}  // namespace
}  // namespace Kestrel::ResultTables

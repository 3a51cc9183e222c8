#include "result_tables/import/HistoryList.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "result_tables/import/CsvHistories.h"
#include "support/ImportTesting.h"

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;

/// A node set with two quantities of one component, and a column.
Histories someHistories() {
  Histories histories("a.dat");
  histories.add({"C1", "forces", {"fx", "fz"}, {7, 8}, {0.5, 2}, {1, -2, 3, 4, 5, 6, std::nan(""), 8.25}});
  histories.add({"C1", "total force", {"fz"}, {}, {0.5}, {-0.125}});
  auto& gap = histories.add({"", "", {"gap"}, {}, {0}, {std::numeric_limits<double>::infinity()}});
  gap.units = {"mm"};
  gap.timeUnit = "s";
  histories.index();
  return histories;
}

TEST(HistoryList, SaysOfEachHistoryWhatAMapWantsToKnow) {
  auto const list = listHistories(someHistories());
  ASSERT_EQ(list.size(), 4U);
  EXPECT_EQ(list[0].name, "C1.fx");
  EXPECT_EQ(list[0].kind, "forces");
  EXPECT_EQ(list[0].entity, "C1");
  EXPECT_EQ(list[0].component, "fx");
  EXPECT_EQ(list[0].unit, "");
  EXPECT_EQ(list[0].entities, 2U);
  EXPECT_EQ(list[0].count, 3U);
  EXPECT_EQ(list[0].nans, 1U);
  EXPECT_EQ(list[0].range, (ListedHistory::Range{1, 5}));
  EXPECT_EQ(list[0].times, 2U);
  EXPECT_EQ(list[0].timeRange, (ListedHistory::Range{0.5, 2}));
  EXPECT_EQ(list[1].name, "C1.forces fz") << "the short name would not decide";
  EXPECT_EQ(list[1].range, (ListedHistory::Range{-2, 8.25}));
  EXPECT_EQ(list[2].name, "C1.total force fz");
  EXPECT_EQ(list[2].kind, "total force");
  EXPECT_EQ(list[2].entities, 1U);
  EXPECT_EQ(list[3].name, "gap");
  EXPECT_EQ(list[3].kind, "column");
  EXPECT_EQ(list[3].unit, "mm");
  EXPECT_EQ(list[3].timeUnit, "s");
}

TEST(HistoryList, HasNoRangeOfAHistoryWithoutValues) {
  auto const list = listHistories(readCsvHistories("a.csv", "t,a,b,c\n0,1,,nan\n"));
  ASSERT_EQ(list.size(), 3U);
  EXPECT_EQ(list[1].count, 0U);
  EXPECT_EQ(list[1].times, 0U);
  EXPECT_EQ(list[1].range, std::nullopt);
  EXPECT_EQ(list[1].timeRange, std::nullopt);
  EXPECT_EQ(list[2].count, 0U);
  EXPECT_EQ(list[2].nans, 1U);
  EXPECT_EQ(list[2].range, std::nullopt);
  EXPECT_EQ(list[2].timeRange, (ListedHistory::Range{0, 0}));
}

TEST(HistoryList, IsTextWithOneLineForEach) {
  EXPECT_EQ(renderHistoriesAsText(listHistories(someHistories())),
            "C1.fx              forces       entities: 2  values: 3 and 1 NaN  range: 1 to 5            "
            "times: 0.5 to 2\n"
            "C1.forces fz       forces       entities: 2  values: 4            range: -2 to 8.25        "
            "times: 0.5 to 2\n"
            "C1.total force fz  total force  entities: 1  values: 1            range: -0.125 to -0.125  "
            "times: 0.5 to 0.5\n"
            "gap                column       entities: 1  values: 1            range: inf to inf mm     "
            "times: 0 to 0 s\n");
  auto const oddNames = listHistories(readCsvHistories("a.csv", "t,\"a\nb\",c\n0,,1\n"));
  EXPECT_EQ(renderHistoriesAsText(oddNames),
            "a␊b  column  entities: 1  values: 0  range: none    times: none\n"
            "c    column  entities: 1  values: 1  range: 1 to 1  times: 0 to 0\n");
  EXPECT_EQ(renderHistoriesAsText({}), "");
}

TEST(HistoryList, IsJson) {
  auto const list = json::parse(renderHistoriesAsJson(listHistories(someHistories()))).at("histories");
  ASSERT_EQ(list.size(), 4U);
  EXPECT_EQ(list[0], json::parse(R"({"name": "C1.fx", "kind": "forces", "entity": "C1", "component": "fx",
    "unit": "", "entities": 2, "count": 3, "nans": 1, "min": 1, "max": 5, "times": 2, "firstTime": 0.5,
    "lastTime": 2, "timeUnit": ""})"));
  EXPECT_EQ(list[3], json::parse(R"({"name": "gap", "kind": "column", "entity": "", "component": "gap",
    "unit": "mm", "entities": 1, "count": 1, "nans": 0, "min": "Infinity", "max": "Infinity", "times": 1,
    "firstTime": 0, "lastTime": 0, "timeUnit": "s"})"));
  auto const empty = listHistories(readCsvHistories("a.csv", "t,a,b\n0,,1\n"));
  auto const none = json::parse(renderHistoriesAsJson(empty)).at("histories").at(0);
  EXPECT_EQ(none.at("min"), nullptr);
  EXPECT_EQ(none.at("lastTime"), nullptr);
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include "result_tables/render/TextSummary.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "result_tables/limits/Limits.h"
#include "result_tables/render/TextTables.h"
#include "result_tables/results/ResultsFile.h"

namespace Kestrel::ResultTables {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr char const* s_bolts =
    R"({"id": "Clamp 1", "kind": "clamp", "series": [{"quantity": "ClampNormalForce", "values": [7]}]},
       {"id": "Clamp 2", "kind": "clamp", "series": []},
       {"id": "Bolt 1", "kind": "bolt", "series": [{"quantity": "ClampNormalForce", "values": [0, -33.5]}]},
       {"id": "Bolt 2", "kind": "bolt", "series": [{"quantity": "ClampNormalForce", "values": [12, null]}]},
       {"id": "Bolt 3", "kind": "bolt", "series": []})";

/// A file with two units, OP20 with these tools and "OP\n30" with a clamp.
ResultsFile readUnits(std::string const& name, std::string const& tools) {
  return readResults(name, R"({"format": "simulation-results", "version": 1, "units": [
      {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP20", "tools": [)" +
                               tools + R"(]},
      {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02", "name": "OP\n30", "tools": [
        {"id": "Clamp 1", "kind": "clamp", "series": []}]}]})");
}

std::vector<ResultTable> tablesOf(ResultsFile const& file, TableSelection const& selection = {}) {
  return genResultTables(file, selection, {genDefaultLimits(file)});
}

TEST(TextSummary, SaysOfEachUnitWhatItHasAndOfAllWhatTakesTheMostOfItsLimit) {
  auto const file = readUnits("r.json", s_bolts);
  EXPECT_EQ(renderSummaryAsText(tablesOf(file), {}), R"(Summary

  OP20
    elements: Clamps 2, Bolts 3
    values beyond their limits: 1, values with NaN: 1, invalid elements: 0, values compared: 2, without data: 1

  OP␊30
    elements: Clamps 1
    values beyond their limits: 0, values with NaN: 0, invalid elements: 0, values compared: 0, without data: 0

  Highest utilisations
    111.7 % !   -33.5 N   OP20: Bolts, Forces, Bolt 1, Max Normal Force
       40 %        12 N   OP20: Bolts, Forces, Bolt 2, Max Normal Force
)");
}

TEST(TextSummary, BreaksLinesAtItsWidthBehindCommas) {
  auto const file = readUnits("r.json", s_bolts);
  EXPECT_THAT(renderSummaryAsText(tablesOf(file), {.width = 62, .digits = 2}), StartsWith(R"(Summary

  OP20
    elements: Clamps 2, Bolts 3
    values beyond their limits: 1, values with NaN: 1,
    invalid elements: 0, values compared: 2, without data: 1
)"));
  EXPECT_THAT(renderSummaryAsText(tablesOf(file), {.width = 62, .digits = 2}), EndsWith(R"(
  Highest utilisations
    111.7 % !   -34 N   OP20: Bolts, Forces, Bolt 1,
                        Max Normal Force
       40 %      12 N   OP20: Bolts, Forces, Bolt 2,
                        Max Normal Force
)"));
  EXPECT_THAT(renderSummaryAsText(tablesOf(file), {.width = 1}), HasSubstr("\n    Bolts 3\n")) << "at least";
}

TEST(TextSummary, NamesTheFilesWhereThereAreSeveral) {
  auto const one = readUnits("one.json", s_bolts);
  auto const other = readUnits("the\tother.json", "");
  auto tables = tablesOf(one);
  for (auto& table : tablesOf(other)) tables.push_back(table);
  auto const text = renderSummaryAsText(tables, {});
  EXPECT_THAT(text, HasSubstr("\n  one.json: OP20\n"));
  EXPECT_THAT(text, HasSubstr("\n  the␉other.json: OP␊30\n"));
  EXPECT_THAT(text, HasSubstr("   one.json: OP20: Bolts, Forces, Bolt 1, Max Normal Force\n"));
}

TEST(TextSummary, ListsTenUtilisationsAtMost) {
  std::string bolts;
  for (int i = 1; i <= 12; ++i) {
    bolts += R"({"id": "Bolt )" + std::to_string(i) +
             R"(", "kind": "bolt", "series": [{"quantity": "ClampNormalForce", "values": [)" +
             std::to_string(i) + "]}]}" + (i < 12 ? "," : "");
  }
  auto const file = readUnits("r.json", bolts);
  auto const text = renderSummaryAsText(tablesOf(file), {});
  EXPECT_THAT(text, HasSubstr("Highest utilisations\n       40 %     12 N   OP20: Bolts, Forces, Bolt 12, "));
  EXPECT_THAT(text, HasSubstr("\n       10 %      3 N   OP20: Bolts, Forces, Bolt 3, "));
  EXPECT_THAT(text, Not(HasSubstr("Bolt 2, ")));
}

TEST(TextSummary, SaysWhenThereAreNoElements) {
  auto const file = readUnits("r.json", "");
  auto const tables =
      tablesOf(file, {.units = {"OP20"}, .families = {MaxValueGroupContainer::DataType::Bolts}});
  EXPECT_EQ(renderSummaryAsText(tables, {}), R"(Summary

  OP20
    no elements
    values beyond their limits: 0, values with NaN: 0, invalid elements: 0, values compared: 0, without data: 0
)");
}

TEST(TextSummary, IsRedWhereLimitsAreExceeded) {
  auto const file = readUnits("r.json", s_bolts);
  auto const text = renderSummaryAsText(tablesOf(file), {.colour = true});
  EXPECT_THAT(text, StartsWith("\x1b[1mSummary\x1b[0m\n"));
  EXPECT_THAT(text, HasSubstr("\n\x1b[31m    111.7 % !   -33.5 N\x1b[0m   OP20: Bolts"));
  EXPECT_THAT(text, HasSubstr("\n       40 %        12 N   OP20: Bolts"));
}

TEST(TextSummary, StandsBeforeTablesThatAreLongerThanTheScreen) {
  auto const file = readUnits("r.json", "");
  auto const text = renderText(tablesOf(file), {});
  ASSERT_EQ(std::count(text.begin(), text.end(), '\n'), 15);
  EXPECT_EQ(renderText(tablesOf(file), {.height = 16}), text);
  auto const summary = renderSummaryAsText(tablesOf(file), {.width = 70});
  EXPECT_EQ(renderText(tablesOf(file), {.width = 70, .height = 15}), summary + '\n' + text)
      << "its first line would be gone when the prompt comes";
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include "result_tables/render/Formats.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <nlohmann/json.hpp>

#include "support/TableTesting.h"

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;
using testing::ElementsAre;

/// Whether a row can be written of such values.
template <typename... Values>
concept IsRow = requires(Values&&... values) {
  Format<Tables>{static_cast<Values&&>(values)...};
};

// A row without a renderer does not compile.
static_assert(!IsRow<>);
static_assert(!IsRow<char const*>);
static_assert(!IsRow<char const*, std::nullptr_t>);
static_assert(IsRow<char const*, Format<Tables>::Render&>);

template <typename Formats>
std::vector<std::string_view> namesOf(Formats const& formats) {
  std::vector<std::string_view> names;
  for (auto const& format : formats) names.push_back(format.name);
  return names;
}

TEST(Formats, AreThoseOfTheirSubjectWithTheOneForPeopleFirst) {
  EXPECT_THAT(namesOf(s_tableFormats), ElementsAre("text", "csv", "json", "html", "xlsx"));
  EXPECT_THAT(namesOf(s_csvDialects<Tables>), ElementsAre("plain", "excel-de"));
  EXPECT_THAT(namesOf(s_findingsFormats), ElementsAre("text", "json", "junit", "html"));
  EXPECT_THAT(namesOf(s_differencesFormats), ElementsAre("text", "csv", "json", "junit", "html"));
  EXPECT_THAT(namesOf(s_seriesFormats), ElementsAre("text", "csv", "json", "svg"));
  EXPECT_THAT(namesOf(s_limitsFormats), ElementsAre("text", "json"));
  EXPECT_THAT(namesOf(s_runTableFormats), ElementsAre("csv", "json", "html", "xlsx"));
  EXPECT_THAT(namesOf(s_statisticsFormats), ElementsAre("csv", "plain", "excel-de"));
  EXPECT_THAT(namesOf(s_runValuesFormats), ElementsAre("csv", "plain", "excel-de", "json", "xlsx"));
  EXPECT_THAT(namesOf(s_studyRunsFormats), ElementsAre("text", "csv", "json"));
  EXPECT_THAT(namesOf(s_worstValuesFormats), ElementsAre("text", "csv", "json"));
  EXPECT_THAT(namesOf(s_trendsFormats), ElementsAre("text", "csv", "json", "svg"));
}

TEST(Formats, RenderWhatTheirNamesSay) {
  SimulationUnit const unit{SimulationUnitId(), "OP20"};
  auto const container =
      std::make_shared<MaxValueGroupContainer>(MaxValueGroupContainer::DataType::Bolts, unit.getID());
  Tables const tables = {{genTable(unit, container, ResultLimits())}, {}};
  EXPECT_EQ(s_tableFormats[0].render(tables, {}), "OP20: Bolts\n  no elements\n");
  EXPECT_EQ(s_tableFormats[0].render(tables, {.colour = true}), "\x1b[1mOP20: Bolts\x1b[0m\n  no elements\n");
  EXPECT_THAT(s_tableFormats[1].render(tables, {}), testing::StartsWith("file,unit,unitId,family,"));
  EXPECT_THAT(s_csvDialects<Tables>[0].render(tables, {}), testing::StartsWith("file,unit,unitId,family,"));
  EXPECT_THAT(s_csvDialects<Tables>[1].render(tables, {}), testing::StartsWith("file;unit;unitId;family;"));
  EXPECT_EQ(json::parse(s_tableFormats[2].render(tables, {.colour = true})).at("tables").at(0).at("family"),
            "Bolts");

  EXPECT_THAT(s_tableFormats[3].render(tables, {}),
              testing::StartsWith("<!DOCTYPE html>\n<html lang=\"en\""));
  EXPECT_THAT(s_tableFormats[4].render(tables, {}), testing::StartsWith("PK"));
  EXPECT_TRUE(s_tableFormats[4].isBinary);

  Findings const findings = {{"r.json", {}, "r.json: cannot read"}};
  EXPECT_EQ(s_findingsFormats[0].render(findings, {}),
            "r.json: could not be checked\n"
            "values beyond their limits: 0, values with NaN: 0, invalid elements: 0, values compared: 0, "
            "without data: 0\n");
  EXPECT_EQ(json::parse(s_findingsFormats[1].render(findings, {})),
            json::parse(R"({"findings": [], "errors": [{"file": "r.json", "message": "r.json: cannot read"}],
                            "compared": 0, "withoutData": 0})"));
  EXPECT_THAT(s_findingsFormats[2].render(findings, {}), testing::StartsWith("<?xml version=\"1.0\"?>\n"));

  EXPECT_THAT(s_findingsFormats[3].render(findings, {}), testing::HasSubstr("r.json: cannot read"));

  ResultDifferences const none = {"a.json", "b.json", {}, {}};
  EXPECT_THAT(s_differencesFormats[0].render(none, {}), testing::StartsWith("changed: 0, "));
  EXPECT_THAT(s_differencesFormats[1].render(none, {}), testing::StartsWith("unit,unitId,family,"));
  EXPECT_EQ(json::parse(s_differencesFormats[2].render(none, {})),
            json::parse(R"({"differences": [], "compared": 0})"));
  EXPECT_THAT(s_differencesFormats[3].render(none, {}), testing::StartsWith("<?xml version=\"1.0\"?>\n"));
  EXPECT_THAT(s_differencesFormats[4].render(none, {}),
              testing::StartsWith("<!DOCTYPE html>\n<html lang=\"en\""));

  EXPECT_EQ(s_seriesFormats[0].render({}, {}), "no series\n");
  EXPECT_THAT(s_seriesFormats[1].render({}, {}), testing::StartsWith("file,unit,unitId,family,"));
  EXPECT_EQ(json::parse(s_seriesFormats[2].render({}, {})), json::parse(R"({"series": []})"));
  EXPECT_THAT(s_seriesFormats[3].render({}, {}), testing::StartsWith("<?xml version=\"1.0\"?>\n<svg "));

  EXPECT_EQ(s_limitsFormats[0].render({}, {}), "");
  EXPECT_EQ(json::parse(s_limitsFormats[1].render({}, {})), json::parse(R"({"limits": []})"));

  EXPECT_THAT(s_studyRunsFormats[0].render({{}}, {}), testing::StartsWith("values   compared   "));
  EXPECT_THAT(s_studyRunsFormats[1].render({}, {}), testing::StartsWith("run,file,added,"));
  EXPECT_EQ(json::parse(s_studyRunsFormats[2].render({}, {})), json::parse(R"({"runs": []})"));
}

}  // namespace
}  // namespace Kestrel::ResultTables

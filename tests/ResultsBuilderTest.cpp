#include "result_tables/results/ResultsBuilder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <bit>
#include <cmath>
#include <filesystem>
#include <random>

#include "result_tables/base/File.h"
#include "result_tables/import/CalculixHistories.h"
#include "result_tables/import/CsvHistories.h"
#include "result_tables/import/MapRecords.h"
#include "result_tables/results/ResultsWriter.h"
#include "support/ImportTesting.h"
#include "support/ResultsDescription.h"

namespace Kestrel::ResultTables {
namespace {

std::filesystem::path const s_source = KESTREL_SOURCE_DIR;
std::filesystem::path const s_data = s_source / "tests/data/import";

void expectWhatTheReaderMakes(ImportMap const& map) {
  auto const built = Description(buildResults("r", genUnitRecords(map))).text();
  EXPECT_EQ(built, Description(readResults("r", writeResults(genUnitRecords(map)))).text());
}

constexpr std::string_view s_everyRecord = R"({"format": "import-map", "version": 1, "units": [
  {"id": "00000000-0000-0000-0000-000000000001", "name": "U \u00e4 \"q\"",
   "visibleSteps": {"first": 1, "last": 0}, "stepTimes": [null, 0, 1],
   "tools": [{"id": "J", "kind": "joiningTong", "series": [{"quantity": "JoiningTongGap", "sum": [{"history": "a"}]},
                {"quantity": "JoiningTongGap", "form": "pairs", "norm": [{"history": "a"}, {"history": "b"}]}]},
             {"id": "W", "kind": "spotWeld", "tangentialForce": {"form": "pairs", "sum": [{"history": "b"}]}},
             {"id": "T", "kind": "tool", "series": [{"quantity": "TotalToolForces", "sum": [{"history": "b"}]}]}],
   "joinsDefinedInUnit": ["00000000-0000-0000-0000-000000000014"],
   "toolGroupings": {"Steels": [{"name": "S", "tools": ["T", "J"]}], "Rollers": []},
   "suctionZones": [{"guid": "00000000-0000-0000-0000-000000000011", "name": "Z", "active": [null, false, true]},
                    {"guid": "00000000-0000-0000-0000-000000000010", "name": "Y", "active": [null, null, false]}],
   "joiningTongs": [{"id": "J", "name": "Tong", "states": [null, 0, 4294967295]}],
   "joins": [{"guid": "00000000-0000-0000-0000-000000000012", "id": "W", "name": "Weld", "states": [null, null, 9]}],
   "lineJoins": [{"guid": "00000000-0000-0000-0000-000000000013", "id": "L", "name": "Line", "states": [null, 1, 1],
                  "simulationUnitJoin": "00000000-0000-0000-0000-000000000014",
                  "skins": {"LineJoinGap": [{"sum": [{"history": "a"}]}, {"sum": [{"history": "b"}]}]}}]},
  {"id": "00000000-0000-0000-0000-000000000002", "name": "without anything"}]})";

TEST(ResultsBuilder, MakesWhatTheReaderOfResultsFilesMakes) {
  auto const histories = readCsvHistories("a.csv", "t,a,b\n0,1,-0.0\n1,NaN,-Infinity\n");
  auto const map = readImportMap("m", std::string(s_everyRecord), histories);
  expectWhatTheReaderMakes(map);
  auto const text = Description(buildResults("r", genUnitRecords(map))).text();
  EXPECT_THAT(text, testing::HasSubstr("skin LineJoinGap 0 1 \n")) << "a zero has no sign in a sum";
  EXPECT_THAT(text, testing::HasSubstr("skin LineJoinGap none none \n"));
  EXPECT_THAT(text, testing::HasSubstr("tong J Tong 4294967295 \n"));
}

TEST(ResultsBuilder, MakesTheSameOfEveryExample) {
  struct {
    Histories histories;
    std::filesystem::path map;
  } const cases[] = {
      {readCsvHistories("bead.csv", readFile(s_data / "bead.csv")), s_data / "bead.map.json"},
      {readCsvHistories("press.csv", readFile(s_data / "press.csv")), s_data / "press.map.json"},
      {readCalculixHistories("cube.dat", readFile(s_data / "cube.dat")), s_data / "cube.map.json"},
      {readCalculixHistories("panel.dat", readFile(s_source / "examples/clamped_panel/panel.dat")),
       s_source / "examples/clamped_panel/panel.map.json"},
  };
  for (auto const& c : cases) {
    SCOPED_TRACE(c.map);
    expectWhatTheReaderMakes(readImportMap("m", readFile(c.map), c.histories));
  }
}

TEST(ResultsBuilder, BringsNumbersThroughBitForBit) {
  std::mt19937_64 random(29);
  std::string csv = "t,a,b\n";
  for (int i = 0; i < 3000; ++i)
    csv += fmt::format("{},{},{}\n", i / 2, anyDouble(random), anyDouble(random));
  auto const histories = readCsvHistories("a.csv", csv);
  expectWhatTheReaderMakes(readImportMap("m", R"({"format": "import-map", "version": 1, "units": [
        {"id": "00000000-0000-0000-0000-000000000001", "name": "U", "tools": [{"id": "C", "kind": "clamp", "series": [
          {"quantity": "Q", "sum": [{"history": "a", "scale": -0.1}]},
          {"quantity": "P", "form": "pairs", "norm": [{"history": "a"}, {"history": "b", "offset": 1e-3}]}]}]}]})",
                                         histories));
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include "result_tables/import/Import.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iterator>
#include <locale>
#include <random>

#include "Business_SimulationResult/SimulationResult.h"
#include "Business_Skin/Skin.h"
#include "Persistence_SkinBaseName/SkinBaseName.h"
#include "result_tables/base/File.h"
#include "result_tables/import/HistoryList.h"
#include "result_tables/results/ResultsFile.h"
#include "support/ForkedTest.h"
#include "support/ImportTesting.h"
#include "support/MemoryLimit.h"
#include "support/TemporaryFolder.h"

namespace Kestrel::ResultTables {
namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Optional;

std::filesystem::path const s_source = KESTREL_SOURCE_DIR;
std::filesystem::path const s_data = s_source / "tests/data/import";
std::filesystem::path const s_panel = s_source / "examples/clamped_panel";

std::vector<double> valuesOf(StepValues<double> const& series) {
  std::vector<double> values;
  series.forEachValue([&](double value) { values.push_back(value); });
  return values;
}

/// The values of the only series that the tool has of the quantity.
std::vector<double> seriesOf(ResultsUnit const& unit, std::string const& tool, std::string const& quantity) {
  for (auto const& [name, series] : *unit.unit->getToolForces(tool)) {
    if (name == quantity) return valuesOf(*series);
  }
  ADD_FAILURE() << tool << " has no series " << quantity;
  return {};
}

std::vector<double> tangentialForceOf(ResultsUnit const& unit, std::string const& tool) {
  return valuesOf(*unit.unit->genGetJoinTangentialForceStepValues(tool));
}

Skin<double> skinOf(SimulationStep const& step, std::string const& join, std::string const& name) {
  for (auto entry = step.beginLineJoinMap(); entry != step.endLineJoinMap(); ++entry) {
    if (entry->second->getStringID() != join) continue;
    auto const skin =
        std::dynamic_pointer_cast<Skin<double>>(entry->second->getSkin(SkinKey(name, 0, "", "")));
    if (skin) return *skin;
  }
  ADD_FAILURE() << join << " has no skin " << name;
  return {};
}

double largest(std::vector<double> const& values) {
  return *std::max_element(values.begin(), values.end(),
                           [](double a, double b) { return std::abs(a) < std::abs(b); });
}

TEST(Import, WritesTheMembersOfAResultsFileInTheirOrder) {
  EXPECT_EQ(importHistories(ImportFormat::csv, s_data / "bead.csv", s_data / "bead.map.json"), R"({
  "format": "simulation-results",
  "version": 1,
  "units": [
    {
      "id": "5d1c1f0e-3f0a-4c1e-9c50-6a8f0b6f3a11",
      "name": "Bead",
      "visibleSteps": {
        "first": 1,
        "last": 2
      },
      "tools": [
        {
          "id": "Spot 1",
          "kind": "spotWeld",
          "series": [
            {
              "quantity": "JoinForceN",
              "pairs": [
                [1.5, 0],
                [3.5, 1],
                [-4.5, 2]
              ]
            }
          ],
          "tangentialForce": {
            "values": [0, 5, 13]
          }
        }
      ],
      "joinsDefinedInUnit": [
        "5d1c1f0e-3f0a-4c1e-9c50-6a8f0b6f3a12"
      ],
      "steps": [
        null,
        {
          "lineJoins": [
            {
              "guid": "5d1c1f0e-3f0a-4c1e-9c50-6a8f0b6f3a14",
              "id": "B1",
              "name": "Bead 1",
              "state": 2,
              "simulationUnitJoin": "5d1c1f0e-3f0a-4c1e-9c50-6a8f0b6f3a12",
              "skins": {
                "LineJoinGap": {
                  "min": 0.0625,
                  "max": 0.125
                },
                "LineJoinSumForceN": {
                  "min": 3,
                  "max": 3
                }
              }
            }
          ]
        },
        {
          "joins": [
            {
              "guid": "5d1c1f0e-3f0a-4c1e-9c50-6a8f0b6f3a13",
              "id": "Spot 1",
              "name": "First spot",
              "state": 3
            }
          ],
          "lineJoins": [
            {
              "guid": "5d1c1f0e-3f0a-4c1e-9c50-6a8f0b6f3a14",
              "id": "B1",
              "name": "Bead 1",
              "state": 3,
              "simulationUnitJoin": "5d1c1f0e-3f0a-4c1e-9c50-6a8f0b6f3a12",
              "skins": {
                "LineJoinGap": {
                  "min": -0.125,
                  "max": 0.03125
                },
                "LineJoinSumForceN": {
                  "min": -5,
                  "max": -5
                }
              }
            }
          ]
        }
      ]
    }
  ]
}
)");
}

TEST(Import, GroupsTools) {
  auto const text = importHistories(ImportFormat::csv, s_data / "press.csv", s_data / "press.map.json");
  auto const file = readResults("press.results.json", text);
  auto const& unit = file.units.at(0);
  auto const& grouping = unit.toolGroupings.at(MaxValueGroupContainer::DataType::HemmingBed);
  ASSERT_EQ(grouping.size(), 1U);
  EXPECT_EQ(grouping[0].first, "Upper half");
  EXPECT_THAT(grouping[0].second, ElementsAre("Punch"));
  EXPECT_THAT(text, HasSubstr(R"("values": [0, -1199.75, -1140.5])"));
}

TEST(Import, TakesNodeSetsFromAPrint) {
  auto const text = importHistories(ImportFormat::calculix, s_data / "cube.dat", s_data / "cube.map.json");
  auto const file = readResults("cube.results.json", text);
  EXPECT_THAT(seriesOf(file.units.at(0), "Clamp 1", "ClampNormalForce"), ElementsAre(-1144.5304, -2306.4932));
  EXPECT_THAT(seriesOf(file.units.at(0), "Clamp 1", "ClampClosingForce"), ElementsAre(1144.53, 2306.493));
  EXPECT_THAT(seriesOf(file.units.at(0), "Clamp 1", "ClampSupportingForce"),
              ElementsAre(-286.1326, -576.6233));
  EXPECT_THAT(seriesOf(file.units.at(0), "Clamp 1", "ClampNormalDisplacement"), ElementsAre(0.005, 0.01));
  EXPECT_FALSE(file.units.at(0).unit->hasVisibleSimulationSteps());
}

constexpr std::string_view s_oneClamp = R"({"format": "import-map", "version": 1, "units": [
  {"id": "00000000-0000-0000-0000-000000000001", "name": "U", "tools": [{"id": "C", "kind": "clamp",
   "series": [{"quantity": "Q", "sum": [{"history": "a"}]}, {"quantity": "P", "form": "pairs", "sum": [{"history": "a"}]}]}]}]})";

TEST(Import, TakesContactSectionsAndElementsFromTheStepsOfAPrint) {
  auto const text =
      importHistories(ImportFormat::calculix, s_data / "punches.dat", s_data / "punches.map.json");
  auto const file = readResults("punches.results.json", text);
  auto const& closing = file.units.at(0);
  EXPECT_THAT(seriesOf(closing, "Left", "ClampNormalForce"), ElementsAre(0, 20.37268, 49.26944, 81.79436));
  EXPECT_THAT(seriesOf(closing, "Left", "ClampTangentialForce"),
              ElementsAre(0, DoubleNear(0.2854893, 1e-12), DoubleNear(0.6539678, 1e-12),
                          DoubleNear(0.9652581, 1e-12)));
  EXPECT_THAT(seriesOf(closing, "Left", "ClampClosingForce"),
              ElementsAre(0, DoubleNear(10.186338, 1e-12), DoubleNear(24.634722, 1e-12),
                          DoubleNear(51.56519, 1e-12)));
  EXPECT_THAT(seriesOf(closing, "Left", "ClampSupportingForce"),
              ElementsAre(0, -16.45343, -39.77967, -83.02989));
  auto const& sliding = file.units.at(1);
  EXPECT_THAT(seriesOf(sliding, "Left", "LargestStress"),
              ElementsAre(-4.051752e-14, -92.5684, -223.5851, -371.1581, -371.8265, -372.9595));
  EXPECT_THAT(seriesOf(sliding, "Left", "MeanStress")[3], DoubleNear(-327.177625, 1e-9));
  EXPECT_THAT(seriesOf(sliding, "Left", "StressOfAPoint"),
              ElementsAre(-3.571169e-16, -1.149973e-15, -7.58472e-14, -98.48114, -97.35423, -96.22166));
  EXPECT_THAT(seriesOf(sliding, "Left", "LargestPressure"),
              ElementsAre(88.5772, 212.3441, 349.5595, 355.0202, 360.6105));
  EXPECT_THAT(text, HasSubstr("[349.5595, 1],\n                [355.0202, 0.5]"));
  double const forces[] = {20.37268, 81.79436, 81.88854};
  for (unsigned int step = 0; step < 3; ++step) {
    auto const skin = skinOf(*sliding.result->getStep(step), "Edge", "LineJoinSumForceN");
    EXPECT_THAT(skin.getRangeMaximum(), Optional(forces[step])) << step;
  }
}

TEST(Import, TakesTheStepThatIsAskedForInPlaceOfTheMaps) {
  TemporaryFolder const folder;
  auto map = std::string(s_oneClamp);
  for (auto at = map.find("\"a\""); at != map.npos; at = map.find("\"a\"")) map.replace(at, 3, "\"TOP.fz\"");
  auto const path = folder.write("m.json", map);
  auto const importStep = [&](std::optional<ImportSteps> const& steps) {
    auto const text =
        importHistories(ImportFormat::calculix, s_data / "punches.dat", path, DecimalMark::point, steps);
    return seriesOf(readResults("r.json", text).units.at(0), "C", "Q");
  };
  EXPECT_THAT(importStep(ImportSteps{2}), ElementsAre(-103.1385, -103.1386));
  EXPECT_EQ(importStep(ImportSteps{}).size(), 6U);
  EXPECT_EQ(
      errorOf([&] { (void)importStep({}); }),
      path.string() +
          R"(: /units/0/tools/0/series/0/sum/0/history: expected a member "step" of the unit or --step, as the times of "TOP.total force fz" begin anew, found none)");
}

TEST(Import, TellsWhatItPassesOver) {
  TemporaryFolder const folder;
  auto const print = folder.write(
      "p.dat",
      " new things (a(b)) for set A and time 1\n\n 1 2\n\n temperatures for set A and time 1\n\n 1 2\n");
  auto map = std::string(s_oneClamp);
  for (auto at = map.find("\"a\""); at != map.npos; at = map.find("\"a\""))
    map.replace(at, 3, "\"A.temperatures\"");
  std::vector<std::string> notes;
  (void)importHistories(ImportFormat::calculix, print, folder.write("m.json", map), DecimalMark::point, {},
                        [&notes](std::string const& note) { notes.push_back(note); });
  EXPECT_THAT(
      notes,
      ElementsAre(print.string() +
                  R"(: line 1: passed over "new things (a(b)) for set A", which import does not know)"));
}

constexpr std::string_view s_everyRecord = R"({"format": "import-map", "version": 1, "units": [
  {"id": "00000000-0000-0000-0000-000000000001", "name": "U \u00e4 \"q\"",
   "visibleSteps": {"first": 1, "last": 0}, "stepTimes": [0, 1],
   "tools": [{"id": "J", "kind": "joiningTong"}, {"id": "W", "kind": "spotWeld"}],
   "suctionZones": [{"guid": "00000000-0000-0000-0000-000000000010", "name": "Z", "active": [false, true]},
                    {"guid": "00000000-0000-0000-0000-000000000011", "name": "Y", "active": [null, false]}],
   "joiningTongs": [{"id": "J", "name": "Tong", "states": [0, 4294967295]}],
   "joins": [{"guid": "00000000-0000-0000-0000-000000000012", "id": "W", "name": "Weld", "states": [null, 9]}],
   "lineJoins": [{"guid": "00000000-0000-0000-0000-000000000013", "id": "L", "name": "Line", "states": [1, 1],
                  "simulationUnitJoin": "00000000-0000-0000-0000-000000000014",
                  "skins": {"LineJoinGap": [{"sum": [{"history": "a"}]}, {"sum": [{"history": "b"}]}]}}]},
  {"id": "00000000-0000-0000-0000-000000000002", "name": "without anything"}]})";

TEST(Import, FillsTheRecordsOfTheSteps) {
  TemporaryFolder const folder;
  auto const input = folder.write("a.csv", "time,a,b\n0,1,-3\n1,2,NaN\n");
  auto const map = folder.write("m.json", std::string(s_everyRecord));
  auto const file = readResults("r.json", importHistories(ImportFormat::csv, input, map));
  ASSERT_EQ(file.units.size(), 2U);
  EXPECT_EQ(file.units[0].unit->getSimulationUnitName(), "U \xC3\xA4 \"q\"");
  EXPECT_EQ(file.units[0].unit->getFirstVisibleStep(), 1U);
  EXPECT_EQ(file.units[0].unit->getLastVisibleStep(), 0U);
  auto const first = file.units[0].result->getStep(0);
  auto const second = file.units[0].result->getStep(1);
  ASSERT_TRUE(first && second);
  EXPECT_EQ(std::distance(first->beginSuctionZoneMap(), first->endSuctionZoneMap()), 1);
  EXPECT_EQ(std::distance(second->beginSuctionZoneMap(), second->endSuctionZoneMap()), 2);
  EXPECT_EQ(first->beginSuctionZoneMap()->second->getSuctionZonePresentationName(), "Z");
  EXPECT_FALSE(first->beginSuctionZoneMap()->second->getActive());
  EXPECT_TRUE(second->beginSuctionZoneMap()->second->getActive());
  EXPECT_EQ(first->getJoiningTongByID("J")->getTongPresentationName(), "Tong");
  EXPECT_EQ(first->getJoiningTongByID("J")->getState(), BodyJoinInterface::JoinState{0});
  EXPECT_EQ(second->getJoiningTongByID("J")->getState(), BodyJoinInterface::JoinState{4294967295});
  EXPECT_EQ(first->beginJoinMap(), first->endJoinMap());
  EXPECT_EQ(second->beginJoinMap()->second->getState(), BodyJoinInterface::JoinState{9});
  EXPECT_THAT(skinOf(*first, "L", "LineJoinGap").getRangeMinimum(), Optional(-3.0));
  EXPECT_THAT(skinOf(*first, "L", "LineJoinGap").getRangeMaximum(), Optional(1.0));
  EXPECT_EQ(file.units[1].unit->getFirstVisibleStep(), SimulationUnit::s_noStep);
}

TEST(Import, GivesAStepNoRangeWhereAValueIsNotFinite) {
  TemporaryFolder const folder;
  auto const map = folder.write("m.json", std::string(s_everyRecord));
  for (auto const* value : {"NaN", "Infinity", "-Infinity"}) {
    auto const input = folder.write("a.csv", fmt::format("time,a,b\n0,1,-3\n1,2,{}\n", value));
    auto const file = readResults("r.json", importHistories(ImportFormat::csv, input, map));
    auto const skin = skinOf(*file.units[0].result->getStep(1), "L", "LineJoinGap");
    EXPECT_EQ(skin.getRangeMinimum(), std::nullopt) << value;
    EXPECT_EQ(skin.getRangeMaximum(), std::nullopt) << value;
  }
}

TEST(Import, WritesNotANumberAndInfinityAsAResultsFileHasThem) {
  TemporaryFolder const folder;
  auto const input = folder.write("a.csv", "time,a\n0,NaN\n0.5,Infinity\n1,-Infinity\n");
  auto const text =
      importHistories(ImportFormat::csv, input, folder.write("m.json", std::string(s_oneClamp)));
  EXPECT_THAT(text, HasSubstr(R"("values": [null, "Infinity", "-Infinity"])"));
  EXPECT_THAT(text, HasSubstr(R"([null, 0])"));
  EXPECT_THAT(text, HasSubstr(R"(["Infinity", 0.5])"));
  EXPECT_EQ(readResults("r.json", text).units.size(), 1U);
}

TEST(Import, BringsNumbersThroughBitForBit) {
  TemporaryFolder const folder;
  std::mt19937_64 random(17);
  std::vector<double> written;
  std::string csv = "time,a\n";
  for (int time = 0; time < 2000; ++time) {
    written.push_back(anyDouble(random));
    if (written.back() == 0.0) written.back() = 0.0;  // a zero has no sign
    csv += fmt::format("{},{}\n", time, written.back());
  }
  auto const input = folder.write("a.csv", csv);
  auto const map = folder.write("m.json", std::string(s_oneClamp));
  auto const file = readResults("r.json", importHistories(ImportFormat::csv, input, map));
  expectSameBits(seriesOf(file.units[0], "C", "Q"), written);
  expectSameBits(seriesOf(file.units[0], "C", "P"), written);
}

struct DecimalComma : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(Import, DoesNotDependOnTheLocale) {
  auto const before =
      importHistories(ImportFormat::calculix, s_panel / "panel.dat", s_panel / "panel.map.json");
  auto const old = std::locale::global(std::locale(std::locale(), new DecimalComma));
  auto const after =
      importHistories(ImportFormat::calculix, s_panel / "panel.dat", s_panel / "panel.map.json");
  std::locale::global(old);
  EXPECT_EQ(after, before);
}

TEST(Import, KnowsTheFormatOfAnInputByItsName) {
  for (auto const* name : {"a.dat", "b/a.DAT", "a.b.dat"})
    EXPECT_EQ(importFormatOf(name), ImportFormat::calculix) << name;
  for (auto const* name : {"a.csv", "A.CSV", "a.tsv", "a.txt"})
    EXPECT_EQ(importFormatOf(name), ImportFormat::csv) << name;
  for (auto const* name : {"a", "-", "", ".csv", "a.json", "a.csv/b"})
    EXPECT_EQ(importFormatOf(name), std::nullopt) << name;
}

TEST(Import, NamesTheFileThatCannotBeRead) {
  EXPECT_EQ(
      errorOf([] { (void)importHistories(ImportFormat::csv, "/no/such.csv", s_data / "press.map.json"); }),
      "/no/such.csv: cannot read: No such file or directory");
  EXPECT_EQ(errorOf([] { (void)importHistories(ImportFormat::csv, s_data / "press.csv", "/no/map.json"); }),
            "/no/map.json: cannot read: No such file or directory");
}

TEST(Import, NamesTheFileAndThePlaceOfWhatIsWrong) {
  TemporaryFolder const folder;
  auto const map = folder.write("m.json", std::string(s_oneClamp));
  auto const good = folder.write("a.csv", "time,b\n0,1\n");
  auto const bad = folder.write("b.csv", "time,a\n0,x\n");
  auto const print = folder.write("c.dat", " forces (fx,fy,fz) for set A and time 1\n\n 1 2 3\n");
  EXPECT_EQ(errorOf([&] { (void)importHistories(ImportFormat::csv, bad, map); }),
            bad.string() + R"(: line 2: expected a number, found "x")");
  EXPECT_EQ(errorOf([&] { (void)importHistories(ImportFormat::calculix, print, map); }),
            print.string() + ": line 3: expected 3 values in the row, found 2");
  EXPECT_EQ(errorOf([&] { (void)importHistories(ImportFormat::csv, good, map); }),
            map.string() + ": /units/0/tools/0/series/0/sum/0/history: expected a history of " +
                good.string() + R"( ("b"), found "a")");
}

TEST(Import, RefusesInputsThatAreNotUtf8) {
  TemporaryFolder const folder;
  auto const map = folder.write("m.json", std::string(s_oneClamp));
  auto const csv = folder.write("a.csv", "time,a,\xE4\n0,1,2\n");
  auto const print = folder.write("a.dat", "\n forces (fx) for set \xC4 and time 1\n\n 1 2\n");
  EXPECT_EQ(errorOf([&] { (void)importHistories(ImportFormat::csv, csv, map); }),
            csv.string() + ": line 1, byte 8: expected UTF-8 text, found byte 0xE4");
  EXPECT_EQ(errorOf([&] { (void)importHistories(ImportFormat::calculix, print, map); }),
            print.string() + ": line 2, byte 22: expected UTF-8 text, found byte 0xC4");
}

TEST(ImportDeathTest, NamesTheInputThatTakesMoreMemoryThanThereIs) {
  if (TestSupport::s_isSanitized) GTEST_SKIP() << "sanitizers take memory of their own";
  TemporaryFolder const folder;
  auto const map = folder.write("m.json", std::string(s_oneClamp));
  std::string text = "time,a\n";
  for (int i = 0; i < 4'000'000; ++i) text += "0,1\n";
  auto const input = folder.write("a.csv", text);
  auto const import = [&] {
    TestSupport::limitMemory(std::size_t{48} << 20);
    auto const error = errorOf([&] { (void)importHistories(ImportFormat::csv, input, map); });
    exitWith(error == input.string() + ": not enough memory");
  };
  EXPECT_EXIT(import(), testing::ExitedWithCode(0), "");
}

/// `text` with one to three of its bytes, lines or pieces changed.
std::string damaged(std::string text, std::mt19937_64& random) {
  using namespace std::string_view_literals;
  constexpr auto bytes = "\0\n\r\t \",;:{}[]0129.-+eENn#\\\x80\xFF"sv;
  for (auto times = 1 + random() % 3; times > 0 && !text.empty(); --times) {
    auto const at = random() % text.size();
    auto const length = std::min<std::size_t>(random() % 40, text.size() - at);
    switch (random() % 5) {
      case 0:
        text[at] = bytes[random() % bytes.size()];
        break;
      case 1:
        text.insert(at, 1, bytes[random() % bytes.size()]);
        break;
      case 2:
        text.erase(at, length);
        break;
      case 3:
        text.insert(random() % text.size(), text.substr(at, length));
        break;
      default:
        text.resize(random() % 4 == 0 ? at : text.size());
    }
  }
  return text;
}

TEST(Import, TakesDamagedFilesAsAResultsFileTakesThemOrRefusesThem) {
  struct {
    char const* input;
    char const* map;
    ImportFormat format;
    int rounds;
  } const sources[] = {{"bead.csv", "bead.map.json", ImportFormat::csv, 600},
                       {"press.csv", "press.map.json", ImportFormat::csv, 600},
                       {"cube.dat", "cube.map.json", ImportFormat::calculix, 600},
                       {"punches.dat", "punches.map.json", ImportFormat::calculix, 100}};
  TemporaryFolder const folder;
  std::mt19937_64 random(23);
  int taken = 0;
  int refused = 0;
  for (auto const& source : sources) {
    auto const input = readFile(s_data / source.input);
    auto const map = readFile(s_data / source.map);
    for (int round = 0; round < source.rounds; ++round) {
      bool const damagesMap = round % 2 == 0;
      auto const inputPath = folder.write("input", damagesMap ? input : damaged(input, random));
      auto const mapPath = folder.write("map", damagesMap ? damaged(map, random) : map);
      std::string text;
      auto const error = errorOf([&] { text = importHistories(source.format, inputPath, mapPath); });
      if (text.empty()) {
        EXPECT_THAT(error, testing::StartsWith((damagesMap ? mapPath : inputPath).parent_path().string()));
        EXPECT_THAT(error, testing::Not(HasSubstr("\n")));
        ++refused;
      } else {
        EXPECT_NO_THROW((void)readResults("results", text)) << text;
        ++taken;
      }
    }
  }
  EXPECT_GT(taken, 100);
  EXPECT_GT(refused, 100);
}

TEST(ImportManual, HoldsItsExamplesAsTheyAreTested) {
  auto const manual = readFile(s_source / "docs/importing.md");
  for (auto const* name : {"rig.csv", "press.csv", "press.map.json", "bead.csv", "bead.map.json",
                           "cube.map.json", "punches.map.json"}) {
    EXPECT_THAT(manual, HasSubstr(fmt::format("\n{}```\n", readFile(s_data / name)))) << name;
  }
  auto const rig = readHistories(ImportFormat::csv, s_data / "rig.csv", DecimalMark::comma);
  EXPECT_THAT(manual, HasSubstr(fmt::format("\n{}```\n", renderHistoriesAsText(listHistories(rig)))));
}

class ImportOfTheClampedPanel : public testing::Test {
 protected:
  ResultsFile m_file = readResultsFile(s_panel / "panel.results.json");
  ResultsUnit const& m_unit = m_file.units.at(0);
};

TEST_F(ImportOfTheClampedPanel, MakesTheResultsFileThatStandsBesideIt) {
  EXPECT_EQ(importHistories(ImportFormat::calculix, s_panel / "panel.dat", s_panel / "panel.map.json"),
            readFile(s_panel / "panel.results.json"));
}

TEST_F(ImportOfTheClampedPanel, HasTheClampForcesOfThePrint) {
  auto const closing = seriesOf(m_unit, "C3", "ClampClosingForce");
  ASSERT_EQ(closing.size(), 35U);
  EXPECT_EQ(closing[5], -1314.547);  // time 0.6
  EXPECT_EQ(largest(closing), -1314.547);
  auto const ofC5 = seriesOf(m_unit, "C5", "ClampClosingForce");
  EXPECT_EQ(ofC5[8], -1029.041);  // time 0.9
  EXPECT_EQ(largest(ofC5), -1029.041);
  EXPECT_EQ(seriesOf(m_unit, "C3", "ClampSupportingForce")[5], 1313.63);
  EXPECT_THAT(seriesOf(m_unit, "C3", "ClampNormalForce")[5], DoubleNear(-0.917, 1e-9));
  EXPECT_THAT(seriesOf(m_unit, "C3", "ClampTangentialForce")[5], DoubleNear(0.132662, 1e-6));
}

TEST_F(ImportOfTheClampedPanel, CarriesTheWeightOnTipsAndRests) {
  std::vector<double> sum(35);
  for (auto const* clamp : {"C1", "C2", "C3", "C4", "C5", "C6"}) {
    auto const force = seriesOf(m_unit, clamp, "ClampNormalForce");
    for (std::size_t i = 0; i < sum.size(); ++i) sum.at(i) += force.at(i);
  }
  for (std::size_t i = 9; i < sum.size(); ++i) EXPECT_NEAR(sum[i], 8.1324, 0.0002) << i;  // from time 1 on
}

TEST_F(ImportOfTheClampedPanel, HasTheForcesOfThePilots) {
  EXPECT_THAT(largest(seriesOf(m_unit, "Pilots", "PilotForce_P1")), DoubleNear(0.834561, 1e-6));
  EXPECT_THAT(largest(seriesOf(m_unit, "Pilots", "PilotForce_P2")), DoubleNear(0.1877788, 1e-9));
}

TEST_F(ImportOfTheClampedPanel, HasTheForcesOfTheSpotWelds) {
  auto const normal = seriesOf(m_unit, "W07", "JoinForceN");
  EXPECT_EQ(normal.at(19), -9.620828);  // time 3
  EXPECT_EQ(largest(normal), -9.620828);
  auto const tangential = tangentialForceOf(m_unit, "W02");
  EXPECT_NEAR(tangential.at(19), 132.8476, 1e-4);
  EXPECT_NEAR(largest(tangential), 132.8476, 1e-4);
}

TEST_F(ImportOfTheClampedPanel, HoldsAWeldFromTheStepInWhichItIsMade) {
  EXPECT_EQ(m_unit.unit->getFirstVisibleStep(), 1U);
  EXPECT_EQ(m_unit.unit->getLastVisibleStep(), 5U);
  EXPECT_FALSE(m_unit.result->getStep(0));
  int const expected[] = {0, 4, 8, 12, 12};
  for (unsigned int i = 1; i <= 5; ++i) {
    auto const step = m_unit.result->getStep(i);
    EXPECT_EQ(std::distance(step->beginJoinMap(), step->endJoinMap()), expected[i - 1]) << i;
    EXPECT_EQ(std::distance(step->beginLineJoinMap(), step->endLineJoinMap()), i == 1 ? 0 : 2) << i;
  }
}

TEST_F(ImportOfTheClampedPanel, HasTheGapsAndForcesOfTheSeams) {
  auto const step = m_unit.result->getStep(2);
  auto const gap = skinOf(*step, "SEAM_REAR", SkinBaseName::LINE_JOIN_GAP);
  EXPECT_THAT(gap.getRangeMinimum(), Optional(DoubleNear(-1.406414, 1e-6)));
  EXPECT_THAT(gap.getRangeMaximum(), Optional(DoubleNear(1.061088, 1e-6)));
  EXPECT_THAT(skinOf(*step, "SEAM_FRONT", SkinBaseName::LINE_JOIN_SUMFORCE_T).getRangeMinimum(),
              Optional(DoubleNear(-36.712764, 1e-6)));
  EXPECT_THAT(skinOf(*step, "SEAM_REAR", SkinBaseName::LINE_JOIN_SUMFORCE_T).getRangeMaximum(),
              Optional(DoubleNear(36.71276, 1e-6)));
  EXPECT_THAT(skinOf(*step, "SEAM_FRONT", SkinBaseName::LINE_JOIN_SUMFORCE_N).getRangeMaximum(),
              Optional(DoubleNear(-0.88604448, 1e-8)));
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include "result_tables/import/ResultsBuilder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <bit>
#include <cmath>
#include <filesystem>
#include <random>

#include "Business_SimulationResult/SimulationResult.h"
#include "Business_Skin/Skin.h"
#include "result_tables/base/File.h"
#include "result_tables/import/CalculixHistories.h"
#include "result_tables/import/CsvHistories.h"
#include "result_tables/import/ResultsWriter.h"
#include "support/ImportTesting.h"

namespace Kestrel::ResultTables {
namespace {

std::filesystem::path const s_source = KESTREL_SOURCE_DIR;
std::filesystem::path const s_data = s_source / "tests/data/import";

/// Everything that the host tells of results, as lines of text; numbers to the bit, but for NaN.
class Description {
 public:
  explicit Description(ResultsFile const& file) {
    line("file", file.givenName, file.name);
    for (auto const& unit : file.units) describe(unit);
  }

  [[nodiscard]] std::string const& text() const { return m_text; }

 private:
  template <typename... Parts>
  void line(Parts const&... parts) {
    ((m_text += fmt::format("{} ", parts)), ...);
    m_text += '\n';
  }

  void series(std::string const& name, StepValues<double> const& series) {
    std::string values;
    series.forEachValue([&values](double value) {
      values += std::isnan(value) ? "nan " : fmt::format("{:x} ", std::bit_cast<std::uint64_t>(value));
    });
    bool const isPairs = series.forEachPair([&values](double, double companion) {
      values += fmt::format("{:x} ", std::bit_cast<std::uint64_t>(companion));
    });
    line("series", name, isPairs, values);
  }

  void describe(ResultsUnit const& unit) {
    line("unit", unit.unit->getID().toString(), unit.unit->getSimulationUnitName(),
         unit.unit->getFirstVisibleStep(), unit.unit->getLastVisibleStep());
    for (auto const& id : unit.unit->getEvalIDOfJoinDefinedInSimUnitVector()) line("join", id.toString());
    for (unsigned int kind = 0; kind < 16; ++kind) {
      std::vector<std::string> tools;
      unit.unit->getToolStringIDsOfToolForceType(tools, static_cast<ToolForceDataType>(kind));
      for (auto const& tool : tools) describe(*unit.unit, tool, kind);
    }
    for (auto const& [family, groups] : unit.toolGroupings) {
      for (auto const& [name, tools] : groups) {
        line("group", static_cast<int>(family), name);
        for (auto const& tool : tools) line("member", tool);
      }
    }
    for (std::size_t i = 0; i < unit.result->getNumberOfSteps(); ++i)
      describe(unit.result->getStep(static_cast<unsigned int>(i)).get());
  }

  void describe(SimulationUnit const& unit, std::string const& tool, unsigned int kind) {
    line("tool", kind, tool);
    for (auto const& [name, values] : *unit.getToolForces(tool)) series(name, *values);
    series("tangential", *unit.genGetJoinTangentialForceStepValues(tool));
  }

  void describe(SimulationStep const* step) {
    line("step", step != nullptr);
    if (step == nullptr) return;
    for (auto zone = step->beginSuctionZoneMap(); zone != step->endSuctionZoneMap(); ++zone) {
      line("zone", zone->first.toString(), zone->second->getSuctionZonePresentationName(),
           zone->second->getActive());
    }
    for (auto tong = step->beginJoiningTong(); tong != step->endJoiningTong(); ++tong)
      line("tong", (*tong)->getJoiningTongStringID(), (*tong)->getTongPresentationName(),
           number((*tong)->getState()));
    for (auto join = step->beginJoinMap(); join != step->endJoinMap(); ++join) {
      line("weld", join->first.toString(), join->second->getStringID(), join->second->getName(0),
           number(join->second->getState()));
    }
    for (auto join = step->beginLineJoinMap(); join != step->endLineJoinMap(); ++join) {
      line("line", join->first.toString(), join->second->getStringID(), join->second->getDisplayName(),
           number(join->second->getState()), join->second->getEvalSimulationUnitJoinGUID().toString());
      for (auto const* name : {"LineJoinGap", "LineJoinSumForceN", "LineJoinDistToInput"})
        describe(name, *join->second);
    }
  }

  void describe(std::string const& name, SimulationBodyLineJoin const& join) {
    auto const skin = std::dynamic_pointer_cast<Skin<double>>(join.getSkin(SkinKey(name, 0, "", "")));
    if (!skin) return;
    auto const bound = [](std::optional<double> value) {
      return value ? fmt::format("{}", *value) : std::string("none");
    };
    line("skin", name, bound(skin->getRangeMinimum()), bound(skin->getRangeMaximum()));
  }

  static std::uint32_t number(BodyJoinInterface::JoinState state) {
    return static_cast<std::uint32_t>(state);
  }

  std::string m_text;
};

void expectWhatTheReaderMakes(ImportMap const& map) {
  auto const built = Description(buildResults("r", map)).text();
  EXPECT_EQ(built, Description(readResults("r", writeResults(map))).text());
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
  auto const text = Description(buildResults("r", map)).text();
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

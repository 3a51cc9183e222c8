#include "result_tables/results/ResultsFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <limits>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "Business_Skin/Skin.h"
#include "result_tables/base/Error.h"
#include "result_tables/base/File.h"
#include "result_tables/base/Text.h"
#include "result_tables/json/JsonWriter.h"
#include "support/ForkedTest.h"
#include "support/HostileLocale.h"
#include "support/MemoryLimit.h"
#include "support/TemporaryFolder.h"

namespace Kestrel::ResultTables {
namespace {

using DataType = MaxValueGroupContainer::DataType;
using JoinState = BodyJoinInterface::JoinState;
using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

constexpr double s_infinity = std::numeric_limits<double>::infinity();
constexpr double s_notANumber = std::numeric_limits<double>::quiet_NaN();

std::vector<double> valuesOf(StepValues<double> const& series) {
  std::vector<double> values;
  series.forEachValue([&](double value) { values.push_back(value); });
  return values;
}

/// The bit patterns, in which zeros differ by their sign and not-a-number equals itself.
std::vector<std::uint64_t> bitsOf(std::vector<double> const& values) {
  std::vector<std::uint64_t> bits;
  bits.reserve(values.size());
  for (double const value : values) bits.push_back(std::bit_cast<std::uint64_t>(value));
  return bits;
}

std::vector<std::string> toolsOfKind(SimulationUnit const& unit, ToolForceDataType type) {
  std::vector<std::string> ids;
  unit.getToolStringIDsOfToolForceType(ids, type);
  return ids;
}

std::string errorOf(std::string const& text, std::string const& name = "r.json") {
  try {
    static_cast<void>(readResults(name, text));
    return "no error";
  } catch (Error const& error) {
    return error.what();
  }
}

// --- documents with one thing in them ---------------------------------------------------------------------

std::string document(std::string const& units) {
  return R"({"format": "simulation-results", "version": 1, "units": [)" + units + "]}";
}
std::string unit(std::string const& members = "", char lastDigit = '1') {
  return std::string(R"({"id": "00000000-0000-0000-0000-00000000000)") + lastDigit + R"(", "name": "U")" +
         (members.empty() ? "" : ", ") + members + "}";
}
std::string ofUnit(std::string const& members) { return document(unit(members)); }
std::string ofTools(std::string const& tools) { return ofUnit("\"tools\": [" + tools + "]"); }
std::string ofTool(std::string const& members) {
  return ofTools(R"({"id": "T", "kind": "clamp", )" + members + "}");
}
std::string ofSeries(std::string const& series) { return ofTool("\"series\": [" + series + "]"); }
std::string ofValues(std::string const& values) {
  return ofSeries(R"({"quantity": "Q", "values": [)" + values + "]}");
}
std::string ofPairs(std::string const& pairs) {
  return ofSeries(R"({"quantity": "Q", "pairs": [)" + pairs + "]}");
}
std::string ofGroupings(std::string const& members) { return ofUnit("\"toolGroupings\": {" + members + "}"); }
std::string ofSteps(std::string const& steps) { return ofUnit("\"steps\": [" + steps + "]"); }
std::string ofStep(std::string const& members) { return ofSteps("{" + members + "}"); }
std::string ofLineJoin(std::string const& members) {
  return ofStep(R"("lineJoins": [{"guid": "00000000-0000-0000-0000-00000000000a", "id": "L", "name": "N", )"
                R"("state": 2, "simulationUnitJoin": "00000000-0000-0000-0000-00000000000b", )" +
                members + "}]");
}
std::string ofSkins(std::string const& members) { return ofLineJoin("\"skins\": {" + members + "}"); }

// --- a document with everything ---------------------------------------------------------------------------

class ResultsFileWithEveryMember : public testing::Test {
 protected:
  [[nodiscard]] ResultsUnit const& unit() const { return m_file.units.at(0); }
  [[nodiscard]] std::vector<std::vector<double>> seriesOf(std::string const& tool) const {
    std::vector<std::vector<double>> series;
    for (auto const& force : *unit().unit->getToolForces(tool)) series.push_back(valuesOf(*force.second));
    return series;
  }
  [[nodiscard]] std::vector<std::string> quantitiesOf(std::string const& tool) const {
    std::vector<std::string> quantities;
    for (auto const& force : *unit().unit->getToolForces(tool)) quantities.push_back(force.first);
    return quantities;
  }

  ResultsFile const m_file = readResultsFile(KESTREL_SOURCE_DIR "/tests/data/results/every_member.json");
};

TEST_F(ResultsFileWithEveryMember, HasItsUnitsInTheFilesOrder) {
  ASSERT_EQ(m_file.units.size(), 3u);
  EXPECT_EQ(m_file.units[0].unit->getSimulationUnitName(), "OP20 Türrahmen\n\"links\" 😀");
  EXPECT_EQ(m_file.units[0].unit->getID().toString(), "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01");
  EXPECT_EQ(m_file.units[1].unit->getSimulationUnitName(), "OP20");
  EXPECT_EQ(m_file.units[1].unit->getID().toString(), "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a00");
  EXPECT_EQ(m_file.units[2].unit->getSimulationUnitName(), "OP20");
  EXPECT_EQ(m_file.units[2].unit->getID().toString(), "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02");
}

TEST_F(ResultsFileWithEveryMember, HasVisibleSteps) {
  EXPECT_TRUE(unit().unit->hasVisibleSimulationSteps());
  EXPECT_EQ(unit().unit->getFirstVisibleStep(), 1u);
  EXPECT_EQ(unit().unit->getLastVisibleStep(), 3u);
  EXPECT_FALSE(m_file.units[1].unit->hasVisibleSimulationSteps());
  EXPECT_EQ(m_file.units[1].unit->getFirstVisibleStep(), 0xFFFFFFFFu);
  EXPECT_EQ(m_file.units[1].unit->getLastVisibleStep(), 0xFFFFFFFFu);
  EXPECT_EQ(m_file.units[2].unit->getFirstVisibleStep(), 2u) << "the first may exceed the last";
  EXPECT_EQ(m_file.units[2].unit->getLastVisibleStep(), 0u);
}

TEST_F(ResultsFileWithEveryMember, HasToolsOfEveryKind) {
  auto const& tools = *unit().unit;
  EXPECT_THAT(toolsOfKind(tools, ToolForceDataType::clamp), ElementsAre("Clamp 1", "Clamp 0"));
  EXPECT_THAT(toolsOfKind(tools, ToolForceDataType::spotWeld), ElementsAre("Weld 1", "Weld 2"));
  EXPECT_THAT(toolsOfKind(tools, ToolForceDataType::pilot), ElementsAre("Pilot 1"));
  EXPECT_THAT(toolsOfKind(tools, ToolForceDataType::tool), ElementsAre("Tool 1"));
  EXPECT_THAT(toolsOfKind(tools, ToolForceDataType::joiningTong), ElementsAre("Tong 1"));
  EXPECT_THAT(toolsOfKind(tools, ToolForceDataType::suctionZone), ElementsAre("Zone 1"));
  EXPECT_THAT(toolsOfKind(tools, ToolForceDataType::bolt), ElementsAre("Bolt 1"));
  EXPECT_EQ(tools.getToolForces("none"), nullptr);
}

TEST_F(ResultsFileWithEveryMember, HasSeriesOfBothFormsBitByBit) {
  EXPECT_THAT(quantitiesOf("Clamp 1"), ElementsAre("ClampNormalForce", "ClampClosingForce",
                                                   "ClampNormalForce", "", "ClampSupportingForce"));
  auto const series = seriesOf("Clamp 1");
  EXPECT_EQ(bitsOf(series[0]), bitsOf({0.0, 3.5, -725.0, -0.0, 5e-324, 0.0, 0.1, 1.7976931348623157e308}));
  EXPECT_EQ(bitsOf(series[1]), bitsOf({0.0, -12.0, s_notANumber, -s_infinity})) << "the values of the pairs";
  EXPECT_EQ(bitsOf(series[2]), bitsOf({s_notANumber, s_infinity, -s_infinity}));
  EXPECT_THAT(series[3], IsEmpty());
  EXPECT_THAT(series[4], IsEmpty());
  EXPECT_THAT(quantitiesOf("Weld 1"), IsEmpty());
  EXPECT_THAT(quantitiesOf("Pilot 1"), IsEmpty());
}

TEST_F(ResultsFileWithEveryMember, KeepsTheTotalToolForceUnderItsBusinessName) {
  EXPECT_THAT(quantitiesOf("Tool 1"), ElementsAre("Total Tool Forces"));
  EXPECT_THAT(seriesOf("Tool 1"), ElementsAre(ElementsAre(1.0, -2.0)));
}

TEST_F(ResultsFileWithEveryMember, HasTangentialForces) {
  auto const tangentialForce = [&](char const* tool) {
    return valuesOf(*unit().unit->genGetJoinTangentialForceStepValues(tool));
  };
  EXPECT_THAT(tangentialForce("Weld 1"), ElementsAre(0.5, 0.75));
  EXPECT_THAT(tangentialForce("Weld 2"), ElementsAre(-2.0, 4.0));
  EXPECT_THAT(tangentialForce("Clamp 1"), IsEmpty());
}

TEST_F(ResultsFileWithEveryMember, HasTheJoinsThatTheUnitDefines) {
  auto const& joins = unit().unit->getEvalIDOfJoinDefinedInSimUnitVector();
  ASSERT_EQ(joins.size(), 2u);
  EXPECT_EQ(joins[0].toString(), "7d0e0d5c-70f2-4b2f-9a0b-6d7b5f0f9c11");
  EXPECT_EQ(joins[1].toString(), "7d0e0d5c-70f2-4b2f-9a0b-6d7b5f0f9c10");
  EXPECT_THAT(m_file.units[1].unit->getEvalIDOfJoinDefinedInSimUnitVector(), IsEmpty());
}

TEST_F(ResultsFileWithEveryMember, HasToolGroupingsInDisplayOrder) {
  auto const& groupings = unit().toolGroupings;
  ASSERT_EQ(groupings.size(), 4u);
  EXPECT_THAT(groupings.at(DataType::ClampingTools),
              ElementsAre(Pair("Left", ElementsAre("Tool 1", "Tool 2")), Pair("Right", IsEmpty()),
                          Pair("Left", ElementsAre("Tool 1", "Tool 1"))));
  EXPECT_THAT(groupings.at(DataType::Rollers), IsEmpty());
  EXPECT_THAT(groupings.at(DataType::Steels), ElementsAre(Pair("", ElementsAre("none"))));
  EXPECT_THAT(groupings.at(DataType::HemmingBed), ElementsAre(Pair("Bed", ElementsAre("Tool 1"))));
  EXPECT_THAT(m_file.units[1].toolGroupings, IsEmpty());
  EXPECT_THAT(m_file.units[2].toolGroupings, IsEmpty());
}

TEST_F(ResultsFileWithEveryMember, HasStepsWithAndWithoutData) {
  auto const& result = *unit().result;
  EXPECT_EQ(result.getStep(0), nullptr);
  ASSERT_NE(result.getStep(1), nullptr);
  for (unsigned int const step : {2u, 3u}) {
    ASSERT_NE(result.getStep(step), nullptr);
    EXPECT_EQ(result.getStep(step)->beginSuctionZoneMap(), result.getStep(step)->endSuctionZoneMap());
    EXPECT_EQ(result.getStep(step)->getNumberOfJoiningTongs(), 0u);
    EXPECT_EQ(result.getStep(step)->beginJoinMap(), result.getStep(step)->endJoinMap());
    EXPECT_EQ(result.getStep(step)->beginLineJoinMap(), result.getStep(step)->endLineJoinMap());
  }
  EXPECT_EQ(result.getStep(4), nullptr);
  EXPECT_EQ(m_file.units[1].result->getStep(0), nullptr);
  EXPECT_EQ(m_file.units[2].result->getStep(2), nullptr);
}

TEST_F(ResultsFileWithEveryMember, HasSuctionZonesInTheOrderOfTheirIdentifiers) {
  auto const step = unit().result->getStep(1);
  std::vector<std::string> zones;
  for (auto zone = step->beginSuctionZoneMap(); zone != step->endSuctionZoneMap(); ++zone) {
    zones.push_back(zone->first.toString() + ' ' + zone->second->getSuctionZonePresentationName() +
                    (zone->second->getActive() ? " active" : " inactive"));
  }
  EXPECT_THAT(zones, ElementsAre("00000000-0000-0000-0000-000000000001 Zone A active",
                                 "ffffffff-0000-0000-0000-000000000002 Zone B inactive"));
}

TEST_F(ResultsFileWithEveryMember, HasJoiningTongsInTheFilesOrder) {
  auto const step = unit().result->getStep(1);
  std::vector<std::string> tongs;
  for (auto tong = step->beginJoiningTong(); tong != step->endJoiningTong(); ++tong) {
    tongs.push_back((*tong)->getJoiningTongStringID() + '|' + (*tong)->getTongPresentationName() + '|' +
                    std::to_string(static_cast<std::uint32_t>((*tong)->getState())));
  }
  EXPECT_THAT(tongs, ElementsAre("Tong 2|Tong right|0", "Tong 1|Tong left|4294967295"));
}

TEST_F(ResultsFileWithEveryMember, HasJoinsInTheOrderOfTheirIdentifiers) {
  auto const step = unit().result->getStep(1);
  std::vector<std::string> joins;
  for (auto join = step->beginJoinMap(); join != step->endJoinMap(); ++join) {
    joins.push_back(join->first.toString() + '|' + join->second->getStringID() + '|' +
                    join->second->getName(0) + '|' +
                    std::to_string(static_cast<std::uint32_t>(join->second->getState())));
  }
  EXPECT_THAT(joins, ElementsAre("00000000-0000-0000-0000-000000000001|Weld 1|Spot 1|3",
                                 "ffffffff-0000-0000-0000-000000000002|Weld 2|Spot 2|9"));
}

TEST_F(ResultsFileWithEveryMember, HasLineJoinsInTheOrderOfTheirIdentifiers) {
  auto const step = unit().result->getStep(1);
  std::vector<std::string> joins;
  for (auto join = step->beginLineJoinMap(); join != step->endLineJoinMap(); ++join) {
    joins.push_back(join->first.toString() + '|' + join->second->getStringID() + '|' +
                    join->second->getDisplayName() + '|' +
                    std::to_string(static_cast<std::uint32_t>(join->second->getState())) + '|' +
                    join->second->getEvalSimulationUnitJoinGUID().toString());
  }
  EXPECT_THAT(
      joins,
      ElementsAre("00000000-0000-0000-0000-000000000001|LJ-1|LJ 1|1|00000000-0000-0000-0000-000000000000",
                  "ffffffff-0000-0000-0000-000000000002|LJ-2|LJ 2|2|"
                  "7d0e0d5c-70f2-4b2f-9a0b-6d7b5f0f9c11"));
}

TEST_F(ResultsFileWithEveryMember, HasTheRangesOfSkins) {
  auto const step = unit().result->getStep(1);
  auto const& withSkins = *std::next(step->beginLineJoinMap())->second;
  auto const skin = [&](char const* name) {
    return std::dynamic_pointer_cast<Skin<double>>(withSkins.getSkin(SkinKey(name, 0, "", "")));
  };
  EXPECT_EQ(skin("LineJoinGap")->getRangeMinimum(), -0.2);
  EXPECT_EQ(skin("LineJoinGap")->getRangeMaximum(), 0.4);
  EXPECT_EQ(skin("LineJoinSumForceT")->getRangeMinimum(), std::nullopt);
  EXPECT_EQ(skin("LineJoinSumForceT")->getRangeMaximum(), -5.0);
  for (auto const* const name : {"LineJoinDistToInput", ""}) {
    ASSERT_NE(skin(name), nullptr) << name;
    EXPECT_EQ(skin(name)->getRangeMinimum(), std::nullopt) << name;
    EXPECT_EQ(skin(name)->getRangeMaximum(), std::nullopt) << name;
  }
  EXPECT_NE(withSkins.getSkin(SkinKey("LineJoinSumForceN", 0, "", "")), nullptr);
  EXPECT_EQ(skin("LineJoinSumForceN"), nullptr) << "it holds something other than doubles";
  EXPECT_EQ(withSkins.getSkin(SkinKey("none", 0, "", "")), nullptr);
  EXPECT_EQ(step->beginLineJoinMap()->second->getSkin(SkinKey("LineJoinGap", 0, "", "")), nullptr);
}

TEST(ResultsFile, MayHaveNoUnits) { EXPECT_THAT(readResults("r.json", document("")).units, IsEmpty()); }

TEST(ResultsFile, KeepsNothingOfOneRecordInTheNext) {
  auto const file =
      readResults("r.json", document(unit(R"("visibleSteps": {"first": 0, "last": 0}, "steps": [null],
      "tools": [{"id": "A", "kind": "bolt", "tangentialForce": {"values": [1]}, "series": [{"quantity": "Q", "values": [1]}]},
                {"id": "B", "kind": "bolt"}], "toolGroupings": {"Rollers": []},
      "joinsDefinedInUnit": ["00000000-0000-0000-0000-000000000001"])",
                                          '1') +
                                     "," + unit("", '2')));
  auto const& first = *file.units[0].unit;
  EXPECT_EQ(first.getToolForces("B")->size(), 0u);
  EXPECT_EQ(first.genGetJoinTangentialForceStepValues("B")->size(), 0u);
  auto const& second = file.units[1];
  EXPECT_FALSE(second.unit->hasVisibleSimulationSteps());
  EXPECT_EQ(second.unit->getToolForces("A"), nullptr);
  EXPECT_THAT(second.toolGroupings, IsEmpty());
  EXPECT_THAT(second.unit->getEvalIDOfJoinDefinedInSimUnitVector(), IsEmpty());
}

TEST(ResultsFile, MayRepeatIdentifiersThatAreUniqueElsewhere) {
  auto const tools =
      R"("tools": [{"id": "T", "kind": "bolt"}], "steps": [)"
      R"({"suctionZones": [{"guid": "00000000-0000-0000-0000-00000000000a", "name": "N", "active": true}],)"
      R"( "joins": [{"guid": "00000000-0000-0000-0000-00000000000a", "id": "T", "name": "N", "state": 1}]},)"
      R"({"joins": [{"guid": "00000000-0000-0000-0000-00000000000a", "id": "T", "name": "N", "state": 1},)"
      R"( {"guid": "00000000-0000-0000-0000-00000000000b", "id": "T", "name": "N", "state": 1}]}])";
  EXPECT_EQ(errorOf(document(unit(tools, '1') + "," + unit(tools, '2'))), "no error");
}

TEST(ResultsFile, IsWhatTheDocumentationShows) {
  auto const page = readFile(KESTREL_SOURCE_DIR "/docs/results-file.md");
  auto const begin = page.find("```json\n");
  ASSERT_NE(begin, std::string::npos);
  auto const example = page.substr(begin + 8, page.find("```", begin + 8) - begin - 8);
  auto const file = readResults("example", example);
  ASSERT_EQ(file.units.size(), 1u);
  EXPECT_THAT(toolsOfKind(*file.units[0].unit, ToolForceDataType::clamp), ElementsAre("Clamp 1"));
  EXPECT_NE(file.units[0].result->getStep(1), nullptr);
}

TEST(ResultsFile, IsReadFromDisk) {
  TemporaryFolder const folder;
  EXPECT_THAT(readResultsFile(folder.write("r.json", ofUnit(""))).units, testing::SizeIs(1));
  auto const bad = folder.write("bad.json", "{").string();
  auto const messageOf = [](std::string const& path) -> std::string {
    try {
      static_cast<void>(readResultsFile(path));
      return "no error";
    } catch (Error const& error) {
      return error.what();
    }
  };
  EXPECT_EQ(messageOf(bad),
            bad + ": line 1, column 2: expected a member name in quotation marks, found the end of the file");
  EXPECT_EQ(messageOf(bad + "/x"), bad + "/x: cannot read: Not a directory");
}

TEST(ResultsFile, IsReadTheSameInEveryLocale) {
  HostileLocale const locale;
  auto const file = readResults("r.json", ofValues("1234.5, -0.25e-1, 1e-400"));
  EXPECT_THAT(valuesOf(*file.units[0].unit->getToolForces("T")->begin()->second),
              ElementsAre(1234.5, -0.025, 0.0));
  EXPECT_EQ(errorOf(ofUnit(R"("visibleSteps": {"first": 123456, "last": 0})")),
            "r.json: /units/0/visibleSteps/first: expected the index of one of 0 steps, found 123456");
  EXPECT_EQ(errorOf(ofValues("1234567,5e999")),
            "r.json: /units/0/tools/0/series/0/values/1: expected a number within the range of doubles, "
            "found 5e999");
}

// --- bad documents ----------------------------------------------------------------------------------------

struct BadDocument {
  std::string text;
  std::string message;  ///< behind "r.json: "
};

std::string const s_uuid = "expected a UUID of 8-4-4-4-12 hexadecimal digits, found ";
std::string const s_integer = "expected an integer from 0 to 4294967295, found ";
std::string const s_range = "expected a number within the range of doubles, found ";
std::string const s_firstRange = "/units/0/steps/0/lineJoins/0/skins/G/";

BadDocument const s_badDocuments[] = {
    // no JSON
    {"", "line 1, column 1: expected a JSON document, found the end of the file"},
    {"\xEF\xBB\xBF" + ofUnit(""), "line 1, column 1: expected a JSON value, found a byte order mark"},
    {document(unit()) + "\n\0"s,
     "line 2, column 1: expected the end of the file after the document, found a zero byte"},
    {document(unit()) + "\n,",
     "line 2, column 1: expected the end of the file after the document, found \",\""},
    {"{\n  \"format\": \"simulation-results\",\n  \"version\": 1\n  \"units\": []\n}",
     "line 4, column 3: expected a comma or a closing brace, found \"\"\""},
    {ofValues("1,\n2,"), "line 2, column 3: expected a JSON value, found \"]\""},
    {ofValues("\n1, \0"s), "line 2, column 4: expected a JSON value, found a zero byte"},
    {ofValues("\nNaN"), "line 2, column 1: expected a JSON value, found \"NaN\""},
    {ofValues("\n1,5, 01"), "line 2, column 7: expected a comma or a closing bracket, found \"1\""},
    {ofUnit("\"tools\":\n\"\xC3(\""), "line 2, column 2: expected UTF-8 text in the string, found byte 0xC3"},
    {ofUnit("\n\"\\udfff\": 1"), "line 2, column 2: expected a surrogate pair, found \"\\udfff\""},
    {ofTools("\n{\"id\": \"\\ud800\"}"), "line 2, column 9: expected a surrogate pair, found \"\\ud800\""},
    {ofTools("\n{\"id\": \"T\n\"}"),
     "line 2, column 10: expected an escape sequence in place of a control character, found \"␊\""},
    // the document
    {"[]", "document: expected an object, found an array"},
    {"null", "document: expected an object, found null"},
    {"{}", "document: expected a member \"format\", found none"},
    {R"({"format": "simulation-results", "units": []})",
     "document: expected a member \"version\", found none"},
    {R"({"format": "simulation-results", "version": 1})",
     "document: expected a member \"units\", found none"},
    {R"({"format": "import-map", "version": 1, "units": []})",
     "/format: expected \"simulation-results\", found \"import-map\""},
    {R"({"format": "simulation-results", "version": 2, "units": []})",
     "/version: expected version 1, found version 2"},
    {R"({"format": "simulation-results", "version": 0, "units": []})",
     "/version: expected version 1, found version 0"},
    {R"({"format": "simulation-results", "version": 1.0, "units": []})", "/version: " + s_integer + "1.0"},
    {R"({"format": "simulation-results", "version": "1", "units": []})", "/version: " + s_integer + "\"1\""},
    {R"({"format": "simulation-results", "version": 1, "units": {}})",
     "/units: expected an array, found an object"},
    {R"({"format": "simulation-results", "version": 1, "units": [], "unit": []})",
     "/unit: expected one of the members format, version, units, found \"unit\""},
    {R"({"format": "simulation-results", "version": 1, "version": 1, "units": []})",
     "/version: expected each member once, found a second \"version\""},
    // units
    {document("null"), "/units/0: expected an object, found null"},
    {document(R"({"name": "U"})"), "/units/0: expected a member \"id\", found none"},
    {document(unit() + R"(, {"id": "00000000-0000-0000-0000-000000000002"})"),
     "/units/1: expected a member \"name\", found none"},
    {document(unit() + "," + unit("", '2') + "," + unit()),
     "/units/2/id: expected an identifier that is unique in the file, found "
     "00000000-0000-0000-0000-000000000001"},
    {document(R"({"id": "OP20", "name": "U"})"), "/units/0/id: " + s_uuid + "\"OP20\""},
    {document(R"({"id": "{00000000-0000-0000-0000-000000000001}", "name": "U"})"),
     "/units/0/id: " + s_uuid + "\"{00000000-0000-0000-0000-000000000001}\""},
    {document(R"({"id": "0000000000000000000000000000000000001", "name": "U"})"),
     "/units/0/id: " + s_uuid + "\"0000000000000000000000000000000000001\""},
    {document(R"({"id": "00000000-0000-0000-0000-00000000000g", "name": "U"})"),
     "/units/0/id: " + s_uuid + "\"00000000-0000-0000-0000-00000000000g\""},
    {document(R"({"id": "00000000-0000-0000-0000-000000000001", "name": null})"),
     "/units/0/name: expected a string, found null"},
    {ofUnit("\"name\": \"V\""), "/units/0/name: expected each member once, found a second \"name\""},
    {ofUnit("\"tool\": []"),
     "/units/0/tool: expected one of the members id, name, visibleSteps, tools, "
     "joinsDefinedInUnit, toolGroupings, steps, found \"tool\""},
    {ofUnit("\"tools\": null"), "/units/0/tools: expected an array, found null"},
    // visible steps
    {ofUnit("\"visibleSteps\": [0, 1]"), "/units/0/visibleSteps: expected an object or null, found an array"},
    {ofUnit("\"visibleSteps\": {\"first\": 0}"),
     "/units/0/visibleSteps: expected a member \"last\", found none"},
    {ofUnit("\"visibleSteps\": {\"first\": -1, \"last\": 0}"),
     "/units/0/visibleSteps/first: " + s_integer + "-1"},
    {ofUnit("\"visibleSteps\": {\"first\": 0, \"last\": 1e0}"),
     "/units/0/visibleSteps/last: " + s_integer + "1e0"},
    {ofUnit("\"visibleSteps\": {\"first\": 4294967296, \"last\": 0}"),
     "/units/0/visibleSteps/first: " + s_integer + "4294967296"},
    {ofUnit("\"visibleSteps\": {\"first\": null, \"last\": 0}"),
     "/units/0/visibleSteps/first: " + s_integer + "null"},
    {ofUnit("\"visibleSteps\": {\"first\": 0, \"last\": 1, \"step\": 1}"),
     "/units/0/visibleSteps/step: expected one of the members first, last, found \"step\""},
    {ofUnit("\"visibleSteps\": {\"first\": 0, \"last\": 0}"),
     "/units/0/visibleSteps/first: expected the index of one of 0 steps, found 0"},
    {ofUnit("\"visibleSteps\": {\"first\": 1, \"last\": 2}, \"steps\": [null, null]"),
     "/units/0/visibleSteps/last: expected the index of one of 2 steps, found 2"},
    {ofUnit("\"visibleSteps\": {\"first\": 4294967295, \"last\": 4294967295}, \"steps\": [null]"),
     "/units/0/visibleSteps/first: expected the index of one of 1 steps, found 4294967295"},
    // tools
    {ofTools("[]"), "/units/0/tools/0: expected an object, found an array"},
    {ofTools(R"({"kind": "clamp"})"), "/units/0/tools/0: expected a member \"id\", found none"},
    {ofTools(R"({"id": "T"})"), "/units/0/tools/0: expected a member \"kind\", found none"},
    {ofTools(R"({"id": 1, "kind": "clamp"})"), "/units/0/tools/0/id: expected a string, found 1"},
    {ofTools(R"({"id": "T", "kind": "Clamp"})"),
     "/units/0/tools/0/kind: expected one of pilot, clamp, tool, spotWeld, joiningTong, suctionZone, bolt, "
     "found \"Clamp\""},
    {ofTools(R"({"id": "T", "kind": "clamp"}, {"id": "T", "kind": "bolt"})"),
     "/units/0/tools/1/id: expected an identifier that is unique in the unit, found \"T\""},
    {ofTool("\"name\": \"T\""),
     "/units/0/tools/0/name: expected one of the members id, kind, series, tangentialForce, found \"name\""},
    {ofTool("\"series\": {}"), "/units/0/tools/0/series: expected an array, found an object"},
    {ofTool("\"series\": null"), "/units/0/tools/0/series: expected an array, found null"},
    {ofTool("\"tangentialForce\": null"), "/units/0/tools/0/tangentialForce: expected an object, found null"},
    {ofTool("\"tangentialForce\": {}"),
     "/units/0/tools/0/tangentialForce: expected exactly one of \"values\" and \"pairs\", found none"},
    {ofTool("\"tangentialForce\": {\"quantity\": \"Q\", \"values\": []}"),
     "/units/0/tools/0/tangentialForce/quantity: expected one of the members values, pairs, found "
     "\"quantity\""},
    // series
    {ofSeries("{\"values\": []}"), "/units/0/tools/0/series/0: expected a member \"quantity\", found none"},
    {ofSeries("{\"quantity\": \"Q\"}"),
     "/units/0/tools/0/series/0: expected exactly one of \"values\" and \"pairs\", found none"},
    {ofSeries("{\"quantity\": \"Q\", \"values\": [], \"pairs\": []}"),
     "/units/0/tools/0/series/0: expected exactly one of \"values\" and \"pairs\", found both"},
    {ofSeries("{\"quantity\": \"Q\", \"values\": [], \"values\": []}"),
     "/units/0/tools/0/series/0/values: expected each member once, found a second \"values\""},
    {ofSeries(R"({"quantity": "Q", "values": [], "quantity": "R"})"),
     "/units/0/tools/0/series/0/quantity: expected each member once, found a second \"quantity\""},
    {ofSeries(R"({"quantity": "Q", "values": [], "unit": "N"})"),
     "/units/0/tools/0/series/0/unit: expected one of the members quantity, values, pairs, found \"unit\""},
    {ofSeries("{\"quantity\": null, \"values\": []}"),
     "/units/0/tools/0/series/0/quantity: expected a string, found null"},
    {ofSeries("{\"quantity\": \"Q\", \"values\": null}"),
     "/units/0/tools/0/series/0/values: expected an array, found null"},
    {ofValues("0, true"),
     "/units/0/tools/0/series/0/values/1: expected a number, null, \"Infinity\" or "
     "\"-Infinity\", found true"},
    {ofValues("\"NaN\""),
     "/units/0/tools/0/series/0/values/0: expected a number, null, \"Infinity\" or "
     "\"-Infinity\", found \"NaN\""},
    {ofValues("\"infinity\""),
     "/units/0/tools/0/series/0/values/0: expected a number, null, \"Infinity\" or "
     "\"-Infinity\", found \"infinity\""},
    {ofValues("[1, 2]"),
     "/units/0/tools/0/series/0/values/0: expected a number, null, \"Infinity\" or "
     "\"-Infinity\", found an array"},
    {ofValues("0, 0, 1e999"), "/units/0/tools/0/series/0/values/2: " + s_range + "1e999"},
    {ofValues("10e308"), "/units/0/tools/0/series/0/values/0: " + s_range + "10e308"},
    {ofValues("-1.7976931348623159e308"),
     "/units/0/tools/0/series/0/values/0: " + s_range + "-1.7976931348623159e308"},
    {ofValues(std::string(1'000'000, '7')),
     "/units/0/tools/0/series/0/values/0: " + s_range + std::string(60, '7') + "…"},
    {ofValues("0e309"),
     "/units/0/tools/0/series/0/values/0: expected at most 308 digits before the decimal point and "
     "no exponent above 308, found 0e309"},
    {ofPairs("1, 2"), "/units/0/tools/0/series/0/pairs/0: expected an array, found 1"},
    {ofPairs("null"), "/units/0/tools/0/series/0/pairs/0: expected an array, found null"},
    {ofPairs("[]"),
     "/units/0/tools/0/series/0/pairs/0: expected a pair of a value and its companion, found 0 numbers"},
    {ofPairs("[1, 2], [1]"),
     "/units/0/tools/0/series/0/pairs/1: expected a pair of a value and its companion, found 1 numbers"},
    {ofPairs("[1, 2, 3]"),
     "/units/0/tools/0/series/0/pairs/0: expected a pair of a value and its companion, found 3 numbers"},
    {ofPairs("[1, 1e400]"), "/units/0/tools/0/series/0/pairs/0/1: " + s_range + "1e400"},
    // joins and groupings
    {ofUnit("\"joinsDefinedInUnit\": [\"00000000-0000-0000-0000-000000000001\", \"x\"]"),
     "/units/0/joinsDefinedInUnit/1: " + s_uuid + "\"x\""},
    {ofUnit("\"joinsDefinedInUnit\": [null]"),
     "/units/0/joinsDefinedInUnit/0: expected a string, found null"},
    {ofUnit("\"toolGroupings\": []"), "/units/0/toolGroupings: expected an object, found an array"},
    {ofGroupings("\"Clamps\": []"),
     "/units/0/toolGroupings/Clamps: expected one of the members ClampingTools, "
     "Rollers, Steels, HemmingBed, found \"Clamps\""},
    {ofGroupings("\"Rollers\": null"), "/units/0/toolGroupings/Rollers: expected an array, found null"},
    {ofGroupings("\"Rollers\": [], \"Rollers\": []"),
     "/units/0/toolGroupings/Rollers: expected each member once, found a second \"Rollers\""},
    {ofGroupings("\"Steels\": [{\"tools\": []}]"),
     "/units/0/toolGroupings/Steels/0: expected a member \"name\", found none"},
    {ofGroupings("\"Steels\": [{\"name\": \"A\"}]"),
     "/units/0/toolGroupings/Steels/0: expected a member \"tools\", found none"},
    {ofGroupings("\"Steels\": [{\"name\": \"A\", \"tools\": [1]}]"),
     "/units/0/toolGroupings/Steels/0/tools/0: expected a string, found 1"},
    // steps
    {ofUnit("\"steps\": {}"), "/units/0/steps: expected an array, found an object"},
    {ofSteps("null, 1"), "/units/0/steps/1: expected an object or null, found 1"},
    {ofStep("\"tongs\": []"),
     "/units/0/steps/0/tongs: expected one of the members suctionZones, joiningTongs, joins, lineJoins, "
     "found \"tongs\""},
    {ofStep("\"joins\": null"), "/units/0/steps/0/joins: expected an array, found null"},
    {ofStep(R"("suctionZones": [{"guid": "00000000-0000-0000-0000-00000000000a", "name": "A"}])"),
     "/units/0/steps/0/suctionZones/0: expected a member \"active\", found none"},
    {ofStep(
         R"("suctionZones": [{"guid": "00000000-0000-0000-0000-00000000000a", "name": "A", "active": 1}])"),
     "/units/0/steps/0/suctionZones/0/active: expected true or false, found 1"},
    {ofStep(
         R"("suctionZones": [{"guid": "00000000-0000-0000-0000-00000000000a", "name": "A", "active": true},)"
         R"({"guid": "00000000-0000-0000-0000-00000000000A", "name": "B", "active": true}])"),
     "/units/0/steps/0/suctionZones/1/guid: expected an identifier that is unique in its list, found "
     "00000000-0000-0000-0000-00000000000a"},
    {ofStep(R"("joiningTongs": [{"id": "T", "name": "A", "state": 4294967296}])"),
     "/units/0/steps/0/joiningTongs/0/state: " + s_integer + "4294967296"},
    {ofStep(R"("joiningTongs": [{"id": "T", "name": "A", "state": -0}])"),
     "/units/0/steps/0/joiningTongs/0/state: " + s_integer + "-0"},
    {ofStep(R"("joiningTongs": [{"id": "T", "name": "A", "state": 3, "guid": "x"}])"),
     "/units/0/steps/0/joiningTongs/0/guid: expected one of the members id, name, state, found \"guid\""},
    {ofStep(
         R"("joiningTongs": [{"id": "T", "name": "A", "state": 3}, {"id": "T", "name": "B", "state": 3}])"),
     "/units/0/steps/0/joiningTongs/1/id: expected an identifier that is unique in its list, found \"T\""},
    {ofStep(R"("joins": [{"guid": "0", "id": "W", "name": "N", "state": 3}])"),
     "/units/0/steps/0/joins/0/guid: " + s_uuid + "\"0\""},
    {ofStep(
         R"("joins": [{"guid": "00000000-0000-0000-0000-00000000000a", "id": "W", "name": "N", "state": 3},)"
         R"({"guid": "00000000-0000-0000-0000-00000000000a", "id": "V", "name": "N", "state": 3}])"),
     "/units/0/steps/0/joins/1/guid: expected an identifier that is unique in its list, found "
     "00000000-0000-0000-0000-00000000000a"},
    {ofStep(
         R"("lineJoins": [{"guid": "00000000-0000-0000-0000-00000000000a", "id": "L", "name": "N", "state": 2}])"),
     "/units/0/steps/0/lineJoins/0: expected a member \"simulationUnitJoin\", found none"},
    {ofLineJoin("\"simulationUnitJoin\": \"\""),
     "/units/0/steps/0/lineJoins/0/simulationUnitJoin: expected each member once, found a second "
     "\"simulationUnitJoin\""},
    {ofLineJoin("\"skins\": null"), "/units/0/steps/0/lineJoins/0/skins: expected an object, found null"},
    // skins
    {ofSkins("\"G\": 1"), "/units/0/steps/0/lineJoins/0/skins/G: expected an object or null, found 1"},
    {ofSkins("\"G\": {}, \"H\": {}, \"G\": {}"),
     "/units/0/steps/0/lineJoins/0/skins/G: expected each member once, found a second \"G\""},
    {ofSkins("\"a/b\": {\"mean\": 1}"),
     "/units/0/steps/0/lineJoins/0/skins/a~1b/mean: expected one of the members min, max, found \"mean\""},
    {ofSkins("\"G\": {\"min\": \"Infinity\"}"),
     s_firstRange + "min: expected a number or null, found \"Infinity\""},
    {ofSkins("\"G\": {\"min\": 0, \"max\": true}"),
     s_firstRange + "max: expected a number or null, found true"},
    {ofSkins("\"G\": {\"max\": -1e309}"), s_firstRange + "max: " + s_range + "-1e309"},
    // names that would break the line
    {ofUnit(R"("two\nlines\u2028\u001b[0m": 1)"),
     "/units/0/two␊lines\uFFFD␛[0m: expected one of the members id, name, visibleSteps, tools, "
     "joinsDefinedInUnit, "
     "toolGroupings, steps, found \"two␊lines\uFFFD␛[0m\""},
    {ofTools(R"({"id": "a\r\nb", "kind": "clamp"}, {"id": "a\r\nb", "kind": "clamp"})"),
     "/units/0/tools/1/id: expected an identifier that is unique in the unit, found \"a␍␊b\""},
};

TEST(ResultsFile, RefusesBadDocumentsWithPlaceExpectedAndFound) {
  for (auto const& bad : s_badDocuments) EXPECT_EQ(errorOf(bad.text), "r.json: " + bad.message);
}

/// A place of the format: a document with `%` where the value stands.
struct Place {
  std::string document;
  std::string pointer;
  std::string expected;
  std::string allowed;  ///< of the values tried, those that are of the place's type
};

std::string with(std::string const& text, std::string const& value) {
  return std::string(text).replace(text.find('%'), 1, value);
}

std::string ofQ(std::string const& member) { return ofSeries("{\"quantity\": \"Q\", " + member + "}"); }
std::string ofRecord(std::string const& list, std::string const& member) {
  return ofStep("\"" + list + "\": [{\"" + member + "\": %}]");
}

std::string const s_step = "/units/0/steps/0/";
std::string const s_anInteger = "an integer from 0 to 4294967295";
std::string const s_aSeriesNumber = "a number, null, \"Infinity\" or \"-Infinity\"";

Place const s_places[] = {
    {"%", "document", "an object", "{}"},
    {"{\"format\": %}", "/format", "a string", "\"s\""},
    {"{\"version\": %}", "/version", s_anInteger, "7"},
    {"{\"units\": %}", "/units", "an array", "[]"},
    {document("%"), "/units/0", "an object", "{}"},
    {document("{\"id\": %}"), "/units/0/id", "a string", "\"s\""},
    {document("{\"name\": %}"), "/units/0/name", "a string", "\"s\""},
    {ofUnit("\"visibleSteps\": %"), "/units/0/visibleSteps", "an object or null", "{} null"},
    {ofUnit("\"visibleSteps\": {\"first\": %}"), "/units/0/visibleSteps/first", s_anInteger, "7"},
    {ofUnit("\"visibleSteps\": {\"last\": %}"), "/units/0/visibleSteps/last", s_anInteger, "7"},
    {ofUnit("\"tools\": %"), "/units/0/tools", "an array", "[]"},
    {ofTools("%"), "/units/0/tools/0", "an object", "{}"},
    {ofTools("{\"id\": %}"), "/units/0/tools/0/id", "a string", "\"s\""},
    {ofTools("{\"kind\": %}"), "/units/0/tools/0/kind", "a string", "\"s\""},
    {ofTool("\"series\": %"), "/units/0/tools/0/series", "an array", "[]"},
    {ofTool("\"tangentialForce\": %"), "/units/0/tools/0/tangentialForce", "an object", "{}"},
    {ofTool("\"tangentialForce\": {\"values\": %}"), "/units/0/tools/0/tangentialForce/values", "an array",
     "[]"},
    {ofTool("\"tangentialForce\": {\"pairs\": [[1, %]]}"), "/units/0/tools/0/tangentialForce/pairs/0/1",
     s_aSeriesNumber, "1.5 7 null"},
    {ofSeries("%"), "/units/0/tools/0/series/0", "an object", "{}"},
    {ofSeries("{\"quantity\": %}"), "/units/0/tools/0/series/0/quantity", "a string", "\"s\""},
    {ofQ("\"values\": %"), "/units/0/tools/0/series/0/values", "an array", "[]"},
    {ofQ("\"values\": [%]"), "/units/0/tools/0/series/0/values/0", s_aSeriesNumber, "1.5 7 null"},
    {ofQ("\"pairs\": %"), "/units/0/tools/0/series/0/pairs", "an array", "[]"},
    {ofQ("\"pairs\": [%]"), "/units/0/tools/0/series/0/pairs/0", "an array", "[]"},
    {ofQ("\"pairs\": [[%, 1]]"), "/units/0/tools/0/series/0/pairs/0/0", s_aSeriesNumber, "1.5 7 null"},
    {ofUnit("\"joinsDefinedInUnit\": %"), "/units/0/joinsDefinedInUnit", "an array", "[]"},
    {ofUnit("\"joinsDefinedInUnit\": [%]"), "/units/0/joinsDefinedInUnit/0", "a string", "\"s\""},
    {ofUnit("\"toolGroupings\": %"), "/units/0/toolGroupings", "an object", "{}"},
    {ofGroupings("\"ClampingTools\": %"), "/units/0/toolGroupings/ClampingTools", "an array", "[]"},
    {ofGroupings("\"Rollers\": [%]"), "/units/0/toolGroupings/Rollers/0", "an object", "{}"},
    {ofGroupings("\"Steels\": [{\"name\": %}]"), "/units/0/toolGroupings/Steels/0/name", "a string", "\"s\""},
    {ofGroupings("\"HemmingBed\": [{\"tools\": %}]"), "/units/0/toolGroupings/HemmingBed/0/tools", "an array",
     "[]"},
    {ofGroupings("\"Steels\": [{\"tools\": [%]}]"), "/units/0/toolGroupings/Steels/0/tools/0", "a string",
     "\"s\""},
    {ofUnit("\"steps\": %"), "/units/0/steps", "an array", "[]"},
    {ofSteps("%"), "/units/0/steps/0", "an object or null", "{} null"},
    {ofStep("\"suctionZones\": %"), s_step + "suctionZones", "an array", "[]"},
    {ofStep("\"suctionZones\": [%]"), s_step + "suctionZones/0", "an object", "{}"},
    {ofRecord("suctionZones", "guid"), s_step + "suctionZones/0/guid", "a string", "\"s\""},
    {ofRecord("suctionZones", "name"), s_step + "suctionZones/0/name", "a string", "\"s\""},
    {ofRecord("suctionZones", "active"), s_step + "suctionZones/0/active", "true or false", "true false"},
    {ofStep("\"joiningTongs\": %"), s_step + "joiningTongs", "an array", "[]"},
    {ofStep("\"joiningTongs\": [%]"), s_step + "joiningTongs/0", "an object", "{}"},
    {ofRecord("joiningTongs", "id"), s_step + "joiningTongs/0/id", "a string", "\"s\""},
    {ofRecord("joiningTongs", "name"), s_step + "joiningTongs/0/name", "a string", "\"s\""},
    {ofRecord("joiningTongs", "state"), s_step + "joiningTongs/0/state", s_anInteger, "7"},
    {ofStep("\"joins\": %"), s_step + "joins", "an array", "[]"},
    {ofStep("\"joins\": [%]"), s_step + "joins/0", "an object", "{}"},
    {ofRecord("joins", "guid"), s_step + "joins/0/guid", "a string", "\"s\""},
    {ofRecord("joins", "id"), s_step + "joins/0/id", "a string", "\"s\""},
    {ofRecord("joins", "name"), s_step + "joins/0/name", "a string", "\"s\""},
    {ofRecord("joins", "state"), s_step + "joins/0/state", s_anInteger, "7"},
    {ofStep("\"lineJoins\": %"), s_step + "lineJoins", "an array", "[]"},
    {ofStep("\"lineJoins\": [%]"), s_step + "lineJoins/0", "an object", "{}"},
    {ofRecord("lineJoins", "guid"), s_step + "lineJoins/0/guid", "a string", "\"s\""},
    {ofRecord("lineJoins", "id"), s_step + "lineJoins/0/id", "a string", "\"s\""},
    {ofRecord("lineJoins", "name"), s_step + "lineJoins/0/name", "a string", "\"s\""},
    {ofRecord("lineJoins", "state"), s_step + "lineJoins/0/state", s_anInteger, "7"},
    {ofRecord("lineJoins", "simulationUnitJoin"), s_step + "lineJoins/0/simulationUnitJoin", "a string",
     "\"s\""},
    {ofRecord("lineJoins", "skins"), s_step + "lineJoins/0/skins", "an object", "{}"},
    {ofSkins("\"G\": %"), s_firstRange.substr(0, s_firstRange.size() - 1), "an object or null", "{} null"},
    {ofSkins("\"G\": {\"min\": %}"), s_firstRange + "min", "a number or null", "1.5 7 null"},
    {ofSkins("\"G\": {\"max\": %}"), s_firstRange + "max", "a number or null", "1.5 7 null"},
};

TEST(ResultsFile, RefusesEveryOtherTypeAtEveryPlace) {
  std::pair<std::string, std::string> const values[] = {
      {"\"s\"", "\"s\""}, {"1.5", "1.5"},   {"7", "7"},         {"true", "true"},
      {"false", "false"}, {"null", "null"}, {"[]", "an array"}, {"{}", "an object"},
  };
  for (auto const& place : s_places) {
    for (auto const& [value, found] : values) {
      if ((place.allowed + ' ').find(value + ' ') != std::string::npos) continue;
      EXPECT_EQ(errorOf(with(place.document, value)),
                "r.json: " + place.pointer + ": expected " + place.expected + ", found " + found);
    }
  }
}

/// An object of the format: a document with `%` where the object's members stand, and the members.
struct Object {
  std::string document;
  std::string pointer;  ///< "" for the document
  std::vector<std::string> required;
  std::vector<std::string> optional;
};

std::string const s_guid = R"("guid": "00000000-0000-0000-0000-00000000000a")";

Object const s_objects[] = {
    {"{%}", "", {R"("format": "simulation-results")", R"("version": 1)", R"("units": [])"}, {}},
    {document("{%}"),
     "/units/0",
     {R"("id": "00000000-0000-0000-0000-000000000001")", R"("name": "U")"},
     {R"("visibleSteps": null)", R"("tools": [])", R"("joinsDefinedInUnit": [])", R"("toolGroupings": {})",
      R"("steps": [])"}},
    {ofUnit("\"steps\": [null], \"visibleSteps\": {%}"),
     "/units/0/visibleSteps",
     {R"("first": 0)", R"("last": 0)"},
     {}},
    {ofTools("{%}"),
     "/units/0/tools/0",
     {R"("id": "T")", R"("kind": "bolt")"},
     {R"("series": [])", R"("tangentialForce": {"values": []})"}},
    {ofGroupings("%"),
     "/units/0/toolGroupings",
     {},
     {R"("ClampingTools": [])", R"("Rollers": [])", R"("Steels": [])", R"("HemmingBed": [])"}},
    {ofGroupings("\"Rollers\": [{%}]"),
     "/units/0/toolGroupings/Rollers/0",
     {R"("name": "")", R"("tools": [])"},
     {}},
    {ofStep("%"),
     "/units/0/steps/0",
     {},
     {R"("suctionZones": [])", R"("joiningTongs": [])", R"("joins": [])", R"("lineJoins": [])"}},
    {ofStep("\"suctionZones\": [{%}]"),
     s_step + "suctionZones/0",
     {s_guid, R"("name": "")", R"("active": true)"},
     {}},
    {ofStep("\"joiningTongs\": [{%}]"),
     s_step + "joiningTongs/0",
     {R"("id": "")", R"("name": "")", R"("state": 0)"},
     {}},
    {ofStep("\"joins\": [{%}]"),
     s_step + "joins/0",
     {s_guid, R"("id": "")", R"("name": "")", R"("state": 0)"},
     {}},
    {ofStep("\"lineJoins\": [{%}]"),
     s_step + "lineJoins/0",
     {s_guid, R"("id": "")", R"("name": "")", R"("state": 0)",
      R"("simulationUnitJoin": "00000000-0000-0000-0000-00000000000b")"},
     {R"("skins": {})"}},
    {ofSkins("\"G\": {%}"), s_step + "lineJoins/0/skins/G", {}, {R"("min": 0)", R"("max": 0)"}},
};

TEST(ResultsFile, RefusesMissingUnknownAndRepeatedMembersInEveryObject) {
  for (auto const& object : s_objects) {
    auto const place = "r.json: " + (object.pointer.empty() ? "document" : object.pointer);
    auto members = object.required;
    members.insert(members.end(), object.optional.begin(), object.optional.end());
    auto const membersBut = [&](std::string const& omitted) {
      std::string text;
      for (auto const& member : members) {
        if (member != omitted) text += (text.empty() ? "" : ", ") + member;
      }
      return text;
    };
    ASSERT_EQ(errorOf(with(object.document, membersBut(""))), "no error") << object.pointer;
    for (auto const& member : members) {
      auto const quoted = member.substr(0, member.find(':'));
      auto const name = quoted.substr(1, quoted.size() - 2);
      EXPECT_EQ(errorOf(with(object.document, membersBut("") + ", " + member)),
                std::string("r.json: ")
                    .append(object.pointer)
                    .append("/")
                    .append(name)
                    .append(": expected each member once, found a second ")
                    .append(quoted));
      bool const isRequired =
          std::find(object.required.begin(), object.required.end(), member) != object.required.end();
      EXPECT_EQ(errorOf(with(object.document, membersBut(member))),
                isRequired
                    ? std::string(place).append(": expected a member ").append(quoted).append(", found none")
                    : "no error");
    }
    EXPECT_THAT(errorOf(with(object.document, membersBut("") + ", \"Name\": 0")),
                testing::StartsWith("r.json: " + object.pointer + "/Name: expected one of the members "));
  }
}

TEST(ResultsFile, IsRefusedWhereverItIsCut) {
  auto const text =
      document(unit(R"("visibleSteps": {"first": 0, "last": 0}, "tools": [{"id": "Zange ä😀\u00e4",
      "kind": "bolt", "series": [{"quantity": "Q", "pairs": [[1.5e3, null], ["Infinity", -0]]}]}], "steps": [
      {"lineJoins": [{"guid": "00000000-0000-0000-0000-00000000000a", "id": "L", "name": "N", "state": 2,
       "simulationUnitJoin": "00000000-0000-0000-0000-00000000000b", "skins": {"G": {"min": 1}, "H": null}}],
       "suctionZones": [{"guid": "00000000-0000-0000-0000-00000000000a", "name": "", "active": true}]}])"));
  ASSERT_EQ(errorOf(text), "no error");
  for (std::size_t length = 0; length < text.size(); ++length) {
    // A copy of exactly this size, so that a read beyond its end is noticed.
    auto const message = errorOf(std::string(text.data(), length));
    EXPECT_THAT(message, testing::StartsWith("r.json: line ")) << length;
    EXPECT_EQ(message, toPrintable(message)) << length;
  }
}

TEST(ResultsFile, IsRefusedWithOneLineWhateverItIsCalled) {
  EXPECT_EQ(errorOf("[]", "a\nb\x1B[31m\xFF.json"),
            "a␊b␛[31m\uFFFD.json: document: expected an object, found an array");
  EXPECT_EQ(errorOf("[", "a\nb"), "a␊b: document: expected an object, found an array");
  EXPECT_EQ(errorOf("", "a\nb"),
            "a␊b: line 1, column 1: expected a JSON document, found the end of the file");
  EXPECT_EQ(errorOf("\xEF\xBB\xBF", "a\nb"),
            "a␊b: line 1, column 1: expected a JSON value, found a byte order mark");
}

TEST(ResultsFile, IsRefusedQuicklyHoweverDeepItNests) {
  std::string const brackets(8'000'000, '[');
  EXPECT_EQ(errorOf(brackets), "r.json: document: expected an object, found an array");
  EXPECT_EQ(
      errorOf(ofPairs(brackets)),
      "r.json: /units/0/tools/0/series/0/pairs/0/0: expected a number, null, \"Infinity\" or \"-Infinity\", "
      "found an array");
}

// --- random documents -------------------------------------------------------------------------------------

struct RandomSeries {
  std::string quantity;
  std::vector<double> values;
  bool isPairs;
};

struct RandomTool {
  std::string id;
  std::size_t kind;
  std::vector<RandomSeries> series;
};

struct RandomLineJoin {
  GUIdentifier guid;
  std::string id;
  std::string name;
  std::uint32_t state;
  GUIdentifier simulationUnitJoin;
  std::map<std::string, std::pair<std::optional<double>, std::optional<double>>> skins;
};

struct RandomUnit {
  GUIdentifier id;
  std::string name;
  std::vector<RandomTool> tools;
  std::vector<std::vector<RandomLineJoin>> steps;
};

constexpr std::pair<char const*, ToolForceDataType> s_kinds[] = {
    {"pilot", ToolForceDataType::pilot},
    {"clamp", ToolForceDataType::clamp},
    {"tool", ToolForceDataType::tool},
    {"spotWeld", ToolForceDataType::spotWeld},
    {"joiningTong", ToolForceDataType::joiningTong},
    {"suctionZone", ToolForceDataType::suctionZone},
    {"bolt", ToolForceDataType::bolt},
};

/// Makes up documents; the same seed makes the same ones on every system.
class RandomDocument {
 public:
  explicit RandomDocument(std::uint64_t seed) : m_random(seed) {}

  std::vector<RandomUnit> units() {
    std::vector<RandomUnit> units(below(4));
    for (auto& unit : units) {
      unit.id = identifier();
      unit.name = text();
      unit.tools.resize(below(5));
      for (auto& tool : unit.tools) tool = {uniqueText(), below(std::size(s_kinds)), series()};
      unit.steps.resize(below(4));
      for (auto& step : unit.steps) step = lineJoins();
    }
    return units;
  }

 private:
  std::size_t below(std::size_t bound) { return static_cast<std::size_t>(m_random() % bound); }

  GUIdentifier identifier() {
    boost::uuids::uuid uuid;
    for (auto& byte : uuid) byte = static_cast<std::uint8_t>(m_random());
    return GUIdentifier(uuid);
  }

  std::string text() {
    static constexpr char const* s_pieces[] = {"Clamp", " ",    "1", "\"", "\\",     "/",      "\n",
                                               "\x7F",  "\x01", "ä", "漢", "😀",      "\u2028", "\uFFFD",
                                               "{",     "]",    ",", "~",  "\\u0041"};
    std::string text;
    for (auto length = below(6); length > 0; --length) text += s_pieces[below(std::size(s_pieces))];
    return text;
  }
  std::string uniqueText() { return text() + std::to_string(m_counter++); }

  double finite() {
    for (;;) {
      auto const value = std::bit_cast<double>(m_random());
      if (std::isfinite(value)) return value;
    }
  }
  double number() {
    static constexpr double s_special[] = {0.0,
                                           -0.0,
                                           5e-324,
                                           -2.2250738585072011e-308,
                                           1.7976931348623157e308,
                                           0.1,
                                           s_notANumber,
                                           s_infinity,
                                           -s_infinity,
                                           -1314.547};
    return below(3) == 0 ? s_special[below(std::size(s_special))] : finite();
  }

  std::vector<RandomSeries> series() {
    std::vector<RandomSeries> series(below(4));
    for (auto& one : series) {
      one.quantity = text();
      one.values.resize(below(20));
      for (auto& value : one.values) value = number();
      one.isPairs = below(2) == 0;
    }
    return series;
  }

  std::vector<RandomLineJoin> lineJoins() {
    std::vector<RandomLineJoin> joins(below(3));
    for (auto& join : joins) {
      join = {identifier(), text(), text(), static_cast<std::uint32_t>(m_random()), identifier(), {}};
      for (auto count = below(3); count > 0; --count) {
        auto& range = join.skins[text()];
        if (below(2) == 0) range.first = finite();
        if (below(2) == 0) range.second = finite();
      }
    }
    return joins;
  }

  std::mt19937_64 m_random;
  int m_counter = 0;
};

void write(JsonWriter& json, RandomSeries const& series) {
  json.beginObject();
  json.key("quantity");
  json.string(series.quantity);
  json.key(series.isPairs ? "pairs" : "values");
  series.isPairs ? json.beginArray() : json.beginInlineArray();
  for (double const value : series.values) {
    if (series.isPairs) json.beginInlineArray();
    json.number(value);
    if (series.isPairs) json.number(-value);
    if (series.isPairs) json.endInlineArray();
  }
  series.isPairs ? json.endArray() : json.endInlineArray();
  json.endObject();
}

void write(JsonWriter& json, RandomTool const& tool) {
  json.beginObject();
  json.key("kind");
  json.string(s_kinds[tool.kind].first);
  json.key("series");
  json.beginArray();
  for (auto const& series : tool.series) write(json, series);
  json.endArray();
  json.key("id");
  json.string(tool.id);
  json.endObject();
}

void writeBound(JsonWriter& json, std::string_view name, std::optional<double> const& bound) {
  json.key(name);
  bound ? json.number(*bound) : json.null();
}

void write(JsonWriter& json, RandomLineJoin const& join) {
  json.beginObject();
  json.key("guid");
  json.string(join.guid.toString());
  json.key("id");
  json.string(join.id);
  json.key("name");
  json.string(join.name);
  json.key("state");
  json.integer(join.state);
  json.key("simulationUnitJoin");
  json.string(join.simulationUnitJoin.toString());
  json.key("skins");
  json.beginObject();
  for (auto const& [name, range] : join.skins) {
    json.key(name);
    json.beginObject();
    writeBound(json, "min", range.first);
    writeBound(json, "max", range.second);
    json.endObject();
  }
  json.endObject();
  json.endObject();
}

std::string written(std::vector<RandomUnit> const& units) {
  JsonWriter json;
  json.beginObject();
  json.key("format");
  json.string("simulation-results");
  json.key("version");
  json.integer(1);
  json.key("units");
  json.beginArray();
  for (auto const& unit : units) {
    json.beginObject();
    json.key("id");
    json.string(unit.id.toString());
    json.key("name");
    json.string(unit.name);
    json.key("tools");
    json.beginArray();
    for (auto const& tool : unit.tools) write(json, tool);
    json.endArray();
    json.key("steps");
    json.beginArray();
    for (auto const& step : unit.steps) {
      json.beginObject();
      json.key("lineJoins");
      json.beginArray();
      for (auto const& join : step) write(json, join);
      json.endArray();
      json.endObject();
    }
    json.endArray();
    json.endObject();
  }
  json.endArray();
  json.endObject();
  return json.take();
}

void expectSame(RandomTool const& tool, SimulationUnit const& unit) {
  EXPECT_THAT(toolsOfKind(unit, s_kinds[tool.kind].second), testing::Contains(tool.id));
  auto const* const forces = unit.getToolForces(tool.id);
  ASSERT_NE(forces, nullptr);
  ASSERT_EQ(forces->size(), tool.series.size());
  auto force = forces->begin();
  for (auto const& series : tool.series) {
    EXPECT_EQ(force->first, series.quantity);
    EXPECT_EQ(bitsOf(valuesOf(*force->second)), bitsOf(series.values));
    ++force;
  }
}

void expectSame(RandomLineJoin const& join, SimulationStep const& step) {
  auto const found = std::find_if(step.beginLineJoinMap(), step.endLineJoinMap(),
                                  [&](auto const& entry) { return entry.first == join.guid; });
  ASSERT_NE(found, step.endLineJoinMap());
  EXPECT_EQ(found->second->getStringID(), join.id);
  EXPECT_EQ(found->second->getDisplayName(), join.name);
  EXPECT_EQ(found->second->getState(), JoinState{join.state});
  EXPECT_EQ(found->second->getEvalSimulationUnitJoinGUID(), join.simulationUnitJoin);
  for (auto const& [name, range] : join.skins) {
    auto const skin =
        std::dynamic_pointer_cast<Skin<double>>(found->second->getSkin(SkinKey(name, 0, "", "")));
    ASSERT_NE(skin, nullptr);
    EXPECT_EQ(skin->getRangeMinimum(), range.first);
    EXPECT_EQ(skin->getRangeMaximum(), range.second);
  }
}

TEST(ResultsFile, ComesBackBitByBitWhateverItHolds) {
  std::size_t numbers = 0;
  for (std::uint64_t seed = 1; seed <= 300; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    auto const units = RandomDocument(seed).units();
    auto const file = readResults("r.json", written(units));
    ASSERT_EQ(file.units.size(), units.size());
    for (std::size_t i = 0; i < units.size(); ++i) {
      auto const& unit = *file.units[i].unit;
      EXPECT_EQ(unit.getID(), units[i].id);
      EXPECT_EQ(unit.getSimulationUnitName(), units[i].name);
      for (auto const& tool : units[i].tools) {
        expectSame(tool, unit);
        for (auto const& series : tool.series) numbers += series.values.size();
      }
      for (std::size_t step = 0; step < units[i].steps.size(); ++step) {
        for (auto const& join : units[i].steps[step]) {
          expectSame(join, *file.units[i].result->getStep(static_cast<unsigned int>(step)));
        }
      }
    }
  }
  EXPECT_GT(numbers, 5000u) << "the documents hardly held anything";
}

// --- memory -----------------------------------------------------------------------------------------------

/// The most memory that the process has held since the last call of `forgetPeak`, in bytes.
std::size_t peakMemory() {
  std::ifstream status("/proc/self/status");
  std::string word;
  while (status >> word && word != "VmHWM:") {
  }
  std::size_t kibibytes = 0;
  status >> kibibytes;
  return kibibytes * 1024;
}

void forgetPeak() {
  ::malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << "5";
}

constexpr std::string_view s_twoUnits = R"({"format": "simulation-results", "version": 1, "units": [
  {"id": "00000000-0000-0000-0000-00000000000A", "name": "OP10", "tools": [
    {"id": "C", "kind": "clamp", "series": [{"quantity": "ClampNormalForce", "values": [1]}]},
    {"id": "\u0043 2", "kind": "clamp"}]},
  {"tools": [{"id": "C", "kind": "clamp", "series": [{"quantity": "ClampNormalForce", "values": [2]}]}],
   "id": "00000000-0000-0000-0000-00000000000B", "name": "OP20"}]})";

std::vector<std::string> clampsOf(ResultsUnit const& unit) {
  std::vector<std::string> ids;
  unit.unit->getToolStringIDsOfToolForceType(ids, ToolForceDataType::clamp);
  return ids;
}

TEST(ResultsFile, HasTheToolsOfWantedUnitsAlone) {
  for (auto const* const wanted :
       {"OP10", "00000000-0000-0000-0000-00000000000a", "00000000-0000-0000-0000-00000000000A"}) {
    auto const file = readResults("r", s_twoUnits, {wanted});
    ASSERT_THAT(file.units, SizeIs(2));
    EXPECT_TRUE(file.units[0].hasTools);
    EXPECT_THAT(clampsOf(file.units[0]), ElementsAre("C", "C 2"));
    EXPECT_EQ(file.units[1].unit->getSimulationUnitName(), "OP20");
    EXPECT_FALSE(file.units[1].hasTools);
    EXPECT_THAT(clampsOf(file.units[1]), IsEmpty());
  }
  auto const file = readResults("r", s_twoUnits, {"OP20", "OP30"});
  EXPECT_FALSE(file.units[0].hasTools);
  EXPECT_THAT(clampsOf(file.units[1]), ElementsAre("C"));
  EXPECT_TRUE(readResults("r", s_twoUnits).units[0].hasTools);
}

TEST(ResultsFile, ChecksUnitsThatAreNotWantedAllTheSame) {
  std::string text(s_twoUnits);
  text.replace(text.find("[1]"), 3, "[x]");
  EXPECT_THROW(static_cast<void>(readResults("r", text, {"OP20"})), Error);
  text = s_twoUnits;
  text.replace(text.find("\\u0043 2"), 8, "C");
  try {
    static_cast<void>(readResults("r", text, {"OP20"}));
    FAIL();
  } catch (Error const& error) {
    EXPECT_STREQ(error.what(),
                 "r: /units/0/tools/1/id: expected an identifier that is unique in the unit, found \"C\"");
  }
}

/// Reads the file and ends the process: 0 if the memory that it took is below `limit`.
[[noreturn]] void exitReading(std::filesystem::path const& path, std::size_t limit) {
  forgetPeak();
  auto const before = peakMemory();
  [[maybe_unused]] auto const file = readResultsFile(path);
  auto const taken = peakMemory() - before;
  std::cerr << "took " << taken << " of " << limit << " bytes\n";
  ::_exit(taken > 0 && taken < limit ? 0 : 1);
}

TEST(ResultsFileDeathTest, TakesLessMemoryThanTwiceItsDoublesAndTheFile) {
  if (TestSupport::s_isSanitized) GTEST_SKIP() << "sanitizers take memory of their own";
  TemporaryFolder const folder;
  constexpr std::size_t numbers = 1'000'000;
  std::string values;
  std::string pairs;
  for (std::size_t i = 0; i < numbers / 2; ++i) {
    values += i == 0 ? "1, 2" : ", 1, 2";
    pairs += i == 0 ? "[1, 2]" : ", [1, 2]";
  }
  for (auto const& text : {ofValues(values), ofPairs(pairs)}) {
    auto const path = folder.write("r.json", text);
    EXPECT_EXIT(exitReading(path, 2 * numbers * sizeof(double) + text.size()), testing::ExitedWithCode(0),
                "took");
  }
}

TEST(ResultsFileDeathTest, NamesTheFileWhoseNumbersTakeMoreMemoryThanThereIs) {
  if (TestSupport::s_isSanitized) GTEST_SKIP() << "sanitizers take memory of their own";
  std::string values = "0";
  for (int i = 0; i < 8'000'000; ++i) values += ",0";
  auto const text = ofValues(values);
  auto const read = [&] {
    TestSupport::limitMemory(std::size_t{16} << 20);
    exitWith(errorOf(text, "large.json") == "large.json: not enough memory");
  };
  EXPECT_EXIT(read(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace Kestrel::ResultTables

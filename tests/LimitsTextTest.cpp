#include "result_tables/limits/LimitsText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

#include "result_tables/base/Error.h"
#include "result_tables/limits/Limits.h"
#include "result_tables/results/UnitSelection.h"
#include "support/LimitsTesting.h"
#include "support/LimitsWriter.h"

namespace Kestrel::ResultTables {
namespace {

using DataType = MaxValueGroupContainer::DataType;
using enum TablePropertyLimitType;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

constexpr auto s_infinity = std::numeric_limits<double>::infinity();

/// A text of limits with these members besides format and version.
std::string textWith(std::string const& members) {
  return R"({"format": "limits", "version": 1, )" + members + "}";
}

/// Texts for a file of three units: OP20, OP10, OP20.
class LimitsTextTest : public testing::Test {
 protected:
  /// The limits of the file under a text.
  [[nodiscard]] ResultLimits limitsUnder(std::string const& members) const {
    return genLimits(readLimitsText("t.json", textWith(members)), m_file);
  }
  static double limitOf(ResultLimits const& limits, char const* unit, TablePropertyLimitType type) {
    return limits.collection->getLimit(unitId(unit), type)->getLimit();
  }
  /// The limits of bolts of the three units.
  static std::vector<double> boltLimits(TablePropertiesData const& limits) {
    std::vector<double> values;
    for (auto const* unit : {s_firstUnit, s_secondUnit, s_thirdUnit})
      values.push_back(limits.getLimit(unitId(unit), BoltNormalForce)->getLimit());
    return values;
  }
  [[nodiscard]] std::vector<ResultsUnit const*> allUnits() const { return selectUnits(m_file, {}); }
  /// What becomes of a document's limits.
  void import(std::string const& members, TablePropertiesData const& limits) const {
    auto const text = readLimitsText("t.json", textWith(members));
    checkForImport(text, m_file);
    importLimits(text, m_file, limits);
  }

  ResultsFile const m_file = readResults("r.json", s_resultsOfThreeUnits);
};

template <typename Action>
std::string errorOf(Action const& action) {
  try {
    action();
  } catch (Error const& error) {
    return error.what();
  }
  return "no error";
}

std::string errorOfReading(std::string const& text) {
  return errorOf([&] { static_cast<void>(readLimitsText("t.json", text)); });
}

// ---- what a text is

TEST(IsLimitsText, TellsTextsFromArchivesByTheirBeginning) {
  EXPECT_TRUE(isLimitsText("{"));
  EXPECT_TRUE(isLimitsText("\r\n\t {\"format\""));
  EXPECT_TRUE(isLimitsText("\xEF\xBB\xBF{}")) << "refused as a text, for its byte order mark";
  EXPECT_FALSE(isLimitsText(""));
  EXPECT_FALSE(isLimitsText(" \n"));
  EXPECT_FALSE(isLimitsText("[{}]"));
  EXPECT_FALSE(isLimitsText(genDocument(std::make_shared<TablePropertiesData>())));
}

TEST_F(LimitsTextTest, MayBeEmpty) {
  auto const text = readLimitsText("t.json", R"({"version": 1, "format": "limits"})");
  EXPECT_EQ(text.name, "t.json");
  EXPECT_THAT(text.all.limits, IsEmpty());
  EXPECT_THAT(text.units, IsEmpty());
  EXPECT_EQ(boltLimits(*genLimits(text, m_file).collection), std::vector({30.0, 30.0, 30.0}));
  EXPECT_THAT(limitsUnder(R"("all": {}, "units": [{"name": ""}])").columns, IsEmpty());
}

TEST_F(LimitsTextTest, HasNumbersAsAResultsFileHas) {
  auto const limits = limitsUnder(R"("all": {"limits": {
    "JoiningTongNormalForce": -0, "JoiningTongDistance": 5e-324, "JoiningTongGap": null,
    "JoinNormalForce": "Infinity", "JoinTangentialForce": "-Infinity", "PilotForce": -1.5e3}})");
  auto const bitsOf = [&](auto type) {
    return std::bit_cast<std::uint64_t>(limitOf(limits, s_firstUnit, type));
  };
  EXPECT_EQ(bitsOf(JoiningTongNormalForce), 0x8000000000000000U);
  EXPECT_EQ(bitsOf(JoiningTongDistance), 1U);
  EXPECT_EQ(bitsOf(JoiningTongGap), 0x7FF8000000000000U);
  EXPECT_EQ(limitOf(limits, s_firstUnit, JoinNormalForce), s_infinity);
  EXPECT_EQ(limitOf(limits, s_firstUnit, JoinTangentialForce), -s_infinity);
  EXPECT_EQ(limitOf(limits, s_firstUnit, PilotForce), -1500.0);
}

// ---- which limit holds

TEST_F(LimitsTextTest, HoldsForAllUnitsAndLeavesWhatItDoesNotSay) {
  auto const limits = limitsUnder(R"("all": {"limits": {"BoltNormalForce": 45.5}})");
  EXPECT_EQ(boltLimits(*limits.collection), std::vector({45.5, 45.5, 45.5}));
  EXPECT_EQ(limitOf(limits, s_firstUnit, PilotForce), 500.0);
  EXPECT_EQ(limits.collection->getChildCount(), 48U);
}

TEST_F(LimitsTextTest, GoesByIdBeforeNameBeforeAllWhateverTheOrder) {
  auto const limits = limitsUnder(R"("units": [
      {"id": "0B6F6D3E-6C1E-4A57-9B52-0F6F2F1B6A03", "name": "renamed", "limits": {"BoltNormalForce": 3}},
      {"name": "OP20", "limits": {"BoltNormalForce": 2, "PilotForce": 20}}],
    "all": {"limits": {"BoltNormalForce": 1, "PilotForce": 10, "SteelForce": 100}})");
  EXPECT_EQ(boltLimits(*limits.collection), std::vector({2.0, 1.0, 3.0}));
  EXPECT_EQ(limitOf(limits, s_thirdUnit, PilotForce), 20.0) << "kind by kind";
  EXPECT_EQ(limitOf(limits, s_thirdUnit, SteelForce), 100.0);
  EXPECT_EQ(limitOf(limits, s_secondUnit, PilotForce), 10.0);
}

TEST_F(LimitsTextTest, MeansByTheNameOfAUnitWithAnIdNothing) {
  auto const limits = limitsUnder(R"("units": [
      {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP20", "limits": {"BoltNormalForce": 3}}])");
  EXPECT_EQ(boltLimits(*limits.collection), std::vector({30.0, 3.0, 30.0}));
}

TEST_F(LimitsTextTest, PassesOverUnitsThatTheFileLacks) {
  auto const limits = limitsUnder(R"("units": [
      {"id": "7d0e0d5c-70f2-4b2f-9a0b-6d7b5f0f9c11", "name": "OP10", "limits": {"BoltNormalForce": 3}},
      {"name": "OP99", "limits": {"BoltNormalForce": 4, "ClampClosingForce": 5}}])");
  EXPECT_EQ(boltLimits(*limits.collection), std::vector({30.0, 30.0, 30.0}));
}

TEST_F(LimitsTextTest, HasLimitsOfColumnsWithTheSamePrecedence) {
  auto const limits = limitsUnder(R"("units": [
      {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a03",
       "columns": {"Bolts": {"ClampClosingForce": "Infinity"}, "Steels": {}}},
      {"name": "OP20", "columns": {"Bolts": {"ClampClosingForce": 2}}}],
    "all": {"columns": {"Clamps": {"ClampClosingForce": 900, "ClampNormalForce": null},
                        "Bolts": {"ClampClosingForce": 1}, "ClampingTools": {"TotalToolForces": 4}}})");
  auto const ofColumn = [&](char const* unit, DataType family, char const* key) {
    return limits.ofColumn(unitId(unit), {family, key});
  };
  EXPECT_EQ(ofColumn(s_firstUnit, DataType::Bolts, "ClampClosingForce"), 2.0);
  EXPECT_EQ(ofColumn(s_secondUnit, DataType::Bolts, "ClampClosingForce"), 1.0);
  EXPECT_EQ(ofColumn(s_thirdUnit, DataType::Bolts, "ClampClosingForce"), s_infinity);
  EXPECT_EQ(ofColumn(s_thirdUnit, DataType::Clamps, "ClampClosingForce"), 900.0);
  EXPECT_EQ(ofColumn(s_firstUnit, DataType::ClampingTools, "TotalToolForces"), 4.0);
  EXPECT_TRUE(std::isnan(ofColumn(s_firstUnit, DataType::Clamps, "ClampNormalForce").value()));
  EXPECT_EQ(ofColumn(s_firstUnit, DataType::Bolts, "ClampSupportingForce"), std::nullopt);
  EXPECT_EQ(limits.ofColumn(SimulationUnitId(), {DataType::Bolts, "ClampClosingForce"}), std::nullopt);
}

// ---- what is refused

TEST(LimitsText, RefusesWhatTheFormatDoesNotProvideFor) {
  struct Case {
    std::string text;
    char const* message;
  };
  for (auto const& [text, message] : {
           Case{"{}", "document: expected a member \"format\", found none"},
           Case{"{",
                "line 1, column 2: expected a member name in quotation marks, found the end of the file"},
           Case{"\xEF\xBB\xBF{}", "line 1, column 1: expected a JSON value, found a byte order mark"},
           Case{R"({"format": "simulation-results"})",
                "/format: expected \"limits\", found \"simulation-results\""},
           Case{R"({"format": "limits", "version": 2})", "/version: expected version 1, found version 2"},
           Case{R"({"format": "limits"})", "document: expected a member \"version\", found none"},
           Case{textWith(R"("limits": {})"),
                "/limits: expected one of the members format, version, all, units, found \"limits\""},
           Case{textWith(R"("all": [])"), "/all: expected an object, found an array"},
           Case{textWith(R"("all": {"id": 1})"),
                "/all/id: expected one of the members limits, columns, found \"id\""},
           Case{textWith(R"("all": {"limits": {"PilotForce": 1, "PilotForce": 1}})"),
                "/all/limits/PilotForce: expected each member once, found a second \"PilotForce\""},
           Case{textWith(R"("all": {"limits": {"PilotForce": "500"}})"),
                "/all/limits/PilotForce: expected a number, null, \"Infinity\" or \"-Infinity\", found "
                "\"500\""},
           Case{textWith(R"("all": {"limits": {"PilotForce": 1e999}})"),
                "/all/limits/PilotForce: expected a number within the range of doubles, found 1e999"},
           Case{textWith(R"("units": [{"limits": {}}])"),
                "/units/0: expected a member \"id\" or \"name\", found none"},
           Case{textWith(R"("units": [{"id": "OP20"}])"),
                "/units/0/id: expected a UUID of 8-4-4-4-12 hexadecimal digits, found \"OP20\""},
           Case{textWith(R"("units": [{"name": "a"}, {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01"},
                            {"name": "a", "id": "0B6F6D3E-6C1E-4A57-9B52-0F6F2F1B6A01"}])"),
                "/units/2/id: expected an identifier that is unique in the file, found "
                "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01"},
           Case{textWith(R"("units": [{"name": "a"}, {"name": "b"}, {"name": "a"}])"),
                "/units/2/name: expected a name that is unique among the units without an id, found \"a\""},
           Case{textWith(R"("all": {"columns": {"Bolt": {}}})"),
                "/all/columns/Bolt: expected one of the members Clamps, ClampingTools, JoiningTongs, Pilots, "
                "Bolts, LineJoiningTools, SuctionZones, Rollers, Steels, HemmingBed, SpotWelds, LineWelds, "
                "found \"Bolt\""},
           Case{textWith(R"("all": {"columns": {"Clamps": {"ClampClosingForce": 1,
                            "ClampClosingForce": 2}}})"),
                "/all/columns/Clamps/ClampClosingForce: expected each member once, found a second "
                "\"ClampClosingForce\""},
       })
    EXPECT_EQ(errorOfReading(text), std::string("t.json: ") + message) << text;
}

TEST(LimitsText, RefusesAKindThatThereIsNot) {
  for (auto const* const kind : {"pilotForce", "", "19", "024", "24", "-25", "25 ", "4294967296"}) {
    auto const pointer = std::string("t.json: /all/limits/") + kind;
    EXPECT_THAT(errorOfReading(textWith(R"("all": {"limits": {")" + std::string(kind) + R"(": 1}})")),
                testing::StartsWith(pointer + ": expected one of NoLimit, JoiningTongNormalForce, "));
  }
  EXPECT_THAT(errorOfReading(textWith(R"("all": {"limits": {"BoltForce": 1}})")),
              testing::EndsWith("BoltNormalForce, ClampClosingForce, found \"BoltForce\""));
  EXPECT_THAT(errorOfReading(textWith(R"("all": {"limits": {"PilotForc": 1}})")),
              testing::EndsWith("found \"PilotForc\"; did you mean \"PilotForce\"?"));
}

TEST(LimitsText, RefusesAColumnThatTheFamilyLacksOrThatHasAKindOfLimit) {
  auto const errorOfColumn = [](std::string const& family, std::string const& key) {
    return errorOfReading(
        textWith(R"("units": [{"name": "a", "columns": {")" + family + R"(": {")" + key + R"(": 1}}}])"));
  };
  std::string const begin = "t.json: /units/0/columns/";
  std::string const columns =
      "expected a column of Bolts without a kind of limit (ClampClosingForce, ClampSupportingForce, "
      "ClampTangentialForce, ClampNormalDisplacement, ClampTeachingDistanceX, ClampTeachingDistanceY, "
      "ClampTeachingDistanceZ), ";
  EXPECT_EQ(errorOfColumn("Bolts", "ClampNormalForce"), begin + "Bolts/ClampNormalForce: " + columns +
                                                            "found \"ClampNormalForce\", whose kind is "
                                                            "BoltNormalForce");
  EXPECT_EQ(errorOfColumn("Bolts", "ClampClosngForce"),
            begin + "Bolts/ClampClosngForce: " + columns +
                "found \"ClampClosngForce\"; did you mean \"ClampClosingForce\"?");
  EXPECT_EQ(errorOfColumn("Bolts", ""), begin + "Bolts/: " + columns + "found \"\"");
  EXPECT_EQ(errorOfColumn("Pilots", "TotalToolForces"),
            begin +
                "Pilots/TotalToolForces: expected a column of Pilots without a kind of limit (none), found "
                "\"TotalToolForces\"");
}

TEST_F(LimitsTextTest, RefusesAKindThatAUnitHasNoLimitOf) {
  EXPECT_EQ(
      errorOf([&] { (void)limitsUnder(R"("all": {"limits": {"ClampClosingForce": 9}})"); }),
      "t.json: /all/limits/ClampClosingForce: expected a kind of limit that the unit \"OP20\" has (one of "
      "JoiningTongNormalForce, JoiningTongDistance, JoiningTongGap, LineJoiningToolDistanceToInput, "
      "JoinNormalForce, JoinTangentialForce, ForceLimit7, ForceLimit8, LineJoiningToolGap, PilotForce, "
      "BoltNormalForce, RollerForce, SteelForce, HemmingBedForce, SuctionZoneForce, SuctionDistance), "
      "found \"ClampClosingForce\"");
  EXPECT_THAT(
      errorOf([&] { (void)limitsUnder(R"("units": [{"name": "OP10", "limits": {"77": 9}}])"); }),
      testing::AllOf(testing::StartsWith("t.json: /units/0/limits/77: expected a kind of limit that "),
                     testing::EndsWith("found \"77\"")));
}

// ---- import

TEST_F(LimitsTextTest, ChangesTheLimitsOfADocument) {
  auto const limits = genDefaultLimits(m_file);
  setLimits(*limits, allUnits(), BoltNormalForce, 7);
  setLimits(*limits, allUnits(), PilotForce, 8);
  import(
      R"("all": {"columns": {"Clamps": {}}}, "units": [{"name": "OP20", "limits": {"BoltNormalForce": 9}}])",
      *limits);
  EXPECT_EQ(boltLimits(*limits), std::vector({9.0, 7.0, 9.0}));
  EXPECT_EQ(limits->getLimit(unitId(s_firstUnit), PilotForce)->getLimit(), 8.0);
}

TEST_F(LimitsTextTest, IsNotImportedWithMoreThanADocumentHolds) {
  auto const limits = genDefaultLimits(m_file);
  auto const errorOfImport = [&](std::string const& members) {
    return errorOf([&] { import(members, *limits); });
  };
  EXPECT_EQ(
      errorOfImport(R"("all": {"limits": {"BoltNormalForce": 9},
                             "columns": {"Clamps": {"ClampClosingForce": 900}}})"),
      "t.json: /all/columns/Clamps/ClampClosingForce: expected no limit of a column, which documents cannot "
      "hold, found 900");
  EXPECT_EQ(
      errorOfImport(R"("units": [{"name": "OP10"}, {"name": "OP20", "columns": {"Bolts":
                             {"ClampClosingForce": null}}}])"),
      "t.json: /units/1/columns/Bolts/ClampClosingForce: expected no limit of a column, which documents "
      "cannot hold, found nan");
  EXPECT_EQ(errorOfImport(R"("units": [{"name": "OP10"}, {"name": "OP99"}])"),
            "t.json: /units/1/name: expected the id or the name of one of the units of r.json (\"OP20\", "
            "\"OP10\"), found \"OP99\"");
  EXPECT_EQ(errorOfImport(R"("units": [{"id": "7d0e0d5c-70f2-4b2f-9a0b-6d7b5f0f9c11", "name": "OP10"}])"),
            "t.json: /units/0/id: expected the id or the name of one of the units of r.json (\"OP20\", "
            "\"OP10\"), found 7d0e0d5c-70f2-4b2f-9a0b-6d7b5f0f9c11");
  EXPECT_THAT(errorOfImport(R"("all": {"limits": {"ClampClosingForce": 9}})"),
              HasSubstr("expected a kind of limit that the unit \"OP20\" has"));
  EXPECT_EQ(boltLimits(*limits), std::vector({30.0, 30.0, 30.0}));
}

// ---- export

/// The limits of a document that holds these and no others of the units that they are of.
std::shared_ptr<TablePropertiesData> limitsOfADocument(ResultsFile const& file,
                                                       std::vector<WrittenLimit> const& written) {
  auto limits = loadDocument<TablePropertiesData>(LimitsWriter{.limits = written}.genDocument());
  limits->updateLimits(unitIdsOf(file));
  return limits;
}

TEST_F(LimitsTextTest, IsWrittenInTheOrderOfTheCollection) {
  auto const first = unitId(s_firstUnit);
  auto const second = unitId(s_secondUnit);
  ResultLimits limits{limitsOfADocument(
      m_file, {{24, first, 0.1, "N"}, {77, first, -0.0, ""}, {1, second, 2, "kN"}, {24, first, 9, "N"}})};
  limits.columns[first] = {{{DataType::Bolts, "ClampClosingForce"}, 5},
                           {{DataType::Clamps, "ClampTangentialForce"}, -s_infinity},
                           {{DataType::Clamps, "ClampClosingForce"}, s_infinity}};
  EXPECT_EQ(genLimitsText(limits, m_file, selectUnits(m_file, {s_firstUnit, s_secondUnit})), R"({
  "format": "limits",
  "version": 1,
  "units": [
    {
      "id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01",
      "name": "OP10",
      "limits": {
        "JoiningTongNormalForce": 2
      },
      "columns": {}
    },
    {
      "id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02",
      "name": "OP20",
      "limits": {
        "ClampClosingForce": 0.1,
        "77": -0
      },
      "columns": {
        "Clamps": {
          "ClampClosingForce": "Infinity",
          "ClampTangentialForce": "-Infinity"
        },
        "Bolts": {
          "ClampClosingForce": 5
        }
      }
    }
  ]
}
)");
  EXPECT_EQ(genLimitsText(limits, m_file, {}),
            "{\n  \"format\": \"limits\",\n  \"version\": 1,\n  \"units\": []\n}\n");
}

TEST_F(LimitsTextTest, BringsTheLimitsOfColumnsBack) {
  auto const limits =
      limitsUnder(R"("all": {"columns": {"LineWelds": {"LineJoinSumForceT": 0.1}, "Rollers": {}}})");
  auto const text = genLimitsText(limits, m_file, allUnits());
  auto const again = genLimits(readLimitsText("t.json", text), m_file);
  EXPECT_THAT(again.columns.at(unitId(s_thirdUnit)),
              ElementsAre(Pair(Pair(DataType::LineWelds, "LineJoinSumForceT"), 0.1)));
  EXPECT_EQ(genLimitsText(again, m_file, allUnits()), text);
}

/// Doubles of all magnitudes and the special ones.
class Doubles {
 public:
  double next() {
    static std::vector<std::uint64_t> const special = {
        0x0000000000000000, 0x8000000000000000, 0x7FF0000000000000, 0xFFF0000000000000, 0x7FF8000000000000,
        0xFFF80000DEADBEEF, 0x7FF0000000000001, 0x0000000000000001, 0x800FFFFFFFFFFFFF, 0x7FEFFFFFFFFFFFFF,
        0x0010000000000000, 0x3FB999999999999A, 0x4340000000000000};
    auto const bits = m_random();
    return std::bit_cast<double>(bits % 2 == 0 ? special[bits / 2 % special.size()] : m_random());
  }

 private:
  std::mt19937_64 m_random{20'261'122};
};

/// What a text keeps of a double: all bits, but of a NaN only that it is none.
std::uint64_t keptBits(double value) {
  return std::isnan(value) ? 0x7FF8000000000000 : std::bit_cast<std::uint64_t>(value);
}

TEST_F(LimitsTextTest, BringsEveryLimitBackToTheBit) {
  Doubles doubles;
  for (int i = 0; i < 300 && !HasFailure(); ++i) {
    SCOPED_TRACE(i);
    ResultLimits const limits{
        limitsOfADocument(m_file, {{77, unitId(s_secondUnit), 1, ""}, {24, unitId(s_secondUnit), 1, "N"}})};
    ResultLimits const imported{
        limitsOfADocument(m_file, {{24, unitId(s_secondUnit), 2, "N"}, {77, unitId(s_secondUnit), 2, ""}})};
    auto const& collection = *limits.collection;
    for (std::size_t child = 0; child < collection.getChildCount(); ++child)
      std::dynamic_pointer_cast<TablePropertyLimit>(collection.getChild(child))->setLimit(doubles.next());

    auto const text = readLimitsText("t.json", genLimitsText(limits, m_file, allUnits()));
    checkForImport(text, m_file);
    importLimits(text, m_file, *imported.collection);

    for (auto const& listed : listLimits(collection, m_file, allUnits())) {
      auto const& limit = *listed.limit;
      auto const read = imported.collection->getLimit(limit.getSimUnitID(), limit.getType());
      EXPECT_EQ(std::bit_cast<std::uint64_t>(read->getLimit()), keptBits(limit.getLimit()))
          << static_cast<unsigned int>(limit.getType());
    }
  }
}

}  // namespace
}  // namespace Kestrel::ResultTables

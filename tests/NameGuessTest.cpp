#include "result_tables/import/NameGuess.h"

#include <gtest/gtest.h>

namespace Kestrel::ResultTables {
namespace {

using enum HistoryRole;
using Kind = ToolForceDataType;

HistoryGuess guess(std::string const& entity, std::string const& quantity, std::string const& component,
                   std::string const& unit = "") {
  HistoryTable table{entity, quantity, {component}, {}, {}, {}};
  if (!unit.empty()) table.units = {unit};
  return guessHistory({&table, 0});
}

TEST(NameGuess, FindsUnitToolAndPartInTheNameOfAnEntity) {
  struct {
    char const* entity;
    char const* unit;
    char const* tool;
    HistoryRole part;
  } const cases[] = {
      {"C1_TIP", "", "C1", closingForce},
      {"C1_REST", "", "C1", supportingForce},
      {"CLAMP_12_UPPER", "", "CLAMP_12", closingForce},
      {"OP10_C1_TIP", "OP10", "C1", closingForce},
      {"st3.W04", "st3", "W04", none},
      {"OP10", "", "OP10", none},
      {"OPAL10", "", "OPAL10", none},
      {"P1_4WAY", "", "P1", none},
      {"BOTTOM", "", "BOTTOM", none},
      {"LEFT_PUNCH", "", "LEFT_PUNCH", none},
      {"PUNCH_LOWER", "", "PUNCH", supportingForce},
      {"TIP", "", "TIP", none},
      {"Klemme ä", "", "Klemme ä", none},
      {"__", "", "", none},
  };
  for (auto const& c : cases) {
    auto const guessed = guess(c.entity, "forces", "fz");
    EXPECT_EQ(guessed.unit, c.unit) << c.entity;
    EXPECT_EQ(guessed.tool, c.tool) << c.entity;
    EXPECT_EQ(guessed.part, c.part) << c.entity;
  }
}

TEST(NameGuess, TakesTheRoleFromTheNamesOfQuantityAndComponent) {
  EXPECT_EQ(guess("A", "forces", "fx").role, x);
  EXPECT_EQ(guess("A", "total force", "fz").role, z);
  EXPECT_EQ(guess("A", "displacements", "vz").role, normalDisplacement);
  EXPECT_EQ(guess("A", "velocities", "vz").role, none);
  EXPECT_EQ(guess("A", "moments", "fx").role, none);
  EXPECT_EQ(guess("A", "stresses", "gap").role, none);
  EXPECT_EQ(guess("A", "", "Normal Force").role, normalForce);
  EXPECT_EQ(guess("A", "", "closing_force").role, closingForce);
  EXPECT_EQ(guess("A", "", "temperature").role, none);
}

TEST(NameGuess, SplitsTheNameOfAColumn) {
  struct {
    char const* column;
    char const* tool;
    HistoryRole role;
  } const cases[] = {
      {"C1.fz", "C1", z},
      {"punch force", "punch", force},
      {"C1_closing", "C1", closingForce},
      {"C1.unknown", "C1", none},
      {"punch speed", "punch speed", none},
      {"OP10.C1.fz", "C1", z},
      {"fz", "", z},
      {"left", "left", none},
  };
  for (auto const& c : cases) {
    auto const guessed = guess("", "", c.column);
    EXPECT_EQ(guessed.tool, c.tool) << c.column;
    EXPECT_EQ(guessed.role, c.role) << c.column;
  }
}

TEST(NameGuess, KnowsTheQuantitiesOfResultsFiles) {
  EXPECT_EQ(guess("A", "", "clampClosingForce").key, "ClampClosingForce");
  EXPECT_EQ(guess("", "", "A.JoinForceN").key, "JoinForceN");
  EXPECT_EQ(guess("A", "forces", "fz").key, "");
  EXPECT_EQ(toolKindOfQuantity("ClampClosingForce"), Kind::clamp);
  EXPECT_EQ(toolKindOfQuantity("SuctionDistance"), Kind::suctionZone);
  EXPECT_EQ(toolKindOfQuantity("Speed"), Kind::tool);
}

TEST(NameGuess, TakesPhysicalUnitsIntoAccount) {
  EXPECT_EQ(guess("A", "", "force", "kN").scale, 1000);
  EXPECT_EQ(guess("A", "", "gap", "m").scale, 1000);
  EXPECT_EQ(guess("A", "", "force", "MN").scale, 1e6);
  EXPECT_EQ(guess("A", "", "force", "lbf").scale, 1);
  EXPECT_EQ(guess("A", "", "force", "N").role, force);
  EXPECT_EQ(guess("A", "", "force", "mm").role, none) << "a distance that is called so";
  EXPECT_EQ(guess("A", "", "gap", "N").role, none);
  EXPECT_EQ(guess("", "", "left", "kN").role, force) << "what else";
  EXPECT_EQ(guess("", "", "left", "mm").role, none);
}

TEST(NameGuess, FindsTheKindOfATool) {
  struct {
    char const* tool;
    std::optional<Kind> kind;
  } const cases[] = {
      {"C1", Kind::clamp},        {"CLAMP_LEFT", Kind::clamp}, {"left clamp", Kind::clamp},
      {"C", std::nullopt},        {"C_1", Kind::clamp},        {"P2", Kind::pilot},
      {"Pilots", Kind::pilot},    {"B3", Kind::bolt},          {"W01", Kind::spotWeld},
      {"Weld 7", Kind::spotWeld}, {"tong", Kind::joiningTong}, {"SUCTION4", Kind::suctionZone},
      {"CUP", Kind::suctionZone}, {"punch", std::nullopt},     {"D01", std::nullopt},
      {"", std::nullopt},
  };
  for (auto const& c : cases) EXPECT_EQ(guessToolKind(c.tool), c.kind) << c.tool;
}

TEST(NameGuess, FindsTheFamilyOfATool) {
  EXPECT_EQ(guessToolFamily("ROLLER_2"), "Rollers");
  EXPECT_EQ(guessToolFamily("hemming steel"), "Steels");
  EXPECT_EQ(guessToolFamily("HemBed"), "HemmingBed");
  EXPECT_EQ(guessToolFamily("left"), "ClampingTools");
}

}  // namespace
}  // namespace Kestrel::ResultTables

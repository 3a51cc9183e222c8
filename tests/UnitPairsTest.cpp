#include "result_tables/results/UnitPairs.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/ImportTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;

/// A file whose units are named as "1 OP10" says, by the last digit of their identifiers and their names.
ResultsFile fileOf(std::string const& name, std::vector<std::string> const& units) {
  std::string text;
  for (auto const& unit : units) {
    text += fmt::format(R"({}{{"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a0{}", "name": "{}"}})",
                        text.empty() ? "" : ", ", unit.front(), unit.substr(2));
  }
  return readResults(name, R"({"format": "simulation-results", "version": 1, "units": [)" + text + "]}");
}

std::string shown(ResultsFile const& file, std::optional<std::size_t> index) {
  if (!index) return "-";
  auto const& unit = *file.units[*index].unit;
  return unit.getID().toString().substr(35) + ' ' + unit.getSimulationUnitName();
}

std::vector<std::string> shown(ResultsFile const& before, ResultsFile const& after,
                               std::vector<IndexPair> const& pairs) {
  std::vector<std::string> lines;
  lines.reserve(pairs.size());
  for (auto const& pair : pairs)
    lines.push_back(shown(before, pair.before) + " = " + shown(after, pair.after));
  return lines;
}

std::vector<std::string> pairsOf(std::vector<std::string> const& before,
                                 std::vector<std::string> const& after) {
  auto const first = fileOf("before.json", before);
  auto const second = fileOf("after.json", after);
  return shown(first, second, pairUnits(namedUnitsOf(first), namedUnitsOf(second)));
}

TEST(UnitPairs, AreUnitsOfOneIdWhateverTheirNamesAndOrder) {
  EXPECT_THAT(pairsOf({"1 OP10", "2 OP20"}, {"2 OP10", "1 OP30"}),
              ElementsAre("1 OP10 = 1 OP30", "2 OP20 = 2 OP10"));
}

TEST(UnitPairs, AreOfOneNameWhereNoIdFits) {
  EXPECT_THAT(pairsOf({"1 OP10", "2 OP20"}, {"3 OP20", "4 OP10"}),
              ElementsAre("1 OP10 = 4 OP10", "2 OP20 = 3 OP20"));
}

TEST(UnitPairs, AreOfANameThatOnlyOneOfTheLeftOverUnitsOfEachFileHas) {
  EXPECT_THAT(
      pairsOf({"1 OP10", "2 OP10", "3 OP20"}, {"4 OP10", "5 OP20", "6 OP20"}),
      ElementsAre("1 OP10 = -", "2 OP10 = -", "3 OP20 = -", "- = 4 OP10", "- = 5 OP20", "- = 6 OP20"));
  EXPECT_THAT(pairsOf({"1 OP10", "2 OP10"}, {"1 OP10", "4 OP10"}),
              ElementsAre("1 OP10 = 1 OP10", "2 OP10 = 4 OP10"))
      << "one that is paired by its id is not left over";
}

TEST(UnitPairs, EndWithTheUnitsOfTheSecondFileAlone) {
  EXPECT_THAT(pairsOf({"1 OP10", "2 OP20"}, {"4 OP40", "2 OP20", "3 OP30"}),
              ElementsAre("1 OP10 = -", "2 OP20 = 2 OP20", "- = 4 OP40", "- = 3 OP30"));
  EXPECT_THAT(pairsOf({}, {"1 OP10"}), ElementsAre("- = 1 OP10"));
}

class SelectedUnitPairs : public testing::Test {
 protected:
  [[nodiscard]] std::vector<std::string> select(std::vector<std::string> const& wanted) const {
    return shown(m_before, m_after, selectUnitPairs(namedUnitsOf(m_before), namedUnitsOf(m_after), wanted));
  }

  ResultsFile const m_before = fileOf("before.json", {"1 OP10", "2 OP20", "3 OP30"});
  ResultsFile const m_after = fileOf("after.json", {"4 OP40", "2 OP21", "1 OP10"});
};

TEST_F(SelectedUnitPairs, AreThoseOfWhichOneFileKnowsTheIdOrTheName) {
  EXPECT_THAT(select({"OP21", "OP10"}), ElementsAre("1 OP10 = 1 OP10", "2 OP20 = 2 OP21"));
  EXPECT_THAT(select({"OP20", "0B6F6D3E-6C1E-4A57-9B52-0F6F2F1B6A02"}), ElementsAre("2 OP20 = 2 OP21"));
  EXPECT_THAT(select({}), ElementsAre("1 OP10 = 1 OP10", "2 OP20 = 2 OP21", "3 OP30 = -", "- = 4 OP40"));
}

TEST_F(SelectedUnitPairs, AreAnErrorOfTheFileThatLacksTheUnit) {
  EXPECT_EQ(
      errorOf([&] {
        return select({"OP10", "OP30"});
      }),
      "after.json: expected the id or the name of one of its units (\"OP40\", \"OP21\", \"OP10\"), found "
      "\"OP30\"");
  EXPECT_EQ(
      errorOf([&] { return select({"OP40"}); }),
      "before.json: expected the id or the name of one of its units (\"OP10\", \"OP20\", \"OP30\"), found "
      "\"OP40\"");
  EXPECT_EQ(errorOf([&] { return select({"OP99"}); }).substr(0, 12), "before.json:");
}

}  // namespace
}  // namespace Kestrel::ResultTables

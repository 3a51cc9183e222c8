#include "result_tables/results/UnitSelection.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "result_tables/base/Error.h"
#include "support/LimitsTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

class UnitSelection : public testing::Test {
 protected:
  [[nodiscard]] std::vector<std::string> select(std::vector<std::string> const& wanted) const {
    std::vector<std::string> ids;
    for (auto const* unit : selectUnits(m_file, wanted)) ids.push_back(unit->unit->getID().toString());
    return ids;
  }

  static std::string errorOf(ResultsFile const& file, std::vector<std::string> const& wanted) {
    try {
      (void)selectUnits(file, wanted);
      return "";
    } catch (Error const& error) {
      return error.what();
    }
  }

  ResultsFile const m_file = readResults("r.json", s_resultsOfThreeUnits);
};

TEST_F(UnitSelection, IsEveryUnitInTheFilesOrderWhenNoneIsWanted) {
  EXPECT_THAT(select({}), ElementsAre(s_firstUnit, s_secondUnit, s_thirdUnit));
}

TEST_F(UnitSelection, KeepsTheFilesOrderWhateverTheOrderOfTheWanted) {
  EXPECT_THAT(select({"OP10", "OP20"}), ElementsAre(s_firstUnit, s_secondUnit, s_thirdUnit));
  EXPECT_THAT(select({s_thirdUnit, s_firstUnit}), ElementsAre(s_firstUnit, s_thirdUnit));
}

TEST_F(UnitSelection, TakesEveryUnitOfAName) {
  EXPECT_THAT(select({"OP20"}), ElementsAre(s_firstUnit, s_thirdUnit));
}

TEST_F(UnitSelection, TakesAnIdInEitherCaseAndANameAsItIs) {
  EXPECT_THAT(select({"0B6F6D3E-6C1E-4A57-9B52-0F6F2F1B6A03"}), ElementsAre(s_thirdUnit));
  EXPECT_EQ(errorOf(m_file, {"op20"}),
            "r.json: expected the id or the name of one of its units (\"OP20\", \"OP10\"), found \"op20\"");
}

TEST_F(UnitSelection, TakesAUnitOnceHoweverOftenItIsWanted) {
  EXPECT_THAT(select({"OP10", s_secondUnit, "OP10"}), ElementsAre(s_secondUnit));
}

TEST_F(UnitSelection, ListsTheUnitsThatThereAreForOneThatIsUnknown) {
  EXPECT_EQ(errorOf(m_file, {"OP20", "OP99", "OP98"}),
            "r.json: expected the id or the name of one of its units (\"OP20\", \"OP10\"), found \"OP99\"");
  auto const empty = readResults("e.json", R"({"format": "simulation-results", "version": 1, "units": []})");
  EXPECT_EQ(errorOf(empty, {"OP10"}),
            "e.json: expected the id or the name of one of its units (none), found \"OP10\"");
  EXPECT_THAT(selectUnits(empty, {}), IsEmpty());
}

TEST_F(UnitSelection, ListsNoMoreThanTwentyNames) {
  auto const fileOf = [](int units) {
    std::string text;
    for (int i = 0; i < units; ++i)
      text += fmt::format(R"({}{{"id": "00000000-0000-0000-0000-0000000000{:02}", "name": "U{}"}})",
                          i > 0 ? "," : "", i, i);
    return readResults("r.json",
                       R"({"format": "simulation-results", "version": 1, "units": [)" + text + "]}");
  };
  EXPECT_THAT(errorOf(fileOf(20), {"U"}), EndsWith("\"U18\", \"U19\"), found \"U\""));
  EXPECT_THAT(errorOf(fileOf(21), {"U"}), EndsWith("\"U18\", \"U19\", …), found \"U\""));
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "result_tables/base/File.h"
#include "support/Shell.h"

// The program as a process, on prints of CalculiX.

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;
using testing::ElementsAre;

std::filesystem::path const s_data = KESTREL_SOURCE_DIR "/tests/data/import";

class ImportOfPrints : public testing::Test {
 protected:
  ImportOfPrints() {
    for (auto const* name : {"punches.dat", "load_cases.dat", "heat.dat", "elements.dat", "cube.dat"})
      std::filesystem::copy_file(s_data / name, m_folder.path() / name);
  }

  /// A map in which the clamp C has the series Q of one history, and the unit `members`.
  void writeMap(std::string const& history, std::string const& members = {}) {
    m_folder.write("map.json", R"({"format": "import-map", "version": 1, "units": [
      {"id": "5d1c1f0e-3f0a-4c1e-9c50-6a8f0b6f3a20", "name": "U", )" +
                                   members + R"("tools": [
        {"id": "C", "kind": "clamp", "series": [{"quantity": "Q", "sum": [{"history": ")" +
                                   history + R"("}]}]}]}]})");
  }
  [[nodiscard]] ShellResult import(std::string const& arguments,
                                   std::string const& language = "en_GB") const {
    return runShell(m_folder.path(),
                    "LANG=" + language + ".UTF-8 $P import calculix " + arguments + " --map map.json");
  }
  [[nodiscard]] static std::vector<double> valuesIn(ShellResult const& result) {
    auto const units = json::parse(result.out).at("units");
    return units.at(0).at("tools").at(0).at("series").at(0).at("values").get<std::vector<double>>();
  }

  TemporaryFolder m_folder;
};

TEST_F(ImportOfPrints, TakesTheStepThatTheCommandNames) {
  writeMap("TOP.fz", R"("step": 1, )");
  EXPECT_THAT(valuesIn(import("punches.dat")), ElementsAre(-1.009529e-15, -20.37268, -49.26945, -103.1304));
  EXPECT_THAT(valuesIn(import("punches.dat --step 2")), ElementsAre(-103.1385, -103.1386));
  EXPECT_THAT(valuesIn(import("punches.dat --step all")).size(), 6U);
  EXPECT_EQ(import("punches.dat --step all").err, "");
}

TEST_F(ImportOfPrints, TakesOneOfSeveralLoadCases) {
  writeMap("BOTTOM.fz");
  EXPECT_THAT(valuesIn(import("load_cases.dat")), ElementsAre(-10, 20, 20));
  EXPECT_THAT(valuesIn(import("load_cases.dat --step 2")), ElementsAre(20));
}

TEST_F(ImportOfPrints, TellsEachKindThatIsPassedOverInOneLine) {
  writeMap("LID.q");
  auto const english = import("heat.dat");
  EXPECT_EQ(english.exitCode, 0);
  EXPECT_EQ(english.err,
            "result-tables: heat.dat: line 39: passed over \"heat flux at the integration points for set "
            "LID\", which "
            "import does not know\n");
  EXPECT_THAT(valuesIn(english), ElementsAre(-1002.5));
  EXPECT_EQ(
      import("heat.dat", "de_DE").err,
      "result-tables: heat.dat: Zeile 39: \"heat flux at the integration points for set LID\" übergangen, "
      "das import nicht kennt\n");
  EXPECT_EQ(
      import("heat.dat", "ja_JP").err,
      "result-tables: heat.dat: 39 行: import が対応していない \"heat flux at the integration points for "
      "set LID\" を読み飛ばしました\n");
}

TEST_F(ImportOfPrints, RefusesTimesThatBeginAnewWhereNoStepIsNamed) {
  writeMap("TOP.fz");
  auto const result = import("punches.dat");
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err,
            "result-tables: map.json: /units/0/tools/0/series/0/sum/0/history: expected a member \"step\" of "
            "the unit "
            "or --step, as the times of \"TOP.total force fz\" begin anew, found none\n");
}

TEST_F(ImportOfPrints, RefusesStepsThatThereAreNot) {
  writeMap("TOP.fz");
  auto const errorOf = [this](std::string const& step) {
    auto const result = import("punches.dat --step " + step);
    EXPECT_EQ(result.exitCode, 2) << step;
    EXPECT_EQ(result.out, "") << step;
    return result.err;
  };
  EXPECT_EQ(errorOf("3"),
            "result-tables: map.json: /units/0/tools/0/series/0/sum/0/history: expected a history with "
            "values in step "
            "3, found \"TOP.total force fz\" with steps 1 to 2\n");
  for (auto const* step : {"last", "1.5", "-1", "4294967296", "", "2 "}) {
    EXPECT_EQ(errorOf("'" + std::string(step) + "'"),
              "result-tables: --step: expected the number of a step or \"all\", found \"" +
                  std::string(step) + "\"\n");
  }
}

TEST_F(ImportOfPrints, MakesMapsThatImportAsTheyStand) {
  for (auto const* name : {"punches", "load_cases", "heat", "elements", "cube"}) {
    auto const result = runShell(m_folder.path(),
                                 fmt::format("$P import calculix {0}.dat --make-map --output map.json && "
                                             "$P import calculix {0}.dat --map map.json --output {0}.json && "
                                             "$P show {0}.json --format json",
                                             name));
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_FALSE(json::parse(result.out).at("tables").empty()) << name;
  }
}

TEST_F(ImportOfPrints, ListsContactAndElements) {
  auto const result = runShell(m_folder.path(), "$P import calculix punches.dat --list --format json");
  auto const histories = json::parse(result.out).at("histories");
  auto const historyOf = [&histories](std::string const& name) {
    for (auto const& history : histories) {
      if (history.at("name") == name) return history;
    }
    ADD_FAILURE() << name;
    return json();
  };
  auto const pressure = historyOf("press");
  EXPECT_EQ(pressure.at("kind"), "contact stress");
  EXPECT_EQ(pressure.at("entities"), 56);
  EXPECT_EQ(pressure.at("count"), 224);
  EXPECT_EQ(pressure.at("max"), 360.6105);
  EXPECT_EQ(pressure.at("times"), 5);
  EXPECT_EQ(pressure.at("firstTime"), 0.5);
  EXPECT_EQ(pressure.at("lastTime"), 1);
  EXPECT_EQ(historyOf("PUNCHES.szz").at("entities"), 16);
  EXPECT_EQ(historyOf("LEFT/DIE.fz").at("count"), 6);
  EXPECT_EQ(historyOf("total number of contact elements").at("kind"), "total number of contact elements");
}

TEST_F(ImportOfPrints, TellsWhatIsPassedOverAlsoWhereAPrintIsShownOrChecked) {
  writeMap("LID.q");
  m_folder.write("bad.dat", "\n");
  constexpr auto note =
      "result-tables: heat.dat: line 39: passed over \"heat flux at the integration points for set LID\", "
      "which import "
      "does not know\n";
  constexpr auto error =
      "result-tables: bad.dat: expected blocks such as \"forces (fx,fy,fz) for set NAME and time T\", found "
      "none\n";
  for (auto const* command : {"show", "check --jobs 4"}) {
    auto const result =
        runShell(m_folder.path(), fmt::format("$P {} heat.dat bad.dat heat.dat --map map.json", command));
    EXPECT_EQ(result.exitCode, 2) << command;
    EXPECT_EQ(result.err, fmt::format("{}{}{}", note, error, note)) << command;
  }
}

TEST_F(ImportOfPrints, RefusesAStepWhereNothingIsImported) {
  auto const result = runShell(m_folder.path(), "$P import calculix punches.dat --list --step 2");
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.err, "result-tables: --step: expected --map beside it, found --list\n");
}

}  // namespace
}  // namespace Kestrel::ResultTables

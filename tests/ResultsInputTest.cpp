#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/PrintFixture.h"

// show and check of what a solver printed, with the program as a process.

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;
using testing::ElementsAre;

class ResultsInput : public PrintFixture {};

TEST_F(ResultsInput, IsShownAsIfItHadBeenImported) {
  auto const imported = [this](std::string const& import, std::string const& print) {
    EXPECT_EQ(outputOf("$P import " + import + " --map map.json --output r.json"), "");
    EXPECT_EQ(tablesOf(print), tablesOf("r.json")) << print;
    return tablesOf(print)
        .at(0)
        .at("groups")
        .at(0)
        .at("subGroups")
        .at(0)
        .at("items")
        .at(0)
        .at("maxValues")
        .at(0);
  };
  EXPECT_EQ(imported("csv trial.csv", "trial.csv --map map.json"), -812.5);
  EXPECT_EQ(imported("csv trial.csv", "- --from csv --map map.json <trial.csv"), -812.5);
  EXPECT_EQ(imported("csv comma.csv --decimal-comma", "comma.csv --map map.json --decimal-comma"), -812.5);
  EXPECT_EQ(imported("calculix print.dat", "print.dat --map map.json"), -40.5);
  EXPECT_EQ(outputOf("cp print.dat PRINT.DAT && cp print.dat print.csv && cp trial.csv trial"), "");
  EXPECT_EQ(imported("calculix print.dat", "PRINT.DAT --map map.json"), -40.5);
  EXPECT_EQ(imported("calculix print.dat", "print.csv --from calculix --map map.json"), -40.5);
  EXPECT_EQ(imported("csv trial.csv", "trial --from csv --map map.json"), -812.5);
}

TEST_F(ResultsInput, IsCalledAsItWasGiven) {
  auto const fileOf = [this](std::string const& print) {
    return json::parse(outputOf("$P show --format json --map map.json " + print))
        .at("tables")
        .at(0)
        .at("file");
  };
  EXPECT_EQ(fileOf("./trial.csv"), "./trial.csv");
  EXPECT_EQ(fileOf("- --from csv <trial.csv"), "-");
}

TEST_F(ResultsInput, IsCheckedWithTheLimitsBesideIt) {
  auto const limitsOf = [this](std::string const& file) {
    auto const findings = json::parse(outputOf("$P check --format json " + file, 1)).at("findings");
    std::vector<json> limits;
    for (auto const& finding : findings) limits.push_back(finding.at("limit"));
    return limits;
  };
  EXPECT_THAT(limitsOf("trial.csv --map map.json"), ElementsAre(30));
  EXPECT_EQ(outputOf("$P import csv trial.csv --map map.json --output r.json && "
                     "$P limits set r.json --unit U --type BoltNormalForce --value 600.5 && "
                     "mv r.json.limits trial.csv.limits"),
            "");
  EXPECT_THAT(limitsOf("trial.csv --map map.json"), ElementsAre(600.5)) << "the document beside the print";
  EXPECT_THAT(limitsOf("trial.csv print.dat --map map.json"), ElementsAre(600.5, 30));
}

TEST_F(ResultsInput, IsAPrintOnlyWithAMapAndAFormat) {
  for (std::string const command : {"show ", "check "}) {
    EXPECT_EQ(messageOf(command + "trial.csv --from csv"), "--from: expected --map beside it, found none");
    EXPECT_EQ(messageOf(command + "trial.csv --decimal-comma"),
              "--decimal-comma: expected --map beside it, found none");
    EXPECT_EQ(messageOf(command + "trial.csv --map map.json --from csw"),
              "--from: expected one of calculix, csv, found \"csw\"; did you mean \"csv\"?");
  }
  EXPECT_EQ(messageOf("show trial --map map.json"),
            "trial: expected a name that ends in .dat or .csv, or the format of the print behind --from");
  EXPECT_EQ(messageOf("show - --map map.json"),
            "standard input: expected a name that ends in .dat or .csv, or the format of the print behind "
            "--from");
  EXPECT_EQ(messageOf("show trial.csv --map none.json"), "none.json: cannot read: No such file or directory");
  EXPECT_EQ(messageOf("show none.csv --map map.json"), "none.csv: cannot read: No such file or directory");
  EXPECT_EQ(
      messageOf("show - --map map.json", "de_DE.UTF-8"),
      "Standardeingabe: erwartet: ein Name, der auf .dat oder .csv endet, oder das Format der Solverausgabe "
      "hinter --from");
  EXPECT_EQ(messageOf("show - --map map.json", "ja_JP.UTF-8"),
            "標準入力: 期待: .dat か .csv で終わる名前、または --from による形式");
}

}  // namespace
}  // namespace Kestrel::ResultTables

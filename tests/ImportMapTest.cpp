#include "result_tables/import/ImportMap.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "support/ImportTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;
using testing::Eq;
using testing::Optional;

constexpr double s_nan = std::numeric_limits<double>::quiet_NaN();
constexpr double s_infinity = std::numeric_limits<double>::infinity();

/// A unit with one clamp whose one series has `formula`.
std::string mapOfFormula(std::string_view formula) {
  return fmt::format(R"({{"format": "import-map", "version": 1, "units": [
      {{"id": "00000000-0000-0000-0000-000000000001", "name": "U",
        "tools": [{{"id": "C", "kind": "clamp", "series": [{{"quantity": "Q", {}}}]}}]}}]}})",
                     formula);
}

/// A unit with the spot weld "W", the tong "J" and `members`.
std::string mapOfUnit(std::string_view members) {
  return fmt::format(R"({{"format": "import-map", "version": 1, "units": [
      {{"id": "00000000-0000-0000-0000-000000000001", "name": "U",
        "tools": [{{"id": "W", "kind": "spotWeld"}}, {{"id": "J", "kind": "joiningTong"}}], {}}}]}})",
                     members);
}

class ImportMapOfAPrint : public testing::Test {
 protected:
  ImportMapOfAPrint() {
    m_histories.add(
        {"A", "forces", {"fx", "fy", "fz"}, {7}, {0, 1, 2}, {3, 4, 12, -0.5, 0, 0, s_nan, s_infinity, -1}});
    m_histories.add({"S", "forces", {"fx"}, {1, 2, 3}, {0, 1, 2}, {1, 2, 6, -1, -5, 2, s_nan, 0, 0}});
    m_histories.add({"S", "displacements", {"vx"}, {1, 2, 3}, {0, 1, 2}, {1, 2, 6, -1, -5, 2, 0, s_nan, 0}});
    m_histories.add({"T", "forces", {"fx"}, {1}, {0}, {1}});
    m_histories.add({"T", "total force", {"fx"}, {}, {0}, {2}});
    m_histories.add({"L", "forces", {"fx"}, {1}, {0, 1}, {1, 2}});
    m_histories.add({"M", "forces", {"fx"}, {1}, {0, 1.5, 2}, {1, 2, 3}});
    m_histories.add({"D", "forces", {"fx"}, {1}, {0, 1, 1, 2}, {1, 2, 3, 4}});
    HistoryTable elements{"E", "stresses", {"sxx"}, {}, {0, 1, 2}, {1, -5, 5, 2, 4, -4, 7, s_nan, -8}};
    elements.elementRows = {{1, 1}, {1, 2}, {2, 1}, {1, 1}, {1, 2}, {2, 1}, {1, 1}, {2, 1}, {3, 1}};
    elements.rowEnds = {3, 6, 9};
    m_histories.add(std::move(elements));
    HistoryTable steps{"R", "forces", {"fx"}, {1}, {1, 2, 1, 2, 2, 3}, {10, 20, 30, 40, 50, 60}};
    steps.steps = {1, 1, 2, 2, 4, 4};
    m_histories.add(std::move(steps));
    HistoryTable others{"Q", "forces", {"fx"}, {1}, {1, 2, 1, 2, 2, 3}, {1, 2, 3, 4, 5, 6}};
    others.steps = {1, 1, 1, 2, 2, 4};
    m_histories.add(std::move(others));
    m_histories.index();
  }

  ImportMap read(std::string const& text) { return readImportMap("m.json", text, m_histories); }
  std::string errorIn(std::string const& text) {
    return errorOf([&] { read(text); });
  }

  /// The values of a series with `formula`.
  std::vector<double> evaluate(std::string_view formula) {
    auto const map = read(mapOfFormula(formula));
    auto const& read = map.units.at(0).tools.at(0).series.at(0).formula;
    std::vector<double> values;
    for (std::size_t i = 0; i < read.times().size(); ++i) values.push_back(read.at(i));
    return values;
  }

  Histories m_histories{"p.dat"};
};

TEST_F(ImportMapOfAPrint, HasItsUnitsAndToolsInOrder) {
  auto const map = read(R"({"version": 1, "format": "import-map", "units": [
      {"id": "00000000-0000-0000-0000-00000000000A", "name": "first", "stepTimes": [null, 0.5, 1],
       "visibleSteps": {"last": 1, "first": 2},
       "toolGroupings": {"Rollers": [{"name": "left", "tools": ["R1"]}, {"name": "none", "tools": []}], "Steels": []},
       "tools": [{"id": "R1", "kind": "tool"}, {"id": "B1", "kind": "bolt"}]},
      {"id": "00000000-0000-0000-0000-000000000002", "name": ""}]})");
  ASSERT_EQ(map.units.size(), 2U);
  auto const& unit = map.units[0];
  EXPECT_EQ(unit.id.toString(), "00000000-0000-0000-0000-00000000000a");
  EXPECT_EQ(unit.name, "first");
  ASSERT_EQ(unit.stepTimes.size(), 3U);
  EXPECT_FALSE(unit.stepTimes[0].has_value());
  EXPECT_EQ(unit.stepTimes[1]->time, 0.5);
  EXPECT_EQ(unit.stepTimes[2]->time, 1.0);
  EXPECT_FALSE(unit.stepTimes[2]->step.has_value());
  ASSERT_TRUE(unit.visibleSteps.has_value());
  EXPECT_EQ(unit.visibleSteps->first, 2U);
  EXPECT_EQ(unit.visibleSteps->last, 1U);
  ASSERT_EQ(unit.tools.size(), 2U);
  EXPECT_EQ(unit.tools[0].id, "R1");
  EXPECT_EQ(unit.tools[0].kind, "tool");
  EXPECT_EQ(unit.tools[1].kind, "bolt");
  ASSERT_EQ(unit.toolGroupings.size(), 2U);
  EXPECT_EQ(unit.toolGroupings[0].first, "Rollers");
  ASSERT_EQ(unit.toolGroupings[0].second.size(), 2U);
  EXPECT_EQ(unit.toolGroupings[0].second[0].first, "left");
  EXPECT_THAT(unit.toolGroupings[0].second[0].second, ElementsAre("R1"));
  EXPECT_THAT(unit.toolGroupings[0].second[1].second, ElementsAre());
  EXPECT_EQ(unit.toolGroupings[1].first, "Steels");
  EXPECT_TRUE(unit.toolGroupings[1].second.empty());
  EXPECT_FALSE(map.units[1].visibleSteps.has_value());
  EXPECT_TRUE(map.units[1].tools.empty());
}

TEST_F(ImportMapOfAPrint, HasSeriesInBothForms) {
  auto const map = read(R"({"format": "import-map", "version": 1, "units": [
      {"id": "00000000-0000-0000-0000-000000000001", "name": "U", "tools": [{"id": "W", "kind": "spotWeld",
        "series": [{"quantity": "P", "form": "pairs", "sum": [{"history": "A.fx"}]},
                   {"form": "values", "sum": [{"history": "A.fy"}], "quantity": "V"},
                   {"quantity": "P", "sum": [{"history": "A.fz"}]}],
        "tangentialForce": {"form": "pairs", "norm": [{"history": "A.fz"}]}}]}]})");
  auto const& tool = map.units[0].tools[0];
  ASSERT_EQ(tool.series.size(), 3U);
  EXPECT_EQ(tool.series[0].quantity, "P");
  EXPECT_TRUE(tool.series[0].isPairs);
  EXPECT_EQ(tool.series[1].quantity, "V");
  EXPECT_FALSE(tool.series[1].isPairs);
  EXPECT_EQ(tool.series[2].quantity, "P");
  EXPECT_FALSE(tool.series[2].isPairs);
  ASSERT_TRUE(tool.tangentialForce.has_value());
  EXPECT_TRUE(tool.tangentialForce->isPairs);
  EXPECT_TRUE(tool.tangentialForce->formula.isNorm);
}

TEST_F(ImportMapOfAPrint, SumsScalesAndShifts) {
  EXPECT_THAT(evaluate(R"("sum": [{"history": "A.fz"}])"), ElementsAre(12, 0, -1));
  EXPECT_THAT(evaluate(R"("sum": [{"history": "A.fz", "scale": -1}])"), ElementsAre(-12, 0, 1));
  EXPECT_THAT(evaluate(R"("sum": [{"history": "A.fz", "offset": 0.25, "scale": 2}])"),
              ElementsAre(24.25, 0.25, -1.75));
  EXPECT_THAT(
      evaluate(
          R"("sum": [{"history": "A.fz"}, {"history": "A.fz", "scale": 0.5}, {"history": "A.forces fz"}])"),
      ElementsAre(30, 0, -2.5));
}

TEST_F(ImportMapOfAPrint, HasNoSignOnZero) {
  EXPECT_FALSE(std::signbit(evaluate(R"("sum": [{"history": "A.fz", "scale": -1}])")[1]));
}

TEST_F(ImportMapOfAPrint, TakesTheRootOfTheSumOfSquares) {
  auto const components = R"("norm": [{"history": "A.fx"}, {"history": "A.fy"}, {"history": "A.fz"}])";
  EXPECT_EQ(evaluate(components)[0], 13.0);
  EXPECT_EQ(evaluate(components)[1], 0.5);
  EXPECT_EQ(evaluate(R"("norm": [{"history": "A.fz", "scale": 2, "offset": -1}])")[2], 3.0);
}

TEST_F(ImportMapOfAPrint, NormsOfVeryLargeAndVerySmallComponentsDoNotOverflow) {
  EXPECT_EQ(
      evaluate(R"("norm": [{"history": "A.fx", "scale": 1e300}, {"history": "A.fy", "scale": 1e300}])")[0],
      5e300);
  EXPECT_EQ(
      evaluate(R"("norm": [{"history": "A.fx", "scale": 1e-300}, {"history": "A.fy", "scale": 1e-300}])")[0],
      5e-300);
}

TEST_F(ImportMapOfAPrint, KeepsNotANumberAndInfinity) {
  EXPECT_TRUE(std::isnan(evaluate(R"("sum": [{"history": "A.fx"}, {"history": "A.fz"}])")[2]));
  EXPECT_EQ(evaluate(R"("sum": [{"history": "A.fy", "scale": -1}])")[2], -s_infinity);
}

TEST_F(ImportMapOfAPrint, AddsUpTheForcesOnTheNodesOfASet) {
  auto const values = evaluate(R"("sum": [{"history": "S.fx"}])");
  EXPECT_EQ(values[0], 9);
  EXPECT_EQ(values[1], -4);
  EXPECT_TRUE(std::isnan(values[2]));
}

TEST_F(ImportMapOfAPrint, TakesWhatItSaysOfTheNodesOfASet) {
  auto const values = [this](std::string_view node) {
    auto found = evaluate(fmt::format(R"("sum": [{{"history": "S.vx", "node": {}}}])", node));
    EXPECT_TRUE(std::isnan(found.back())) << node;
    found.pop_back();
    return found;
  };
  EXPECT_THAT(values("2"), ElementsAre(2, -5));
  EXPECT_THAT(values(R"("sum")"), ElementsAre(9, -4));
  EXPECT_THAT(values(R"("mean")"), ElementsAre(3, -4.0 / 3.0));
  EXPECT_THAT(values(R"("min")"), ElementsAre(1, -5));
  EXPECT_THAT(values(R"("max")"), ElementsAre(6, 2));
  EXPECT_EQ(evaluate(R"("sum": [{"history": "S.vx", "node": 3}])")[2], 0);
}

TEST_F(ImportMapOfAPrint, ReducesTheRowsOfElements) {
  auto const values = [this](std::string_view members) {
    auto found = evaluate(fmt::format(R"("sum": [{{"history": "E.sxx", {}}}])", members));
    EXPECT_EQ(found.size(), 3U);
    found.resize(2);
    return found;
  };
  EXPECT_THAT(values(R"("reduce": "maxAbs")"), ElementsAre(-5, 4));
  EXPECT_THAT(values(R"("reduce": "mean")"), ElementsAre(1.0 / 3.0, 2.0 / 3.0));
  EXPECT_THAT(values(R"("reduce": "min")"), ElementsAre(-5, -4));
  EXPECT_THAT(values(R"("reduce": "max")"), ElementsAre(5, 4));
  EXPECT_THAT(values(R"("reduce": "sum")"), ElementsAre(1, 2));
  EXPECT_THAT(values(R"("element": 1, "reduce": "mean")"), ElementsAre(-2, 3));
  EXPECT_THAT(values(R"("point": 1, "reduce": "maxAbs", "scale": 2, "offset": 1)"), ElementsAre(11, -7));
  EXPECT_TRUE(std::isnan(evaluate(R"("sum": [{"history": "E.sxx", "reduce": "maxAbs"}])")[2]));
  EXPECT_TRUE(std::isnan(evaluate(R"("sum": [{"history": "E.sxx", "element": 2}])")[2]));
  EXPECT_EQ(evaluate(R"("sum": [{"history": "E.sxx", "element": 1, "point": 1}])"),
            (std::vector<double>{1, 2, 7}));
}

/// A unit with one clamp whose one series has `formula`, taken from the steps `step`.
std::string mapOfStep(std::string_view step, std::string_view formula) {
  return fmt::format(R"({{"format": "import-map", "version": 1, "units": [
      {{"id": "00000000-0000-0000-0000-000000000001", "name": "U",
        "tools": [{{"id": "C", "kind": "clamp", "series": [{{"quantity": "Q", {}}}]}}], "step": {}}}]}})",
                     formula, step);
}

TEST_F(ImportMapOfAPrint, TakesAUnitFromTheStepsThatItNames) {
  auto const evaluateIn = [this](std::string_view step, std::optional<ImportSteps> const& steps = {}) {
    auto const map =
        readImportMap("m.json", mapOfStep(step, R"("sum": [{"history": "R.fx"}])"), m_histories, steps);
    auto const& formula = map.units.at(0).tools.at(0).series.at(0).formula;
    std::vector<std::pair<double, double>> values;
    for (std::size_t i = 0; i < formula.times().size(); ++i)
      values.emplace_back(formula.times()[i], formula.at(i));
    return values;
  };
  using Values = std::vector<std::pair<double, double>>;
  EXPECT_EQ(evaluateIn("1"), (Values{{1, 10}, {2, 20}}));
  EXPECT_EQ(evaluateIn("2"), (Values{{1, 30}, {2, 40}}));
  EXPECT_EQ(evaluateIn("4"), (Values{{2, 50}, {3, 60}}));
  EXPECT_EQ(evaluateIn(R"("all")"), (Values{{1, 10}, {2, 20}, {1, 30}, {2, 40}, {2, 50}, {3, 60}}));
  EXPECT_EQ(evaluateIn("1", ImportSteps{4}), (Values{{2, 50}, {3, 60}}));
  EXPECT_EQ(evaluateIn("1", ImportSteps{}).size(), 6U);
}

TEST_F(ImportMapOfAPrint, FindsAValueByStepAndTime) {
  auto const map = read(mapOfStep(R"("all")", R"("sum": [{"history": "R.fx"}])"));
  auto const& formula = map.units[0].tools[0].series[0].formula;
  EXPECT_THAT(formula.indexOf({2}), Optional(4U));
  EXPECT_THAT(formula.indexOf({1}), Optional(2U));
  EXPECT_THAT(formula.indexOf({2, 1}), Optional(1U));
  EXPECT_THAT(formula.indexOf({2, 2}), Optional(3U));
  EXPECT_EQ(formula.indexOf({3, 2}), std::nullopt);
  EXPECT_EQ(formula.indexOf({2, 3}), std::nullopt);
  auto const ofOneStep = read(mapOfStep("2", R"("sum": [{"history": "R.fx"}])"));
  EXPECT_THAT(ofOneStep.units[0].tools[0].series[0].formula.indexOf({2}), Optional(1U));
}

TEST_F(ImportMapOfAPrint, HasStepTimesWithTheirSteps) {
  auto const map =
      read(mapOfUnit(R"("stepTimes": [{"step": 2, "time": 0.5}, null, {"time": -1, "step": 0}])"));
  auto const& times = map.units[0].stepTimes;
  ASSERT_EQ(times.size(), 3U);
  EXPECT_EQ(times[0]->time, 0.5);
  EXPECT_EQ(times[0]->step, 2U);
  EXPECT_EQ(times[2]->time, -1);
  EXPECT_EQ(times[2]->step, 0U);
}

TEST_F(ImportMapOfAPrint, RefusesStepsThatDoNotFit) {
  struct {
    std::string map;
    char const* message;
  } const cases[] = {
      {mapOfFormula(R"("sum": [{"history": "A.fx"}, {"history": "R.fx"}])"),
       R"(/tools/0/series/0/sum/1/history: expected a member "step" of the unit or --step, as the times of "R.forces fx" begin anew, found none)"},
      {mapOfStep("3", R"("norm": [{"history": "R.fx"}])"),
       R"(/tools/0/series/0/norm/0/history: expected a history with values in step 3, found "R.forces fx" with steps 1 to 4)"},
      {mapOfStep("1", R"("sum": [{"history": "A.fx"}])"),
       R"(/tools/0/series/0/sum/0/history: expected a history with values in step 1, found "A.forces fx" with no steps)"},
      {mapOfStep(R"("all")", R"("sum": [{"history": "R.fx"}, {"history": "Q.fx"}])"),
       "/tools/0/series/0/sum/1: expected the times of the first term (6 times from 1 to 3), found the same "
       "times in other steps"},
      {mapOfStep("1", R"("sum": [{"history": "R.fx"}, {"history": "Q.fx"}])"),
       "/tools/0/series/0/sum/1: expected the times of the first term (2 times from 1 to 2), found 3 times "
       "from 1 to 1"},
      {mapOfStep(R"("each")", R"("sum": [{"history": "R.fx"}])"),
       R"(/step: expected the number of a step or "all", found "each")"},
      {mapOfStep("-1", R"("sum": [{"history": "R.fx"}])"),
       R"(/step: expected the number of a step or "all", found -1)"},
      {mapOfUnit(R"("stepTimes": [{"step": 2}])"), R"(/stepTimes/0: expected a member "time", found none)"},
      {mapOfUnit(
           R"("stepTimes": [0], "lineJoins": [{"guid": "00000000-0000-0000-0000-000000000012", "id": "L",
          "name": "Line", "states": [1], "simulationUnitJoin": "00000000-0000-0000-0000-0000000000aa",
          "skins": {"a/b": [{"sum": [{"history": "R.fx"}]}]}}])"),
       R"(/lineJoins/0/skins/a~1b/0/sum/0/history: expected a member "step" of the unit or --step, as the times of "R.forces fx" begin anew, found none)"},
  };
  for (auto const& c : cases) EXPECT_EQ(errorIn(c.map), "m.json: /units/0" + std::string(c.message)) << c.map;
}

TEST_F(ImportMapOfAPrint, HasTheRecordsOfTheSteps) {
  auto const map = read(mapOfUnit(R"("stepTimes": [null, 0, 1],
      "joinsDefinedInUnit": ["00000000-0000-0000-0000-0000000000aa"],
      "suctionZones": [{"guid": "00000000-0000-0000-0000-000000000010", "name": "Z", "active": [null, false, true]}],
      "joiningTongs": [{"id": "J", "name": "Tong", "states": [null, 0, 4294967295]}],
      "joins": [{"guid": "00000000-0000-0000-0000-000000000011", "id": "W", "name": "Weld", "states": [null, null, 9]}],
      "lineJoins": [{"guid": "00000000-0000-0000-0000-000000000012", "id": "L", "name": "Line", "states": [null, 1, 2],
                     "simulationUnitJoin": "00000000-0000-0000-0000-0000000000AA",
                     "skins": {"Gap": [{"sum": [{"history": "A.fx"}]}, {"norm": [{"history": "D.fx"}]}],
                               "Force": [{"sum": [{"history": "L.fx"}]}]}}])"));
  auto const& unit = map.units[0];
  ASSERT_EQ(unit.joinsDefinedInUnit.size(), 1U);
  EXPECT_EQ(unit.joinsDefinedInUnit[0].toString(), "00000000-0000-0000-0000-0000000000aa");
  EXPECT_EQ(unit.suctionZones.at(0).name, "Z");
  EXPECT_THAT(unit.suctionZones[0].states, ElementsAre(Eq(std::nullopt), Optional(0U), Optional(1U)));
  EXPECT_EQ(unit.joiningTongs.at(0).id, "J");
  EXPECT_THAT(unit.joiningTongs[0].states,
              ElementsAre(Eq(std::nullopt), Optional(0U), Optional(4294967295U)));
  EXPECT_EQ(unit.joins.at(0).guid.toString(), "00000000-0000-0000-0000-000000000011");
  EXPECT_THAT(unit.joins[0].states, ElementsAre(Eq(std::nullopt), Eq(std::nullopt), Optional(9U)));
  auto const& lineJoin = unit.lineJoins.at(0);
  EXPECT_EQ(lineJoin.simulationUnitJoin.toString(), "00000000-0000-0000-0000-0000000000aa");
  ASSERT_EQ(lineJoin.skins.size(), 2U);
  EXPECT_EQ(lineJoin.skins[0].first, "Gap");
  ASSERT_EQ(lineJoin.skins[0].second.size(), 2U);
  EXPECT_TRUE(lineJoin.skins[0].second[1].isNorm);
  EXPECT_EQ(lineJoin.skins[1].first, "Force");
}

TEST_F(ImportMapOfAPrint, FindsTheLastValueAtATime) {
  auto const map = read(mapOfFormula(R"("sum": [{"history": "D.fx"}])"));
  auto const& formula = map.units[0].tools[0].series[0].formula;
  EXPECT_THAT(formula.indexOf({0}), Optional(0U));
  EXPECT_THAT(formula.indexOf({1}), Optional(2U));
  EXPECT_THAT(formula.indexOf({2}), Optional(3U));
  EXPECT_EQ(formula.indexOf({-1}), std::nullopt);
  EXPECT_EQ(formula.indexOf({1.0000000000000002}), std::nullopt);
  EXPECT_EQ(formula.indexOf({3}), std::nullopt);
}

struct BadText {
  std::string_view text;
  std::string_view message;  ///< after the file's name
};

TEST_F(ImportMapOfAPrint, RefusesBadDocuments) {
  BadText const cases[] = {
      {"", "line 1, column 1: expected a JSON document, found the end of the file"},
      {"[]", "document: expected an object, found an array"},
      {"{}", "document: expected a member \"format\", found none"},
      {R"({"format": "simulation-results"})",
       R"(/format: expected "import-map", found "simulation-results")"},
      {R"({"format": "import-map", "version": 2})", "/version: expected version 1, found version 2"},
      {R"({"format": "import-map", "version": 1, "unit": []})",
       R"(/unit: expected one of the members format, version, units, found "unit")"},
      {R"({"format": "import-map", "version": 1, "units": []})",
       "/units: expected at least one unit, found none"},
      {R"({"format": "import-map", "version": 1, "units": [{"id": "1", "name": "U"}]})",
       R"(/units/0/id: expected a UUID of 8-4-4-4-12 hexadecimal digits, found "1")"},
      {R"({"format": "import-map", "version": 1, "units": [{"id": "00000000-0000-0000-0000-00000000000a", "name": "U"},
                                                           {"id": "00000000-0000-0000-0000-00000000000A", "name": "V"}]})",
       "/units/1/id: expected an identifier that is unique in the file, found "
       "00000000-0000-0000-0000-00000000000a"},
  };
  for (auto const& c : cases)
    EXPECT_EQ(errorIn(std::string(c.text)), "m.json: " + std::string(c.message)) << c.text;
}

TEST_F(ImportMapOfAPrint, RefusesBadFormulas) {
  BadText const cases[] = {
      {R"("form": "values")", R"(: expected exactly one of "sum" and "norm", found none)"},
      {R"("sum": [{"history": "A.fx"}], "norm": [{"history": "A.fx"}])",
       R"(: expected exactly one of "sum" and "norm", found both)"},
      {R"("sum": [])", "/sum: expected at least one term, found none"},
      {R"("norm": [])", "/norm: expected at least one term, found none"},
      {R"("sum": ["A.fx"])", R"(/sum/0: expected an object, found "A.fx")"},
      {R"("sum": [{"scale": 2}])", R"(/sum/0: expected a member "history", found none)"},
      {R"("sum": [{"history": "A.fx", "sign": -1}])",
       R"(/sum/0/sign: expected one of the members history, node, element, point, reduce, scale, offset, found "sign")"},
      {R"("sum": [{"history": "A.fx", "scale": "-1"}])", R"(/sum/0/scale: expected a number, found "-1")"},
      {R"("sum": [{"history": "A.fx", "offset": null}])", "/sum/0/offset: expected a number, found null"},
      {R"("form": "pair", "sum": [])", R"(/form: expected "values" or "pairs", found "pair")"},
      {R"("sum": [{"history": "A.fx"}, {"history": "A.fw"}])",
       R"(/sum/1/history: expected a history of p.dat ("A.fx", "A.fy", "A.fz"), found "A.fw")"},
      {R"("sum": [{"history": "a.fx"}])",
       R"(/sum/0/history: expected a history of p.dat ("A.fx", "A.fy", "A.fz", "S.fx", "S.vx", "T.forces fx", "T.total force fx", "L.fx", … (13 in all)), found "a.fx")"},
      {R"("sum": [{"history": "T.fx"}])",
       R"(/sum/0/history: expected "T.forces fx" or "T.total force fx", found "T.fx")"},
      {R"("sum": [{"history": "S.vx"}])",
       R"(/sum/0: expected a member "node" (the number of a node, "sum", "mean", "min" or "max") for the 3 nodes of set "S", found none)"},
      {R"("sum": [{"history": "S.vx", "node": 4}])",
       R"(/sum/0/node: expected one of the 3 nodes of set "S", found 4)"},
      {R"("sum": [{"history": "S.vx", "node": "last"}])",
       R"(/sum/0/node: expected the number of a node, "sum", "mean", "min" or "max", found "last")"},
      {R"("sum": [{"history": "S.vx", "node": -1}])",
       R"(/sum/0/node: expected the number of a node, "sum", "mean", "min" or "max", found -1)"},
      {R"("sum": [{"history": "T.total force fx", "node": "sum"}])",
       R"(/sum/0: expected no "node" for a history without nodes, found one)"},
      {R"("sum": [{"history": "E.sxx"}])",
       R"(/sum/0: expected a member "reduce" ("sum", "mean", "min", "max" or "maxAbs") for 3 rows of "E.stresses sxx", found none)"},
      {R"("sum": [{"history": "E.sxx", "element": 1}])",
       R"(/sum/0: expected a member "reduce" ("sum", "mean", "min", "max" or "maxAbs") for 2 rows of "E.stresses sxx", found none)"},
      {R"("sum": [{"history": "E.sxx", "element": 3}])",
       "/sum/0: expected a row of this element and point at each time, found none at time 0"},
      {R"("sum": [{"history": "E.sxx", "element": 1, "point": 2}])",
       "/sum/0: expected a row of this element and point at each time, found none at time 2"},
      {R"("sum": [{"history": "E.sxx", "reduce": "median"}])",
       R"(/sum/0/reduce: expected "sum", "mean", "min", "max" or "maxAbs", found "median")"},
      {R"("sum": [{"history": "E.sxx", "node": 1}])",
       R"(/sum/0: expected no "node" for a history without nodes, found one)"},
      {R"("sum": [{"history": "A.fx", "reduce": "sum"}])",
       R"(/sum/0: expected "element", "point" and "reduce" only for a history of elements, found "A.forces fx")"},
      {R"("sum": [{"history": "S.vx", "node": "maxAbs"}])",
       R"(/sum/0/node: expected the number of a node, "sum", "mean", "min" or "max", found "maxAbs")"},
      {R"("sum": [{"history": "A.fx"}, {"history": "S.fx"}, {"history": "L.fx"}])",
       "/sum/2: expected the times of the first term (3 times from 0 to 2), found 2 times from 0 to 1"},
      {R"("norm": [{"history": "A.fx"}, {"history": "M.fx"}])",
       "/norm/1: expected the times of the first term (3 times from 0 to 2), found 1.5 in place of 1"},
  };
  for (auto const& c : cases) {
    EXPECT_EQ(errorIn(mapOfFormula(c.text)), "m.json: /units/0/tools/0/series/0" + std::string(c.message))
        << c.text;
  }
}

constexpr std::string_view s_lineJoin = R"("stepTimes": [null, 0, 1.5], "lineJoins": [
    {"guid": "00000000-0000-0000-0000-000000000012", "id": "L", "name": "Line", "states": [null, 1, 2],
     "simulationUnitJoin": "00000000-0000-0000-0000-0000000000aa")";

TEST_F(ImportMapOfAPrint, RefusesBadUnits) {
  std::string const lineJoin(s_lineJoin);
  struct {
    std::string text;
    std::string_view message;
  } const cases[] = {
      {R"("visibleSteps": {"first": 0, "last": 1}, "stepTimes": [0])",
       "/visibleSteps/last: expected the index of one of 1 steps, found 1"},
      {R"("visibleSteps": {"first": 2, "last": 0}, "stepTimes": [0, 1])",
       "/visibleSteps/first: expected the index of one of 2 steps, found 2"},
      {R"("visibleSteps": {"first": 2})", R"(/visibleSteps: expected a member "last", found none)"},
      {R"("stepTimes": ["1"])", R"(/stepTimes/0: expected a number, an object or null, found "1")"},
      {R"("toolGroupings": {"Rollers": [{"name": "left", "tools": ["R1"]}]})",
       R"(/toolGroupings/Rollers: expected identifiers of tools of the unit, found "R1")"},
      {R"("toolGroupings": {"Rolls": []})",
       R"(/toolGroupings/Rolls: expected one of the members ClampingTools, Rollers, Steels, HemmingBed, found "Rolls")"},
      {R"("stepTimes": [0], "joins": [{"guid": "00000000-0000-0000-0000-000000000011", "id": "J", "name": "", "states": [3]}])",
       R"(/joins/0/id: expected the identifier of a tool of kind spotWeld, found "J")"},
      {R"("stepTimes": [0], "joiningTongs": [{"id": "K", "name": "", "states": [3]}])",
       R"(/joiningTongs/0/id: expected the identifier of a tool of kind joiningTong, found "K")"},
      {R"("stepTimes": [0], "joiningTongs": [{"id": "J", "name": "", "states": [3]}, {"id": "J", "name": "", "states": [3]}])",
       R"(/joiningTongs/1/id: expected an identifier that is unique in its list, found "J")"},
      {R"("stepTimes": [0], "suctionZones": [{"guid": "00000000-0000-0000-0000-00000000000a", "name": "", "active": [true]},
                                             {"guid": "00000000-0000-0000-0000-00000000000A", "name": "", "active": [true]}])",
       "/suctionZones/1/guid: expected an identifier that is unique in its list, found "
       "00000000-0000-0000-0000-00000000000a"},
      {R"("stepTimes": [0], "joiningTongs": [{"id": "J", "name": "", "states": [3, 3]}])",
       "/joiningTongs/0/states: expected one entry for each of 1 steps, found 2"},
      {R"("joiningTongs": [{"id": "J", "name": "", "states": [3]}])",
       "/joiningTongs/0/states: expected one entry for each of 0 steps, found 1"},
      {R"("stepTimes": [0, 1], "joiningTongs": [{"id": "J", "name": "", "states": [null, null]}])",
       "/joiningTongs/0/states: expected a value in at least one step, found none"},
      {R"("stepTimes": [0, null], "suctionZones": [{"guid": "00000000-0000-0000-0000-00000000000a", "name": "", "active": [true, false]}])",
       "/suctionZones/0/active/1: expected null in a step that has no time, found a value"},
      {R"("stepTimes": [0], "joiningTongs": [{"id": "J", "name": "", "states": [4294967296]}])",
       "/joiningTongs/0/states/0: expected an integer from 0 to 4294967295 or null, found 4294967296"},
      {R"("joinsDefinedInUnit": ["00000000-0000-0000-0000-0000000000AB"], )" + lineJoin + "}]",
       "/joinsDefinedInUnit/0: expected the simulationUnitJoin of a line join, found "
       "00000000-0000-0000-0000-0000000000ab"},
      {lineJoin + R"(, "skins": {"Gap": []}}])",
       "/lineJoins/0/skins/Gap: expected at least one formula, found none"},
      {lineJoin + R"(, "skins": {"Gap": null}}])", "/lineJoins/0/skins/Gap: expected an array, found null"},
      {lineJoin + R"(, "skins": {"Gap": [{"sum": [{"history": "M.fx"}]}], "Gap": []}}])",
       R"(/lineJoins/0/skins/Gap: expected each member once, found a second "Gap")"},
      {lineJoin + R"(, "skins": {"Gap": [{"sum": [{"history": "M.fx"}]}, {"sum": [{"history": "A.fx"}]}]}}])",
       R"(/lineJoins/0/skins: expected histories of "Gap" with a value at time 1.5 of step 2, found 3 times from 0 to 2)"},
      {R"("joins": [{"id": "W", "name": "", "states": []}])",
       R"(/joins/0: expected a member "guid", found none)"},
  };
  for (auto const& c : cases) {
    EXPECT_EQ(errorIn(mapOfUnit(c.text)), "m.json: /units/0" + std::string(c.message)) << c.text;
  }
}

TEST_F(ImportMapOfAPrint, RefusesBadTools) {
  auto const error = [this](std::string_view tools) {
    return errorIn(fmt::format(R"({{"format": "import-map", "version": 1, "units": [
        {{"id": "00000000-0000-0000-0000-000000000001", "name": "U", "tools": [{}]}}]}})",
                               tools));
  };
  EXPECT_EQ(error(R"({"id": "C", "kind": "clamp"}, {"id": "C", "kind": "bolt"})"),
            R"(m.json: /units/0/tools/1/id: expected an identifier that is unique in the unit, found "C")");
  EXPECT_EQ(error(R"({"id": "C", "kind": "weld"})"),
            "m.json: /units/0/tools/0/kind: expected one of pilot, clamp, tool, spotWeld, joiningTong, "
            "suctionZone, "
            "bolt, found \"weld\"");
  EXPECT_EQ(error(R"({"id": "C", "kind": "clamp", "series": [{"sum": [{"history": "A.fx"}]}]})"),
            R"(m.json: /units/0/tools/0/series/0: expected a member "quantity", found none)");
  EXPECT_EQ(
      error(R"({"id": "C", "kind": "clamp", "tangentialForce": {"quantity": "Q", "sum": []}})"),
      "m.json: /units/0/tools/0/tangentialForce/quantity: expected one of the members form, sum, norm, found "
      "\"quantity\"");
}

TEST_F(ImportMapOfAPrint, MayUseTheSameToolIdInTwoUnits) {
  auto const map = read(R"({"format": "import-map", "version": 1, "units": [
      {"id": "00000000-0000-0000-0000-000000000001", "name": "U", "tools": [{"id": "C", "kind": "clamp"}]},
      {"id": "00000000-0000-0000-0000-000000000002", "name": "U", "tools": [{"id": "C", "kind": "clamp"}]}]})");
  EXPECT_EQ(map.units[1].tools.size(), 1U);
}

}  // namespace
}  // namespace Kestrel::ResultTables

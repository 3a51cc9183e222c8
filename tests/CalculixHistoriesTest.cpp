#include "result_tables/import/CalculixHistories.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "result_tables/base/File.h"
#include "support/ImportTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;

Histories read(std::string_view text) { return readCalculixHistories("p.dat", text); }
std::string errorIn(std::string_view text) {
  return errorOf([text] { read(text); });
}

constexpr std::string_view s_block =
    "\n forces (fx,fy,fz) for set C1_TIP and time  0.1000000E+00\n\n"
    "      2001 -1.122702E-04 -1.522247E-05  1.113703E+01\n";

HistoryTable const& tableOf(Histories const& histories, std::string_view name) {
  return *histories.find(name).at(0).table;
}

TEST(CalculixHistories, HaveOneTimePerBlock) {
  auto const histories = read(std::string(s_block) +
                              "\n forces (fx,fy,fz) for set C1_TIP and time  0.2000000E+00\n\n"
                              "      2001  0.000000E+00 -1.522247E+05  1.192707E+01\n");
  EXPECT_THAT(valuesOf(histories, "C1_TIP.fx"), ElementsAre(-1.122702e-4, 0.0));
  EXPECT_THAT(valuesOf(histories, "C1_TIP.fy"), ElementsAre(-1.522247e-5, -1.522247e5));
  EXPECT_THAT(valuesOf(histories, "C1_TIP.fz"), ElementsAre(11.13703, 11.92707));
  auto const& table = tableOf(histories, "C1_TIP.fz");
  EXPECT_THAT(table.times, ElementsAre(0.1, 0.2));
  EXPECT_THAT(table.nodes, ElementsAre(2001));
  EXPECT_EQ(table.quantity, "forces");
}

TEST(CalculixHistories, OfDifferentSetsAndQuantitiesAreApart) {
  auto const histories = read(
      " forces (fx,fy,fz) for set A and time  1\n\n 1 2 3 4\n\n"
      " forces (fx,fy,fz) for set B and time  1\n\n 1 5 6 7\n\n"
      " displacements (vx,vy,vz) for set A and time  1\n\n 1 8 9 10\n\n"
      " velocities (vx,vy,vz) for set A and time  1\n\n 1 11 12 13\n");
  EXPECT_THAT(valuesOf(histories, "A.fy"), ElementsAre(3));
  EXPECT_THAT(valuesOf(histories, "B.fy"), ElementsAre(6));
  EXPECT_THAT(valuesOf(histories, "A.displacements vy"), ElementsAre(9));
  EXPECT_THAT(valuesOf(histories, "A.velocities vy"), ElementsAre(12));
  EXPECT_EQ(histories.find("A.vy").size(), 2U);
}

TEST(CalculixHistories, OfSeveralNodesKeepThemInTheirOrder) {
  auto const histories = read(
      " forces (fx,fy,fz) for set A and time 1\n\n 9 1 2 3\n 4 5 6 7\n\n"
      " forces (fx,fy,fz) for set A and time 2\n\n 9 -1 -2 -3\n 4 -5 -6 -7\n");
  auto const& table = tableOf(histories, "A.fz");
  EXPECT_THAT(table.nodes, ElementsAre(9, 4));
  EXPECT_THAT(table.values, ElementsAre(1, 2, 3, 5, 6, 7, -1, -2, -3, -5, -6, -7));
}

TEST(CalculixHistories, OfAQuantityWithoutComponentsAreNamedByIt) {
  auto const histories = read(" temperatures for set A and time 1\n\n 9 20.5\n");
  EXPECT_THAT(valuesOf(histories, "A.temperatures"), ElementsAre(20.5));
  EXPECT_TRUE(tableOf(histories, "A.temperatures").quantity.empty());
}

TEST(CalculixHistories, OfTotalsHaveNoNodes) {
  auto const histories = read(" total force (fx,fy,fz) for set A and time 1\n\n   1 2 -3\n");
  EXPECT_THAT(valuesOf(histories, "A.total force fz"), ElementsAre(-3));
  EXPECT_THAT(valuesOf(histories, "A.fz"), ElementsAre(-3));
  EXPECT_TRUE(tableOf(histories, "A.fz").nodes.empty());
}

TEST(CalculixHistories, TakeValuesInLocalAxesAsTheyAre) {
  auto const histories = read(" displacements (vx,vy,vz) for set A and time 1\n\n 7 1 2 3 L\n");
  EXPECT_THAT(valuesOf(histories, "A.vz"), ElementsAre(3));
}

TEST(CalculixHistories, HoldWhatADivergingRunPrints) {
  auto const histories = read(
      " forces (fx,fy,fz) for set A and time 1\n\n 7           NaN      Infinity     -Infinity\n\n"
      " forces (fx,fy,fz) for set A and time 2\n\n 7  1.234567-105  9.999999+299  1.500000D+02\n");
  EXPECT_TRUE(std::isnan(valuesOf(histories, "A.fx")[0]));
  EXPECT_EQ(valuesOf(histories, "A.fy")[0], std::numeric_limits<double>::infinity());
  EXPECT_EQ(valuesOf(histories, "A.fz")[0], -std::numeric_limits<double>::infinity());
  EXPECT_EQ(valuesOf(histories, "A.fx")[1], 1.234567e-105);
  EXPECT_EQ(valuesOf(histories, "A.fy")[1], 9.999999e299);
  EXPECT_EQ(valuesOf(histories, "A.fz")[1], 150.0);
}

TEST(CalculixHistories, MayHaveCarriageReturns) {
  auto const histories = read("\r\n forces (fx,fy,fz) for set A and time  0.5\r\n\r\n 1 2 3 4\r\n\r\n");
  EXPECT_THAT(valuesOf(histories, "A.fz"), ElementsAre(4));
  EXPECT_THAT(tableOf(histories, "A.fz").times, ElementsAre(0.5));
}

TEST(CalculixHistories, PassOverStepsAndIncrements) {
  auto const histories = read("\n                        S T E P       1\n\n INCREMENT     1\n\n" +
                              std::string(s_block) + "\n INCREMENT     2\n\n");
  EXPECT_THAT(valuesOf(histories, "C1_TIP.fz"), ElementsAre(11.13703));
}

TEST(CalculixHistories, MayHaveTheSameTimeTwice) {
  auto const histories = read(
      " E I G E N V A L U E    N U M B E R     1\n\n forces (fx) for set A and time 1\n\n 1 2\n\n"
      " E I G E N V A L U E    N U M B E R     2\n\n forces (fx) for set A and time 1\n\n 1 2\n");
  EXPECT_THAT(valuesOf(histories, "A.fx"), ElementsAre(2, 2));
  EXPECT_THAT(tableOf(histories, "A.fx").times, ElementsAre(1, 1));
}

TEST(CalculixHistories, CountABlockThatIsPrintedTwiceOnce) {
  auto const histories = read(std::string(s_block) + std::string(s_block));
  EXPECT_THAT(valuesOf(histories, "C1_TIP.fx"), ElementsAre(-1.122702e-4));
  EXPECT_TRUE(histories.find("C1_TIP (2).fx").empty());
}

TEST(CalculixHistories, CountANodeThatIsTwiceInItsSetOnce) {
  auto const histories = read(
      " forces (fx) for set A and time 1\n\n 7 1\n 8 2\n 7 1\n\n"
      " forces (fx) for set A and time 2\n\n 7 3\n 8 4\n 7 3\n");
  auto const& table = tableOf(histories, "A.fx");
  EXPECT_THAT(table.nodes, ElementsAre(7, 8));
  EXPECT_THAT(table.values, ElementsAre(1, 2, 3, 4));
}

TEST(CalculixHistories, OfOnePrintWithOtherValuesAtATimeAreApart) {
  auto const histories = read(
      " displacements (vx) for set B and time 1\n\n 1 9\n\n"
      " displacements (vx) for set A and time 1\n\n 1 2\n\n displacements (vx) for set A and time 1\n\n 1 -2 "
      "L\n\n"
      " displacements (vx) for set B and time 2\n\n 1 9\n\n"
      " displacements (vx) for set A and time 2\n\n 1 3\n\n displacements (vx) for set A and time 2\n\n 1 -3 "
      "L\n");
  EXPECT_THAT(valuesOf(histories, "A.vx"), ElementsAre(2, 3));
  EXPECT_THAT(valuesOf(histories, "A (2).vx"), ElementsAre(-2, -3));
  EXPECT_THAT(tableOf(histories, "A.vx").steps, ElementsAre(1, 1));
}

constexpr std::string_view s_stepAnew =
    " forces (fx) for set A and time 0.5\n\n 1 1\n\n forces (fx) for set B and time 0.5\n\n 1 2\n\n"
    " forces (fx) for set A and time 1\n\n 1 3\n\n forces (fx) for set B and time 1\n\n 1 4\n\n";

TEST(CalculixHistories, BeginAStepWhereTheTimeBeginsAnew) {
  auto const histories = read(std::string(s_stepAnew) + std::string(s_stepAnew));
  EXPECT_THAT(valuesOf(histories, "B.fx"), ElementsAre(2, 4, 2, 4));
  EXPECT_THAT(tableOf(histories, "B.fx").times, ElementsAre(0.5, 1, 0.5, 1));
  EXPECT_THAT(tableOf(histories, "B.fx").steps, ElementsAre(1, 1, 2, 2));
}

TEST(CalculixHistories, OfOnePrintMayBeHeadedWithOtherBlanks) {
  auto const histories = read(
      " forces (fx,fy) for set A and time 1\n\n 1 2 3\n\n  forces  ( fx, fy )for set  A  and  time   2\n\n 1 "
      "4 5\n");
  EXPECT_THAT(valuesOf(histories, "A.fy"), ElementsAre(3, 5));
}

TEST(CalculixHistories, BeginAStepWhereItIsPrinted) {
  auto const histories = read(
      " S T E P 1\n INCREMENT 1\n\n forces (fx) for set A and time 1\n\n 1 1\n\n"
      " INCREMENT 2\n\n forces (fx) for set A and time 1\n\n 1 2\n\n"
      " S T E P 3\n INCREMENT 1\n\n forces (fx) for set A and time 1.5\n\n 1 3\n");
  EXPECT_THAT(tableOf(histories, "A.fx").steps, ElementsAre(1, 1, 3));
  EXPECT_THAT(valuesOf(histories, "A.fx"), ElementsAre(1, 2, 3));
}

// Steps of one increment each: what is printed again at a time is of another step where it has other values.
TEST(CalculixHistories, BeginAStepWhereAllIsPrintedAgainAtATime) {
  auto const block = [](std::string_view set, std::string_view row) {
    return fmt::format(" forces (fx) for set {} and time 1\n\n {}\n\n", set, row);
  };
  auto const stepsOf = [](std::string const& text, std::string_view name) {
    auto const histories = read(text);
    return tableOf(histories, name).steps;
  };
  EXPECT_THAT(stepsOf(block("A", "1 1") + block("A", "1 2"), "A.fx"), ElementsAre(1, 2));
  EXPECT_THAT(stepsOf(block("A", "1 1") + block("B", "1 1") + block("A", "1 1") + block("B", "1 2"), "A.fx"),
              ElementsAre(1, 2));
  EXPECT_THAT(stepsOf(block("A", "1 1") + block("B", "1 1") + block("A", "1 1") + block("B", "1 1"), "A.fx"),
              ElementsAre(1));
  EXPECT_THAT(
      stepsOf(block("A", "1 1") + block("A", "1 1 L") + block("A", "1 2") + block("A", "1 2 L"), "A.fx"),
      ElementsAre(1, 2));
  EXPECT_THAT(stepsOf(block("A", "1 1") + block("A", "1 1 L") + block("B", "1 1") + block("A", "1 2") +
                          block("A", "1 2 L") + block("B", "1 1"),
                      "A (2).fx"),
              ElementsAre(1, 2));
}

TEST(CalculixHistories, OfElementsHaveARowForEachPoint) {
  auto const histories = read(
      " stresses (elem, integ.pnt.,sxx,syy) for set E and time 1\n\n 5 1 1.5 -2.5\n 5 2 3 4 ORI1\n 6 1 5 6\n "
      "5 1 1.5 -2.5\n\n"
      " stresses (elem, integ.pnt.,sxx,syy) for set E and time 2\n\n 6 1 7 8\n\n"
      " stresses (elem, integ.pnt.,sxx,syy) for set E and time 3\n\n\n"
      " volume (element, volume) for set E and time 3\n\n 5 1E-1\n");
  auto const& table = tableOf(histories, "E.syy");
  EXPECT_THAT(table.elementRows,
              ElementsAre(ElementRow{5, 1}, ElementRow{5, 2}, ElementRow{6, 1}, ElementRow{6, 1}));
  EXPECT_THAT(table.rowEnds, ElementsAre(3, 4));
  EXPECT_THAT(table.times, ElementsAre(1, 2));
  EXPECT_THAT(table.values, ElementsAre(1.5, -2.5, 3, 4, 5, 6, 7, 8));
  EXPECT_THAT(tableOf(histories, "E.volume").elementRows, ElementsAre(ElementRow{5, 0}));
}

TEST(CalculixHistories, OfQuantitiesWithoutNamesAreNumbered) {
  auto const histories =
      read(" internal state variables (elem, integ.pnt.,values) for set E and time 1\n\n 5 1 1.5-2.5E+00\n");
  EXPECT_EQ(tableOf(histories, "E.internal state variables 2").values[1], -2.5);
}

TEST(CalculixHistories, MayHaveNumbersThatTouch) {
  auto const histories =
      read(" forces (fx,fy,fz) for set A and time-1.0\n\n123456-1.0E+00-2.0E-01-1.5-105\n");
  EXPECT_THAT(tableOf(histories, "A.fx").nodes, ElementsAre(123456));
  EXPECT_THAT(tableOf(histories, "A.fx").values, ElementsAre(-1, -0.2, -1.5e-105));
  EXPECT_THAT(tableOf(histories, "A.fx").times, ElementsAre(-1));
}

std::string dataFile(std::string const& name) {
  return readFile(KESTREL_SOURCE_DIR "/tests/data/import/" + name);
}

TEST(CalculixHistories, HoldContactAndSections) {
  auto const histories = readCalculixHistories("punches.dat", dataFile("punches.dat"));
  EXPECT_THAT(histories.notes(), ElementsAre());
  EXPECT_THAT(valuesOf(histories, "LEFT/DIE.fz"),
              ElementsAre(0, 20.37268, 49.26944, 81.79436, 81.84481, 81.88854));
  EXPECT_THAT(valuesOf(histories, "LEFT/DIE (2).total surface force fx"),
              ElementsAre(0, 0, -1.717642e-3, -6.904284e-3, -8.385329e-3, -8.314174e-3));
  EXPECT_THAT(valuesOf(histories, "RIGHT/DIE.moment about the origin my"),
              ElementsAre(0, 0, 0, -53.9856, -54.38447, -54.77993));
  EXPECT_TRUE(std::isnan(valuesOf(histories, "RIGHT/DIE.mean normal nz")[0]));
  EXPECT_EQ(valuesOf(histories, "RIGHT/DIE.mean normal nz")[3], -1);
  EXPECT_EQ(valuesOf(histories, "LEFT/DIE.shear force")[3], 0.9583538);
  EXPECT_THAT(valuesOf(histories, "surface DIE.area"), ElementsAre(3, 3, 3, 3, 3, 3));
  EXPECT_EQ(valuesOf(histories, "surface DIE.bending moment")[3], 48.68635);
  EXPECT_EQ(valuesOf(histories, "surface DIE.center of gravity x")[5], 1.5);
  EXPECT_THAT(valuesOf(histories, "total number of contact elements"), ElementsAre(0, 28, 28, 56, 56, 56));
  EXPECT_THAT(tableOf(histories, "surface DIE.area").times, ElementsAre(0.25, 0.5, 0.75, 1, 0.5, 1));
  EXPECT_THAT(tableOf(histories, "surface DIE.area").steps, ElementsAre(1, 1, 1, 1, 2, 2));
  EXPECT_THAT(tableOf(histories, "contact stress press").times, ElementsAre(0.5, 0.75, 1, 0.5, 1));
  EXPECT_THAT(tableOf(histories, "contact stress press").rowEnds, ElementsAre(28, 56, 112, 168, 224));
  EXPECT_THAT(tableOf(histories, "CORNERS.forces fz").nodes, ElementsAre(1, 2));
  EXPECT_TRUE(histories.find("TOP (2).vz").empty());
  EXPECT_EQ(tableOf(histories, "TOP.vz").times.size(), 6U);
}

TEST(CalculixHistories, HoldLoadCasesThatEndAtOneTime) {
  auto const histories = readCalculixHistories("load_cases.dat", dataFile("load_cases.dat"));
  EXPECT_THAT(tableOf(histories, "BOTTOM.fz").steps, ElementsAre(1, 2, 3));
  EXPECT_THAT(valuesOf(histories, "BOTTOM.fz"), ElementsAre(-10, 20, 20));
  EXPECT_THAT(tableOf(histories, "EALL.volume").steps, ElementsAre(1, 2, 3, 4, 4));
  EXPECT_THAT(tableOf(histories, "EALL.volume").rowEnds, ElementsAre(2, 4, 5, 6, 7));
  EXPECT_THAT(tableOf(histories, "UPPER.energy").steps, ElementsAre(1, 2));
  EXPECT_THAT(tableOf(histories, "MIDDLE.vy").steps, ElementsAre(1, 2, 3, 4, 4));
  EXPECT_THAT(tableOf(histories, "MIDDLE (2).vy").steps, ElementsAre(1, 2, 3));
  EXPECT_EQ(tableOf(histories, "MIDDLE (2).vy").values[1], -1.014945e-4);
  EXPECT_THAT(valuesOf(histories, "EALL.center of gravity z"), ElementsAre(1, 1, 0.5, 0.5, 0.5));
  EXPECT_THAT(
      histories.notes(),
      ElementsAre(
          R"(load_cases.dat: line 141: passed over "EIGENVALUE OUTPUT", which import does not know)",
          R"(load_cases.dat: line 150: passed over "PARTICIPATION FACTORS", which import does not know)",
          R"(load_cases.dat: line 157: passed over "EFFECTIVE MODAL MASS", which import does not know)",
          R"(load_cases.dat: line 165: passed over "TOTAL EFFECTIVE MASS", which import does not know)"));
}

TEST(CalculixHistories, HoldElementsOfAllKinds) {
  auto const histories = readCalculixHistories("elements.dat", dataFile("elements.dat"));
  auto const& stresses = tableOf(histories, "BODIES.sxx");
  EXPECT_THAT(stresses.rowEnds, ElementsAre(8 + 1 + 4 + 27));
  EXPECT_EQ(stresses.elementRows[8], (ElementRow{4, 1}));
  EXPECT_EQ(stresses.elementRows[39], (ElementRow{20, 27}));
  EXPECT_EQ(stresses.value(0, 39, 0), -99.63363);
  EXPECT_THAT(tableOf(histories, "BODIES.volume").rowEnds, ElementsAre(4));
  EXPECT_THAT(tableOf(histories, "TET10.internal state variables 2").components, ElementsAre("1", "2"));
  EXPECT_EQ(tableOf(histories, "SHELL.syz").elementRows.front(), (ElementRow{71, 1}));
  EXPECT_THAT(histories.notes(), ElementsAre());
}

TEST(CalculixHistories, HoldHeatAndTellWhatTheyPassOver) {
  auto const histories = readCalculixHistories("heat.dat", dataFile("heat.dat"));
  EXPECT_EQ(tableOf(histories, "EALL.qz").values[2], -1002.5);
  EXPECT_EQ(tableOf(histories, "EALL.body heating volume").values[0], 5);
  EXPECT_THAT(valuesOf(histories, "BOTTOM.total heat generation"), ElementsAre(-1002.5));
  EXPECT_THAT(valuesOf(histories, "LID.q"), ElementsAre(-1002.5));
  EXPECT_THAT(
      histories.notes(),
      ElementsAre(
          R"(heat.dat: line 39: passed over "heat flux at the integration points for set LID", which import does not know)"));
}

TEST(CalculixHistories, TellOncePerKindWhatTheyPassOver) {
  auto const histories = read(std::string(s_block) +
                              "\n Modal Assurance Criterium\n\n  0.7E+00  0.7E+00\n and more\n\n"
                              " displacements (v(i),i=1..ndof) for set A and time 1\n\n 1 2 3 4 5\n\n"
                              " displacements (v(i),i=1..ndof) for set A and time 2\n\n 1 2 3 4 5\n\n");
  EXPECT_THAT(
      histories.notes(),
      ElementsAre(
          R"(p.dat: line 6: passed over "Modal Assurance Criterium", which import does not know)",
          R"(p.dat: line 11: passed over "displacements (v(i),i=1..ndof) for set A", which import does not know)"));
}

// A print with totals, local axes, element values, and the tables of a frequency step.
TEST(CalculixHistories, AreFoundAmongAllThatTheSolverPrints) {
  std::string const source = KESTREL_SOURCE_DIR "/tests/data/import/cube.dat";
  auto const histories = readCalculixHistories("cube.dat", readFile(source));
  EXPECT_THAT(tableOf(histories, "BOTTOM.forces fz").values,
              ElementsAre(-8.233402e1, -8.233402e1, -2.861326e2, 8.233402e1, -8.233402e1, -2.861326e2,
                          8.233402e1, 8.233402e1, -2.861326e2, -8.233402e1, 8.233402e1, -2.861326e2,
                          -1.652612e2, -1.652612e2, -5.766233e2, 1.652612e2, -1.652612e2, -5.766233e2,
                          1.652612e2, 1.652612e2, -5.766233e2, -1.652612e2, 1.652612e2, -5.766233e2));
  EXPECT_THAT(valuesOf(histories, "BOTTOM.total force fz"), ElementsAre(-1144.53, -2306.493));
  EXPECT_THAT(valuesOf(histories, "TOP.fz"), ElementsAre(1144.53, 2306.493));
  EXPECT_THAT(tableOf(histories, "TOP.vx").nodes, ElementsAre(5, 6, 7, 8));
  EXPECT_THAT(tableOf(histories, "TOP.temperatures").values, ElementsAre(25, 25, 25, 25, 30, 30, 30, 30));
  EXPECT_THAT(valuesOf(histories, "EALL.total internal energy"), ElementsAre(2.809853, 11.2962, 0, 0));
  EXPECT_THAT(tableOf(histories, "CORNER.vz").times, ElementsAre(2, 2));
  EXPECT_THAT(tableOf(histories, "EALL.sxx").rowEnds, ElementsAre(8, 16, 24, 32));
  EXPECT_THAT(tableOf(histories, "EALL.sxx").steps, ElementsAre(1, 1, 2, 2));
}

struct BadPrint {
  char const* damage;
  std::string_view text;
  char const* message;
};

TEST(CalculixHistories, RefuseWhatIsNoPrint) {
  BadPrint const cases[] = {
      {"nothing", "",
       R"(p.dat: expected blocks such as "forces (fx,fy,fz) for set NAME and time T", found none)"},
      {"nothing that is used", " S T E P 1\n\n INCREMENT 1\n",
       R"(p.dat: expected blocks such as "forces (fx,fy,fz) for set NAME and time T", found none)"},
      {"cut in a row", " forces (fx,fy,fz) for set A and time 1\n\n 1 2.5 3.5 4",
       "p.dat: line 3: expected the end of the line, found the end of the file"},
      {"cut in a header", " forces (fx,fy,fz) for s",
       "p.dat: line 1: expected the end of the line, found the end of the file"},
      {"cut after a header", " forces (fx,fy,fz) for set A and time 1\n\n",
       "p.dat: line 2: expected rows of values after the header, found the end of the file"},
      {"no rows",
       " forces (fx,fy,fz) for set A and time 1\n\n forces (fx,fy,fz) for set B and time 1\n\n 1 2 3 4\n",
       R"(p.dat: line 3: expected the number of a node, found "forces")"},
      {"no time", " forces (fx,fy,fz) for set A and\n\n 1 2 3 4\n",
       R"(p.dat: line 1: expected "and time" and a number at the end of the header, found "forces (fx,fy,fz) for set A and")"},
      {"time that is none", " forces (fx,fy,fz) for set A and time soon\n\n 1 2 3 4\n",
       R"(p.dat: line 1: expected a time at the end of the header, found "soon")"},
      {"time that is not finite", " forces (fx,fy,fz) for set A and time NaN\n\n 1 2 3 4\n",
       R"(p.dat: line 1: expected a time at the end of the header, found "NaN")"},
      {"time that goes back in a step",
       " S T E P 2\n\n forces (fx,fy,fz) for set A and time 0.5\n\n 1 2 3 4\n\n"
       " forces (fx,fy,fz) for set A and time 0.25\n\n 1 2 3 4\n",
       "p.dat: line 7: expected a time not before 0.5, found 0.25"},
      {"step that goes back", " S T E P 2\n\n forces (fx) for set A and time 0.5\n\n 1 2\n\n S T E P 1\n",
       "p.dat: line 7: expected a step not before 2, found 1"},
      {"step without number", " S T E P\n",
       R"(p.dat: line 1: expected the number of a step, found "S T E P")"},
      {"element that is none", " volume (element, volume) for set E and time 1\n\n 1.5 2\n",
       R"(p.dat: line 3: expected the number of an element, found "1.5")"},
      {"point that is none", " stresses (elem, integ.pnt.,sxx) for set E and time 1\n\n 1 2.5\n",
       R"(p.dat: line 3: expected the number of an integration point, found "2.5")"},
      {"no values at all",
       " internal state variables (elem, integ.pnt.,values) for set E and time 1\n\n 1 1\n",
       R"(p.dat: line 3: expected a number, found "")"},
      {"two names of axes", " stresses (elem, integ.pnt.,sxx) for set E and time 1\n\n 1 1 2.5 A B\n",
       R"(p.dat: line 3: expected the end of the line after 1 values, found "A")"},
      {"cut after the header of elements", " stresses (elem, integ.pnt.,sxx) for set E and time 1\n\n",
       "p.dat: line 2: expected rows of values after the header, found the end of the file"},
      {"cut after a header within statistics",
       " statistics for surface set S and time 1\n\n   center of gravity and mean normal\n\n",
       "p.dat: line 4: expected rows of values after the header, found the end of the file"},
      {"statistics that are cut",
       " statistics for surface set S and time 1\n\n moment about the center of gravity(mx,my,mz)\n\n 1 2 "
       "3\n\n"
       " center of gravity and mean normal\n\n 1 2 3 4 5 6\n\n"
       " statistics for surface set S and time 2\n\n moment about the center of gravity(mx,my,mz)\n\n 1 2 "
       "3\n",
       "p.dat: line 15: expected the rows that the statistics have at the times before, found the end of the "
       "file"},
      {"long row of statistics",
       " statistics for surface set S and time 1\n\n moment about the center of gravity(mx,my,mz)\n\n 1 2 3 "
       "4\n",
       R"(p.dat: line 5: expected the end of the line, found "4")"},
      {"node that is none", " forces (fx,fy,fz) for set A and time 1\n\n 1.5 2 3 4\n",
       R"(p.dat: line 3: expected the number of a node, found "1.5")"},
      {"number that is none", " forces (fx,fy,fz) for set A and time 1\n\n 1 2 ************* 4\n",
       R"(p.dat: line 3: expected a number, found "*************")"},
      {"decimal comma", " forces (fx,fy,fz) for set A and time 1\n\n 1 2 3,5 4\n",
       R"(p.dat: line 3: expected a number, found "3,5")"},
      {"short row", " forces (fx,fy,fz) for set A and time 1\n\n 1 2 3\n",
       "p.dat: line 3: expected 3 values in the row, found 2"},
      {"long row", " forces (fx,fy,fz) for set A and time 1\n\n 1 2 3 4 5\n",
       R"(p.dat: line 3: expected the end of the line after 3 values, found "5")"},
      {"text after the mark of local axes", " forces (fx,fy,fz) for set A and time 1\n\n 1 2 3 4 L 5\n",
       R"(p.dat: line 3: expected the end of the line after 3 values, found "L")"},
      {"a node less",
       " forces (fx,fy,fz) for set A and time 1\n\n 1 2 3 4\n 2 3 4 5\n\n"
       " forces (fx,fy,fz) for set A and time 2\n\n 1 2 3 4\n",
       "p.dat: line 8: expected as many nodes as at the times before (2), found 1"},
      {"a node more",
       " forces (fx,fy,fz) for set A and time 1\n\n 1 2 3 4\n\n"
       " forces (fx,fy,fz) for set A and time 2\n\n 1 2 3 4\n 2 3 4 5\n",
       "p.dat: line 8: expected as many nodes as at the times before (1), found more"},
      {"another node",
       " forces (fx,fy,fz) for set A and time 1\n\n 1 2 3 4\n\n"
       " forces (fx,fy,fz) for set A and time 2\n\n 2 2 3 4\n",
       "p.dat: line 7: expected node 1 as at the times before, found 2"},
      {"two rows of totals", " total force (fx,fy,fz) for set A and time 1\n\n 1 2 3\n 4 5 6\n",
       R"(p.dat: line 4: expected a blank line after the row of totals, found "4 5 6")"},
      {"rows without a block", " forces (fx,fy,fz) for set A and time 1\n\n 1 2 3 4\n\n 2 3 4 5\n",
       R"(p.dat: line 5: expected the header of a block, found "2 3 4 5")"},
  };
  for (auto const& c : cases) EXPECT_EQ(errorIn(c.text), c.message) << c.damage;
}

TEST(CalculixHistories, ComeBackBitForBit) {
  std::mt19937_64 random(7);
  for (int round = 0; round < 50; ++round) {
    auto const sets = 1 + random() % 5;
    auto const nodes = 1 + random() % 4;
    std::vector<std::vector<double>> written(sets);
    std::string text;
    auto const* const lineEnd = random() % 2 == 0 ? "\n" : "\r\n";
    for (int time = 0; time < 20; ++time) {
      for (std::size_t set = 0; set < sets; ++set) {
        text += fmt::format("{1} forces (fx,fy,fz) for set S{0} and time {2:14.7E}{1}{1}", set, lineEnd,
                            0.25 * time);
        for (std::size_t node = 0; node < nodes; ++node) {
          text += fmt::format("{:10}", 100 + node);
          for (int i = 0; i < 3; ++i) {
            written[set].push_back(anyDouble(random));
            text += fmt::format(" {}", written[set].back());
          }
          text += lineEnd;
        }
      }
    }
    auto const histories = read(text);
    for (std::size_t set = 0; set < sets; ++set) {
      expectSameBits(tableOf(histories, fmt::format("S{}.fx", set)).values, written[set]);
    }
  }
}

TEST(CalculixHistories, AreTextInUtf8AlsoWhereItIsPassedOver) {
  EXPECT_EQ(errorOf([] { (void)readCalculixHistories("c.dat", "\n STEP \xC4\n"); }),
            "c.dat: line 2, byte 7: expected UTF-8 text, found byte 0xC4");
}

}  // namespace
}  // namespace Kestrel::ResultTables

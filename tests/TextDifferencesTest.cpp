#include "result_tables/render/TextDifferences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/DifferencesTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::HasSubstr;
using testing::Not;

/// Two units: bolts of which one went beyond its limit and one came back, a zone that goes, pilots that come.
ResultDifferences manyDifferences() {
  auto const zone = R"({"id": "Zone 1", "kind": "suctionZone"})";
  auto const after =
      R"({"id": "Bolt 1", "kind": "bolt", "series": [
           {"quantity": "ClampNormalForce", "values": [31]}, {"quantity": "ClampNormalDisplacement", "values": [0.5]}]},
         {"id": "Bolt 2", "kind": "bolt", "series": [
           {"quantity": "ClampNormalForce", "values": [1]}, {"quantity": "ClampClosingForce", "values": ["Infinity"]}]})";
  return differencesOf(unitOf('1', "OP10", zone) + ", " +
                           unitOf('2', "OP20", bolt("Bolt 1", "20") + ", " + bolt("Bolt 2", "-45.125")),
                       unitOf('1', "OP10", pilots({{"P1", 2.5}})) + ", " + unitOf('2', "OP20", after));
}

TEST(TextDifferences, StandUnderUnitsFamiliesAndSections) {
  EXPECT_EQ(renderDifferencesAsText(manyDifferences(), {}), R"(OP10: Pilots

  Forces
                        before   after   change   relative [%]
    -----------------   ------   -----   ------   ------------
    P1, Max Force [N]              2.5                           added

OP10: Suction Zones

  Forces
                            before   after   change   relative [%]
    ---------------------   ------   -----   ------   ------------
    Zone 1, Force [N]            –                                   removed
    Zone 1, Distance [mm]        –                                   removed

OP20: Bolts

  Forces
                                     before     after      change   relative [%]
    -----------------------------   ---------   -------   -------   ------------
    Bolt 1, Max Normal Force [N]     20            31 !   +11                +55   now beyond its limit
    Bolt 2, Max Normal Force [N]    -45.125 !       1     +46.125           +102   back within its limit
    Bolt 2, Max Closing Force [N]     –           inf

  Distances
                                before   after   change   relative [%]
    -------------------------   ------   -----   ------   ------------
    Bolt 1, Max Distance [mm]        –     0.5

! beyond its limit

changed: 4, in state alone: 0, added: 1, removed: 2, values in both files: 10
now beyond their limits: 1, back within their limits: 1
)");
}

TEST(TextDifferences, PutElementsAndStatesOnLinesOfTheirOwnWhereALineIsTooShort) {
  auto const differences = differencesOf(oneBolt("20"), oneBolt("31"));
  constexpr auto onOneLine =
      "    Bolt 1, Max Normal Force [N]       20      31 !      +11            +55   now beyond its limit\n";
  EXPECT_THAT(renderDifferencesAsText(differences, {.width = 98}), HasSubstr(onOneLine));
  EXPECT_THAT(renderDifferencesAsText(differences, {.width = 97}), HasSubstr(R"(
  Forces
       before   after     change   relative [%]
       ------   -------   ------   ------------
    Bolt 1, Max Normal Force [N]
           20      31 !      +11            +55   now beyond its limit

)"));
  EXPECT_THAT(renderDifferencesAsText(differences, {.width = 60}), HasSubstr(R"(
    Bolt 1, Max Normal Force [N]
           20      31 !      +11            +55
       now beyond its limit

)"));
}

TEST(TextDifferences, AreTheCountsAloneWhereNothingDiffers) {
  EXPECT_EQ(renderDifferencesAsText(differencesOf(oneBolt("1"), oneBolt("1")), {}),
            "changed: 0, in state alone: 0, added: 0, removed: 0, values in both files: 5\n"
            "now beyond their limits: 0, back within their limits: 0\n");
}

TEST(TextDifferences, HaveTheDigitsThatAreWanted) {
  auto const differences = differencesOf(oneBolt("1.23456789"), oneBolt("2"));
  auto const seven = renderDifferencesAsText(differences, {});
  EXPECT_THAT(seven, HasSubstr(" 1.234568 "));
  EXPECT_THAT(seven, HasSubstr(" +0.7654321 "));
  EXPECT_THAT(seven, HasSubstr(" +62\n"));
  auto const two = renderDifferencesAsText(differences, {.digits = 2});
  EXPECT_THAT(two, HasSubstr(" 1.2 "));
  EXPECT_THAT(two, HasSubstr(" +0.77 "));
}

TEST(TextDifferences, MarkInColourWhatWentBeyondItsLimitAndWhatCameBack) {
  auto const text = renderDifferencesAsText(manyDifferences(), {.colour = true});
  EXPECT_THAT(text, HasSubstr("\x1b[1mOP20: Bolts\x1b[0m\n"));
  EXPECT_THAT(text, HasSubstr("\x1b[31m31\x1b[0m !"));
  EXPECT_THAT(text, HasSubstr("\x1b[31mnow beyond its limit\x1b[0m\n"));
  EXPECT_THAT(text, HasSubstr("\x1b[32mback within its limit\x1b[0m\n"));
  EXPECT_THAT(text, HasSubstr("   added\n")) << "neither good nor bad";
}

/// A difference in the normal force of a joint.
std::string lineOf(DifferenceKind kind, std::optional<ComparedValue> before,
                   std::optional<ComparedValue> after) {
  TableColumn column;
  column.key = "JoinForceN";
  column.unit = "N";
  return differenceLine({kind, &column, before, after}, 7);
}

TEST(TextDifferences, SayInOneLineWhatBecameOfAValue) {
  constexpr ComparedValue within{20, true, false, 4, 0};
  constexpr ComparedValue beyond{600, true, true, 3, 1};
  constexpr ComparedValue invalid{600, false, false, 4, 0};
  using enum DifferenceKind;
  EXPECT_EQ(lineOf(changed, within, beyond),
            "JoinForceN: 20 N → 600 N, change +580 N, +2.9e+03 %, now beyond its limit");
  EXPECT_EQ(lineOf(changed, beyond, within),
            "JoinForceN: 600 N → 20 N, change -580 N, -96.7 %, back within its limit");
  EXPECT_EQ(lineOf(state, beyond, invalid), "JoinForceN: 600 N → 600 N, no longer valid");
  EXPECT_EQ(lineOf(state, invalid, beyond), "JoinForceN: 600 N → 600 N, valid again, now beyond its limit");
  EXPECT_EQ(lineOf(added, std::nullopt, beyond), "JoinForceN: 600 N, added, now beyond its limit");
  EXPECT_EQ(lineOf(removed, beyond, std::nullopt), "JoinForceN: 600 N, removed");
}

TEST(TextDifferences, SayWhereThereIsNoNumber) {
  constexpr ComparedValue number{20, true, false, 1, 0};
  constexpr ComparedValue noData{0, true, false, 0, 0};
  constexpr ComparedValue onlyNaN{0, true, false, 0, 2};
  using enum DifferenceKind;
  EXPECT_EQ(lineOf(changed, number, noData), "JoinForceN: 20 N → –");
  EXPECT_EQ(lineOf(changed, onlyNaN, number), "JoinForceN: NaN → 20 N");
  EXPECT_EQ(lineOf(added, std::nullopt, noData), "JoinForceN: –, added");
}

TEST(TextDifferences, MarkValuesWhoseSeriesHoldNaN) {
  auto const text = renderDifferencesAsText(differencesOf(oneBolt("20"), oneBolt("null, -31")), {});
  EXPECT_THAT(text, HasSubstr(" 20     -31 !*      -51           -255   now beyond its limit\n"));
  EXPECT_THAT(text, HasSubstr("! beyond its limit   * its series holds values that are not numbers\n"));
}

TEST(TextDifferences, ShowNamesAsTheyCanBePrinted) {
  auto const before = unitOf('2', "O\\nP", bolt("Bolt\\u001b[31m", "1"));
  auto const after = unitOf('2', "O\\nP", bolt("Bolt\\u001b[31m", "2"));
  auto const text = renderDifferencesAsText(differencesOf(before, after), {});
  EXPECT_THAT(text, HasSubstr("O␊P: Bolts\n"));
  EXPECT_THAT(text, HasSubstr("    Bolt␛[31m, Max Normal Force [N]"));
  EXPECT_THAT(text, Not(HasSubstr("\x1b")));
}

TEST(TextDifferences, NameSectionSubGroupAndElementOfARow) {
  EXPECT_EQ(rowLine({"Forces", "Left", "Tool 1", {}}), "Forces, Left, Tool 1");
  EXPECT_EQ(rowLine({"Forces", "", "Tool\x01", {}}), "Forces, Tool␁");
}

}  // namespace
}  // namespace Kestrel::ResultTables

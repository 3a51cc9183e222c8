#include "result_tables/render/TextTables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "support/TableTesting.h"

namespace Kestrel::ResultTables {
namespace {

using DataType = MaxValueGroupContainer::DataType;
using testing::HasSubstr;
using testing::Not;

class TextTables : public testing::Test {
 protected:
  TextTables() { m_container->title = "Clamps"; }

  /// The text of one table with one section.
  std::string render(MaxValueGroup const& group, TextStyle const& style = {}) {
    m_container->groups = {group};
    return renderText({genTable(m_unit, m_container, ResultLimits())}, style);
  }

  SimulationUnit const m_unit{SimulationUnitId(), "OP20"};
  std::shared_ptr<MaxValueGroupContainer> m_container =
      std::make_shared<MaxValueGroupContainer>(DataType::Clamps, m_unit.getID());
};

TEST_F(TextTables, AlignNumbersOnTheirDecimalPoints) {
  MaxValueGroup group{"Forces", false, true, {}, {"K1", "Key2"}, {}};
  group.subGroups.push_back({"", {{"Clamp 1", {-1314.547, 0}}}});
  group.subGroups.push_back({"", {{"C2", {7.25, 12345678}}}});
  group.subGroups.push_back({"", {{"C3", {-0.125, 1e-12}}}});
  EXPECT_EQ(render(group), R"(OP20: Clamps

  Forces
                     K1               Key2
    -------   ---------   ----------------
    Clamp 1   -1314.547       0
    C2            7.25        1.234568e+07
    C3           -0.125   1e-12
)");
}

TEST_F(TextTables, IndentTheItemsOfANamedSubGroup) {
  MaxValueGroup group{"Forces", false, true, {}, {"K1"}, {}};
  group.subGroups.push_back({"Left", {{"T1", {1}}, {"T2", {2}}}});
  group.subGroups.push_back({"Nothing", {}});
  EXPECT_EQ(render(group), R"(OP20: Clamps

  Forces
           K1
    ----   --
    Left
      T1    1
      T2    2
    Nothing
)");
}

TEST_F(TextTables, CountColumnsOfTheTerminalAndNotBytes) {
  MaxValueGroup group{"Forces", false, true, {}, {"K1"}, {}};
  group.subGroups.push_back({"", {{"Tür", {1}}, {"クランプ", {2}}, {"e\xCC\x81", {3}}}});
  EXPECT_EQ(render(group),
            "OP20: Clamps\n\n  Forces\n"
            "               K1\n"
            "    --------   --\n"
            "    Tür         1\n"
            "    クランプ    2\n"
            "    e\xCC\x81           3\n");
}

TEST_F(TextTables, ShowControlCharactersAndBadBytesHarmlessly) {
  MaxValueGroup group{"Forces", false, true, {}, {"K1"}, {}};
  group.subGroups.push_back({"", {{"a\x1b[2Jb\nc\xFF", {1}}}});
  auto const text = render(group);
  EXPECT_THAT(text, HasSubstr("a␛[2Jb␊c\xEF\xBF\xBD"));
  EXPECT_THAT(text, Not(HasSubstr("\x1b")));
}

TEST_F(TextTables, RepeatTheHeadOfALongSection) {
  MaxValueGroup group{"Forces", false, true, {}, {"Key1"}, {}};
  for (int i = 0; i < 81; ++i) group.subGroups.push_back({"", {{"C" + std::to_string(i), {1}}}});
  auto const text = render(group);
  std::size_t heads = 0;
  for (auto at = text.find("Key1"); at != text.npos; at = text.find("Key1", at + 1)) ++heads;
  EXPECT_EQ(heads, 3U);
}

/// Two rows with four columns of four characters each behind names of four.
MaxValueGroup fourColumns() {
  MaxValueGroup group{"Forces", false, true, {}, {"K1", "K2", "K3", "K4"}, {}};
  group.subGroups.push_back({"", {{"C1", {1001, 2001, 3001, 4001}}, {"Long", {1002, 2002, 3002, 4002}}}});
  return group;
}

constexpr std::string_view s_fourColumns = R"(OP20: Clamps

  Forces
             K1     K2     K3     K4
    ----   ----   ----   ----   ----
    C1     1001   2001   3001   4001
    Long   1002   2002   3002   4002
)";

TEST_F(TextTables, AreNeverBrokenWhereThereIsNoWidth) {
  EXPECT_EQ(render(fourColumns(), {.width = 0}), s_fourColumns);
}

TEST_F(TextTables, AreNotBrokenWhereTheyFit) {
  EXPECT_EQ(render(fourColumns(), {.width = 36}), s_fourColumns);
}

TEST_F(TextTables, BreakIntoBlocksWithNamesAndHeadsWhereALineIsTooNarrow) {
  EXPECT_EQ(render(fourColumns(), {.width = 35}), R"(OP20: Clamps

  Forces
             K1     K2     K3
    ----   ----   ----   ----
    C1     1001   2001   3001
    Long   1002   2002   3002

             K4
    ----   ----
    C1     4001
    Long   4002
)");
}

TEST_F(TextTables, GiveAColumnThatIsWiderThanTheTerminalABlockOfItsOwn) {
  MaxValueGroup group{"Forces", false, true, {}, {"K1", "AVeryLongKeyWithoutBlanks", "K3"}, {}};
  group.subGroups.push_back({"Left", {{"C1", {1, 2, 3}}}});
  EXPECT_EQ(render(group, {.width = 20}), R"(OP20: Clamps

  Forces
           K1
    ----   --
    Left
      C1    1

           AVeryLongKeyWithoutBlanks
    ----   -------------------------
    Left
      C1                           2

           K3
    ----   --
    Left
      C1    3
)");
}

TEST_F(TextTables, MeasureWideNamesWhenTheyBreak) {
  MaxValueGroup group{"力", false, true, {}, {"K1", "K2"}, {}};
  group.subGroups.push_back({"", {{"クランプ", {1, 2}}}});
  constexpr std::string_view unbroken =
      "OP20: Clamps\n\n  力\n"
      "               K1   K2\n"
      "    --------   --   --\n"
      "    クランプ    1    2\n";
  EXPECT_EQ(render(group, {.width = 22}), unbroken);
  EXPECT_EQ(render(group, {.width = 21}),
            "OP20: Clamps\n\n  力\n"
            "               K1\n"
            "    --------   --\n"
            "    クランプ    1\n\n"
            "               K2\n"
            "    --------   --\n"
            "    クランプ    2\n");
}

TEST_F(TextTables, LeaveRoomForMarksWhenTheyBreak) {
  m_container->valuesAreValid = {{"C1", false}};
  EXPECT_THAT(render(fourColumns(), {.width = 44}), HasSubstr("  K3       K4\n"));
  EXPECT_THAT(render(fourColumns(), {.width = 43}), Not(HasSubstr("  K3       K4\n")));
}

TEST_F(TextTables, RepeatTheHeadsOfEachBlockOfALongSection) {
  MaxValueGroup group{"Forces", false, true, {}, {"Key1", "Key2"}, {}};
  for (int i = 0; i < 41; ++i) group.subGroups.push_back({"", {{"C" + std::to_string(i), {1, 2}}}});
  auto const text = render(group, {.width = 15});
  std::string heads;
  for (std::size_t at = 0; (at = text.find("Key", at)) != text.npos; ++at) heads += text[at + 3];
  EXPECT_EQ(heads, "1122");
}

TEST_F(TextTables, MarkTheTitleOnATerminal) {
  EXPECT_THAT(render({}, {.colour = true}), testing::StartsWith("\x1b[1mOP20: Clamps\x1b[0m\n"));
}

TEST_F(TextTables, SayWhereThereIsNothing) {
  EXPECT_EQ(renderText({genTable(m_unit, m_container, ResultLimits())}, {.colour = false}),
            "OP20: Clamps\n  no elements\n");
  EXPECT_EQ(render({"Forces", false, true, {}, {"K1"}, {}}), "OP20: Clamps\n\n  Forces\n    no elements\n");
}

TEST_F(TextTables, MarkValuesBeyondTheirLimitWithASignAndInRed) {
  ResultLimits limits;
  limits.collection->updateLimits({m_unit.getID()});
  m_container->groups = {
      {"Forces", false, true, {TablePropertyLimitType::BoltNormalForce}, {"ClampNormalForce"}, {}}};
  m_container->groups[0].subGroups.push_back({"", {{"B1", {-30.25}}, {"B2", {30}}}});
  EXPECT_EQ(renderText({genTable(m_unit, m_container, limits)}, {.colour = false}), R"(OP20: Clamps

  Forces
         Max Normal
              Force
                  N
               ≤ 30
    --   ------------
    B1       -30.25 !
    B2        30

! beyond its limit
)");
  EXPECT_THAT(renderText({genTable(m_unit, m_container, limits)}, {.colour = true}),
              HasSubstr("\x1b[31m-30.25\x1b[0m !\n"));
}

TEST_F(TextTables, NameAnInvalidItemWithTheAppendix) {
  m_container->valuesAreValid = {{"Spot 1", false}};
  m_container->invalidValuesNameAppendix = " (Joining Failed)";
  MaxValueGroup group{"Forces", false, true, {}, {"K1"}, {}};
  group.subGroups.push_back({"", {{"Spot 1", {1}}}});
  EXPECT_THAT(render(group), HasSubstr("    Spot 1 (Joining Failed)    1 ?\n\n? not valid\n"));
}

// A series of NaN alone, one with some, an empty one and one of numbers.
constexpr char const* s_gaps = R"([
    {"quantity": "ClampNormalForce", "values": [null, null]},
    {"quantity": "ClampClosingForce", "pairs": [[null, 0.1], [-701.23456789, 0.25], [1, 0.3]]},
    {"quantity": "ClampSupportingForce", "values": []},
    {"quantity": "ClampTangentialForce", "values": [0, 2]}])";

TEST_F(TextTables, TellNoDataFromZeroAndMarkWhatHoldsNaN) {
  EXPECT_EQ(renderText(genClampTables(s_gaps), {}), R"(OP20: Clamps

  Forces
                                                    Max          Max
              Max Normal     Max Closing     Supporting   Tangential
                   Force           Force          Force        Force
                       N               N              N            N
    -------   ------------   -------------   ----------   ----------
    Clamp 1          NaN *     -701.2346 *            –            2

  Distances
              Max Distance
                        mm
    -------   ------------
    Clamp 1              –

* its series holds values that are not numbers
)");
}

TEST_F(TextTables, ShowTheTimeOrTheStepBesideEachValue) {
  EXPECT_THAT(renderText(genClampTables(s_gaps), {.digits = 4, .when = true}),
              testing::StartsWith(R"(OP20: Clamps

  Forces
                                                           Max          Max
              Max Normal     Max Closing            Supporting   Tangential
                   Force           Force                 Force        Force
                       N               N                     N            N
    -------   ------------   --------------------   ----------   --------------
    Clamp 1          NaN *        -701.2 * @ 0.25            –            2 # 1
)"));
  EXPECT_THAT(renderText(genClampTables(s_gaps), {.when = true}),
              testing::EndsWith("\n* its series holds values that are not numbers   @ time, # step\n"));
}

TEST_F(TextTables, SayWhatMarksMeanOnLinesThatFit) {
  auto const tables = genClampTables(s_gaps);
  EXPECT_THAT(renderText(tables, {.width = 63, .when = true}),
              testing::EndsWith("\n* its series holds values that are not numbers   @ time, # step\n"));
  EXPECT_THAT(renderText(tables, {.width = 62, .when = true}),
              testing::EndsWith("\n* its series holds values that are not numbers\n@ time, # step\n"));
}

}  // namespace
}  // namespace Kestrel::ResultTables

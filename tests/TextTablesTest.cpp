#include "result_tables/render/TextTables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Kestrel::ResultTables {
namespace {

using DataType = MaxValueGroupContainer::DataType;
using testing::HasSubstr;
using testing::Not;

class TextTables : public testing::Test {
 protected:
  TextTables() { m_container->title = "Clamps"; }

  /// The text of one table with one section.
  std::string render(MaxValueGroup const& group, bool colour = false) {
    m_container->groups = {group};
    return renderText({ResultTable(m_unit, m_container, TablePropertiesData())}, {.colour = colour});
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

TEST_F(TextTables, MarkTheTitleOnATerminal) {
  EXPECT_THAT(render({}, true), testing::StartsWith("\x1b[1mOP20: Clamps\x1b[0m\n"));
}

TEST_F(TextTables, SayWhereThereIsNothing) {
  EXPECT_EQ(renderText({ResultTable(m_unit, m_container, TablePropertiesData())}, {.colour = false}),
            "OP20: Clamps\n  no elements\n");
  EXPECT_EQ(render({"Forces", false, true, {}, {"K1"}, {}}), "OP20: Clamps\n\n  Forces\n    no elements\n");
}

TEST_F(TextTables, MarkValuesBeyondTheirLimitWithASignAndInRed) {
  TablePropertiesData limits;
  limits.updateLimits({m_unit.getID()});
  m_container->groups = {
      {"Forces", false, true, {TablePropertyLimitType::BoltNormalForce}, {"ClampNormalForce"}, {}}};
  m_container->groups[0].subGroups.push_back({"", {{"B1", {-30.25}}, {"B2", {30}}}});
  EXPECT_EQ(renderText({ResultTable(m_unit, m_container, limits)}, {.colour = false}), R"(OP20: Clamps

  Forces
         Max Normal
              Force
                  N
               ≤ 30
    --   ------------
    B1       -30.25 !
    B2        30

! beyond its limit   ? not valid
)");
  EXPECT_THAT(renderText({ResultTable(m_unit, m_container, limits)}, {.colour = true}),
              HasSubstr("\x1b[31m-30.25\x1b[0m !\n"));
}

TEST_F(TextTables, NameAnInvalidItemWithTheAppendix) {
  m_container->valuesAreValid = {{"Spot 1", false}};
  m_container->invalidValuesNameAppendix = " (Joining Failed)";
  MaxValueGroup group{"Forces", false, true, {}, {"K1"}, {}};
  group.subGroups.push_back({"", {{"Spot 1", {1}}}});
  EXPECT_THAT(render(group),
              HasSubstr("    Spot 1 (Joining Failed)    1 ?\n\n! beyond its limit   ? not valid\n"));
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include "result_tables/json/JsonShapes.h"

#include <gmock/gmock.h>

#include <string>

#include "support/ImportTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class JsonShapes : public testing::Test {
 protected:
  /// "no error", or what is wrong with the text.
  std::string read(JsonShape const& shape, std::string const& text) {
    return errorOf([&] { m_reader.read(text, shape); });
  }

  JsonReader m_reader{"x.json"};
};

TEST_F(JsonShapes, TakeTextsAndIdentifiers) {
  std::string text;
  EXPECT_EQ(read(jsonText(text), "\"a\""), "no error");
  EXPECT_EQ(text, "a");
  GUIdentifier id;
  EXPECT_EQ(read(jsonIdentifier(m_reader, id), "\"0B6F6D3E-6C1E-4A57-9B52-0F6F2F1B6A01\""), "no error");
  EXPECT_EQ(id.toString(), "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01");
  EXPECT_EQ(read(jsonIdentifier(m_reader, id), "\"0B6F\""),
            "x.json: document: expected a UUID of 8-4-4-4-12 hexadecimal digits, found \"0B6F\"");
}

TEST_F(JsonShapes, TakeOneFormatInOneVersion) {
  EXPECT_EQ(read(jsonFormatName(m_reader, "limits"), "\"limits\""), "no error");
  EXPECT_EQ(read(jsonFormatName(m_reader, "limits"), "\"Limits\""),
            "x.json: document: expected \"limits\", found \"Limits\"");
  EXPECT_EQ(read(jsonFormatVersion(m_reader), "1"), "no error");
  EXPECT_EQ(read(jsonFormatVersion(m_reader), "2"), "x.json: document: expected version 1, found version 2");
}

TEST_F(JsonShapes, TakeTheBoundsOfSteps) {
  std::optional<StepBounds> bounds;
  EXPECT_EQ(read(jsonStepBounds(bounds), R"({"last": 2, "first": 4294967295})"), "no error");
  ASSERT_TRUE(bounds.has_value());
  EXPECT_EQ(bounds->first, 4294967295U);
  EXPECT_EQ(bounds->last, 2U);
  EXPECT_EQ(read(jsonStepBounds(bounds), R"({"first": 4294967296, "last": 0})"),
            "x.json: /first: expected an integer from 0 to 4294967295, found 4294967296");
  EXPECT_EQ(read(jsonStepBounds(bounds), R"({"first": 1})"),
            "x.json: document: expected a member \"last\", found none");
}

TEST_F(JsonShapes, RefuseBoundsThatAreNoStepsOfTheUnit) {
  std::optional<StepBounds> bounds;
  auto const unit = [&](std::size_t steps) {
    return jsonObject(
        {{"visibleSteps", JsonMember::Presence::optional, jsonStepBounds(bounds)}}, [&] { bounds.reset(); },
        [this, &bounds, steps] { checkStepBounds(m_reader, bounds, steps); });
  };
  EXPECT_EQ(read(unit(0), "{}"), "no error");
  EXPECT_EQ(read(unit(3), R"({"visibleSteps": {"first": 2, "last": 0}})"), "no error");
  EXPECT_EQ(read(unit(3), R"({"visibleSteps": {"first": 3, "last": 0}})"),
            "x.json: /visibleSteps/first: expected the index of one of 3 steps, found 3");
  EXPECT_EQ(read(unit(3), R"({"visibleSteps": {"first": 0, "last": 9}})"),
            "x.json: /visibleSteps/last: expected the index of one of 3 steps, found 9");
}

TEST_F(JsonShapes, TakeTheKindsOfTools) {
  std::string name;
  auto type = ToolForceDataType::pilot;
  auto const shape = jsonToolKind(m_reader, [&](std::string_view kind, ToolForceDataType kindType) {
    name = kind;
    type = kindType;
  });
  EXPECT_EQ(read(shape, "\"spotWeld\""), "no error");
  EXPECT_EQ(name, "spotWeld");
  EXPECT_EQ(type, ToolForceDataType::spotWeld);
  EXPECT_EQ(read(shape, "\"weld\""),
            "x.json: document: expected one of pilot, clamp, tool, spotWeld, joiningTong, suctionZone, bolt, "
            "found \"weld\"");
}

TEST_F(JsonShapes, TakeToolGroupingsInTheOrderOfTheFile) {
  std::vector<std::pair<std::string, ToolGroups>> groupings;
  auto const shape = jsonToolGroupings({"Rollers", "Steels"}, [&](std::string_view family) -> ToolGroups& {
    return groupings.emplace_back(family, ToolGroups()).second;
  });
  EXPECT_EQ(read(shape, R"({"Steels": [], "Rollers": [{"tools": ["T1", "T2"], "name": "Left"},
                                                      {"name": "", "tools": []}]})"),
            "no error");
  EXPECT_THAT(
      groupings,
      ElementsAre(Pair("Steels", IsEmpty()),
                  Pair("Rollers", ElementsAre(Pair("Left", ElementsAre("T1", "T2")), Pair("", IsEmpty())))));
  EXPECT_EQ(read(shape, R"({"Clamps": []})"),
            "x.json: /Clamps: expected one of the members Rollers, Steels, found \"Clamps\"");
  EXPECT_EQ(read(shape, R"({"Steels": [{"name": "A"}]})"),
            "x.json: /Steels/0: expected a member \"tools\", found none");
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include "result_tables/results/FastToolReader.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <string>
#include <string_view>

namespace Kestrel::ResultTables {
namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;
using Pair = StepValues<double>::Pair;

constexpr double s_infinity = std::numeric_limits<double>::infinity();
/// Behind every tool of a results file.
constexpr std::string_view s_restOfFile = "}]}], \"version\": 1}";

/// Whether the members make a tool.
bool isRead(std::string const& members, ToolDraft& tool) {
  auto const text = members + std::string(s_restOfFile);
  FastToolReader reader;
  auto const* const closing = reader.readTool(text.data(), text.data() + text.size(), tool);
  if (closing != nullptr) {
    EXPECT_EQ(std::string_view(closing), s_restOfFile);
  }
  return closing != nullptr;
}

bool isLeft(std::string const& members) {
  ToolDraft tool;
  return !isRead(members, tool);
}

TEST(FastToolReader, ReadsATool) {
  ToolDraft tool;
  ASSERT_TRUE(isRead(R"( "id": "C 1", "kind": "clamp", "series": [
      {"quantity": "ClampForceN", "values": [1.5, -2,3e2,null,"Infinity", "-Infinity" ]},
      {"pairs": [[1, 0.25],[ -0.0 , null ]], "quantity": ""} ],
      "tangentialForce": {"values": []} )",
                     tool));
  EXPECT_EQ(tool.id, "C 1");
  EXPECT_EQ(tool.type, ToolForceDataType::clamp);
  ASSERT_EQ(tool.series.size(), 2u);
  EXPECT_EQ(tool.series.begin()[0].first, "ClampForceN");
  EXPECT_THAT(tool.series.begin()[0].second->values(),
              ElementsAre(1.5, -2, 300, ::testing::IsNan(), s_infinity, -s_infinity));
  EXPECT_EQ(tool.series.begin()[1].first, "");
  EXPECT_THAT(tool.series.begin()[1].second->pairs(),
              ElementsAre(Pair(1, 0.25), ::testing::Pair(0, ::testing::IsNan())));
  EXPECT_TRUE(std::signbit(tool.series.begin()[1].second->pairs()[1].first));
  ASSERT_TRUE(tool.tangentialForce);
  EXPECT_EQ(tool.tangentialForce->size(), 0u);
  EXPECT_FALSE(tool.tangentialForce->forEachPair([](double, double) {}));
}

TEST(FastToolReader, ReadsAToolWithoutSeries) {
  ToolDraft tool;
  ASSERT_TRUE(isRead(R"("kind":"pilot","id":"")", tool));
  EXPECT_EQ(tool.id, "");
  EXPECT_EQ(tool.series.size(), 0u);
  EXPECT_FALSE(tool.tangentialForce);
}

TEST(FastToolReader, PassesOverTheSeriesOfATool) {
  std::string const text = R"("id": "C", "series": [{"quantity": "q", "values": [1, null]}, {"quantity": "p",
      "pairs": [[1e2, "Infinity"]]}], "kind": "clamp"}                )";
  FastToolReader reader;
  ToolDraft tool;
  EXPECT_EQ(reader.passTool(text.data(), text.data() + text.size(), tool), text.data() + text.rfind('}'));
  EXPECT_EQ(tool.id, "C");
  EXPECT_EQ(tool.type, ToolForceDataType::clamp);
  EXPECT_EQ(tool.series.size(), 0u);
}

TEST(FastToolReader, LeavesWhatTheShapesRefuse) {
  std::string const head = R"("id": "C", "kind": "clamp", )";
  for (std::string const members :
       {R"("id": "C")", R"("kind": "clamp")", R"()", R"("id": "C", "id": "C", "kind": "clamp")",
        R"("id": "C", "kind": "clamp", "kind": "clamp")", R"("id": "C", "kind": "crane")",
        R"("id": 1, "kind": "clamp")", R"("id": "C" "kind": "clamp")", R"("id": "C", "kind": "clamp",)",
        R"("id": "C", "kind": "clamp", "colour": "red")"})
    EXPECT_TRUE(isLeft(members)) << members;
  for (std::string const members : {R"("series": {})",
                                    R"("series": [,])",
                                    R"("series": [{}])",
                                    R"("series": [{"quantity": "q"}])",
                                    R"("series": [{"values": [1]}])",
                                    R"("series": [{"quantity": "q", "values": [1], "values": [1]}])",
                                    R"("series": [{"quantity": "q", "values": [1], "pairs": []}])",
                                    R"("series": [{"quantity": "q", "quantity": "q", "values": []}])",
                                    R"("series": [{"quantity": "q", "values": [1,]}])",
                                    R"("series": [{"quantity": "q", "values": [1 2]}])",
                                    R"("series": [{"quantity": "q", "values": [01]}])",
                                    R"("series": [{"quantity": "q", "values": ["NaN"]}])",
                                    R"("series": [{"quantity": "q", "values": [nul]}])",
                                    R"("series": [{"quantity": "q", "values": [true]}])",
                                    R"("series": [{"quantity": "q", "values": [[1, 2]]}])",
                                    R"("series": [{"quantity": "q", "pairs": [1, 2]}])",
                                    R"("series": [{"quantity": "q", "pairs": [[1]]}])",
                                    R"("series": [{"quantity": "q", "pairs": [[1, 2, 3]]}])",
                                    R"("series": [], "series": [])",
                                    R"("tangentialForce": {"quantity": "q", "values": []})",
                                    R"("tangentialForce": {}, "tangentialForce": {"values": []})",
                                    R"("tangentialForce": [1])"})
    EXPECT_TRUE(isLeft(head + members)) << members;
}

TEST(FastToolReader, LeavesWhatIsUnusual) {
  for (std::string const members :
       {R"("id": "\u0043", "kind": "clamp")", R"("\u0069d": "C", "kind": "clamp")",
        "\"id\": \"\xC3\xA4\", \"kind\": \"clamp\"", "\"id\": \"\t\", \"kind\": \"clamp\"",
        R"("id": "C", "kind": "clamp", "series": [{"quantity": "q", "values": [1e301]}])",
        R"("id": "C", "kind": "clamp", "series": [{"quantity": "q", "values": ["Infin\u0069ty"]}])"})
    EXPECT_TRUE(isLeft(members)) << members;
}

TEST(FastToolReader, LeavesATextThatEndsAnywhere) {
  std::string const text =
      R"("id": "C", "kind": "clamp", "series": [{"quantity": "q", "values": [1, null, "Infinity"]}, {"quantity": "q", "pairs": [[1, 2]]}])";
  for (std::size_t size = 0; size <= text.size(); ++size) {
    std::string const cut = text.substr(0, size);  // the sanitizer watches what is behind
    FastToolReader reader;
    ToolDraft tool;
    EXPECT_EQ(reader.readTool(cut.data(), cut.data() + cut.size(), tool), nullptr) << cut;
  }
}

TEST(FastToolReader, KeepsTheNumbersOfASeriesThatIsLargerThanItsBlocks) {
  std::string members = R"("id": "C", "kind": "clamp", "series": [)";
  for (int series = 0; series < 3; ++series) {
    members += series == 0 ? "{" : ", {";
    members += R"("quantity": "q", "values": [)";
    for (int i = 0; i < 300'000; ++i) members += (i == 0 ? "" : ",") + std::to_string(series * 1'000'000 + i);
    members += "]}";
  }
  members += "]";
  ToolDraft tool;
  ASSERT_TRUE(isRead(members, tool));
  ASSERT_EQ(tool.series.size(), 3u);
  for (int series = 0; series < 3; ++series) {
    auto const values = tool.series.begin()[series].second->values();
    ASSERT_THAT(values, SizeIs(300'000));
    for (int i = 0; i < 300'000; ++i) ASSERT_EQ(values[static_cast<std::size_t>(i)], series * 1'000'000 + i);
  }
}

TEST(FastToolReader, ReadsArraysForWhoReadsTheRestByShapes) {
  std::string const text = "1, 2 ], [3, [4]]   ";
  FastToolReader reader;
  auto const* const end = text.data() + text.size();
  EXPECT_EQ(reader.readValues(text.data(), end), text.data() + 5);
  EXPECT_THAT(reader.takeSeries(false).values(), ElementsAre(1, 2));
  EXPECT_EQ(reader.readValues(text.data() + 9, end), nullptr);
  reader.addValue(5);
  EXPECT_THAT(reader.takeSeries(false).values(), ElementsAre(5)) << "what was not taken leaves nothing";
  reader.addPair(6, 7);
  EXPECT_THAT(reader.takeSeries(true).pairs(), ElementsAre(Pair(6, 7)));
}

}  // namespace
}  // namespace Kestrel::ResultTables

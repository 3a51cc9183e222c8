#include "result_tables/results/ToolLookahead.h"

#include <gmock/gmock.h>

#include <string>

namespace Kestrel::ResultTables {
namespace {

std::string tool(int number) {
  return R"({"id": "C)" + std::to_string(number) +
         R"(", "kind": "clamp", "series": [{"quantity": "q", "values": [)" + std::to_string(number) + "]}]}";
}

std::string tools(int count) {
  std::string text = "[";
  for (int i = 0; i < count; ++i) text += (i == 0 ? "" : ", ") + tool(i);
  return text + "]                ";
}

/// The place behind the brace of a tool.
char const* placeOf(int number, std::string const& text) { return text.data() + text.find(tool(number)) + 1; }

TEST(ToolLookahead, GivesTheToolsOfItsParts) {
  auto const text = tools(300);
  for (std::size_t threads = 1; threads < 4; ++threads) {
    ToolLookahead lookahead(text, threads);
    std::size_t given = 0;
    for (int i = 0; i < 300; ++i) {
      ToolDraft draft;
      auto const* const closing = lookahead.take(placeOf(i, text), draft);
      if (closing == nullptr) continue;
      EXPECT_EQ(closing, placeOf(i, text) + tool(i).size() - 2);
      EXPECT_EQ(draft.id, "C" + std::to_string(i));
      ASSERT_EQ(draft.series.size(), 1u);
      EXPECT_THAT(draft.series.begin()[0].second->values(), testing::ElementsAre(i));
      ++given;
    }
    // All but those of the first part, where the reader is.
    EXPECT_NEAR(static_cast<double>(given),
                300.0 * static_cast<double>(threads) / static_cast<double>(threads + 1), 5)
        << threads;
  }
}

TEST(ToolLookahead, GivesNothingWhereNoToolBegins) {
  auto const text = tools(100);
  ToolLookahead lookahead(text, 1);
  ToolDraft draft;
  EXPECT_EQ(lookahead.take(placeOf(80, text) + 1, draft), nullptr);
  EXPECT_EQ(lookahead.take(text.data() + text.find("{\"quantity", text.find(tool(90))) + 1, draft), nullptr);
  EXPECT_NE(lookahead.take(placeOf(95, text), draft), nullptr);
  EXPECT_EQ(lookahead.take(text.data() + text.size(), draft), nullptr);
}

TEST(ToolLookahead, PassesOverWhatItCannotRead) {
  auto text = tools(100);
  text.replace(text.find(tool(80)), tool(80).size(), R"({"id": "\u0043", "kind": "clamp"})");
  text.insert(text.find(tool(85)), R"("a { in a text", {"id": )");
  ToolLookahead lookahead(text, 1);
  for (int i = 70; i < 100; ++i) {
    if (i == 80) continue;
    ToolDraft draft;
    EXPECT_NE(lookahead.take(placeOf(i, text), draft), nullptr) << i;
  }
}

TEST(ToolLookahead, StopsWhenItIsNotNeeded) {
  auto const text = tools(20'000);
  for (int i = 0; i < 20; ++i) ToolLookahead const lookahead(text, 2);
}

}  // namespace
}  // namespace Kestrel::ResultTables

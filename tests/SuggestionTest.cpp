#include "result_tables/base/Suggestion.h"

#include <gtest/gtest.h>

namespace Kestrel::ResultTables {
namespace {

TEST(EditDistance, CountsWhatIsInsertedRemovedReplacedAndSwapped) {
  EXPECT_EQ(editDistance("show", "show"), 0U);
  EXPECT_EQ(editDistance("sho", "show"), 1U);
  EXPECT_EQ(editDistance("shoow", "show"), 1U);
  EXPECT_EQ(editDistance("shaw", "show"), 1U);
  EXPECT_EQ(editDistance("shwo", "show"), 1U);
  EXPECT_EQ(editDistance("hsow", "show"), 1U);
  EXPECT_EQ(editDistance("kitten", "sitting"), 3U);
  EXPECT_EQ(editDistance("abcd", "badc"), 2U);
  EXPECT_EQ(editDistance("ca", "abc"), 3U) << "what was swapped stays as it is";
}

TEST(EditDistance, IsTheLengthOfTheOtherWhereOneIsEmpty) {
  EXPECT_EQ(editDistance("", ""), 0U);
  EXPECT_EQ(editDistance("", "abc"), 3U);
  EXPECT_EQ(editDistance("abc", ""), 3U);
}

TEST(EditDistance, IsTheSameBothWays) {
  EXPECT_EQ(editDistance("format", "fromat"), editDistance("fromat", "format"));
  EXPECT_EQ(editDistance("limits", "list"), editDistance("list", "limits"));
  EXPECT_EQ(editDistance("limits", "list"), 3U);
}

TEST(EditDistance, TakesNoNoteOfTheCaseOfAsciiLetters) {
  EXPECT_EQ(editDistance("CLAMPS", "clamps"), 0U);
  EXPECT_EQ(editDistance("@[`{", "`{@["), 4U) << "neighbours of the letters are not letters";
}

TEST(NearestWord, IsTheOneWithTheFewestSlips) {
  EXPECT_EQ(nearestWord("chekc", {"show", "check", "demo"}), "check");
  EXPECT_EQ(nearestWord("--fromat", {"--format", "--family"}), "--format");
  EXPECT_EQ(nearestWord("bat", {"car", "cat", "bar"}), "cat") << "the first of those that are equally near";
}

TEST(NearestWord, IsNoneWhereNoneIsNear) {
  EXPECT_EQ(nearestWord("yaml", {"text", "csv", "json"}), "");
  EXPECT_EQ(nearestWord("-x", {"-h"}), "") << "nothing is near a single letter";
  EXPECT_EQ(nearestWord("", {"a"}), "");
  EXPECT_EQ(nearestWord("show", {}), "");
}

TEST(NearestWord, MayHaveMoreSlipsInALongWord) {
  EXPECT_EQ(nearestWord("shw", {"show"}), "show");
  EXPECT_EQ(nearestWord("shw", {"shows"}), "");
  EXPECT_EQ(nearestWord("BoltNrmlForse", {"BoltNormalForce"}), "BoltNormalForce");
}

TEST(Suggestion, IsTheEndOfAMessage) {
  EXPECT_EQ(suggestion("shwo", {"show", "check"}), "; did you mean \"show\"?");
  EXPECT_EQ(suggestion("import", {"show", "check"}), "");
  EXPECT_EQ(listOf({"text", "csv", "json"}), "text, csv, json");
  EXPECT_EQ(listOf({}), "");
}

TEST(QuotedList, HasEachNameOnceAndAsManyAsAPersonReads) {
  EXPECT_EQ(quotedListOf({"OP20", "a\nb", "OP20"}), "\"OP20\", \"a␊b\"");
  EXPECT_EQ(quotedListOf({}), "none");
  std::vector<std::string_view> names = {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j",
                                         "k", "l", "m", "n", "o", "p", "q", "r", "s", "t"};
  std::string const twenty =
      R"("a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l", "m", "n", "o", "p", "q", "r", "s", "t")";
  EXPECT_EQ(quotedListOf(names), twenty);
  names.emplace_back("a");
  EXPECT_EQ(quotedListOf(names), twenty);
  names.emplace_back("u");
  EXPECT_EQ(quotedListOf(names), twenty + ", …");
}

}  // namespace
}  // namespace Kestrel::ResultTables

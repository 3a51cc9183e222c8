#include "result_tables/command/ShellLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view s_breaks = " \t\n\"'><=;|&(:";

/// What bash puts in when `line` is typed and its last word is to become `word`.
std::string replaced(std::string_view line, std::string_view word, std::string_view breaks = s_breaks) {
  return replacementInBash(parseShellLine(line), word, breaks);
}

TEST(ParseShellLine, DividesWordsAtBlanks) {
  auto const line = parseShellLine("tool  show\tr.json --un");
  EXPECT_THAT(line.words, ElementsAre("tool", "show", "r.json"));
  EXPECT_EQ(line.word, "--un");
  EXPECT_EQ(line.typed, "--un");
}

TEST(ParseShellLine, BeginsAWordBehindABlank) {
  EXPECT_EQ(parseShellLine("tool show ").word, "");
  EXPECT_THAT(parseShellLine("tool show ").words, ElementsAre("tool", "show"));
  EXPECT_THAT(parseShellLine("").words, IsEmpty());
}

TEST(ParseShellLine, TakesQuotingAway) {
  EXPECT_THAT(parseShellLine(R"(a\ b 'c "d' "e 'f" g"h i"j '' )").words,
              ElementsAre("a b", "c \"d", "e 'f", "gh ij", ""));
  EXPECT_THAT(parseShellLine(R"("a \" \\ \$ \x" 'b\' )").words, ElementsAre("a \" \\ $ \\x", "b\\"));
}

TEST(ParseShellLine, SaysWhichQuotationMarkIsOpen) {
  auto const line = parseShellLine("tool a'b c");
  EXPECT_EQ(line.word, "ab c");
  EXPECT_EQ(line.typed, "a'b c");
  EXPECT_EQ(line.openQuote, '\'');
  EXPECT_EQ(line.openQuoteEnd, 2U);
  EXPECT_EQ(parseShellLine("tool \"a'b\"").openQuote, '\0');
}

TEST(ParseShellLine, LeavesOutABackslashThatQuotesNothingYet) {
  EXPECT_EQ(parseShellLine("tool a\\").typed, "a");
  EXPECT_EQ(parseShellLine("tool \"a\\").typed, "\"a");
  EXPECT_EQ(parseShellLine("tool 'a\\").word, "a\\");
}

TEST(ParseShellLine, PassesOverRedirections) {
  EXPECT_THAT(parseShellLine("tool show >out 2>>err r.json <in ").words,
              ElementsAre("tool", "show", "r.json"));
  EXPECT_THAT(parseShellLine("tool a2>out ").words, ElementsAre("tool", "a2"));
  EXPECT_TRUE(parseShellLine("tool show > o").isRedirected);
  EXPECT_EQ(parseShellLine("tool show > o").word, "o");
  EXPECT_FALSE(parseShellLine("tool show > o ").isRedirected);
  EXPECT_FALSE(parseShellLine("tool show '>").isRedirected);
}

TEST(QuoteForShell, QuotesWhatWouldNotStandForItself) {
  EXPECT_EQ(quoteForShell("Tür 1_a-b./:=@%+,", '\0'), "Tür\\ 1_a-b./:=@%+,");
  EXPECT_EQ(quoteForShell("a'b\"c$d&e;f*g~h#i(j)", '\0'), R"(a\'b\"c\$d\&e\;f\*g\~h\#i\(j\))");
  EXPECT_EQ(quoteForShell("a'b\"c$d`e\\f g", '"'), R"(a'b\"c\$d\`e\\f g)");
  EXPECT_EQ(quoteForShell("a'b\"c$d g", '\''), R"(a'\''b"c$d g)");
}

TEST(ReplacementInBash, KeepsWhatIsTyped) {
  EXPECT_EQ(replaced("tool ", "OP 20"), "OP\\ 20");
  EXPECT_EQ(replaced("tool OP", "OP 20"), "OP\\ 20");
  EXPECT_EQ(replaced("tool OP\\ 2", "OP 20"), "OP\\ 20");
  EXPECT_EQ(replaced("tool OP\\", "OP 20"), "OP\\ 20");
  EXPECT_EQ(replaced("tool \"OP \"2", "OP 20"), "\"OP \"20");
}

TEST(ReplacementInBash, BeginsBehindAnOpenQuotationMark) {
  EXPECT_EQ(replaced("tool \"OP", "OP 20"), "OP 20");
  EXPECT_EQ(replaced("tool OP' 2", "OP 20"), " 20");
}

TEST(ReplacementInBash, BeginsBehindTheLastBreakThatIsNotQuoted) {
  EXPECT_EQ(replaced("tool --unit=OP", "--unit=OP 20"), "OP\\ 20");
  EXPECT_EQ(replaced("tool --unit=OP", "--unit=OP 20", " "), "--unit=OP\\ 20");
  EXPECT_EQ(replaced("tool a:b:", "a:b:c"), "c");
  EXPECT_EQ(replaced("tool a\\:b", "a:bc"), "a\\:bc");
  EXPECT_EQ(replaced("tool 'a:'b", "a:bc"), "'a:'bc");
  EXPECT_EQ(replaced("tool \"a\\\":\"b", "a\":bc"), "\"a\\\":\"bc");
}

}  // namespace
}  // namespace Kestrel::ResultTables

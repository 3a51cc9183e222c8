#include "result_tables/command/Help.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <CLI/CLI.hpp>

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(WrapWords, FillsLinesWithWholeWords) {
  EXPECT_THAT(wrapWords("one two three four", 9), ElementsAre("one two", "three", "four"));
  EXPECT_THAT(wrapWords("one two three four", 13), ElementsAre("one two three", "four"));
  EXPECT_THAT(wrapWords("one", 3), ElementsAre("one"));
  EXPECT_THAT(wrapWords("", 9), IsEmpty());
}

TEST(WrapWords, GivesALineOfItsOwnToAWordThatIsTooLong) {
  EXPECT_THAT(wrapWords("a incomprehensibilities b", 9), ElementsAre("a", "incomprehensibilities", "b"));
}

TEST(WrapWords, DividesBetweenWideCharactersButNotBeforeAClosingMark) {
  EXPECT_THAT(wrapWords("限界値文書。省略", 8), ElementsAre("限界値文", "書。省略"));
  EXPECT_THAT(wrapWords("限界値文。書省略", 8), ElementsAre("限界値", "文。書省", "略"));
  EXPECT_THAT(wrapWords("省略時は RESULTS.limits", 12), ElementsAre("省略時は", "RESULTS.limits"));
  EXPECT_THAT(wrapWords("使う-xの例", 6), ElementsAre("使う-x", "の例"));
  EXPECT_THAT(wrapWords("工具名)と例", 6), ElementsAre("工具", "名)と", "例"));
  EXPECT_THAT(wrapWords("実行 [オプション]", 10), ElementsAre("実行", "[オプション]"));
}

TEST(WrapWords, CountsColumnsNotBytes) {
  EXPECT_THAT(wrapWords("a\xFF b", 2), ElementsAre("a\uFFFD", "b"));
  EXPECT_THAT(wrapWords("für Größen", 10), ElementsAre("für Größen"));
}

/// The program "tool" with a command that takes all that there is to take.
class GenHelp : public testing::Test {
 protected:
  GenHelp() {
    for (auto* const app : {&m_program, &m_command}) app->set_help_flag("-h,--help", "Print this");
    m_arguments.operand("FILES", Arguments::Count::atLeastOne, "What to read", into(m_texts));
    m_arguments.option("--kind", "K", Arguments::Count::one, "What kind", into(m_text));
    m_arguments.option("--unit", "U", Arguments::Count::any,
                       "Only the units with this id or name; can be repeated", into(m_texts));
    m_arguments.flag("--all", "Everything", m_isGiven);
  }

  std::string m_text;
  std::vector<std::string> m_texts;
  bool m_isGiven = false;
  CLI::App m_program{"What the program is", "tool"};
  CLI::App& m_command = *m_program.add_subcommand("run", "Runs what is in the files");
  Arguments m_arguments{m_command};
};

TEST_F(GenHelp, SaysWhatACommandTakes) {
  EXPECT_EQ(genHelp(m_command, {{"Kinds", {{"1", "first"}, {"20", "second"}}}}, 80),
            R"(Runs what is in the files

Usage: tool run FILES... --kind K [OPTIONS]

Arguments:
  FILES  What to read

Options:
  -h, --help  Print this
  --kind K    What kind
  --unit U    Only the units with this id or name; can be repeated
  --all       Everything

Kinds:
  1   first
  20  second
)");
}

TEST_F(GenHelp, ListsTheCommandsOfAProgram) {
  EXPECT_EQ(genHelp(m_program, {}, 80), R"(What the program is

Usage: tool COMMAND [OPTIONS]

Commands:
  run  Runs what is in the files

Options:
  -h, --help  Print this
)");
}

TEST_F(GenHelp, FitsTheWidth) {
  EXPECT_EQ(genHelp(m_command, {}, 40), R"(Runs what is in the files

Usage: tool run FILES... --kind K
[OPTIONS]

Arguments:
  FILES  What to read

Options:
  -h, --help  Print this
  --kind K    What kind
  --unit U    Only the units with this
              id or name; can be
              repeated
  --all       Everything
)");
  EXPECT_EQ(genHelp(m_command, {}, 7), genHelp(m_command, {}, 40)) << "no terminal is that narrow";
}

TEST_F(GenHelp, PutsAMeaningBelowANameThatIsTooLong) {
  HelpSection const section{"Names", {{"a-name-of-twenty-six-chars", "meaning"}, {"b", "other"}}};
  EXPECT_THAT(genHelp(m_program, {section}, 80), testing::EndsWith(R"(
Names:
  a-name-of-twenty-six-chars
     meaning
  b  other
)"));
}

}  // namespace
}  // namespace Kestrel::ResultTables

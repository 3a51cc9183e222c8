#include "result_tables/command/CommandLine.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "result_tables/base/Text.h"
#include "support/LimitsTesting.h"
#include "support/Shell.h"

// How the program takes its arguments, and what it says of those that are wrong.

namespace Kestrel::ResultTables {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

class CommandLine : public testing::Test {
 protected:
  CommandLine() { m_folder.write("r.json", s_resultsOfThreeUnits); }

  [[nodiscard]] ShellResult run(std::string const& script) const { return runShell(m_folder.path(), script); }

  /// What the program, in a language, says of arguments that it refuses.
  [[nodiscard]] std::string messageOf(std::string const& arguments, std::string const& language = "C") const {
    auto const result = run("LANG=" + language + " $P " + arguments);
    EXPECT_EQ(result.exitCode, 2) << arguments;
    EXPECT_EQ(result.out, "") << arguments;
    EXPECT_THAT(result.err, testing::MatchesRegex("result-tables: .*\n")) << arguments;
    return result.err.substr(result.err.find(' ') + 1, result.err.find('\n') - result.err.find(' ') - 1);
  }

  TemporaryFolder m_folder;
};

// ---- what is wrong

TEST_F(CommandLine, SaysWhichCommandWasMeant) {
  EXPECT_EQ(messageOf(""),
            "expected one of the commands show, check, diff, series, demo, limits, import, study, found "
            "nothing (--help "
            "says more)");
  EXPECT_EQ(
      messageOf("shwo r.json"),
      "expected one of the commands show, check, diff, series, demo, limits, import, study, found \"shwo\"; "
      "did you mean "
      "\"show\"? (--help says more)");
  EXPECT_EQ(
      messageOf("tables r.json"),
      "expected one of the commands show, check, diff, series, demo, limits, import, study, found \"tables\" "
      "(--help says "
      "more)");
  EXPECT_EQ(messageOf("limits"),
            "expected one of the commands list, set, reset, sync, export, import, dump, found nothing "
            "(--help says more)");
  EXPECT_EQ(messageOf("limits lsit r.json"),
            "expected one of the commands list, set, reset, sync, export, import, dump, found \"lsit\"; did "
            "you mean "
            "\"list\"? (--help says more)");
  EXPECT_EQ(messageOf("import cvs"),
            "expected one of the commands calculix, csv, found \"cvs\"; did you mean \"csv\"? (--help says "
            "more)");
}

TEST_F(CommandLine, SaysWhichOptionWasMeant) {
  EXPECT_EQ(messageOf("demo --fromat csv"),
            "unknown option \"--fromat\"; did you mean \"--format\"? (--help says more)");
  EXPECT_EQ(messageOf("show r.json --fromat=json"),
            "unknown option \"--fromat\"; did you mean \"--format\"? (--help says more)");
  EXPECT_EQ(messageOf("limits set r.json --unit OP10 --tpye 23 --value 5"),
            "unknown option \"--tpye\"; did you mean \"--type\"? (--help says more)")
      << "rather than that --type is missing";
  EXPECT_EQ(messageOf("--verison"),
            "unknown option \"--verison\"; did you mean \"--version\"? (--help says more)");
  EXPECT_EQ(messageOf("show r.json -x"), "unknown option \"-x\" (--help says more)");
  EXPECT_EQ(messageOf("--colour demo"), "unknown option \"--colour\" (--help says more)");
}

TEST_F(CommandLine, SaysWhichValueWasMeant) {
  EXPECT_EQ(messageOf("show r.json --format yaml"),
            "--format: expected one of text, csv, json, html, xlsx, found \"yaml\"");
  EXPECT_EQ(messageOf("demo --format jsno"),
            "--format: expected one of text, csv, json, html, xlsx, found \"jsno\"; did you mean \"json\"?");
  EXPECT_EQ(messageOf("check r.json --format csv"),
            "--format: expected one of text, json, junit, html, found \"csv\"");
  EXPECT_EQ(messageOf("limits list r.json --format csv"),
            "--format: expected one of text, json, found \"csv\"");
  EXPECT_THAT(messageOf("demo --family SpotWeld"),
              testing::EndsWith(", SpotWelds, LineWelds, found \"SpotWeld\"; did you mean \"SpotWelds\"?"));
  EXPECT_THAT(messageOf("limits set r.json --unit OP10 --type boltNormalForce --value 5"),
              testing::EndsWith("ClampClosingForce, found \"boltNormalForce\"; did you mean "
                                "\"BoltNormalForce\"?"));
}

TEST_F(CommandLine, SaysWhatIsMissingOrTooMuch) {
  EXPECT_EQ(messageOf("show"), "RESULTS is required (--help says more)");
  EXPECT_EQ(messageOf("import calculix in.dat"),
            "expected exactly one of --map, --list, --make-map, found none");
  EXPECT_EQ(messageOf("limits list r.json more.json"),
            "unexpected argument \"more.json\" (--help says more)");
  EXPECT_EQ(messageOf("demo -- r.json"), "unexpected argument \"r.json\" (--help says more)");
  EXPECT_EQ(messageOf("demo --format"), "--format: expected a value, found nothing (--help says more)");
  EXPECT_EQ(messageOf("demo --unit"), "--unit: expected a value, found nothing (--help says more)");
  EXPECT_EQ(messageOf("demo --format csv --format json"),
            "--format: expected one value, found 2 (--help says more)");
  EXPECT_EQ(messageOf("demo --teaching=no"), "--teaching: expected no value, found \"no\"");
  EXPECT_EQ(messageOf("demo --teaching=false"), "--teaching: expected no value, found \"false\"");
}

TEST_F(CommandLine, ShowsNothingUnprintableOfWhatIsWrong) {
  EXPECT_EQ(messageOf("\"$(printf 'a\\033[31m\\nb')\""),
            "expected one of the commands show, check, diff, series, demo, limits, import, study, found "
            "\"a␛[31m␊b\" (--help says "
            "more)");
}

TEST_F(CommandLine, SpeaksTheLanguageOfTheEnvironment) {
  EXPECT_EQ(messageOf("shwo", "de_DE.UTF-8"),
            "erwartet: einer der Befehle show, check, diff, series, demo, limits, import, study; gefunden: "
            "\"shwo\"; war \"show\" "
            "gemeint? (mehr mit --help)");
  EXPECT_EQ(messageOf("demo --fromat csv", "ja_JP.UTF-8"),
            "不明なオプション: \"--fromat\"。\"--format\" のことですか？（詳細は --help）");
  EXPECT_EQ(messageOf("show r.json --unit OP99", "de_DE.UTF-8"),
            "r.json: erwartet: die Kennung oder der Name einer ihrer Einheiten (\"OP20\", \"OP10\"); "
            "gefunden: \"OP99\"");
  EXPECT_EQ(messageOf("demo --format yaml", "ja_JP.UTF-8"),
            "--format: 期待: 次のいずれか: text, csv, json, html, xlsx、実際: \"yaml\"");
}

// ---- help

constexpr char const* s_commands[] = {"",
                                      "show",
                                      "check",
                                      "diff",
                                      "series",
                                      "demo",
                                      "limits",
                                      "limits list",
                                      "limits set",
                                      "limits reset",
                                      "limits sync",
                                      "limits export",
                                      "limits import",
                                      "limits dump",
                                      "import",
                                      "import calculix",
                                      "import csv",
                                      "study",
                                      "study add",
                                      "study list",
                                      "study remove"};

std::size_t widestLine(std::string const& text) {
  std::size_t widest = 0;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) widest = std::max(widest, displayWidth(line));
  return widest;
}

TEST_F(CommandLine, ExplainsEveryCommandWithinEightyColumnsInEveryLanguage) {
  struct Language {
    char const* name;
    char const* usage;
    char const* exitCodes;
  };
  for (auto const& [language, usage, exitCodes] :
       {Language{"C", "Usage: result-tables", "\nExit codes:\n  0  done; "},
        Language{"de_DE.UTF-8", "Aufruf: result-tables", "\nRückgabewerte:\n  0  erledigt; "},
        Language{"ja_JP.UTF-8", "使い方: result-tables", "\n終了コード:\n  0  完了。"}}) {
    for (auto const* const command : s_commands) {
      auto const result = run(fmt::format("LANG={} $P {} --help", language, command));
      EXPECT_EQ(result.exitCode, 0) << command;
      EXPECT_EQ(result.err, "") << command;
      EXPECT_THAT(result.out, AllOf(HasSubstr(usage), HasSubstr(exitCodes))) << command;
      EXPECT_LE(widestLine(result.out), 80U) << language << ' ' << command << '\n' << result.out;
      EXPECT_EQ(run(fmt::format("LANG={} $P {} -h", language, command)).out, result.out) << command;
    }
  }
}

TEST_F(CommandLine, FitsItsHelpIntoTheTerminal) {
  auto const help = [this](int columns) {
    auto const command = "stty cols " + std::to_string(columns) + "; " + KESTREL_PROGRAM + " show --help";
    return run("TERM=xterm script -qec '" + command + "' /dev/null | tr -d '\\r'").out;
  };
  auto const narrow = help(50);
  EXPECT_LE(widestLine(narrow), 50U) << narrow;
  EXPECT_GT(widestLine(narrow), 40U) << narrow;
  EXPECT_THAT(narrow, HasSubstr("\n                   name; can be repeated\n"));
  EXPECT_THAT(help(200),
              HasSubstr("Form of the output: text, csv, json, html, xlsx; text when it is not named\n"));
}

TEST_F(CommandLine, ListsFamiliesAndKindsOfLimitsInItsHelp) {
  EXPECT_THAT(run("$P show --help").out,
              AllOf(HasSubstr("\nFamilies:\n  Clamps            Clamps (tools of the kind clamp)\n"),
                    HasSubstr("\n  LineWelds         Line Joins (line joins of the visible steps)\n")));
  EXPECT_THAT(run("LANG=de_DE.UTF-8 $P check --help").out,
              HasSubstr("\nFamilien:\n  Clamps            Spanner (Werkzeuge der Art clamp)\n"));
  EXPECT_THAT(run("$P limits set --help").out, AllOf(HasSubstr("\nKinds of limits:\n  0   NoLimit\n"),
                                                     HasSubstr("\n  24  ClampClosingForce\n")));
}

TEST_F(CommandLine, GivesHelpAlsoBesideWhatIsWrong) {
  auto const result = run("$P demo --format yaml --help");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, HasSubstr("Usage: result-tables demo [OPTIONS]\n"));
  EXPECT_EQ(run("$P limits set --help").exitCode, 0) << "nothing is required for it";
}

TEST_F(CommandLine, SaysWhatMustBeGivenInItsUsage) {
  EXPECT_THAT(run("$P limits set --help").out,
              HasSubstr("\nUsage: result-tables limits set RESULTS --type T --value V [OPTIONS]\n"));
  EXPECT_THAT(run("$P check --help").out, HasSubstr("\nUsage: result-tables check RESULTS... [OPTIONS]\n"));
  EXPECT_THAT(run("$P --help").out, HasSubstr("\nUsage: result-tables COMMAND [OPTIONS]\n"));
}

// ---- limits documents that are named, and standard input

TEST_F(CommandLine, NeedsALimitsDocumentThatIsNamed) {
  for (auto const* const command :
       {"show r.json", "check r.json --format json", "limits list r.json", "demo"}) {
    auto const result = run(fmt::format("$P {} --limits none.limits", command));
    EXPECT_EQ(result.exitCode, 2) << command;
    EXPECT_EQ(result.err, "result-tables: none.limits: cannot read: No such file or directory\n") << command;
  }
  EXPECT_EQ(run("$P show r.json").exitCode, 0) << "one that is not named need not exist";
  EXPECT_EQ(run("$P limits sync r.json --limits new.limits").exitCode, 0) << "one that is written neither";
  EXPECT_THAT(m_folder.names(), ElementsAre("new.limits", "new.limits.lock", "r.json"));
  EXPECT_EQ(messageOf("show r.json --limits ''"), "--limits: expected the name of a file, found nothing");
}

TEST_F(CommandLine, ComparesStandardInputWithTheDefaultsOrTheDocumentThatIsNamed) {
  EXPECT_EQ(
      run("$P limits set r.json --unit OP20 --type 23 --value 50 && cp r.json.limits ./-.limits").exitCode,
      0);
  EXPECT_EQ(run("$P check - <r.json").exitCode, 1) << "a document \"-.limits\" is not meant";
  EXPECT_EQ(run("$P check - --limits r.json.limits <r.json").exitCode, 0);
  EXPECT_EQ(run("$P check r.json").exitCode, 0);
}

TEST_F(CommandLine, ChangesLimitsOfStandardInputInADocumentThatIsNamedOnly) {
  for (auto const* const command : {"set - --unit OP10 --type 23 --value 5", "reset -", "sync -"}) {
    EXPECT_EQ(messageOf(fmt::format("limits {} <r.json", command)),
              "--limits: expected the name of a document, as none stands beside standard input");
  }
  EXPECT_THAT(m_folder.names(), ElementsAre("r.json"));
  EXPECT_EQ(run("$P limits set - --unit OP20 --type 23 --value 50 --limits my.limits <r.json").exitCode, 0);
  EXPECT_EQ(run("$P check r.json --limits my.limits").exitCode, 0);
  EXPECT_THAT(run("$P limits dump - <my.limits").out, HasSubstr(" TablePropertyLimit "));
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "result_tables/base/Text.h"
#include "result_tables/command/CommandLine.h"
#include "result_tables/command/CommonOptions.h"
#include "support/LimitsTesting.h"
#include "support/TemporaryFolder.h"

// The worked examples of a command and of a form of output (docs/developing.md).

namespace Kestrel::ResultTables {
namespace {

using testing::HasSubstr;

// ---- the form

/// The extremes as a list of Markdown.
std::string renderMarkdown(Tables const& tables) {
  std::string out;
  for (auto const& table : tables.tables) {
    out += "## " + toPrintable(table.title()) + "\n\n";
    for (std::size_t group = 0; group < table.container().groups.size(); ++group) {
      for (auto const& subGroup : table.container().groups[group].subGroups) {
        for (auto const& item : subGroup.items) {
          for (std::size_t column = 0; column < item.maxValues.size(); ++column) {
            bool const isExceeded = table.isExceeded(group, column, item);
            out += "- " + toPrintable(item.name) + ": " + shortestForm(item.maxValues[column]) +
                   (isExceeded ? " **beyond its limit**\n" : "\n");
          }
        }
      }
    }
  }
  return out;
}

constexpr Format<Tables> s_reportFormats[] = {
    {"markdown", renderInAnyStyle<renderMarkdown, Tables>},
    {"text", renderTables<renderText>},
};

// ---- the command

struct ReportOptions {
  std::string results;
  TableSelection selection;
  std::string limits;
  Output<Tables> output;
};

ExitCode report(ReportOptions const& options) {
  auto const file = readResultsFile(options.results);
  auto const limits = limitsFor(options.results, options.limits, file);
  write(options.output, genTables(file, options.selection, limits));
  return ExitCode::nothingFound;
}

Run declareReport(Arguments& arguments) {
  auto const options = std::make_shared<ReportOptions>();
  addResults(arguments, options->results);
  addSelection(arguments, options->selection);
  addLimits(arguments, options->limits);
  addFormat<Tables>(arguments, s_reportFormats, options->output);
  addOutputFile(arguments, options->output.file);
  return [options] { return report(*options); };
}

std::vector<Command> const s_commands = {
    {"report", [] { return tr("Write a report of a results file"); }, declareReport},
};

// ---- what that makes of them

class CommandExample : public testing::Test {
 protected:
  CommandExample() { m_folder.write("r.json", s_resultsOfThreeUnits); }

  struct Outcome {
    ExitCode exitCode;
    std::string out;
    std::string err;
  };

  static Outcome run(std::vector<char const*> arguments) {
    arguments.insert(arguments.begin(), "result-tables");
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    auto const exitCode = runCommandLine(static_cast<int>(arguments.size()), arguments.data(), s_commands);
    return {exitCode, testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
  }

  TemporaryFolder m_folder;
};

constexpr char const* s_report =
    "## Bolts\n\n- Bolt 1: -40.5 **beyond its limit**\n- Bolt 1: 0\n- Bolt 1: 0\n- Bolt 1: 0\n- Bolt 1: 0\n";

TEST_F(CommandExample, WritesItsFirstFormWhenNoneIsNamed) {
  auto const results = (m_folder.path() / "r.json").string();
  auto const outcome = run({"report", results.c_str()});
  EXPECT_EQ(outcome.exitCode, ExitCode::nothingFound);
  EXPECT_EQ(outcome.out, s_report);
  EXPECT_EQ(outcome.err, "");
}

TEST_F(CommandExample, WritesTheFormThatIsNamedToTheFileThatIsNamed) {
  auto const results = (m_folder.path() / "r.json").string();
  auto const file = (m_folder.path() / "report.md").string();
  auto const outcome = run({"report", results.c_str(), "--format", "markdown", "--output", file.c_str()});
  EXPECT_EQ(outcome.exitCode, ExitCode::nothingFound);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(m_folder.read("report.md"), s_report);
  EXPECT_THAT(run({"report", results.c_str(), "--format", "text"}).out, HasSubstr("OP20: Bolts\n"));
}

TEST_F(CommandExample, IsListedAndExplainedByHelp) {
  EXPECT_THAT(run({"--help"}).out, HasSubstr("\n  report  Write a report of a results file\n"));
  auto const help = run({"report", "--help"}).out;
  EXPECT_THAT(help, HasSubstr("Usage: result-tables report RESULTS [OPTIONS]\n"));
  EXPECT_THAT(help, HasSubstr("Form of the output: markdown, text; markdown when"));
  EXPECT_THAT(help, HasSubstr("\nFamilies:\n"));
}

TEST_F(CommandExample, IsMeantByWordsThatAreNearIt) {
  auto const outcome = run({"raport", "r.json"});
  EXPECT_EQ(outcome.exitCode, ExitCode::failed);
  EXPECT_THAT(outcome.err, HasSubstr("did you mean \"report\"?"));
  EXPECT_THAT(run({"report", "r.json", "--format", "markdwon"}).err, HasSubstr("did you mean \"markdown\"?"));
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include "result_tables/command/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <deque>
#include <exception>

#include "result_tables/base/Error.h"
#include "result_tables/base/File.h"
#include "result_tables/base/Terminal.h"
#include "result_tables/base/Translate.h"
#include "result_tables/command/Check.h"
#include "result_tables/command/Completion.h"
#include "result_tables/command/Demo.h"
#include "result_tables/command/Diff.h"
#include "result_tables/command/Help.h"
#include "result_tables/command/Import.h"
#include "result_tables/command/Limits.h"
#include "result_tables/command/Message.h"
#include "result_tables/command/Mistake.h"
#include "result_tables/command/Series.h"
#include "result_tables/command/Show.h"
#include "result_tables/command/Study.h"

namespace Kestrel::ResultTables {

namespace {

HelpSection exitCodesSection() {
  return {tr("Exit codes"),
          {{"0", tr("done; check, diff and study compare have found nothing")},
           {"1", tr("check has found something, or diff or study compare a difference")},
           {"2", tr("something could not be done; standard error says why")},
           {"3", tr("check has found nothing, as it had not one value to compare with a limit")}}};
}

class CommandLine {
 public:
  explicit CommandLine(std::span<Command const> commands);

  ExitCode run(int argc, char const* const* argv);
  /// Prints what the shell of that name offers between the words before and behind the cursor.
  void complete(std::string_view shell, std::string_view before, std::string_view behind,
                std::string_view breaks) const;

 private:
  /// A command that runs, as it has been declared.
  struct Declared {
    Arguments arguments;
    Run run;
  };

  void declare(CLI::App& parent, Command const& command);
  [[nodiscard]] CLI::App const& parsedCommand() const;
  [[nodiscard]] Declared const* declared() const;
  void printHelp() const;

  CLI::App m_program;
  std::deque<Declared> m_declared;
};

CommandLine::CommandLine(std::span<Command const> commands)
    : m_program(tr("Result tables of a sheet-metal forming and body-assembly simulation"), "result-tables") {
  m_program.set_help_flag("-h,--help", tr("Print this help and exit"));
  m_program.set_version_flag("--version", "result-tables " RESULT_TABLES_VERSION,
                             tr("Print the version and exit"));
  m_program.require_subcommand(1);
  for (auto const& command : commands) declare(m_program, command);
}

void CommandLine::declare(CLI::App& parent, Command const& command) {
  auto& app = *parent.add_subcommand(std::string(command.name), command.help());
  if (command.declare != nullptr) {
    auto& declared = m_declared.emplace_back(Declared{Arguments(app), {}});
    declared.run = command.declare(declared.arguments);
  } else {
    app.require_subcommand(1);
    for (auto const& sub : command.commands) declare(app, sub);
  }
}

CLI::App const& CommandLine::parsedCommand() const {
  auto const* command = &m_program;
  while (!command->get_subcommands().empty()) command = command->get_subcommands().front();
  return *command;
}

CommandLine::Declared const* CommandLine::declared() const {
  auto const found = std::find_if(m_declared.begin(), m_declared.end(), [this](Declared const& declared) {
    return &declared.arguments.app() == &parsedCommand();
  });
  return found == m_declared.end() ? nullptr : &*found;
}

void CommandLine::printHelp() const {
  constexpr std::size_t usualWidth = 80;
  auto const width = terminalWidth();
  auto sections = declared() == nullptr ? std::vector<HelpSection>() : declared()->arguments.helpSections();
  sections.push_back(exitCodesSection());
  writeToStandardOutput(genHelp(parsedCommand(), sections, width == 0 ? usualWidth : width));
}

ExitCode CommandLine::run(int argc, char const* const* argv) {
  try {
    m_program.parse(argc, argv);
  } catch (CLI::CallForHelp const&) {
    printHelp();
    return ExitCode::nothingFound;
  } catch (CLI::CallForVersion const& version) {
    writeToStandardOutput(version.what() + std::string("\n"));
    return ExitCode::nothingFound;
  } catch (CLI::ParseError const&) {
    throw Error(tr("{} (--help says more)", describeMistake(m_program, argv[argc - 1])));
  }
  declared()->arguments.handOn();
  return declared()->run();
}

void CommandLine::complete(std::string_view shell, std::string_view before, std::string_view behind,
                           std::string_view breaks) const {
  std::vector<Arguments const*> declared;
  for (auto const& command : m_declared) declared.push_back(&command.arguments);
  auto const line = parseShellLine(before);
  // The first word is the end of the one at the cursor, if any.
  auto rest = parseShellLine('x' + std::string(behind) + ' ').words;
  rest.erase(rest.begin());
  auto const completion = genCompletion(m_program, declared, line, rest);
  writeToStandardOutput(shell == "bash" ? renderForBash(completion, line, breaks) : renderForZsh(completion));
}

/// The word with which the scripts in `completion/` ask, and how many behind it.
constexpr std::string_view s_completionWord = "__complete";
constexpr int s_completionWords = 4;

/// Whoever types sees no messages: what cannot be said is nothing to offer.
ExitCode completeCommandLine(char const* const* words, std::span<Command const> commands) {
  try {
    CommandLine(commands).complete(words[0], words[1], words[2], words[3]);
  } catch (std::exception const&) {
    return ExitCode::failed;
  }
  return ExitCode::nothingFound;
}

}  // namespace

std::span<Command const> programCommands() {
  static std::vector<Command> const commands = {
      {"show", [] { return tr("Show the tables of a results file"); }, declareShow},
      {"check", [] { return tr("List values beyond their limits and failed joins; exits with 1 if any"); },
       declareCheck},
      {"diff", [] { return tr("Compare two results files; exits with 1 if they differ"); }, declareDiff},
      {"series", [] { return tr("Show the series behind the values of the tables, as plots or numbers"); },
       declareSeries},
      {"demo", [] { return tr("Show the tables of the built-in sample; no file needed"); }, declareDemo},
      {"limits", [] { return tr("Show and change the limits of a results file"); }, nullptr,
       limitsCommands()},
      {"import", [] { return tr("Make a results file out of a solver's histories"); }, nullptr,
       importCommands()},
      {"study", [] { return tr("Keep the extremes of many runs in a database, and ask it"); }, nullptr,
       studyCommands()},
  };
  return commands;
}

ExitCode runCommandLine(int argc, char const* const* argv, std::span<Command const> commands) {
  if (argc == 2 + s_completionWords && argv[1] == s_completionWord)
    return completeCommandLine(argv + 2, commands);
  try {
    return CommandLine(commands).run(argc, argv);
  } catch (std::exception const& error) {
    printMessage(error.what());
    return ExitCode::failed;
  }
}

}  // namespace Kestrel::ResultTables

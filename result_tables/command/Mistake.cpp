#include "result_tables/command/Mistake.h"

#include <CLI/CLI.hpp>
#include <optional>

#include "result_tables/base/Suggestion.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/command/Arguments.h"

namespace Kestrel::ResultTables {

namespace {

std::vector<CLI::App const*> parsedCommands(CLI::App const& program) {
  std::vector<CLI::App const*> commands = {&program};
  while (!commands.back()->get_subcommands().empty())
    commands.push_back(commands.back()->get_subcommands().front());
  return commands;
}

/// The names "--format", "-h" and the like of a command.
std::vector<std::string> optionNames(CLI::App const& command) {
  std::vector<std::string> names;
  for (auto const* const option : command.get_options()) {
    for (auto const& name : option->get_lnames()) names.push_back("--" + name);
    for (auto const& name : option->get_snames()) names.push_back("-" + name);
  }
  return names;
}

std::vector<std::string_view> viewsOf(std::vector<std::string> const& texts) {
  return {texts.begin(), texts.end()};
}

std::optional<std::string> findUnknownOption(CLI::App const& command) {
  for (auto const& argument : command.remaining()) {
    if (argument.size() < 2 || argument.front() != '-' || argument == "--") continue;
    auto const name = argument.substr(0, argument.find('='));
    return tr("unknown option {}", quote(name)) + suggestion(name, viewsOf(optionNames(command)));
  }
  return std::nullopt;
}

std::optional<std::string> findWrongNumberOfValues(CLI::App const& command, std::string const& last) {
  for (auto const* const option : command.get_options()) {
    auto const count = option->results().size();
    if (takesAValue(*option) && count == 0 && !option->get_positional() && option->check_name(last))
      return tr("{}: expected a value, found nothing", option->get_name());
    if (takesAValue(*option) && static_cast<int>(count) > option->get_items_expected_max())
      return tr("{}: expected one value, found {}", option->get_name(), count);
  }
  return std::nullopt;
}

std::optional<std::string> findMissing(CLI::App const& command) {
  for (auto const* const option : command.get_options()) {
    if (option->get_required() && option->count() == 0) return tr("{} is required", option->get_name());
  }
  return std::nullopt;
}

/// Something that is no option and has no place: the name of a command, or too much.
std::string describeSurplus(CLI::App const& program, CLI::App const& command) {
  auto surplus = program.remaining(true);
  std::erase(surplus, "--");
  auto const found = surplus.empty() ? tr("nothing") : quote(surplus.front());
  std::vector<std::string> names;
  for (auto const* const sub : command.get_subcommands({})) names.push_back(sub->get_name());
  if (names.empty()) return tr("unexpected argument {}", found);
  return tr("expected one of the commands {}, found {}", listOf(viewsOf(names)), found) +
         (surplus.empty() ? std::string() : suggestion(surplus.front(), viewsOf(names)));
}

}  // namespace

std::string describeMistake(CLI::App const& program, std::string const& last) {
  auto const commands = parsedCommands(program);
  auto const& command = *commands.back();
  for (auto const* const parsed : commands) {
    if (auto const unknown = findUnknownOption(*parsed)) return *unknown;
  }
  if (auto const wrong = findWrongNumberOfValues(command, last)) return *wrong;
  if (auto const missing = findMissing(command)) return *missing;
  return describeSurplus(program, command);
}

}  // namespace Kestrel::ResultTables

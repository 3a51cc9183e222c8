#include "result_tables/command/Completion.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>

#include "result_tables/base/Error.h"
#include "result_tables/base/Text.h"
#include "result_tables/results/Sample.h"

namespace Kestrel::ResultTables {

namespace {

/// Follows the words of a command line through the commands of the program.
class Walk {
 public:
  Walk(CLI::App const& program, std::vector<Arguments const*> const& declared)
      : m_command(&program), m_declared(&declared) {}

  void take(std::string const& word);

  [[nodiscard]] CLI::App const& command() const { return *m_command; }
  /// What the next word is the value of, whatever it looks like; null where it may be anything.
  [[nodiscard]] CLI::Option const* awaited() const { return m_awaited; }
  /// What the next word is, if it is no option; null where none is taken any more.
  [[nodiscard]] CLI::Option const* nextOperand() const;
  [[nodiscard]] bool takesOptions() const { return !m_hasOnlyOperands; }
  [[nodiscard]] bool takesOperands() const;
  [[nodiscard]] bool isGiven(CLI::Option const& option) const { return m_given.contains(&option); }
  [[nodiscard]] Offer offerFor(CLI::Option const& option) const;
  [[nodiscard]] std::vector<std::string> const& resultsFiles() const { return m_resultsFiles; }

 private:
  void takeOption(std::string const& word);
  void takeOperand(std::string const& word);

  CLI::App const* m_command;
  std::vector<Arguments const*> const* m_declared;
  CLI::Option const* m_awaited = nullptr;
  bool m_hasOnlyOperands = false;
  std::size_t m_operands = 0;
  std::set<CLI::Option const*> m_given;
  std::vector<std::string> m_resultsFiles;
};

void Walk::take(std::string const& word) {
  if (m_awaited != nullptr) {
    m_awaited = nullptr;
  } else if (takesOptions() && word == "--") {
    m_hasOnlyOperands = true;
  } else if (takesOptions() && word.size() > 1 && word.front() == '-') {
    takeOption(word);
  } else {
    takeOperand(word);
  }
}

void Walk::takeOption(std::string const& word) {
  auto const mark = word.find('=');
  auto const* const option = m_command->get_option_no_throw(word.substr(0, mark));
  if (option == nullptr) return;
  m_given.insert(option);
  if (takesAValue(*option) && mark == word.npos) m_awaited = option;
}

void Walk::takeOperand(std::string const& word) {
  for (auto const* const sub : m_command->get_subcommands({})) {
    if (sub->get_name() != word) continue;
    m_command = sub;
    return;
  }
  auto const* const operand = nextOperand();
  if (operand != nullptr && offerFor(*operand).kind == Offer::Kind::resultsFiles)
    m_resultsFiles.push_back(word);
  ++m_operands;
}

CLI::Option const* Walk::nextOperand() const {
  std::size_t place = 0;
  for (auto const* const option : m_command->get_options()) {
    if (!option->get_positional()) continue;
    if (place++ == m_operands || isRepeatable(*option)) return option;
  }
  return nullptr;
}

bool Walk::takesOperands() const {
  return std::ranges::any_of(m_command->get_options(),
                             [](auto const* option) { return option->get_positional(); });
}

Offer Walk::offerFor(CLI::Option const& option) const {
  for (auto const* const arguments : *m_declared) {
    if (&arguments->app() == m_command) return arguments->offerFor(option);
  }
  return {};
}

// ---- what is offered

using Candidates = std::vector<Completion::Candidate>;

/// The file that a shell would take the name for.
std::filesystem::path fileNamed(std::string const& name) {
  auto const* const home = std::getenv("HOME");
  return home != nullptr && name.starts_with("~/") ? home + name.substr(1) : name;
}

void appendUnits(Candidates& names, Candidates& ids, ResultsFile const& file) {
  for (auto const& unit : file.units) {
    auto const& name = unit.unit->getSimulationUnitName();
    auto const id = unit.unit->getID().toString();
    names.push_back({name, id});
    ids.push_back({id, name});
  }
}

/// Names of units, then their ids.
Candidates unitsOf(std::vector<std::string> const& files, bool ofSample) {
  Candidates names;
  Candidates ids;
  if (ofSample) appendUnits(names, ids, readSample());
  for (auto const& file : files) {
    auto const path = fileNamed(file);
    // Reading a pipe would empty it.
    if (std::error_code error; !std::filesystem::is_regular_file(path, error)) continue;
    try {
      WantedUnits const withoutTools = {"-"};
      appendUnits(names, ids, readResultsFile(path, withoutTools));
    } catch (Error const&) {
      continue;
    }
  }
  names.insert(names.end(), ids.begin(), ids.end());
  return names;
}

Candidates namesOf(Offer const& offer) {
  Candidates candidates;
  for (auto const name : offer.names) candidates.push_back({std::string(name), {}});
  return candidates;
}

Candidates optionsAt(Walk const& walk) {
  Candidates candidates;
  for (auto const* const option : walk.command().get_options()) {
    if (option->get_positional() || (walk.isGiven(*option) && !isRepeatable(*option))) continue;
    for (auto const& name : option->get_lnames())
      candidates.push_back({"--" + name, option->get_description()});
  }
  return candidates;
}

Candidates commandsOf(CLI::App const& command) {
  Candidates candidates;
  for (auto const* const sub : command.get_subcommands({}))
    candidates.push_back({sub->get_name(), sub->get_description()});
  return candidates;
}

/// Those that begin with `typed`, each once. What does not fit on one line is left out.
Candidates selectTyped(Candidates const& candidates, std::string_view typed) {
  Candidates selected;
  std::set<std::string_view> values;
  for (auto const& candidate : candidates) {
    auto const& value = candidate.value;
    bool const isOneLine = std::ranges::none_of(value, [](unsigned char c) { return c < 0x20 || c == 0x7F; });
    bool const isTyped = !value.empty() && value.starts_with(typed);
    if (isOneLine && isTyped && values.insert(value).second) selected.push_back(candidate);
  }
  return selected;
}

/// What the word at the cursor is.
struct Place {
  CLI::Option const* value = nullptr;  ///< it is, or ends with, a value of this; null: it is none
  bool isOption = false;               ///< it is the name of an option
  std::string kept;                    ///< in front of the value
  std::string typed;                   ///< of the value, or of the name
};

Place placeOf(Walk const& walk, std::string const& word) {
  if (walk.awaited() != nullptr) return {walk.awaited(), false, {}, word};
  if (!walk.takesOptions() || !word.starts_with('-')) return {walk.nextOperand(), false, {}, word};
  auto const mark = word.find('=');
  auto const* const option =
      mark == word.npos ? nullptr : walk.command().get_option_no_throw(word.substr(0, mark));
  if (option == nullptr) return {nullptr, true, {}, word};
  return {option, false, word.substr(0, mark + 1), word.substr(mark + 1)};
}

}  // namespace

Completion genCompletion(CLI::App const& program, std::vector<Arguments const*> const& declared,
                         ShellLine const& line, std::vector<std::string> const& rest) {
  if (line.isRedirected) return {{}, {}, true};
  Walk walk(program, declared);
  for (std::size_t i = 1; i < line.words.size(); ++i) walk.take(line.words[i]);
  auto const place = placeOf(walk, line.word);
  auto const offer = place.value == nullptr ? Offer{} : walk.offerFor(*place.value);
  Completion completion{
      place.kept, {}, offer.kind == Offer::Kind::files || offer.kind == Offer::Kind::resultsFiles};
  if (offer.kind == Offer::Kind::units) {
    bool const isOfSample = !walk.takesOperands();
    walk.take(line.word);
    for (auto const& word : rest) walk.take(word);
    completion.candidates = unitsOf(walk.resultsFiles(), isOfSample);
  } else if (place.value != nullptr) {
    completion.candidates = namesOf(offer);
  } else if (auto commands = commandsOf(walk.command()); !place.isOption && !commands.empty()) {
    completion.candidates = std::move(commands);
  } else {
    completion.candidates = optionsAt(walk);
  }
  completion.candidates = selectTyped(completion.candidates, place.typed);
  return completion;
}

std::string renderForBash(Completion const& completion, ShellLine const& line, std::string_view breaks) {
  std::string out = completion.offersFiles ? "files\n" : "words\n";
  for (auto const& candidate : completion.candidates)
    out += replacementInBash(line, completion.kept + candidate.value, breaks) + '\n';
  return out;
}

std::string renderForZsh(Completion const& completion) {
  std::string out = completion.offersFiles ? "files\n" : "words\n";
  for (auto const& candidate : completion.candidates)
    out += candidate.value + '\t' + toPrintable(candidate.meaning) + '\n';
  return out;
}

}  // namespace Kestrel::ResultTables

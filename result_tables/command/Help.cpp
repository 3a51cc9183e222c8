#include "result_tables/command/Help.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

namespace {

constexpr std::size_t s_smallestWidth = 40;
constexpr std::size_t s_widestName = 24;  ///< a meaning stands beside names up to here, else below

/// A part of a text that no line end may divide.
struct Piece {
  std::string text;
  bool isAfterBlank;
};

/// Characters that stand on no line's beginning: closing marks, and letters that go with the one before.
bool staysWithTheOneBefore(std::string_view character) {
  constexpr std::string_view marks[] = {")",  "]",  ",",  ".",  ":",  ";",  "?",  "!",  "。", "、", "」",
                                        "）", "？", "～", "ー", "ッ", "ャ", "ュ", "ョ", "ァ", "ィ", "ェ"};
  return std::find(std::begin(marks), std::end(marks), character) != std::end(marks);
}

/// Opening marks, which stand on no line's end.
bool staysWithTheNext(std::string_view character) { return character == "（" || character == "「"; }

std::vector<Piece> piecesOf(std::string_view words) {
  auto const valid = toValidUtf8(words);
  std::string_view text = valid;
  std::vector<Piece> pieces;
  bool isAfterBlank = false;
  bool isAfterWide = false;
  bool isAfterOpening = false;
  bool isInBrackets = false;
  while (!text.empty()) {
    std::string const character(firstCharacter(text));
    text.remove_prefix(character.size());
    if (character == " ") {
      isAfterBlank = true;
      continue;
    }
    bool const isWide = displayWidth(character) > 1;
    bool const mayDivide =
        (isWide || isAfterWide) && !isInBrackets && !isAfterOpening && !staysWithTheOneBefore(character);
    if (pieces.empty() || isAfterBlank || mayDivide) {
      pieces.push_back({character, isAfterBlank});
    } else {
      pieces.back().text += character;
    }
    isInBrackets = character == "[" || (isInBrackets && character != "]");
    isAfterBlank = false;
    isAfterWide = isWide;
    isAfterOpening = staysWithTheNext(character);
  }
  return pieces;
}

void appendParagraph(std::string& out, std::string_view text, std::size_t width) {
  for (auto const& line : wrapWords(text, width)) out += line + '\n';
}

/// Names and beside them, in a column of their own, what they mean.
void appendSection(std::string& out, HelpSection const& section, std::size_t width) {
  constexpr std::size_t indent = 2;
  constexpr std::size_t gap = 2;
  if (section.rows.empty()) return;
  std::size_t nameWidth = 0;
  for (auto const& [name, meaning] : section.rows) {
    if (displayWidth(name) <= s_widestName) nameWidth = std::max(nameWidth, displayWidth(name));
  }
  auto const column = indent + nameWidth + gap;
  out += fmt::format("\n{}:\n", section.heading);
  for (auto const& [name, meaning] : section.rows) {
    auto line = std::string(indent, ' ') + name;
    for (auto const& words : wrapWords(meaning, width - column)) {
      if (displayWidth(line) + gap > column) {
        out += line + '\n';
        line.clear();
      }
      line.append(column - displayWidth(line), ' ');
      out += line + words + '\n';
      line.clear();
    }
  }
}

/// "--unit U..."
std::string shownForm(CLI::Option const& option) {
  auto form = option.get_positional() ? option.get_name() : std::string();
  for (auto const& name : option.get_snames()) form += '-' + name + ", ";
  for (auto const& name : option.get_lnames()) form += "--" + name;
  if (takesAValue(option) && !option.get_positional()) form += ' ' + option.get_type_name();
  return form;
}

/// The command with what it cannot do without: "result-tables limits set RESULTS --unit U... [OPTIONS]".
std::string genUsage(CLI::App const& command) {
  auto words = command.get_name();
  for (auto const* part = command.get_parent(); part != nullptr; part = part->get_parent())
    words.insert(0, part->get_name() + ' ');
  for (auto const* const option : command.get_options()) {
    if (!option->get_required()) continue;
    words += ' ' + shownForm(*option) + (isRepeatable(*option) ? "..." : "");
  }
  if (!command.get_subcommands({}).empty()) words += ' ' + tr("COMMAND");
  return tr("Usage: {}", words + ' ' + tr("[OPTIONS]"));
}

HelpSection optionsSection(CLI::App const& command, bool ofOperands) {
  HelpSection section{ofOperands ? tr("Arguments") : tr("Options"), {}};
  for (auto const* const option : command.get_options()) {
    if (option->get_positional() == ofOperands)
      section.rows.emplace_back(shownForm(*option), option->get_description());
  }
  return section;
}

HelpSection commandsSection(CLI::App const& command) {
  HelpSection section{tr("Commands"), {}};
  for (auto const* const sub : command.get_subcommands({}))
    section.rows.emplace_back(sub->get_name(), sub->get_description());
  return section;
}

}  // namespace

std::vector<std::string> wrapWords(std::string_view text, std::size_t width) {
  std::vector<std::string> lines;
  for (auto const& [piece, isAfterBlank] : piecesOf(text)) {
    auto const separator = isAfterBlank ? " " : "";
    if (!lines.empty() && displayWidth(lines.back() + separator + piece) <= width) {
      lines.back() += separator + piece;
    } else {
      lines.push_back(piece);
    }
  }
  return lines;
}

std::string genHelp(CLI::App const& command, std::vector<HelpSection> const& sections, std::size_t width) {
  width = std::max(width, s_smallestWidth);
  std::string out;
  appendParagraph(out, command.get_description(), width);
  out += '\n';
  appendParagraph(out, genUsage(command), width);
  appendSection(out, commandsSection(command), width);
  appendSection(out, optionsSection(command, true), width);
  appendSection(out, optionsSection(command, false), width);
  for (auto const& section : sections) appendSection(out, section, width);
  return out;
}

}  // namespace Kestrel::ResultTables

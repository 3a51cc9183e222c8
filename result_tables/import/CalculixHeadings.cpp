#include "result_tables/import/CalculixHeadings.h"

#include <algorithm>

#include "result_tables/import/InputText.h"

namespace Kestrel::ResultTables {

namespace {

using Rows = CalculixHeading::Rows;

/// What is printed, and for what.
struct Subject {
  std::string_view quantity;
  std::string_view entity;
};

/// `text` without `word` at its end, which may stand there without a blank before it; nothing without it.
std::optional<std::string_view> withoutLastWord(std::string_view text, std::string_view word) {
  if (!text.ends_with(word)) return std::nullopt;
  text.remove_suffix(word.size());
  bool const isWord = !text.empty() && !isLetter(text.back());
  return isWord ? std::optional(trimmed(text)) : std::nullopt;
}

std::optional<Subject> splitSubject(std::string_view title) {
  constexpr std::string_view forSet = "for set";
  for (auto place = title.find(forSet); place != title.npos; place = title.find(forSet, place + 1)) {
    auto const quantity = withoutLastWord(title.substr(0, place + 3), "for");
    auto const entity = trimmed(title.substr(place + forSet.size()));
    if (quantity && !entity.empty()) return Subject{*quantity, entity};
  }
  constexpr std::string_view allContact = "all contact elements";
  if (title.ends_with(allContact)) {
    title = trimmed(title.substr(0, title.size() - allContact.size()));
  } else if (!title.starts_with("total ")) {
    return std::nullopt;
  }
  auto const quantity = withoutLastWord(title, "for");
  return quantity ? std::optional(Subject{*quantity, {}}) : std::nullopt;
}

/// The names in all lists in brackets that `text` has; nothing where brackets are within others or left open.
std::optional<std::vector<std::string>> namesInBrackets(std::string_view text) {
  std::vector<std::string> names;
  for (auto open = text.find('('); open != text.npos; open = text.find('(')) {
    text.remove_prefix(open + 1);
    auto const close = text.find_first_of("()");
    if (close == text.npos || text[close] == '(') return std::nullopt;
    auto list = text.substr(0, close);
    for (std::size_t comma = 0; comma != list.npos;) {
      comma = list.find(',');
      names.emplace_back(trimmed(list.substr(0, comma)));
      if (names.back().empty()) return std::nullopt;
      if (comma != list.npos) list.remove_prefix(comma + 1);
    }
    text.remove_prefix(close + 1);
  }
  return names;
}

/// Whether they are sentences, such as of what "network pressures" are, and no names of columns.
bool areRemarks(std::vector<std::string> const& names) {
  return std::any_of(names.begin(), names.end(),
                     [](auto const& name) { return name.find(' ') != name.npos; });
}

/// Takes the names of the columns that hold no values off the front.
void takeLabels(CalculixHeading& heading, std::vector<std::string>& names) {
  auto const takeFirst = [&](std::string_view name) {
    if (names.empty() || names.front() != name) return false;
    names.erase(names.begin());
    ++heading.labels;
    return true;
  };
  if (takeFirst("elem") || takeFirst("element")) {
    heading.rows = Rows::ofElements;
    takeFirst("integ.pnt.");
  } else if (takeFirst("slave node")) {
    heading.rows = Rows::ofContact;
  } else if (takeFirst("slave element+face")) {
    heading.rows = Rows::ofContact;
    ++heading.labels;
  }
}

std::optional<CalculixHeading> statisticsHeading(std::string_view title) {
  constexpr std::string_view slave = "statistics for slave set ";
  constexpr std::string_view surface = "statistics for surface set ";
  constexpr std::string_view master = ", master set ";
  CalculixHeading heading;
  heading.rows = Rows::statistics;
  if (title.starts_with(surface)) {
    heading.entity = "surface ";
    heading.entity += title.substr(surface.size());
    return heading;
  }
  auto const end = title.find(master);
  if (!title.starts_with(slave) || end == title.npos) return std::nullopt;
  heading.entity = title.substr(slave.size(), end - slave.size());
  heading.entity += '/';
  heading.entity += title.substr(end + master.size());
  return heading;
}

}  // namespace

std::optional<TimedHeading> splitAtTime(std::string_view line) {
  constexpr std::string_view word = "time";
  auto const place = line.rfind(word);
  if (place == line.npos) return std::nullopt;
  auto title = trimmed(line.substr(0, place));
  if (auto const withoutAnd = withoutLastWord(title, "and")) {
    title = *withoutAnd;
  } else if (!withoutLastWord(title, "for")) {
    return std::nullopt;
  }
  return TimedHeading{title, trimmed(line.substr(place + word.size()))};
}

std::optional<CalculixHeading> parseHeading(std::string_view title) {
  auto const text = withSingleBlanks(title);
  if (auto statistics = statisticsHeading(text)) return statistics;
  auto const subject = splitSubject(text);
  if (!subject || subject->quantity.empty()) return std::nullopt;
  auto names = namesInBrackets(subject->quantity);
  if (!names) return std::nullopt;
  auto const name = trimmed(subject->quantity.substr(0, subject->quantity.find('(')));
  CalculixHeading heading;
  heading.entity = subject->entity;
  heading.rows = name.starts_with("total ") ? Rows::ofTotal : Rows::ofNodes;
  heading.quantity.name = name;
  takeLabels(heading, *names);
  if (heading.labels > 0 && names->empty()) return std::nullopt;
  if (!names->empty() && !subject->quantity.ends_with(')')) return std::nullopt;
  if (name == "center of gravity") {
    heading.rows = Rows::ofTotal;
    heading.quantity.components = {"x", "y", "z"};
  } else if (names->empty() || (heading.labels == 0 && areRemarks(*names))) {
    heading.quantity = {{}, {std::string(name)}};
  } else if (*names != std::vector<std::string>{"values"}) {
    heading.quantity.components = std::move(*names);
  }
  if (heading.rows == Rows::ofNodes) heading.labels = 1;
  bool const isOfNothing = heading.entity.empty() && heading.rows == Rows::ofNodes;
  return isOfNothing ? std::nullopt : std::optional(std::move(heading));
}

std::vector<CalculixQuantity> quantitiesOfStatistics(std::string_view line) {
  auto const text = withSingleBlanks(line);
  if (text.starts_with("total ") && text.find("surface force (fx,fy,fz)") != text.npos) {
    return {{text.substr(0, text.find(" (")), {"fx", "fy", "fz"}},
            {"moment about the origin", {"mx", "my", "mz"}}};
  }
  if (text == "center of gravity and mean normal")
    return {{"center of gravity", {"x", "y", "z"}}, {"mean normal", {"nx", "ny", "nz"}}};
  if (text.starts_with("moment about the center of gravity"))
    return {{"moment about the center of gravity", {"mx", "my", "mz"}}};
  if (!text.starts_with("area, normal force")) return {};
  std::vector<std::string> components = {"area", "normal force", "shear force"};
  if (text.find("torque and bending moment") != text.npos)
    components.insert(components.end(), {"torque", "bending moment"});
  return {{{}, std::move(components)}};
}

std::string wordsOfSpacedLetters(std::string_view line) {
  line = trimmed(line.substr(0, line.find_first_of("0123456789")));
  bool const isSpaced = line.size() > 2 && isLetter(line[0]) && line[1] == ' ' && isLetter(line[2]) &&
                        (line.size() == 3 || line[3] == ' ');
  if (!isSpaced) return {};
  std::string words;
  bool isWordEnd = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] != ' ') {
      if (isWordEnd) words += ' ';
      isWordEnd = false;
      words += line[i];
    } else {
      isWordEnd = i > 0 && line[i - 1] == ' ';
    }
  }
  return words;
}

}  // namespace Kestrel::ResultTables

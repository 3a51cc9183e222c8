#include "result_tables/render/TextDifferences.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <vector>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/Ansi.h"
#include "result_tables/render/DifferenceTexts.h"
#include "result_tables/render/NumberCell.h"
#include "result_tables/render/TextLine.h"

namespace Kestrel::ResultTables {

namespace {

constexpr std::string_view s_indent = "    ";

std::string withSign(std::string const& number) { return number.front() == '-' ? number : '+' + number; }

/// As in the text of a table; empty where a file does not have the value.
std::string numberOf(std::optional<ComparedValue> const& value, int digits) {
  if (!value) return {};
  if (value->count > 0) return formatNumber(value->value, digits);
  return value->nanCount > 0 ? "NaN" : std::string(s_noData);
}

/// Empty where nothing changed, and where there is no number that could have.
std::string describeChange(ValueDifference const& difference, int digits) {
  auto const change = shownChange(difference);
  return change && *change != 0.0 ? withSign(formatNumber(*change, digits)) : std::string();
}

std::string describePercent(ValueDifference const& difference, int digits) {
  auto const relative = shownRelativeChange(difference);
  if (!relative || *relative == 0.0) return {};
  return withSign(formatNumber(*relative * 100.0, std::min(digits, s_digitsOfPercent)));
}

/// The texts that are not empty, printable.
std::string joinParts(std::initializer_list<std::string_view> parts) {
  std::string line;
  for (auto const part : parts) {
    if (part.empty()) continue;
    if (!line.empty()) line += ", ";
    line += part;
  }
  return toPrintable(line);
}

/// A number with the marks behind it, as in the text of a table.
struct DifferenceCell {
  NumberCell number;
  std::string marks = {};
  bool isExceeded = false;
};

DifferenceCell cellOf(std::optional<ComparedValue> const& value, int digits) {
  DifferenceCell cell{NumberCell(numberOf(value, digits))};
  if (!value) return cell;
  cell.isExceeded = value->isExceeded;
  if (!value->isValid) cell.marks += '?';
  if (value->isExceeded) cell.marks += '!';
  if (value->nanCount > 0) cell.marks += '*';
  if (!cell.marks.empty()) cell.marks.insert(0, 1, ' ');
  return cell;
}

enum Place : std::size_t { before, after, change, percent, places };

struct Line {
  ValueDifference const* difference;
  std::string name;  ///< of the element and its quantity
  std::array<DifferenceCell, places> cells;
  std::string state;
};

struct Column {
  std::string head;
  NumberColumn numbers = {};
  std::size_t markWidth = 0;

  [[nodiscard]] std::size_t width() const { return std::max(numbers.width(), displayWidth(head)); }
  [[nodiscard]] std::size_t fullWidth() const { return s_gap.size() + width() + markWidth; }
};

/// The differences of one section.
class SectionDifferences {
 public:
  explicit SectionDifferences(TextStyle const& style) : m_style(style) {}

  void add(RowDifferences const& row, ValueDifference const& difference);
  void appendTo(std::string& out);

 private:
  void layOut();
  void appendHead(std::string& out) const;
  void append(std::string& out, Line const& line) const;
  [[nodiscard]] std::string numbersOf(Line const& line) const;
  [[nodiscard]] std::string stateOf(Line const& line) const;

  TextStyle m_style;
  std::vector<Line> m_lines;
  std::array<Column, places> m_columns{
      {{tr("before")}, {tr("after")}, {tr("change")}, {tr("relative") + " [%]"}}};
  std::size_t m_nameWidth = 0;
  bool m_isNameAbove = false;   ///< of its numbers
  bool m_isStateBelow = false;  ///< of the numbers
};

void SectionDifferences::add(RowDifferences const& row, ValueDifference const& difference) {
  auto const& column = *difference.column;
  auto const name = joinParts({row.subGroup, row.item, quantityText(column)});
  m_lines.push_back({&difference,
                     std::string(s_indent) + name,
                     {cellOf(difference.before, m_style.digits), cellOf(difference.after, m_style.digits),
                      DifferenceCell{NumberCell(describeChange(difference, m_style.digits))},
                      DifferenceCell{NumberCell(describePercent(difference, m_style.digits))}},
                     stateText(difference)});
}

void SectionDifferences::layOut() {
  std::size_t nameWidth = 0;
  std::size_t stateWidth = 0;
  for (auto const& line : m_lines) {
    nameWidth = std::max(nameWidth, displayWidth(line.name));
    if (!line.state.empty()) stateWidth = std::max(stateWidth, s_gap.size() + displayWidth(line.state));
    for (std::size_t i = 0; i < places; ++i) {
      m_columns[i].numbers.add(line.cells[i].number);
      m_columns[i].markWidth = std::max(m_columns[i].markWidth, line.cells[i].marks.size());
    }
  }
  std::size_t numbersWidth = 0;
  for (auto const& column : m_columns) numbersWidth += column.fullWidth();
  auto const exceeds = [this](std::size_t width) { return m_style.width > 0 && width > m_style.width; };
  m_isNameAbove = exceeds(nameWidth + numbersWidth + stateWidth);
  m_nameWidth = m_isNameAbove ? s_indent.size() : nameWidth;
  m_isStateBelow = exceeds(m_nameWidth + numbersWidth + stateWidth);
}

void SectionDifferences::appendHead(std::string& out) const {
  std::string head(m_nameWidth, ' ');
  auto rule = std::string(s_indent) + std::string(m_nameWidth - s_indent.size(), '-');
  for (auto const& column : m_columns) {
    head += std::string(s_gap) + std::string(column.width() - displayWidth(column.head), ' ') + column.head +
            std::string(column.markWidth, ' ');
    rule += std::string(s_gap) + std::string(column.width() + column.markWidth, '-');
  }
  appendLine(out, head);
  appendLine(out, rule);
}

std::string SectionDifferences::numbersOf(Line const& line) const {
  std::string out;
  for (std::size_t i = 0; i < places; ++i) {
    auto const& column = m_columns[i];
    auto const& cell = line.cells[i];
    bool const isRed = m_style.colour && cell.isExceeded;
    out += std::string(s_gap) + std::string(column.width() - column.numbers.width(), ' ') +
           column.numbers.aligned(cell.number, red(cell.number.text(), isRed)) + cell.marks +
           std::string(column.markWidth - cell.marks.size(), ' ');
  }
  return out;
}

std::string SectionDifferences::stateOf(Line const& line) const {
  if (line.difference->wentBeyondLimit()) return red(line.state, m_style.colour);
  return green(line.state, m_style.colour && line.difference->cameBackWithinLimit());
}

void SectionDifferences::append(std::string& out, Line const& line) const {
  auto const blanks = std::string(m_nameWidth - (m_isNameAbove ? 0 : displayWidth(line.name)), ' ');
  auto const state = line.state.empty() ? std::string() : std::string(s_gap) + stateOf(line);
  if (m_isNameAbove) appendLine(out, line.name);
  appendLine(out, (m_isNameAbove ? blanks : line.name + blanks) + numbersOf(line) +
                      (m_isStateBelow ? std::string() : state));
  if (m_isStateBelow && !state.empty()) appendLine(out, std::string(s_indent) + state);
}

void SectionDifferences::appendTo(std::string& out) {
  layOut();
  appendHead(out);
  for (auto const& line : m_lines) append(out, line);
}

/// What the last lines say.
struct DifferencesSummary {
  DifferenceCounts counted;
  bool hasExceeded = false;
  bool hasInvalid = false;
  bool hasNaN = false;

  void add(ValueDifference const& difference) {
    counted.add(difference);
    for (auto const& value : {difference.before, difference.after}) {
      hasExceeded = hasExceeded || (value && value->isExceeded);
      hasInvalid = hasInvalid || (value && !value->isValid);
      hasNaN = hasNaN || (value && value->nanCount > 0);
    }
  }

  [[nodiscard]] std::string legend(std::size_t width) const {
    std::vector<std::string> entries;
    if (hasExceeded) entries.push_back("! " + tr("beyond its limit"));
    if (hasInvalid) entries.push_back("? " + tr("not valid"));
    if (hasNaN) entries.push_back("* " + tr("its series holds values that are not numbers"));
    return entries.empty() ? "" : genLegend(entries, width) + '\n';
  }

  [[nodiscard]] std::string counts(std::size_t compared) const {
    auto const kindsLine =
        fmt::format("{}: {}, {}: {}, {}: {}, {}: {}, {}: {}\n", tr("changed"), counted.changed,
                    tr("in state alone"), counted.state, tr("added"), counted.added, tr("removed"),
                    counted.removed, tr("values in both files"), compared);
    return kindsLine + fmt::format("{}: {}, {}: {}\n", tr("now beyond their limits"), counted.wentBeyondLimit,
                                   tr("back within their limits"), counted.cameBackWithinLimit);
  }
};

/// The sections of one table that differ, under the table's title; nothing where none does.
std::string genTableText(TableDifferences const& table, TextStyle const& style, DifferencesSummary& summary) {
  std::string out;
  auto row = table.rows.begin();
  while (row != table.rows.end()) {
    auto const group = row->group;
    SectionDifferences section(style);
    bool isEmpty = true;
    for (; row != table.rows.end() && row->group == group; ++row) {
      for (auto const& difference : row->values) {
        section.add(*row, difference);
        summary.add(difference);
        isEmpty = false;
      }
    }
    if (isEmpty) continue;
    out += fmt::format("\n  {}\n", toPrintable(group));
    section.appendTo(out);
  }
  if (out.empty()) return out;
  return bold(toPrintable(table.unit) + ": " + toPrintable(table.title), style.colour) + '\n' + out + '\n';
}

}  // namespace

std::string renderDifferencesAsText(ResultDifferences const& differences, TextStyle const& style) {
  std::string out;
  DifferencesSummary summary;
  for (auto const& table : differences.tables) out += genTableText(table, style, summary);
  return out + summary.legend(style.width) + summary.counts(differences.countCompared());
}

std::string differenceLine(ValueDifference const& difference, int digits) {
  auto const& column = *difference.column;
  auto const unit = column.unit.empty() ? std::string() : ' ' + toPrintable(column.unit);
  auto const describe = [&](std::optional<ComparedValue> const& value) {
    return numberOf(value, digits) + (hasNumber(value) ? unit : std::string());
  };
  auto const values = difference.before && difference.after
                          ? describe(difference.before) + " → " + describe(difference.after)
                          : describe(difference.before ? difference.before : difference.after);
  auto line = fmt::format("{}: {}", toPrintable(column.shownName()), values);
  auto const change = describeChange(difference, digits);
  auto const percent = describePercent(difference, digits);
  auto const state = stateText(difference);
  if (!change.empty()) line += fmt::format(", {} {}{}", tr("change"), change, unit);
  if (!percent.empty()) line += fmt::format(", {} %", percent);
  if (!state.empty()) line += ", " + state;
  return line;
}

std::string rowLine(RowDifferences const& row) { return joinParts({row.group, row.subGroup, row.item}); }

}  // namespace Kestrel::ResultTables

#include "result_tables/render/TextTables.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/tables/Family.h"

namespace Kestrel::ResultTables {

namespace {

constexpr std::size_t s_rowsPerHead = 40;
constexpr std::string_view s_gap = "   ";
constexpr std::string_view s_exceededMark = " !";
constexpr std::string_view s_invalidMark = " ?";

/// A number as text, cut at its decimal point.
struct Cell {
  std::string text;
  std::size_t integerWidth;
  std::string_view mark;  ///< s_exceededMark, s_invalidMark or empty

  Cell(double value, std::string_view valueMark)
      : text(fmt::format("{:.7g}", value)),
        integerWidth(std::min(text.find('.'), text.size())),
        mark(valueMark) {}
  [[nodiscard]] std::size_t fractionWidth() const { return text.size() - integerWidth; }
};

std::string_view markOf(ResultTable const& table, std::size_t group, std::size_t column,
                        MaxValueItem const& item) {
  if (!table.isValid(item)) return s_invalidMark;
  return table.isExceeded(group, column, item) ? s_exceededMark : std::string_view();
}

/// A row of the text table: an item, or the name of a sub-group above its items.
struct Row {
  std::string name;
  bool isSubGroup;
  std::vector<Cell> cells;
};

struct ColumnLayout {
  std::vector<std::string> head;  ///< from the top line down, as many lines in every column
  std::size_t integerWidth = 0;
  std::size_t fractionWidth = 0;
  std::size_t markWidth = 0;  ///< room for the marks of exceeded values, where there are any
  std::size_t width = 0;
};

void appendBlanks(std::string& out, std::size_t count) { out.append(count, ' '); }

void appendLine(std::string& out, std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  out += line;
  out += '\n';
}

/// The words of a head on as few lines as the width allows; a word is never broken.
std::vector<std::string> wrap(std::string_view text, std::size_t width) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    auto const end = std::min(text.find(' '), text.size());
    std::string const word(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (!lines.empty() && displayWidth(lines.back()) + 1 + displayWidth(word) <= width) {
      lines.back() += ' ' + word;
    } else {
      lines.push_back(word);
    }
  }
  return lines;
}

/// The lines above a column: its name, its unit, its limit.
std::vector<std::string> genHead(TableColumn const& column, std::size_t numberWidth) {
  constexpr std::size_t shortestLine = 12;
  auto const& name = column.tableDisplayName.empty() ? column.key : column.tableDisplayName;
  auto head = wrap(toPrintable(name), std::max(numberWidth, shortestLine));
  head.push_back(toPrintable(column.unit));
  std::string limit;
  if (column.limit) {
    limit = fmt::format("≤ {:.7g}", column.limit->value);
    if (column.limit->unit != column.unit) limit += ' ' + toPrintable(column.limit->unit);
  }
  head.push_back(limit);
  return head;
}

class SectionText {
 public:
  SectionText(ResultTable const& table, std::size_t group, bool colour)
      : m_group(table.container().groups[group]), m_colour(colour) {
    collectRows(table, group);
    layOutColumns(table.columns(group));
  }

  void appendTo(std::string& out) const {
    appendLine(out, "  " + toPrintable(m_group.name));
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
      if (i % s_rowsPerHead == 0) appendHead(out, i > 0);
      appendRow(out, m_rows[i]);
    }
    if (m_rows.empty()) appendLine(out, "    " + tr("no elements"));
  }

  /// Whether any value is marked.
  [[nodiscard]] bool hasMarks() const {
    return std::any_of(m_columns.begin(), m_columns.end(),
                       [](auto const& column) { return column.markWidth > 0; });
  }

 private:
  void collectRows(ResultTable const& table, std::size_t group);
  void layOutColumns(std::vector<TableColumn> const& columns);
  void appendHead(std::string& out, bool isRepeated) const;
  void appendRow(std::string& out, Row const& row) const;
  void appendCell(std::string& line, Cell const& cell, ColumnLayout const& column) const;

  MaxValueGroup const& m_group;
  bool m_colour;
  std::vector<Row> m_rows;
  std::size_t m_nameWidth = 0;
  std::vector<ColumnLayout> m_columns;
};

void SectionText::collectRows(ResultTable const& table, std::size_t group) {
  for (auto const& subGroup : m_group.subGroups) {
    bool const isNamed = !subGroup.name.empty();
    if (isNamed) m_rows.push_back({"    " + toPrintable(subGroup.name), true, {}});
    for (auto const& item : subGroup.items) {
      Row row{(isNamed ? "      " : "    ") + toPrintable(table.displayName(item)), false, {}};
      for (std::size_t i = 0; i < item.maxValues.size(); ++i) {
        row.cells.emplace_back(item.maxValues[i], markOf(table, group, i, item));
      }
      m_nameWidth = std::max(m_nameWidth, displayWidth(row.name));
      m_rows.push_back(std::move(row));
    }
  }
}

void SectionText::layOutColumns(std::vector<TableColumn> const& columns) {
  m_columns.resize(columns.size());
  for (auto const& row : m_rows) {
    for (std::size_t i = 0; i < std::min(row.cells.size(), m_columns.size()); ++i) {
      auto& layout = m_columns[i];
      layout.integerWidth = std::max(layout.integerWidth, row.cells[i].integerWidth);
      layout.fractionWidth = std::max(layout.fractionWidth, row.cells[i].fractionWidth());
      layout.markWidth = std::max(layout.markWidth, row.cells[i].mark.size());
    }
  }
  std::size_t headLines = 0;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    auto& layout = m_columns[i];
    layout.width = layout.integerWidth + layout.fractionWidth;
    layout.head = genHead(columns[i], layout.width);
    for (auto const& line : layout.head) layout.width = std::max(layout.width, displayWidth(line));
    headLines = std::max(headLines, layout.head.size());
  }
  for (auto& layout : m_columns) layout.head.insert(layout.head.begin(), headLines - layout.head.size(), "");
}

void SectionText::appendHead(std::string& out, bool isRepeated) const {
  if (m_columns.empty()) return;
  if (isRepeated) out += '\n';
  for (std::size_t i = 0; i < m_columns.front().head.size(); ++i) {
    std::string line;
    appendBlanks(line, m_nameWidth);
    for (auto const& column : m_columns) {
      line += s_gap;
      appendBlanks(line, column.width - displayWidth(column.head[i]));
      line += column.head[i];
      appendBlanks(line, column.markWidth);
    }
    if (line.find_first_not_of(' ') != line.npos) appendLine(out, std::move(line));
  }
  std::string rule = "    " + std::string(m_nameWidth - std::min<std::size_t>(m_nameWidth, 4), '-');
  for (auto const& column : m_columns)
    rule += std::string(s_gap) + std::string(column.width + column.markWidth, '-');
  appendLine(out, std::move(rule));
}

void SectionText::appendCell(std::string& line, Cell const& cell, ColumnLayout const& column) const {
  bool const isColoured = m_colour && cell.mark == s_exceededMark;
  if (isColoured) line += "\x1b[31m";
  line += cell.text;
  if (isColoured) line += "\x1b[0m";
  appendBlanks(line, column.fractionWidth - cell.fractionWidth());
  line += cell.mark;
  appendBlanks(line, column.markWidth - cell.mark.size());
}

void SectionText::appendRow(std::string& out, Row const& row) const {
  std::string line = row.name;
  if (!row.isSubGroup) {
    appendBlanks(line, m_nameWidth - displayWidth(row.name));
    for (std::size_t i = 0; i < std::min(row.cells.size(), m_columns.size()); ++i) {
      auto const& cell = row.cells[i];
      auto const& column = m_columns[i];
      line += s_gap;
      appendBlanks(line, column.width - column.fractionWidth - cell.integerWidth);
      appendCell(line, cell, column);
    }
  }
  appendLine(out, std::move(line));
}

std::string tableTitle(ResultTable const& table) {
  auto const& container = table.container();
  auto const title = container.title.empty() ? std::string(familyName(container.dataType)) : container.title;
  return toPrintable(table.unit().getSimulationUnitName()) + ": " + toPrintable(title);
}

}  // namespace

std::string renderText(std::vector<ResultTable> const& tables, TextStyle const& style) {
  std::string out;
  bool hasMarks = false;
  for (auto const& table : tables) {
    if (!out.empty()) out += '\n';
    auto const title = tableTitle(table);
    appendLine(out, style.colour ? "\x1b[1m" + title + "\x1b[0m" : title);
    for (std::size_t i = 0; i < table.container().groups.size(); ++i) {
      out += '\n';
      SectionText const section(table, i, style.colour);
      section.appendTo(out);
      hasMarks = hasMarks || section.hasMarks();
    }
    if (table.container().groups.empty()) appendLine(out, "  " + tr("no elements"));
  }
  if (hasMarks) {
    out += fmt::format("\n! {}   ? {}\n", tr("beyond its limit"), tr("not valid"));
  }
  return out;
}

}  // namespace Kestrel::ResultTables

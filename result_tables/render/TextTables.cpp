#include "result_tables/render/TextTables.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/Ansi.h"
#include "result_tables/render/NumberCell.h"

namespace Kestrel::ResultTables {

namespace {

constexpr std::size_t s_rowsPerHead = 40;
constexpr std::string_view s_gap = "   ";
constexpr std::string_view s_exceededMark = " !";
constexpr std::string_view s_invalidMark = " ?";

struct Cell {
  NumberCell number;
  std::string_view mark;  ///< s_exceededMark, s_invalidMark or empty
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
  NumberColumn numbers;
  std::size_t markWidth = 0;  ///< room for the marks of exceeded values, where there are any
  std::size_t width = 0;      ///< of head and numbers, the marks left out

  /// With what keeps it from the column before.
  [[nodiscard]] std::size_t fullWidth() const { return s_gap.size() + width + markWidth; }
};

/// Columns that stand side by side: indices, the second one not included.
struct Block {
  std::size_t first;
  std::size_t end;
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
  SectionText(ResultTable const& table, std::size_t group, TextStyle const& style)
      : m_group(table.container().groups[group]), m_style(style) {
    collectRows(table, group);
    layOutColumns(table.columns(group));
  }

  void appendTo(std::string& out) const {
    appendLine(out, "  " + toPrintable(m_group.name));
    for (auto const& block : genBlocks()) appendBlock(out, block);
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
  [[nodiscard]] std::vector<Block> genBlocks() const;
  void appendBlock(std::string& out, Block const& block) const;
  void appendHead(std::string& out, Block const& block) const;
  void appendRow(std::string& out, Row const& row, Block const& block) const;
  void appendCell(std::string& line, Cell const& cell, ColumnLayout const& column) const;

  MaxValueGroup const& m_group;
  TextStyle m_style;
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
        NumberCell number(fmt::format("{:.7g}", item.maxValues[i]));
        row.cells.push_back({std::move(number), markOf(table, group, i, item)});
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
      layout.numbers.add(row.cells[i].number);
      layout.markWidth = std::max(layout.markWidth, row.cells[i].mark.size());
    }
  }
  std::size_t headLines = 0;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    auto& layout = m_columns[i];
    layout.width = layout.numbers.width();
    layout.head = genHead(columns[i], layout.width);
    for (auto const& line : layout.head) layout.width = std::max(layout.width, displayWidth(line));
    headLines = std::max(headLines, layout.head.size());
  }
  for (auto& layout : m_columns) layout.head.insert(layout.head.begin(), headLines - layout.head.size(), "");
}

/// As many columns side by side as the width has room for behind the names, at least one.
std::vector<Block> SectionText::genBlocks() const {
  std::vector<Block> blocks{{0, 0}};
  auto width = m_nameWidth;
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    bool const isEmpty = blocks.back().first == i;
    width += m_columns[i].fullWidth();
    if (m_style.width > 0 && width > m_style.width && !isEmpty) {
      blocks.push_back({i, i});
      width = m_nameWidth + m_columns[i].fullWidth();
    }
    blocks.back().end = i + 1;
  }
  return blocks;
}

void SectionText::appendBlock(std::string& out, Block const& block) const {
  for (std::size_t i = 0; i < m_rows.size(); ++i) {
    if (i % s_rowsPerHead == 0 && !m_columns.empty()) {
      if (i > 0 || block.first > 0) out += '\n';
      appendHead(out, block);
    }
    appendRow(out, m_rows[i], block);
  }
}

void SectionText::appendHead(std::string& out, Block const& block) const {
  for (std::size_t i = 0; i < m_columns.front().head.size(); ++i) {
    std::string line;
    appendBlanks(line, m_nameWidth);
    for (std::size_t j = block.first; j < block.end; ++j) {
      auto const& column = m_columns[j];
      line += s_gap;
      appendBlanks(line, column.width - displayWidth(column.head[i]));
      line += column.head[i];
      appendBlanks(line, column.markWidth);
    }
    if (line.find_first_not_of(' ') != line.npos) appendLine(out, std::move(line));
  }
  std::string rule = "    " + std::string(m_nameWidth - std::min<std::size_t>(m_nameWidth, 4), '-');
  for (std::size_t j = block.first; j < block.end; ++j)
    rule += std::string(s_gap) + std::string(m_columns[j].width + m_columns[j].markWidth, '-');
  appendLine(out, std::move(rule));
}

void SectionText::appendCell(std::string& line, Cell const& cell, ColumnLayout const& column) const {
  line += s_gap;
  appendBlanks(line, column.width - column.numbers.width());
  auto const isColoured = m_style.colour && cell.mark == s_exceededMark;
  line += column.numbers.aligned(cell.number, red(cell.number.text(), isColoured));
  line += cell.mark;
  appendBlanks(line, column.markWidth - cell.mark.size());
}

void SectionText::appendRow(std::string& out, Row const& row, Block const& block) const {
  std::string line = row.name;
  if (!row.isSubGroup) {
    appendBlanks(line, m_nameWidth - displayWidth(row.name));
    for (auto i = block.first; i < std::min(row.cells.size(), block.end); ++i)
      appendCell(line, row.cells[i], m_columns[i]);
  }
  appendLine(out, std::move(line));
}

std::string tableTitle(ResultTable const& table) {
  return toPrintable(table.unit().getSimulationUnitName()) + ": " + toPrintable(table.title());
}

}  // namespace

std::string renderText(std::vector<ResultTable> const& tables, TextStyle const& style) {
  std::string out;
  bool hasMarks = false;
  for (auto const& table : tables) {
    if (!out.empty()) out += '\n';
    auto const title = tableTitle(table);
    appendLine(out, bold(title, style.colour));
    for (std::size_t i = 0; i < table.container().groups.size(); ++i) {
      out += '\n';
      SectionText const section(table, i, style);
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

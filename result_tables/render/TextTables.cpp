#include "result_tables/render/TextTables.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/Ansi.h"
#include "result_tables/render/NumberCell.h"
#include "result_tables/render/TextLine.h"
#include "result_tables/render/TextSummary.h"

namespace Kestrel::ResultTables {

namespace {

constexpr std::size_t s_rowsPerHead = 40;

/// The marks of values, and which of them a text has.
struct Marks {
  bool exceeded = false;
  bool invalid = false;
  bool notANumber = false;

  void add(Marks const& other) {
    exceeded = exceeded || other.exceeded;
    invalid = invalid || other.invalid;
    notANumber = notANumber || other.notANumber;
  }

  /// With what keeps them from the number; empty where there is none.
  [[nodiscard]] std::string text() const {
    std::string text;
    if (invalid) text += '?';
    if (exceeded) text += '!';
    if (notANumber) text += '*';
    return text.empty() ? text : ' ' + text;
  }
};

struct TableCell {
  NumberCell number;
  Marks marks;
  std::string when;  ///< time or step; empty where it is not wanted or there is none
};

NumberCell numberOf(TableValue const& value, int digits) {
  if (!value.hasData()) return NumberCell(std::string(s_noData));
  return NumberCell(value.isNaN() ? "NaN" : formatNumber(value.value, digits));
}

std::string whenOf(MaxValueOrigin const& origin, TextStyle const& style) {
  if (!style.when || !origin.step) return {};
  return origin.companion ? " @ " + formatNumber(*origin.companion, style.digits)
                          : " # " + std::to_string(*origin.step);
}

TableCell cellOf(TableValue const& value, bool isValid, TextStyle const& style) {
  return {numberOf(value, style.digits),
          {.exceeded = value.isExceeded, .invalid = !isValid, .notANumber = value.origin.nanCount > 0},
          whenOf(value.origin, style)};
}

/// A row of the text table: an item, or the name of a sub-group above its items.
struct Row {
  std::string name;
  bool isSubGroup;
  std::vector<TableCell> cells;
};

struct ColumnLayout {
  std::vector<std::string> head;  ///< from the top line down, as many lines in every column
  NumberColumn numbers;
  std::size_t markWidth = 0;  ///< room for the marks behind the numbers, where there are any
  std::size_t whenWidth = 0;  ///< and for the times behind these
  std::size_t width = 0;      ///< of head and numbers alone

  /// Of what stands behind the numbers.
  [[nodiscard]] std::size_t tailWidth() const { return markWidth + whenWidth; }

  /// With what keeps it from the column before.
  [[nodiscard]] std::size_t fullWidth() const { return s_gap.size() + width + tailWidth(); }
};

/// Columns that stand side by side: indices, the second one not included.
struct Block {
  std::size_t first;
  std::size_t end;
};

void appendBlanks(std::string& out, std::size_t count) { out.append(count, ' '); }

/// The lines above a column: its name, its unit, its limit.
std::vector<std::string> genHead(TableColumn const& column, std::size_t numberWidth, int digits) {
  constexpr std::size_t shortestLine = 12;
  auto head = wrap(toPrintable(column.shownName()), std::max(numberWidth, shortestLine), " ");
  head.push_back(toPrintable(column.unit));
  std::string limit;
  if (column.limit) {
    limit = "≤ " + formatNumber(column.limit->value, digits);
    if (column.limit->unit != column.unit) limit += ' ' + toPrintable(column.limit->unit);
  }
  head.push_back(limit);
  return head;
}

class SectionTable {
 public:
  SectionTable(ResultTable const& table, std::size_t group, TextStyle const& style)
      : m_group(table.container().groups[group]), m_style(style) {
    collectRows(table, group);
    layOutColumns(table.columns(group));
  }

  void appendTo(std::string& out) const {
    appendLine(out, "  " + toPrintable(m_group.name));
    for (auto const& block : genBlocks()) appendBlock(out, block);
    if (m_rows.empty()) appendLine(out, "    " + tr("no elements"));
  }

  /// The marks that values of the section have.
  [[nodiscard]] Marks const& marks() const { return m_marks; }

 private:
  void collectRows(ResultTable const& table, std::size_t group);
  void layOutColumns(std::vector<TableColumn> const& columns);
  [[nodiscard]] std::vector<Block> genBlocks() const;
  void appendBlock(std::string& out, Block const& block) const;
  void appendHead(std::string& out, Block const& block) const;
  void appendRow(std::string& out, Row const& row, Block const& block) const;
  void appendCell(std::string& out, TableCell const& cell, ColumnLayout const& column) const;

  MaxValueGroup const& m_group;
  TextStyle m_style;
  std::vector<Row> m_rows;
  std::size_t m_nameWidth = 0;
  std::vector<ColumnLayout> m_columns;
  Marks m_marks;
};

void SectionTable::collectRows(ResultTable const& table, std::size_t group) {
  for (std::size_t i = 0; i < m_group.subGroups.size(); ++i) {
    auto const& subGroup = m_group.subGroups[i];
    bool const isNamed = !subGroup.name.empty();
    if (isNamed) m_rows.push_back({"    " + toPrintable(subGroup.name), true, {}});
    for (std::size_t k = 0; k < subGroup.items.size(); ++k) {
      auto const& item = subGroup.items[k];
      Row row{(isNamed ? "      " : "    ") + toPrintable(table.displayName(item)), false, {}};
      row.cells.reserve(m_group.valueNames.size());
      for (auto const& value : table.genRow(group, i, k)) {
        row.cells.push_back(cellOf(value, table.isValid(item), m_style));
        m_marks.add(row.cells.back().marks);
      }
      m_nameWidth = std::max(m_nameWidth, displayWidth(row.name));
      m_rows.push_back(std::move(row));
    }
  }
}

void SectionTable::layOutColumns(std::vector<TableColumn> const& columns) {
  m_columns.resize(columns.size());
  for (auto const& row : m_rows) {
    for (std::size_t i = 0; i < std::min(row.cells.size(), m_columns.size()); ++i) {
      auto& layout = m_columns[i];
      layout.numbers.add(row.cells[i].number);
      layout.markWidth = std::max(layout.markWidth, row.cells[i].marks.text().size());
      layout.whenWidth = std::max(layout.whenWidth, row.cells[i].when.size());
    }
  }
  std::size_t headLines = 0;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    auto& layout = m_columns[i];
    layout.width = layout.numbers.width();
    layout.head = genHead(columns[i], layout.width, m_style.digits);
    for (auto const& line : layout.head) layout.width = std::max(layout.width, displayWidth(line));
    headLines = std::max(headLines, layout.head.size());
  }
  for (auto& layout : m_columns) layout.head.insert(layout.head.begin(), headLines - layout.head.size(), "");
}

/// As many columns side by side as the width has room for behind the names, at least one.
std::vector<Block> SectionTable::genBlocks() const {
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

void SectionTable::appendBlock(std::string& out, Block const& block) const {
  for (std::size_t i = 0; i < m_rows.size(); ++i) {
    if (i % s_rowsPerHead == 0 && !m_columns.empty()) {
      if (i > 0 || block.first > 0) out += '\n';
      appendHead(out, block);
    }
    appendRow(out, m_rows[i], block);
  }
}

void SectionTable::appendHead(std::string& out, Block const& block) const {
  for (std::size_t i = 0; i < m_columns.front().head.size(); ++i) {
    std::string line;
    appendBlanks(line, m_nameWidth);
    for (std::size_t j = block.first; j < block.end; ++j) {
      auto const& column = m_columns[j];
      line += s_gap;
      appendBlanks(line, column.width - displayWidth(column.head[i]));
      line += column.head[i];
      appendBlanks(line, column.tailWidth());
    }
    if (line.find_first_not_of(' ') != line.npos) appendLine(out, line);
  }
  std::string rule = "    " + std::string(m_nameWidth - std::min<std::size_t>(m_nameWidth, 4), '-');
  for (std::size_t j = block.first; j < block.end; ++j)
    rule += std::string(s_gap) + std::string(m_columns[j].width + m_columns[j].tailWidth(), '-');
  appendLine(out, rule);
}

void SectionTable::appendCell(std::string& out, TableCell const& cell, ColumnLayout const& column) const {
  out += s_gap;
  appendBlanks(out, column.width - column.numbers.width());
  bool const isColoured = m_style.colour && cell.marks.exceeded;
  column.numbers.appendAligned(out, cell.number, red(cell.number.text(), isColoured));
  auto const marks = cell.marks.text();
  out += marks;
  appendBlanks(out, column.markWidth - marks.size());
  out += cell.when;
  appendBlanks(out, column.whenWidth - cell.when.size());
}

void SectionTable::appendRow(std::string& out, Row const& row, Block const& block) const {
  auto const begin = out.size();
  out += row.name;
  if (!row.isSubGroup) {
    appendBlanks(out, m_nameWidth - displayWidth(row.name));
    for (auto i = block.first; i < std::min(row.cells.size(), block.end); ++i)
      appendCell(out, row.cells[i], m_columns[i]);
  }
  endLine(out, begin);
}

std::string tableTitle(ResultTable const& table) {
  return toPrintable(table.unit().getSimulationUnitName()) + ": " + toPrintable(table.title());
}

/// What the marks mean; empty where there are none.
std::string legendOf(Marks const& marks, bool when, std::size_t width) {
  std::vector<std::string> entries;
  if (marks.exceeded) entries.push_back("! " + tr("beyond its limit"));
  if (marks.invalid) entries.push_back("? " + tr("not valid"));
  if (marks.notANumber) entries.push_back("* " + tr("its series holds values that are not numbers"));
  if (when) entries.push_back("@ " + tr("time, # step"));
  return entries.empty() ? "" : '\n' + genLegend(entries, width);
}

/// Whether its first line is no longer to be seen when a prompt stands below the last.
bool exceedsScreen(std::string_view text, TextStyle const& style) {
  auto const lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
  return style.height > 0 && lines >= style.height;
}

}  // namespace

std::string renderText(std::vector<ResultTable> const& tables, TextStyle const& style) {
  std::string out;
  Marks marks;
  for (auto const& table : tables) {
    if (!out.empty()) out += '\n';
    auto const title = tableTitle(table);
    appendLine(out, bold(title, style.colour));
    for (std::size_t i = 0; i < table.container().groups.size(); ++i) {
      out += '\n';
      SectionTable const section(table, i, style);
      section.appendTo(out);
      marks.add(section.marks());
    }
    if (table.container().groups.empty()) appendLine(out, "  " + tr("no elements"));
  }
  out += legendOf(marks, style.when && !tables.empty(), style.width);
  return exceedsScreen(out, style) ? renderSummaryAsText(tables, style) + '\n' + out : out;
}

}  // namespace Kestrel::ResultTables

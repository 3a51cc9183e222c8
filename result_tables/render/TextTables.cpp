#include "result_tables/render/TextTables.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "result_tables/Family.h"
#include "result_tables/Text.h"

namespace Kestrel::ResultTables {

namespace {

constexpr std::size_t s_rowsPerHead = 40;
constexpr std::string_view s_gap = "   ";

/// A number as text, cut at its decimal point.
struct Cell {
  std::string text;
  std::size_t integerWidth;

  explicit Cell(double value)
      : text(fmt::format("{:.7g}", value)), integerWidth(std::min(text.find('.'), text.size())) {}
  [[nodiscard]] std::size_t fractionWidth() const { return text.size() - integerWidth; }
};

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

class SectionText {
 public:
  SectionText(ResultTable const& table, std::size_t group) : m_group(table.container().groups[group]) {
    collectRows(table);
    layOutColumns(table.columns(group));
  }

  void appendTo(std::string& out) const {
    appendLine(out, "  " + toPrintable(m_group.name));
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
      if (i % s_rowsPerHead == 0) appendHead(out, i > 0);
      appendRow(out, m_rows[i]);
    }
    if (m_rows.empty()) appendLine(out, "    no elements");
  }

 private:
  void collectRows(ResultTable const& table);
  void layOutColumns(std::vector<TableColumn> const& columns);
  void appendHead(std::string& out, bool isRepeated) const;
  void appendRow(std::string& out, Row const& row) const;

  MaxValueGroup const& m_group;
  std::vector<Row> m_rows;
  std::size_t m_nameWidth = 0;
  std::vector<ColumnLayout> m_columns;
};

void SectionText::collectRows(ResultTable const& table) {
  for (auto const& subGroup : m_group.subGroups) {
    bool const isNamed = !subGroup.name.empty();
    if (isNamed) m_rows.push_back({"    " + toPrintable(subGroup.name), true, {}});
    for (auto const& item : subGroup.items) {
      Row row{(isNamed ? "      " : "    ") + toPrintable(table.displayName(item)), false, {}};
      for (double const value : item.maxValues) row.cells.emplace_back(value);
      m_nameWidth = std::max(m_nameWidth, displayWidth(row.name));
      m_rows.push_back(std::move(row));
    }
  }
}

void SectionText::layOutColumns(std::vector<TableColumn> const& columns) {
  m_columns.resize(columns.size());
  for (auto const& row : m_rows) {
    for (std::size_t i = 0; i < std::min(row.cells.size(), m_columns.size()); ++i) {
      m_columns[i].integerWidth = std::max(m_columns[i].integerWidth, row.cells[i].integerWidth);
      m_columns[i].fractionWidth = std::max(m_columns[i].fractionWidth, row.cells[i].fractionWidth());
    }
  }
  std::size_t headLines = 0;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    auto& layout = m_columns[i];
    auto const& name = columns[i].tableDisplayName.empty() ? columns[i].key : columns[i].tableDisplayName;
    layout.width = layout.integerWidth + layout.fractionWidth;
    layout.head = wrap(toPrintable(name), std::max<std::size_t>(layout.width, 12));
    layout.head.push_back(toPrintable(columns[i].unit));
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
    }
    if (line.find_first_not_of(' ') != line.npos) appendLine(out, std::move(line));
  }
  std::string rule = "    " + std::string(m_nameWidth - std::min<std::size_t>(m_nameWidth, 4), '-');
  for (auto const& column : m_columns) rule += std::string(s_gap) + std::string(column.width, '-');
  appendLine(out, std::move(rule));
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
      line += cell.text;
      appendBlanks(line, column.fractionWidth - cell.fractionWidth());
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

std::string renderText(std::vector<ResultTable> const& tables, bool colour) {
  std::string out;
  for (auto const& table : tables) {
    if (!out.empty()) out += '\n';
    auto const title = tableTitle(table);
    appendLine(out, colour ? "\x1b[1m" + title + "\x1b[0m" : title);
    for (std::size_t i = 0; i < table.container().groups.size(); ++i) {
      out += '\n';
      SectionText(table, i).appendTo(out);
    }
    if (table.container().groups.empty()) appendLine(out, "  no elements");
  }
  return out;
}

}  // namespace Kestrel::ResultTables

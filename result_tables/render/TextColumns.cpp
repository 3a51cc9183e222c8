#include "result_tables/render/TextColumns.h"

#include <algorithm>
#include <utility>

#include "result_tables/base/Text.h"
#include "result_tables/render/Ansi.h"
#include "result_tables/render/NumberCell.h"
#include "result_tables/render/TextLine.h"

namespace Kestrel::ResultTables {

namespace {

std::string padded(std::string const& text, std::size_t width, bool isAtTheRight) {
  std::string const blanks(width - std::min(width, displayWidth(text)), ' ');
  return isAtTheRight ? blanks + text : text + blanks;
}

}  // namespace

void TextColumns::add(std::vector<std::string> cells, bool isMarked) {
  m_rows.push_back({std::move(cells), isMarked});
}

TextColumns::PaddedColumn TextColumns::paddedColumn(std::size_t column) const {
  bool const isNumber = m_columns[column].kind == Kind::number;
  NumberColumn numbers;
  if (isNumber) {
    for (auto const& row : m_rows) numbers.add(NumberCell(row.cells[column]));
  }
  std::vector<std::string> texts = {m_columns[column].heading};
  for (auto const& row : m_rows)
    texts.push_back(isNumber ? numbers.aligned(NumberCell(row.cells[column])) : row.cells[column]);
  std::size_t width = 0;
  for (auto const& text : texts) width = std::max(width, displayWidth(text));
  for (auto& text : texts) text = padded(text, width, isNumber);
  return texts;
}

std::vector<TextColumns::PaddedColumn> TextColumns::paddedColumns() const {
  std::vector<PaddedColumn> columns;
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    if (!std::ranges::all_of(m_rows, [i](Row const& row) { return row.cells[i].empty(); }))
      columns.push_back(paddedColumn(i));
  }
  return columns;
}

void TextColumns::appendBlock(std::string& out, std::vector<PaddedColumn const*> const& columns,
                              bool colour) const {
  for (std::size_t k = 0; k <= m_rows.size(); ++k) {
    std::string line;
    for (auto const* const column : columns) line += (line.empty() ? "" : std::string(s_gap)) + (*column)[k];
    line.erase(line.find_last_not_of(' ') + 1);
    bool const isMarked = k > 0 && m_rows[k - 1].isMarked;
    out += (k == 0 ? bold(line, colour) : red(line, colour && isMarked)) + '\n';
  }
}

std::string TextColumns::render(bool colour, std::size_t width) const {
  std::string out;
  auto const columns = paddedColumns();
  std::vector<PaddedColumn const*> block;
  std::size_t taken = 0;
  for (auto const& column : columns) {
    auto const needed = s_gap.size() + displayWidth(column.front());
    if (width > 0 && block.size() > 1 && taken + needed > width) {
      appendBlock(out, block, colour);
      out += '\n';
      block.erase(block.begin() + 1, block.end());
      taken = displayWidth(block.front()->front());
    }
    taken += block.empty() ? displayWidth(column.front()) : needed;
    block.push_back(&column);
  }
  appendBlock(out, block, colour);
  return out;
}

}  // namespace Kestrel::ResultTables

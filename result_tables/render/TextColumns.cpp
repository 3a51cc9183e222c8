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

/// The heading and the cells, all of one width.
std::vector<std::string> TextColumns::paddedColumn(std::size_t column) const {
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

std::string TextColumns::render(bool colour) const {
  std::vector<std::string> lines(m_rows.size() + 1);
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    if (std::ranges::all_of(m_rows, [i](Row const& row) { return row.cells[i].empty(); })) continue;
    auto const column = paddedColumn(i);
    for (std::size_t k = 0; k < lines.size(); ++k) {
      if (!lines[k].empty()) lines[k] += s_gap;
      lines[k] += column[k];
    }
  }
  std::string out;
  for (std::size_t k = 0; k < lines.size(); ++k) {
    auto& line = lines[k];
    line.erase(line.find_last_not_of(' ') + 1);
    bool const isMarked = k > 0 && m_rows[k - 1].isMarked;
    out += (k == 0 ? bold(line, colour) : red(line, colour && isMarked)) + '\n';
  }
  return out;
}

}  // namespace Kestrel::ResultTables

#include "result_tables/render/NumberCell.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "result_tables/base/Text.h"

namespace Kestrel::ResultTables {

NumberCell::NumberCell(std::string text) : m_text(std::move(text)) {
  auto const point = std::min(m_text.find('.'), m_text.size());
  m_integerWidth = displayWidth(std::string_view(m_text).substr(0, point));
  m_fractionWidth = displayWidth(std::string_view(m_text).substr(point));
}

void NumberColumn::add(NumberCell const& cell) {
  m_integerWidth = std::max(m_integerWidth, cell.integerWidth());
  m_fractionWidth = std::max(m_fractionWidth, cell.fractionWidth());
}

std::string NumberColumn::aligned(NumberCell const& cell, std::string_view shown) const {
  std::string out;
  appendAligned(out, cell, shown);
  return out;
}

void NumberColumn::appendAligned(std::string& out, NumberCell const& cell, std::string_view shown) const {
  assert(cell.integerWidth() <= m_integerWidth && cell.fractionWidth() <= m_fractionWidth);
  out.append(m_integerWidth - cell.integerWidth(), ' ');
  out += shown;
  out.append(m_fractionWidth - cell.fractionWidth(), ' ');
}

}  // namespace Kestrel::ResultTables

#include "result_tables/render/CsvWriter.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "result_tables/base/Text.h"

namespace Kestrel::ResultTables {

void CsvWriter::record(std::initializer_list<std::string_view> fields) {
  bool isFirst = true;
  for (auto const text : fields) {
    if (!isFirst) m_out += m_dialect.separator;
    isFirst = false;
    field(text);
  }
  m_out += "\r\n";
}

std::string CsvWriter::number(double value) const {
  auto text = shortestForm(value);
  std::replace(text.begin(), text.end(), '.', m_dialect.decimalMark);
  return text;
}

std::string CsvWriter::take() { return std::exchange(m_out, {}); }

void CsvWriter::field(std::string_view text) {
  char const special[] = {m_dialect.separator, '"', '\r', '\n'};
  if (text.find_first_of(std::string_view(special, std::size(special))) == text.npos) {
    m_out += text;
    return;
  }
  m_out += '"';
  for (char const c : text) {
    if (c == '"') m_out += '"';
    m_out += c;
  }
  m_out += '"';
}

}  // namespace Kestrel::ResultTables

#include "result_tables/render/CsvWriter.h"

#include <algorithm>
#include <cassert>
#include <iterator>
#include <utility>

#include "result_tables/base/Text.h"

namespace Kestrel::ResultTables {

void CsvWriter::record(std::initializer_list<std::string_view> fields) {
  for (auto const field : fields) text(field);
  endRecord();
}

void CsvWriter::number(std::optional<double> value) {
  if (value) appendShortestForm(m_out, *value, m_dialect.decimalMark);
  m_out += m_dialect.separator;
}

void CsvWriter::integer(std::optional<std::uint64_t> value) {
  if (value) appendInteger(m_out, *value);
  m_out += m_dialect.separator;
}

void CsvWriter::flag(bool value) {
  m_out += value ? "true" : "false";
  m_out += m_dialect.separator;
}

void CsvWriter::endRecord() {
  assert(m_out.ends_with(m_dialect.separator));
  m_out.back() = '\r';
  m_out += '\n';
}

std::string CsvWriter::spell(std::initializer_list<std::string_view> fields) const {
  std::string out;
  for (auto const field : fields) appendField(out, field);
  return out;
}

std::string CsvWriter::take() { return std::exchange(m_out, {}); }

void CsvWriter::appendField(std::string& out, std::string_view text) const {
  bool const isPlain = std::all_of(text.begin(), text.end(), [separator = m_dialect.separator](char c) {
    return c >= ' ' && c <= '~' && c != separator && c != '"';
  });
  if (isPlain) {
    out += text;
  } else {
    appendQuotedWhereNeeded(out, toValidUtf8(text));
  }
  out += m_dialect.separator;
}

void CsvWriter::appendQuotedWhereNeeded(std::string& out, std::string_view text) const {
  char const special[] = {m_dialect.separator, '"', '\r', '\n'};
  if (text.find_first_of(std::string_view(special, std::size(special))) == text.npos) {
    out += text;
    return;
  }
  out += '"';
  for (char const c : text) {
    if (c == '"') out += '"';
    out += c;
  }
  out += '"';
}

}  // namespace Kestrel::ResultTables

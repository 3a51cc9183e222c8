#include "result_tables/render/XlsxRows.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <new>

#include "result_tables/base/Error.h"
#include "result_tables/base/File.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/XlsxBook.h"

namespace Kestrel::ResultTables {

namespace {

constexpr std::size_t s_mostCharacters = 32767;
constexpr std::size_t s_flushedBytes = 1U << 16U;

/// Whether the text begins as "_x0041_" does, which stands for a character.
bool beginsAsEscaped(std::string_view text) {
  constexpr std::size_t length = 7;
  return text.size() >= length && text.starts_with("_x") && text[length - 1] == '_' &&
         std::all_of(text.begin() + 2, text.begin() + length - 1,
                     [](unsigned char c) { return std::isxdigit(c) != 0; });
}

/// The text of a cell: printable, and so that no part of it is taken for an escaped character.
std::string cellText(std::string_view text) {
  auto printable = toPrintable(text);
  if (auto const count = countXlsxCharacters(printable); count > s_mostCharacters) {
    throw Error(tr("{}: expected at most {} characters for a cell of a workbook, found {}", quote(text),
                   s_mostCharacters, count));
  }
  constexpr std::string_view escape = "_x005F";
  for (auto i = printable.find("_x"); i != std::string::npos; i = printable.find("_x", i + 1)) {
    if (!beginsAsEscaped(std::string_view(printable).substr(i))) continue;
    printable.insert(i, escape);
    i += escape.size();
  }
  return printable;
}

void appendEscaped(std::string& out, std::string_view text) {
  for (char const c : text) {
    if (c == '&') {
      out += "&amp;";
    } else if (c == '<') {
      out += "&lt;";
    } else if (c == '>') {
      out += "&gt;";
    } else {
      out += c;
    }
  }
}

char const* wordFor(double noNumber) { return std::isnan(noNumber) ? "NaN" : noNumber > 0 ? "inf" : "-inf"; }

}  // namespace

std::size_t countXlsxCharacters(std::string_view utf8) {
  std::size_t count = 0;
  for (char const c : utf8) {
    auto const byte = static_cast<unsigned char>(c);
    count += (byte & 0xC0U) == 0x80U ? 0 : byte >= 0xF0U ? 2 : 1;
  }
  return count;
}

std::string xlsxColumn(std::size_t column) {
  std::string letters;
  for (auto rest = column + 1; rest > 0; rest = (rest - 1) / 26)
    letters.insert(letters.begin(), static_cast<char>('A' + (rest - 1) % 26));
  return letters;
}

int styleOf(lxw_format& format) { return lxw_format_get_xf_index(&format); }

XlsxRows::XlsxRows(lxw_worksheet& sheet) : m_sheet(&sheet) {}

std::string XlsxRows::spell(std::string_view text) {
  if (text.empty()) return {};
  bool const hasBlanksAround = text.front() == ' ' || text.back() == ' ';
  std::string spelt = "\" t=\"inlineStr\"><is><t";
  spelt += hasBlanksAround ? " xml:space=\"preserve\">" : ">";
  appendEscaped(spelt, cellText(text));
  return spelt += "</t></is></c>";
}

std::string XlsxRows::share(std::string_view text) {
  if (text.empty()) return {};
  auto const* const shared = lxw_get_sst_index(m_sheet->sst, cellText(text).c_str(), LXW_FALSE);
  if (!shared) throw std::bad_alloc();
  return fmt::format("\" t=\"s\"><v>{}</v></c>", shared->index);
}

void XlsxRows::spelt(std::string_view spelt, int style) {
  if (spelt.empty()) return skip();
  beginCell(style);
  m_out += spelt;
}

void XlsxRows::link(std::string_view text, std::string const& place, int style) {
  expectDone(worksheet_write_url(m_sheet, static_cast<lxw_row_t>(m_row), static_cast<lxw_col_t>(m_column),
                                 ("internal:" + place).c_str(), nullptr));
  // The cell is written here, like all others.
  m_sheet->optimize_row->data_changed = LXW_FALSE;
  this->text(text, style);
}

void XlsxRows::number(double value, int style) {
  if (!std::isfinite(value)) return text(wordFor(value), style);
  beginCell(style);
  m_out += "\"><v>";
  appendShortestForm(m_out, value);
  m_out += "</v></c>";
}

void XlsxRows::flag(bool value, int style) {
  beginCell(style);
  m_out += value ? "\" t=\"b\"><v>1</v></c>" : "\" t=\"b\"><v>0</v></c>";
}

void XlsxRows::formula(std::string_view formula, double result, int style) {
  bool const isNumber = std::isfinite(result);
  beginCell(style);
  m_out += isNumber ? "\"><f>" : "\" t=\"str\"><f>";
  appendEscaped(m_out, formula);
  m_out += "</f><v>";
  if (isNumber) {
    appendShortestForm(m_out, result);
  } else {
    m_out += wordFor(result);
  }
  m_out += "</v></c>";
}

void XlsxRows::formulaOfNothing(std::string_view formula, int style) {
  beginCell(style);
  m_out += "\" t=\"str\"><f>";
  appendEscaped(m_out, formula);
  m_out += "</f><v></v></c>";
}

void XlsxRows::endRow() {
  if (m_isBegun) m_out += "</row>";
  m_isBegun = false;
  m_columns = std::max(m_columns, m_column);
  m_column = 0;
  m_rowNumber = std::to_string(++m_row + 1);
  if (m_out.size() > s_flushedBytes) flush();
}

std::size_t XlsxRows::finish() {
  flush();
  if (std::fflush(m_sheet->optimize_tmpfile) != 0) failToWriteTemporaryFile();
  // The sheet says how large it is.
  m_sheet->dim_rowmin = 0;
  m_sheet->dim_colmin = 0;
  m_sheet->dim_rowmax = static_cast<lxw_row_t>(m_row - 1);
  m_sheet->dim_colmax = static_cast<lxw_col_t>(m_columns - 1);
  return m_written;
}

void XlsxRows::beginRow() {
  m_isBegun = true;
  m_out += "<row r=\"";
  m_out += m_rowNumber;
  if (m_height > 0) m_out += fmt::format("\" ht=\"{}\" customHeight=\"1", m_height);
  m_out += "\">";
  m_height = 0;
}

void XlsxRows::beginCell(int style) {
  if (!m_isBegun) beginRow();
  m_out += "<c r=\"";
  m_out += letters(m_column++);
  m_out += m_rowNumber;
  if (style != 0) {
    m_out += "\" s=\"";
    appendInteger(m_out, static_cast<std::uint64_t>(style));
  }
}

std::string const& XlsxRows::letters(std::size_t column) {
  while (m_letters.size() <= column) m_letters.push_back(xlsxColumn(m_letters.size()));
  return m_letters[column];
}

void XlsxRows::flush() {
  if (std::fwrite(m_out.data(), 1, m_out.size(), m_sheet->optimize_tmpfile) != m_out.size())
    failToWriteTemporaryFile();
  m_written += m_out.size();
  m_out.clear();
}

}  // namespace Kestrel::ResultTables

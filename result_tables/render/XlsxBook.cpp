#include "result_tables/render/XlsxBook.h"

#include <algorithm>
#include <cassert>
#include <cerrno>
#include <cstdio>
#include <new>
#include <utility>

#include "result_tables/base/Error.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

namespace {

constexpr std::size_t s_longestSheetName = 31;
constexpr int s_heightOfHeads = 48;  // three lines

void dropLastCharacter(std::string& utf8) {
  while (!utf8.empty() && (static_cast<unsigned char>(utf8.back()) & 0xC0U) == 0x80U) utf8.pop_back();
  if (!utf8.empty()) utf8.pop_back();
}

/// The title without what the names of sheets and links to them may not hold, and short enough for `suffix`.
std::string genSheetName(std::string const& title, std::string const& suffix) {
  auto name = toPrintable(title);
  for (auto& c : name) {
    if (std::string_view("[]:*?/\\'#").find(c) != std::string_view::npos) c = '_';
  }
  while (countXlsxCharacters(name) + suffix.size() > s_longestSheetName) dropLastCharacter(name);
  return name.empty() ? "_" + suffix : name + suffix;
}

}  // namespace

void expectDone(lxw_error error) {
  if (error == LXW_NO_ERROR) return;
  if (error == LXW_ERROR_MEMORY_MALLOC_FAILED) throw std::bad_alloc();
  throw Error(tr("workbook: cannot write: {}", lxw_strerror(error)));
}

std::string quotedNameOf(lxw_worksheet const& sheet) { return "'" + std::string(sheet.name) + "'"; }

XlsxBook::XlsxBook() : m_folder(temporaryFolder()) {
  lxw_workbook_options options{
      .constant_memory = LXW_TRUE, .tmpdir = m_folder.data(), .use_zip64 = LXW_FALSE};
  m_book = workbook_new_opt(m_file.path().c_str(), &options);
  if (!m_book) throw std::bad_alloc();
  lxw_doc_properties properties{};
  properties.created = 946684800;  // 2000-01-01: two workbooks of the same tables are the same
  workbook_set_properties(m_book, &properties);
}

XlsxBook::~XlsxBook() {
  if (!m_book) return;
  for (auto* const sheet : m_sheets) static_cast<void>(std::fclose(sheet->optimize_tmpfile));
  lxw_workbook_free(m_book);
}

lxw_worksheet& XlsxBook::addSheet(std::string const& title) {
  auto name = genSheetName(title, "");
  for (int i = 2; workbook_validate_sheet_name(m_book, name.c_str()) != LXW_NO_ERROR; ++i)
    name = genSheetName(title, " (" + std::to_string(i) + ")");
  auto* const sheet = workbook_add_worksheet(m_book, name.c_str());
  if (!sheet) failToWriteTemporaryFile();
  m_sheets.push_back(sheet);
  worksheet_set_landscape(sheet);
  worksheet_fit_to_pages(sheet, 1, 0);
  return *sheet;
}

lxw_format& XlsxBook::addFormat() {
  auto* const format = workbook_add_format(m_book);
  if (!format) throw std::bad_alloc();
  return *format;
}

lxw_chart& XlsxBook::addChart(lxw_chart_type type) {
  auto* const chart = workbook_add_chart(m_book, static_cast<std::uint8_t>(type));
  if (!chart) throw std::bad_alloc();
  return *chart;
}

void XlsxBook::finish(XlsxRows& rows) {
  auto const bytes = rows.finish();
  m_largestSheet = std::max(m_largestSheet, bytes);
  m_allSheets += bytes;
}

std::string XlsxBook::save() {
  // The library does not notice when there is no room for its copy of a sheet, beside the workbook.
  constexpr std::size_t everythingElse = 1U << 20U;
  m_file.checkRoom(m_largestSheet + m_allSheets / 2 + everythingElse);
  m_sheets.clear();
  expectDone(workbook_close(std::exchange(m_book, nullptr)));
  return m_file.read();
}

XlsxTable::XlsxTable(XlsxBook& book, std::string title, std::vector<Column> columns, std::size_t frozen,
                     lxw_format& ofHeads, Finish finish, std::size_t rowsPerSheet)
    : m_book(&book),
      m_title(std::move(title)),
      m_columns(std::move(columns)),
      m_frozen(frozen),
      m_ofHeads(styleOf(ofHeads)),
      m_finish(std::move(finish)),
      m_rowsPerSheet(rowsPerSheet) {
  assert(rowsPerSheet > 1);
  beginSheet();
}

XlsxRows& XlsxTable::nextRow() {
  if (m_rows->row() == m_rowsPerSheet) {
    finish();
    beginSheet();
  }
  return *m_rows;
}

void XlsxTable::finish() {
  m_book->finish(*m_rows);
  if (m_rows->row() > 1) m_finish(*m_written.back(), static_cast<lxw_row_t>(m_rows->row() - 1));
}

void XlsxTable::beginSheet() {
  auto& sheet = m_book->addSheet(m_title);
  m_written.push_back(&sheet);
  m_rows.emplace(sheet);
  m_rows->setHeight(s_heightOfHeads);
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    auto const column = static_cast<lxw_col_t>(i);
    expectDone(worksheet_set_column(&sheet, column, column, m_columns[i].width, nullptr));
    m_rows->text(m_columns[i].head, m_ofHeads);
  }
  m_rows->endRow();
  expectDone(worksheet_repeat_rows(&sheet, 0, 0));
  worksheet_freeze_panes(&sheet, 1, static_cast<lxw_col_t>(m_frozen));
}

}  // namespace Kestrel::ResultTables

#include "result_tables/render/XlsxRunTable.h"

#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "result_tables/base/Family.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/RunTableTexts.h"
#include "result_tables/render/XlsxBook.h"
#include "result_tables/render/XlsxStyles.h"

namespace Kestrel::ResultTables {

namespace {

constexpr double s_widthOfText = 18;
constexpr double s_widthOfTime = 22;
constexpr double s_widthOfNumber = 14;

using XlsxColumns = std::vector<XlsxTable::Column>;

void appendXlsxColumns(XlsxColumns& columns, std::vector<std::string> const& heads, double width) {
  for (auto const& head : heads) columns.push_back({head, width});
}

void writeXlsxNumber(XlsxRows& rows, std::optional<double> number, int style = 0) {
  if (number)
    rows.number(*number, style);
  else
    rows.skip();
}

/// A part of a whole. Conditions do not hold for the word of an infinite one, which is beyond every limit.
void writeXlsxRatio(XlsxRows& rows, std::optional<double> ratio, XlsxStyles const& styles) {
  bool const isInfinite = ratio && std::isinf(*ratio);
  writeXlsxNumber(rows, ratio, styleOf(isInfinite ? styles.exceeded : styles.utilisation));
}

/// Marks the numbers of a column that are greater than `bound`.
void markGreater(lxw_worksheet& sheet, std::size_t column, lxw_row_t lastRow, double bound,
                 XlsxStyles const& styles) {
  lxw_conditional_format condition{};
  condition.type = LXW_CONDITIONAL_TYPE_CELL;
  condition.criteria = LXW_CONDITIONAL_CRITERIA_GREATER_THAN;
  condition.value = bound;
  condition.format = &styles.exceeded;
  auto const at = static_cast<lxw_col_t>(column);
  expectDone(worksheet_conditional_format_range(&sheet, 1, at, lastRow, at, &condition));
}

void filterColumns(lxw_worksheet& sheet, std::size_t columns, lxw_row_t lastRow) {
  expectDone(worksheet_autofilter(&sheet, 0, 0, lastRow, static_cast<lxw_col_t>(columns - 1)));
}

/// Writes the workbook of a table of runs.
class RunTableBook {
 public:
  explicit RunTableBook(RunTable const& table) : m_table(&table), m_styles(m_book) {}

  std::string write(std::size_t mostColumns) {
    writeRuns();
    if (m_table->columns().size() < mostColumns)
      writeValues();
    else
      sayTooManyValues();
    writeStatistics();
    return m_book.save();
  }

 private:
  void writeRuns();
  void writeRun(XlsxRows& rows, StudyRun const& run, std::vector<std::string> const& labels) const;
  void writeValues();
  void sayTooManyValues();
  void writeStatistics();
  void writeStatisticsOf(XlsxTable& rows, RunTableColumn const& column) const;

  RunTable const* m_table;
  XlsxBook m_book;
  XlsxStyles m_styles;
};

void RunTableBook::writeRuns() {
  auto const labels = labelNamesOf(m_table->runs());
  XlsxColumns columns;
  appendXlsxColumns(columns, {tr("Run"), tr("File"), tr("Added")}, s_widthOfTime);
  appendXlsxColumns(columns, labels, s_widthOfText);
  auto const exceeded = columns.size() + 3;
  appendXlsxColumns(columns,
                    {tr("Values"), tr("Compared"), tr("Without data"), tr("Beyond limits"), "NaN",
                     tr("Invalid"), tr("Highest utilisation")},
                    s_widthOfNumber);
  auto const count = columns.size();
  auto const finish = [&](lxw_worksheet& sheet, lxw_row_t lastRow) {
    filterColumns(sheet, count, lastRow);
    for (std::size_t i = exceeded; i + 1 < count; ++i) markGreater(sheet, i, lastRow, 0, m_styles);
    markGreater(sheet, count - 1, lastRow, 1, m_styles);
  };
  XlsxTable rows(m_book, tr("Runs"), std::move(columns), 1, m_styles.head, finish, s_mostXlsxRows);
  for (auto const& run : m_table->runs()) writeRun(rows.nextRow(), run, labels);
  rows.finish();
}

void RunTableBook::writeRun(XlsxRows& rows, StudyRun const& run,
                            std::vector<std::string> const& labels) const {
  for (auto const& text : {run.name, run.file, run.added}) rows.text(text);
  for (auto const& label : labels) rows.text(labelOf(run, label));
  auto const& counts = run.counts;
  for (auto const count : {run.valueCount, counts.compared, counts.withoutData, counts.exceeded,
                           counts.notANumber, counts.invalid})
    rows.number(static_cast<double>(count));
  writeXlsxRatio(rows, run.worst, m_styles);
  rows.endRow();
}

void RunTableBook::writeValues() {
  XlsxColumns columns{{tr("Run"), s_widthOfText}};
  appendXlsxColumns(columns, genColumnNames(*m_table), s_widthOfNumber);
  auto const count = columns.size();
  XlsxTable table(
      m_book, tr("Values"), std::move(columns), 1, m_styles.head,
      [&](lxw_worksheet& sheet, lxw_row_t lastRow) { filterColumns(sheet, count, lastRow); }, s_mostXlsxRows);
  for (std::size_t i = 0; i < m_table->runs().size(); ++i) {
    auto& rows = table.nextRow();
    rows.text(m_table->runs()[i].name);
    for (auto const& column : m_table->columns()) {
      auto const number = m_table->number(i, column);
      auto& style = number.isExceeded ? m_styles.exceeded : m_styles.word;
      if (number.isThere)
        rows.number(number.value, styleOf(style));
      else
        rows.skip();
    }
    rows.endRow();
  }
  table.finish();
}

void RunTableBook::sayTooManyValues() {
  XlsxRows rows(m_book.addSheet(tr("Values")));
  rows.text(
      tr("A sheet has no room for {} values side by side. The form csv has them, and this one with --long.",
         m_table->columns().size()));
  rows.endRow();
  m_book.finish(rows);
}

void RunTableBook::writeStatistics() {
  XlsxColumns columns;
  appendXlsxColumns(columns,
                    {tr("Unit"), tr("Unit id"), tr("Family"), tr("Section"), tr("Group"), tr("Element"),
                     tr("Occurrence"), tr("Quantity"), tr("Measured in")},
                    s_widthOfText);
  auto const share = columns.size() + 6;
  appendXlsxColumns(columns,
                    {tr("Limit"), tr("Runs"), tr("Minimum"), tr("Maximum"), tr("Mean"),
                     tr("Standard deviation"), tr("Share beyond the limit"), tr("Highest utilisation")},
                    s_widthOfNumber);
  auto const count = columns.size();
  auto const finish = [&](lxw_worksheet& sheet, lxw_row_t lastRow) {
    filterColumns(sheet, count, lastRow);
    markGreater(sheet, share, lastRow, 0, m_styles);
    markGreater(sheet, share + 1, lastRow, 1, m_styles);
  };
  XlsxTable rows(m_book, tr("Statistics"), std::move(columns), 6, m_styles.head, finish, s_mostXlsxRows);
  for (auto const& column : m_table->columns()) writeStatisticsOf(rows, column);
  rows.finish();
}

void RunTableBook::writeStatisticsOf(XlsxTable& table, RunTableColumn const& column) const {
  auto const& section = m_table->section(column);
  auto const& element = m_table->element(column);
  auto const& quantity = m_table->quantity(column);
  auto const& statistics = column.statistics;
  auto& rows = table.nextRow();
  for (auto const text :
       {std::string_view(section.unit), std::string_view(section.unitId), familyName(section.family),
        std::string_view(section.name), std::string_view(element.subGroup)})
    rows.spelt(rows.share(text));
  rows.text(element.item);
  rows.number(static_cast<double>(element.occurrence));
  for (auto const& text : {quantity.shownName(), quantity.unit}) rows.spelt(rows.share(text));
  writeXlsxNumber(rows, quantity.limit ? std::optional(quantity.limit->value) : std::nullopt,
                  styleOf(m_styles.word));
  rows.number(static_cast<double>(statistics.count()));
  for (auto const number :
       {statistics.minimum(), statistics.maximum(), statistics.mean(), statistics.standardDeviation()})
    writeXlsxNumber(rows, number, styleOf(m_styles.word));
  writeXlsxRatio(rows, statistics.shareBeyondLimit(), m_styles);
  writeXlsxRatio(rows, column.worst, m_styles);
  rows.endRow();
}

XlsxColumns columnsOfValues() {
  XlsxColumns columns;
  appendXlsxColumns(columns,
                    {tr("Run"), tr("File"), tr("Unit"), tr("Unit id"), tr("Family"), tr("Section"),
                     tr("Group"), tr("Element"), tr("Occurrence"), tr("Valid"), tr("Key"), tr("Quantity")},
                    s_widthOfText);
  appendXlsxColumns(columns,
                    {tr("Value"), tr("Measured in"), tr("Limit"), tr("Beyond the limit"), tr("Step"),
                     tr("Time"), tr("Numbers"), "NaN"},
                    s_widthOfNumber);
  return columns;
}

}  // namespace

std::string renderXlsx(RunTable const& table, std::size_t mostColumns) {
  return RunTableBook(table).write(mostColumns);
}

// ---- value by value

class XlsxRunValues::Book {
 public:
  explicit Book(std::size_t rowsPerSheet)
      : m_styles(m_book),
        m_ofWord(styleOf(m_styles.word)),
        m_exceeded(styleOf(m_styles.exceeded)),
        m_rows(
            m_book, tr("Values"), columnsOfValues(), 1, m_styles.head,
            [](lxw_worksheet& sheet, lxw_row_t lastRow) {
              filterColumns(sheet, columnsOfValues().size(), lastRow);
            },
            rowsPerSheet) {}

  void write(RunValues const& run);
  std::string finish() {
    m_rows.finish();
    return m_book.save();
  }

 private:
  void writeSection(RunSectionValues const& section, std::vector<std::string> const& ofRun);
  void writeCell(XlsxRows& rows, RunCell const& cell, RunQuantity const& quantity,
                 std::string const& unit) const;

  XlsxBook m_book;
  XlsxStyles m_styles;
  int m_ofWord;
  int m_exceeded;
  XlsxTable m_rows;
};

void XlsxRunValues::Book::write(RunValues const& run) {
  std::vector<std::string> const ofRun{m_rows.share(run.run.name), m_rows.share(run.run.file)};
  for (auto const& section : run.sections) writeSection(section, ofRun);
}

void XlsxRunValues::Book::writeSection(RunSectionValues const& section,
                                       std::vector<std::string> const& ofRun) {
  auto ofSection = ofRun;
  for (auto const text : {std::string_view(section.unit), std::string_view(section.unitId),
                          familyName(section.family), std::string_view(section.name)})
    ofSection.push_back(m_rows.share(text));
  std::vector<std::vector<std::string>> ofColumns;
  for (auto const& column : section.columns)
    ofColumns.push_back(
        {m_rows.share(column.key), m_rows.share(column.shownName()), m_rows.share(column.unit)});
  for (auto const& row : section.rows) {
    auto const subGroup = XlsxRows::spell(row.subGroup);
    auto const item = XlsxRows::spell(row.item);
    for (auto const& cell : row.cells) {
      auto& rows = m_rows.nextRow();
      for (auto const& spelt : ofSection) rows.spelt(spelt);
      rows.spelt(subGroup);
      rows.spelt(item);
      rows.number(static_cast<double>(row.occurrence));
      rows.flag(row.isValid, styleOf(m_styles.valid));
      rows.spelt(ofColumns[cell.column][0]);
      rows.spelt(ofColumns[cell.column][1]);
      writeCell(rows, cell, section.columns[cell.column], ofColumns[cell.column][2]);
    }
  }
}

void XlsxRunValues::Book::writeCell(XlsxRows& rows, RunCell const& cell, RunQuantity const& quantity,
                                    std::string const& unit) const {
  auto const& [value, origin, isExceeded] = cell.value;
  if (cell.value.hasData())
    rows.number(value, isExceeded ? m_exceeded : m_ofWord);
  else
    rows.skip();
  rows.spelt(unit);
  writeXlsxNumber(rows, quantity.limit ? std::optional(quantity.limit->value) : std::nullopt, m_ofWord);
  rows.flag(isExceeded, styleOf(m_styles.valid));
  writeXlsxNumber(rows, origin.step ? std::optional(static_cast<double>(*origin.step)) : std::nullopt);
  writeXlsxNumber(rows, origin.companion, m_ofWord);
  rows.number(static_cast<double>(origin.count));
  rows.number(static_cast<double>(origin.nanCount));
  rows.endRow();
}

XlsxRunValues::XlsxRunValues(std::size_t rowsPerSheet) : m_book(std::make_unique<Book>(rowsPerSheet)) {}
XlsxRunValues::~XlsxRunValues() = default;

std::string XlsxRunValues::write(RunValues const& run) {
  m_book->write(run);
  return {};
}

std::string XlsxRunValues::finish() { return m_book->finish(); }

}  // namespace Kestrel::ResultTables

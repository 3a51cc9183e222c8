#include "result_tables/render/XlsxSummary.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

namespace {

class XlsxSummary {
 public:
  XlsxSummary(lxw_worksheet& sheet, XlsxSheets const& sheets)
      : m_sheet(&sheet), m_sheets(&sheets), m_rows(sheet) {}

  void writeTitle();
  void writeFiles(std::vector<TablesFile> const& files);
  void writeCounts(TableCounts const& counts);
  void writeLinks(std::deque<XlsxFamily> const& families, XlsxLimits const* limits);
  void writeHighest(std::vector<UtilisedValue> const& highest, std::deque<XlsxFamily> const& families);
  void finish() { m_sheets->book.finish(m_rows); }

 private:
  void writeHeads(std::vector<std::string> const& heads);
  void writeUtilised(UtilisedValue const& value, XlsxFamily const& family);
  void drawChart(std::size_t first, std::size_t last);

  lxw_worksheet* m_sheet;
  XlsxSheets const* m_sheets;
  XlsxRows m_rows;
};

void XlsxSummary::writeTitle() {
  constexpr double widths[] = {48, 32, 24, 14, 14, 14};
  lxw_col_t column = 0;
  for (auto const width : widths) {
    expectDone(worksheet_set_column(m_sheet, column, column, width, nullptr));
    ++column;
  }
  m_rows.text(tr("Result tables"), styleOf(m_sheets->styles.title));
  m_rows.endRow();
  m_rows.text("result-tables " RESULT_TABLES_VERSION);
  m_rows.endRow();
}

void XlsxSummary::writeHeads(std::vector<std::string> const& heads) {
  m_rows.endRow();
  for (auto const& head : heads) m_rows.text(head, styleOf(m_sheets->styles.head));
  m_rows.endRow();
}

void XlsxSummary::writeFiles(std::vector<TablesFile> const& files) {
  writeHeads({tr("File"), tr("Number of units"), tr("Limits")});
  for (auto const& file : files) {
    m_rows.text(file.name);
    if (file.error) {
      m_rows.skip(2);
      m_rows.text(*file.error);
    } else {
      m_rows.number(static_cast<double>(file.units.size()));
      m_rows.text(file.limits.empty() ? tr("default limits") : file.limits);
    }
    m_rows.endRow();
  }
}

void XlsxSummary::writeCounts(TableCounts const& counts) {
  writeHeads({tr("Found"), tr("Number")});
  std::pair<std::string, std::size_t> const rows[] = {{tr("values beyond their limits"), counts.exceeded},
                                                      {tr("values with NaN"), counts.notANumber},
                                                      {tr("invalid elements"), counts.invalid},
                                                      {tr("values compared"), counts.compared},
                                                      {tr("without data"), counts.withoutData}};
  for (auto const& [what, count] : rows) {
    m_rows.text(what);
    m_rows.number(static_cast<double>(count));
    m_rows.endRow();
  }
}

void XlsxSummary::writeLinks(std::deque<XlsxFamily> const& families, XlsxLimits const* limits) {
  writeHeads({tr("Table"), tr("Rows")});
  for (auto const& family : families) {
    m_rows.link(family.title(), family.begin(), styleOf(m_sheets->styles.link));
    m_rows.number(static_cast<double>(family.countRows()));
    m_rows.endRow();
  }
  if (!limits) return;
  m_rows.link(tr("Limits"), limits->begin(), styleOf(m_sheets->styles.link));
  m_rows.endRow();
}

void XlsxSummary::writeHighest(std::vector<UtilisedValue> const& highest,
                               std::deque<XlsxFamily> const& families) {
  if (highest.empty()) return;
  writeHeads({tr("Highest utilisations"), tr("Quantity"), tr("Measured in"), tr("Value"), tr("Limit"),
              tr("Utilisation")});
  auto const first = m_rows.row();
  for (auto const& value : highest) {
    auto const family =
        std::ranges::find_if(families, [&value](XlsxFamily const& each) { return each.holds(value.table); });
    writeUtilised(value, *family);
  }
  drawChart(first, m_rows.row() - 1);
}

void XlsxSummary::writeUtilised(UtilisedValue const& value, XlsxFamily const& family) {
  auto const& table = m_sheets->tables[value.table];
  auto const& place = value.place;
  auto const& item = table.container().groups[place.group].subGroups[place.subGroup].items[place.item];
  auto const& column = table.columns(place.group)[place.column];
  auto const& styles = m_sheets->styles;
  auto const& row = m_rows.rowNumber();
  m_rows.link(fmt::format("{}, {}, {}", table.unit().getSimulationUnitName(), table.title(), item.name),
              family.cellOf(value), styleOf(styles.link));
  m_rows.text(quantityNameOf(column));
  m_rows.text(column.unit);
  m_rows.number(value.value.value, styleOf(styles.word));
  m_rows.formula(family.limitOf(value), column.limit->value, styleOf(styles.usedLimit));
  m_rows.formula("IFERROR(ABS(D" + row + ")/ABS(E" + row + "),\"inf\")", value.utilisation,
                 styleOf(styles.utilisation));
  m_rows.endRow();
}

void XlsxSummary::drawChart(std::size_t first, std::size_t last) {
  constexpr lxw_col_t labels = 0;
  constexpr lxw_col_t utilisations = 5;
  auto& chart = m_sheets->book.addChart(LXW_CHART_BAR);
  auto* const series = chart_add_series(&chart, nullptr, nullptr);
  auto const from = static_cast<lxw_row_t>(first);
  auto const to = static_cast<lxw_row_t>(last);
  chart_series_set_categories(series, m_sheet->name, from, labels, to, labels);
  chart_series_set_values(series, m_sheet->name, from, utilisations, to, utilisations);
  chart_title_set_name(&chart, tr("Highest utilisations").c_str());
  chart_legend_set_position(&chart, LXW_CHART_LEGEND_NONE);
  chart_axis_set_reverse(chart.y_axis);
  chart_axis_set_num_format(chart.x_axis, "0%");
  chart_axis_set_min(chart.x_axis, 0);
  lxw_chart_options options{};
  options.x_scale = 1.6;
  options.y_scale = 2;
  expectDone(worksheet_insert_chart_opt(m_sheet, 1, utilisations + 2, &chart, &options));
}

}  // namespace

void writeXlsxSummary(lxw_worksheet& sheet, XlsxSheets const& sheets, Tables const& tables,
                      std::deque<XlsxFamily> const& families, XlsxLimits const* limits, XlsxTotals& totals) {
  XlsxSummary summary(sheet, sheets);
  summary.writeTitle();
  summary.writeFiles(tables.files);
  summary.writeCounts(totals.counts);
  summary.writeLinks(families, limits);
  summary.writeHighest(totals.highest.take(), families);
  summary.finish();
}

}  // namespace Kestrel::ResultTables

#include "result_tables/render/XlsxFamily.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "result_tables/base/Translate.h"
#include "result_tables/render/TextLine.h"

namespace Kestrel::ResultTables {

namespace {

/// The rows of a table above one of its items.
std::size_t countRowsAbove(ResultTable const& table, ResultTable::Place const& place) {
  auto const& groups = table.container().groups;
  std::size_t count = place.item;
  for (std::size_t i = 0; i <= place.group && i < groups.size(); ++i) {
    auto const& subGroups = groups[i].subGroups;
    auto const above = i < place.group ? subGroups.size() : place.subGroup;
    for (std::size_t k = 0; k < above; ++k) count += subGroups[k].items.size();
  }
  return count;
}

std::size_t countRowsOf(ResultTable const& table) {
  return countRowsAbove(table, {table.container().groups.size(), 0, 0, 0});
}

/// Bars that are full where all of a limit is taken.
void drawBars(lxw_worksheet& sheet, lxw_col_t column, lxw_row_t lastRow) {
  lxw_conditional_format bars{};
  bars.type = LXW_CONDITIONAL_DATA_BAR;
  bars.data_bar_2010 = LXW_TRUE;
  bars.bar_solid = LXW_TRUE;
  bars.bar_color = 0x9DC3E6;
  bars.min_rule_type = LXW_CONDITIONAL_RULE_TYPE_NUMBER;
  bars.min_value = 0;
  bars.max_rule_type = LXW_CONDITIONAL_RULE_TYPE_NUMBER;
  bars.max_value = 1;
  expectDone(worksheet_conditional_format_range(&sheet, 1, column, lastRow, column, &bars));
}

std::string headOf(TableColumn const& column) {
  auto const& name = quantityNameOf(column);
  return column.unit.empty() ? name : fmt::format("{} [{}]", name, column.unit);
}

}  // namespace

XlsxFamily::XlsxFamily(XlsxSheets const& sheets, std::vector<std::size_t> tables)
    : m_sheets(&sheets),
      m_tables(std::move(tables)),
      m_validColumn(sheets.severalFiles ? 5 : 4),
      m_valid(xlsxColumn(m_validColumn)),
      m_quantities(collectQuantities()),
      m_ofWord(styleOf(sheets.styles.word)),
      m_withNaN(styleOf(sheets.styles.withNaN)),
      m_ofLimit(styleOf(sheets.styles.usedLimit)),
      m_ofUtilisation(styleOf(sheets.styles.utilisation)),
      m_ofValid(styleOf(sheets.styles.valid)),
      m_rows(
          sheets.book, title(), genColumns(), m_validColumn, sheets.styles.head,
          [this](lxw_worksheet& sheet, lxw_row_t lastRow) { finishSheet(sheet, lastRow); },
          sheets.rowsPerSheet),
      m_noData(m_rows.share(s_noData)) {}

std::vector<XlsxFamily::Quantity> XlsxFamily::collectQuantities() const {
  std::vector<Quantity> quantities;
  for (auto const table : m_tables) {
    for (auto const& columns : m_sheets->tables[table].columns()) {
      for (auto const& column : columns) {
        auto found = std::ranges::find(quantities, column.key, &Quantity::key);
        if (found == quantities.end())
          found = quantities.insert(found, {column.key, quantityNameOf(column), headOf(column)});
        found->isLimited |= column.limit.has_value();
      }
    }
  }
  auto next = m_validColumn + 1;
  for (auto& quantity : quantities) {
    quantity.column = next;
    quantity.value = xlsxColumn(next);
    quantity.limit = xlsxColumn(next + 1);
    next += quantity.isLimited ? 3 : 1;
  }
  return quantities;
}

std::vector<XlsxTable::Column> XlsxFamily::genColumns() const {
  constexpr double ofName = 18;
  constexpr double ofNumber = 14;
  std::vector<XlsxTable::Column> columns;
  if (m_sheets->severalFiles) columns.push_back({tr("File"), ofName});
  for (auto& head : {tr("Unit"), tr("Section"), tr("Group"), tr("Element")})
    columns.push_back({head, ofName});
  columns.push_back({tr("Valid"), ofNumber});
  for (auto const& quantity : m_quantities) {
    columns.push_back({quantity.head, ofNumber});
    if (!quantity.isLimited) continue;
    columns.push_back({tr("{}: limit", quantity.name), ofNumber});
    columns.push_back({tr("{}: utilisation", quantity.name), ofNumber});
  }
  return columns;
}

void XlsxFamily::write(XlsxLimits* limits, XlsxTotals& totals) {
  for (auto const table : m_tables) {
    auto& limitsOfTable = m_limits.emplace_back();
    auto const groups = m_sheets->tables[table].container().groups.size();
    for (std::size_t group = 0; group < groups; ++group) {
      auto const section = genSection(table, group, limits);
      limitsOfTable.push_back(section.limits);
      writeSection(section, totals);
    }
  }
  m_rows.finish();
}

std::size_t XlsxFamily::countRows() const {
  std::size_t count = 0;
  for (auto const table : m_tables) count += countRowsOf(m_sheets->tables[table]);
  return count;
}

std::string XlsxFamily::begin() const { return quotedNameOf(*m_rows.sheets().front()) + "!$A$1"; }

std::string XlsxFamily::cellOf(UtilisedValue const& value) const {
  auto const& table = m_sheets->tables[value.table];
  auto row = countRowsAbove(table, value.place);
  for (auto const above : m_tables) {
    if (above < value.table) row += countRowsOf(m_sheets->tables[above]);
  }
  auto const ofSheet = m_sheets->rowsPerSheet - 1;
  auto const& key = table.columns(value.place.group)[value.place.column].key;
  return fmt::format("{}!${}${}", quotedNameOf(*m_rows.sheets()[row / ofSheet]),
                     std::ranges::find(m_quantities, key, &Quantity::key)->value, row % ofSheet + 2);
}

std::string const& XlsxFamily::limitOf(UtilisedValue const& value) const {
  auto const table = std::ranges::lower_bound(m_tables, value.table) - m_tables.begin();
  return m_limits[static_cast<std::size_t>(table)][value.place.group][value.place.column];
}

void XlsxFamily::finishSheet(lxw_worksheet& sheet, lxw_row_t lastRow) const {
  auto const columns = genColumns().size();
  expectDone(worksheet_autofilter(&sheet, 0, 0, lastRow, static_cast<lxw_col_t>(columns - 1)));
  for (auto const& quantity : m_quantities) {
    if (!quantity.isLimited) continue;
    markExceeded(sheet, quantity, lastRow);
    drawBars(sheet, static_cast<lxw_col_t>(quantity.column + 2), lastRow);
  }
}

void XlsxFamily::markExceeded(lxw_worksheet& sheet, Quantity const& quantity, lxw_row_t lastRow) const {
  // A word is greater than every number to a spreadsheet, be it "inf" or "NaN". What is no number counts as
  // 0.
  auto formula = fmt::format(
      "=AND(${valid}2,${limit}2<>\"\",OR(${limit}2=\"-inf\",IF(ISNUMBER(${value}2),ABS(${value}2)>${limit}2,"
      "IF(OR(${value}2=\"inf\",${value}2=\"-inf\"),ISNUMBER(${limit}2),${limit}2<0))))",
      fmt::arg("valid", m_valid), fmt::arg("value", quantity.value), fmt::arg("limit", quantity.limit));
  lxw_conditional_format condition{};
  condition.type = LXW_CONDITIONAL_TYPE_FORMULA;
  condition.value_string = formula.data();
  condition.format = &m_sheets->styles.exceeded;
  auto const column = static_cast<lxw_col_t>(quantity.column);
  expectDone(worksheet_conditional_format_range(&sheet, 1, column, lastRow, column, &condition));
}

XlsxFamily::Section XlsxFamily::genSection(std::size_t table, std::size_t group, XlsxLimits* limits) const {
  auto const& shown = m_sheets->tables[table];
  auto const& columns = shown.columns(group);
  Section section{table, group, {}, {}};
  for (auto const& quantity : m_quantities) {
    auto const found = static_cast<std::size_t>(std::ranges::find(columns, quantity.key, &TableColumn::key) -
                                                columns.begin());
    section.columns.push_back(found < columns.size() ? std::optional(found) : std::nullopt);
  }
  for (auto const& column : columns)
    section.limits.push_back(column.limit ? limits->add(shown, group, column) : std::string());
  return section;
}

void XlsxFamily::writeSection(Section const& section, XlsxTotals& totals) {
  auto const& table = m_sheets->tables[section.table];
  auto const& group = table.container().groups[section.group];
  auto const file = m_sheets->severalFiles ? m_rows.share(table.file()) : std::string();
  auto const unit = m_rows.share(table.unit().getSimulationUnitName());
  auto const name = m_rows.share(group.name);
  for (std::size_t i = 0; i < group.subGroups.size(); ++i) {
    auto const subGroup = m_rows.share(group.subGroups[i].name);
    for (std::size_t k = 0; k < group.subGroups[i].items.size(); ++k) {
      auto& rows = m_rows.nextRow();
      if (m_sheets->severalFiles) rows.spelt(file);
      rows.spelt(unit);
      rows.spelt(name);
      rows.spelt(subGroup);
      rows.text(group.subGroups[i].items[k].name);
      writeValues(rows, section, {section.group, i, k, 0}, totals);
      rows.endRow();
    }
  }
}

void XlsxFamily::writeValues(XlsxRows& rows, Section const& section, ResultTable::Place const& place,
                             XlsxTotals& totals) {
  auto const& table = m_sheets->tables[section.table];
  auto const& item = table.container().groups[place.group].subGroups[place.subGroup].items[place.item];
  bool const isValid = table.isValid(item);
  rows.flag(isValid, m_ofValid);
  auto const values = table.genRow(place.group, place.subGroup, place.item);
  for (std::size_t i = 0; i < m_quantities.size(); ++i) {
    auto const& quantity = m_quantities[i];
    auto const column = section.columns[i];
    if (!column || *column >= values.size()) {
      rows.skip(quantity.isLimited ? 3 : 1);
      continue;
    }
    auto const& value = values[*column];
    writeNumber(rows, value);
    auto const& shown = table.columns(section.group)[*column];
    if (!shown.limit) {
      rows.skip(quantity.isLimited ? 2 : 0);
      continue;
    }
    writeLimit(rows, quantity, section.limits[*column], *shown.limit, value, isValid);
    totals.counts.addLimited(value, isValid);
    if (auto const utilisation = utilisationOf(value, shown.limit, isValid)) {
      totals.highest.add(
          {*utilisation, section.table, {place.group, place.subGroup, place.item, *column}, value});
    }
  }
}

void XlsxFamily::writeNumber(XlsxRows& rows, TableValue const& value) const {
  if (!value.hasData()) {
    rows.spelt(m_noData, m_ofWord);
  } else if (value.isNaN() || !std::isfinite(value.value)) {
    rows.number(value.isNaN() ? std::numeric_limits<double>::quiet_NaN() : value.value, m_ofWord);
  } else {
    rows.number(value.value, value.origin.nanCount > 0 ? m_withNaN : 0);
  }
}

void XlsxFamily::writeLimit(XlsxRows& rows, Quantity const& quantity, std::string const& cell,
                            ColumnLimit const& limit, TableValue const& value, bool isValid) {
  rows.formula(cell, limit.value, m_ofLimit);
  auto const& row = rows.rowNumber();
  m_formula = "IF(";
  m_formula.append(m_valid).append(row).append(",IFERROR(ABS(");
  m_formula.append(quantity.value).append(row).append(")/ABS(");
  m_formula.append(quantity.limit).append(row).append("),\"\"),\"\")");
  double const utilisation = std::abs(value.value) / std::abs(limit.value);
  bool const isShown = isValid && value.origin.count > 0 && std::isfinite(limit.value);
  if (isShown && std::isfinite(utilisation)) {
    rows.formula(m_formula, utilisation, m_ofUtilisation);
  } else {
    rows.formulaOfNothing(m_formula, m_ofUtilisation);
  }
}

}  // namespace Kestrel::ResultTables

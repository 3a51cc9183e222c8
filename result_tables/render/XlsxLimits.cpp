#include "result_tables/render/XlsxLimits.h"

#include <vector>

#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

namespace {

std::vector<XlsxTable::Column> columnsOfLimits(bool severalFiles) {
  std::vector<XlsxTable::Column> columns;
  if (severalFiles) columns.push_back({tr("File"), 24});
  columns.push_back({tr("Unit"), 20});
  columns.push_back({tr("Unit's id"), 38});
  for (auto& head : {tr("Family"), tr("Section"), tr("Quantity"), tr("Measured in")})
    columns.push_back({head, 20});
  columns.push_back({tr("Limit"), 14});
  return columns;
}

}  // namespace

std::string const& quantityNameOf(TableColumn const& column) {
  return column.tableDisplayName.empty() ? column.key : column.tableDisplayName;
}

XlsxLimits::XlsxLimits(XlsxBook& book, XlsxStyles& styles, bool severalFiles, std::size_t rowsPerSheet)
    : m_severalFiles(severalFiles),
      m_ofLimit(styleOf(styles.limit)),
      m_table(
          book, tr("Limits"), columnsOfLimits(severalFiles), 0, styles.head, [](lxw_worksheet&, lxw_row_t) {},
          rowsPerSheet) {}

std::string XlsxLimits::add(ResultTable const& table, std::size_t group, TableColumn const& column) {
  auto& rows = m_table.nextRow();
  if (m_severalFiles) rows.text(table.file());
  rows.text(table.unit().getSimulationUnitName());
  rows.text(table.container().simulationUnitId.toString());
  rows.text(table.title());
  rows.text(table.container().groups[group].name);
  rows.text(quantityNameOf(column));
  rows.text(column.limit->unit);
  auto cell = quotedNameOf(m_table.sheet()) + "!$" + xlsxColumn(rows.column()) + "$" + rows.rowNumber();
  rows.number(column.limit->value, m_ofLimit);
  rows.endRow();
  return cell;
}

}  // namespace Kestrel::ResultTables

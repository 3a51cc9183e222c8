#include "result_tables/render/XlsxTables.h"

#include <algorithm>
#include <deque>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "result_tables/base/Translate.h"
#include "result_tables/render/XlsxSummary.h"
#include "result_tables/tables/Findings.h"

namespace Kestrel::ResultTables {

namespace {

constexpr std::size_t s_highest = 20;

bool hasLimits(std::vector<ResultTable> const& tables) {
  return std::ranges::any_of(tables, [](ResultTable const& table) {
    return std::ranges::any_of(table.columns(), [](std::vector<TableColumn> const& columns) {
      return std::ranges::any_of(columns, [](TableColumn const& column) { return column.limit.has_value(); });
    });
  });
}

/// The sheets of the families by number.
void addFamilies(std::deque<XlsxFamily>& families, XlsxSheets const& sheets) {
  std::map<MaxValueGroupContainer::DataType, std::vector<std::size_t>> tables;
  for (std::size_t i = 0; i < sheets.tables.size(); ++i)
    tables[sheets.tables[i].container().dataType].push_back(i);
  for (auto& [dataType, ofFamily] : tables) families.emplace_back(sheets, std::move(ofFamily));
}

}  // namespace

std::string renderXlsx(Tables const& tables, std::size_t rowsPerSheet) {
  XlsxBook book;
  XlsxStyles styles(book);
  XlsxSheets const sheets{book, styles, tables.tables, tables.files.size() > 1, rowsPerSheet};
  auto& summary = book.addSheet(tr("Summary"));
  std::optional<XlsxLimits> limits;
  if (hasLimits(tables.tables)) limits.emplace(book, styles, sheets.severalFiles, rowsPerSheet);
  std::deque<XlsxFamily> families;
  addFamilies(families, sheets);

  XlsxTotals totals{.highest = HighestUtilisations(s_highest)};
  for (auto const& table : tables.tables) totals.counts.invalid += findInvalidItems(table).size();
  auto* const written = limits ? &*limits : nullptr;
  for (auto& family : families) family.write(written, totals);
  if (limits) limits->finish();
  writeXlsxSummary(summary, sheets, tables, families, written, totals);
  return book.save();
}

}  // namespace Kestrel::ResultTables

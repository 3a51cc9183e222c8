#include "result_tables/render/CsvRunValues.h"

#include <vector>

#include "result_tables/base/Family.h"
#include "result_tables/base/Text.h"

namespace Kestrel::ResultTables {

/// The fields that stand for a column on both sides of the value.
struct CsvRunValues::Column {
  std::string name;
  std::string unitAndLimit;
};

CsvRunValues::CsvRunValues(CsvDialect const& dialect) : m_csv(dialect) {
  m_csv.record({"run",   "file",       "unit",  "unitId", "family", "group", "subGroup",
                "item",  "occurrence", "valid", "key",    "column", "value", "valueUnit",
                "limit", "exceeded",   "step",  "time",   "count",  "nans"});
}

std::string CsvRunValues::write(RunValues const& run) {
  auto const ofRun = m_csv.spell({run.run.name, run.run.file});
  for (auto const& section : run.sections) writeSection(section, ofRun);
  return m_csv.take();
}

void CsvRunValues::writeSection(RunSectionValues const& section, std::string const& ofRun) {
  auto const ofSection =
      ofRun + m_csv.spell({section.unit, section.unitId, familyName(section.family), section.name});
  std::vector<Column> columns;
  for (auto const& column : section.columns) {
    CsvWriter limit(m_csv.dialect());
    limit.text(column.unit);
    limit.number(column.limit ? std::optional(column.limit->value) : std::nullopt);
    columns.push_back({m_csv.spell({column.key, column.name()}), limit.take()});
  }
  for (auto const& row : section.rows) {
    auto const ofRow = ofSection + m_csv.spell({row.subGroup, row.item, std::to_string(row.occurrence),
                                                row.isValid ? "true" : "false"});
    for (auto const& cell : row.cells) {
      m_csv.spelt(ofRow);
      writeCell(cell, columns[cell.column]);
    }
  }
}

void CsvRunValues::writeCell(RunCell const& cell, Column const& column) {
  auto const& [value, origin, isExceeded] = cell.value;
  m_csv.spelt(column.name);
  m_csv.number(value);
  m_csv.spelt(column.unitAndLimit);
  m_csv.flag(isExceeded);
  m_csv.integer(origin.step);
  m_csv.number(origin.companion);
  m_csv.integer(origin.count);
  m_csv.integer(origin.nanCount);
  m_csv.endRecord();
}

}  // namespace Kestrel::ResultTables

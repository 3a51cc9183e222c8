#include "result_tables/render/CsvTables.h"

#include <string_view>

#include "result_tables/base/Family.h"

namespace Kestrel::ResultTables {

namespace {

/// The fields of a record that stand in it for its column, on both sides of the value.
struct ColumnFields {
  std::string name;
  std::string unitAndLimit;
};

class CsvTables {
 public:
  explicit CsvTables(CsvDialect const& dialect) : m_csv(dialect) {
    m_csv.record({"file", "unit", "unitId", "family", "group", "subGroup", "item", "valid", "key", "column",
                  "value", "valueUnit", "limit", "exceeded", "step", "time", "count", "nans"});
  }

  void append(ResultTable const& table);

  [[nodiscard]] std::string take() { return m_csv.take(); }

 private:
  [[nodiscard]] std::vector<ColumnFields> spellColumns(std::vector<TableColumn> const& columns) const;
  void appendItem(ResultTable const& table, ResultTable::Place const& place, std::string_view above,
                  std::vector<ColumnFields> const& columns);
  void appendValue(TableValue const& value, ColumnFields const& column);

  CsvWriter m_csv;
};

void CsvTables::append(ResultTable const& table) {
  auto const& container = table.container();
  auto const ofTable = m_csv.spell({table.file(), table.unit().getSimulationUnitName(),
                                    container.simulationUnitId.toString(), familyName(container.dataType)});
  for (std::size_t i = 0; i < container.groups.size(); ++i) {
    auto const& group = container.groups[i];
    auto const columns = spellColumns(table.columns(i));
    for (std::size_t k = 0; k < group.subGroups.size(); ++k) {
      auto const above = ofTable + m_csv.spell({group.name, group.subGroups[k].name});
      for (std::size_t m = 0; m < group.subGroups[k].items.size(); ++m)
        appendItem(table, {i, k, m, 0}, above, columns);
    }
  }
}

std::vector<ColumnFields> CsvTables::spellColumns(std::vector<TableColumn> const& columns) const {
  std::vector<ColumnFields> spelt;
  for (auto const& column : columns) {
    CsvWriter limit(m_csv.dialect());
    limit.text(column.unit);
    limit.number(column.limit ? std::optional(column.limit->value) : std::nullopt);
    spelt.push_back({m_csv.spell({column.key, column.tableDisplayName}), limit.take()});
  }
  return spelt;
}

void CsvTables::appendItem(ResultTable const& table, ResultTable::Place const& place, std::string_view above,
                           std::vector<ColumnFields> const& columns) {
  auto const& item = table.container().groups[place.group].subGroups[place.subGroup].items[place.item];
  auto const ofItem = m_csv.spell({item.name, table.isValid(item) ? "true" : "false"});
  auto const row = table.genRow(place.group, place.subGroup, place.item);
  for (std::size_t i = 0; i < row.size(); ++i) {
    m_csv.spelt(above);
    m_csv.spelt(ofItem);
    appendValue(row[i], columns[i]);
  }
}

void CsvTables::appendValue(TableValue const& value, ColumnFields const& column) {
  m_csv.spelt(column.name);
  m_csv.number(value.value);
  m_csv.spelt(column.unitAndLimit);
  m_csv.flag(value.isExceeded);
  m_csv.integer(value.origin.step);
  m_csv.number(value.origin.companion);
  m_csv.integer(value.origin.count);
  m_csv.integer(value.origin.nanCount);
  m_csv.endRecord();
}

}  // namespace

std::string renderCsv(std::vector<ResultTable> const& tables, CsvDialect const& dialect) {
  CsvTables csv(dialect);
  for (auto const& table : tables) csv.append(table);
  return csv.take();
}

}  // namespace Kestrel::ResultTables

#include "result_tables/render/CsvDifferences.h"

#include "result_tables/render/CsvWriter.h"

namespace Kestrel::ResultTables {

namespace {

class DifferenceRecords {
 public:
  explicit DifferenceRecords(CsvDialect const& dialect) : m_csv(dialect) {
    m_csv.record({"unit", "unitId", "family", "group", "subGroup", "item", "key", "column", "kind", "before",
                  "after", "change", "relative", "validBefore", "validAfter", "exceededBefore",
                  "exceededAfter"});
  }

  void append(TableDifferences const& table) {
    auto const ofTable = m_csv.spell({table.unit, table.unitId, table.family});
    for (auto const& row : table.rows) {
      if (row.values.empty()) continue;
      auto const ofRow = ofTable + m_csv.spell({row.group, row.subGroup, row.item});
      for (auto const& value : row.values) append(ofRow, value);
    }
  }

  [[nodiscard]] std::string take() { return m_csv.take(); }

 private:
  void append(std::string_view ofRow, ValueDifference const& value) {
    m_csv.spelt(ofRow);
    m_csv.text(value.column->key);
    m_csv.text(value.column->tableDisplayName);
    m_csv.text(nameOf(value.kind));
    number(value.before);
    number(value.after);
    m_csv.number(value.change());
    m_csv.number(value.relativeChange());
    for (auto const flag : {&ComparedValue::isValid, &ComparedValue::isExceeded}) {
      flagOf(value.before, flag);
      flagOf(value.after, flag);
    }
    m_csv.endRecord();
  }

  void number(std::optional<ComparedValue> const& value) {
    m_csv.number(value ? std::optional(value->value) : std::nullopt);
  }
  void flagOf(std::optional<ComparedValue> const& value, bool ComparedValue::*flag) {
    value ? m_csv.flag(*value.*flag) : m_csv.empty();
  }

  CsvWriter m_csv;
};

}  // namespace

std::string renderCsv(ResultDifferences const& differences, CsvDialect const& dialect) {
  DifferenceRecords records(dialect);
  for (auto const& table : differences.tables) records.append(table);
  return records.take();
}

}  // namespace Kestrel::ResultTables

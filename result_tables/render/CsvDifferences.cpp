#include "result_tables/render/CsvDifferences.h"

#include "result_tables/base/Text.h"
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
    auto const unit = toValidUtf8(table.unit);
    for (auto const& row : table.rows) {
      for (auto const& value : row.values) append(table, unit, row, value);
    }
  }

  [[nodiscard]] std::string take() { return m_csv.take(); }

 private:
  void append(TableDifferences const& table, std::string_view unit, RowDifferences const& row,
              ValueDifference const& value) {
    m_csv.record({unit, table.unitId, table.family, toValidUtf8(row.group), toValidUtf8(row.subGroup),
                  toValidUtf8(row.item), toValidUtf8(value.column->key),
                  toValidUtf8(value.column->tableDisplayName), nameOf(value.kind), numberOf(value.before),
                  numberOf(value.after), textOf(value.change()), textOf(value.relativeChange()),
                  flagOf(value.before, &ComparedValue::isValid), flagOf(value.after, &ComparedValue::isValid),
                  flagOf(value.before, &ComparedValue::isExceeded),
                  flagOf(value.after, &ComparedValue::isExceeded)});
  }

  [[nodiscard]] std::string textOf(std::optional<double> number) const {
    return number ? m_csv.number(*number) : std::string();
  }
  [[nodiscard]] std::string numberOf(std::optional<ComparedValue> const& value) const {
    return value ? m_csv.number(value->value) : std::string();
  }
  static std::string_view flagOf(std::optional<ComparedValue> const& value, bool ComparedValue::*flag) {
    if (!value) return {};
    return *value.*flag ? "true" : "false";
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

#include "result_tables/render/CsvWorstValues.h"

namespace Kestrel::ResultTables {

std::string renderCsv(WorstValues const& values, CsvDialect const& dialect) {
  CsvWriter csv(dialect);
  csv.record({"run", "file", "unit", "unitId", "family", "group", "subGroup", "item", "key", "column",
              "value", "valueUnit", "limit", "utilisation", "step", "time"});
  for (auto const& worst : values) {
    for (std::string_view const text :
         {std::string_view(worst.run), std::string_view(worst.file), std::string_view(worst.unit),
          std::string_view(worst.unitId), worst.family, std::string_view(worst.group),
          std::string_view(worst.subGroup), std::string_view(worst.item), std::string_view(worst.column.key),
          std::string_view(worst.column.tableDisplayName)})
      csv.text(text);
    csv.number(worst.value.value);
    csv.text(worst.column.unit);
    csv.number(worst.column.limit->value);
    csv.number(worst.utilisation);
    csv.integer(worst.value.origin.step);
    csv.number(worst.value.origin.companion);
    csv.endRecord();
  }
  return csv.take();
}

}  // namespace Kestrel::ResultTables

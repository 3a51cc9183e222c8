#include "result_tables/render/CsvRunTable.h"

#include "result_tables/base/Family.h"
#include "result_tables/render/RunTableTexts.h"

namespace Kestrel::ResultTables {

std::string renderCsv(RunTable const& table, CsvDialect const& dialect) {
  CsvWriter csv(dialect);
  auto const labels = labelNamesOf(table.runs());
  for (auto const& label : labels) csv.text("label/" + label);
  for (auto const* const name : {"run", "file", "added"}) csv.text(name);
  for (auto const& name : genColumnNames(table)) csv.text(name);
  csv.endRecord();
  for (std::size_t i = 0; i < table.runs().size(); ++i) {
    auto const& run = table.runs()[i];
    for (auto const& label : labels) csv.text(labelOf(run, label));
    for (auto const& text : {run.name, run.file, run.added}) csv.text(text);
    for (auto const& column : table.columns()) {
      auto const number = table.number(i, column);
      csv.number(number.isThere ? std::optional(number.value) : std::nullopt);
    }
    csv.endRecord();
  }
  return csv.take();
}

std::string renderStatisticsAsCsv(RunTable const& table, CsvDialect const& dialect) {
  CsvWriter csv(dialect);
  csv.record({"unit", "unitId", "family", "group", "subGroup", "item", "occurrence", "key", "column",
              "valueUnit", "limit", "count", "minimum", "maximum", "mean", "standardDeviation",
              "shareBeyondLimit", "worstUtilisation"});
  for (auto const& column : table.columns()) {
    auto const& section = table.section(column);
    auto const& element = table.element(column);
    auto const& quantity = table.quantity(column);
    for (auto const text :
         {std::string_view(section.unit), std::string_view(section.unitId), familyName(section.family),
          std::string_view(section.name), std::string_view(element.subGroup), std::string_view(element.item)})
      csv.text(text);
    csv.integer(element.occurrence);
    for (auto const& text : {quantity.key, quantity.name(), quantity.unit}) csv.text(text);
    csv.number(quantity.limit ? std::optional(quantity.limit->value) : std::nullopt);
    auto const& statistics = column.statistics;
    csv.integer(statistics.count());
    for (auto const number : {statistics.minimum(), statistics.maximum(), statistics.mean(),
                              statistics.standardDeviation(), statistics.shareBeyondLimit(), column.worst})
      csv.number(number);
    csv.endRecord();
  }
  return csv.take();
}

}  // namespace Kestrel::ResultTables

#include "result_tables/render/JunitDifferences.h"

#include <fmt/format.h>

#include "result_tables/render/JunitReport.h"
#include "result_tables/render/TextDifferences.h"

namespace Kestrel::ResultTables {

namespace {

std::string linesOf(RowDifferences const& row) {
  std::string lines;
  for (auto const& value : row.values)
    lines += (lines.empty() ? "" : "\n") + differenceLine(value, TextStyle().digits);
  return lines;
}

void addTable(JunitReport& report, TableDifferences const& table) {
  for (auto const& row : table.rows) {
    auto const name = fmt::format("{}, {}", table.family, rowLine(row));
    row.values.empty() ? report.addPassed(table.unit, name)
                       : report.addFailed(table.unit, name, linesOf(row));
  }
}

}  // namespace

std::string renderDifferencesAsJunit(ResultDifferences const& differences) {
  JunitReport report;
  report.beginSuite(fmt::format("{} → {}", differences.before, differences.after));
  for (auto const& [file, message] : differences.errors) report.addError(file, "read", message);
  for (auto const& table : differences.tables) addTable(report, table);
  return report.text();
}

}  // namespace Kestrel::ResultTables

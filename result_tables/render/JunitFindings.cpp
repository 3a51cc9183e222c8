#include "result_tables/render/JunitFindings.h"

#include "result_tables/base/Translate.h"
#include "result_tables/render/JunitReport.h"
#include "result_tables/render/TextFindings.h"

namespace Kestrel::ResultTables {

namespace {

void addInvalidItem(JunitReport& report, TableFindings const& table, InvalidItem const& invalid) {
  auto const finding = table.findingOf(invalid);
  report.addFailed(table.unit, placeLine(table, finding.place),
                   findingLine(table, finding, TextStyle().digits));
}

void addValue(JunitReport& report, TableFindings const& table, CheckedValue const& value) {
  auto const name = placeLine(table, table.placeOf(value));
  std::string lines;
  table.forEachFindingOf(value, [&](Finding const& finding) {
    lines += (lines.empty() ? "" : "\n") + findingLine(table, finding, TextStyle().digits);
  });
  if (!lines.empty())
    report.addFailed(table.unit, name, lines);
  else if (!value.isValid)
    report.addSkipped(table.unit, name, tr("not valid"));
  else if (value.isWithoutData())
    report.addSkipped(table.unit, name, tr("without data"));
  else
    report.addPassed(table.unit, name);
}

void addFile(JunitReport& report, FileFindings const& file) {
  report.beginSuite(file.file);
  if (file.error) report.addError(file.file, "read", *file.error);
  for (auto const& table : file.tables) {
    for (auto const& invalid : table.invalidItems) addInvalidItem(report, table, invalid);
    for (auto const& value : table.values) addValue(report, table, value);
  }
}

}  // namespace

std::string renderFindingsAsJunit(std::vector<FileFindings> const& files) {
  JunitReport report;
  for (auto const& file : files) addFile(report, file);
  return report.text();
}

}  // namespace Kestrel::ResultTables

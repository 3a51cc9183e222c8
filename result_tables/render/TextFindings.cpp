#include "result_tables/render/TextFindings.h"

#include <fmt/format.h>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/Ansi.h"

namespace Kestrel::ResultTables {

namespace {

std::string withUnit(double value, std::string const& unit) {
  return unit.empty() ? shortestForm(value) : shortestForm(value) + " " + unit;
}

}  // namespace

std::string findingLine(TableFindings const& table, Finding const& finding) {
  auto line = table.unit + ", " + table.family;
  auto const append = [&line](std::string const& part) {
    if (!part.empty()) line += ", " + part;
  };
  append(finding.group);
  append(finding.subGroup);
  append(finding.item);
  if (finding.exceeded) {
    auto const& [column, value, limit] = *finding.exceeded;
    append(column);
    line += fmt::format(": {}, {} {}", withUnit(value, limit.unit), tr("limit"),
                        withUnit(limit.value, limit.unit));
  } else {
    line += ": " + table.invalidValuesText;
  }
  return toPrintable(line);
}

std::string renderFindingsAsText(std::vector<FileFindings> const& files, TextStyle const& style) {
  std::string out;
  std::size_t exceeded = 0;
  std::size_t invalid = 0;
  for (auto const& file : files) {
    for (auto const& table : file.tables) {
      for (auto const& finding : table.findings) {
        ++(finding.exceeded ? exceeded : invalid);
        auto const line = findingLine(table, finding);
        auto const prefix = files.size() > 1 ? toPrintable(file.file) + ": " : std::string();
        out += prefix + red(line, style.colour) + '\n';
      }
    }
  }
  return out + fmt::format("{}: {}, {}: {}\n", tr("values beyond their limits"), exceeded,
                           tr("invalid elements"), invalid);
}

}  // namespace Kestrel::ResultTables

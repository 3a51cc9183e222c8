#include "result_tables/render/TextFindings.h"

#include <fmt/format.h>

#include <map>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/Ansi.h"
#include "result_tables/render/TextLine.h"
#include "result_tables/render/TextSummary.h"

namespace Kestrel::ResultTables {

namespace {

/// "-500.5 N, limit 500 N, step 3, time 0.2"
std::string describeValue(Finding const& finding, int digits) {
  auto const& value = *finding.value;
  auto const& limit = *finding.place.column->limit;
  std::string text = value.count > 0      ? withUnit(value.value, finding.place.column->unit, digits)
                     : value.nanCount > 0 ? "NaN"
                                          : std::string(s_noData);
  text += fmt::format(", {} {}", tr("limit"), withUnit(limit.value, limit.unit, digits));
  if (value.step) text += fmt::format(", {} {}", tr("step"), *value.step);
  if (value.time) text += fmt::format(", {} {}", tr("time"), formatNumber(*value.time, digits));
  if (finding.kind == FindingKind::notANumber)
    text += ", " + tr("{} of {} values are not numbers", value.nanCount, value.count + value.nanCount);
  return text;
}

void appendFile(std::string& out, FileFindings const& file, std::string const& prefix, TextStyle const& style,
                std::map<FindingKind, std::size_t>& counts) {
  for (auto const& table : file.tables) {
    table.forEachFinding([&](Finding const& finding) {
      ++counts[finding.kind];
      out += prefix + red(findingLine(table, finding, style.digits), style.colour) + '\n';
    });
  }
  if (file.error)
    out += fmt::format("{}: {}\n", toPrintable(file.file), red(tr("could not be checked"), style.colour));
}

}  // namespace

std::string placeLine(TableFindings const& table, NamedPlace const& place) {
  auto line = std::string(table.family);
  auto const append = [&line](std::string_view part) {
    if (!part.empty()) line.append(", ").append(part);
  };
  append(place.group);
  append(place.subGroup);
  append(place.item);
  if (place.column != nullptr) append(place.column->shownName());
  return toPrintable(line);
}

std::string findingLine(TableFindings const& table, Finding const& finding, int digits) {
  auto const what =
      finding.value == nullptr ? table.container->invalidValuesText : describeValue(finding, digits);
  return fmt::format("{}, {}: {}", toPrintable(table.unit), placeLine(table, finding.place),
                     toPrintable(what));
}

std::string renderFindingsAsText(std::vector<FileFindings> const& files, TextStyle const& style) {
  std::string out;
  std::map<FindingKind, std::size_t> counts;
  std::size_t compared = 0;
  std::size_t withoutData = 0;
  for (auto const& file : files) {
    appendFile(out, file, files.size() > 1 ? toPrintable(file.file) + ": " : std::string(), style, counts);
    compared += file.countCompared();
    withoutData += file.countWithoutData();
  }
  return out +
         countsText({.exceeded = counts[FindingKind::exceeded],
                     .notANumber = counts[FindingKind::notANumber],
                     .invalid = counts[FindingKind::invalid],
                     .compared = compared,
                     .withoutData = withoutData}) +
         '\n';
}

}  // namespace Kestrel::ResultTables

#include "result_tables/render/TextSummary.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <string_view>
#include <utility>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/Ansi.h"
#include "result_tables/render/SeriesTexts.h"
#include "result_tables/render/TextLine.h"
#include "result_tables/tables/Series.h"

namespace Kestrel::ResultTables {

namespace {

/// Of the section that has the most.
std::size_t countElements(ResultTable const& table) {
  std::size_t most = 0;
  for (auto const& group : table.container().groups) {
    std::size_t count = 0;
    for (auto const& subGroup : group.subGroups) count += subGroup.items.size();
    most = std::max(most, count);
  }
  return most;
}

/// The families that have elements, and how many.
std::string elementsText(std::span<ResultTable const> tables) {
  std::string families;
  for (auto const& table : tables) {
    auto const count = countElements(table);
    if (count == 0) continue;
    if (!families.empty()) families += ", ";
    families += fmt::format("{} {}", toPrintable(table.title()), count);
  }
  return families.empty() ? tr("no elements") : tr("elements") + ": " + families;
}

class SummaryText {
 public:
  SummaryText(std::vector<ResultTable> const& tables, TextStyle const& style)
      : m_tables(tables), m_style(style), m_summary(genSummary(tables, s_listedUtilisations)) {
    m_hasFiles = std::any_of(tables.begin(), tables.end(),
                             [&](ResultTable const& table) { return table.file() != tables.front().file(); });
  }

  std::string write() && {
    appendLine(m_out, bold(tr("Summary"), m_style.colour));
    for (std::size_t first = 0, behind = 0; first < m_tables.size(); first = behind) {
      for (behind = first + 1; behind < m_tables.size() && areOfOneUnit(first, behind);) ++behind;
      appendUnit(first, behind);
    }
    appendHighest();
    return std::move(m_out);
  }

 private:
  /// A value that takes much of its limit, in words.
  struct Line {
    std::string percent;
    std::string value;
    std::string place;
    bool isExceeded;
  };

  [[nodiscard]] bool areOfOneUnit(std::size_t one, std::size_t other) const {
    return &m_tables[one].unit() == &m_tables[other].unit();
  }
  /// What stands before a unit; empty where all are of one file.
  [[nodiscard]] std::string fileOf(ResultTable const& table) const {
    return m_hasFiles ? toPrintable(table.file()) + ": " : std::string();
  }

  void appendUnit(std::size_t first, std::size_t behind);
  void appendHighest();
  [[nodiscard]] Line lineOf(UtilisedValue const& highest) const;
  void appendLineOf(Line const& line, std::size_t percentWidth, std::size_t valueWidth);

  std::vector<ResultTable> const& m_tables;
  TextStyle const& m_style;
  Summary m_summary;
  bool m_hasFiles;  ///< more than one
  std::string m_out;
};

void SummaryText::appendUnit(std::size_t first, std::size_t behind) {
  TableCounts counts;
  for (auto i = first; i < behind; ++i) counts.add(m_summary.ofTables[i]);
  auto const& table = m_tables[first];
  appendLine(m_out, "\n  " + fileOf(table) + toPrintable(table.unit().getSimulationUnitName()));
  appendWrapped(m_out, 4, elementsText(std::span(m_tables).subspan(first, behind - first)), m_style.width);
  appendWrapped(m_out, 4, countsText(counts), m_style.width);
}

void SummaryText::appendHighest() {
  if (m_summary.highest.empty()) return;
  appendLine(m_out, "\n  " + tr("Highest utilisations"));
  std::vector<Line> lines;
  std::size_t percentWidth = 0;
  std::size_t valueWidth = 0;
  for (auto const& highest : m_summary.highest) {
    auto const& line = lines.emplace_back(lineOf(highest));
    percentWidth = std::max(percentWidth, line.percent.size());
    valueWidth = std::max(valueWidth, displayWidth(line.value));
  }
  for (auto const& line : lines) appendLineOf(line, percentWidth, valueWidth);
}

SummaryText::Line SummaryText::lineOf(UtilisedValue const& highest) const {
  auto const& table = m_tables[highest.table];
  auto const series = genTableSeries(table, highest.place);
  return {formatNumber(highest.utilisation * 100, 4) + " %",
          withUnit(series.value, series.column.unit, m_style.digits), fileOf(table) + placeText(series),
          series.isExceeded};
}

/// With the place beside the numbers, on as many lines as it needs.
void SummaryText::appendLineOf(Line const& line, std::size_t percentWidth, std::size_t valueWidth) {
  auto const numbers =
      fmt::format("    {:>{}} {}{}{}", line.percent, percentWidth, line.isExceeded ? '!' : ' ',
                  std::string(s_gap.size() + valueWidth - displayWidth(line.value), ' '), line.value);
  auto const indentation = displayWidth(numbers) + s_gap.size();
  std::string place;
  appendWrapped(place, indentation, line.place, m_style.width);
  place.erase(0, indentation);
  m_out += red(numbers, m_style.colour && line.isExceeded).append(s_gap).append(place);
}

}  // namespace

std::string renderSummaryAsText(std::vector<ResultTable> const& tables, TextStyle const& style) {
  return SummaryText(tables, style).write();
}

std::string countsText(TableCounts const& counts) {
  return fmt::format("{}: {}, {}: {}, {}: {}, {}: {}, {}: {}", tr("values beyond their limits"),
                     counts.exceeded, tr("values with NaN"), counts.notANumber, tr("invalid elements"),
                     counts.invalid, tr("values compared"), counts.compared, tr("without data"),
                     counts.withoutData);
}

}  // namespace Kestrel::ResultTables

#include "result_tables/render/HtmlDifferences.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/DifferenceTexts.h"
#include "result_tables/render/HtmlPage.h"
#include "result_tables/render/HtmlSummary.h"
#include "result_tables/render/HtmlWriter.h"
#include "result_tables/render/TextLine.h"

namespace Kestrel::ResultTables {

namespace {

using Rows = std::span<RowDifferences const>;

bool hasValues(RowDifferences const& row) { return !row.values.empty(); }

bool crossedLimit(ValueDifference const& difference) {
  return difference.wentBeyondLimit() || difference.cameBackWithinLimit();
}

// ---- numbers, as attributes have them and as people read them

std::string plainNumber(std::optional<double> number) { return number ? shortestForm(*number) : "-"; }

std::string plainValue(std::optional<ComparedValue> const& value) {
  if (hasNumber(value)) return shortestForm(value->value);
  return value && value->nanCount > 0 ? "nan" : "-";
}

/// Empty where the file does not have the value.
std::string shownValue(std::optional<ComparedValue> const& value, int digits) {
  if (!value) return {};
  if (hasNumber(value)) return numberInHtml(value->value, digits);
  return value->nanCount > 0 ? "NaN" : std::string(s_noData);
}

std::string shownNumber(std::optional<double> number, int digits) {
  return number ? (*number > 0 ? "+" : "") + numberInHtml(*number, digits) : std::string();
}

std::string shownPercent(std::optional<double> ratio, int digits) {
  if (!ratio) return {};
  return shownNumber(*ratio * 100, std::min(digits, s_digitsOfPercent)) + " %";
}

/// Writes the tables of differences.
class DifferencesWriter {
 public:
  DifferencesWriter(HtmlWriter& html, TextStyle const& style) : m_html(html), m_digits(style.digits) {}

  void write(std::vector<TableDifferences> const& tables);

 private:
  void writeFamily(TableDifferences const& table);
  void writeSection(TableDifferences const& table, Rows rows, std::string const& family);
  void writeHead();
  void writeRow(RowDifferences const& row, ValueDifference const& difference);
  void writeValue(std::optional<ComparedValue> const& value, std::string_view crossing = {},
                  std::string_view arrow = {}, std::string const& meaning = {});
  void writeAfter(ValueDifference const& difference);

  HtmlWriter& m_html;
  int m_digits;
  std::size_t m_families = 0;
  std::size_t m_sections = 0;
  bool m_hasGroups = false;   ///< whether elements of the section stand in a sub-group
  bool m_hasRemarks = false;  ///< whether there is more to say of its values than numbers
};

void DifferencesWriter::write(std::vector<TableDifferences> const& tables) {
  TableDifferences const* last = nullptr;
  for (auto const& table : tables) {
    if (std::ranges::none_of(table.rows, hasValues)) continue;
    if (last == nullptr || last->unitId != table.unitId) {
      if (last != nullptr) m_html.close();
      m_html.open("section", {{"class", "unit"}});
      m_html.element("h2", table.unit, {{"dir", "auto"}});
    }
    writeFamily(table);
    last = &table;
  }
  if (last != nullptr) m_html.close();
}

void DifferencesWriter::writeFamily(TableDifferences const& table) {
  auto const heading = fmt::format("n{}", m_families++);
  m_html.open("section", {{"class", "family"}});
  m_html.element("h3", table.title, {{"id", heading}});
  for (auto rest = Rows(table.rows); !rest.empty();) {
    auto const end = std::ranges::find_if(
        rest, [&](RowDifferences const& row) { return row.group != rest.front().group; });
    auto const count = static_cast<std::size_t>(end - rest.begin());
    if (std::ranges::any_of(rest.first(count), hasValues)) writeSection(table, rest.first(count), heading);
    rest = rest.subspan(count);
  }
  m_html.close();
}

void DifferencesWriter::writeSection(TableDifferences const& table, Rows rows, std::string const& family) {
  auto const number = m_sections++;
  auto const heading = fmt::format("h{}", number);
  m_hasGroups = std::ranges::any_of(
      rows, [](RowDifferences const& row) { return hasValues(row) && !row.subGroup.empty(); });
  m_hasRemarks = std::ranges::any_of(rows, [](RowDifferences const& row) {
    return std::ranges::any_of(row.values, [](auto const& value) { return !stateText(value).empty(); });
  });
  std::size_t count = 0;
  for (auto const& row : rows) count += row.values.size();
  m_html.open("section", {{"class", "table"}});
  m_html.element("h4", rows.front().group, {{"id", heading}});
  m_html.open("table", {{"class", "data differences"},
                        {"id", fmt::format("t{}", number)},
                        {"aria-labelledby", family + ' ' + heading},
                        {"data-unit", table.unit},
                        {"data-unit-id", table.unitId},
                        {"data-family", table.family},
                        {"data-group", rows.front().group},
                        {"data-rows", std::to_string(count)}});
  writeHead();
  m_html.open("tbody");
  for (auto const& row : rows) {
    for (auto const& difference : row.values) writeRow(row, difference);
  }
  m_html.close();
  m_html.close();
  m_html.close();
}

void DifferencesWriter::writeHead() {
  auto const write = [this](std::string const& name, std::string_view type) {
    m_html.element("th", name,
                   {{"scope", "col"}, {"data-type", type}, {"data-plain", type == "number" ? "true" : ""}});
  };
  m_html.open("thead");
  m_html.open("tr");
  write(tr("Element"), "name");
  if (m_hasGroups) write(tr("Group"), "text");
  write(tr("Quantity"), "text");
  for (auto const& name : {tr("Before"), tr("After"), tr("Change"), tr("Relative change")})
    write(name, "number");
  if (m_hasRemarks) write(tr("Remark"), "text");
  m_html.close();
  m_html.close();
}

void DifferencesWriter::writeRow(RowDifferences const& row, ValueDifference const& difference) {
  auto const change = shownChange(difference);
  auto const relative = shownRelativeChange(difference);
  m_html.html("\n");
  m_html.open("tr", {{"class", crossedLimit(difference) ? "f" : ""},
                     {"data-v",
                      fmt::format("{} {} {} {}", plainValue(difference.before), plainValue(difference.after),
                                  plainNumber(change), plainNumber(relative))}});
  m_html.element("th", row.item);
  if (m_hasGroups) m_html.element("td", row.subGroup);
  m_html.element("td", quantityText(*difference.column));
  writeValue(difference.before);
  writeAfter(difference);
  m_html.element("td", shownNumber(change, m_digits));
  m_html.element("td", shownPercent(relative, m_digits));
  if (m_hasRemarks) m_html.element("td", stateText(difference), {{"class", "remark"}});
  m_html.close();
}

void DifferencesWriter::writeAfter(ValueDifference const& difference) {
  if (difference.wentBeyondLimit())
    return writeValue(difference.after, "up", "↑", tr("now beyond its limit"));
  if (difference.cameBackWithinLimit())
    return writeValue(difference.after, "down", "↓", tr("back within its limit"));
  writeValue(difference.after);
}

/// An arrow says of a value beyond its limit that it is, so that it has no further mark.
void DifferencesWriter::writeValue(std::optional<ComparedValue> const& value, std::string_view crossing,
                                   std::string_view arrow, std::string const& meaning) {
  std::vector<std::string_view> classes;
  if (value && value->isExceeded) classes.push_back("x");
  if (value && value->nanCount > 0) classes.push_back("n");
  if (!crossing.empty()) classes.push_back(crossing);
  m_html.open("td", {{"class", fmt::format("{}", fmt::join(classes, " "))}});
  m_html.text(shownValue(value, m_digits));
  if (value && !value->isValid) appendHtmlMark(m_html, "?", tr("not valid"));
  if (!arrow.empty())
    appendHtmlMark(m_html, arrow, meaning);
  else if (value && value->isExceeded)
    appendHtmlMark(m_html, "!", tr("beyond its limit"));
  if (value && value->nanCount > 0)
    appendHtmlMark(m_html, "*", tr("its series holds values that are not numbers"));
  m_html.close();
}

// ---- the summary

std::pair<std::string_view, std::string> verdictOf(ResultDifferences const& differences) {
  if (!differences.errors.empty()) return {"failed", tr("Not every file could be read")};
  if (differences.hasDifferences()) return {"found", tr("The files differ")};
  if (differences.countCompared() == 0) return {"nothing", tr("No value is in both files")};
  return {"fine", tr("No differences")};
}

std::vector<HtmlCount> countsOf(ResultDifferences const& differences) {
  DifferenceCounts counts;
  for (auto const& table : differences.tables) {
    for (auto const& row : table.rows) {
      for (auto const& difference : row.values) counts.add(difference);
    }
  }
  return {{"exceeded", tr("now beyond their limits"), counts.wentBeyondLimit},
          {"within", tr("back within their limits"), counts.cameBackWithinLimit},
          {"changed", tr("changed"), counts.changed},
          {"state", tr("in state alone"), counts.state},
          {"added", tr("added"), counts.added},
          {"removed", tr("removed"), counts.removed},
          {"compared", tr("values in both files"), differences.countCompared()}};
}

/// Of files that could not be compared it says why, and nothing else.
HtmlSummary summaryOf(ResultDifferences const& differences) {
  auto const [kind, verdict] = verdictOf(differences);
  HtmlSummary summary{kind, verdict, {}, {}};
  for (auto const& [file, message] : differences.errors) summary.files.push_back({file, {}, {}, message});
  if (!summary.files.empty()) return summary;
  summary.counts = countsOf(differences);
  summary.files = differences.read;
  for (auto& file : summary.files)
    file.name = (&file == &summary.files.front() ? tr("before") : tr("after")) + ": " + file.name;
  return summary;
}

/// Says which differences are none; nothing where all count.
void writeTolerance(HtmlWriter& html, Tolerance const& tolerance, int digits) {
  if (tolerance.absolute == 0 && tolerance.relative == 0) return;
  html.element("p",
               tr("Numbers count as the same up to {} and {} of the one before.",
                  numberInHtml(tolerance.absolute, digits), percentInHtml(tolerance.relative)),
               {{"class", "tolerance"}});
}

}  // namespace

std::string renderDifferencesAsHtml(ResultDifferences const& differences, TextStyle const& style) {
  HtmlWriter html;
  openHtmlSummary(html, summaryOf(differences));
  writeTolerance(html, differences.tolerance, style.digits);
  html.close();
  DifferencesWriter(html, style).write(differences.tables);
  return renderHtmlPage({.title = tr("Comparison of results"), .main = html.take()});
}

}  // namespace Kestrel::ResultTables

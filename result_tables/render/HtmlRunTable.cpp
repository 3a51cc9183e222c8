#include "result_tables/render/HtmlRunTable.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

#include "result_tables/base/Family.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/HtmlPage.h"
#include "result_tables/render/HtmlSummary.h"
#include "result_tables/render/HtmlTrend.h"
#include "result_tables/render/HtmlWriter.h"
#include "result_tables/render/RunTableTexts.h"
#include "result_tables/tables/Summary.h"

namespace Kestrel::ResultTables {

namespace {

constexpr std::size_t s_mostRunRows = 2000;
constexpr std::size_t s_mostValueRows = 2000;
constexpr std::size_t s_mostTrends = 1000;
constexpr std::size_t s_utilisationsWithTrends = 200;

/// A cell with a number, as people read it and as attributes have it.
struct NumberField {
  std::string shown;
  std::string plain;
};

NumberField fieldOf(std::optional<double> number, int digits) {
  if (!number) return {"", "-"};
  return {numberInHtml(*number, digits), shortestForm(*number)};
}

NumberField fieldOf(std::size_t count) { return {std::to_string(count), std::to_string(count)}; }

NumberField percentFieldOf(std::optional<double> ratio) {
  if (!ratio) return {"", "-"};
  return {percentInHtml(*ratio), shortestForm(*ratio)};
}

std::string plainList(std::vector<NumberField> const& fields) {
  std::string list;
  for (auto const& field : fields) list += (list.empty() ? "" : " ") + field.plain;
  return list;
}

/// "Max Normal Force [N]"
std::string quantityWithUnit(RunQuantity const& quantity) {
  return quantity.unit.empty() ? quantity.shownName()
                               : fmt::format("{} [{}]", quantity.shownName(), quantity.unit);
}

TableCounts countsOfRuns(RunTable const& table) {
  TableCounts counts;
  for (auto const& run : table.runs()) counts.add(run.counts);
  return counts;
}

bool hasFindings(TableCounts const& counts) {
  return counts.exceeded + counts.notANumber + counts.invalid > 0;
}

HtmlSummary summaryOfRuns(RunTable const& table) {
  auto const counts = countsOfRuns(table);
  HtmlSummary summary{"fine",
                      tr("Nothing found"),
                      {{"runs", tr("runs"), table.runs().size()},
                       {"exceeded", tr("values beyond their limits"), counts.exceeded},
                       {"nan", tr("values with NaN"), counts.notANumber},
                       {"invalid", tr("invalid elements"), counts.invalid},
                       {"compared", tr("values compared"), counts.compared},
                       {"nodata", tr("without data"), counts.withoutData}},
                      {}};
  if (hasFindings(counts)) {
    summary.verdictKind = "found";
    summary.verdict = tr("There are findings");
  } else if (counts.compared == 0) {
    summary.verdictKind = "nothing";
    summary.verdict = tr("Not one value was compared with a limit");
  }
  return summary;
}

class RunReport {
 public:
  RunReport(RunTable const& table, TextStyle const& style) : m_table(&table), m_style(style) {
    for (auto const& column : table.columns()) m_worstFirst.push_back(&column);
    std::ranges::stable_sort(m_worstFirst, std::ranges::greater(), &RunTableColumn::worst);
  }

  std::string write();

 private:
  void writeHighest();
  void writeRuns();
  void writeRun(std::size_t index, std::vector<std::string> const& labels);
  void writeTrends();
  void writeTrend(RunTableColumn const& column);
  void writeStatistics();
  void writeStatisticsOf(std::size_t row);

  void openTable(std::string const& title, std::string_view id, std::size_t rows);
  void writeHeads(std::vector<std::string> const& texts, std::vector<std::string> const& numbers);
  void writeNumbers(std::vector<NumberField> const& fields);
  /// A paragraph that says what is left out.
  void writeNote(std::string const& text) { m_html.element("p", text, {{"class", "note"}}); }

  [[nodiscard]] std::vector<RunTableColumn const*> wantedTrends() const;
  [[nodiscard]] std::string describe(RunTableColumn const& column) const;
  [[nodiscard]] std::optional<std::size_t> worstRunOf(RunTableColumn const& column) const;

  RunTable const* m_table;
  TextStyle m_style;
  std::vector<RunTableColumn const*> m_worstFirst;
  bool m_hasGroups = false;  ///< whether elements of the statistics stand in a sub-group
  HtmlWriter m_html;
};

std::string RunReport::write() {
  openHtmlSummary(m_html, summaryOfRuns(*m_table));
  writeHighest();
  m_html.close();
  writeRuns();
  writeTrends();
  writeStatistics();
  return renderHtmlPage({.title = tr("Study"), .main = m_html.take()});
}

/// "OP20, Clamps, Forces, Left, Clamp 1, Max Normal Force"
std::string RunReport::describe(RunTableColumn const& column) const {
  auto const& section = m_table->section(column);
  auto const& element = m_table->element(column);
  auto text = section.unit;
  for (auto const& part : {familyTitle(section.family), section.name, element.subGroup, element.item,
                           m_table->quantity(column).shownName()}) {
    if (!part.empty()) text += ", " + part;
  }
  return text;
}

/// The first that has the highest utilisation.
std::optional<std::size_t> RunReport::worstRunOf(RunTableColumn const& column) const {
  for (std::size_t i = 0; i < m_table->runs().size(); ++i) {
    auto const number = m_table->number(i, column);
    auto const limit = m_table->limit(i, column);
    TableValue const value{number.value, {{}, {}, {}, number.isThere && !number.isNaN ? 1U : 0U, 0}, false};
    auto const ratio =
        utilisationOf(value, limit ? std::optional(ColumnLimit{*limit, {}}) : std::nullopt, number.isValid);
    if (ratio && ratio == column.worst) return i;
  }
  return std::nullopt;
}

void RunReport::writeHighest() {
  if (m_worstFirst.empty() || !m_worstFirst.front()->worst) return;
  m_html.element("h3", tr("Highest utilisations"));
  m_html.open("ol", {{"class", "worst"}});
  for (std::size_t i = 0; i < std::min(s_listedUtilisations, m_worstFirst.size()); ++i) {
    auto const& column = *m_worstFirst[i];
    auto const run = worstRunOf(column);
    if (!run) break;
    auto const number = m_table->number(*run, column);
    m_html.open("li");
    m_html.element("a", m_table->runs()[*run].name + ": " + describe(column),
                   {{"href", fmt::format("#t1-r{}-c1", i)}, {"dir", "auto"}});
    m_html.text(" ");
    m_html.element("span", percentInHtml(*column.worst),
                   {{"class", "u " + utilisationClass(column.worst, number.isExceeded)}});
    m_html.text(" ");
    auto value = numberInHtml(number.value, m_style.digits);
    if (auto const& unit = m_table->quantity(column).unit; !unit.empty()) value += ' ' + unit;
    m_html.element("span", value, {{"class", "value"}});
    m_html.close();
  }
  m_html.close();
}

void RunReport::openTable(std::string const& title, std::string_view id, std::size_t rows) {
  auto const heading = fmt::format("h-{}", id);
  m_html.open("section", {{"class", "unit"}});
  m_html.element("h2", title, {{"id", heading}});
  m_html.open("section", {{"class", "table"}});
  m_html.open("table", {{"class", "data runs"},
                        {"id", id},
                        {"aria-labelledby", heading},
                        {"data-rows", std::to_string(rows)}});
}

void RunReport::writeHeads(std::vector<std::string> const& texts, std::vector<std::string> const& numbers) {
  m_html.open("thead");
  m_html.open("tr");
  for (auto const& text : texts)
    m_html.element("th", text, {{"scope", "col"}, {"data-type", &text == &texts.front() ? "name" : "text"}});
  for (auto const& number : numbers)
    m_html.element("th", number, {{"scope", "col"}, {"data-type", "number"}, {"data-plain", "true"}});
  m_html.close();
  m_html.close();
}

void RunReport::writeNumbers(std::vector<NumberField> const& fields) {
  for (auto const& field : fields) m_html.element("td", field.shown);
}

void RunReport::writeRuns() {
  auto const& runs = m_table->runs();
  auto const labels = labelNamesOf(runs);
  auto const first = runs.size() - std::min(runs.size(), s_mostRunRows);
  openTable(tr("Runs"), "t0", runs.size() - first);
  std::vector<std::string> texts{tr("Run"), tr("File"), tr("Added")};
  texts.insert(texts.end(), labels.begin(), labels.end());
  writeHeads(texts, {tr("No."), tr("Highest utilisation"), tr("Beyond limits"), "NaN", tr("Invalid"),
                     tr("Compared"), tr("Without data"), tr("Values")});
  m_html.open("tbody");
  for (std::size_t i = first; i < runs.size(); ++i) writeRun(i, labels);
  m_html.close();
  m_html.close();
  if (first > 0)
    writeNote(
        tr("These are the last {} of {} runs; the form csv has all.", runs.size() - first, runs.size()));
  m_html.close();
  m_html.close();
}

void RunReport::writeRun(std::size_t index, std::vector<std::string> const& labels) {
  auto const& run = m_table->runs()[index];
  auto const& counts = run.counts;
  auto const number = fieldOf(index + 1);
  auto const worst = percentFieldOf(run.worst);
  std::vector<NumberField> fields;
  for (auto const count : {counts.exceeded, counts.notANumber, counts.invalid, counts.compared,
                           counts.withoutData, run.valueCount})
    fields.push_back(fieldOf(count));
  m_html.html("\n");
  m_html.open("tr", {{"class", hasFindings(counts) ? "f" : ""},
                     {"data-v", number.plain + ' ' + worst.plain + ' ' + plainList(fields)}});
  m_html.element("th", run.name);
  for (auto const& text : {run.file, run.added}) m_html.element("td", text, {{"class", "remark"}});
  for (auto const& label : labels) m_html.element("td", labelOf(run, label), {{"class", "remark"}});
  m_html.element("td", number.shown);
  m_html.element("td", worst.shown,
                 {{"class", utilisationClass(run.worst, counts.exceeded > 0 && run.worst > 1.0)}});
  writeNumbers(fields);
  m_html.close();
}

/// From the highest utilisation down.
std::vector<RunTableColumn const*> RunReport::wantedTrends() const {
  std::vector<RunTableColumn const*> wanted;
  for (std::size_t i = 0; i < m_worstFirst.size(); ++i) {
    auto const& column = *m_worstFirst[i];
    bool const isHigh = i < s_utilisationsWithTrends && column.worst;
    bool const isWanted =
        m_style.curves == Curves::all || column.findings > 0 || (m_style.curves == Curves::notable && isHigh);
    if (isWanted && column.statistics.count() > 0) wanted.push_back(&column);
  }
  return wanted;
}

void RunReport::writeTrends() {
  if (m_style.curves == Curves::none) return;
  auto const wanted = wantedTrends();
  if (wanted.empty()) return;
  m_html.open("section", {{"id", "trends"}});
  m_html.element("h2", tr("Values through the runs"));
  m_html.element("p",
                 tr("Runs stand from left to right by their numbers, in the order in which they were added."),
                 {{"class", "note"}});
  auto const shown = std::min(wanted.size(), s_mostTrends);
  if (shown < wanted.size())
    writeNote(tr("These are the {} of {} values that take the most of their limits.", shown, wanted.size()));
  m_html.open("div", {{"class", "trends"}});
  for (std::size_t i = 0; i < shown; ++i) writeTrend(*wanted[i]);
  m_html.close();
  m_html.close();
}

void RunReport::writeTrend(RunTableColumn const& column) {
  auto const& quantity = m_table->quantity(column);
  m_html.html("\n");
  m_html.open("figure");
  m_html.open("figcaption", {{"dir", "auto"}});
  m_html.text(describe(column));
  if (!quantity.unit.empty()) m_html.text(fmt::format(" [{}]", quantity.unit));
  m_html.close();
  writeHtmlTrend(m_html, *m_table, column, m_style.digits);
  m_html.close();
}

void RunReport::writeStatistics() {
  auto const rows = std::min(m_worstFirst.size(), s_mostValueRows);
  m_hasGroups = std::any_of(
      m_worstFirst.begin(), m_worstFirst.begin() + static_cast<std::ptrdiff_t>(rows),
      [this](RunTableColumn const* column) { return !m_table->element(*column).subGroup.empty(); });
  openTable(tr("Statistics"), "t1", rows);
  std::vector<std::string> texts{tr("Element"), tr("Unit"), tr("Family"), tr("Section"), tr("Quantity")};
  if (m_hasGroups) texts.insert(texts.end() - 1, tr("Group"));
  writeHeads(texts, {tr("Limit"), tr("Highest utilisation"), tr("Share beyond the limit"), tr("Runs"),
                     tr("Minimum"), tr("Maximum"), tr("Mean"), tr("Standard deviation")});
  m_html.open("tbody");
  for (std::size_t i = 0; i < rows; ++i) writeStatisticsOf(i);
  m_html.close();
  m_html.close();
  if (rows < m_worstFirst.size())
    writeNote(
        tr("These are the {} of {} values that take the most of their limits; the form csv has all with "
           "--statistics.",
           rows, m_worstFirst.size()));
  m_html.close();
  m_html.close();
}

void RunReport::writeStatisticsOf(std::size_t row) {
  auto const& column = *m_worstFirst[row];
  auto const& section = m_table->section(column);
  auto const& element = m_table->element(column);
  auto const& quantity = m_table->quantity(column);
  auto const& statistics = column.statistics;
  int const digits = m_style.digits;
  auto const limit = fieldOf(quantity.limit ? std::optional(quantity.limit->value) : std::nullopt, digits);
  auto const worst = percentFieldOf(column.worst);
  std::vector<NumberField> fields{percentFieldOf(statistics.shareBeyondLimit()), fieldOf(statistics.count())};
  for (auto const number :
       {statistics.minimum(), statistics.maximum(), statistics.mean(), statistics.standardDeviation()})
    fields.push_back(fieldOf(number, digits));
  m_html.html("\n");
  m_html.open("tr", {{"class", column.findings > 0 ? "f" : ""},
                     {"data-v", limit.plain + ' ' + worst.plain + ' ' + plainList(fields)}});
  m_html.element("th", element.item);
  for (auto const& text : {section.unit, familyTitle(section.family), section.name})
    m_html.element("td", text, {{"class", "remark"}});
  if (m_hasGroups) m_html.element("td", element.subGroup, {{"class", "remark"}});
  m_html.element("td", quantityWithUnit(quantity), {{"class", "remark"}});
  m_html.element("td", limit.shown);
  m_html.element("td", worst.shown,
                 {{"class", utilisationClass(column.worst, statistics.shareBeyondLimit() > 0.0)},
                  {"id", row < s_listedUtilisations ? fmt::format("t1-r{}-c1", row) : std::string()}});
  writeNumbers(fields);
  m_html.close();
}

}  // namespace

std::string renderRunTableAsHtml(RunTable const& table, TextStyle const& style) {
  return RunReport(table, style).write();
}

}  // namespace Kestrel::ResultTables

#pragma once

#include <any>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "result_tables/render/CsvDifferences.h"
#include "result_tables/render/CsvRunTable.h"
#include "result_tables/render/CsvRunValues.h"
#include "result_tables/render/CsvSeries.h"
#include "result_tables/render/CsvStudyRuns.h"
#include "result_tables/render/CsvTables.h"
#include "result_tables/render/CsvTrends.h"
#include "result_tables/render/CsvWorstValues.h"
#include "result_tables/render/CsvWriter.h"
#include "result_tables/render/HtmlDifferences.h"
#include "result_tables/render/HtmlFindings.h"
#include "result_tables/render/HtmlRunTable.h"
#include "result_tables/render/HtmlTables.h"
#include "result_tables/render/JsonDifferences.h"
#include "result_tables/render/JsonFindings.h"
#include "result_tables/render/JsonLimits.h"
#include "result_tables/render/JsonRunTable.h"
#include "result_tables/render/JsonSeries.h"
#include "result_tables/render/JsonStudyRuns.h"
#include "result_tables/render/JsonTables.h"
#include "result_tables/render/JsonTrends.h"
#include "result_tables/render/JsonWorstValues.h"
#include "result_tables/render/JunitDifferences.h"
#include "result_tables/render/JunitFindings.h"
#include "result_tables/render/SvgSeries.h"
#include "result_tables/render/SvgTrends.h"
#include "result_tables/render/TextDifferences.h"
#include "result_tables/render/TextFindings.h"
#include "result_tables/render/TextLimits.h"
#include "result_tables/render/TextSeries.h"
#include "result_tables/render/TextStudyRuns.h"
#include "result_tables/render/TextStyle.h"
#include "result_tables/render/TextTables.h"
#include "result_tables/render/TextTrends.h"
#include "result_tables/render/TextWorstValues.h"
#include "result_tables/render/XlsxRunTable.h"
#include "result_tables/render/XlsxTables.h"
#include "result_tables/tables/Tables.h"

namespace Kestrel::ResultTables {

/// A form of output: its name, which is never translated, and what renders it. A row without either does not
/// compile.
template <typename Subject>
struct Format {
  using Render = std::string(Subject const& subject, TextStyle const& style);

  std::string_view name;
  Render& render;
  /// What it keeps of the tables of the file with that index, where it shows more of them than the subject
  /// holds; null where it does not. Any thread.
  std::any (*keepOf)(Tables const& tables, std::size_t index, TextStyle const& style) = nullptr;
  /// Whether it says what could not be done, so that it is put out then too by commands that otherwise put
  /// out nothing.
  bool reportsErrors = false;
  /// Whether it is no text, so that it is kept from terminals.
  bool isBinary = false;
};

/// For the forms that are the same wherever they are shown.
template <auto render, typename Subject>
std::string renderInAnyStyle(Subject const& subject, TextStyle const&) {
  return render(subject);
}

/// For those that say nothing of the files.
template <auto render>
std::string renderTables(Tables const& tables, TextStyle const& style) {
  return render(tables.tables, style);
}

template <CsvDialect const& dialect, typename Subject>
std::string renderInDialect(Subject const& subject, TextStyle const&) {
  return renderCsv(subject, dialect);
}

template <CsvDialect const& dialect>
std::string renderStatisticsInDialect(RunTable const& table, TextStyle const&) {
  return renderStatisticsAsCsv(table, dialect);
}

using Findings = std::vector<FileFindings>;
using SeriesList = std::vector<TableSeries>;
using ListedLimits = std::vector<ListedLimit>;
using StudyRuns = std::vector<StudyRun>;

/// The forms of what commands put out; the first is the one for people.
inline constexpr Format<Tables> s_tableFormats[] = {
    {"text", renderTables<renderText>},
    {"csv", renderTables<renderInDialect<s_plainCsv, std::vector<ResultTable>>>},
    {"json", renderTables<renderInAnyStyle<renderJson, std::vector<ResultTable>>>},
    {"html", renderTablesAsHtml},
    {.name = "xlsx", .render = renderInAnyStyle<renderAsXlsx, Tables>, .isBinary = true},
};
/// What `--csv` chooses from, for each subject that has a row "csv".
template <typename Subject>
inline constexpr Format<Subject> s_csvDialects[] = {
    {"plain", renderInDialect<s_plainCsv, Subject>},
    {"excel-de", renderInDialect<s_excelDeCsv, Subject>},
};
template <>
inline constexpr Format<Tables> s_csvDialects<Tables>[] = {
    {"plain", renderTables<renderInDialect<s_plainCsv, std::vector<ResultTable>>>},
    {"excel-de", renderTables<renderInDialect<s_excelDeCsv, std::vector<ResultTable>>>},
};
inline constexpr Format<Findings> s_findingsFormats[] = {
    {"text", renderFindingsAsText},
    {"json", renderInAnyStyle<renderFindingsAsJson, Findings>},
    {"junit", renderInAnyStyle<renderFindingsAsJunit, Findings>},
    {.name = "html", .render = renderInAnyStyle<renderFindingsAsHtml, Findings>, .keepOf = keepForHtml},
};
inline constexpr Format<ResultDifferences> s_differencesFormats[] = {
    {"text", renderDifferencesAsText},
    {"csv", renderInDialect<s_plainCsv, ResultDifferences>},
    {"json", renderInAnyStyle<renderDifferencesAsJson, ResultDifferences>},
    {.name = "junit",
     .render = renderInAnyStyle<renderDifferencesAsJunit, ResultDifferences>,
     .reportsErrors = true},
    {.name = "html", .render = renderDifferencesAsHtml, .reportsErrors = true},
};
inline constexpr Format<SeriesList> s_seriesFormats[] = {
    {"text", renderSeriesAsText},
    {"csv", renderInDialect<s_plainCsv, SeriesList>},
    {"json", renderInAnyStyle<renderSeriesAsJson, SeriesList>},
    {"svg", renderInAnyStyle<renderSeriesAsSvg, SeriesList>},
};
inline constexpr Format<ListedLimits> s_limitsFormats[] = {
    {"text", renderLimitsAsText},
    {"json", renderInAnyStyle<renderLimitsAsJson, ListedLimits>},
};
inline constexpr Format<StudyRuns> s_studyRunsFormats[] = {
    {"text", renderStudyRunsAsText},
    {"csv", renderInDialect<s_plainCsv, StudyRuns>},
    {"json", renderInAnyStyle<renderStudyRunsAsJson, StudyRuns>},
};
inline constexpr Format<WorstValues> s_worstValuesFormats[] = {
    {"text", renderWorstValuesAsText},
    {"csv", renderInDialect<s_plainCsv, WorstValues>},
    {"json", renderInAnyStyle<renderWorstValuesAsJson, WorstValues>},
};
inline constexpr Format<Trends> s_trendsFormats[] = {
    {"text", renderTrendsAsText},
    {"csv", renderInDialect<s_plainCsv, Trends>},
    {"json", renderInAnyStyle<renderTrendsAsJson, Trends>},
    {"svg", renderInAnyStyle<renderTrendsAsSvg, Trends>},
};
inline constexpr Format<RunTable> s_runTableFormats[] = {
    {"csv", renderInDialect<s_plainCsv, RunTable>},
    {"json", renderInAnyStyle<renderRunTableAsJson, RunTable>},
    {"html", renderRunTableAsHtml},
    {.name = "xlsx", .render = renderInAnyStyle<renderRunTableAsXlsx, RunTable>, .isBinary = true},
};

/// What there is of them in place of the values of runs: what these make of each value together.
inline constexpr Format<RunTable> s_statisticsFormats[] = {
    {"csv", renderStatisticsInDialect<s_plainCsv>},
    {"plain", renderStatisticsInDialect<s_plainCsv>},
    {"excel-de", renderStatisticsInDialect<s_excelDeCsv>},
};

/// A form of the values of runs one by one, by its name or that of a dialect of csv.
struct RunValuesFormat {
  std::string_view name;
  std::unique_ptr<RunValuesWriter> (*genWriter)();
  bool isBinary = false;
};
template <CsvDialect const& dialect>
std::unique_ptr<RunValuesWriter> genCsvRunValues() {
  return std::make_unique<CsvRunValues>(dialect);
}
template <typename Writer>
std::unique_ptr<RunValuesWriter> genRunValuesWriter() {
  return std::make_unique<Writer>();
}
inline constexpr RunValuesFormat s_runValuesFormats[] = {
    {"csv", genCsvRunValues<s_plainCsv>},
    {"plain", genCsvRunValues<s_plainCsv>},
    {"excel-de", genCsvRunValues<s_excelDeCsv>},
    {"json", genRunValuesWriter<JsonRunValues>},
    {"xlsx", genRunValuesWriter<XlsxRunValues>, true},
};

}  // namespace Kestrel::ResultTables

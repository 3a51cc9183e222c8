#include "result_tables/render/HtmlSummary.h"

#include <fmt/format.h>

#include <algorithm>

#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

namespace {

void writeCounts(HtmlWriter& html, std::vector<HtmlCount> const& counts) {
  if (counts.empty()) return;
  html.open("dl", {{"class", "counts"}});
  for (auto const& [kind, text, count] : counts) {
    auto const number = std::to_string(count);
    html.open("div", {{"class", kind}});
    html.element("dt", text);
    html.element("dd", number, {{"data-count", number}});
    html.close();
  }
  html.close();
}

bool wasNotRead(TablesFile const& file) { return file.error.has_value(); }

void writeErrors(HtmlWriter& html, std::vector<TablesFile> const& files) {
  if (std::ranges::none_of(files, wasNotRead)) return;
  html.open("ul", {{"class", "errors"}});
  for (auto const& file : files) {
    if (wasNotRead(file)) html.element("li", *file.error, {{"dir", "auto"}});
  }
  html.close();
}

/// As many names as a person cares to read.
std::string unitNames(std::vector<std::string> const& units) {
  constexpr std::size_t most = 20;
  std::string text;
  for (std::size_t i = 0; i < std::min(units.size(), most); ++i) text += (i > 0 ? ", " : "") + units[i];
  return units.size() > most ? text + ", … " + tr("({} in all)", units.size()) : text;
}

void writeFiles(HtmlWriter& html, std::vector<TablesFile> const& files) {
  if (std::ranges::all_of(files, wasNotRead)) return;
  html.open("table", {{"class", "files"}});
  html.open("thead");
  html.open("tr");
  for (auto const& head : {tr("File"), tr("Units"), tr("Limits")})
    html.element("th", head, {{"scope", "col"}});
  html.close();
  html.close();
  html.open("tbody");
  for (auto const& file : files) {
    if (wasNotRead(file)) continue;
    html.open("tr");
    html.element("th", file.name, {{"scope", "row"}, {"dir", "auto"}});
    html.element("td", unitNames(file.units), {{"dir", "auto"}});
    html.element("td", file.limits.empty() ? tr("default limits") : file.limits, {{"dir", "auto"}});
    html.close();
  }
  html.close();
  html.close();
}

}  // namespace

void openHtmlSummary(HtmlWriter& html, HtmlSummary const& summary) {
  html.open("section", {{"id", "summary"}});
  html.element("h2", tr("Summary"));
  html.element("p", summary.verdict, {{"class", fmt::format("verdict {}", summary.verdictKind)}});
  writeCounts(html, summary.counts);
  writeErrors(html, summary.files);
  writeFiles(html, summary.files);
}

void appendHtmlMark(HtmlWriter& html, std::string_view mark, std::string const& meaning) {
  html.text(" ");
  html.element("abbr", mark, {{"title", meaning}});
}

}  // namespace Kestrel::ResultTables

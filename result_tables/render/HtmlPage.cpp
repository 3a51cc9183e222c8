#include "result_tables/render/HtmlPage.h"

#include <fmt/format.h>
#include <nettle/base64.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include "result_tables/base/Digest.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/json/JsonWriter.h"
#include "result_tables/render/HtmlWriter.h"

// Defined by html/Report.S.
extern "C" {
extern char const kestrel_report_style_begin[];
extern char const kestrel_report_style_end[];
extern char const kestrel_report_script_begin[];
extern char const kestrel_report_script_end[];
}

namespace Kestrel::ResultTables {

namespace {

/// Says that the script runs before there is anything to lay out, and takes it back where it did not.
constexpr std::string_view s_earlyScript =
    "document.documentElement.classList.add('js');"
    "document.addEventListener('DOMContentLoaded',function(){var page=document.documentElement.classList;"
    "if(!page.contains('running'))page.remove('js');});";

/// What the browser takes for the content of a style or a script, and a reader of XML does too.
std::string cdata(std::string_view content) { return fmt::format("/*<![CDATA[*/\n{}/*]]>*/", content); }

std::string style() { return cdata({kestrel_report_style_begin, kestrel_report_style_end}); }
std::string script() { return cdata({kestrel_report_script_begin, kestrel_report_script_end}); }

/// A source of a content security policy: "'sha256-…'".
std::string sourceOf(std::string_view content) {
  auto const digest = sha256Of(content);
  std::string text(BASE64_ENCODE_RAW_LENGTH(std::tuple_size_v<Sha256>), '\0');
  base64_encode_raw(text.data(), digest.size(), digest.data());
  return fmt::format("'sha256-{}'", text);
}

/// JSON that can stand in a script element, in HTML and in XML.
std::string embedded(std::string_view json) {
  std::string out;
  out.reserve(json.size());
  for (char const c : json) {
    if (c == '<' || c == '>' || c == '&')
      fmt::format_to(std::back_inserter(out), "\\u{:04x}", static_cast<unsigned>(c));
    else
      out += c;
  }
  return out;
}

/// The texts that the script shows, by the names that it has for them.
std::string scriptTexts() {
  JsonWriter json;
  json.beginObject();
  json.text("filter", tr("Filter by text"));
  json.text("onlyFindings", tr("Only findings"));
  json.text("byMagnitude", tr("Sort numbers by magnitude"));
  json.text("byUtilisation", tr("Sort by utilisation"));
  json.text("rows", tr("{shown} of {all} rows"));
  json.text("columns", tr("Columns"));
  json.text("copy", tr("Copy"));
  json.text("copied", tr("Copied rows: {rows}"));
  json.text("notCopied", tr("The browser does not allow copying."));
  json.text("noData", tr("no data"));
  json.text("value", tr("value"));
  json.text("limit", tr("limit"));
  json.text("utilisation", tr("utilisation"));
  json.text("step", tr("step"));
  json.text("time", tr("time"));
  json.text("close", tr("Close"));
  json.endObject();
  return json.take();
}

void appendHead(HtmlWriter& html, std::string const& title) {
  auto const pageStyle = style();
  auto const policy =
      fmt::format("default-src 'none'; style-src {}; script-src {} {}; base-uri 'none'; form-action 'none'",
                  sourceOf(pageStyle), sourceOf(s_earlyScript), sourceOf(script()));
  html.open("head");
  html.leaf("meta", {{"charset", "utf-8"}});
  html.leaf("meta", {{"http-equiv", "Content-Security-Policy"}, {"content", policy}});
  html.leaf("meta", {{"name", "viewport"}, {"content", "width=device-width, initial-scale=1"}});
  html.leaf("meta", {{"name", "color-scheme"}, {"content", "light dark"}});
  html.element("title", title);
  html.html("<style>" + pageStyle + "</style>");
  html.html(fmt::format("<script>{}</script>", s_earlyScript));
  html.close();
}

}  // namespace

std::string renderHtmlPage(HtmlPage const& page) {
  // The tag of the language of these texts, as "de" or "pt-BR".
  auto const language = tr("en");
  HtmlWriter html;
  html.html("<!DOCTYPE html>\n");
  html.open("html", {{"lang", language}, {"xml:lang", language}});
  appendHead(html, page.title);
  html.open("body");
  html.open("header");
  html.element("h1", page.title);
  html.element("p", "result-tables " RESULT_TABLES_VERSION, {{"class", "made"}});
  html.close();
  html.open("main");
  html.html(page.main);
  html.close();
  html.html("\n<script type=\"application/json\" id=\"texts\">" + embedded(scriptTexts()) + "</script>\n");
  html.html("<script type=\"application/json\" id=\"curves\">" + embedded(page.curves) + "</script>\n");
  html.html("<script>" + script() + "</script>");
  return html.take() + '\n';
}

char decimalMarkInHtml() {
  // A number as the language writes it, from which its decimal mark is taken.
  static auto const number = tr("1.5");
  return number.size() == 3 ? number[1] : '.';
}

std::string numberInHtml(double value, int digits) {
  auto number = formatNumber(value, digits);
  std::ranges::replace(number, '.', decimalMarkInHtml());
  return number;
}

std::string percentInHtml(double ratio) { return numberInHtml(ratio * 100, 4) + " %"; }

std::string utilisationClass(std::optional<double> utilisation, bool isExceeded) {
  if (!utilisation) return {};
  int const steps = isExceeded ? 21 : static_cast<int>(std::min(std::floor(*utilisation * 20), 20.0));
  return fmt::format("u{}", steps);
}

}  // namespace Kestrel::ResultTables

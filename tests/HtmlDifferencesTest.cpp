#include "result_tables/render/HtmlDifferences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <pugixml.hpp>

#include "support/DifferencesTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// A page that must be XML.
class Page {
 public:
  explicit Page(ResultDifferences const& differences, TextStyle const& style = {})
      : m_text(renderDifferencesAsHtml(differences, style)) {
    EXPECT_TRUE(m_document.load_string(m_text.c_str(), pugi::parse_full));
  }

  [[nodiscard]] std::string const& source() const { return m_text; }

  /// The texts of the elements, each with those of the elements in it.
  [[nodiscard]] std::vector<std::string> texts(char const* path) const {
    std::vector<std::string> texts;
    for (auto const& found : m_document.select_nodes(path)) texts.push_back(textOf(found.node()));
    return texts;
  }
  [[nodiscard]] std::vector<std::string> attributes(char const* path) const {
    std::vector<std::string> values;
    for (auto const& found : m_document.select_nodes(path)) values.emplace_back(found.attribute().value());
    return values;
  }
  /// The cells of a row of all tables, counted from 0.
  [[nodiscard]] std::vector<std::string> row(std::size_t index) const {
    std::vector<std::string> cells;
    for (auto const& cell : m_document.select_nodes("//tbody/tr[@data-v]")[index].node().children())
      cells.push_back(textOf(cell));
    return cells;
  }

 private:
  static std::string textOf(pugi::xml_node const& node) {
    std::string text;
    for (auto const& found : node.select_nodes(".//text()")) text += found.node().value();
    return text;
  }

  std::string m_text;
  pugi::xml_document m_document;
};

Page pageOf(std::string const& before, std::string const& after) {
  return Page(differencesOf(oneBolt(before), oneBolt(after)));
}

TEST(HtmlDifferences, HaveATableForEachSectionThatDiffers) {
  auto const before = unitOf('2', "OP20", bolt("Bolt 1", "1") + ", " + pilots({{"P1", 2}, {"P2", 3}})) +
                      ", " + unitOf('3', "OP30", bolt("Bolt 1", "1")) + ", " +
                      unitOf('4', "OP40", bolt("Bolt 1", "1"));
  auto const after = unitOf('2', "OP20", bolt("Bolt 1", "2") + ", " + pilots({{"P1", 4}, {"P2", 3}})) + ", " +
                     unitOf('3', "OP30", bolt("Bolt 1", "1")) + ", " +
                     unitOf('4', "OP40", bolt("Bolt 1", "3"));
  Page const page(differencesOf(before, after));
  EXPECT_THAT(page.texts("//section[@class='unit']/h2"), ElementsAre("OP20", "OP40"));
  EXPECT_THAT(page.texts("//section[@class='family']/h3"), ElementsAre("Pilots", "Bolts", "Bolts"));
  EXPECT_THAT(page.texts("//section[@class='table']/h4"), ElementsAre("Forces", "Forces", "Forces"));
  EXPECT_THAT(page.attributes("//table/@id"), ElementsAre("t0", "t1", "t2"));
  EXPECT_THAT(page.attributes("//table/@aria-labelledby"), ElementsAre("n0 h0", "n1 h1", "n2 h2"));
  EXPECT_THAT(page.attributes("//table/@data-unit"), ElementsAre("OP20", "OP20", "OP40"));
  EXPECT_THAT(page.attributes("//table/@data-unit-id"),
              ElementsAre("0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02", "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02",
                          "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a04"));
  EXPECT_THAT(page.attributes("//table/@data-family"), ElementsAre("Pilots", "Bolts", "Bolts"));
  EXPECT_THAT(page.attributes("//table/@data-rows"), ElementsAre("1", "1", "1"));
  EXPECT_THAT(page.texts("//table[@id='t0']//th[@scope='col']"),
              ElementsAre("Element", "Quantity", "Before", "After", "Change", "Relative change"));
  EXPECT_THAT(page.attributes("//table[@id='t0']//th[@data-plain]/@data-type"),
              ElementsAre("number", "number", "number", "number"));
}

TEST(HtmlDifferences, SayBeforeAfterAndChange) {
  auto const page = pageOf("20", "24.5");
  EXPECT_THAT(page.row(0), ElementsAre("Bolt 1", "Max Normal Force [N]", "20", "24.5", "+4.5", "+22.5 %"));
  EXPECT_THAT(page.attributes("//tr/@data-v"), ElementsAre("20 24.5 4.5 0.225"));
  EXPECT_THAT(page.attributes("//tr/@class"), IsEmpty());
  EXPECT_THAT(
      pageOf("-1234.5678", "-2345.678901234").row(0),
      ElementsAre("Bolt 1", "Max Normal Force [N]", "-1234.568 !", "-2345.679 !", "-1111.111", "-90 %"));
  EXPECT_THAT(pageOf("0", "2").row(0), ElementsAre("Bolt 1", "Max Normal Force [N]", "0", "2", "+2", ""));
  EXPECT_THAT(pageOf("0", "2").attributes("//tr/@data-v"), ElementsAre("0 2 2 -"));
}

TEST(HtmlDifferences, ShowByArrowsWhereALimitIsCrossed) {
  auto const beyond = pageOf("20", "-31");
  EXPECT_THAT(beyond.row(0), ElementsAre("Bolt 1", "Max Normal Force [N]", "20", "-31 ↑", "-51", "-255 %",
                                         "now beyond its limit"));
  EXPECT_THAT(beyond.attributes("//tr/@class"), ElementsAre("f"));
  EXPECT_THAT(beyond.attributes("//tbody//td/@class"), ElementsAre("x up", "remark"));
  EXPECT_THAT(beyond.attributes("//abbr/@title"), ElementsAre("now beyond its limit"));

  auto const within = pageOf("45", "1");
  EXPECT_THAT(within.row(0), ElementsAre("Bolt 1", "Max Normal Force [N]", "45 !", "1 ↓", "-44", "-97.8 %",
                                         "back within its limit"));
  EXPECT_THAT(within.attributes("//tr/@class"), ElementsAre("f"));
  EXPECT_THAT(within.attributes("//tbody//td/@class"), ElementsAre("x", "down", "remark"));
  EXPECT_THAT(within.attributes("//abbr/@title"), ElementsAre("beyond its limit", "back within its limit"));
}

TEST(HtmlDifferences, SayWhatOneFileAloneHas) {
  Page const page(
      differencesOf(unitOf('2', "OP20", pilots({{"P1", 2}})), unitOf('2', "OP20", pilots({{"P2", 1e6}}))));
  EXPECT_THAT(page.row(0), ElementsAre("P1", "Max Force [N]", "2", "", "", "", "removed"));
  EXPECT_THAT(page.row(1),
              ElementsAre("P2", "Max Force [N]", "", "1000000 ↑", "", "", "added, now beyond its limit"));
  EXPECT_THAT(page.attributes("//tr/@data-v"), ElementsAre("2 - - -", "- 1000000 - -"));
}

TEST(HtmlDifferences, TellNoDataFromNaNAndFromNothing) {
  auto const page = pageOf("", "5");
  EXPECT_THAT(page.row(0), ElementsAre("Bolt 1", "Max Normal Force [N]", "–", "5", "", ""));
  EXPECT_THAT(page.attributes("//tr/@data-v"), ElementsAre("- 5 - -"));
  auto const nan = pageOf("7", "null");
  EXPECT_THAT(nan.row(0), ElementsAre("Bolt 1", "Max Normal Force [N]", "7", "NaN *", "", ""));
  EXPECT_THAT(nan.attributes("//tr/@data-v"), ElementsAre("7 nan - -"));
  EXPECT_THAT(nan.attributes("//tbody//td/@class"), ElementsAre("n"));
  EXPECT_THAT(pageOf("7", "\"-Infinity\"").attributes("//tr/@data-v"), ElementsAre("7 -inf - -"));
}

TEST(HtmlDifferences, NameSubGroupsWhereThereAreAny) {
  auto const units = [](std::string const& value) {
    return R"({"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a02", "name": "OP20", "tools": [
               {"id": "Tool 1", "kind": "tool", "series": [{"quantity": "TotalToolForces", "values": [)" +
           value + R"(]}]}],
               "toolGroupings": {"ClampingTools": [{"name": "Left", "tools": ["Tool 1"]}],
                                 "Rollers": [], "Steels": [], "HemmingBed": []}})";
  };
  Page const page(differencesOf(units("1"), units("2")));
  EXPECT_THAT(page.texts("//table[@id='t0']//th[@scope='col']"),
              ElementsAre("Element", "Group", "Quantity", "Before", "After", "Change", "Relative change"));
  EXPECT_THAT(page.row(0),
              ElementsAre("Tool 1", "Left", "Max Force in Working Direction [N]", "1", "2", "+1", "+100 %"));
}

TEST(HtmlDifferences, BeginWithASummary) {
  auto differences =
      differencesOf(unitOf('2', "OP20", bolt("Bolt 1", "20") + ", " + pilots({{"P1", 2}, {"P2", 3}})),
                    unitOf('2', "OP20", bolt("Bolt 1", "31") + ", " + pilots({{"P1", 4}, {"P3", 3}})),
                    {.absolute = 0.5, .relative = 0.01});
  Page const page(differences);
  EXPECT_THAT(page.texts("//h1"), ElementsAre("Comparison of results"));
  EXPECT_THAT(
      page.texts("//section[@id='summary']/p"),
      ElementsAre("The files differ", "Numbers count as the same up to 0.5 and 1 % of the one before."));
  EXPECT_THAT(page.attributes("//p[starts-with(@class, 'verdict')]/@class"), ElementsAre("verdict found"));
  EXPECT_THAT(page.texts("//dt"),
              ElementsAre("now beyond their limits", "back within their limits", "changed", "in state alone",
                          "added", "removed", "values in both files"));
  EXPECT_THAT(page.attributes("//dd/@data-count"), ElementsAre("1", "0", "2", "0", "1", "1", "6"));
  EXPECT_THAT(page.texts("//table[@class='files']/tbody/tr/*"),
              ElementsAre("before: before.json", "OP20", "default limits", "after: after.json", "OP20",
                          "default limits"));
}

TEST(HtmlDifferences, SayWhatWasReadOfEachFile) {
  auto before = limitedResultsOf("a.json", unitOf('2', "OP20", "") + ", " + unitOf('3', "OP30", ""));
  before.limits.source = "policy.json";
  auto const after = limitedResultsOf("b.json", unitOf('2', "OP 20 <new>", ""));
  EXPECT_THAT(Page(genDifferences(before, after, {}, {})).texts("//table[@class='files']/tbody/tr/*"),
              ElementsAre("before: a.json", "OP20, OP30", "policy.json", "after: b.json", "OP 20 <new>",
                          "default limits"));
}

TEST(HtmlDifferences, SayWhereThereAreNone) {
  EXPECT_THAT(pageOf("20", "20").texts("//section[@id='summary']/p"), ElementsAre("No differences"));
  EXPECT_THAT(pageOf("20", "20").texts("//section[@class='unit']"), IsEmpty());
  EXPECT_THAT(Page(differencesOf("", "")).texts("//section[@id='summary']/p"),
              ElementsAre("No value is in both files"));
}

TEST(HtmlDifferences, SayWhichFileCouldNotBeRead) {
  Page const page({"a.json", "b.json", {}, {{"b.json", "b.json: cannot read"}}});
  EXPECT_THAT(page.texts("//section[@id='summary']/p"), ElementsAre("Not every file could be read"));
  EXPECT_THAT(page.texts("//ul[@class='errors']/li"), ElementsAre("b.json: cannot read"));
  EXPECT_THAT(page.texts("//dl"), IsEmpty()) << "of what is not known";
  EXPECT_THAT(page.texts("//table"), IsEmpty());
}

TEST(HtmlDifferences, ShowMarkupInNamesAsText) {
  Page const page(differencesOf(unitOf('2', "<script>\\u0000", pilots({{"</td>&\\\"'", 2}})),
                                unitOf('2', "x", pilots({{"</td>&\\\"'", 3}}))));
  EXPECT_THAT(page.texts("//h2"), ElementsAre("Summary", "<script>␀"));
  EXPECT_THAT(page.row(0), ElementsAre("</td>&\"'", "Max Force [N]", "2", "3", "+1", "+50 %"));
  EXPECT_THAT(page.source(), Not(HasSubstr("<script>␀")));
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include "result_tables/render/HtmlTables.h"

#include <gmock/gmock.h>

#include <limits>
#include <nlohmann/json.hpp>
#include <pugixml.hpp>

#include "support/TableTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr double s_nan = std::numeric_limits<double>::quiet_NaN();

/// A table of spot welds, in two sections: values beyond the limit of 500 N, one NaN, one failed join.
class HtmlTablesTest : public testing::Test {
 protected:
  HtmlTablesTest() {
    m_limits.collection->updateLimits({m_unit.getID()});
    m_container->title = "Joins";
    m_container->valuesAreValid = {{"Spot 2", false}};
    m_container->invalidValuesText = "Joining Failed";
    m_container->invalidValuesNameAppendix = " (failed)";
    std::vector const types = {TablePropertyLimitType::JoinNormalForce, TablePropertyLimitType::NoLimit};
    m_container->groups.push_back({"First", false, true, types, {"JoinForceN", "Other"}, {}});
    m_container->groups.push_back({"Second", false, true, types, {"JoinForceN", "Other"}, {}});
    m_container->groups[0].subGroups.push_back(
        {"Left", {{"Spot 1", {-600.5, 0.125}}, {"Spot 2", {900, 1}}, {"<b>&\"", {s_nan, 2}}}});
    m_container->groups[1].subGroups.push_back({"", {{"Spot 1", {250, 3}}}});
  }

  HtmlFile part(TextStyle const& style = {}) {
    auto const table = genTable(m_unit, m_container, m_limits);
    return genHtmlFile({"r.json", {"OP20"}, "", std::nullopt, 1}, {&table, 1}, 2, style);
  }

  /// The tables of the part.
  std::vector<pugi::xml_node> tables(TextStyle const& style = {}) {
    EXPECT_TRUE(m_document.load_string(part(style).tables.c_str(), pugi::parse_full));
    std::vector<pugi::xml_node> found;
    for (auto const& match : m_document.select_nodes("//table")) found.push_back(match.node());
    return found;
  }

  static std::vector<pugi::xml_node> rowsOf(pugi::xml_node const& table) {
    auto const rows = table.child("tbody").children("tr");
    return {rows.begin(), rows.end()};
  }

  static std::string textOf(pugi::xml_node const& node) {
    std::string text;
    for (auto const& match : node.select_nodes(".//text()")) text += match.node().value();
    return text;
  }

  static std::vector<std::string> cellsOf(pugi::xml_node const& row) {
    std::vector<std::string> cells;
    for (auto const& cell : row.children()) cells.push_back(textOf(cell));
    return cells;
  }

  SimulationUnit const m_unit{
      SimulationUnitId(*GUIdentifier::fromString("0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01")), "OP20 <1>"};
  std::shared_ptr<MaxValueGroupContainer> m_container =
      std::make_shared<MaxValueGroupContainer>(MaxValueGroupContainer::DataType::SpotWelds, m_unit.getID());
  ResultLimits m_limits;
  pugi::xml_document m_document;
};

TEST_F(HtmlTablesTest, HaveATableForEachSection) {
  auto const found = tables();
  ASSERT_EQ(found.size(), 2U);
  EXPECT_STREQ(found[0].attribute("id").value(), "t2x0");
  EXPECT_STREQ(found[1].attribute("id").value(), "t2x1");
  EXPECT_STREQ(found[0].attribute("data-unit").value(), "OP20 <1>");
  EXPECT_STREQ(found[0].attribute("data-unit-id").value(), "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01");
  EXPECT_STREQ(found[0].attribute("data-family").value(), "SpotWelds");
  EXPECT_STREQ(found[0].attribute("data-group").value(), "First");
  EXPECT_STREQ(found[0].attribute("data-rows").value(), "3");
  auto const unit = m_document.child("section");
  EXPECT_STREQ(unit.child("h2").child_value(), "OP20 <1>");
  EXPECT_STREQ(unit.child("p").child_value(), "r.json");
  EXPECT_STREQ(unit.child("section").child("h3").child_value(), "Joins");
}

TEST_F(HtmlTablesTest, HeadColumnsWithNameUnitAndLimit) {
  auto const found = tables();
  EXPECT_THAT(cellsOf(found[0].child("thead").child("tr")),
              ElementsAre("Element", "Group", "Max Normal ForceN≤ 500", "Other"));
  EXPECT_THAT(cellsOf(found[1].child("thead").child("tr")),
              ElementsAre("Element", "Max Normal ForceN≤ 500", "Other"));
  auto const column = found[1].child("thead").child("tr").child("th").next_sibling();
  EXPECT_STREQ(column.attribute("data-type").value(), "number");
  EXPECT_STREQ(column.attribute("data-key").value(), "JoinForceN");
  EXPECT_STREQ(column.attribute("data-unit").value(), "N");
  EXPECT_STREQ(column.attribute("data-limit").value(), "500");
  EXPECT_FALSE(column.next_sibling().attribute("data-limit"));
}

TEST_F(HtmlTablesTest, ShowValuesWithMarksAndHoldThemPlainly) {
  auto const rows = rowsOf(tables()[0]);
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_THAT(cellsOf(rows[0]), ElementsAre("Spot 1", "Left", "-600.5 !", "0.125"));
  EXPECT_STREQ(rows[0].attribute("class").value(), "f");
  EXPECT_STREQ(rows[0].attribute("data-v").value(), "-600.5 0.125");
  EXPECT_STREQ(rows[0].attribute("data-s").value(), "0 0");
  EXPECT_FALSE(rows[0].attribute("data-t"));
  EXPECT_STREQ(rows[0].child("td").next_sibling().attribute("class").value(), "u21 x");
  EXPECT_STREQ(rows[0].select_node(".//abbr").node().attribute("title").value(), "beyond its limit");

  EXPECT_THAT(cellsOf(rows[1]), ElementsAre("Spot 2 (failed) ?", "Left", "900", "1"));
  EXPECT_STREQ(rows[1].attribute("class").value(), "f i");
  EXPECT_FALSE(rows[1].child("td").next_sibling().attribute("class"));

  EXPECT_THAT(cellsOf(rows[2]), ElementsAre("<b>&\"", "Left", "NaN *", "2"));
  EXPECT_STREQ(rows[2].attribute("class").value(), "f");
  EXPECT_STREQ(rows[2].attribute("data-v").value(), "nan 2");
  EXPECT_STREQ(rows[2].attribute("data-s").value(), "- 0");
  EXPECT_STREQ(rows[2].child("td").next_sibling().attribute("class").value(), "n");

  auto const second = rowsOf(tables()[1]);
  EXPECT_THAT(cellsOf(second.at(0)), ElementsAre("Spot 1", "250", "3"));
  EXPECT_FALSE(second.at(0).attribute("class"));
  EXPECT_STREQ(second.at(0).child("td").attribute("class").value(), "u10");
}

TEST_F(HtmlTablesTest, CallAFailedElementAFindingWhereTheFamilySaysWhatThatMeans) {
  m_container->invalidValuesText.clear();
  EXPECT_STREQ(rowsOf(tables()[0]).at(1).attribute("class").value(), "i");
  EXPECT_EQ(part().counts.invalid, 0U);
}

TEST_F(HtmlTablesTest, SayWhereThereIsNoData) {
  auto const clamps =
      genClampTables(R"([{"quantity": "ClampClosingForce", "pairs": [[1, 0.5], [-2, 0.75]]}])");
  auto const html = genHtmlFile({"r.json", {"OP20"}, "", std::nullopt, 1}, clamps, 0, {}).tables;
  EXPECT_THAT(html, HasSubstr("<tr data-v=\"- -2 - -\" data-s=\"- 1 - -\" data-t=\"- 0.75 - -\">"
                              "<th>Clamp 1</th><td>–</td><td>-2</td><td>–</td>"
                              "<td>–</td></tr>"));
}

TEST_F(HtmlTablesTest, CountWhatIsFound) {
  auto const counts = part().counts;
  EXPECT_EQ(counts.exceeded, 1U);
  EXPECT_EQ(counts.notANumber, 1U);
  EXPECT_EQ(counts.invalid, 1U);
  EXPECT_EQ(counts.compared, 2U);
  EXPECT_EQ(counts.withoutData, 0U);
}

TEST_F(HtmlTablesTest, LinkTheHighestUtilisations) {
  auto const highest = part().highest;
  ASSERT_EQ(highest.size(), 2U);
  EXPECT_DOUBLE_EQ(highest[0].utilisation, 1.201);
  EXPECT_TRUE(highest[0].isExceeded);
  EXPECT_EQ(highest[0].anchor, "t2x0-r0-c0");
  EXPECT_EQ(highest[0].place, "OP20 <1>, Joins, First, Left, Spot 1, Max Normal Force");
  EXPECT_EQ(highest[0].value, "-600.5 N");
  EXPECT_EQ(highest[1].anchor, "t2x1-r0-c0");
  EXPECT_EQ(highest[1].place, "OP20 <1>, Joins, Second, Spot 1, Max Normal Force");
  auto const cell = rowsOf(tables()[0]).at(0).child("td").next_sibling();
  EXPECT_STREQ(cell.attribute("id").value(), "t2x0-r0-c0");
}

/// Section, row and column of the curves.
std::vector<std::vector<std::size_t>> curvesOf(HtmlFile const& part) {
  std::vector<std::vector<std::size_t>> places;
  for (auto const& curve : part.curves) {
    EXPECT_THAT(curve.curve.head, StartsWith("\"w\":"));
    places.push_back({curve.table, curve.row, curve.column});
  }
  return places;
}

TEST_F(HtmlTablesTest, HoldTheCurvesThatAreWanted) {
  using Place = std::vector<std::size_t>;
  EXPECT_THAT(curvesOf(part({.curves = Curves::none})), IsEmpty());
  EXPECT_THAT(curvesOf(part({.curves = Curves::findings})),
              ElementsAre(Place{0, 0, 0}, Place{0, 1, 0}, Place{0, 1, 1}, Place{0, 2, 0}));
  EXPECT_THAT(curvesOf(part()),
              ElementsAre(Place{0, 0, 0}, Place{0, 1, 0}, Place{0, 1, 1}, Place{0, 2, 0}, Place{1, 0, 0}));
  EXPECT_THAT(curvesOf(part({.curves = Curves::all})).size(), 8U);
}

/// Tables of bolts that take so much of their limit of 30 N, none of them a finding.
class HtmlCurves : public testing::Test {
 protected:
  HtmlFile part(std::size_t index, std::vector<double> const& values, TextStyle const& style = {}) {
    SimulationUnit const unit{SimulationUnitId(), "OP20"};
    auto const container =
        std::make_shared<MaxValueGroupContainer>(MaxValueGroupContainer::DataType::Bolts, unit.getID());
    container->groups.push_back(
        {"Forces", false, true, {TablePropertyLimitType::BoltNormalForce}, {"ClampNormalForce"}, {}});
    auto& items = container->groups[0].subGroups.emplace_back().items;
    for (double const value : values) items.push_back({"B" + std::to_string(items.size()), {value}});
    ResultLimits limits;
    limits.collection->updateLimits({unit.getID()});
    auto const table = genTable(unit, container, limits);
    return genHtmlFile({std::to_string(index), {}, "", std::nullopt, 1}, {&table, 1}, index, style);
  }

  static std::size_t count(std::string const& text, std::string const& part) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at) ++count;
    return count;
  }
};

TEST_F(HtmlCurves, AreThoseOfThe200HighestUtilisationsOfAllFiles) {
  std::vector<HtmlFile> files;
  files.push_back(part(0, std::vector<double>(150, 3.0)));
  files.push_back(part(1, std::vector<double>(150, 6.0)));
  EXPECT_EQ(files[0].curves.size(), 150U);
  auto const page = renderHtmlFiles("Title", std::move(files));
  EXPECT_EQ(count(page, "{\"w\":"), 200U);
  auto const curves = page.substr(page.find("id=\"curves\">"));
  EXPECT_THAT(curves, StartsWith("id=\"curves\">{\"shapes\":[["));
  EXPECT_THAT(curves, HasSubstr("]],\"t0x0\":{\"0\":{\"0\":{\"w\":"));
  EXPECT_THAT(curves, HasSubstr("}},\"t1x0\":{\"0\":{\"0\":{\"w\":"));
  EXPECT_THAT(curves, HasSubstr("\"149\":{\"0\":"));
  EXPECT_EQ(count(curves, "\"50\":{"), 1U) << "only of the second file";
  EXPECT_EQ(count(curves, "\"49\":{"), 2U);
}

TEST_F(HtmlCurves, ShareTheShapesThatTheyHaveInCommon) {
  std::vector<HtmlFile> files;
  files.push_back(part(0, {3.0, 3.0, 6.0}));
  auto const page = renderHtmlFiles("Title", std::move(files));
  auto const begin = page.find("id=\"curves\">") + 12;
  auto const curves = nlohmann::json::parse(page.substr(begin, page.find("</script>", begin) - begin));
  auto const same = curves["t0x0"]["0"]["0"]["s"];
  EXPECT_EQ(same, curves["t0x0"]["1"]["0"]["s"]);
  EXPECT_EQ(same, nlohmann::json::parse("[[0, 11]]")) << "in the order of the list";
  EXPECT_EQ(curves["shapes"].size(), 12U);
  EXPECT_EQ(curves["shapes"][0], nlohmann::json::parse(R"(["t", "about", 24, 16, "values: 1", "s"])"));
  auto const other = curves["t0x0"]["2"]["0"]["s"];
  EXPECT_EQ(other[0], nlohmann::json::parse("[0, 1]"));
  EXPECT_EQ(other.back()[1], "extremeText") << "that no other curve has";
}

TEST_F(HtmlCurves, AreThoseOfAllFindings) {
  std::vector<double> values(250, 3.0);
  values.insert(values.end(), 100, 31.0);
  std::vector<HtmlFile> files;
  files.push_back(part(0, values));
  files.push_back(part(1, {3.0}));
  EXPECT_EQ(count(renderHtmlFiles("Title", std::move(files)), "{\"w\":"), 200U) << "which are the highest";
  files = {};
  files.push_back(part(0, std::vector<double>(250, 31.0)));
  files.push_back(part(1, {3.0}));
  EXPECT_EQ(count(renderHtmlFiles("Title", std::move(files)), "{\"w\":"), 250U);
}

TEST_F(HtmlCurves, AreAllThatAreWanted) {
  std::vector<HtmlFile> files;
  files.push_back(part(0, std::vector<double>(250, 3.0), {.curves = Curves::all}));
  EXPECT_EQ(count(renderHtmlFiles("Title", std::move(files)), "{\"w\":"), 250U);
}

// ---- the page

class HtmlSummary : public HtmlTablesTest {
 protected:
  /// The element of the summary of this page.
  pugi::xml_node summary(Tables const& tables) {
    auto const page = renderTablesAsHtml(tables, {});
    EXPECT_TRUE(m_document.load_string(page.c_str(), pugi::parse_full));
    return m_document.select_node("//section[@id='summary']").node();
  }
  Tables tablesOf(std::string const& name, std::string const& limits) {
    return {{genTable(m_unit, m_container, m_limits)}, {{name, {"OP20", "OP30"}, limits, std::nullopt, 1}}};
  }
  static std::string verdict(pugi::xml_node const& summary) {
    return std::string(summary.child("p").attribute("class").value()) + ": " +
           summary.child("p").child_value();
  }
};

TEST_F(HtmlSummary, SaysWhatWasRead) {
  auto tables = tablesOf("a.json", "");
  tables.append(tablesOf("b <1>.json", "policy.json"));
  auto const files = rowsOf(summary(tables).child("table"));
  ASSERT_EQ(files.size(), 2U);
  EXPECT_THAT(cellsOf(files[0]), ElementsAre("a.json", "OP20, OP30", "default limits"));
  EXPECT_THAT(cellsOf(files[1]), ElementsAre("b <1>.json", "OP20, OP30", "policy.json"));
  EXPECT_EQ(m_document.select_nodes("//table[@class='data']").size(), 4U);
  EXPECT_TRUE(m_document.select_node("//table[@id='t1x1']"));
}

TEST_F(HtmlSummary, CountsAndListsTheHighest) {
  auto const page = summary(tablesOf("a.json", ""));
  EXPECT_EQ(verdict(page), "verdict found: There are findings");
  std::vector<std::string> counts;
  for (auto const& match : page.select_nodes("dl/div")) counts.push_back(textOf(match.node()));
  EXPECT_THAT(counts, ElementsAre("values beyond their limits1", "values with NaN1", "invalid elements1",
                                  "values compared2", "without data0"));
  auto const link = page.child("ol").child("li").child("a");
  EXPECT_STREQ(link.attribute("href").value(), "#t0x0-r0-c0");
  EXPECT_EQ(textOf(page.child("ol").child("li")),
            "OP20 <1>, Joins, First, Left, Spot 1, Max Normal Force120.1 %-600.5 N");
}

TEST_F(HtmlSummary, IsNoPraiseWhereNothingWasCompared) {
  m_limits = {};
  EXPECT_EQ(verdict(summary({{}, {{"a.json", {}, "", std::nullopt, 0}}})),
            "verdict nothing: Not one value was compared with a limit");
}

TEST_F(HtmlSummary, IsFineWhereNothingWasFound) {
  m_container->valuesAreValid.clear();
  m_container->groups.erase(m_container->groups.begin());
  EXPECT_EQ(verdict(summary(tablesOf("a.json", ""))), "verdict fine: Nothing found");
}

TEST_F(HtmlSummary, SaysWhatCouldNotBeRead) {
  auto tables = tablesOf("a.json", "");
  tables.files.push_back({"b.json", {}, {}, "b.json: cannot read", 0});
  auto const page = summary(tables);
  EXPECT_EQ(verdict(page), "verdict failed: Not every file could be read");
  EXPECT_STREQ(page.child("ul").child("li").child_value(), "b.json: cannot read");
  EXPECT_EQ(rowsOf(page.child("table")).size(), 1U);
}

TEST_F(HtmlSummary, NamesTheFirstOfManyUnits) {
  Tables tables;
  tables.files.push_back({"a.json", std::vector<std::string>(1000, "U"), "", std::nullopt, 0});
  EXPECT_THAT(cellsOf(rowsOf(summary(tables).child("table")).at(0)).at(1),
              testing::EndsWith("U, U, … (1000 in all)"));
}

TEST_F(HtmlSummary, ListsTenOfAllFiles) {
  Tables tables;
  for (int i = 0; i < 7; ++i) tables.append(tablesOf("f" + std::to_string(i), ""));
  auto const page = summary(tables);
  std::vector<std::string> links;
  for (auto const& match : page.select_nodes("ol/li/a"))
    links.emplace_back(match.node().attribute("href").value());
  EXPECT_THAT(links, ElementsAre("#t0x0-r0-c0", "#t1x0-r0-c0", "#t2x0-r0-c0", "#t3x0-r0-c0", "#t4x0-r0-c0",
                                 "#t5x0-r0-c0", "#t6x0-r0-c0", "#t0x1-r0-c0", "#t1x1-r0-c0", "#t2x1-r0-c0"));
  EXPECT_THAT(textOf(page.child("ol").child("li")), StartsWith("f0: OP20 <1>, Joins"));
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include "result_tables/render/HtmlRunTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <pugixml.hpp>

#include "support/RunTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

/// A page that must be XML.
class Page {
 public:
  explicit Page(RunTable const& table, TextStyle const& style = {})
      : m_text(renderRunTableAsHtml(table, style)) {
    EXPECT_TRUE(m_document.load_string(m_text.c_str(), pugi::parse_full));
  }

  [[nodiscard]] std::string const& source() const { return m_text; }
  [[nodiscard]] std::vector<std::string> texts(std::string const& path) const {
    std::vector<std::string> texts;
    for (auto const& found : m_document.select_nodes(path.c_str())) {
      auto& text = texts.emplace_back();
      for (auto const& part : found.node().select_nodes(".//text()")) text += part.node().value();
    }
    return texts;
  }
  [[nodiscard]] std::vector<std::string> attributes(std::string const& path) const {
    std::vector<std::string> values;
    for (auto const& found : m_document.select_nodes(path.c_str()))
      values.emplace_back(found.attribute().value());
    return values;
  }

 private:
  std::string m_text;
  pugi::xml_document m_document;
};

/// Runs of one bolt with these normal forces, of which those beyond 30 are marked.
RunTable forcesOf(std::vector<double> const& forces) {
  std::vector<RunValues> runs;
  runs.reserve(forces.size());
  for (auto const force : forces)
    runs.push_back(runOf("r" + std::to_string(runs.size() + 1),
                         {boltForces({runRow("B1", {runValue(force, std::abs(force) > 30)})})}));
  return tableOf(std::move(runs));
}

TEST(HtmlRunTable, BeginsWithWhatIsFound) {
  Page const page(genBoltRuns());
  EXPECT_THAT(page.texts("//title"), ElementsAre("Study"));
  EXPECT_THAT(page.texts("//p[starts-with(@class, 'verdict')]"), ElementsAre("There are findings"));
  EXPECT_THAT(page.texts("//dl[@class='counts']/div"),
              ElementsAre("runs2", "values beyond their limits1", "values with NaN1", "invalid elements0",
                          "values compared1", "without data0"));
  EXPECT_THAT(page.texts("//ol[@class='worst']/li"),
              ElementsAre("r2: OP20, Bolts, Forces, B3, Max Normal Forceinf %inf N",
                          "r1: OP20, Bolts, Forces, B1, Max Normal Force150 %-45 N"));
  EXPECT_THAT(page.attributes("//ol[@class='worst']/li/a/@href"), ElementsAre("#t1-r0-c1", "#t1-r1-c1"));
  EXPECT_THAT(page.texts("//td[@id='t1-r1-c1']"), ElementsAre("150 %"));
}

TEST(HtmlRunTable, ListsTheRuns) {
  Page const page(genBoltRuns());
  EXPECT_THAT(page.texts("//table[@id='t0']/thead/tr/th"),
              ElementsAre("Run", "File", "Added", "by", "speed", "No.", "Highest utilisation",
                          "Beyond limits", "NaN", "Invalid", "Compared", "Without data", "Values"));
  EXPECT_THAT(page.texts("//table[@id='t0']/tbody/tr[1]/*"),
              ElementsAre("r1", "r1.json", "2026-11-22T09:30:00Z", "Ann, \"A\"", "1", "1", "150 %", "1", "1",
                          "0", "1", "0", "4"));
  EXPECT_THAT(page.attributes("//table[@id='t0']/tbody/tr/@data-v"),
              ElementsAre("1 1.5 1 1 0 1 0 4", "2 - 0 0 0 0 0 0"));
}

TEST(HtmlRunTable, ListsStatisticsFromTheHighestUtilisationDown) {
  Page const page(genBoltRuns());
  EXPECT_THAT(page.texts("//table[@id='t1']/tbody/tr/th"), ElementsAre("B3", "B1", "B1", "B2", "B2"));
  EXPECT_THAT(page.texts("//table[@id='t1']/tbody/tr[2]/*"),
              ElementsAre("B1", "OP20", "Bolts", "Forces", "Max Normal Force [N]", "30", "150 %", "50 %", "2",
                          "-45", "15", "-15", "42.42641"));
  EXPECT_THAT(page.attributes("//table[@id='t1']/tbody/tr/@data-v"),
              ElementsAre("30 inf 1 1 inf inf inf -", "30 1.5 0.5 2 -45 15 -15 42.42640687119285",
                          "- - - 1 -0.5 -0.5 -0.5 -", "30 - - 0 - - - -", "- - - 1 0 0 0 -"));
  EXPECT_THAT(page.attributes("//table[@id='t1']/tbody/tr/@class"), ElementsAre("f", "f", "f"));
}

TEST(HtmlRunTable, DrawsValuesThroughTheRunsAndMarksThoseBeyondTheLimit) {
  Page const page(forcesOf({18, 24, 36}));
  EXPECT_THAT(page.texts("//figure/figcaption"),
              ElementsAre("OP20, Bolts, Forces, B1, Max Normal Force [N]"));
  EXPECT_THAT(page.attributes("//figure/svg/@aria-label"),
              ElementsAre("runs: 3, minimum 18 N, maximum 36 N, mean 26 N, standard deviation 9.165151 N, "
                          "beyond the limit 33.3 %, limit 30 N"));
  // 96 pixels high between 10 and 40.
  EXPECT_THAT(page.attributes("//figure/svg/path[@class='curve']/@d"), ElementsAre("M24 80L167 61L310 23"));
  EXPECT_THAT(page.attributes("//figure/svg/path[@class='beyond']/@d"), ElementsAre("M310 23h0"));
  EXPECT_THAT(page.attributes("//figure/svg/line[@class='limit']/@y1"), ElementsAre("42"));
}

TEST(HtmlRunTable, LeavesGapsWhereRunsHaveNoNumberAndPointsAtInfiniteOnes) {
  auto const nothing = runOf("r2", {boltForces({})});
  auto const infinite =
      runOf("r4", {boltForces({runRow("B1", {runValue(-std::numeric_limits<double>::infinity(), true)})})});
  Page const page(tableOf({runOf("r1", {boltForces({runRow("B1", {runValue(0)})})}), nothing,
                           runOf("r3", {boltForces({runRow("B1", {runValue(10)})})}), infinite}));
  EXPECT_THAT(page.attributes("//figure/svg/path[@class='curve']/@d"), ElementsAre("M24 106M215 10"));
  EXPECT_THAT(page.attributes("//figure/svg/path[@class='infiniteBeyond']/@d"),
              ElementsAre("M310 110l4 -8h-8z"));
  EXPECT_THAT(page.attributes("//figure/svg/path[@class='infinite']/@d"), IsEmpty());
}

TEST(HtmlRunTable, DrawsLimitsThatChangeFromRunToRun) {
  auto second = runOf("r2", {boltForces({runRow("B1", {runValue(40)})})});
  second.sections.front().columns.front().limit = ColumnLimit{40, "N"};
  Page const page(tableOf({runOf("r1", {boltForces({runRow("B1", {runValue(20)})})}), second}));
  EXPECT_THAT(page.attributes("//figure/svg/path[@class='limit']/@d"),
              ElementsAre("M24 58L167 58L167 10L310 10"));
  EXPECT_THAT(page.attributes("//figure/svg/line[@class='limit']/@y1"), IsEmpty());
}

TEST(HtmlRunTable, DrawsTheCurvesThatAreAskedFor) {
  auto const pictures = [](Curves curves) {
    TextStyle style;
    style.curves = curves;
    return Page(genBoltRuns(), style).attributes("//figure/svg/@role").size();
  };
  EXPECT_EQ(pictures(Curves::none), 0U);
  EXPECT_EQ(pictures(Curves::findings), 2U) << "no picture where there is no number";
  EXPECT_EQ(pictures(Curves::notable), 2U);
  EXPECT_EQ(pictures(Curves::all), 4U);
}

TEST(HtmlRunTable, LeavesOutWhatABrowserHasNoRoomForAndSaysSo) {
  std::vector<RunRow> rows;
  rows.reserve(2003);
  for (int i = 0; i < 2003; ++i)
    rows.push_back(runRow("B" + std::to_string(i), {runValue(i == 2002 ? 29 : 40, i != 2002)}));
  std::vector<RunValues> runs;
  runs.push_back(runOf("first", {boltForces(rows)}));
  for (int i = 0; i < 2001; ++i) runs.push_back(runOf("r" + std::to_string(i), {}));
  Page const page(tableOf(std::move(runs)));
  EXPECT_THAT(page.texts("//table[@id='t0']/tbody/tr/th"), SizeIs(2000));
  EXPECT_THAT(page.texts("//table[@id='t1']/tbody/tr/th"), SizeIs(2000));
  EXPECT_THAT(page.texts("//figure"), SizeIs(1000));
  EXPECT_THAT(
      page.texts("//p[@class='note']"),
      ElementsAre("These are the last 2000 of 2002 runs; the form csv has all.",
                  "Runs stand from left to right by their numbers, in the order in which they were added.",
                  "These are the 1000 of 2002 values that take the most of their limits.",
                  "These are the 2000 of 2003 values that take the most of their limits; the form csv has "
                  "all with --statistics."));
}

TEST(HtmlRunTable, ShowsNamesAsTextWhateverTheyHold) {
  auto run = runOf("<b>\n", {boltForces({runRow("<script>", {runValue(40, true)}, "a&b")}, "\"U\"")});
  run.run.labels = {{"<i>", "'&'"}};
  Page const page(tableOf({std::move(run)}));
  EXPECT_THAT(page.texts("//table[@id='t0']/tbody/tr/th"), ElementsAre("<b>\u240A"));
  EXPECT_THAT(page.texts("//table[@id='t1']/tbody/tr/*[position() < 6]"),
              ElementsAre("<script>", "\"U\"", "Bolts", "Forces", "a&b"));
  EXPECT_THAT(page.source(),
              AllOf(StartsWith("<!DOCTYPE html>"), Not(HasSubstr("<b>")), Not(HasSubstr("<i>"))));
}

TEST(HtmlRunTable, IsAPageWithoutRunsToo) {
  Page const page(tableOf({}));
  EXPECT_THAT(page.texts("//p[starts-with(@class, 'verdict')]"),
              ElementsAre("Not one value was compared with a limit"));
  EXPECT_THAT(page.texts("//figure"), IsEmpty());
}

}  // namespace
}  // namespace Kestrel::ResultTables

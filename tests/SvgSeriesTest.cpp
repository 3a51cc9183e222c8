#include "result_tables/render/SvgSeries.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <pugixml.hpp>

#include "support/SeriesTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::AllOf;
using testing::AnyOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// A document that must be XML.
class Svg {
 public:
  explicit Svg(std::vector<TableSeries> const& list) : m_text(renderSeriesAsSvg(list)) {
    EXPECT_TRUE(m_document.load_string(m_text.c_str()));
  }

  [[nodiscard]] std::string const& source() const { return m_text; }
  [[nodiscard]] std::vector<std::string> texts(char const* path = "//text") const {
    std::vector<std::string> texts;
    for (auto const& found : m_document.select_nodes(path)) texts.emplace_back(found.node().text().get());
    return texts;
  }
  [[nodiscard]] std::vector<std::string> attributes(char const* path) const {
    std::vector<std::string> values;
    for (auto const& found : m_document.select_nodes(path)) values.emplace_back(found.attribute().value());
    return values;
  }
  /// The names of all elements, each once.
  [[nodiscard]] std::vector<std::string> elements() const {
    std::vector<std::string> names;
    for (auto const& found : m_document.select_nodes("//*")) {
      std::string const name = found.node().name();
      if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
    }
    return names;
  }

 private:
  std::string m_text;
  pugi::xml_document m_document;
};

TEST(SvgSeries, AreOneDocumentOfPlainShapes) {
  Svg const svg({withLimit(seriesOf({0, 10, -40.5}), 30), seriesOf({0, s_infinity, s_nan})});
  EXPECT_THAT(svg.source(), HasSubstr("<svg xmlns=\"http://www.w3.org/2000/svg\" "));
  EXPECT_THAT(svg.attributes("/svg/@font-family"), ElementsAre("sans-serif"));
  EXPECT_THAT(svg.attributes("/svg/@viewBox"), ElementsAre("0 0 800 704"));
  EXPECT_THAT(svg.attributes("/svg/@height"), ElementsAre("704"));
  EXPECT_THAT(svg.elements(), Each(AnyOf("svg", "g", "rect", "title", "text", "line", "path", "circle")));
  EXPECT_THAT(svg.source(), AllOf(Not(HasSubstr("href")), Not(HasSubstr("url(")), Not(HasSubstr("style"))));
  EXPECT_THAT(svg.attributes("/svg/rect/@fill"), ElementsAre("#ffffff")) << "readable on any ground";
}

TEST(SvgSeries, HaveAChartEach) {
  Svg const svg({seriesOf({0, 10}), seriesOf({}), seriesOfRanges({{-1, 2}})});
  EXPECT_THAT(svg.texts("/svg/g/title"), ElementsAre("OP20: Bolts, Forces, B1, Max Normal Force [N]",
                                                     "OP20: Bolts, Forces, B1, Max Normal Force [N]",
                                                     "OP20: Line Joins, Forces, Seam, Max Normal Force [N]"));
  EXPECT_THAT(svg.texts("/svg/g/text[2]"), ElementsAre("r.json, values: 2", "r.json, no data",
                                                       "r.json, records: 1, minimum and maximum of each"));
}

TEST(SvgSeries, DrawTheCurveInItsAxes) {
  Svg const svg({seriesOf({0, 5, 10}, {0, 0.5, 1})});
  EXPECT_THAT(svg.texts(), ElementsAre("OP20: Bolts, Forces, B1, Max Normal Force [N]", "r.json, values: 3",
                                       "0", "2", "4", "6", "8", "10", "0", "0.2", "0.4", "0.6", "0.8", "1",
                                       "time", "10 N, step 2, time 1"));
  EXPECT_THAT(svg.attributes("//path[@stroke-width='1.5']/@d"), ElementsAre("M46 308L411 198L776 88"));
  EXPECT_THAT(svg.attributes("//path[@stroke-width='4']/@d"), ElementsAre("M46 308h0M411 198h0M776 88h0"));
  EXPECT_THAT(svg.attributes("//circle/@cx"), ElementsAre("776"));
  EXPECT_THAT(svg.attributes("//circle/@cy"), ElementsAre("88"));
}

TEST(SvgSeries, LeaveGapsAndMarkInfiniteValues) {
  Svg const svg({seriesOf({0, s_nan, 10, 10, s_infinity, -s_infinity})});
  EXPECT_THAT(svg.attributes("//path[@stroke-width='1.5']/@d"), ElementsAre("M46 308M338 88L484 88"));
  EXPECT_THAT(svg.attributes("//path[@fill!='none']/@d"), ElementsAre("M630 84l4 8h-8zM776 312l4 -8h-8z"));
}

TEST(SvgSeries, DrawBothLimitsWithTheirNumbers) {
  Svg const svg({withLimit(seriesOf({-60, 60}), 30)});
  EXPECT_THAT(svg.attributes("//line[@stroke-dasharray]/@y1"), ElementsAre("165", "231"));
  EXPECT_THAT(svg.texts("//text[@fill='#b45309']"), ElementsAre("limit 30 N", "limit -30 N"));
  Svg const close({withLimit(seriesOf({-600, 600}), 3)});
  EXPECT_EQ(close.attributes("//line[@stroke-dasharray]/@y1").size(), 2U);
  EXPECT_THAT(close.texts("//text[@fill='#b45309']"), ElementsAre("limit 3 N"))
      << "two would lie on each other";
}

TEST(SvgSeries, ShowAnExceededValueInRed) {
  Svg const svg({withLimit(seriesOf({0, -40.5}), 30)});
  EXPECT_THAT(svg.attributes("//circle/@stroke"), ElementsAre("#c81e1e"));
  EXPECT_THAT(svg.texts("//text[@fill='#c81e1e']"), ElementsAre("-40.5 N, step 1"));
  EXPECT_THAT(Svg({withLimit(seriesOf({0, -20}), 30)}).texts("//text[@fill='#c81e1e']"), IsEmpty());
}

TEST(SvgSeries, PutTheTextOfTheValueBeyondTheCurve) {
  auto const heightOf = [](TableSeries const& series) {
    return Svg({series}).attributes("//text[@paint-order]/@y").at(0);
  };
  EXPECT_EQ(heightOf(seriesOf({0, 10})), "79") << "above the highest value, which is at 88";
  EXPECT_EQ(heightOf(seriesOf({0, -9})), "304") << "below the lowest, which is at 286";
  EXPECT_EQ(heightOf(seriesOf({0, -10})), "299") << "above it where it lies on the axis, at 308";
}

TEST(SvgSeries, EscapeNames) {
  auto series = seriesOf({1});
  series.unit = "<script>\"&\x01\xFF";
  Svg const svg({series});
  EXPECT_THAT(svg.source(), HasSubstr("&lt;script&gt;"));
  EXPECT_THAT(svg.source(), Not(HasSubstr("<script")));
  EXPECT_THAT(svg.texts(), Contains("<script>\"&␁\uFFFD: Bolts, Forces, B1, Max Normal Force [N]"));
}

TEST(SvgSeries, TakeNoMoreRoomThanThePictureNeeds) {
  std::vector<double> values;
  for (std::size_t i = 0; i < 200'000; ++i) values.push_back(i % 2 == 0 ? -1.0 : 1.0);
  auto const path = Svg({seriesOf(std::move(values))}).attributes("//path/@d");
  ASSERT_EQ(path.size(), 1U) << "no dots";
  EXPECT_LT(path[0].size(), 100'000U);
}

TEST(SvgSeries, SayWhenThereAreNone) { EXPECT_THAT(Svg({}).texts(), ElementsAre("no series")); }

}  // namespace
}  // namespace Kestrel::ResultTables

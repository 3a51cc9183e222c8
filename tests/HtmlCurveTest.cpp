#include "result_tables/render/HtmlCurve.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/SeriesTesting.h"

namespace Kestrel::ResultTables {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::string curveAsJson(TableSeries const& series, char decimalMark) {
  auto const curve = genHtmlCurve(series, decimalMark);
  return fmt::format("{{{},\"s\":[{}]}}", curve.head, fmt::join(curve.shapes, ","));
}

json curveOf(TableSeries const& series, char decimalMark = '.') {
  return json::parse(curveAsJson(series, decimalMark));
}

/// The shapes of one role.
std::vector<std::string> shapesOf(json const& curve, std::string const& role) {
  std::vector<std::string> shapes;
  for (auto const& shape : curve["s"]) {
    if (shape[1] == role) shapes.push_back(shape.dump());
  }
  return shapes;
}

TEST(HtmlCurve, IsAnObjectOnOneLine) {
  EXPECT_EQ(curveAsJson(seriesOf({7}), '.'),
            R"({"w":640,"h":260,"a":"7 N, step 0, values: 1",)"
            R"("s":[["t","about",24,16,"values: 1","s"],)"
            R"(["l","grid",39,132,616,132],["t","label",31,136,"7","e"],)"
            R"(["l","tick",328,218,328,223],["t","label",328,236,"0","m"],)"
            R"(["l","axis",39,218,616,218],["l","axis",39,218,39,46],["t","label",328,252,"step","m"],)"
            R"(["p","curve","M328 132"],["p","dots"],)"
            R"(["c","extreme",328,132,5],["t","extremeText",337,123,"7 N, step 0","s"]]})");
}

TEST(HtmlCurve, HasPathsOfStepsInWholePixels) {
  auto const curve = curveOf(seriesOf({0, 5, 10, 5, s_nan, 0, 10}));
  EXPECT_THAT(shapesOf(curve, "curve"),
              ElementsAre(R"(["p","curve","M46 218l95-86 95-86 95 86M521 218l95-172"])"));
  EXPECT_THAT(shapesOf(curve, "dots"), ElementsAre(R"(["p","dots"])")) << "one at each of these points";
}

TEST(HtmlCurve, HasAPathOfTheDotsThatNoLineLeadsTo) {
  std::vector<double> values(200, 0.0);
  values[1] = s_nan;
  values[3] = s_nan;
  values[2] = 10;
  EXPECT_THAT(shapesOf(curveOf(seriesOf(values)), "dots"),
              ElementsAre(R"(["p","dots","M46 218h0M52 46h0"])"));
}

TEST(HtmlCurve, HasNoMorePointsThanAreWanted) {
  std::vector<double> values;
  for (std::size_t i = 0; i < 1000; ++i) values.push_back(std::sin(static_cast<double>(i)));
  auto const pointsOf = [&](std::size_t most) {
    auto const shapes = genHtmlCurve(seriesOf(values), '.', most).shapes;
    auto const path = std::find_if(shapes.begin(), shapes.end(),
                                   [](auto const& shape) { return shape.starts_with("[\"p\",\"curve\""); });
    std::size_t numbers = 0;
    for (std::size_t i = 1; i < path->size(); ++i) {
      auto const isDigit = [&](std::size_t at) {
        return std::isdigit(static_cast<unsigned char>((*path)[at])) != 0;
      };
      if (isDigit(i) && !isDigit(i - 1)) ++numbers;
    }
    return numbers / 2;
  };
  EXPECT_LE(pointsOf(32), 32U);
  EXPECT_GT(pointsOf(32), 16U);
  EXPECT_LE(pointsOf(240), 240U);
  EXPECT_GT(pointsOf(240), 120U);
}

TEST(HtmlCurve, DoesNotAddUpWhatRoundingLeavesOut) {
  std::vector<double> values;
  for (std::size_t i = 0; i < 200; ++i) values.push_back(i % 2 == 0 ? 0 : 1);
  values.back() = 0;
  auto const shapes = shapesOf(curveOf(seriesOf(values)), "curve");
  ASSERT_EQ(shapes.size(), 1U);
  auto const text = json::parse(shapes[0])[2].get<std::string>();
  std::size_t at = text.find('l') + 1;
  int x = 53;
  int y = 218;
  EXPECT_EQ(text.substr(0, at), "M53 218l");
  while (at < text.size()) {
    std::size_t length = 0;
    x += std::stoi(text.substr(at), &length);
    at += length;
    y += std::stoi(text.substr(at), &length);
    at += length;
  }
  EXPECT_EQ(x, 616);
  EXPECT_EQ(y, 218);
}

TEST(HtmlCurve, FillsTriangles) {
  EXPECT_THAT(shapesOf(curveOf(seriesOf({0, s_infinity, -s_infinity, 10})), "infinite"),
              ElementsAre(R"(["p","infinite","M236 42l4 8-8 0zM426 222l4-8-8 0z"])"));
}

TEST(HtmlCurve, HasLimitsAndTheExceededExtreme) {
  auto const curve = curveOf(withLimit(seriesOf({0, -40.5, 1}), 30));
  EXPECT_THAT(shapesOf(curve, "limit"),
              ElementsAre(R"(["l","limit",53,63,531,63])", R"(["l","limit",53,166,531,166])"));
  EXPECT_THAT(shapesOf(curve, "limitText"), ElementsAre(R"(["t","limitText",539,67,"limit 30 N","s"])",
                                                        R"(["t","limitText",539,170,"limit -30 N","s"])"));
  EXPECT_THAT(shapesOf(curve, "extremeExceeded"), ElementsAre(R"(["c","extremeExceeded",292,184,5])"));
  EXPECT_THAT(shapesOf(curve, "extreme"), IsEmpty());
  EXPECT_EQ(curve["a"],
            "-40.5 N, step 1, beyond its limit, limit 30 N, "
            "values: 3");
}

TEST(HtmlCurve, WithoutNumbersSaysSo) {
  EXPECT_EQ(curveAsJson(seriesOf({}), '.'), R"({"w":640,"h":62,"a":"no data",)"
                                            R"("s":[["t","about",24,16,"no data","s"]]})");
}

TEST(HtmlCurve, HasTheDecimalMarkOfTheReader) {
  auto const curve = curveOf(withLimit(seriesOf({0, 1.25}, {0, 0.5}), 0.75), ',');
  EXPECT_EQ(curve["a"],
            "1,25 N, step 1, time 0,5, beyond its limit, "
            "limit 0,75 N, values: 2");
  EXPECT_THAT(curve["s"].dump(), Not(HasSubstr(".")));
}

TEST(HtmlCurve, HasNoCharacterThatMeansSomethingInHtml) {
  auto series = seriesOf({1});
  series.column.unit = "</script><!-- & ]]> \"\\\x01\xFF";
  auto const text = curveAsJson(series, '.');
  EXPECT_THAT(text, AllOf(Not(HasSubstr("<")), Not(HasSubstr(">")), Not(HasSubstr("&"))));
  EXPECT_EQ(json::parse(text)["a"], "1 </script><!-- & ]]> \"\\␁\uFFFD, step 0, values: 1");
}

TEST(HtmlCurve, StaysSmall) {
  std::vector<double> values;
  for (std::size_t i = 0; i < 100'000; ++i) values.push_back(std::sin(static_cast<double>(i) * 0.7));
  EXPECT_LT(curveAsJson(seriesOf(values), '.').size(), 3'000U);
}

}  // namespace
}  // namespace Kestrel::ResultTables

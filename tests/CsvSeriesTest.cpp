#include "result_tables/render/CsvSeries.h"

#include <gtest/gtest.h>

#include "support/SeriesTesting.h"

namespace Kestrel::ResultTables {
namespace {

constexpr char const* s_header =
    "file,unit,unitId,family,group,subGroup,item,key,column,step,time,value,minimum,maximum\r\n";
std::string const s_bolt =
    "r.json,OP20,0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01,Bolts,Forces,,B1,ClampNormalForce,Max Normal Force,";

TEST(CsvSeries, HaveOneRecordPerValue) {
  EXPECT_EQ(renderCsv(std::vector{seriesOf({0, -812.4, s_nan, s_infinity, -s_infinity})}, s_plainCsv),
            s_header + s_bolt + "0,,0,,\r\n" + s_bolt + "1,,-812.4,,\r\n" + s_bolt + "2,,nan,,\r\n" + s_bolt +
                "3,,inf,,\r\n" + s_bolt + "4,,-inf,,\r\n");
}

TEST(CsvSeries, HaveTheTimesThatThereAre) {
  EXPECT_EQ(renderCsv(std::vector{seriesOf({1, 2}, {0.1, s_nan})}, s_plainCsv),
            s_header + s_bolt + "0,0.1,1,,\r\n" + s_bolt + "1,,2,,\r\n");
}

TEST(CsvSeries, HaveMinimumAndMaximumOfLineJoins) {
  std::string const seam =
      "r.json,OP20,0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01,LineWelds,Forces,,Seam,ClampNormalForce,Max Normal "
      "Force,";
  EXPECT_EQ(renderCsv(std::vector{seriesOfRanges({{-0.25, 0.5}, {-1, 0}})}, s_plainCsv),
            s_header + seam + "2,,0.5,-0.25,0.5\r\n" + seam + "3,,-1,-1,0\r\n");
}

TEST(CsvSeries, HaveNoRecordWithoutData) {
  EXPECT_EQ(renderCsv(std::vector{seriesOf({})}, s_plainCsv), s_header);
  EXPECT_EQ(renderCsv(std::vector<TableSeries>(), s_plainCsv), s_header);
}

TEST(CsvSeries, QuoteFieldsThatNeedItAndReplaceBadBytes) {
  auto series = seriesOf({1});
  series.item = "a,\"b\"\xFF";
  series.subGroup = "Left";
  EXPECT_EQ(renderCsv(std::vector{series}, s_plainCsv),
            std::string(s_header) +
                "r.json,OP20,0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01,Bolts,Forces,Left,\"a,\"\"b\"\"\uFFFD\","
                "ClampNormalForce,Max Normal Force,0,,1,,\r\n");
}

TEST(CsvSeries, SpeakTheDialectThatIsAskedFor) {
  auto const text = renderCsv(std::vector{seriesOf({1.5}, {0.25})}, s_excelDeCsv);
  EXPECT_EQ(
      text.substr(text.find('\n') + 1),
      "r.json;OP20;0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01;Bolts;Forces;;B1;ClampNormalForce;Max Normal Force;"
      "0;0,25;1,5;;\r\n");
}

}  // namespace
}  // namespace Kestrel::ResultTables

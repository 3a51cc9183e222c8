#include "result_tables/render/CsvRunTable.h"

#include <gtest/gtest.h>

#include "support/RunTesting.h"

namespace Kestrel::ResultTables {
namespace {

TEST(CsvRunTable, HasARecordForEachRunAndAFieldForEachValue) {
  EXPECT_EQ(renderCsv(genBoltRuns(), s_plainCsv),
            "label/by,label/speed,run,file,added,OP20/Bolts/Forces//B1/0/ClampNormalForce,"
            "OP20/Bolts/Forces//B1/0/ClampClosingForce,OP20/Bolts/Forces//B3/0/ClampNormalForce,"
            "OP20/Bolts/Forces//B2/0/ClampNormalForce,OP20/Bolts/Forces//B2/0/ClampClosingForce\r\n"
            "\"Ann, \"\"A\"\"\",1,r1,r1.json,2026-11-22T09:30:00Z,-45,,,nan,0\r\n"
            ",2,r2,r2.json,2026-11-22T09:30:00Z,15,-0.5,inf,,\r\n");
}

TEST(CsvRunTable, IsWrittenInEachDialect) {
  auto const table = tableOf({runOf("a", {boltForces({runRow("B1", {runValue(1.5)})})})});
  EXPECT_EQ(renderCsv(table, s_excelDeCsv),
            "run;file;added;OP20/Bolts/Forces//B1/0/ClampNormalForce\r\n"
            "a;a.json;2026-11-22T09:30:00Z;1,5\r\n");
}

TEST(CsvRunTable, HasARecordOfStatisticsForEachValue) {
  auto const table = tableOf({runOf("a", {boltForces({runRow("B1", {runValue(-45, true)})})}),
                              runOf("b", {boltForces({runRow("B1", {runValue(15)})})}),
                              runOf("c", {boltForces({runRow("B1", {noData(), noData()}, "Left")})})});
  std::string const unit = "OP20,0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01,Bolts,Forces,";
  EXPECT_EQ(
      renderStatisticsAsCsv(table, s_plainCsv),
      "unit,unitId,family,group,subGroup,item,occurrence,key,column,valueUnit,limit,count,minimum,maximum,"
      "mean,standardDeviation,shareBeyondLimit,worstUtilisation\r\n" +
          unit + ",B1,0,ClampNormalForce,Max Normal Force,N,30,2,-45,15,-15,42.42640687119285,0.5,1.5\r\n" +
          unit + "Left,B1,0,ClampNormalForce,Max Normal Force,N,30,0,,,,,,\r\n" + unit +
          "Left,B1,0,ClampClosingForce,Max Closing Force,N,,0,,,,,,\r\n");
}

}  // namespace
}  // namespace Kestrel::ResultTables

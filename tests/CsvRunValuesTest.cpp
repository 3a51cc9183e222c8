#include "result_tables/render/CsvRunValues.h"

#include <gtest/gtest.h>

#include "support/RunTesting.h"

namespace Kestrel::ResultTables {
namespace {

TEST(CsvRunValues, HaveARecordForEachValueOfEachRun) {
  CsvRunValues csv(s_plainCsv);
  auto value = runValue(-45, true);
  value.origin.step = 3;
  value.origin.companion = 0.25;
  auto const first = csv.write(
      runOf("r1", {boltForces({runRow("B1", {value, noData()}), runRow("B2", {onlyNaN()}, "Left", false)})}));
  std::string const unit = "OP20,0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01,Bolts,Forces,";
  EXPECT_EQ(
      first,
      "run,file,unit,unitId,family,group,subGroup,item,occurrence,valid,key,column,value,valueUnit,limit,"
      "exceeded,step,time,count,nans\r\n"
      "r1,r1.json," +
          unit +
          ",B1,0,true,ClampNormalForce,Max Normal Force,-45,N,30,true,3,0.25,1,0\r\n"
          "r1,r1.json," +
          unit +
          ",B1,0,true,ClampClosingForce,Max Closing Force,0,N,,false,,,0,0\r\n"
          "r1,r1.json," +
          unit + "Left,B2,0,false,ClampNormalForce,Max Normal Force,nan,N,30,false,,,0,2\r\n");
  EXPECT_EQ(csv.write(runOf("a,b", {boltForces({runRow("B1", {runValue(1)})})})),
            "\"a,b\",\"a,b.json\"," + unit +
                ",B1,0,true,ClampNormalForce,Max Normal Force,1,N,30,false,0,,1,0\r\n");
  EXPECT_EQ(csv.finish(), "");
}

TEST(CsvRunValues, HaveAHeaderWithoutRuns) {
  EXPECT_EQ(
      CsvRunValues(s_excelDeCsv).finish(),
      "run;file;unit;unitId;family;group;subGroup;item;occurrence;valid;key;column;value;valueUnit;limit;"
      "exceeded;step;time;count;nans\r\n");
}

}  // namespace
}  // namespace Kestrel::ResultTables

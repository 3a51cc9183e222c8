#include "result_tables/render/XlsxRunTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/RunTesting.h"
#include "support/WorkbookTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

TEST(XlsxRunTable, HasSheetsOfRunsValuesAndStatistics) {
  Workbook const workbook(renderRunTableAsXlsx(genBoltRuns()));
  EXPECT_THAT(workbook.part("xl/workbook.xml"), AllOf(HasSubstr("<sheet name=\"Runs\" sheetId=\"1\""),
                                                      HasSubstr("<sheet name=\"Values\" sheetId=\"2\""),
                                                      HasSubstr("<sheet name=\"Statistics\" sheetId=\"3\"")));
  EXPECT_THAT(workbook.part("xl/worksheets/sheet1.xml"),
              AllOf(HasSubstr("<t>by</t></is></c><c r=\"E1\" s=\"1\" t=\"inlineStr\"><is><t>speed</t>"),
                    HasSubstr("<row r=\"2\"><c r=\"A2\" t=\"inlineStr\"><is><t>r1</t></is></c>"),
                    HasSubstr("<c r=\"F2\"><v>4</v></c><c r=\"G2\"><v>1</v></c><c r=\"H2\"><v>0</v></c>"
                              "<c r=\"I2\"><v>1</v></c><c r=\"J2\"><v>1</v></c><c r=\"K2\"><v>0</v></c>"),
                    HasSubstr("<v>1.5</v></c></row>")));
  EXPECT_THAT(workbook.part("xl/worksheets/sheet2.xml"),
              AllOf(HasSubstr("<t>OP20/Bolts/Forces//B1/0/ClampNormalForce</t>"),
                    HasSubstr("<v>-45</v></c><c r=\"E2\""), HasSubstr("<t>NaN</t></is></c><c r=\"F2\""),
                    HasSubstr("<t>inf</t></is></c></row>"), HasSubstr("<autoFilter ref=\"A1:F3\"/>")));
  EXPECT_THAT(
      workbook.part("xl/worksheets/sheet3.xml"),
      AllOf(HasSubstr("<t>B1</t></is></c><c r=\"G2\"><v>0</v></c>"), HasSubstr("<v>42.42640687119285</v>"),
            HasSubstr("<autoFilter ref=\"A1:Q6\"/>"), Not(HasSubstr("<row r=\"7\">"))));
}

TEST(XlsxRunTable, SaysWhereASheetHasTooFewColumns) {
  EXPECT_THAT(Workbook(renderXlsx(genBoltRuns(), 6)).part("xl/worksheets/sheet2.xml"),
              HasSubstr("ClampNormalForce"));
  EXPECT_THAT(
      Workbook(renderXlsx(genBoltRuns(), 5)).part("xl/worksheets/sheet2.xml"),
      AllOf(HasSubstr("<t>A sheet has no room for 5 values side by side. The form csv has them, and this one "
                      "with --long.</t>"),
            Not(HasSubstr("ClampNormalForce"))));
}

TEST(XlsxRunTable, IsTheSameForTheSameTable) {
  EXPECT_EQ(renderRunTableAsXlsx(genBoltRuns()), renderRunTableAsXlsx(genBoltRuns()));
  EXPECT_THAT(Workbook(renderRunTableAsXlsx(tableOf({}))).part("xl/workbook.xml"), HasSubstr("Statistics"));
}

TEST(XlsxRunValues, HaveARowForEachValueOfEachRunOnAsManySheetsAsTheyNeed) {
  XlsxRunValues writer(3);
  EXPECT_EQ(writer.write(runOf("r1", {boltForces({runRow("B1", {runValue(-45, true), noData()})})})), "");
  EXPECT_EQ(writer.write(runOf("r2", {boltForces({runRow("B1", {onlyNaN()})})})), "");
  Workbook const workbook(writer.finish());
  EXPECT_THAT(workbook.part("xl/workbook.xml"), AllOf(HasSubstr("\"Values\""), HasSubstr("\"Values (2)\"")));
  EXPECT_THAT(
      workbook.part("xl/worksheets/sheet1.xml"),
      AllOf(HasSubstr("<v>-45</v></c><c r=\"N2\""), HasSubstr("<c r=\"O2\" s=\"1\"><v>30</v></c>"),
            HasSubstr("<c r=\"L3\" t=\"s\"><v>10</v></c><c r=\"N3\""), Not(HasSubstr("<row r=\"4\">"))));
  EXPECT_THAT(workbook.part("xl/worksheets/sheet2.xml"), HasSubstr("<t>NaN</t></is></c><c r=\"N2\""));
}

}  // namespace
}  // namespace Kestrel::ResultTables

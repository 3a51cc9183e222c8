#include "result_tables/render/XlsxTables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/TableTesting.h"
#include "support/WorkbookTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// Three bolts in two sections: values, NaN, no data; the normal force has the default limit of 30 N.
Tables genBolts(std::string const& file) {
  auto const values = [](std::string const& name, std::string const& series) {
    return R"({"id": ")" + name + R"(", "kind": "bolt", "series": [)" + series + "]}";
  };
  auto const text = R"({"format": "simulation-results", "version": 1, "units": [
      {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP20", "tools": [)" +
                    values("B1", R"({"quantity": "ClampNormalForce", "values": [-45, 3]},
                                    {"quantity": "ClampClosingForce", "values": ["-Infinity"]})") +
                    ", " + values("B2", R"({"quantity": "ClampNormalForce", "values": [null, 15]})") + ", " +
                    values("B3", R"({"quantity": "ClampNormalForce", "values": [null]})") + "]}]}";
  static std::deque<ResultsFile> files;
  auto const& results = files.emplace_back(readResults(file, text));
  ResultLimits limits;
  limits.collection->updateLimits({results.units.front().unit->getID()});
  return genTables(results, {}, limits);
}

Workbook workbookOf(Tables const& tables, std::size_t rowsPerSheet = s_mostXlsxRows) {
  return Workbook(renderXlsx(tables, rowsPerSheet));
}

TEST(XlsxTables, HaveASheetForEachFamilyBehindSummaryAndLimits) {
  auto const workbook = workbookOf(genBolts("r.json"));
  EXPECT_THAT(workbook.part("xl/workbook.xml"),
              AllOf(HasSubstr("<sheet name=\"Summary\" sheetId=\"1\" r:id=\"rId1\"/>"
                              "<sheet name=\"Limits\" sheetId=\"2\" r:id=\"rId2\"/>"
                              "<sheet name=\"Bolts\" sheetId=\"3\" r:id=\"rId3\"/></sheets>"),
                    HasSubstr("fullCalcOnLoad=\"1\"")));
}

TEST(XlsxTables, HaveNoSheetOfLimitsWhereThereAreNone) {
  auto tables = genBolts("r.json");
  tables.tables.clear();
  EXPECT_THAT(workbookOf(tables).part("xl/workbook.xml"), Not(HasSubstr("Limits")));
}

TEST(XlsxTables, ShowValuesWithLimitsAndUtilisationsThatFollowThem) {
  auto const sheet = workbookOf(genBolts("r.json")).part("xl/worksheets/sheet3.xml");
  EXPECT_THAT(sheet, HasSubstr("<row r=\"2\"><c r=\"A2\" t=\"s\"><v>1</v></c><c r=\"B2\" t=\"s\"><v>2</v></c>"
                               "<c r=\"D2\" t=\"inlineStr\"><is><t>B1</t></is></c>"
                               "<c r=\"E2\" s=\"7\" t=\"b\"><v>1</v></c><c r=\"F2\"><v>-45</v></c>"
                               "<c r=\"G2\" s=\"5\"><f>'Limits'!$G$2</f><v>30</v></c>"
                               "<c r=\"H2\" s=\"6\"><f>IF(E2,IFERROR(ABS(F2)/ABS(G2),\"\"),\"\")</f>"
                               "<v>1.5</v></c>"
                               "<c r=\"I2\" s=\"3\" t=\"inlineStr\"><is><t>-inf</t></is></c>"));
  // A number from a series with NaN, nothing but NaN, no data.
  EXPECT_THAT(sheet, HasSubstr("<c r=\"F3\" s=\"4\"><v>15</v></c>"));
  EXPECT_THAT(sheet,
              HasSubstr("<c r=\"F4\" s=\"3\" t=\"inlineStr\"><is><t>NaN</t></is></c>"
                        "<c r=\"G4\" s=\"5\"><f>'Limits'!$G$2</f><v>30</v></c>"
                        "<c r=\"H4\" s=\"6\" t=\"str\"><f>IF(E4,IFERROR(ABS(F4)/ABS(G4),\"\"),\"\")</f>"
                        "<v></v></c><c r=\"I4\" s=\"3\" t=\"s\"><v>0</v></c>"));
  EXPECT_THAT(sheet, HasSubstr("<autoFilter ref=\"A1:L7\"/>"));
}

TEST(XlsxTables, BindMarksAndBarsToTheLimits) {
  auto const sheet = workbookOf(genBolts("r.json")).part("xl/worksheets/sheet3.xml");
  EXPECT_THAT(sheet,
              HasSubstr("<conditionalFormatting sqref=\"F2:F7\"><cfRule type=\"expression\" dxfId=\"0\" "
                        "priority=\"1\"><formula>AND($E2,$G2&lt;&gt;\"\",OR($G2=\"-inf\","
                        "IF(ISNUMBER($F2),ABS($F2)&gt;$G2,IF(OR($F2=\"inf\",$F2=\"-inf\"),"
                        "ISNUMBER($G2),$G2&lt;0))))</formula></cfRule></conditionalFormatting>"));
  EXPECT_THAT(sheet,
              HasSubstr("<conditionalFormatting sqref=\"H2:H7\"><cfRule type=\"dataBar\" priority=\"2\">"
                        "<dataBar><cfvo type=\"num\" val=\"0\"/><cfvo type=\"num\" val=\"1\"/>"));
}

TEST(XlsxTables, KeepEachLimitInACellOfItsOwn) {
  EXPECT_THAT(workbookOf(genBolts("r.json")).part("xl/worksheets/sheet2.xml"),
              HasSubstr("<row r=\"2\"><c r=\"A2\" t=\"inlineStr\"><is><t>OP20</t></is></c>"
                        "<c r=\"B2\" t=\"inlineStr\"><is><t>0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01</t></is></c>"
                        "<c r=\"C2\" t=\"inlineStr\"><is><t>Bolts</t></is></c>"
                        "<c r=\"D2\" t=\"inlineStr\"><is><t>Forces</t></is></c>"
                        "<c r=\"E2\" t=\"inlineStr\"><is><t>Max Normal Force</t></is></c>"
                        "<c r=\"F2\" t=\"inlineStr\"><is><t>N</t></is></c>"
                        "<c r=\"G2\" s=\"1\"><v>30</v></c></row></sheetData>"));
}

TEST(XlsxTables, SummariseWhatWasReadAndFound) {
  auto tables = genBolts("r.json");
  tables.files.push_back({"s.json", {}, {}, "s.json: cannot read"});
  auto const workbook = workbookOf(tables);
  auto const summary = workbook.part("xl/worksheets/sheet1.xml");
  EXPECT_THAT(summary, HasSubstr("<t>r.json</t></is></c><c r=\"B5\"><v>1</v></c>"
                                 "<c r=\"C5\" t=\"inlineStr\"><is><t>default limits</t>"));
  EXPECT_THAT(summary, HasSubstr("<t>s.json</t></is></c><c r=\"D6\" t=\"inlineStr\"><is>"
                                 "<t>s.json: cannot read</t>"));
  EXPECT_THAT(summary, HasSubstr("<t>values beyond their limits</t></is></c><c r=\"B9\"><v>1</v></c>"));
  EXPECT_THAT(summary, HasSubstr("<t>values with NaN</t></is></c><c r=\"B10\"><v>2</v></c>"));
  EXPECT_THAT(summary, HasSubstr("<t>values compared</t></is></c><c r=\"B12\"><v>2</v></c>"));
  // The highest utilisations, with links to their values.
  EXPECT_THAT(summary, HasSubstr("<t>OP20, Bolts, B1</t>"));
  EXPECT_THAT(summary, HasSubstr("<f>IFERROR(ABS(D20)/ABS(E20),\"inf\")</f><v>1.5</v>"));
  EXPECT_THAT(summary, HasSubstr("<hyperlink ref=\"A20\" location=\"'Bolts'!$G$2\""));
  EXPECT_THAT(summary, HasSubstr("<hyperlink ref=\"A21\" location=\"'Bolts'!$G$3\""));
  EXPECT_THAT(workbook.part("xl/charts/chart1.xml"), AllOf(HasSubstr("<c:f>Summary!$A$20:$A$21</c:f>"),
                                                           HasSubstr("<c:f>Summary!$F$20:$F$21</c:f>")));
}

TEST(XlsxTables, ContinueOnFurtherSheetsToWhichTheLinksLead) {
  auto const tables = genBolts("r.json");
  auto const workbook = workbookOf(tables, 2);
  EXPECT_THAT(workbook.part("xl/workbook.xml"),
              AllOf(HasSubstr("\"Bolts\""), HasSubstr("\"Bolts (2)\""), HasSubstr("\"Bolts (6)\"")));
  EXPECT_THAT(workbook.part("xl/worksheets/sheet1.xml"),
              HasSubstr("<hyperlink ref=\"A20\" location=\"'Bolts (2)'!$F$2\""));
}

TEST(XlsxTables, AreTheSameBytesForTheSameTables) {
  EXPECT_EQ(renderAsXlsx(genBolts("r.json")), renderAsXlsx(genBolts("r.json")));
}

}  // namespace
}  // namespace Kestrel::ResultTables

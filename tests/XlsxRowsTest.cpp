#include "result_tables/render/XlsxRows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "result_tables/base/Error.h"
#include "result_tables/render/XlsxBook.h"
#include "support/WorkbookTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::HasSubstr;

TEST(XlsxRows, CallColumnsAsPeopleDo) {
  EXPECT_EQ(xlsxColumn(0), "A");
  EXPECT_EQ(xlsxColumn(25), "Z");
  EXPECT_EQ(xlsxColumn(26), "AA");
  EXPECT_EQ(xlsxColumn(701), "ZZ");
  EXPECT_EQ(xlsxColumn(702), "AAA");
  EXPECT_EQ(xlsxColumn(16383), "XFD");
}

TEST(XlsxRows, CountCharactersAsSpreadsheetsDo) {
  EXPECT_EQ(countXlsxCharacters(""), 0U);
  EXPECT_EQ(countXlsxCharacters("Tür"), 3U);
  EXPECT_EQ(countXlsxCharacters("左"), 1U);
  EXPECT_EQ(countXlsxCharacters("🔧"), 2U);
}

TEST(XlsxRows, SpellTextsSoThatNothingInThemMeansAnything) {
  EXPECT_EQ(XlsxRows::spell(""), "");
  EXPECT_EQ(XlsxRows::spell("=1<2 & \"x\""), "\" t=\"inlineStr\"><is><t>=1&lt;2 &amp; \"x\"</t></is></c>");
  EXPECT_EQ(XlsxRows::spell(" a "), "\" t=\"inlineStr\"><is><t xml:space=\"preserve\"> a </t></is></c>");
  EXPECT_EQ(XlsxRows::spell("a\n\x01\xFF"), "\" t=\"inlineStr\"><is><t>a␊␁\xEF\xBF\xBD</t></is></c>");
  EXPECT_EQ(XlsxRows::spell("_x0041_"), "\" t=\"inlineStr\"><is><t>_x005F_x0041_</t></is></c>");
  EXPECT_EQ(XlsxRows::spell("_x005F_x0041_"),
            "\" t=\"inlineStr\"><is><t>_x005F_x005F_x005F_x0041_</t></is></c>");
  EXPECT_EQ(XlsxRows::spell("_x00G1_ _x0041"), "\" t=\"inlineStr\"><is><t>_x00G1_ _x0041</t></is></c>");
}

TEST(XlsxRows, RefuseATextThatNoCellHasRoomFor) {
  EXPECT_THAT(XlsxRows::spell(std::string(32767, 'x')), HasSubstr("x</t>"));
  try {
    (void)XlsxRows::spell(std::string(32768, 'x'));
    FAIL();
  } catch (Error const& error) {
    EXPECT_STREQ(error.what(),
                 "\"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx…\": expected at most 32767 "
                 "characters for a cell of a workbook, found 32768");
  }
}

TEST(XlsxRows, WriteCellsOneAfterTheOther) {
  XlsxBook book;
  auto& bold = book.addFormat();
  format_set_bold(&bold);
  auto& sheet = book.addSheet("One");
  XlsxRows rows(sheet);
  rows.setHeight(30);
  rows.text("head", styleOf(bold));
  rows.endRow();
  rows.endRow();
  EXPECT_EQ(rows.row(), 2U);
  EXPECT_EQ(rows.rowNumber(), "3");
  rows.skip();
  EXPECT_EQ(rows.column(), 1U);
  rows.number(0.1 + 0.2);
  rows.number(-std::numeric_limits<double>::infinity(), styleOf(bold));
  rows.flag(true);
  rows.flag(false);
  rows.formula("IF(A1<2,1,2)", 5e-324);
  rows.formula("A1", std::numeric_limits<double>::quiet_NaN());
  rows.formulaOfNothing("A2");
  rows.spelt(rows.share("twice"));
  rows.spelt(rows.share("twice"));
  rows.endRow();
  book.finish(rows);
  auto const workbook = Workbook(book.save());
  EXPECT_THAT(workbook.part("xl/worksheets/sheet1.xml"), HasSubstr("<dimension ref=\"A1:J3\"/>"));
  EXPECT_THAT(workbook.part("xl/worksheets/sheet1.xml"),
              HasSubstr("<sheetData>"
                        "<row r=\"1\" ht=\"30\" customHeight=\"1\">"
                        "<c r=\"A1\" s=\"1\" t=\"inlineStr\"><is><t>head</t></is></c></row>"
                        "<row r=\"3\"><c r=\"B3\"><v>0.30000000000000004</v></c>"
                        "<c r=\"C3\" s=\"1\" t=\"inlineStr\"><is><t>-inf</t></is></c>"
                        "<c r=\"D3\" t=\"b\"><v>1</v></c><c r=\"E3\" t=\"b\"><v>0</v></c>"
                        "<c r=\"F3\"><f>IF(A1&lt;2,1,2)</f><v>5e-324</v></c>"
                        "<c r=\"G3\" t=\"str\"><f>A1</f><v>NaN</v></c>"
                        "<c r=\"H3\" t=\"str\"><f>A2</f><v></v></c>"
                        "<c r=\"I3\" t=\"s\"><v>0</v></c><c r=\"J3\" t=\"s\"><v>0</v></c></row>"
                        "</sheetData>"));
  EXPECT_THAT(workbook.part("xl/sharedStrings.xml"), HasSubstr("<si><t>twice</t></si>"));
}

TEST(XlsxRows, LinkCellsToPlacesInTheWorkbook) {
  XlsxBook book;
  auto& sheet = book.addSheet("One");
  XlsxRows rows(sheet);
  rows.link("there & back", "'One'!$A$2", 0);
  rows.endRow();
  rows.link("here", "'One'!$A$1", 0);
  rows.endRow();
  book.finish(rows);
  auto const part = Workbook(book.save()).part("xl/worksheets/sheet1.xml");
  EXPECT_THAT(part,
              HasSubstr("<sheetData><row r=\"1\"><c r=\"A1\" t=\"inlineStr\"><is><t>there &amp; back</t></is>"
                        "</c></row><row r=\"2\"><c r=\"A2\" t=\"inlineStr\"><is><t>here</t></is></c></row>"
                        "</sheetData>"));
  EXPECT_THAT(part, HasSubstr("<hyperlink ref=\"A1\" location=\"'One'!$A$2\""));
  EXPECT_THAT(part, HasSubstr("<hyperlink ref=\"A2\" location=\"'One'!$A$1\""));
}

}  // namespace
}  // namespace Kestrel::ResultTables

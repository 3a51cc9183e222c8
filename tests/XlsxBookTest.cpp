#include "result_tables/render/XlsxBook.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/WorkbookTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::HasSubstr;

std::string nameOfSheet(std::string const& title) {
  XlsxBook book;
  return book.addSheet(title).name;
}

TEST(XlsxBook, NamesSheetsAsTheirTitlesAsFarAsThatIsLegal) {
  EXPECT_EQ(nameOfSheet("Joining Tools"), "Joining Tools");
  EXPECT_EQ(nameOfSheet("'[a]:*?/\\#'"), "__a________");
  EXPECT_EQ(nameOfSheet(""), "_");
  EXPECT_EQ(nameOfSheet("a\nb"), "a␊b");
  EXPECT_EQ(nameOfSheet(std::string(40, 'x')), std::string(31, 'x'));
  EXPECT_EQ(nameOfSheet("ääääääääääääääääääääääääääääääää"), "äääääääääääääääääääääääääääääää");
  EXPECT_EQ(nameOfSheet("🔧🔧🔧🔧🔧🔧🔧🔧🔧🔧🔧🔧🔧🔧🔧🔧"), "🔧🔧🔧🔧🔧🔧🔧🔧🔧🔧🔧🔧🔧🔧🔧");
}

TEST(XlsxBook, NamesEachSheetOnce) {
  XlsxBook book;
  std::string const name(31, 'x');
  EXPECT_EQ(book.addSheet(name).name, name);
  EXPECT_EQ(book.addSheet(name).name, std::string(27, 'x') + " (2)");
  EXPECT_EQ(book.addSheet("XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX").name, std::string(27, 'X') + " (3)");
  EXPECT_EQ(quotedNameOf(book.addSheet("a b")), "'a b'");
}

std::string savedBook() {
  XlsxBook book;
  auto& format = book.addFormat();
  XlsxTable table(
      book, "T", {{"Name", 10}, {"Number", 12.5}}, 1, format, [](lxw_worksheet&, lxw_row_t) {}, 3);
  for (int i = 1; i <= 5; ++i) {
    auto& rows = table.nextRow();
    rows.text("a");
    rows.number(i);
    rows.endRow();
  }
  table.finish();
  EXPECT_EQ(table.sheets().size(), 3U);
  return book.save();
}

TEST(XlsxBook, ContinuesATableOnFurtherSheets) {
  Workbook const workbook(savedBook());
  EXPECT_THAT(workbook.part("xl/workbook.xml"),
              testing::AllOf(HasSubstr("name=\"T\" sheetId=\"1\""), HasSubstr("name=\"T (2)\" sheetId=\"2\""),
                             HasSubstr("name=\"T (3)\" sheetId=\"3\"")));
  EXPECT_THAT(workbook.part("xl/worksheets/sheet3.xml"),
              testing::AllOf(HasSubstr("<t>Name</t></is></c><c r=\"B1\" t=\"inlineStr\"><is><t>Number</t>"),
                             HasSubstr("<row r=\"2\"><c r=\"A2\" t=\"inlineStr\"><is><t>a</t></is></c>"
                                       "<c r=\"B2\"><v>5</v></c></row></sheetData>"),
                             HasSubstr("<pane xSplit=\"1\" ySplit=\"1\" topLeftCell=\"B2\"")));
}

TEST(XlsxBook, IsTheSameForTheSameContent) { EXPECT_EQ(savedBook(), savedBook()); }

}  // namespace
}  // namespace Kestrel::ResultTables

#include "result_tables/render/CsvWriter.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>

#include "support/HostileLocale.h"

namespace Kestrel::ResultTables {
namespace {

TEST(CsvWriter, WritesRecordsWithLineEndsOfTwoCharacters) {
  CsvWriter csv(s_plainCsv);
  csv.record({"a", "", "b c"});
  csv.record({"d"});
  EXPECT_EQ(csv.take(), "a,,b c\r\nd\r\n");
  EXPECT_EQ(csv.take(), "");
}

TEST(CsvWriter, PutsFieldsInQuotationMarksThatNeedThemInItsDialect) {
  for (auto const& [dialect, expected] :
       {std::pair(s_plainCsv, "\"a,b\",c;d,\"\"\"e\"\"\",\"f\ng\",\"h\r\"\r\n"),
        std::pair(s_excelDeCsv, "a,b;\"c;d\";\"\"\"e\"\"\";\"f\ng\";\"h\r\"\r\n")}) {
    CsvWriter csv(dialect);
    csv.record({"a,b", "c;d", "\"e\"", "f\ng", "h\r"});
    EXPECT_EQ(csv.take(), expected);
  }
}

TEST(CsvWriter, ReplacesBytesThatAreNoUtf8InAndOutOfQuotationMarks) {
  CsvWriter csv(s_plainCsv);
  csv.record({"Größe", "a\xFF", "\xFF,\"", "tab\t", "\x7F"});
  EXPECT_EQ(csv.take(), "Größe,a\uFFFD,\"\uFFFD,\"\"\",tab\t,\x7F\r\n");
}

TEST(CsvWriter, WritesRecordsFieldByField) {
  CsvWriter csv(s_plainCsv);
  csv.text("a,b");
  csv.integer(18446744073709551615U);
  csv.integer(std::nullopt);
  csv.flag(true);
  csv.flag(false);
  csv.empty();
  csv.number(std::nullopt);
  csv.number(0.1);
  csv.endRecord();
  csv.empty();
  csv.endRecord();
  EXPECT_EQ(csv.take(), "\"a,b\",18446744073709551615,,true,false,,,0.1\r\n\r\n");
}

TEST(CsvWriter, PutsFieldsThatManyRecordsShareAsTheyWereSpelt) {
  CsvWriter csv(s_excelDeCsv);
  CsvWriter limit(csv.dialect());
  limit.number(0.5);
  auto const shared = csv.spell({"a;b", "", "c,d"}) + limit.take();
  csv.spelt(shared);
  csv.endRecord();
  csv.integer(1);
  csv.spelt(shared);
  csv.integer(2);
  csv.endRecord();
  EXPECT_EQ(csv.take(), "\"a;b\";;c,d;0,5\r\n1;\"a;b\";;c,d;0,5;2\r\n");
}

/// A number as the only field of a record.
std::string written(double value, CsvDialect const& dialect) {
  CsvWriter csv(dialect);
  csv.number(value);
  csv.endRecord();
  return csv.take();
}

TEST(CsvWriter, WritesNumbersWithTheDecimalMarkOfItsDialectWhateverTheLocale) {
  HostileLocale const locale;
  EXPECT_EQ(written(-1234567.25, s_plainCsv), "-1234567.25\r\n");
  EXPECT_EQ(written(-1234567.25, s_excelDeCsv), "-1234567,25\r\n");
  EXPECT_EQ(written(1.5e-7, s_excelDeCsv), "1,5e-07\r\n");
  EXPECT_EQ(written(12, s_excelDeCsv), "12\r\n");
  EXPECT_EQ(written(std::numeric_limits<double>::quiet_NaN(), s_excelDeCsv), "nan\r\n");
  EXPECT_EQ(written(-std::numeric_limits<double>::infinity(), s_excelDeCsv), "-inf\r\n");
}

}  // namespace
}  // namespace Kestrel::ResultTables

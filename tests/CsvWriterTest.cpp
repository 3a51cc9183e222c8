#include "result_tables/render/CsvWriter.h"

#include <gtest/gtest.h>

#include <limits>

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

TEST(CsvWriter, WritesNumbersWithTheDecimalMarkOfItsDialectWhateverTheLocale) {
  HostileLocale const locale;
  CsvWriter const plain(s_plainCsv);
  CsvWriter const german(s_excelDeCsv);
  EXPECT_EQ(plain.number(-1234567.25), "-1234567.25");
  EXPECT_EQ(german.number(-1234567.25), "-1234567,25");
  EXPECT_EQ(german.number(1.5e-7), "1,5e-07");
  EXPECT_EQ(german.number(12), "12");
  EXPECT_EQ(german.number(std::numeric_limits<double>::quiet_NaN()), "nan");
  EXPECT_EQ(german.number(-std::numeric_limits<double>::infinity()), "-inf");
}

}  // namespace
}  // namespace Kestrel::ResultTables

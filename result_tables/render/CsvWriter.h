#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace Kestrel::ResultTables {

/// How a table of comma separated values is spelt.
struct CsvDialect {
  char separator = ',';
  char decimalMark = '.';
};

/// RFC 4180.
inline constexpr CsvDialect s_plainCsv;
/// What spreadsheets read where numbers have decimal commas.
inline constexpr CsvDialect s_excelDeCsv{.separator = ';', .decimalMark = ','};

/// Writes the records of such a table; lines end with carriage return and line feed.
class CsvWriter {
 public:
  explicit CsvWriter(CsvDialect const& dialect) : m_dialect(dialect) {}

  /// Fields with a separator, a quotation mark or a line end get quotation marks around them.
  void record(std::initializer_list<std::string_view> fields);

  /// A field: the shortest form that reads back to the same double, with the decimal mark of the dialect.
  [[nodiscard]] std::string number(double value) const;

  /// What has been written. The writer is empty afterwards.
  [[nodiscard]] std::string take();

 private:
  void field(std::string_view text);

  CsvDialect m_dialect;
  std::string m_out;
};

}  // namespace Kestrel::ResultTables

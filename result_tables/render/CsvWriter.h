#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
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

/// Writes the records of such a table, field by field into one text; lines end with carriage return and line
/// feed.
class CsvWriter {
 public:
  explicit CsvWriter(CsvDialect const& dialect) : m_dialect(dialect) {}

  [[nodiscard]] CsvDialect const& dialect() const { return m_dialect; }

  /// A whole record of texts, of which there is at least one.
  void record(std::initializer_list<std::string_view> fields);

  /// Bytes that are no UTF-8 become U+FFFD; fields with a separator, a quotation mark or a line end get
  /// quotation marks around them.
  void text(std::string_view field) { appendField(m_out, field); }
  /// The shortest form that reads back to the same double, with the decimal mark of the dialect; an empty
  /// field for none.
  void number(std::optional<double> value);
  void integer(std::optional<std::uint64_t> value);
  /// "true" or "false".
  void flag(bool value);
  void empty() { m_out += m_dialect.separator; }
  /// Fields that many records share, as `spell` or another writer has made them.
  void spelt(std::string_view fields) { m_out += fields; }
  /// REQUIRES: the record has a field.
  void endRecord();

  /// Texts as they stand in a record, with a separator behind each.
  [[nodiscard]] std::string spell(std::initializer_list<std::string_view> fields) const;

  /// What has been written, fields of a record that is still open included. The writer is empty afterwards.
  [[nodiscard]] std::string take();

 private:
  void appendField(std::string& out, std::string_view text) const;
  void appendQuotedWhereNeeded(std::string& out, std::string_view text) const;

  CsvDialect m_dialect;
  std::string m_out;  ///< with a separator behind every field of the record that is open
};

}  // namespace Kestrel::ResultTables

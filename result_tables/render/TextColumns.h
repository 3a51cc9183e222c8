#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Kestrel::ResultTables {

/// A list in columns under headings, for people.
class TextColumns {
 public:
  enum class Kind { text, number };
  struct Column {
    std::string heading;
    Kind kind = Kind::text;
  };

  explicit TextColumns(std::vector<Column> columns) : m_columns(std::move(columns)) {}

  /// `cells` are printable, one for each column. A marked row is red where there is colour.
  void add(std::vector<std::string> cells, bool isMarked = false);

  /// The headings, and below them the rows with decimal points in line. Columns with nothing in them are left
  /// out.
  [[nodiscard]] std::string render(bool colour) const;

 private:
  struct Row {
    std::vector<std::string> cells;
    bool isMarked;
  };

  [[nodiscard]] std::vector<std::string> paddedColumn(std::size_t column) const;

  std::vector<Column> m_columns;
  std::vector<Row> m_rows;
};

}  // namespace Kestrel::ResultTables

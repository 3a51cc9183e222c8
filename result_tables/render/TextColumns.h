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
  /// out. What is wider than `width` (0: nothing is) continues in blocks, each of which begins with the first
  /// column.
  [[nodiscard]] std::string render(bool colour, std::size_t width = 0) const;

 private:
  struct Row {
    std::vector<std::string> cells;
    bool isMarked;
  };

  /// The heading and the cells, all of one width.
  using PaddedColumn = std::vector<std::string>;

  [[nodiscard]] PaddedColumn paddedColumn(std::size_t column) const;
  [[nodiscard]] std::vector<PaddedColumn> paddedColumns() const;
  void appendBlock(std::string& out, std::vector<PaddedColumn const*> const& columns, bool colour) const;

  std::vector<Column> m_columns;
  std::vector<Row> m_rows;
};

}  // namespace Kestrel::ResultTables

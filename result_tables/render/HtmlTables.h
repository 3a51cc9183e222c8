#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "result_tables/render/HtmlCurve.h"
#include "result_tables/render/TextStyle.h"
#include "result_tables/tables/Summary.h"
#include "result_tables/tables/Tables.h"

namespace Kestrel::ResultTables {

/// The part of a report that is about one results file. Does not refer to the tables.
struct HtmlFile {
  /// A value that takes much of its limit.
  struct Utilised {
    double utilisation;
    bool isExceeded;
    std::string anchor;  ///< of its cell
    std::string place;   ///< in words
    std::string value;   ///< with its unit
  };
  struct Curve {
    std::size_t table;  ///< number among the file's tables
    std::size_t row;
    std::size_t column;
    bool isWanted;  ///< else only while its utilisation is among the highest of all files
    double utilisation;
    HtmlCurve curve;
  };

  TablesFile file;
  std::size_t index;  ///< of the file, by which its elements are named
  TableCounts counts;
  std::string tables;             ///< HTML
  std::vector<Utilised> highest;  ///< from the highest down
  std::vector<Curve> curves;      ///< by table, row and column
};

/// The part of the file with that index, of which these are all tables. Passes over each series once, and
/// once more over those whose curves are shown.
[[nodiscard]] HtmlFile genHtmlFile(TablesFile const& file, std::span<ResultTable const> tables,
                                   std::size_t index, TextStyle const& style);

/// A report of the files, which begins with a verdict, what was read and the values that take the most of
/// their limits.
[[nodiscard]] std::string renderHtmlFiles(std::string const& title, std::vector<HtmlFile>&& files);

/// A report of tables: what was read, what is found in it, the values that take the most of their limits, and
/// the tables, with the curves behind their values (docs/report.md).
[[nodiscard]] std::string renderTablesAsHtml(Tables const& tables, TextStyle const& style);

}  // namespace Kestrel::ResultTables

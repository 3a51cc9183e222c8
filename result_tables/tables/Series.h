#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "result_tables/tables/ResultTable.h"

namespace Kestrel::ResultTables {

/// The series behind one value of a table, with what is known about both. Refers to nothing.
struct TableSeries {
  std::string file;  ///< as it was given
  std::string unit;  ///< the unit's name
  std::string unitId;
  std::string_view family;  ///< the family's untranslated name
  std::string title;        ///< of the table
  std::string group;
  std::string subGroup;   ///< empty where the item is in none
  std::string item;       ///< the item's name
  std::string shownItem;  ///< the same, marked when its values are invalid
  TableColumn column;
  double value = 0.0;       ///< as the table has it
  bool isExceeded = false;  ///< as the table has it
  /// Index, in the lists of `series`, of the value that the table has; none where that value is 0.
  std::optional<std::size_t> extreme;
  MaxValueSeries series;  ///< empty where there is no data

  /// Of the value that the table has: its step, and its time where it has one.
  [[nodiscard]] std::optional<std::size_t> step() const;
  [[nodiscard]] std::optional<double> time() const;
  /// Whether the series holds a minimum and a maximum for each step.
  [[nodiscard]] bool hasRanges() const { return !series.minima.empty(); }
};

/// The series behind the value at a place of a table, which has a column there. Copies its numbers and passes
/// over them twice.
[[nodiscard]] TableSeries genTableSeries(ResultTable const& table, ResultTable::Place const& place);

/// What series to take of a results file.
struct SeriesSelection {
  TableSelection tables;
  std::vector<std::string> items;  ///< names, as they are or as they are shown; none: all
  std::vector<std::string> keys;   ///< of columns, the same in every language; none: all
};

/// The series of the selected values, one for each, in the order of the tables, their sections, rows and
/// columns. An `Error` lists what there is where no row has one of the names, or no section with such a row
/// one of the keys. Copies the numbers of the selected series and passes over them twice.
[[nodiscard]] std::vector<TableSeries> genSeries(ResultsFile const& file, SeriesSelection const& selection,
                                                 ResultLimits const& limits);

}  // namespace Kestrel::ResultTables

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "result_tables/limits/ResultLimits.h"
#include "result_tables/tables/ResultTable.h"

namespace Kestrel::ResultTables {

/// A results file that tables come from, as reports name what was read.
struct TablesFile {
  std::string name;                ///< as it was given
  std::vector<std::string> units;  ///< names of the selected ones, in the file's order
  std::string limits;              ///< the document or the text that they come from; empty: the defaults
  std::optional<std::string> error = {};  ///< why there are no tables of it
  std::size_t tableCount = 0;             ///< tables that are of it
};

/// What is shown: the tables of the files, file by file.
struct Tables {
  std::vector<ResultTable> tables;
  std::vector<TablesFile> files;

  /// Puts what is shown of further files behind.
  void append(Tables&& others);
};

/// What was read of a file of which the units are selected. A unit that the file lacks is an `Error`.
[[nodiscard]] TablesFile genTablesFile(ResultsFile const& file, TableSelection const& selection,
                                       ResultLimits const& limits);

/// What is shown of one file, to which the tables refer.
[[nodiscard]] Tables genTables(ResultsFile const& file, TableSelection const& selection,
                               ResultLimits const& limits);

}  // namespace Kestrel::ResultTables

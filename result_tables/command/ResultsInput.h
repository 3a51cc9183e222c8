#pragma once

#include <optional>
#include <string>

#include "result_tables/command/Arguments.h"
#include "result_tables/import/Import.h"
#include "result_tables/results/ResultsFile.h"

namespace Kestrel::ResultTables {

/// How the RESULTS of a command are to be read: as results files or, with a map, as a solver's prints.
struct ResultsInput {
  std::optional<std::string> map;
  std::optional<ImportFormat> format;  ///< none: the one that goes with the name
  DecimalMark decimalMark = DecimalMark::point;
};

/// --map, --from, --decimal-comma
void addResultsInput(Arguments& arguments, ResultsInput& input);

/// The units of RESULTS; those that are not wanted may lack their tools. `onNote` gets what a print has that
/// is passed over. Those of a print are the same as when it is imported before. May be called on any number
/// of threads.
[[nodiscard]] ResultsFile readResults(std::string const& results, ResultsInput const& input,
                                      WantedUnits const& wanted, OnNote const& onNote);

}  // namespace Kestrel::ResultTables

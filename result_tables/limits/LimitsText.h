#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "result_tables/limits/ResultLimits.h"
#include "result_tables/results/ResultsFile.h"

namespace Kestrel::ResultTables {

/// A text of limits (docs/limits-text.md) as it was read.
struct LimitsText {
  /// Limits of all units, or of the units that it names.
  struct Part {
    std::string place;                   ///< as a JSON pointer, for messages
    std::optional<SimulationUnitId> id;  ///< of the one unit that is meant
    std::optional<std::string> name;     ///< of the units that are meant, where there is no id
    std::map<TablePropertyLimitType, double> limits;
    ColumnLimits columns;
  };

  std::string name;  ///< what messages call it
  Part all;
  std::vector<Part> units;                             ///< in the order of the text
  std::map<SimulationUnitId, std::size_t> unitsById;   ///< positions in `units`
  std::map<std::string, std::size_t> unitsByNameOnly;  ///< of those without an id
};

/// Whether what stands in a limits document is a text: it begins with a brace, which no archive does. Blanks
/// and a byte order mark before it count as part of a text.
[[nodiscard]] bool isLimitsText(std::string_view content);

/// Reads a text of limits. Whatever the format does not provide for is an `Error`.
[[nodiscard]] LimitsText readLimitsText(std::string const& name, std::string_view text);

/// What the results of a file are compared with under a text: the defaults of its units, changed by what the
/// text says of them. Units that the file lacks are passed over. A kind that a unit has no limit of by
/// default is an `Error`.
[[nodiscard]] ResultLimits genLimits(LimitsText const& text, ResultsFile const& file);

/// Refuses, with an `Error`, a text that says more than a document of the file's limits can hold: something
/// of units that the file lacks, or of columns.
void checkForImport(LimitsText const& text, ResultsFile const& file);

/// Sets the limits that the text says of the file's units, and leaves the others. A kind that a unit has no
/// limit of is an `Error`; then some may be set.
/// REQUIRES: limits in step with the file, and a text that `checkForImport` has passed.
void importLimits(LimitsText const& text, ResultsFile const& file, TablePropertiesData const& limits);

/// The text that says all limits of the units, in the order of the collection. Where a unit has several
/// limits of a kind it is the one that applies. REQUIRES: limits in step with the file, to which the units
/// belong.
[[nodiscard]] std::string genLimitsText(ResultLimits const& limits, ResultsFile const& file,
                                        std::vector<ResultsUnit const*> const& units);

}  // namespace Kestrel::ResultTables

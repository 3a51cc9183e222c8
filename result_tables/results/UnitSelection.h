#pragma once

#include <string>
#include <vector>

#include "result_tables/results/ResultsFile.h"

namespace Kestrel::ResultTables {

/// Units, whatever they are of.
struct NamedUnits {
  std::string name;  ///< printable, that messages call what they are of
  std::vector<SimulationUnit const*> units;
};

[[nodiscard]] NamedUnits namedUnitsOf(ResultsFile const& file);

/// The units of a file that are wanted by id, in either case, or by name, which several may have; in the
/// file's order. None wanted: all. An unknown one is an `Error` that lists the names of those that there are.
[[nodiscard]] std::vector<ResultsUnit const*> selectUnits(ResultsFile const& file,
                                                          std::vector<std::string> const& wanted);

/// For a message: the names of the units in quotation marks, each once, as many as a person cares to
/// read; "none" where there are no units.
[[nodiscard]] std::string describeUnits(NamedUnits const& of);

/// Whether that is the unit's id, in either case, or its name.
[[nodiscard]] bool isNamedBy(SimulationUnit const& unit, std::string const& idOrName);

/// Throws the `Error` for a wanted unit that is not among them.
[[noreturn]] void refuseUnit(NamedUnits const& of, std::string const& wanted);

}  // namespace Kestrel::ResultTables

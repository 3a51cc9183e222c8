#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Business_SimulationResult/SimulationResult.h"
#include "Business_SimulationResult/SimulationUnit.h"
#include "Business_TableProperties/SimUnitMaxValuesProvider.h"

namespace Kestrel::ResultTables {

/// One simulation unit of a results file with its result.
struct ResultsUnit {
  std::unique_ptr<SimulationUnit const> unit;
  std::shared_ptr<SimulationResult> result;
  /// How the tool families are grouped; a family that the file does not group has no entry.
  std::map<MaxValueGroupContainer::DataType, SimUnitMaxValuesProvider::ToolGrouping> toolGroupings;
};

/// The units of a results file, in the file's order.
struct ResultsFile {
  std::string givenName;  ///< as it was given, which is what reports call it
  std::string name;       ///< what messages call it
  std::vector<ResultsUnit> units;
};

/// Reads a results file (docs/results-file.md). Whatever the format does not provide for is an `Error`. Reads
/// every byte once and counts the numbers of a series before; holds the file's text and the numbers, and no
/// more that grows with the numbers.
[[nodiscard]] ResultsFile readResultsFile(std::filesystem::path const& path);

/// The same for a text that is in memory. Reports and messages call it `name`.
[[nodiscard]] ResultsFile readResults(std::string const& name, std::string const& text);

}  // namespace Kestrel::ResultTables

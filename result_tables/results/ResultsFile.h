#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Business_SimulationResult/SimulationResult.h"
#include "Business_SimulationResult/SimulationUnit.h"
#include "Business_TableProperties/SimUnitMaxValuesProvider.h"
#include "result_tables/base/File.h"

namespace Kestrel::ResultTables {

/// One simulation unit of a results file with its result.
struct ResultsUnit {
  std::unique_ptr<SimulationUnit const> unit;  ///< without tools where they were not wanted
  std::shared_ptr<SimulationResult> result;
  /// How the tool families are grouped; a family that the file does not group has no entry.
  std::map<MaxValueGroupContainer::DataType, SimUnitMaxValuesProvider::ToolGrouping> toolGroupings;
  bool hasTools = true;  ///< false where they were not wanted
};

/// The units of a results file, in the file's order.
struct ResultsFile {
  std::string givenName;  ///< as it was given, which is what reports call it
  std::string name;       ///< what messages call it
  std::vector<ResultsUnit> units;
};

/// Which units are needed: those by id, in either case, or by name; none named: all.
using WantedUnits = std::vector<std::string>;

/// Whether a unit of that id and name is meant.
[[nodiscard]] bool isNamedBy(SimulationUnitId const& id, std::string const& name,
                             std::string const& idOrName);

/// How a text is read, which makes no difference to what is read. For tests, which say that of it.
struct ReadingWays {
  bool atOnce = true;                  ///< what is as files usually have it is read fast
  std::optional<std::size_t> threads;  ///< that read ahead of the first one; else as many as seem good
};

/// Reads a results file (docs/results-file.md). Whatever the format does not provide for is an `Error`. Reads
/// every byte once; holds the file's text and the numbers, which take the place of text that has been read,
/// and no more that grows with the numbers. Files from 8 MB on are read on as many threads as there are idle
/// processors.
///
/// What is not wanted is checked all the same, but its units have no tools.
[[nodiscard]] ResultsFile readResultsFile(std::filesystem::path const& path, WantedUnits const& wanted = {});

/// The same for the text of a file, which is used up.
[[nodiscard]] ResultsFile readResults(std::string const& name, FileText&& text,
                                      WantedUnits const& wanted = {}, ReadingWays ways = {});

/// The same for a text that is in memory and stays. Reports and messages call it `name`.
[[nodiscard]] ResultsFile readResults(std::string const& name, std::string_view text,
                                      WantedUnits const& wanted = {}, ReadingWays ways = {});

}  // namespace Kestrel::ResultTables

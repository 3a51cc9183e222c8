#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "VantaService_Identifier/GUIdentifier.h"
#include "result_tables/import/Histories.h"
#include "result_tables/json/JsonShapes.h"

namespace Kestrel::ResultTables {

/// scale * history + offset. Refers to the histories that the map was read for.
struct ImportTerm {
  /// How the rows of one time become one value. `row`: the one of a single node.
  enum class Nodes { one, sum, mean, smallest, largest };

  History history;
  Nodes nodes = Nodes::one;
  std::size_t row = 0;
  double scale = 1.0;
  double offset = 0.0;

  /// The value at the time with the index `time`. NaN as soon as one of the nodes has none.
  [[nodiscard]] double at(std::size_t time) const;
};

/// The sum of its terms, or the root of the sum of their squares. All terms have the same times.
struct ImportFormula {
  bool isNorm = false;
  std::vector<ImportTerm> terms;  ///< at least one

  [[nodiscard]] std::vector<double> const& times() const { return terms.front().history.table->times; }
  [[nodiscard]] double at(std::size_t time) const;
  /// The index of the last value at exactly this time; empty where there is none.
  [[nodiscard]] std::optional<std::size_t> indexOf(double time) const;
};

struct ImportSeries {
  std::string quantity;  ///< empty for a tangential force
  bool isPairs = false;  ///< stored as [value, time]
  ImportFormula formula;
};

struct ImportTool {
  std::string id;
  std::string kind;
  std::vector<ImportSeries> series;
  std::optional<ImportSeries> tangentialForce;
};

/// What the steps hold of one suction zone, joining tong, join or line join; the members that its kind of
/// record has.
struct ImportRecord {
  GUIdentifier guid;
  GUIdentifier simulationUnitJoin;
  std::string id;
  std::string name;
  /// By step: the state, or of a suction zone whether it is active (0 or 1); empty where the step does not
  /// hold it.
  std::vector<std::optional<std::uint64_t>> states;
  /// The range of a skin is that of its formulas' values at the time of the step.
  std::vector<std::pair<std::string, std::vector<ImportFormula>>> skins;
};

struct ImportUnit {
  GUIdentifier id;
  std::string name;
  std::optional<StepBounds> visibleSteps;        ///< indices of the step times
  std::vector<std::optional<double>> stepTimes;  ///< empty: the step has no data
  std::vector<ImportTool> tools;
  std::vector<GUIdentifier> joinsDefinedInUnit;
  std::vector<std::pair<std::string, ToolGroups>> toolGroupings;  ///< by the name of the family
  std::vector<ImportRecord> suctionZones;
  std::vector<ImportRecord> joiningTongs;
  std::vector<ImportRecord> joins;
  std::vector<ImportRecord> lineJoins;
};

/// What becomes of the histories of an input: the units of a results file with formulas in place of numbers.
struct ImportMap {
  std::vector<ImportUnit> units;
};

/// Reads a map (docs/importing.md) for `histories`, which must outlive it. Whatever the format does not
/// provide for, an identifier that the results file would not take, a history that the input does not have
/// and an entry that would have no effect are an `Error` with the place in the map. `name` is what messages
/// call the map.
[[nodiscard]] ImportMap readImportMap(std::string const& name, std::string const& text,
                                      Histories const& histories);

}  // namespace Kestrel::ResultTables

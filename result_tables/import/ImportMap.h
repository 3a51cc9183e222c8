#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "VantaService_Identifier/GUIdentifier.h"
#include "result_tables/import/Histories.h"
#include "result_tables/json/JsonShapes.h"

namespace Kestrel::ResultTables {

/// Which of the solver's steps histories are taken from.
struct ImportSteps {
  std::optional<std::uint32_t> number;  ///< empty: all of them, one after the other
};

/// A time of the solver, which may begin anew in each of its steps.
struct ImportTime {
  double time = 0.0;
  std::optional<std::uint32_t> step = {};  ///< empty: the last one that has this time
};

/// scale * history + offset. Refers to the histories that the map was read for.
struct ImportTerm {
  /// How the rows of one time become one value. `one`: there is one, or of a set of nodes the one at `row`.
  enum class Rows { one, sum, mean, smallest, largest, largestMagnitude };

  History history;
  Rows rows = Rows::one;
  std::size_t row = 0;
  std::optional<std::int64_t> element;  ///< of an element print: only the rows of this element
  std::optional<std::int64_t> point;    ///< likewise of this integration point
  double scale = 1.0;
  double offset = 0.0;
  std::size_t firstTime = 0;                    ///< index of the first time of the history that is used
  std::size_t timeCount = std::dynamic_extent;  ///< how many from there on; by default all

  [[nodiscard]] std::span<double const> times() const {
    return std::span(history.table->times).subspan(firstTime, timeCount);
  }
  /// The numbers of the steps of the times; empty where the input has none.
  [[nodiscard]] std::span<std::uint32_t const> steps() const;
  /// The value at the time with the index `time`. NaN as soon as one of the rows has none.
  [[nodiscard]] double at(std::size_t time) const;
  /// How many rows the value at that time is made of.
  [[nodiscard]] std::size_t rowCount(std::size_t time) const;

 private:
  /// Whether the row with that index among all rows of the history is used.
  [[nodiscard]] bool uses(std::size_t rowOfAll) const;
};

/// The sum of its terms, or the root of the sum of their squares. All terms have the same times.
struct ImportFormula {
  bool isNorm = false;
  std::vector<ImportTerm> terms;  ///< at least one

  [[nodiscard]] std::span<double const> times() const { return terms.front().times(); }
  [[nodiscard]] double at(std::size_t time) const;
  /// The index of the last value at exactly this time; empty where there is none.
  [[nodiscard]] std::optional<std::size_t> indexOf(ImportTime const& time) const;
};

/// The smallest and the largest value that formulas have at exactly this time, which all of them have. A
/// range is of finite numbers; where a solver has diverged there is none. REQUIRES: at least one formula.
[[nodiscard]] std::optional<std::pair<double, double>> rangeAt(std::vector<ImportFormula> const& formulas,
                                                               ImportTime const& time);

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
  std::optional<StepBounds> visibleSteps;            ///< indices of the step times
  std::vector<std::optional<ImportTime>> stepTimes;  ///< empty: the step has no data
  std::optional<ImportSteps> steps = {};             ///< empty: all, and no time may be before another
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

/// Whether a formula must say which node of the table it means: of several nodes, forces alone add up by
/// themselves.
[[nodiscard]] bool mustNameNode(HistoryTable const& table);

/// Reads a map (docs/importing.md) for `histories`, which must outlive it. Whatever the format does not
/// provide for, an identifier that the results file would not take, a history that the input does not have
/// and an entry that would have no effect are an `Error` with the place in the map. `name` is what messages
/// call the map. `steps` goes before what the units say.
[[nodiscard]] ImportMap readImportMap(std::string const& name, std::string_view text,
                                      Histories const& histories,
                                      std::optional<ImportSteps> const& steps = {});

}  // namespace Kestrel::ResultTables

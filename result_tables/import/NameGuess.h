#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Business_SimulationResult/ToolForceDataType.h"
#include "result_tables/import/Histories.h"

namespace Kestrel::ResultTables {

// What the names of histories let one suppose. All of it without regard to case.

/// What a history is to its tool. A direction is that of a force.
enum class HistoryRole {
  none,
  x,
  y,
  z,  ///< taken for the normal direction
  force,
  normalForce,
  closingForce,
  supportingForce,
  tangentialForce,
  normalDisplacement,
  distance,
  gap,
};

struct HistoryGuess {
  std::string unit;      ///< "OP10" of "OP10_C1_TIP"; may be empty
  std::string tool;      ///< "C1"; may be empty
  HistoryRole role{};    ///< none also where the input's physical unit is one of something else
  HistoryRole part{};    ///< which of the tool's forces the entity bears ("TIP", "REST"): closing, supporting
  std::string_view key;  ///< the quantity of a results file that the history is named after; may be empty
  double scale = 1.0;    ///< makes N or mm of it
};

[[nodiscard]] HistoryGuess guessHistory(History const& history);

/// The kind of a tool of this name.
[[nodiscard]] std::optional<ToolForceDataType> guessToolKind(std::string_view tool);

/// One way to feed a column: the sum of all histories of one role, or the norm of one history each of
/// several.
using ColumnFeed = std::vector<HistoryRole>;

struct GuessedColumn {
  std::string_view quantity;      ///< of results files; empty: the tangential force of a spot weld
  std::vector<ColumnFeed> feeds;  ///< the first that can be made is taken
};

/// The columns of a kind of tool.
[[nodiscard]] std::vector<GuessedColumn> const& guessedColumnsOf(ToolForceDataType kind);

/// The kind of the tools that have a column of this quantity; `tool` where none has.
[[nodiscard]] ToolForceDataType toolKindOfQuantity(std::string_view quantity);

/// The family that a tool of kind `tool` belongs to: the name of one that units group.
[[nodiscard]] std::string_view guessToolFamily(std::string_view tool);

}  // namespace Kestrel::ResultTables

#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Business_TableProperties/MaxValueGroupContainer.h"
#include "VantaService_Identifier/GUIdentifier.h"
#include "result_tables/json/JsonShapes.h"
#include "result_tables/results/ToolDraft.h"

namespace Kestrel::ResultTables {

// What a unit of a results file (docs/results-file.md) consists of, for those who make results otherwise than
// by reading a file. Copies share the numbers of the series.

struct SuctionZoneRecord {
  GUIdentifier guid;
  std::string name;
  bool active = false;
};

struct JoiningTongRecord {
  std::string id;
  std::string name;
  std::uint32_t state = 0;
};

struct JoinRecord {
  GUIdentifier guid;
  std::string id;
  std::string name;
  std::uint32_t state = 0;
};

/// The bounds of a skin's values that there are.
struct SkinRange {
  std::optional<double> minimum;
  std::optional<double> maximum;
};

struct LineJoinRecord {
  GUIdentifier guid;
  std::string id;
  std::string name;
  std::uint32_t state = 0;
  GUIdentifier simulationUnitJoin;
  /// By name; none of a skin that holds something other than numbers.
  std::vector<std::pair<std::string, std::optional<SkinRange>>> skins;
};

struct StepRecords {
  std::vector<SuctionZoneRecord> suctionZones;
  std::vector<JoiningTongRecord> joiningTongs;
  std::vector<JoinRecord> joins;
  std::vector<LineJoinRecord> lineJoins;
};

/// What is unique in a results file is so here.
struct UnitRecords {
  GUIdentifier id;
  std::string name;
  std::optional<StepBounds> visibleSteps = {};  ///< indices of `steps`
  std::vector<ToolDraft> tools = {};
  std::vector<GUIdentifier> joinsDefinedInUnit = {};
  std::vector<std::pair<MaxValueGroupContainer::DataType, ToolGroups>> toolGroupings = {};  ///< each once
  std::vector<std::optional<StepRecords>> steps = {};  ///< none: a step without data
};

}  // namespace Kestrel::ResultTables

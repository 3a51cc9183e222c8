#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Business_SimulationResult/ToolForceDataType.h"
#include "VantaService_Identifier/GUIdentifier.h"
#include "result_tables/json/JsonReader.h"

namespace Kestrel::ResultTables {

// Shapes that the project's own documents share. They refer to the reader and to their targets, which must
// outlive them.

/// A string that is stored as it is.
JsonShape jsonText(std::string& target);

/// A UUID; anything else is refused.
JsonShape jsonIdentifier(JsonReader const& reader, std::function<void(GUIdentifier const&)> onIdentifier);
JsonShape jsonIdentifier(JsonReader const& reader, GUIdentifier& target);

/// The name of a document's format, which must be `name`.
JsonShape jsonFormatName(JsonReader const& reader, std::string_view name);

/// The version of a document's format, which must be 1.
JsonShape jsonFormatVersion(JsonReader const& reader);

/// Steps of a unit by their numbers; both bounds belong to them, and `first` may be beyond `last`.
struct StepBounds {
  std::uint64_t first = 0;
  std::uint64_t last = 0;
};

/// The "visibleSteps" of a unit.
JsonShape jsonStepBounds(std::optional<StepBounds>& target);

/// For the `onEnd` of a unit: refuses bounds that are not the numbers of two of `steps` steps.
void checkStepBounds(JsonReader const& reader, std::optional<StepBounds> const& bounds, std::size_t steps);

/// The "kind" of a tool.
JsonShape jsonToolKind(JsonReader const& reader,
                       std::function<void(std::string_view name, ToolForceDataType type)> onKind);

/// Groups of tools in the order in which they are shown: the name of each and the identifiers of its tools.
using ToolGroups = std::vector<std::pair<std::string, std::vector<std::string>>>;

/// The "toolGroupings" of a unit: groups by the name of a family. `beginFamily` gives the groups to fill.
JsonShape jsonToolGroupings(std::vector<std::string> const& families,
                            std::function<ToolGroups&(std::string_view family)> const& beginFamily);

}  // namespace Kestrel::ResultTables

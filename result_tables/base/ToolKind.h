#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Business_SimulationResult/ToolForceDataType.h"

namespace Kestrel::ResultTables {

/// The kind of tool that files call `name`; empty for any other name.
[[nodiscard]] std::optional<ToolForceDataType> toolKindOf(std::string_view name);

/// The name under which `toolKindOf` finds it.
[[nodiscard]] std::string_view toolKindName(ToolForceDataType kind);

/// All names that `toolKindOf` knows, for a message: "pilot, clamp, ...".
[[nodiscard]] std::string toolKindNames();

}  // namespace Kestrel::ResultTables

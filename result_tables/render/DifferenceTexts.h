#pragma once

#include <optional>
#include <string>

#include "result_tables/tables/Differences.h"

// What is said of a difference, wherever it is shown.

namespace Kestrel::ResultTables {

/// A percentage is shown with so many digits at the most.
inline constexpr int s_digitsOfPercent = 3;

/// Whether the file has the value, and a number for it.
[[nodiscard]] bool hasNumber(std::optional<ComparedValue> const& value);

/// The change and the relative one where both files have a number.
[[nodiscard]] std::optional<double> shownChange(ValueDifference const& difference);
[[nodiscard]] std::optional<double> shownRelativeChange(ValueDifference const& difference);

/// What became of the value besides its number, as "removed" or "now beyond its limit"; empty where that is
/// nothing.
[[nodiscard]] std::string stateText(ValueDifference const& difference);

/// The name of the quantity with its unit: "Max Normal Force [N]".
[[nodiscard]] std::string quantityText(TableColumn const& column);

}  // namespace Kestrel::ResultTables

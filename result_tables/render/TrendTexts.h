#pragma once

#include <string>

#include "result_tables/tables/Trend.h"

// What is said beside a picture of a trend, in one printable line each.

namespace Kestrel::ResultTables {

/// "OP20: Clamps, Forces, Left, Clamp 1, Max Closing Force [N]"; an element that has come before in its
/// sub-group has its number behind it, from 2: "Clamp 1 (2)".
[[nodiscard]] std::string titleText(Trend const& trend);

/// What the runs stand on: their numbers, or a label.
[[nodiscard]] std::string axisText(Trend const& trend);

/// "runs: 3, minimum 1 N, maximum 3 N, mean 2 N, standard deviation 1 N, beyond the limit 33.3 %" of the runs
/// that have a number; what there is not is left out.
[[nodiscard]] std::string statisticsText(Trend const& trend, int digits, char decimalMark = '.');

}  // namespace Kestrel::ResultTables

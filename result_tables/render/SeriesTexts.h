#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "result_tables/tables/Series.h"

// What is said beside a picture of a series, in one printable line each. `decimalMark` stands for the point
// in numbers.

namespace Kestrel::ResultTables {

/// "OP20: Clamps, Forces, Left, Clamp 1" of a unit, a title and parts, of which empty ones are left out.
[[nodiscard]] std::string placeText(std::string_view unit, std::string_view title,
                                    std::initializer_list<std::string_view> parts);

/// "OP20: Clamps, Forces, Left, Clamp 1, Max Closing Force"
[[nodiscard]] std::string placeText(TableSeries const& series);

/// The same with the unit of the values: "OP20: Clamps, Forces, Left, Clamp 1, Max Closing Force [N]"
[[nodiscard]] std::string titleText(TableSeries const& series);

/// The value that the table has, with its step and time: "-846.15 N, step 3, time 0.6"; "no data" or "NaN"
/// where there is no number.
[[nodiscard]] std::string extremeText(TableSeries const& series, int digits, char decimalMark = '.');

/// "limit 500 N"
[[nodiscard]] std::string limitText(double limit, std::string const& unit, int digits,
                                    char decimalMark = '.');

/// How much data there is: "values: 35", "values: 35, not numbers: 2", "records: 4, minimum and maximum
/// of each".
[[nodiscard]] std::string extentText(TableSeries const& series);

}  // namespace Kestrel::ResultTables

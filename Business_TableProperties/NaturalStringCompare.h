#pragma once

#include <string>

namespace Kestrel {

/// Orders names as people count: numbers inside them by value, letters without regard to case, white space
/// passed over; a strict weak ordering.
///
/// - Names end at their first NUL. Their other characters are compared as signed bytes after `toupper`, so
/// that
///   whatever is not ASCII comes before all that is, and even before the end of the name.
/// - Of two runs of digits, the one with fewer digits is smaller, then the one with the smaller digit at the
/// first
///   difference. If either run begins with a 0, they are compared as fractions are: digit by digit from the
///   left, and only then is the shorter one smaller ("a01" is before "a1").
/// - White space ends a run of digits: "1 2" is before "12".
struct NaturalStringCompare {
  /// Whether `a` comes before `b`. Costs one pass over both; does not throw.
  [[nodiscard]] bool operator()(std::string const& a, std::string const& b) const;
};

}  // namespace Kestrel

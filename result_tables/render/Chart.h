#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "result_tables/tables/Series.h"
#include "result_tables/tables/Trend.h"

// What a picture of a series consists of, wherever it is drawn.

namespace Kestrel::ResultTables {

/// A number on an axis.
struct Tick {
  double fraction;  ///< where it stands, as in `Axis`
  std::string label;
};

/// The numbers that one direction of a picture shows.
struct Axis {
  double low = 0.0;
  double high = 0.0;        ///< not below `low`
  std::vector<Tick> ticks;  ///< ascending; none where there is no number to show

  /// Where a finite number stands: 0 at `low`, 1 at `high`, one half where both are equal.
  [[nodiscard]] double fractionOf(double value) const;
};

enum class AxisEnds { exact, atTicks };

/// An axis from `low` to `high` or, with its ends at ticks, a little beyond. Ticks stand at multiples of 1, 2
/// or 5 times a power of ten, which are not less than `smallestStep`, in about as many intervals as are
/// wanted, and where the numbers are too close together or too far apart for that, at both ends. REQUIRES:
/// low <= high, both finite; intervals > 0.
[[nodiscard]] Axis genAxis(double low, double high, AxisEnds ends, std::size_t intervals,
                           double smallestStep = 0.0);

/// A place in a picture: fractions of its width, from the left, and of its height, from below.
struct ChartPoint {
  double x;
  double y;

  friend bool operator==(ChartPoint const&, ChartPoint const&) = default;
};

/// A line across the picture.
struct LimitLine {
  double value;  ///< the limit or its negative
  double y;
};

/// Intervals that the axes should have.
struct ChartIntervals {
  std::size_t x;
  std::size_t y;
};

struct Chart {
  bool isOverTime;  ///< else over steps
  Axis x;
  Axis y;
  /// What is joined by lines, in stored order: the series without its gaps, which are values that are no
  /// numbers, infinite ones, and those whose time is neither. Of line joins the minima, then the maxima.
  std::vector<std::vector<ChartPoint>> lines;
  std::vector<ChartPoint> infinite;  ///< values, at the lower or upper end
  /// Where values begin to be exceeded, above 0 and below, in the range of the values or not farther from it
  /// than it is wide (than its distance from 0, where it is no wider than one value).
  std::vector<LimitLine> limits;
  /// The same where the limit is not one for all: lines that go from limit to limit.
  std::vector<std::vector<ChartPoint>> limitSteps;
  std::optional<ChartPoint> extreme;  ///< the value that the table has
  std::vector<ChartPoint> exceeded;   ///< values of several that are beyond their limits

  /// Whether there is any value to be seen.
  [[nodiscard]] bool isEmpty() const { return lines.empty() && infinite.empty(); }
};

/// Over the times of the series or, where it has none, over its steps.
[[nodiscard]] Chart genChart(TableSeries const& series, ChartIntervals const& intervals);

/// Over the places of the runs. Values that cannot be trusted are gaps.
[[nodiscard]] Chart genChart(Trend const& trend, ChartIntervals const& intervals);

}  // namespace Kestrel::ResultTables

#include "result_tables/render/Chart.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "result_tables/base/Text.h"

namespace Kestrel::ResultTables {

namespace {

/// 1, 2 or 5 times a power of ten, the least that is not below `step`.
double roundStep(double step) {
  double const power = std::pow(10.0, std::floor(std::log10(step)));
  for (double const factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= step) return factor * power;
  }
  return 10.0 * power;
}

/// Half of what lies between; a range of doubles can be wider than the greatest of them.
double halfSpan(double low, double high) { return high / 2 - low / 2; }

double magnitudeOf(double low, double high) { return std::max(std::abs(low), std::abs(high)); }

/// Digits of a label that need not be told from another.
constexpr int s_fewestDigits = 6;

/// With as many digits as neighbouring ticks need to differ.
std::string labelOf(double value, double magnitude, double step) {
  auto const digits = 1 + static_cast<int>(std::floor(std::log10(magnitude)) - std::floor(std::log10(step)));
  return formatNumber(value, std::max(digits, s_fewestDigits));
}

/// Whether multiples of the step can be told from each other in the range.
bool isUsableStep(double step, double low, double high) {
  constexpr double most = 1e12;
  return step > 0 && magnitudeOf(low, high) / step < most;
}

/// Numbers of the multiples of the step at the ends of a range, as integers. What is off by less than the
/// rounding of the division counts as a multiple.
constexpr double s_rounding = 1e-9;
double firstMultipleIn(double low, double step) { return std::ceil(low / step - s_rounding); }
double lastMultipleIn(double high, double step) { return std::floor(high / step + s_rounding); }

/// Moves the ends outwards to multiples of the step, where these are still doubles.
void extendToMultiples(Axis& axis, double step) {
  double const low = lastMultipleIn(axis.low, step) * step;
  double const high = firstMultipleIn(axis.high, step) * step;
  if (std::isfinite(low)) axis.low = std::min(axis.low, low);
  if (std::isfinite(high)) axis.high = std::max(axis.high, high);
}

void appendEnds(Axis& axis) {
  bool const hasTwo = axis.low < axis.high;
  axis.ticks.push_back(
      {axis.fractionOf(axis.low), hasTwo ? shortestForm(axis.low) : formatNumber(axis.low, s_fewestDigits)});
  if (hasTwo) axis.ticks.push_back({1.0, shortestForm(axis.high)});
}

// ---- of a series

/// The finite ones of some numbers; none where `low` exceeds `high`.
struct Range {
  double low = HUGE_VAL;
  double high = -HUGE_VAL;

  [[nodiscard]] bool isEmpty() const { return low > high; }
  void add(double value) {
    if (!std::isfinite(value)) return;
    low = std::min(low, value);
    high = std::max(high, value);
  }
};

/// Times, or steps where there is not one time.
std::vector<double> placesOf(MaxValueSeries const& series, bool isOverTime) {
  if (isOverTime) return series.companions;
  return {series.steps.begin(), series.steps.end()};
}

/// What is drawn as a line each.
std::vector<std::vector<double> const*> curvesOf(TableSeries const& series) {
  if (series.hasRanges()) return {&series.series.minima, &series.series.maxima};
  return {&series.series.values};
}

bool isNear(double limit, Range const& range) {
  double const distance = std::max({limit - range.high, range.low - limit, 0.0});
  double const half = halfSpan(range.low, range.high);
  return distance / 2 <= (half > 0 ? half : std::abs(range.high) / 2);
}

/// The limits to show beside values of a range; all where it is empty.
std::vector<double> limitsNear(Range const& range, std::optional<ColumnLimit> const& limit) {
  if (!limit || !std::isfinite(limit->value) || limit->value < 0) return {};
  std::vector<double> limits = {limit->value};
  if (limits.front() > 0) limits.push_back(-limits.front());
  if (!range.isEmpty()) std::erase_if(limits, [&](double each) { return !isNear(each, range); });
  return limits;
}

/// The height of a value that is a number.
double heightOf(double value, Axis const& axis) {
  if (std::isinf(value)) return value > 0 ? 1.0 : 0.0;
  return axis.fractionOf(value);
}

/// Cuts one curve into lines at its gaps.
void appendCurve(Chart& chart, std::vector<double> const& places, std::vector<double> const& values) {
  bool isJoined = false;
  for (std::size_t i = 0; i < values.size(); ++i) {
    bool const isShown = std::isfinite(places[i]) && !std::isnan(values[i]);
    if (isShown && std::isfinite(values[i])) {
      if (!isJoined) chart.lines.emplace_back();
      chart.lines.back().push_back({chart.x.fractionOf(places[i]), chart.y.fractionOf(values[i])});
      isJoined = true;
      continue;
    }
    isJoined = false;
    if (isShown) chart.infinite.push_back({chart.x.fractionOf(places[i]), heightOf(values[i], chart.y)});
  }
}

void setAxes(Chart& chart, TableSeries const& series, std::vector<double> const& places,
             ChartIntervals const& intervals) {
  Range x;
  Range y;
  for (double const place : places) x.add(place);
  for (auto const* const values : curvesOf(series)) {
    for (std::size_t i = 0; i < values->size(); ++i) {
      if (std::isfinite(places[i])) y.add((*values)[i]);
    }
  }
  auto const limits = limitsNear(y, series.column.limit);
  for (double const limit : limits) y.add(limit);
  if (!x.isEmpty())
    chart.x = genAxis(x.low, x.high, AxisEnds::exact, intervals.x, chart.isOverTime ? 0.0 : 1.0);
  if (!y.isEmpty()) chart.y = genAxis(y.low, y.high, AxisEnds::atTicks, intervals.y);
  for (double const limit : limits) chart.limits.push_back({limit, chart.y.fractionOf(limit)});
}

// ---- of a trend

/// What is drawn of a value: a NaN for one that is not.
double trendValue(TrendPoint const& point) { return point.isShown() ? point.value.value : NAN; }

/// The limit of all points; none where they have not one and the same.
std::optional<ColumnLimit> commonLimit(Trend const& trend) {
  if (trend.points.empty()) return std::nullopt;
  auto const& limit = trend.points.front().limit;
  bool const isCommon = std::ranges::all_of(trend.points, [&limit](TrendPoint const& point) {
    return point.limit.has_value() == limit.has_value() && (!limit || point.limit->value == limit->value);
  });
  return isCommon ? limit : std::nullopt;
}

/// The line along the limits of one sign, each of which reaches half way to the next point.
void appendLimitSteps(Chart& chart, Trend const& trend, Range const& y, double sign) {
  auto const& points = trend.points;
  bool isJoined = false;
  for (std::size_t i = 0; i < points.size(); ++i) {
    auto const limits = limitsNear(y, points[i].limit);
    auto const limit = std::ranges::find_if(limits, [sign](double each) { return each * sign >= 0; });
    bool const hasLine = limit != limits.end() && (sign > 0 || *limit < 0);
    if (hasLine) {
      if (!isJoined) chart.limitSteps.emplace_back();
      double const before = points[i == 0 ? 0 : i - 1].at;
      double const after = points[std::min(i + 1, points.size() - 1)].at;
      double const height = chart.y.fractionOf(*limit);
      for (double const to : {before, after})
        chart.limitSteps.back().push_back({chart.x.fractionOf(points[i].at / 2 + to / 2), height});
    }
    isJoined = hasLine;
  }
}

}  // namespace

double Axis::fractionOf(double value) const {
  if (!(low < high)) return 0.5;
  double const span = high - low;
  double const fraction =
      std::isfinite(span) ? (value - low) / span : halfSpan(low, value) / halfSpan(low, high);
  return std::clamp(fraction, 0.0, 1.0);
}

Axis genAxis(double low, double high, AxisEnds ends, std::size_t intervals, double smallestStep) {
  Axis axis{low, high, {}};
  double const half = halfSpan(low, high);
  double const step =
      half > 0 ? roundStep(std::max(half / (static_cast<double>(intervals) / 2), smallestStep)) : 0.0;
  if (!isUsableStep(step, low, high)) {
    appendEnds(axis);
    return axis;
  }
  if (ends == AxisEnds::atTicks) extendToMultiples(axis, step);
  double const first = firstMultipleIn(axis.low, step);
  auto const count = static_cast<std::size_t>(std::max(lastMultipleIn(axis.high, step) - first + 1, 0.0));
  for (std::size_t i = 0; i < count; ++i) {
    double const value =
        (first + static_cast<double>(i)) * step + 0.0;  // without the sign of a negative zero
    if (std::isfinite(value))
      axis.ticks.push_back({axis.fractionOf(value), labelOf(value, magnitudeOf(axis.low, axis.high), step)});
  }
  return axis;
}

Chart genChart(TableSeries const& series, ChartIntervals const& intervals) {
  auto const& stored = series.series;
  Chart chart{};
  chart.isOverTime = std::any_of(stored.companions.begin(), stored.companions.end(),
                                 [](double time) { return std::isfinite(time); });
  auto const places = placesOf(stored, chart.isOverTime);
  setAxes(chart, series, places, intervals);
  for (auto const* const values : curvesOf(series)) appendCurve(chart, places, *values);
  if (series.extreme && std::isfinite(places[*series.extreme]))
    chart.extreme = {chart.x.fractionOf(places[*series.extreme]),
                     heightOf(stored.values[*series.extreme], chart.y)};
  return chart;
}

Chart genChart(Trend const& trend, ChartIntervals const& intervals) {
  Chart chart{};
  Range x;
  Range y;
  std::vector<double> places;
  std::vector<double> values;
  for (auto const& point : trend.points) {
    places.push_back(point.at);
    values.push_back(trendValue(point));
    x.add(places.back());
    y.add(values.back());
  }
  auto const ofValues = y;
  auto const common = commonLimit(trend);
  for (auto const& point : trend.points) {
    for (double const limit : limitsNear(ofValues, point.limit)) y.add(limit);
  }
  if (!x.isEmpty())
    chart.x = genAxis(x.low, x.high, AxisEnds::exact, intervals.x, trend.by.empty() ? 1.0 : 0.0);
  if (!y.isEmpty()) chart.y = genAxis(y.low, y.high, AxisEnds::atTicks, intervals.y);
  for (double const limit : limitsNear(ofValues, common))
    chart.limits.push_back({limit, chart.y.fractionOf(limit)});
  if (!common) {
    for (double const sign : {1.0, -1.0}) appendLimitSteps(chart, trend, ofValues, sign);
  }
  appendCurve(chart, places, values);
  for (auto const& point : trend.points) {
    if (point.value.isExceeded && point.isShown())
      chart.exceeded.push_back({chart.x.fractionOf(point.at), heightOf(point.value.value, chart.y)});
  }
  return chart;
}

}  // namespace Kestrel::ResultTables

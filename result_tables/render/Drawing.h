#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "result_tables/render/Chart.h"
#include "result_tables/tables/Series.h"
#include "result_tables/tables/Trend.h"

// The picture of a series as shapes, whatever they are written as. Lengths are pixels, from the left and from
// above.

namespace Kestrel::ResultTables {

/// What a shape stands for, by which it gets its colour.
enum class ShapeRole {
  title,
  about,  ///< how much data there is
  grid,
  tick,
  axis,
  label,  ///< of an axis and of its ticks
  limit,
  limitText,
  curve,
  dots,
  infinite,
  extreme,  ///< the value that the table has
  extremeText,
  extremeExceeded,  ///< the same where it is beyond its limit
  extremeTextExceeded,
};

struct PixelPoint {
  double x;
  double y;

  friend bool operator==(PixelPoint const&, PixelPoint const&) = default;
};

struct LineShape {
  ShapeRole role;
  PixelPoint from;
  PixelPoint to;
};

enum class TextAnchor { start, middle, end };

/// One printable line.
struct TextShape {
  ShapeRole role;
  PixelPoint place;  ///< of the anchor, on the base line
  TextAnchor anchor;
  std::string text;
};

/// What joins values, in stored order; each of the lines has a point at least.
struct CurveShape {
  std::vector<std::vector<PixelPoint>> lines;
};

/// Values that are shown one by one.
struct DotsShape {
  std::vector<PixelPoint> centres;
};

/// A triangle that points beyond the picture.
struct Arrow {
  PixelPoint tip;
  bool isUp;

  static constexpr double width = 8;
  static constexpr double height = 8;
};

/// Infinite values.
struct ArrowsShape {
  std::vector<Arrow> arrows;
};

struct CircleShape {
  ShapeRole role;
  PixelPoint centre;
  double radius;
};

using Shape = std::variant<LineShape, TextShape, CurveShape, DotsShape, ArrowsShape, CircleShape>;

struct Drawing {
  double height;              ///< what the picture takes, from its top
  std::vector<Shape> shapes;  ///< each may lie on those before it
};

/// How large a picture is and what it has.
struct DrawingLayout {
  double width;
  double plotHeight;  ///< of what lies between the axes
  double footHeight;  ///< numbers and name of the horizontal axis, and what is below them
  bool hasTitle;      ///< with what the series is and the file that it comes from
  /// Points of curves and infinite values in all; without it, what can be told apart in the picture.
  std::optional<std::size_t> mostPoints;
  char decimalMark = '.';  ///< in numbers
};

/// What a value that is marked says of itself.
struct PictureMark {
  std::string text;
  bool isExceeded;
  bool isNegative;
};

/// What is drawn, wherever it comes from. All texts are printable lines.
struct Picture {
  Chart chart;
  std::string title;
  std::string source;                   ///< said before `about` where there is a title; empty: nothing
  std::string about;                    ///< how much data there is, or why there is no chart
  std::string axisName;                 ///< of the horizontal axis
  std::vector<std::string> limitTexts;  ///< of the limits of the chart
  PictureMark extreme = {};             ///< of the extreme of the chart
};

[[nodiscard]] Drawing drawPicture(Picture const& picture, DrawingLayout const& layout, double top);

/// The picture of a series whose top is `top`. Passes over the values a few times. However many there are,
/// the lowest and the highest of all are in it, and those of their surroundings as far as there is room.
/// REQUIRES: mostPoints, where it is said, is 4 * s_fewestReduced at least.
[[nodiscard]] Drawing drawSeries(TableSeries const& series, DrawingLayout const& layout, double top);

/// The same of a value through the runs of a study.
[[nodiscard]] Drawing drawTrend(Trend const& trend, DrawingLayout const& layout, double top);

}  // namespace Kestrel::ResultTables

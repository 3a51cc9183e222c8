#include "result_tables/render/HtmlCurve.h"

#include <fmt/format.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <boost/algorithm/string/replace.hpp>
#include <cmath>
#include <string_view>
#include <variant>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/render/Drawing.h"
#include "result_tables/render/SeriesTexts.h"
#include "result_tables/render/TextStyle.h"
#include "result_tables/render/Thinning.h"

namespace Kestrel::ResultTables {

namespace {

constexpr double s_curveWidth = 640;
constexpr double s_curvePlotHeight = 172;
constexpr double s_curveFootHeight = 42;

std::string_view nameOf(ShapeRole role) {
  switch (role) {
    case ShapeRole::title:
      return "title";
    case ShapeRole::about:
      return "about";
    case ShapeRole::grid:
      return "grid";
    case ShapeRole::tick:
      return "tick";
    case ShapeRole::axis:
      return "axis";
    case ShapeRole::label:
      return "label";
    case ShapeRole::limit:
      return "limit";
    case ShapeRole::limitText:
      return "limitText";
    case ShapeRole::curve:
      return "curve";
    case ShapeRole::dots:
      return "dots";
    case ShapeRole::infinite:
      return "infinite";
    case ShapeRole::extreme:
      return "extreme";
    case ShapeRole::extremeText:
      return "extremeText";
    case ShapeRole::extremeExceeded:
      return "extremeExceeded";
    case ShapeRole::extremeTextExceeded:
      return "extremeTextExceeded";
  }
  return "";
}

int pixels(double length) { return static_cast<int>(std::lround(length)); }

/// An SVG path in whole pixels, each point relative to the one before it.
class PixelPath {
 public:
  void move(PixelPoint const& point) {
    int const x = pixels(point.x);
    int const y = pixels(point.y);
    append('M', x, y);
    m_x = x;
    m_y = y;
  }

  /// Appends nothing where the point is in the same pixel.
  void draw(PixelPoint const& point) {
    int const x = pixels(point.x);
    int const y = pixels(point.y);
    if (x == m_x && y == m_y) return;
    append('l', x - m_x, y - m_y);
    m_x = x;
    m_y = y;
  }

  /// Draws a line that ends where it begins, which round ends make a dot.
  void drawDot() { m_text += "h0"; }
  void close() { m_text += 'z'; }

  [[nodiscard]] std::string const& text() const { return m_text; }

 private:
  void append(char command, int x, int y) {
    bool const isRepeated = command == 'l' && m_isDrawing;
    m_isDrawing = command == 'l';
    if (!isRepeated) m_text += command;
    if (isRepeated && x >= 0) m_text += ' ';
    m_text += std::to_string(x);
    if (y >= 0) m_text += ' ';
    m_text += std::to_string(y);
  }

  std::string m_text;
  int m_x = 0;
  int m_y = 0;
  bool m_isDrawing = false;  ///< whether the last command was a line, which need not be named again
};

class ShapeWriter {
 public:
  explicit ShapeWriter(rapidjson::Writer<rapidjson::StringBuffer>& out) : m_out(out) {}

  void operator()(LineShape const& shape) {
    begin("l", shape.role);
    write(shape.from);
    write(shape.to);
    m_out.EndArray();
  }

  void operator()(TextShape const& shape) {
    begin("t", shape.role);
    write(shape.place);
    write(shape.text);
    write(shape.anchor == TextAnchor::start ? "s" : shape.anchor == TextAnchor::middle ? "m" : "e");
    m_out.EndArray();
  }

  void operator()(CurveShape const& shape) {
    PixelPath path;
    for (auto const& line : shape.lines) {
      path.move(line.front());
      for (auto const& point : line) path.draw(point);
      m_points.insert(m_points.end(), line.begin(), line.end());
    }
    writePath(ShapeRole::curve, path);
  }

  void operator()(DotsShape const& shape) {
    if (shape.centres == m_points) {
      begin("p", ShapeRole::dots);
      m_out.EndArray();
      return;
    }
    PixelPath path;
    for (auto const& centre : shape.centres) {
      path.move(centre);
      path.drawDot();
    }
    writePath(ShapeRole::dots, path);
  }

  void operator()(ArrowsShape const& shape) {
    PixelPath path;
    for (auto const& [tip, isUp] : shape.arrows) {
      double const base = tip.y + (isUp ? Arrow::height : -Arrow::height);
      path.move(tip);
      path.draw({tip.x + Arrow::width / 2, base});
      path.draw({tip.x - Arrow::width / 2, base});
      path.close();
    }
    writePath(ShapeRole::infinite, path);
  }

  void operator()(CircleShape const& shape) {
    begin("c", shape.role);
    write(shape.centre);
    m_out.Int(pixels(shape.radius));
    m_out.EndArray();
  }

  void write(std::string_view text) {
    m_out.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
  }

 private:
  void begin(std::string_view kind, ShapeRole role) {
    m_out.StartArray();
    write(kind);
    write(nameOf(role));
  }
  void write(PixelPoint const& point) {
    m_out.Int(pixels(point.x));
    m_out.Int(pixels(point.y));
  }
  void writePath(ShapeRole role, PixelPath const& path) {
    begin("p", role);
    write(path.text());
    m_out.EndArray();
  }

  rapidjson::Writer<rapidjson::StringBuffer>& m_out;
  std::vector<PixelPoint> m_points;  ///< of the curve
};

/// What the picture shows, for those who do not see it; they know of which value it is.
std::string wordsFor(TableSeries const& series, char decimalMark) {
  auto const digits = TextStyle().digits;
  auto words = extremeText(series, digits, decimalMark);
  if (series.isExceeded) words += ", " + tr("beyond its limit");
  if (auto const& limit = series.column.limit)
    words += ", " + limitText(limit->value, limit->unit, digits, decimalMark);
  if (!series.series.values.empty()) words += ", " + extentText(series);
  return words;
}

/// What has been written since the last time; the writer begins anew.
std::string take(rapidjson::StringBuffer& buffer, rapidjson::Writer<rapidjson::StringBuffer>& out) {
  std::string json(buffer.GetString(), buffer.GetSize());
  buffer.Clear();
  out.Reset(buffer);
  // JSON has such characters in strings alone.
  boost::replace_all(json, "<", "\\u003c");
  boost::replace_all(json, ">", "\\u003e");
  boost::replace_all(json, "&", "\\u0026");
  return json;
}

}  // namespace

HtmlCurve genHtmlCurve(TableSeries const& series, char decimalMark, std::size_t mostPoints) {
  static_assert(s_fewestCurvePoints >= 4 * s_fewestReduced);
  auto const drawing = drawSeries(
      series, {s_curveWidth, s_curvePlotHeight, s_curveFootHeight, false, mostPoints, decimalMark}, 0);
  rapidjson::StringBuffer buffer;
  rapidjson::Writer out(buffer);
  ShapeWriter shapes(out);
  shapes.write(wordsFor(series, decimalMark));
  HtmlCurve curve{fmt::format("\"w\":{},\"h\":{},\"a\":{}", pixels(s_curveWidth), pixels(drawing.height),
                              take(buffer, out)),
                  {}};
  for (auto const& shape : drawing.shapes) {
    std::visit(shapes, shape);
    curve.shapes.push_back(take(buffer, out));
  }
  return curve;
}

}  // namespace Kestrel::ResultTables

#include "result_tables/render/SvgDrawings.h"

#include <fmt/format.h>

#include <cmath>
#include <initializer_list>
#include <iterator>
#include <pugixml.hpp>
#include <sstream>
#include <variant>

namespace Kestrel::ResultTables {

namespace {

// Lengths are pixels at the document's own size.
constexpr double s_svgMargin = 24;
constexpr double s_fontSize = 12;
constexpr double s_nothingHeight = 80;
constexpr DrawingLayout s_svgLayout{800, 220, 56, true, {}};

constexpr char const* s_textColour = "#1f2933";
constexpr char const* s_faintColour = "#616e7c";
constexpr char const* s_gridColour = "#e4e7eb";
constexpr char const* s_curveColour = "#1f5fa8";
constexpr char const* s_limitColour = "#b45309";
constexpr char const* s_exceededColour = "#c81e1e";

char const* colourOf(ShapeRole role) {
  switch (role) {
    case ShapeRole::title:
    case ShapeRole::extreme:
    case ShapeRole::extremeText:
      return s_textColour;
    case ShapeRole::about:
    case ShapeRole::tick:
    case ShapeRole::axis:
    case ShapeRole::label:
      return s_faintColour;
    case ShapeRole::grid:
      return s_gridColour;
    case ShapeRole::limit:
    case ShapeRole::limitText:
      return s_limitColour;
    case ShapeRole::curve:
    case ShapeRole::dots:
    case ShapeRole::infinite:
      return s_curveColour;
    case ShapeRole::extremeExceeded:
    case ShapeRole::extremeTextExceeded:
      return s_exceededColour;
  }
  return s_textColour;
}

struct Attribute {
  char const* name;
  std::string value;
};

void appendAttributes(pugi::xml_node& node, std::initializer_list<Attribute> attributes) {
  for (auto const& [name, value] : attributes) node.append_attribute(name) = value.c_str();
}

pugi::xml_node append(pugi::xml_node& parent, char const* name, std::initializer_list<Attribute> attributes) {
  auto node = parent.append_child(name);
  appendAttributes(node, attributes);
  return node;
}

/// A length with as many digits as can be seen.
std::string length(double pixels) { return fmt::format("{:.6g}", std::round(pixels * 10) / 10); }

/// Appends the shapes of one picture to their group.
class SvgShapes {
 public:
  explicit SvgShapes(pugi::xml_node group) : m_group(group) {}

  void operator()(LineShape const& shape) {
    auto line = append(m_group, "line",
                       {{"x1", length(shape.from.x)},
                        {"y1", length(shape.from.y)},
                        {"x2", length(shape.to.x)},
                        {"y2", length(shape.to.y)},
                        {"stroke", colourOf(shape.role)}});
    if (shape.role == ShapeRole::limit) appendAttributes(line, {{"stroke-dasharray", "6 4"}});
  }

  void operator()(TextShape const& shape) {
    if (shape.role == ShapeRole::title) m_group.append_child("title").text() = shape.text.c_str();
    auto text =
        append(m_group, "text",
               {{"x", length(shape.place.x)}, {"y", length(shape.place.y)}, {"fill", colourOf(shape.role)}});
    if (shape.anchor != TextAnchor::start)
      appendAttributes(text, {{"text-anchor", shape.anchor == TextAnchor::middle ? "middle" : "end"}});
    text.text() = shape.text.c_str();
    if (shape.role == ShapeRole::title) appendAttributes(text, {{"font-weight", "bold"}});
    if (shape.role == ShapeRole::extremeText || shape.role == ShapeRole::extremeTextExceeded)
      appendLightEdge(text);
  }

  void operator()(CurveShape const& shape) {
    std::string path;
    for (auto const& line : shape.lines) {
      char command = 'M';
      for (auto const& [x, y] : line) {
        fmt::format_to(std::back_inserter(path), "{}{} {}", command, length(x), length(y));
        command = 'L';
      }
    }
    append(m_group, "path",
           {{"fill", "none"},
            {"stroke", colourOf(ShapeRole::curve)},
            {"stroke-width", "1.5"},
            {"stroke-linejoin", "round"},
            {"d", path}});
  }

  void operator()(DotsShape const& shape) {
    std::string path;
    for (auto const& [x, y] : shape.centres)
      fmt::format_to(std::back_inserter(path), "M{} {}h0", length(x), length(y));
    append(m_group, "path",
           {{"fill", "none"},
            {"stroke", colourOf(ShapeRole::dots)},
            {"stroke-width", "4"},
            {"stroke-linecap", "round"},
            {"d", path}});
  }

  void operator()(ArrowsShape const& shape) {
    std::string path;
    for (auto const& [tip, isUp] : shape.arrows) {
      fmt::format_to(std::back_inserter(path), "M{} {}l{} {}h{}z", length(tip.x), length(tip.y),
                     length(Arrow::width / 2), length(isUp ? Arrow::height : -Arrow::height),
                     length(-Arrow::width));
    }
    append(m_group, "path", {{"fill", colourOf(ShapeRole::infinite)}, {"d", path}});
  }

  void operator()(CircleShape const& shape) {
    append(m_group, "circle",
           {{"cx", length(shape.centre.x)},
            {"cy", length(shape.centre.y)},
            {"r", length(shape.radius)},
            {"fill", "none"},
            {"stroke", colourOf(shape.role)},
            {"stroke-width", "2"}});
  }

 private:
  /// Keeps a text readable on lines.
  static void appendLightEdge(pugi::xml_node& text) {
    appendAttributes(text, {{"paint-order", "stroke"},
                            {"stroke", "#ffffff"},
                            {"stroke-width", "4"},
                            {"stroke-linejoin", "round"}});
  }

  pugi::xml_node m_group;
};

}  // namespace

std::string renderDrawingsAsSvg(std::size_t count, DrawNext const& draw, std::string const& nothing) {
  pugi::xml_document document;
  auto svg = append(document, "svg",
                    {{"xmlns", "http://www.w3.org/2000/svg"},
                     {"font-family", "sans-serif"},
                     {"font-size", length(s_fontSize)}});
  append(svg, "rect", {{"width", "100%"}, {"height", "100%"}, {"fill", "#ffffff"}});
  double height = s_svgMargin;
  for (std::size_t i = 0; i < count; ++i) {
    auto const drawing = draw(i, s_svgLayout, height);
    SvgShapes shapes(svg.append_child("g"));
    for (auto const& shape : drawing.shapes) std::visit(shapes, shape);
    height += drawing.height;
  }
  if (count == 0) {
    append(svg, "text", {{"x", length(s_svgMargin)}, {"y", length(height + 16)}, {"fill", s_textColour}})
        .text() = nothing.c_str();
    height += s_nothingHeight;
  }
  svg.append_attribute("width") = length(s_svgLayout.width).c_str();
  svg.append_attribute("height") = length(height).c_str();
  svg.append_attribute("viewBox") =
      fmt::format("0 0 {} {}", length(s_svgLayout.width), length(height)).c_str();
  std::ostringstream out;
  document.save(out, "  ", pugi::format_default, pugi::encoding_utf8);
  return out.str();
}

}  // namespace Kestrel::ResultTables

#include "result_tables/render/RenderLimits.h"

#include <fmt/format.h>

#include <algorithm>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/json/JsonWriter.h"
#include "result_tables/limits/LimitType.h"

namespace Kestrel::ResultTables {

namespace {

/// A number as text, cut at its decimal point.
struct Number {
  std::string text;
  std::size_t integerWidth;

  explicit Number(double value)
      : text(shortestForm(value)), integerWidth(std::min(text.find('.'), text.size())) {}
  [[nodiscard]] std::size_t fractionWidth() const { return text.size() - integerWidth; }
};

/// The widths of the columns of all units.
struct Layout {
  std::size_t name = 0;
  std::size_t integer = 0;
  std::size_t fraction = 0;
  std::size_t unitText = 0;

  explicit Layout(std::vector<ListedLimit> const& limits) {
    for (auto const& listed : limits) {
      Number const number(listed.limit->getLimit());
      name = std::max(name, limitTypeName(listed.limit->getType()).size());
      integer = std::max(integer, number.integerWidth);
      fraction = std::max(fraction, number.fractionWidth());
      unitText = std::max(unitText, displayWidth(toPrintable(listed.limit->getUnitString())));
    }
  }
};

void appendUnit(std::string& out, SimulationUnit const& unit, bool colour) {
  if (!out.empty()) out += '\n';
  auto const name = toPrintable(unit.getSimulationUnitName());
  out += fmt::format("{}  {}\n", colour ? "\x1b[1m" + name + "\x1b[0m" : name, unit.getID().toString());
}

void appendLimit(std::string& out, ListedLimit const& listed, Layout const& layout, bool colour) {
  auto const& limit = *listed.limit;
  Number const number(limit.getLimit());
  bool const isColoured = colour && !listed.isDefault;
  out += fmt::format("  {:>2}  {:<{}}  {:{}}{}{}{}", static_cast<std::uint32_t>(limit.getType()),
                     limitTypeName(limit.getType()), layout.name, "", layout.integer - number.integerWidth,
                     isColoured ? "\x1b[33m" : "", number.text, isColoured ? "\x1b[0m" : "");
  auto line = fmt::format("{:{}} {}", "", layout.fraction - number.fractionWidth(),
                          toPrintable(limit.getUnitString()));
  if (!listed.isDefault)
    line += std::string(layout.unitText - displayWidth(toPrintable(limit.getUnitString())), ' ') + " *";
  line.erase(line.find_last_not_of(' ') + 1);
  out += line + '\n';
}

}  // namespace

std::string renderLimitsAsText(std::vector<ListedLimit> const& limits, TextStyle const& style) {
  std::string out;
  Layout const layout(limits);
  SimulationUnit const* unit = nullptr;
  for (auto const& listed : limits) {
    if (listed.unit != unit) appendUnit(out, *listed.unit, style.colour);
    unit = listed.unit;
    appendLimit(out, listed, layout, style.colour);
  }
  bool const hasMarks =
      std::any_of(limits.begin(), limits.end(), [](ListedLimit const& listed) { return !listed.isDefault; });
  if (hasMarks) out += fmt::format("\n* {}\n", tr("not the default"));
  return out;
}

std::string renderLimitsAsJson(std::vector<ListedLimit> const& limits) {
  JsonWriter json;
  auto const text = [&json](std::string_view key, std::string_view value) {
    json.key(key);
    json.string(value);
  };
  json.beginObject();
  json.key("limits");
  json.beginArray();
  for (auto const& listed : limits) {
    json.beginObject();
    json.key("unit");
    json.beginObject();
    text("id", listed.unit->getID().toString());
    text("name", listed.unit->getSimulationUnitName());
    json.endObject();
    json.key("type");
    json.integer(static_cast<std::uint32_t>(listed.limit->getType()));
    text("typeName", limitTypeName(listed.limit->getType()));
    json.key("limit");
    json.number(listed.limit->getLimit());
    text("unitString", listed.limit->getUnitString());
    json.endObject();
  }
  json.endArray();
  json.endObject();
  return json.take();
}

}  // namespace Kestrel::ResultTables

#include "result_tables/render/TextLimits.h"

#include <fmt/format.h>

#include <algorithm>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/limits/LimitType.h"
#include "result_tables/render/Ansi.h"
#include "result_tables/render/NumberCell.h"

namespace Kestrel::ResultTables {

namespace {

NumberCell cellOf(ListedLimit const& listed) { return NumberCell(shortestForm(listed.limit->getLimit())); }

/// The widths of the columns of all units.
struct Layout {
  std::size_t name = 0;
  NumberColumn numbers;
  std::size_t unitText = 0;

  explicit Layout(std::vector<ListedLimit> const& limits) {
    for (auto const& listed : limits) {
      name = std::max(name, limitTypeName(listed.limit->getType()).size());
      numbers.add(cellOf(listed));
      unitText = std::max(unitText, displayWidth(toPrintable(listed.limit->getUnitString())));
    }
  }
};

void appendUnit(std::string& out, SimulationUnit const& unit, bool colour) {
  if (!out.empty()) out += '\n';
  out += fmt::format("{}  {}\n", bold(toPrintable(unit.getSimulationUnitName()), colour),
                     unit.getID().toString());
}

void appendLimit(std::string& out, ListedLimit const& listed, Layout const& layout, bool colour) {
  auto const& limit = *listed.limit;
  auto const cell = cellOf(listed);
  auto const number = yellow(cell.text(), colour && !listed.isDefault);
  auto const unit = toPrintable(limit.getUnitString());
  auto line =
      fmt::format("  {:>2}  {:<{}}  {} {}", static_cast<std::uint32_t>(limit.getType()),
                  limitTypeName(limit.getType()), layout.name, layout.numbers.aligned(cell, number), unit);
  if (!listed.isDefault) line += std::string(layout.unitText - displayWidth(unit), ' ') + " *";
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

}  // namespace Kestrel::ResultTables

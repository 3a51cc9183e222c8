#include "result_tables/import/HistoryList.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <utility>

#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/json/JsonWriter.h"

namespace Kestrel::ResultTables {

namespace {

std::string kindOf(HistoryTable const& table, std::string const& component) {
  if (!table.quantity.empty()) return table.quantity;
  bool const isColumn = table.entity.empty() && table.steps.empty();
  return isColumn ? "column" : component;
}

void addValue(ListedHistory& listed, double value) {
  if (std::isnan(value)) {
    ++listed.nans;
    return;
  }
  ++listed.count;
  if (!listed.range) listed.range = {value, value};
  listed.range = {std::min(listed.range->first, value), std::max(listed.range->second, value)};
}

/// The histories of a table, as far as the values do not matter.
std::vector<ListedHistory> genHistories(Histories const& histories, HistoryTable const& table) {
  ListedHistory common;
  common.entity = table.entity;
  common.times = table.times.size();
  if (!table.times.empty()) {
    auto const [first, last] = std::minmax_element(table.times.begin(), table.times.end());
    common.timeRange = {*first, *last};
  }
  common.timeUnit = table.timeUnit;
  for (std::size_t time = 0; time < table.times.size(); ++time)
    common.entities = std::max(common.entities, table.rowCount(time));
  std::vector list(table.components.size(), common);
  for (std::size_t i = 0; i < list.size(); ++i) {
    list[i].name = histories.usualName({&table, i});
    list[i].kind = kindOf(table, table.components[i]);
    list[i].component = table.components[i];
    if (!table.units.empty()) list[i].unit = table.units[i];
  }
  return list;
}

// ---- text

using Cells = std::array<std::string, 6>;

std::string describeRange(std::optional<ListedHistory::Range> const& range, std::string const& unit) {
  if (!range) return tr("none");
  auto const numbers = tr("{} to {}", shortestForm(range->first), shortestForm(range->second));
  return unit.empty() ? numbers : numbers + ' ' + toPrintable(unit);
}

Cells cellsOf(ListedHistory const& listed) {
  auto const count =
      listed.nans == 0 ? std::to_string(listed.count) : tr("{} and {} NaN", listed.count, listed.nans);
  return {toPrintable(listed.name),
          toPrintable(listed.kind),
          tr("entities: {}", listed.entities),
          tr("values: {}", count),
          tr("range: {}", describeRange(listed.range, listed.unit)),
          tr("times: {}", describeRange(listed.timeRange, listed.timeUnit))};
}

}  // namespace

std::vector<ListedHistory> listHistories(Histories const& histories) {
  std::vector<ListedHistory> list;
  for (auto const& table : histories.tables()) {
    auto ofTable = genHistories(histories, table);
    // In the order in which the values are stored.
    for (auto row = table.values.begin(); row != table.values.end();) {
      for (auto& listed : ofTable) addValue(listed, *row++);
    }
    std::move(ofTable.begin(), ofTable.end(), std::back_inserter(list));
  }
  return list;
}

std::string renderHistoriesAsText(std::vector<ListedHistory> const& histories) {
  std::vector<Cells> lines;
  std::array<std::size_t, std::tuple_size_v<Cells>> widths{};
  for (auto const& listed : histories) {
    auto const& cells = lines.emplace_back(cellsOf(listed));
    for (std::size_t i = 0; i < cells.size(); ++i) widths[i] = std::max(widths[i], displayWidth(cells[i]));
  }
  std::string out;
  for (auto const& cells : lines) {
    for (std::size_t i = 0; i + 1 < cells.size(); ++i)
      out += cells[i] + std::string(widths[i] - displayWidth(cells[i]) + 2, ' ');
    out += cells.back() + '\n';
  }
  return out;
}

std::string renderHistoriesAsJson(std::vector<ListedHistory> const& histories) {
  JsonWriter json;
  auto const range = [&json](std::string_view first, std::string_view last,
                             std::optional<ListedHistory::Range> const& bounds) {
    json.number(first, bounds ? bounds->first : std::nan(""));
    json.number(last, bounds ? bounds->second : std::nan(""));
  };
  json.beginObject();
  json.beginArray("histories");
  for (auto const& listed : histories) {
    json.beginObject();
    json.text("name", listed.name);
    json.text("kind", listed.kind);
    json.text("entity", listed.entity);
    json.text("component", listed.component);
    json.text("unit", listed.unit);
    json.integer("entities", listed.entities);
    json.integer("count", listed.count);
    json.integer("nans", listed.nans);
    range("min", "max", listed.range);
    json.integer("times", listed.times);
    range("firstTime", "lastTime", listed.timeRange);
    json.text("timeUnit", listed.timeUnit);
    json.endObject();
  }
  json.endArray();
  json.endObject();
  return json.take();
}

}  // namespace Kestrel::ResultTables

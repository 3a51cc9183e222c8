#include "result_tables/tables/Series.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "result_tables/base/Error.h"
#include "result_tables/base/Family.h"
#include "result_tables/base/Suggestion.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

namespace {

using Place = ResultTable::Place;

/// What the user wants of the names that there are, and which of them have been met.
class Wanted {
 public:
  explicit Wanted(std::vector<std::string> const& names) : m_names(names), m_isMet(names.size(), false) {}

  [[nodiscard]] bool has(std::string_view name) const {
    return m_names.empty() || std::find(m_names.begin(), m_names.end(), name) != m_names.end();
  }

  /// Takes down what there is, under its name and its other name.
  void meet(std::string_view name, std::string_view otherName) {
    if (m_names.empty()) return;
    m_known.push_back(name);
    for (std::size_t i = 0; i < m_names.size(); ++i)
      m_isMet[i] = m_isMet[i] || m_names[i] == name || m_names[i] == otherName;
  }

  /// The first name that has not been met; null where all have.
  [[nodiscard]] std::string const* unmet() const {
    auto const found = std::find(m_isMet.begin(), m_isMet.end(), false);
    return found == m_isMet.end() ? nullptr : &m_names[static_cast<std::size_t>(found - m_isMet.begin())];
  }

  [[nodiscard]] std::vector<std::string_view> const& known() const { return m_known; }

 private:
  std::vector<std::string> const& m_names;
  std::vector<bool> m_isMet;
  std::vector<std::string_view> m_known;
};

/// Index of the value that the table has. A line join can have several records of one step.
std::optional<std::size_t> extremeOf(MaxValueSeries const& series, MaxValueOrigin const& origin,
                                     double value) {
  if (!origin.step) return std::nullopt;
  for (std::size_t i = 0; i < series.steps.size(); ++i) {
    if (series.steps[i] == *origin.step && std::abs(series.values[i]) == std::abs(value)) return i;
  }
  return std::nullopt;
}

/// Calls `visit(place)` for the rows of all sections of a table; `place.column` is 0.
template <typename Visit>
void forEachRow(ResultTable const& table, Visit const& visit) {
  auto const& groups = table.container().groups;
  for (std::size_t i = 0; i < groups.size(); ++i) {
    for (std::size_t k = 0; k < groups[i].subGroups.size(); ++k) {
      for (std::size_t m = 0; m < groups[i].subGroups[k].items.size(); ++m) visit(Place{i, k, m, 0});
    }
  }
}

MaxValueItem const& itemAt(ResultTable const& table, Place const& place) {
  return table.container().groups[place.group].subGroups[place.subGroup].items[place.item];
}

void refuseUnknown(ResultsFile const& file, Wanted const& items, Wanted const& keys) {
  auto const name = toPrintable(file.name);
  if (auto const* const item = items.unmet()) {
    throw Error(tr("{}: expected the name of an element of the selected tables ({}), found {}", name,
                   quotedListOf(items.known()), quote(*item)) +
                suggestion(*item, items.known()));
  }
  if (auto const* const key = keys.unmet()) {
    throw Error(tr("{}: expected the key of a column of the selected elements ({}), found {}", name,
                   quotedListOf(keys.known()), quote(*key)) +
                suggestion(*key, keys.known()));
  }
}

}  // namespace

std::optional<std::size_t> TableSeries::step() const {
  return extreme ? std::optional(series.steps[*extreme]) : std::nullopt;
}

std::optional<double> TableSeries::time() const {
  if (!extreme || series.companions.empty() || std::isnan(series.companions[*extreme])) return std::nullopt;
  return series.companions[*extreme];
}

TableSeries genTableSeries(ResultTable const& table, ResultTable::Place const& place) {
  auto const& container = table.container();
  auto const& group = container.groups[place.group];
  auto const& subGroup = group.subGroups[place.subGroup];
  auto const& item = subGroup.items[place.item];
  TableSeries series;
  series.file = table.file();
  series.unit = table.unit().getSimulationUnitName();
  series.unitId = container.simulationUnitId.toString();
  series.family = familyName(container.dataType);
  series.title = table.title();
  series.group = group.name;
  series.subGroup = subGroup.name;
  series.item = item.name;
  series.shownItem = table.displayName(item);
  series.column = table.columns(place.group)[place.column];
  series.value = item.maxValues[place.column];
  series.isExceeded = table.isExceeded(place.group, place.column, item);
  series.series = table.genSeries(place);
  series.extreme = extremeOf(series.series, table.origin(place), series.value);
  return series;
}

std::vector<TableSeries> genSeries(ResultsFile const& file, SeriesSelection const& selection,
                                   ResultLimits const& limits) {
  auto const tables = genResultTables(file, selection.tables, limits);
  Wanted items(selection.items);
  Wanted keys(selection.keys);
  std::vector<TableSeries> all;
  for (auto const& table : tables) {
    forEachRow(table, [&](Place place) {
      auto const& item = itemAt(table, place);
      auto const shownName = table.displayName(item);
      items.meet(item.name, shownName);
      if (!items.has(item.name) && !items.has(shownName)) return;
      auto const& columns = table.columns(place.group);
      for (; place.column < std::min(columns.size(), item.maxValues.size()); ++place.column) {
        auto const& key = columns[place.column].key;
        keys.meet(key, key);
        if (keys.has(key)) all.push_back(genTableSeries(table, place));
      }
    });
  }
  refuseUnknown(file, items, keys);
  return all;
}

}  // namespace Kestrel::ResultTables

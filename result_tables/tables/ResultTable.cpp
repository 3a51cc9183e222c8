#include "result_tables/tables/ResultTable.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "Business_TableProperties/TablePropertySettings.h"
#include "result_tables/base/Family.h"
#include "result_tables/results/FamilyTable.h"
#include "result_tables/results/UnitSelection.h"

namespace Kestrel::ResultTables {

namespace {

/// Looks values up in the results that a container was made of.
class CollectedOrigins : public ValueOrigins {
 public:
  CollectedOrigins(SimulationUnit const& unit, std::weak_ptr<SimulationResult> const& result,
                   std::shared_ptr<MaxValueGroupContainer const> container)
      : m_origins(unit, result, std::move(container)) {}

  [[nodiscard]] MaxValueOrigin originOf(ResultTable::Place const& place) const override {
    return m_origins.getOrigin(place);
  }
  [[nodiscard]] MaxValueSeries genSeriesOf(ResultTable::Place const& place) const override {
    return m_origins.genGetSeries(place);
  }

 private:
  SimUnitMaxValueOrigins m_origins;
};

std::optional<ColumnLimit> limitOf(TableColumn const& column, MaxValueGroupContainer const& container,
                                   ResultLimits const& limits) {
  auto const& unit = container.simulationUnitId;
  bool const hasKind = column.limitType != TablePropertyLimitType::NoLimit;
  if (auto const limit = hasKind ? limits.collection->getLimit(unit, column.limitType) : nullptr)
    return ColumnLimit{limit->getLimit(), limit->getUnitString()};
  auto const value = limits.ofColumn(unit, {container.dataType, column.key});
  return value ? std::optional(ColumnLimit{*value, column.unit}) : std::nullopt;
}

std::vector<TableColumn> genColumns(MaxValueGroup const& group, MaxValueGroupContainer const& container,
                                    ResultLimits const& limits) {
  std::vector<TableColumn> columns;
  columns.reserve(group.valueNames.size());
  for (auto const& key : group.valueNames) {
    auto& column = columns.emplace_back(genColumn(key));
    // A section may have more limit types than columns; the surplus applies to none.
    auto const index = columns.size() - 1;
    if (index < group.limitTypes.size()) column.limitType = group.limitTypes[index];
    column.limit = limitOf(column, container, limits);
  }
  return columns;
}

}  // namespace

TableColumn genColumn(std::string const& valueName) {
  TableColumn column;
  column.key = columnKey(valueName);
  column.displayName = TablePropertySettings::getDisplayName(valueName);
  column.shortDisplayName = TablePropertySettings::getShortDisplayName(valueName);
  column.tableDisplayName = TablePropertySettings::getTableDisplayName(valueName);
  column.shortTableDisplayName = TablePropertySettings::getShortTableDisplayName(valueName);
  column.unit = TablePropertySettings::getUnitString(valueName);
  return column;
}

ResultTable::ResultTable(std::string file, SimulationUnit const& unit,
                         std::weak_ptr<SimulationResult> const& result,
                         std::shared_ptr<MaxValueGroupContainer const> container, ResultLimits const& limits)
    : m_file(std::move(file)),
      m_unit(&unit),
      m_container(std::move(container)),
      m_origins(std::make_shared<CollectedOrigins const>(unit, result, m_container)) {
  for (auto const& group : m_container->groups) m_columns.push_back(genColumns(group, *m_container, limits));
}

ResultTable::ResultTable(std::string file, SimulationUnit const& unit,
                         std::shared_ptr<MaxValueGroupContainer const> container,
                         std::vector<std::vector<TableColumn>> columns,
                         std::shared_ptr<ValueOrigins const> origins)
    : m_file(std::move(file)),
      m_unit(&unit),
      m_container(std::move(container)),
      m_origins(std::move(origins)),
      m_columns(std::move(columns)) {}

std::string ResultTable::title() const {
  return m_container->title.empty() ? familyTitle(m_container->dataType) : m_container->title;
}

bool ResultTable::isValid(MaxValueItem const& item) const {
  auto const entry = m_container->valuesAreValid.find(item.name);
  return entry == m_container->valuesAreValid.end() || entry->second;
}

std::string ResultTable::displayName(MaxValueItem const& item) const {
  return isValid(item) ? item.name : item.name + m_container->invalidValuesNameAppendix;
}

bool ResultTable::isExceeded(std::size_t group, std::size_t column, MaxValueItem const& item) const {
  if (column >= m_columns[group].size() || column >= item.maxValues.size()) return false;
  auto const& limit = m_columns[group][column].limit;
  return limit && std::abs(item.maxValues[column]) > limit->value && isValid(item);
}

TableValue ResultTable::genValue(Place const& place) const {
  auto const& item = m_container->groups[place.group].subGroups[place.subGroup].items[place.item];
  return {item.maxValues[place.column], origin(place), isExceeded(place.group, place.column, item)};
}

std::vector<TableValue> ResultTable::genRow(std::size_t group, std::size_t subGroup, std::size_t item) const {
  auto const& shown = m_container->groups[group].subGroups[subGroup].items[item];
  auto const count = std::min(shown.maxValues.size(), m_columns[group].size());
  std::vector<TableValue> row;
  row.reserve(count);
  for (std::size_t i = 0; i < count; ++i) row.push_back(genValue({group, subGroup, item, i}));
  return row;
}

std::vector<ResultTable> genUnitTables(ResultsFile const& file, ResultsUnit const& unit,
                                       TableSelection const& selection, ResultLimits const& limits) {
  std::vector<ResultTable> tables;
  for (auto const& family : s_families) {
    bool const isNamed = std::ranges::find(selection.families, family.dataType) != selection.families.end();
    if (!isNamed && !selection.families.empty()) continue;
    auto container = genFamilyTable(unit, family, selection.teaching);
    if (isNamed || !container->groups.empty())
      tables.emplace_back(file.givenName, *unit.unit, unit.result, std::move(container), limits);
  }
  return tables;
}

std::vector<ResultTable> genResultTables(ResultsFile const& file, TableSelection const& selection,
                                         ResultLimits const& limits) {
  std::vector<ResultTable> tables;
  for (auto const* unit : selectUnits(file, selection.units))
    std::ranges::move(genUnitTables(file, *unit, selection, limits), std::back_inserter(tables));
  return tables;
}

}  // namespace Kestrel::ResultTables

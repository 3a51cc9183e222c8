#include "result_tables/study/StoredTables.h"

#include <algorithm>
#include <utility>

#include "result_tables/base/Family.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/study/Database.h"
#include "result_tables/study/Selection.h"

namespace Kestrel::ResultTables {

namespace {

/// Looks values of a table up among those that are stored.
class StoredOrigins : public ValueOrigins {
 public:
  StoredOrigins(std::shared_ptr<RunData const> data, std::shared_ptr<std::vector<std::size_t> const> values)
      : m_data(std::move(data)), m_firstValues(std::move(values)) {}

  /// The sub-groups of a further section, each by its first element.
  std::vector<std::size_t>& addSection() { return m_sections.emplace_back(); }

  [[nodiscard]] MaxValueOrigin originOf(ResultTable::Place const& place) const override {
    auto const element = m_sections[place.group][place.subGroup] + place.item;
    return m_data->values[(*m_firstValues)[element] + place.column].asTableValue().origin;
  }
  [[nodiscard]] MaxValueSeries genSeriesOf(ResultTable::Place const&) const override { return {}; }

 private:
  std::shared_ptr<RunData const> m_data;
  std::shared_ptr<std::vector<std::size_t> const> m_firstValues;
  std::vector<std::vector<std::size_t>> m_sections;
};

std::vector<TableColumn> genStoredColumns(RunSection const& section) {
  std::vector<TableColumn> columns;
  columns.reserve(section.columns.size());
  for (auto const& stored : section.columns) {
    auto& column = columns.emplace_back(genColumn(valueNameOf(stored.key)));
    column.unit = stored.unit;
    column.limit = stored.limit;
  }
  return columns;
}

/// Sub-groups of one name that follow each other are one here: what there is to tell of them is the same.
std::vector<std::size_t> subGroupsOf(RunData const& data, RunSection const& section) {
  std::vector<std::size_t> first;
  for (auto i = section.firstElement; i < section.firstElement + section.elementCount; ++i) {
    if (first.empty() || data.elements[i].subGroup != data.elements[i - 1].subGroup) first.push_back(i);
  }
  return first;
}

}  // namespace

StoredTables::StoredTables(std::string const& study, RunData data)
    : m_data(std::make_shared<RunData const>(std::move(data))) {
  for (std::size_t i = 0; i < m_data->sections.size(); ++i) addSection(study, i);
  indexValues(study);
}

void StoredTables::addSection(std::string const& study, std::size_t section) {
  auto const& of = m_data->sections[section];
  auto const id = GUIdentifier::fromString(of.unitId);
  auto const size = m_data->elements.size();
  if (!id || of.firstElement > size || of.elementCount > size - of.firstElement)
    failForDamage(study, tr("a number out of range"));
  for (auto i = of.firstElement; i < of.firstElement + of.elementCount; ++i) {
    if (m_data->elements[i].section != section) failForDamage(study, tr("a number out of range"));
  }
  SimulationUnitId const unitId(*id);
  auto unit = std::ranges::find(m_units, unitId, [](Unit const& each) { return each.unit->getID(); });
  if (unit == m_units.end()) {
    m_units.emplace_back();
    unit = m_units.end() - 1;
    unit->unit = std::make_unique<SimulationUnit const>(unitId, of.unit);
  }
  unit->sections.push_back(section);
}

void StoredTables::indexValues(std::string const& study) {
  auto const& values = m_data->values;
  std::vector<std::size_t> first(m_data->elements.size() + 1, values.size());
  std::size_t next = 0;
  for (std::size_t element = 0; element < m_data->elements.size(); ++element) {
    first[element] = next;
    for (; next < values.size() && values[next].element == element; ++next) {
      if (values[next].column != next - first[element]) failForDamage(study, tr("a number out of range"));
    }
  }
  if (next != values.size()) failForDamage(study, tr("a number out of range"));
  m_firstValues = std::make_shared<std::vector<std::size_t> const>(std::move(first));
}

NamedUnits StoredTables::units() const {
  NamedUnits of{toPrintable(run().name), {}};
  for (auto const& unit : m_units) of.units.push_back(unit.unit.get());
  return of;
}

std::vector<ResultTable> StoredTables::genTables(std::size_t unit, TableSelection const& selection) const {
  std::vector<ResultTable> tables;
  for (auto const& family : s_families) {
    bool const isNamed = std::ranges::find(selection.families, family.dataType) != selection.families.end();
    if (!isNamed && !selection.families.empty()) continue;
    std::vector<std::size_t> sections;
    std::ranges::copy_if(m_units[unit].sections, std::back_inserter(sections), [&](std::size_t section) {
      auto const& of = m_data->sections[section];
      return of.family == family.dataType && isOfFamilies(selection, of);
    });
    if (isNamed || !sections.empty())
      tables.push_back(genTable(*m_units[unit].unit, family.dataType, sections));
  }
  return tables;
}

ResultTable StoredTables::genTable(SimulationUnit const& unit, MaxValueGroupContainer::DataType family,
                                   std::vector<std::size_t> const& sections) const {
  auto container = std::make_shared<MaxValueGroupContainer>(family, unit.getID());
  auto origins = std::make_shared<StoredOrigins>(m_data, m_firstValues);
  std::vector<std::vector<TableColumn>> columns;
  container->title = familyTitle(family);
  container->unitTitle = unit.getSimulationUnitName() + container->title;
  for (auto const index : sections) {
    auto const& section = m_data->sections[index];
    auto& group = container->groups.emplace_back();
    group.name = section.name;
    group.isTeachingGroup = section.isTeaching;
    for (auto const& column : section.columns) group.valueNames.push_back(valueNameOf(column.key));
    origins->addSection() = subGroupsOf(*m_data, section);
    appendRows(*container, group, section);
    columns.push_back(genStoredColumns(section));
  }
  return {m_data->run.file, unit, std::move(container), std::move(columns), std::move(origins)};
}

void StoredTables::appendRows(MaxValueGroupContainer& container, MaxValueGroup& group,
                              RunSection const& section) const {
  auto const& elements = m_data->elements;
  for (auto i = section.firstElement; i < section.firstElement + section.elementCount; ++i) {
    if (group.subGroups.empty() || elements[i].subGroup != group.subGroups.back().name)
      group.subGroups.push_back({elements[i].subGroup, {}});
    auto& item = group.subGroups.back().items.emplace_back(MaxValueItem{elements[i].item, {}});
    for (auto k = (*m_firstValues)[i]; k < (*m_firstValues)[i + 1]; ++k) {
      auto const& value = m_data->values[k];
      item.maxValues.push_back(value.value);
      if (!value.isValid) container.valuesAreValid[item.name] = false;
    }
  }
}

}  // namespace Kestrel::ResultTables

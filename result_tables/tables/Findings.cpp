#include "result_tables/tables/Findings.h"

#include <algorithm>

#include "result_tables/base/Family.h"

namespace Kestrel::ResultTables {

namespace {

CheckedValue checkValue(ResultTable const& table, ResultTable::Place const& place, bool isValid) {
  auto const [value, origin, isExceeded] = table.genValue(place);
  return {place, value, isValid, isExceeded, origin.step, origin.companion, origin.count, origin.nanCount};
}

/// The sum of what `count` says of each element.
template <typename Elements, typename Element>
std::size_t sumOf(Elements const& elements, std::size_t (Element::*count)() const) {
  std::size_t sum = 0;
  for (auto const& element : elements) sum += (element.*count)();
  return sum;
}

}  // namespace

std::string_view nameOf(FindingKind kind) {
  switch (kind) {
    case FindingKind::exceeded:
      return "exceeded";
    case FindingKind::notANumber:
      return "notANumber";
    case FindingKind::invalid:
      return "invalid";
  }
  return {};
}

NamedPlace TableFindings::placeOf(CheckedValue const& value) const {
  auto const& place = value.place;
  auto const& group = container->groups[place.group];
  auto const& subGroup = group.subGroups[place.subGroup];
  return {group.name, subGroup.name, subGroup.items[place.item].name, &columns[place.group][place.column]};
}

Finding TableFindings::findingOf(InvalidItem const& invalid) const {
  auto const& subGroup = container->groups.front().subGroups[invalid.subGroup];
  return {FindingKind::invalid, {{}, subGroup.name, subGroup.items[invalid.item].name}};
}

void TableFindings::forEachFindingOf(CheckedValue const& value,
                                     std::function<void(Finding const&)> const& visit) const {
  if (value.isExceeded) visit({FindingKind::exceeded, placeOf(value), &value});
  if (value.nanCount > 0) visit({FindingKind::notANumber, placeOf(value), &value});
}

void TableFindings::forEachFinding(std::function<void(Finding const&)> const& visit) const {
  for (auto const& invalid : invalidItems) visit(findingOf(invalid));
  for (auto const& value : values) forEachFindingOf(value, visit);
}

bool TableFindings::hasFindings() const {
  return !invalidItems.empty() || std::any_of(values.begin(), values.end(), [](CheckedValue const& value) {
    return value.isExceeded || value.nanCount > 0;
  });
}

std::size_t TableFindings::countCompared() const {
  return static_cast<std::size_t>(std::ranges::count_if(values, &CheckedValue::isCompared));
}

std::size_t TableFindings::countWithoutData() const {
  return static_cast<std::size_t>(std::ranges::count_if(values, &CheckedValue::isWithoutData));
}

bool FileFindings::hasFindings() const { return std::ranges::any_of(tables, &TableFindings::hasFindings); }

std::size_t FileFindings::countCompared() const { return sumOf(tables, &TableFindings::countCompared); }

std::size_t FileFindings::countWithoutData() const { return sumOf(tables, &TableFindings::countWithoutData); }

void forEachLimitedValue(ResultTable const& table,
                         std::function<void(ResultTable::Place const&, bool isValid)> const& visit) {
  auto const& groups = table.container().groups;
  for (std::size_t group = 0; group < groups.size(); ++group) {
    auto const& columns = table.columns(group);
    for (std::size_t i = 0; i < groups[group].subGroups.size(); ++i) {
      auto const& items = groups[group].subGroups[i].items;
      for (std::size_t k = 0; k < items.size(); ++k) {
        bool const isValid = table.isValid(items[k]);
        for (std::size_t c = 0; c < std::min(columns.size(), items[k].maxValues.size()); ++c) {
          if (columns[c].limit) visit({group, i, k, c}, isValid);
        }
      }
    }
  }
}

std::vector<InvalidItem> findInvalidItems(ResultTable const& table) {
  std::vector<InvalidItem> invalid;
  auto const& container = table.container();
  if (container.invalidValuesText.empty() || container.groups.empty()) return invalid;
  auto const& subGroups = container.groups.front().subGroups;
  for (std::size_t i = 0; i < subGroups.size(); ++i) {
    for (std::size_t k = 0; k < subGroups[i].items.size(); ++k) {
      if (!table.isValid(subGroups[i].items[k])) invalid.push_back({i, k});
    }
  }
  return invalid;
}

TableFindings genFindings(ResultTable const& table) {
  auto const& container = table.container();
  TableFindings found{table.unit().getSimulationUnitName(),
                      container.simulationUnitId.toString(),
                      familyName(container.dataType),
                      table.sharedContainer(),
                      table.columns(),
                      findInvalidItems(table),
                      {}};
  forEachLimitedValue(table, [&](ResultTable::Place const& place, bool isValid) {
    found.values.push_back(checkValue(table, place, isValid));
  });
  return found;
}

}  // namespace Kestrel::ResultTables

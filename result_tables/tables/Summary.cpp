#include "result_tables/tables/Summary.h"

#include <algorithm>
#include <cmath>

#include "result_tables/tables/Findings.h"

namespace Kestrel::ResultTables {

std::optional<double> utilisationOf(TableValue const& value, TableColumn const& column, bool isValid) {
  if (!column.limit || !isValid || value.origin.count == 0) return std::nullopt;
  if (value.value == 0 && column.limit->value == 0) return 0.0;
  double const ratio = std::abs(value.value) / std::abs(column.limit->value);
  return std::isnan(ratio) ? std::nullopt : std::optional(ratio);
}

bool HighestUtilisations::isHigher(Added const& one, Added const& other) {
  if (one.value.utilisation != other.value.utilisation)
    return one.value.utilisation > other.value.utilisation;
  return one.order < other.order;
}

void HighestUtilisations::add(UtilisedValue const& value) {
  if (m_heap.size() == m_most) {
    if (!(value.utilisation > m_heap.front().value.utilisation)) return;
    std::ranges::pop_heap(m_heap, isHigher);
    m_heap.pop_back();
  }
  m_heap.push_back({value, m_count++});
  std::ranges::push_heap(m_heap, isHigher);
}

std::vector<UtilisedValue> HighestUtilisations::take() {
  std::ranges::sort_heap(m_heap, isHigher);
  std::vector<UtilisedValue> highest;
  highest.reserve(m_heap.size());
  for (auto const& added : m_heap) highest.push_back(added.value);
  m_heap.clear();
  m_count = 0;
  return highest;
}

void TableCounts::add(TableCounts const& other) {
  exceeded += other.exceeded;
  notANumber += other.notANumber;
  invalid += other.invalid;
  compared += other.compared;
  withoutData += other.withoutData;
}

void TableCounts::addLimited(TableValue const& value, bool isValid) {
  if (value.isExceeded) ++exceeded;
  if (value.origin.nanCount > 0) ++notANumber;
  if (isValid && value.origin.count > 0) ++compared;
  if (isValid && !value.hasData()) ++withoutData;
}

TableCounts Summary::total() const {
  TableCounts sum;
  for (auto const& counts : ofTables) sum.add(counts);
  return sum;
}

namespace {

/// Counts the limited values of a section and offers them for the highest.
void summarise(TableCounts& counts, HighestUtilisations& highest, ResultTable const& table, std::size_t index,
               std::size_t group) {
  auto const& columns = table.columns(group);
  auto const& subGroups = table.container().groups[group].subGroups;
  for (std::size_t i = 0; i < subGroups.size(); ++i) {
    for (std::size_t k = 0; k < subGroups[i].items.size(); ++k) {
      auto const& item = subGroups[i].items[k];
      bool const isValid = table.isValid(item);
      for (std::size_t c = 0; c < std::min(columns.size(), item.maxValues.size()); ++c) {
        if (!columns[c].limit) continue;
        ResultTable::Place const place{group, i, k, c};
        auto const value = table.genValue(place);
        counts.addLimited(value, isValid);
        if (auto const utilisation = utilisationOf(value, columns[c], isValid))
          highest.add({*utilisation, index, place, value});
      }
    }
  }
}

}  // namespace

Summary genSummary(std::vector<ResultTable> const& tables, std::size_t highest) {
  Summary summary;
  HighestUtilisations values(highest);
  for (std::size_t i = 0; i < tables.size(); ++i) {
    auto& counts = summary.ofTables.emplace_back();
    counts.invalid = findInvalidItems(tables[i]).size();
    for (std::size_t group = 0; group < tables[i].container().groups.size(); ++group)
      summarise(counts, values, tables[i], i, group);
  }
  summary.highest = values.take();
  return summary;
}

}  // namespace Kestrel::ResultTables

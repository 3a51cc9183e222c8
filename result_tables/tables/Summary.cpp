#include "result_tables/tables/Summary.h"

#include <algorithm>
#include <cmath>

#include "result_tables/tables/Findings.h"

namespace Kestrel::ResultTables {

std::optional<double> utilisationOf(TableValue const& value, std::optional<ColumnLimit> const& limit,
                                    bool isValid) {
  if (!limit || !isValid || value.origin.count == 0) return std::nullopt;
  if (value.value == 0 && limit->value == 0) return 0.0;
  double const ratio = std::abs(value.value) / std::abs(limit->value);
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

Summary genSummary(std::vector<ResultTable> const& tables, std::size_t highest) {
  Summary summary;
  HighestUtilisations values(highest);
  for (std::size_t i = 0; i < tables.size(); ++i) {
    auto const& table = tables[i];
    auto& counts = summary.ofTables.emplace_back();
    counts.invalid = findInvalidItems(table).size();
    forEachLimitedValue(table, [&](ResultTable::Place const& place, bool isValid) {
      auto const value = table.genValue(place);
      counts.addLimited(value, isValid);
      if (auto const utilisation =
              utilisationOf(value, table.columns(place.group)[place.column].limit, isValid))
        values.add({*utilisation, i, place, value});
    });
  }
  summary.highest = values.take();
  return summary;
}

}  // namespace Kestrel::ResultTables

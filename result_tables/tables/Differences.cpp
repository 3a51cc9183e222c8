#include "result_tables/tables/Differences.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <utility>

#include "result_tables/base/Family.h"
#include "result_tables/base/Pairs.h"
#include "result_tables/results/UnitPairs.h"

namespace Kestrel::ResultTables {

namespace {

/// Infinities are equal or not; there is no distance between them.
bool isChanged(double before, double after, Tolerance const& tolerance) {
  if (std::isinf(before) || std::isinf(after)) return before != after;
  return std::abs(after - before) > tolerance.absolute + tolerance.relative * std::abs(before);
}

std::optional<double> finite(double number) {
  return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::shared_ptr<ComparedTable const> genComparedTable(ResultTable const* table) {
  if (table == nullptr) return nullptr;
  return std::make_shared<ComparedTable const>(ComparedTable{table->sharedContainer(), table->columns()});
}

/// A row of a section under the names by which the other file's is found.
struct Row {
  std::string_view subGroup;
  MaxValueItem const* item;
  std::size_t subGroupIndex;
  std::size_t itemIndex;
};

/// One section of one of the two tables; without a table, an empty one.
struct Section {
  ResultTable const* table = nullptr;
  ComparedTable const* compared = nullptr;
  std::size_t index = 0;

  [[nodiscard]] MaxValueGroup const& group() const { return compared->container->groups[index]; }

  [[nodiscard]] std::vector<std::string_view> keys() const {
    std::vector<std::string_view> keys;
    if (table == nullptr) return keys;
    for (auto const& column : compared->columns[index]) keys.push_back(column.key);
    return keys;
  }

  [[nodiscard]] std::vector<Row> rows() const {
    std::vector<Row> rows;
    if (table == nullptr) return rows;
    auto const& subGroups = group().subGroups;
    for (std::size_t i = 0; i < subGroups.size(); ++i) {
      for (std::size_t k = 0; k < subGroups[i].items.size(); ++k)
        rows.push_back({subGroups[i].name, &subGroups[i].items[k], i, k});
    }
    return rows;
  }

  /// None where the item has no value in the column.
  [[nodiscard]] std::optional<ComparedValue> valueOf(Row const* row,
                                                     std::optional<std::size_t> column) const {
    if (row == nullptr || !column || *column >= row->item->maxValues.size()) return std::nullopt;
    return ComparedValue{row->item->maxValues[*column], table->isValid(*row->item),
                         table->isExceeded(index, *column, *row->item)};
  }

  /// Says of a value from how much data it was chosen.
  void addData(std::optional<ComparedValue>& value, Row const* row, std::optional<std::size_t> column) const {
    if (!value) return;
    auto const origin = table->origin({index, row->subGroupIndex, row->itemIndex, *column});
    value->count = origin.count;
    value->nanCount = origin.nanCount;
  }
};

using RowName = std::pair<std::string_view, std::string_view>;

std::vector<RowName> namesOf(std::vector<Row> const& rows) {
  std::vector<RowName> names;
  names.reserve(rows.size());
  for (auto const& row : rows) names.emplace_back(row.subGroup, row.item->name);
  return names;
}

std::vector<std::string_view> sectionNamesOf(ResultTable const* table) {
  std::vector<std::string_view> names;
  if (table == nullptr) return names;
  for (auto const& group : table->container().groups) names.push_back(group.name);
  return names;
}

template <typename Elements>
auto const* elementAt(Elements const& elements, std::optional<std::size_t> index) {
  return index ? &elements[*index] : nullptr;
}

/// How two values differ that are not both none; none where they do not.
std::optional<DifferenceKind> kindOf(std::optional<ComparedValue> const& before,
                                     std::optional<ComparedValue> const& after, Tolerance const& tolerance) {
  if (!before) return DifferenceKind::added;
  if (!after) return DifferenceKind::removed;
  if (isChanged(before->value, after->value, tolerance)) return DifferenceKind::changed;
  if (before->isValid != after->isValid || before->isExceeded != after->isExceeded)
    return DifferenceKind::state;
  return std::nullopt;
}

class SectionComparison {
 public:
  SectionComparison(Section const& before, Section const& after, Tolerance const& tolerance)
      : m_before(before),
        m_after(after),
        m_tolerance(tolerance),
        m_columns(pairEqualKeys(before.keys(), after.keys())) {}

  void appendTo(TableDifferences& found) const {
    auto const before = m_before.rows();
    auto const after = m_after.rows();
    for (auto const& [beforeRow, afterRow] : pairEqualKeys(namesOf(before), namesOf(after)))
      appendRow(found, elementAt(before, beforeRow), elementAt(after, afterRow));
  }

 private:
  void appendRow(TableDifferences& found, Row const* before, Row const* after) const {
    auto const& row = before != nullptr ? *before : *after;
    auto const& section = before != nullptr ? m_before : m_after;
    auto& differences =
        found.rows.emplace_back(RowDifferences{section.group().name, row.subGroup, row.item->name, {}});
    for (auto const& column : m_columns) {
      auto valueBefore = m_before.valueOf(before, column.before);
      auto valueAfter = m_after.valueOf(after, column.after);
      if (!valueBefore && !valueAfter) continue;
      if (valueBefore && valueAfter) ++found.compared;
      auto const kind = kindOf(valueBefore, valueAfter, m_tolerance);
      if (!kind) continue;
      m_before.addData(valueBefore, before, column.before);
      m_after.addData(valueAfter, after, column.after);
      differences.values.push_back({*kind, &columnOf(column), valueBefore, valueAfter});
    }
  }

  [[nodiscard]] TableColumn const& columnOf(IndexPair const& column) const {
    return column.before ? m_before.compared->columns[m_before.index][*column.before]
                         : m_after.compared->columns[m_after.index][*column.after];
  }

  Section m_before;
  Section m_after;
  Tolerance m_tolerance;
  std::vector<IndexPair> m_columns;
};

ResultTable const* tableOf(std::vector<ResultTable> const& tables, MaxValueGroupContainer::DataType family) {
  auto const found = std::ranges::find_if(
      tables, [family](ResultTable const& table) { return table.container().dataType == family; });
  return found == tables.end() ? nullptr : &*found;
}

/// The tables of a unit of one side, whose name is taken down; none where it has no such unit.
std::vector<ResultTable> genTablesOf(ComparedSide const& side, std::optional<std::size_t> unit,
                                     TablesFile& read) {
  if (!unit) return {};
  read.units.push_back(side.units.units[*unit]->getSimulationUnitName());
  return side.genTables(*unit);
}

ComparedSide sideOf(LimitedResults const& results, TableSelection const& selection) {
  return {{results.file.givenName, {}, results.limits.source},
          namedUnitsOf(results.file),
          [&results, &selection](std::size_t unit) {
            return genUnitTables(results.file, results.file.units[unit], selection, results.limits);
          }};
}

}  // namespace

std::string_view nameOf(DifferenceKind kind) {
  switch (kind) {
    case DifferenceKind::changed:
      return "changed";
    case DifferenceKind::state:
      return "state";
    case DifferenceKind::added:
      return "added";
    case DifferenceKind::removed:
      return "removed";
  }
  return {};
}

std::optional<double> ValueDifference::change() const {
  if (!before || !after) return std::nullopt;
  return finite(after->value - before->value);
}

std::optional<double> ValueDifference::relativeChange() const {
  auto const difference = change();
  return difference ? finite(*difference / std::abs(before->value)) : std::nullopt;
}

bool ValueDifference::wentBeyondLimit() const {
  return after && after->isExceeded && !(before && before->isExceeded);
}

bool ValueDifference::cameBackWithinLimit() const {
  return before && before->isExceeded && after && after->isValid && !after->isExceeded;
}

void DifferenceCounts::add(ValueDifference const& difference) {
  switch (difference.kind) {
    case DifferenceKind::changed:
      ++changed;
      break;
    case DifferenceKind::state:
      ++state;
      break;
    case DifferenceKind::added:
      ++added;
      break;
    case DifferenceKind::removed:
      ++removed;
      break;
  }
  if (difference.wentBeyondLimit()) ++wentBeyondLimit;
  if (difference.cameBackWithinLimit()) ++cameBackWithinLimit;
}

bool ResultDifferences::hasDifferences() const {
  return std::ranges::any_of(tables, [](TableDifferences const& table) {
    return std::ranges::any_of(table.rows, [](RowDifferences const& row) { return !row.values.empty(); });
  });
}

std::size_t ResultDifferences::countCompared() const {
  std::size_t count = 0;
  for (auto const& table : tables) count += table.compared;
  return count;
}

TableDifferences genTableDifferences(ResultTable const* before, ResultTable const* after,
                                     Tolerance const& tolerance) {
  assert(before != nullptr || after != nullptr);
  auto const& table = before != nullptr ? *before : *after;
  TableDifferences found;
  found.unit = table.unit().getSimulationUnitName();
  found.unitId = table.unit().getID().toString();
  found.family = familyName(table.container().dataType);
  found.title = table.title();
  found.before = genComparedTable(before);
  found.after = genComparedTable(after);
  auto const sectionOf = [](ResultTable const* of, auto const& compared, std::optional<std::size_t> index) {
    return index ? Section{of, compared.get(), *index} : Section();
  };
  for (auto const& section : pairEqualKeys(sectionNamesOf(before), sectionNamesOf(after))) {
    SectionComparison(sectionOf(before, found.before, section.before),
                      sectionOf(after, found.after, section.after), tolerance)
        .appendTo(found);
  }
  return found;
}

ResultDifferences genDifferences(ComparedSide const& before, ComparedSide const& after,
                                 std::vector<std::string> const& units, Tolerance const& tolerance) {
  ResultDifferences found{before.read.name, after.read.name, {}, {}, tolerance, {before.read, after.read}};
  for (auto const& unit : selectUnitPairs(before.units, after.units, units)) {
    auto const tablesBefore = genTablesOf(before, unit.before, found.read[0]);
    auto const tablesAfter = genTablesOf(after, unit.after, found.read[1]);
    for (auto const& family : s_families) {
      auto const* const tableBefore = tableOf(tablesBefore, family.dataType);
      auto const* const tableAfter = tableOf(tablesAfter, family.dataType);
      if (tableBefore != nullptr || tableAfter != nullptr)
        found.tables.push_back(genTableDifferences(tableBefore, tableAfter, tolerance));
    }
  }
  return found;
}

ResultDifferences genDifferences(LimitedResults const& before, LimitedResults const& after,
                                 TableSelection const& selection, Tolerance const& tolerance) {
  return genDifferences(sideOf(before, selection), sideOf(after, selection), selection.units, tolerance);
}

}  // namespace Kestrel::ResultTables

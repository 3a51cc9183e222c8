#include "result_tables/study/WorstQuestion.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <tuple>
#include <utility>

#include "result_tables/base/Family.h"
#include "result_tables/base/Translate.h"
#include "result_tables/study/Selection.h"
#include "result_tables/study/StoredFields.h"
#include "result_tables/tables/Summary.h"

namespace Kestrel::ResultTables {

namespace {

/// A section of a layout.
using SectionKey = std::pair<std::int64_t, std::int64_t>;

struct WorstRun {
  std::string name;
  std::string file;
  std::int64_t layout;
};

/// A column of a section of a run.
struct WorstColumn {
  double worst;  ///< of its values
  std::int64_t run;
  std::int64_t section;
  std::int64_t column;
  ColumnLimit limit;

  /// From the highest down, equal ones in the order of runs and tables.
  friend bool operator<(WorstColumn const& one, WorstColumn const& other) {
    if (one.worst != other.worst) return one.worst > other.worst;
    return std::tie(one.run, one.section, one.column) < std::tie(other.run, other.section, other.column);
  }
};

struct FoundValue {
  double utilisation;
  std::int64_t run;
  std::int64_t element;
  std::int64_t column;
  std::size_t of;  ///< index of the column
  TableValue value;

  /// The same order for values, which goes by rows.
  friend bool operator<(FoundValue const& one, FoundValue const& other) {
    if (one.utilisation != other.utilisation) return one.utilisation > other.utilisation;
    return std::tie(one.run, one.element, one.column) < std::tie(other.run, other.element, other.column);
  }
};

class WorstQuestion {
 public:
  WorstQuestion(Database& database, std::size_t most) : m_database(database), m_most(most) {}

  WorstValues ask(StudySelection& selection) {
    readRuns();
    readSelected(selection);
    readColumns();
    for (std::size_t i = 0; i < m_columns.size() && canMatter(m_columns[i]); ++i) readValues(i);
    std::ranges::sort_heap(m_found, std::less<>());
    WorstValues values;
    values.reserve(m_found.size());
    for (auto const& found : m_found) values.push_back(describe(found));
    return values;
  }

 private:
  void readRuns();
  void readSelected(StudySelection& selection);
  void readColumns();
  [[nodiscard]] bool canMatter(WorstColumn const& column) const;
  [[nodiscard]] double leastThatMatters() const;
  void readValues(std::size_t index);
  void add(FoundValue const& found);
  [[nodiscard]] WorstValue describe(FoundValue const& found);
  [[nodiscard]] RunSection const& sectionOf(WorstColumn const& column) const {
    return m_sections.at({m_runs.at(column.run).layout, column.section});
  }

  Database& m_database;
  std::size_t m_most;
  std::map<std::int64_t, WorstRun> m_runs;
  std::map<SectionKey, RunSection> m_sections;  ///< that are selected
  std::vector<WorstColumn> m_columns;           ///< in their order
  std::vector<FoundValue> m_found;              ///< a heap with the last in their order first
};

void WorstQuestion::readRuns() {
  m_database.query("SELECT id, name, file, layout_id FROM study_runs", {}, [this](DatabaseRow const& row) {
    m_runs.insert_or_assign(row.integer(0), WorstRun{row.text(1), row.text(2), row.integer(3)});
  });
}

void WorstQuestion::readSelected(StudySelection& selection) {
  m_database.query(
      "SELECT layout_id, section_no, unit, unit_id, family, name, is_teaching, first_element, element_count "
      "FROM study_sections ORDER BY layout_id, section_no",
      {}, [&](DatabaseRow const& row) {
        RunSection const section{
            row.text(2),         row.text(3), readFamily(m_database, row, 4), row.text(5),
            row.integer(6) != 0, {},          numberIn(m_database, row, 7),   numberIn(m_database, row, 8)};
        if (selection.has(section)) m_sections.insert_or_assign({row.integer(0), row.integer(1)}, section);
      });
  selection.checkUnits(m_database.name());
}

void WorstQuestion::readColumns() {
  m_database.query(
      "SELECT run_id, section_no, column_no, worst_utilisation, limit_value, limit_unit FROM "
      "study_run_columns WHERE worst_utilisation IS NOT NULL AND limit_value IS NOT NULL",
      {}, [this](DatabaseRow const& row) {
        auto const run = m_runs.find(row.integer(0));
        if (run == m_runs.end() || !m_sections.contains({run->second.layout, row.integer(1)})) return;
        m_columns.push_back(
            {row.real(3), row.integer(0), row.integer(1), row.integer(2), {row.real(4), row.text(5)}});
      });
  std::ranges::sort(m_columns, std::less<>());
}

/// Whether a column can hold a value that goes before the last of those that were found. Where it cannot,
/// none of those behind it can.
bool WorstQuestion::canMatter(WorstColumn const& column) const {
  if (m_found.size() < m_most) return true;
  auto const& last = m_found.front();
  if (column.worst != last.utilisation) return column.worst > last.utilisation;
  auto const& of = m_columns[last.of];
  return std::tie(column.run, column.section) <= std::tie(of.run, of.section);
}

/// The utilisation that a value must have at least. Each of the first columns has a value as high as its
/// worst.
double WorstQuestion::leastThatMatters() const {
  double const found = m_found.size() < m_most ? 0.0 : m_found.front().utilisation;
  return m_columns.size() < m_most ? found : std::max(found, m_columns[m_most - 1].worst);
}

void WorstQuestion::readValues(std::size_t index) {
  auto const& column = m_columns[index];
  auto const& section = sectionOf(column);
  // Less by more than the division rounds, so that nothing that matters is left in the database.
  double const least = leastThatMatters() * std::abs(column.limit.value) * (1 - 1e-12);
  auto const first = signedOf(section.firstElement);
  m_database.query(
      "SELECT element_no, value, step, time, count, nans, exceeded FROM study_values WHERE run_id = $1 AND "
      "element_no >= $2 AND element_no < $3 AND column_no = $4 AND valid AND count > 0 AND "
      "abs(value) >= $5",
      {column.run, first, first + signedOf(section.elementCount), column.column,
       std::isfinite(least) ? least : 0.0},
      [&](DatabaseRow const& row) {
        auto const value = readValue(m_database, row, 1);
        if (auto const utilisation = utilisationOf(value, column.limit, true))
          add({*utilisation, column.run, row.integer(0), column.column, index, value});
      });
}

void WorstQuestion::add(FoundValue const& found) {
  if (m_found.size() == m_most) {
    if (!(found < m_found.front())) return;
    std::ranges::pop_heap(m_found, std::less<>());
    m_found.pop_back();
  }
  m_found.push_back(found);
  std::ranges::push_heap(m_found, std::less<>());
}

WorstValue WorstQuestion::describe(FoundValue const& found) {
  auto const& column = m_columns[found.of];
  auto const& run = m_runs.at(column.run);
  auto const& section = sectionOf(column);
  WorstValue worst{run.name,
                   run.file,
                   section.unit,
                   section.unitId,
                   familyName(section.family),
                   familyTitle(section.family),
                   section.name,
                   {},
                   {},
                   {},
                   found.value,
                   found.utilisation};
  bool isThere = false;
  m_database.query("SELECT sub_group, item FROM study_elements WHERE layout_id = $1 AND element_no = $2",
                   {run.layout, found.element}, [&](DatabaseRow const& row) {
                     isThere = true;
                     worst.subGroup = row.text(0);
                     worst.item = row.text(1);
                   });
  if (!isThere) failForDamage(m_database.name(), tr("a row is missing or there twice"));
  m_database.query(
      "SELECT quantity, value_unit FROM study_columns WHERE layout_id = $1 AND section_no = $2 AND "
      "column_no = $3",
      {run.layout, column.section, column.column}, [&worst](DatabaseRow const& row) {
        worst.column = genColumn(valueNameOf(row.text(0)));
        worst.column.unit = row.text(1);
      });
  worst.column.limit = column.limit;
  return worst;
}

}  // namespace

WorstValues askWorst(Database& database, TableSelection const& selection, std::size_t most) {
  WorstValues values;
  inTransaction(database, false, [&] {
    StudySelection selected(selection);
    values = WorstQuestion(database, most).ask(selected);
  });
  return values;
}

}  // namespace Kestrel::ResultTables

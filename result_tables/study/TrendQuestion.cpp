#include "result_tables/study/TrendQuestion.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <tuple>
#include <utility>

#include "result_tables/base/Error.h"
#include "result_tables/base/Family.h"
#include "result_tables/base/Suggestion.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/study/Selection.h"
#include "result_tables/study/StoredFields.h"

namespace Kestrel::ResultTables {

namespace {

struct TrendRun {
  std::int64_t id;
  std::int64_t layout;
  std::string name;
  std::string file;
  std::string label;
  double at;
};

/// A value that runs of one layout have.
struct TrendPlace {
  std::int64_t layout;
  std::int64_t element;
  std::int64_t section;
  std::int64_t column;
  std::string unit;
  std::string unitId;
  std::string group;
  std::string subGroup;
  std::size_t occurrence;
  std::string valueUnit;
};

/// The units of all runs, whatever their ids are in each.
class TrendUnits {
 public:
  /// Finds the units of runs of a further layout, by id and name, among those that are known.
  void add(std::map<std::string, std::string> const& nameOfId);

  [[nodiscard]] std::size_t indexOf(std::string const& id) const { return m_indexOfId.at(id); }

 private:
  std::vector<std::string> m_names;
  std::map<std::string, std::size_t> m_indexOfId;
};

void TrendUnits::add(std::map<std::string, std::string> const& nameOfId) {
  std::set<std::size_t> paired;
  std::map<std::string, std::vector<std::string>> leftOverIds;
  for (auto const& [id, name] : nameOfId) {
    if (auto const known = m_indexOfId.find(id); known != m_indexOfId.end())
      paired.insert(known->second);
    else
      leftOverIds[name].push_back(id);
  }
  std::map<std::string, std::vector<std::size_t>> leftOver;
  for (std::size_t i = 0; i < m_names.size(); ++i) {
    if (!paired.contains(i)) leftOver[m_names[i]].push_back(i);
  }
  for (auto const& [name, ids] : leftOverIds) {
    auto const& units = leftOver[name];
    bool const isSame = ids.size() == 1 && units.size() == 1;
    for (auto const& id : ids) {
      m_indexOfId.emplace(id, isSame ? units.front() : m_names.size());
      if (!isSame) m_names.push_back(name);
    }
  }
}

/// Names in the order in which they were met.
class MetNames {
 public:
  void add(std::string const& name) {
    if (m_met.insert(name).second) m_names.push_back(name);
  }
  [[nodiscard]] std::vector<std::string_view> names() const { return {m_names.begin(), m_names.end()}; }

 private:
  std::set<std::string> m_met;
  std::vector<std::string> m_names;
};

class TrendQuestion {
 public:
  TrendQuestion(Database& database, TrendSelection const& selection)
      : m_database(database), m_selection(selection) {}

  TrendAnswer ask() {
    readRuns();
    readPlaces();
    if (m_places.empty()) refuse();
    for (auto const& [layout, runs] : runsOfLayouts()) addLayout(layout, runs);
    sortPoints();
    return std::move(m_answer);
  }

 private:
  /// The runs of each layout, in the order of the first of each.
  using RunsOfLayouts = std::vector<std::pair<std::int64_t, std::map<std::int64_t, TrendRun const*>>>;
  /// What places of different layouts have in common: unit, section, sub-group and occurrence.
  using PlaceKey = std::tuple<std::size_t, std::string, std::string, std::size_t>;

  void readRuns();
  void orderByLabel();
  void readPlaces();
  [[noreturn]] void refuse();
  void refuseUnknownUnit();
  [[nodiscard]] RunsOfLayouts runsOfLayouts() const;
  void addLayout(std::int64_t layout, std::map<std::int64_t, TrendRun const*> const& runs);
  Trend& trendOf(TrendPlace const& place, std::size_t unit);
  void readPoints(TrendPlace const& place, std::map<std::int64_t, TrendRun const*> const& runs, Trend& trend);
  void sortPoints();

  Database& m_database;
  TrendSelection const& m_selection;
  std::vector<TrendRun> m_runs;                              ///< in the order of adding
  std::map<std::int64_t, std::vector<TrendPlace>> m_places;  ///< of each layout, in the order of its tables
  TrendUnits m_units;
  std::map<PlaceKey, std::size_t> m_trends;
  TrendAnswer m_answer;
};

void TrendQuestion::readRuns() {
  m_database.query("SELECT id, layout_id, name, file FROM study_runs ORDER BY id", {},
                   [this](DatabaseRow const& row) {
                     auto const number = static_cast<double>(m_runs.size() + 1);
                     m_runs.push_back({row.integer(0), row.integer(1), row.text(2), row.text(3), {}, number});
                   });
  if (!m_selection.by.empty()) orderByLabel();
}

/// Leaves out the runs that have no place.
void TrendQuestion::orderByLabel() {
  std::map<std::int64_t, std::string> labels;
  m_database.query("SELECT run_id, value FROM study_labels WHERE name = $1", {m_selection.by},
                   [&labels](DatabaseRow const& row) { labels.emplace(row.integer(0), row.text(1)); });
  for (auto& run : m_runs) {
    auto const label = labels.find(run.id);
    run.label = label == labels.end() ? std::string() : label->second;
    run.at = numberFromText(run.label).value_or(NAN);
  }
  m_answer.leftOut = std::erase_if(m_runs, [](TrendRun const& run) { return !std::isfinite(run.at); });
}

void TrendQuestion::readPlaces() {
  StudySelection selection({{m_selection.unit}, {m_selection.family}, true});
  m_database.query(
      "SELECT e.layout_id, e.element_no, e.section_no, c.column_no, s.unit, s.unit_id, s.name, e.sub_group, "
      "e.occurrence, c.value_unit FROM study_elements e JOIN study_sections s ON s.layout_id = e.layout_id "
      "AND "
      "s.section_no = e.section_no JOIN study_columns c ON c.layout_id = e.layout_id AND c.section_no = "
      "e.section_no WHERE e.item = $1 AND s.family = $2 AND c.quantity = $3 ORDER BY e.layout_id, "
      "e.element_no, "
      "c.column_no",
      {m_selection.item, familyName(m_selection.family), m_selection.key}, [&](DatabaseRow const& row) {
        RunSection const section{row.text(4), row.text(5), m_selection.family, row.text(6), false, {}, 0, 0};
        if (!selection.has(section)) return;
        m_places[row.integer(0)].push_back({row.integer(0), row.integer(1), row.integer(2), row.integer(3),
                                            section.unit, section.unitId, section.name, row.text(7),
                                            numberIn(m_database, row, 8), row.text(9)});
      });
}

void TrendQuestion::refuseUnknownUnit() {
  StudySelection selection({{m_selection.unit}, {}, true});
  m_database.query("SELECT unit, unit_id FROM study_sections ORDER BY layout_id, section_no", {},
                   [&selection](DatabaseRow const& row) {
                     static_cast<void>(selection.has({row.text(0), row.text(1), {}, {}, false, {}, 0, 0}));
                   });
  selection.checkUnits(m_database.name());
}

/// Says which of the names is in no run, and which there are.
void TrendQuestion::refuse() {
  refuseUnknownUnit();
  StudySelection selection({{m_selection.unit}, {m_selection.family}, true});
  MetNames items;
  MetNames keys;
  m_database.query(
      "SELECT e.item, s.unit, s.unit_id, c.quantity FROM study_sections s JOIN study_elements e ON "
      "e.layout_id = "
      "s.layout_id AND e.section_no = s.section_no JOIN study_columns c ON c.layout_id = s.layout_id AND "
      "c.section_no = s.section_no WHERE s.family = $1 ORDER BY e.layout_id, e.element_no, c.column_no",
      {familyName(m_selection.family)}, [&](DatabaseRow const& row) {
        if (!selection.has({row.text(1), row.text(2), m_selection.family, {}, false, {}, 0, 0})) return;
        auto const item = row.text(0);
        items.add(item);
        if (item == m_selection.item) keys.add(row.text(3));
      });
  auto const knownKeys = keys.names();
  if (!knownKeys.empty()) {
    throw Error(tr("{}: expected the key of a column of the selected elements ({}), found {}",
                   m_database.name(), quotedListOf(knownKeys), quote(m_selection.key)) +
                suggestion(m_selection.key, knownKeys));
  }
  auto const knownItems = items.names();
  throw Error(tr("{}: expected the name of an element of the selected tables ({}), found {}",
                 m_database.name(), quotedListOf(knownItems), quote(m_selection.item)) +
              suggestion(m_selection.item, knownItems));
}

TrendQuestion::RunsOfLayouts TrendQuestion::runsOfLayouts() const {
  RunsOfLayouts layouts;
  std::map<std::int64_t, std::size_t> indexOf;
  for (auto const& run : m_runs) {
    auto const [layout, isNew] = indexOf.emplace(run.layout, layouts.size());
    if (isNew) layouts.emplace_back(run.layout, std::map<std::int64_t, TrendRun const*>());
    layouts[layout->second].second.emplace(run.id, &run);
  }
  return layouts;
}

void TrendQuestion::addLayout(std::int64_t layout, std::map<std::int64_t, TrendRun const*> const& runs) {
  auto const places = m_places.find(layout);
  if (places == m_places.end()) return;
  std::map<std::string, std::string> nameOfId;
  for (auto const& place : places->second) nameOfId.emplace(place.unitId, place.unit);
  m_units.add(nameOfId);
  for (auto const& place : places->second)
    readPoints(place, runs, trendOf(place, m_units.indexOf(place.unitId)));
}

Trend& TrendQuestion::trendOf(TrendPlace const& place, std::size_t unit) {
  auto const [found, isNew] =
      m_trends.emplace(PlaceKey{unit, place.group, place.subGroup, place.occurrence}, m_answer.trends.size());
  if (!isNew) return m_answer.trends[found->second];
  auto& trend = m_answer.trends.emplace_back();
  trend.unit = place.unit;
  trend.unitId = place.unitId;
  trend.family = familyName(m_selection.family);
  trend.title = familyTitle(m_selection.family);
  trend.group = place.group;
  trend.subGroup = place.subGroup;
  trend.item = m_selection.item;
  trend.occurrence = place.occurrence;
  trend.column = genColumn(valueNameOf(m_selection.key));
  trend.column.unit = place.valueUnit;
  trend.by = m_selection.by;
  return trend;
}

void TrendQuestion::readPoints(TrendPlace const& place, std::map<std::int64_t, TrendRun const*> const& runs,
                               Trend& trend) {
  m_database.query(
      "SELECT r.id, v.value, v.step, v.time, v.count, v.nans, v.exceeded, v.valid, l.limit_value, "
      "l.limit_unit "
      "FROM study_runs r JOIN study_values v ON v.run_id = r.id AND v.element_no = $2 AND v.column_no = $4 "
      "JOIN study_run_columns l ON l.run_id = r.id AND l.section_no = $3 AND l.column_no = $4 "
      "WHERE r.layout_id = $1",
      {place.layout, place.element, place.section, place.column}, [&](DatabaseRow const& row) {
        auto const run = runs.find(row.integer(0));
        if (run == runs.end()) return;
        auto& point = trend.points.emplace_back();
        point.run = run->second->name;
        point.file = run->second->file;
        point.label = run->second->label;
        point.at = run->second->at;
        point.value = readValue(m_database, row, 1);
        point.isValid = row.integer(7) != 0;
        if (!row.isNull(8)) point.limit = ColumnLimit{row.real(8), row.text(9)};
      });
}

/// Equal places stay in the order of adding.
void TrendQuestion::sortPoints() {
  std::map<std::string, std::size_t> order;
  for (auto const& run : m_runs) order.emplace(run.name, order.size());
  for (auto& trend : m_answer.trends) {
    std::ranges::sort(trend.points, {},
                      [&order](TrendPoint const& point) { return std::pair(point.at, order.at(point.run)); });
  }
  std::erase_if(m_answer.trends, [](Trend const& trend) { return trend.points.empty(); });
}

}  // namespace

TrendAnswer askTrend(Database& database, TrendSelection const& selection) {
  TrendAnswer answer;
  inTransaction(database, false, [&] { answer = TrendQuestion(database, selection).ask(); });
  return answer;
}

}  // namespace Kestrel::ResultTables

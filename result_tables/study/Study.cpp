#include "result_tables/study/Study.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

#include "result_tables/base/Error.h"
#include "result_tables/base/Family.h"
#include "result_tables/base/Suggestion.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/study/StoredFields.h"

namespace Kestrel::ResultTables {

namespace {

constexpr auto s_truth = ColumnType::truth;
constexpr auto s_small = ColumnType::smallInteger;
constexpr auto s_integer = ColumnType::integer;
constexpr auto s_big = ColumnType::bigInteger;
constexpr auto s_real = ColumnType::real;
constexpr auto s_text = ColumnType::text;

constexpr ColumnType s_sectionTypes[] = {s_big,  s_integer, s_text,    s_text,   s_text,
                                         s_text, s_small,   s_integer, s_integer};
constexpr BulkTable s_sections{
    "INSERT INTO study_sections (layout_id, section_no, unit, unit_id, family, name, is_teaching, "
    "first_element, "
    "element_count) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
    "COPY study_sections (layout_id, section_no, unit, unit_id, family, name, is_teaching, first_element, "
    "element_count) FROM STDIN (FORMAT binary)",
    s_sectionTypes};

constexpr ColumnType s_columnTypes[] = {s_big, s_integer, s_integer, s_text, s_text};
constexpr BulkTable s_columns{
    "INSERT INTO study_columns (layout_id, section_no, column_no, quantity, value_unit) VALUES (?, ?, ?, ?, "
    "?)",
    "COPY study_columns (layout_id, section_no, column_no, quantity, value_unit) FROM STDIN (FORMAT binary)",
    s_columnTypes};

constexpr ColumnType s_elementTypes[] = {s_big, s_integer, s_integer, s_text, s_text, s_integer};
constexpr BulkTable s_elements{
    "INSERT INTO study_elements (layout_id, element_no, section_no, sub_group, item, occurrence) "
    "VALUES (?, ?, ?, ?, ?, ?)",
    "COPY study_elements (layout_id, element_no, section_no, sub_group, item, occurrence) "
    "FROM STDIN (FORMAT binary)",
    s_elementTypes};

constexpr ColumnType s_labelTypes[] = {s_integer, s_text, s_text};
constexpr BulkTable s_labels{"INSERT INTO study_labels (run_id, name, value) VALUES (?, ?, ?)",
                             "COPY study_labels (run_id, name, value) FROM STDIN (FORMAT binary)",
                             s_labelTypes};

constexpr ColumnType s_runColumnTypes[] = {s_integer, s_integer, s_integer, s_real, s_text,
                                           s_big,     s_big,     s_big,     s_big,  s_real};
constexpr BulkTable s_runColumns{
    "INSERT INTO study_run_columns (run_id, section_no, column_no, limit_value, limit_unit, exceeded, "
    "not_a_number, "
    "compared, without_data, worst_utilisation) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
    "COPY study_run_columns (run_id, section_no, column_no, limit_value, limit_unit, exceeded, not_a_number, "
    "compared, without_data, worst_utilisation) FROM STDIN (FORMAT binary)",
    s_runColumnTypes};

constexpr ColumnType s_valueTypes[] = {s_integer, s_integer, s_small,   s_real,  s_integer,
                                       s_real,    s_integer, s_integer, s_truth, s_truth};
constexpr BulkTable s_values{
    "INSERT INTO study_values (run_id, element_no, column_no, value, step, time, count, nans, valid, "
    "exceeded) "
    "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
    "COPY study_values (run_id, element_no, column_no, value, step, time, count, nans, valid, exceeded) "
    "FROM STDIN (FORMAT binary)",
    s_valueTypes};

void writeOptional(RowWriter& rows, std::optional<double> value) {
  if (value)
    rows.real(*value);
  else
    rows.null();
}

/// What is stored of a run that says whether another is the same.
struct StoredRun {
  std::int64_t id;
  std::int64_t layout;
  std::string contentDigest;
  std::string limitsDigest;
  std::string selection;

  [[nodiscard]] bool isSameAs(StudyRun const& run) const {
    return contentDigest == run.contentDigest && limitsDigest == run.limitsDigest &&
           selection == run.selection;
  }
};

std::optional<StoredRun> findRun(Database& database, Sql sql, std::string const& name) {
  std::optional<StoredRun> found;
  database.query(sql, {name}, [&found](DatabaseRow const& row) {
    found = StoredRun{row.integer(0), row.integer(1), row.text(2), row.text(3), row.text(4)};
  });
  return found;
}

std::optional<StoredRun> lookUpRun(Database& database, std::string const& name) {
  return findRun(
      database,
      "SELECT id, layout_id, content_digest, limits_digest, selection FROM study_runs WHERE name = $1", name);
}

/// The run, which until the end of the transaction no other changes. A server lets others change what has
/// merely been read.
std::optional<StoredRun> lockRun(Database& database, std::string const& name) {
  return findRun(database,
                 "UPDATE study_runs SET name = name WHERE name = $1 RETURNING id, layout_id, content_digest, "
                 "limits_digest, selection",
                 name);
}

std::map<std::string, std::string> labelsOf(Database& database, std::int64_t run) {
  std::map<std::string, std::string> labels;
  database.query("SELECT name, value FROM study_labels WHERE run_id = $1", {run},
                 [&labels](DatabaseRow const& row) { labels.emplace(row.text(0), row.text(1)); });
  return labels;
}

void storeLabels(Database& database, std::int64_t run, std::map<std::string, std::string> const& labels) {
  database.execute("DELETE FROM study_labels WHERE run_id = $1", {run});
  database.append(s_labels, [&](RowWriter& rows) {
    for (auto const& [name, value] : labels) {
      rows.integer(run);
      rows.text(name);
      rows.text(value);
      rows.endRow();
    }
  });
}

bool hasLabelsOf(Database& database, StoredRun const& stored, StudyRun const& run) {
  return run.labels.empty() || run.labels == labelsOf(database, stored.id);
}

/// Stores the labels that a run is given, if any, and says whether that changed something.
Added changeLabels(Database& database, StoredRun const& stored, StudyRun const& run) {
  if (hasLabelsOf(database, stored, run)) return Added::notAgain;
  storeLabels(database, stored.id, run.labels);
  return Added::labelsOnly;
}

void storeLayout(Database& database, std::int64_t layout, RunData const& data) {
  database.append(s_sections, [&](RowWriter& rows) {
    for (std::size_t i = 0; i < data.sections.size(); ++i) {
      auto const& section = data.sections[i];
      rows.integer(layout);
      rows.integer(signedOf(i));
      rows.text(section.unit);
      rows.text(section.unitId);
      rows.text(familyName(section.family));
      rows.text(section.name);
      rows.integer(section.isTeaching ? 1 : 0);
      rows.integer(signedOf(section.firstElement));
      rows.integer(signedOf(section.elementCount));
      rows.endRow();
    }
  });
  database.append(s_columns, [&](RowWriter& rows) {
    for (std::size_t i = 0; i < data.sections.size(); ++i) {
      for (std::size_t k = 0; k < data.sections[i].columns.size(); ++k) {
        rows.integer(layout);
        rows.integer(signedOf(i));
        rows.integer(signedOf(k));
        rows.text(data.sections[i].columns[k].key);
        rows.text(data.sections[i].columns[k].unit);
        rows.endRow();
      }
    }
  });
  database.append(s_elements, [&](RowWriter& rows) {
    for (std::size_t i = 0; i < data.elements.size(); ++i) {
      auto const& element = data.elements[i];
      rows.integer(layout);
      rows.integer(signedOf(i));
      rows.integer(signedOf(element.section));
      rows.text(element.subGroup);
      rows.text(element.item);
      rows.integer(signedOf(element.occurrence));
      rows.endRow();
    }
  });
}

/// The layout of the run, which is stored where no run has had it.
std::int64_t layoutFor(Database& database, RunData const& data) {
  auto const digest = data.layoutDigest();
  std::optional<std::int64_t> layout;
  auto const take = [&layout](DatabaseRow const& row) { layout = row.integer(0); };
  database.query("SELECT id FROM study_layouts WHERE digest = $1", {digest}, take);
  if (layout) return *layout;
  database.query("INSERT INTO study_layouts (digest) VALUES ($1) RETURNING id", {digest}, take);
  storeLayout(database, layout.value(), data);
  return *layout;
}

void removeUnusedLayout(Database& database, std::int64_t layout) {
  std::int64_t uses = 0;
  database.query("SELECT count(*) FROM study_runs WHERE layout_id = $1", {layout},
                 [&uses](DatabaseRow const& row) { uses = row.integer(0); });
  if (uses > 0) return;
  database.execute("DELETE FROM study_sections WHERE layout_id = $1", {layout});
  database.execute("DELETE FROM study_columns WHERE layout_id = $1", {layout});
  database.execute("DELETE FROM study_elements WHERE layout_id = $1", {layout});
  database.execute("DELETE FROM study_layouts WHERE id = $1", {layout});
}

void removeValues(Database& database, std::int64_t run) {
  database.execute("DELETE FROM study_values WHERE run_id = $1", {run});
  database.execute("DELETE FROM study_run_columns WHERE run_id = $1", {run});
  database.execute("DELETE FROM study_labels WHERE run_id = $1", {run});
}

std::int64_t insertRun(Database& database, StudyRun const& run, std::int64_t layout) {
  std::int64_t id = 0;
  database.query(
      "INSERT INTO study_runs (name, file, added, program, content_digest, limits_digest, selection, "
      "layout_id, "
      "value_count, invalid) VALUES ($1, $2, $3, $4, $5, $6, $7, $8, $9, $10) RETURNING id",
      {run.name, run.file, run.added, run.program, run.contentDigest, run.limitsDigest, run.selection, layout,
       signedOf(run.valueCount), signedOf(run.counts.invalid)},
      [&id](DatabaseRow const& row) { id = row.integer(0); });
  return id;
}

void updateRun(Database& database, std::int64_t id, StudyRun const& run, std::int64_t layout) {
  database.execute(
      "UPDATE study_runs SET file = $2, added = $3, program = $4, content_digest = $5, limits_digest = $6, "
      "selection = $7, layout_id = $8, value_count = $9, invalid = $10 WHERE id = $1",
      {id, run.file, run.added, run.program, run.contentDigest, run.limitsDigest, run.selection, layout,
       signedOf(run.valueCount), signedOf(run.counts.invalid)});
}

void writeRunColumn(RowWriter& rows, RunColumn const& column) {
  if (column.limit) {
    rows.real(column.limit->value);
    rows.text(column.limit->unit);
  } else {
    rows.null();
    rows.null();
  }
  rows.integer(signedOf(column.counts.exceeded));
  rows.integer(signedOf(column.counts.notANumber));
  rows.integer(signedOf(column.counts.compared));
  rows.integer(signedOf(column.counts.withoutData));
  writeOptional(rows, column.worst);
  rows.endRow();
}

void writeValue(RowWriter& rows, RunValue const& value) {
  rows.integer(value.element);
  rows.integer(value.column);
  rows.real(value.value);
  if (value.step)
    rows.integer(signedOf(*value.step));
  else
    rows.null();
  writeOptional(rows, value.time);
  rows.integer(signedOf(value.count));
  rows.integer(signedOf(value.nans));
  rows.integer(value.isValid ? 1 : 0);
  rows.integer(value.isExceeded ? 1 : 0);
  rows.endRow();
}

void storeValues(Database& database, std::int64_t run, RunData const& data) {
  storeLabels(database, run, data.run.labels);
  database.append(s_runColumns, [&](RowWriter& rows) {
    for (std::size_t i = 0; i < data.sections.size(); ++i) {
      for (std::size_t k = 0; k < data.sections[i].columns.size(); ++k) {
        rows.integer(run);
        rows.integer(signedOf(i));
        rows.integer(signedOf(k));
        writeRunColumn(rows, data.sections[i].columns[k]);
      }
    }
  });
  database.append(s_values, [&](RowWriter& rows) {
    for (auto const& value : data.values) {
      rows.integer(run);
      writeValue(rows, value);
    }
  });
}

Added store(Database& database, RunData const& data) {
  auto const stored = lockRun(database, data.run.name);
  if (stored && stored->isSameAs(data.run)) return changeLabels(database, *stored, data.run);
  auto const layout = layoutFor(database, data);
  if (!stored) {
    storeValues(database, insertRun(database, data.run, layout), data);
    return Added::asNew;
  }
  removeValues(database, stored->id);
  updateRun(database, stored->id, data.run, layout);
  storeValues(database, stored->id, data);
  if (stored->layout != layout) removeUnusedLayout(database, stored->layout);
  return Added::asReplacement;
}

/// A run as a row of `s_runsQuery` has it.
StudyRun runIn(Database const& database, DatabaseRow const& row) {
  StudyRun run;
  run.name = row.text(1);
  run.file = row.text(2);
  run.added = row.text(3);
  run.program = row.text(4);
  run.contentDigest = row.text(5);
  run.limitsDigest = row.text(6);
  run.selection = row.text(7);
  run.valueCount = numberIn(database, row, 8);
  run.counts.invalid = numberIn(database, row, 9);
  return run;
}

void addCounts(Database& database, std::map<std::int64_t, StudyRun>& runs) {
  database.query(
      "SELECT run_id, exceeded, not_a_number, compared, without_data, worst_utilisation FROM "
      "study_run_columns",
      {}, [&](DatabaseRow const& row) {
        auto const found = runs.find(row.integer(0));
        if (found == runs.end()) return;
        auto& run = found->second;
        run.counts.add({numberIn(database, row, 1), numberIn(database, row, 2), 0, numberIn(database, row, 3),
                        numberIn(database, row, 4)});
        run.worst = std::max(run.worst, readOptional(row, 5));
      });
}

std::vector<RunSection> readSections(Database& database, std::int64_t run, std::int64_t layout) {
  std::vector<RunSection> sections;
  database.query(
      "SELECT unit, unit_id, family, name, is_teaching, first_element, element_count, section_no FROM "
      "study_sections "
      "WHERE layout_id = $1 ORDER BY section_no",
      {layout}, [&](DatabaseRow const& row) {
        expectNext(database, row, 7, sections.size());
        sections.push_back({row.text(0),
                            row.text(1),
                            readFamily(database, row, 2),
                            row.text(3),
                            row.integer(4) != 0,
                            {},
                            numberIn(database, row, 5),
                            numberIn(database, row, 6)});
      });
  database.query(
      "SELECT c.section_no, c.quantity, c.value_unit, l.limit_value, l.limit_unit, l.exceeded, "
      "l.not_a_number, "
      "l.compared, l.without_data, l.worst_utilisation, c.column_no FROM study_columns c JOIN "
      "study_run_columns l "
      "ON l.section_no = c.section_no AND l.column_no = c.column_no WHERE c.layout_id = $1 AND l.run_id = $2 "
      "ORDER BY c.section_no, c.column_no",
      {layout, run}, [&](DatabaseRow const& row) {
        RunColumn column{row.text(1), row.text(2), {}, {}, readOptional(row, 9)};
        if (!row.isNull(3)) column.limit = ColumnLimit{row.real(3), row.text(4)};
        column.counts = {numberIn(database, row, 5), numberIn(database, row, 6), 0,
                         numberIn(database, row, 7), numberIn(database, row, 8)};
        auto& columns = sections[indexIn(database, row, 0, sections.size())].columns;
        expectNext(database, row, 10, columns.size());
        columns.push_back(std::move(column));
      });
  return sections;
}

[[noreturn]] void refuseRun(Database& database, std::string const& name) {
  std::vector<std::string> names;
  database.query("SELECT name FROM study_runs ORDER BY id", {},
                 [&names](DatabaseRow const& row) { names.push_back(row.text(0)); });
  std::vector<std::string_view> const known(names.begin(), names.end());
  throw Error(
      tr("{}: expected the name of a run ({}), found {}", database.name(), quotedListOf(known), quote(name)) +
      suggestion(name, known));
}

std::vector<RunElement> readElements(Database& database, std::int64_t layout, std::size_t sectionCount) {
  std::vector<RunElement> elements;
  database.query(
      "SELECT section_no, sub_group, item, occurrence, element_no FROM study_elements WHERE layout_id = $1 "
      "ORDER BY "
      "element_no",
      {layout}, [&](DatabaseRow const& row) {
        expectNext(database, row, 4, elements.size());
        elements.push_back(
            {indexIn(database, row, 0, sectionCount), row.text(1), row.text(2), numberIn(database, row, 3)});
      });
  return elements;
}

/// Whether the elements of each section lie together, one section behind the other.
void checkSections(Database const& database, RunData const& data) {
  std::size_t element = 0;
  for (std::size_t i = 0; i < data.sections.size(); ++i) {
    auto const& section = data.sections[i];
    bool isHere = section.firstElement == element && section.elementCount <= data.elements.size() - element;
    for (std::size_t k = 0; isHere && k < section.elementCount; ++k)
      isHere = data.elements[element++].section == i;
    if (!isHere) failForDamage(database.name(), tr("a number out of range"));
  }
  if (element != data.elements.size()) failForDamage(database.name(), tr("a number out of range"));
}

/// The layout is known by what is in it.
void checkLayout(Database& database, std::int64_t layout, RunData const& data) {
  checkSections(database, data);
  std::string digest;
  database.query("SELECT digest FROM study_layouts WHERE id = $1", {layout},
                 [&digest](DatabaseRow const& row) { digest = row.text(0); });
  if (digest != data.layoutDigest())
    failForDamage(database.name(), tr("names that are others than were stored"));
}

void readValues(Database& database, std::int64_t run, RunData& data) {
  database.query(
      "SELECT element_no, column_no, value, step, time, count, nans, valid, exceeded FROM study_values "
      "WHERE run_id = $1 ORDER BY element_no, column_no",
      {run}, [&](DatabaseRow const& row) {
        auto const element = indexIn(database, row, 0, data.elements.size());
        auto const& columns = data.sections[data.elements[element].section].columns;
        auto const column = indexIn(database, row, 1, columns.size());
        auto const place = std::pair(element, column);
        if (!data.values.empty() && std::pair<std::size_t, std::size_t>(data.values.back().element,
                                                                        data.values.back().column) >= place)
          failForDamage(database.name(), tr("a row is missing or there twice"));
        data.values.push_back(
            {static_cast<std::uint32_t>(element), static_cast<std::uint32_t>(column), row.real(2),
             row.isNull(3) ? std::nullopt : std::optional<std::uint64_t>(numberIn(database, row, 3)),
             readOptional(row, 4), numberIn(database, row, 5), numberIn(database, row, 6),
             row.integer(7) != 0, row.integer(8) != 0});
      });
}

/// Adds up what the columns say of their values, of which none may be missing.
void addUp(Database const& database, RunData& data) {
  for (auto const& section : data.sections) {
    for (auto const& column : section.columns) {
      data.run.counts.add(column.counts);
      data.run.worst = std::max(data.run.worst, column.worst);
    }
  }
  if (data.values.size() != data.run.valueCount)
    failForDamage(database.name(), tr("a row is missing or there twice"));
}

RunData readRun(Database& database, std::string const& name) {
  RunData data;
  std::optional<std::pair<std::int64_t, std::int64_t>> runAndLayout;
  database.query(
      "SELECT id, name, file, added, program, content_digest, limits_digest, selection, value_count, "
      "invalid, "
      "layout_id FROM study_runs WHERE name = $1",
      {name}, [&](DatabaseRow const& row) {
        runAndLayout.emplace(row.integer(0), row.integer(10));
        data.run = runIn(database, row);
      });
  if (!runAndLayout) refuseRun(database, name);
  auto const [run, layout] = *runAndLayout;
  data.run.labels = labelsOf(database, run);
  data.sections = readSections(database, run, layout);
  data.elements = readElements(database, layout, data.sections.size());
  checkLayout(database, layout, data);
  readValues(database, run, data);
  addUp(database, data);
  return data;
}

}  // namespace

Study::Study(std::string const& name, DatabaseAccess access) : m_database(openStudyDatabase(name, access)) {}

std::vector<StudyRun> Study::runs() const {
  std::map<std::int64_t, StudyRun> byId;
  inTransaction(*m_database, false, [&] {
    byId.clear();
    m_database->query(
        "SELECT id, name, file, added, program, content_digest, limits_digest, selection, value_count, "
        "invalid "
        "FROM study_runs",
        {}, [&](DatabaseRow const& row) { byId.emplace(row.integer(0), runIn(*m_database, row)); });
    addCounts(*m_database, byId);
    m_database->query("SELECT run_id, name, value FROM study_labels", {}, [&byId](DatabaseRow const& row) {
      if (auto const found = byId.find(row.integer(0)); found != byId.end())
        found->second.labels.emplace(row.text(1), row.text(2));
    });
  });
  std::vector<StudyRun> runs;
  runs.reserve(byId.size());
  for (auto& [id, run] : byId) runs.push_back(std::move(run));
  return runs;
}

bool Study::has(StudyRun const& run) const {
  auto const stored = lookUpRun(*m_database, run.name);
  return stored && stored->isSameAs(run);
}

Added Study::add(RunData const& data) {
  auto added = Added::notAgain;
  inTransaction(*m_database, true, [&] { added = store(*m_database, data); });
  return added;
}

std::optional<Added> Study::addLabels(StudyRun const& run) {
  // Mostly there is nothing to write, and to wait for.
  auto const known = lookUpRun(*m_database, run.name);
  if (known && known->isSameAs(run) && hasLabelsOf(*m_database, *known, run)) return Added::notAgain;
  std::optional<Added> added;
  inTransaction(*m_database, true, [&] {
    auto const stored = lockRun(*m_database, run.name);
    added = stored && stored->isSameAs(run) ? std::optional(changeLabels(*m_database, *stored, run))
                                            : std::nullopt;
  });
  return added;
}

void Study::remove(std::vector<std::string> const& names) {
  inTransaction(*m_database, true, [&] {
    std::map<std::int64_t, StoredRun> runs;
    for (auto const& name : names) {
      auto const stored = lockRun(*m_database, name);
      if (!stored) refuseRun(*m_database, name);
      runs.emplace(stored->id, *stored);
    }
    for (auto const& [id, run] : runs) {
      removeValues(*m_database, id);
      m_database->execute("DELETE FROM study_runs WHERE id = $1", {id});
      removeUnusedLayout(*m_database, run.layout);
    }
  });
}

RunData Study::read(std::string const& run) const {
  RunData data;
  inTransaction(*m_database, false, [&] { data = readRun(*m_database, run); });
  return data;
}

}  // namespace Kestrel::ResultTables

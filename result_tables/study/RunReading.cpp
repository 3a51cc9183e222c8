#include "result_tables/study/RunReading.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "result_tables/study/Selection.h"

namespace Kestrel::ResultTables {

namespace {

/// The values of an element, which begin at `value`.
RunRow takeRow(RunElement& element, std::size_t index, std::vector<RunValue> const& values,
               std::size_t& value) {
  RunRow row{std::move(element.subGroup), std::move(element.item), element.occurrence, true, {}};
  for (; value < values.size() && values[value].element == index; ++value) {
    row.isValid = values[value].isValid;
    row.cells.push_back({values[value].column, values[value].asTableValue()});
  }
  return row;
}

RunSectionValues takeSection(RunSection& section) {
  RunSectionValues taken{
      std::move(section.unit), std::move(section.unitId), section.family, std::move(section.name), {}, {}};
  for (auto& column : section.columns)
    taken.columns.push_back({std::move(column.key), std::move(column.unit), std::move(column.limit)});
  return taken;
}

void resetCounts(StudyRun& run) {
  auto const invalid = run.counts.invalid;
  run.counts = {};
  run.counts.invalid = invalid;
  run.valueCount = 0;
  run.worst.reset();
}

void addCounts(StudyRun& run, RunSection const& section) {
  for (auto const& column : section.columns) {
    run.counts.add(column.counts);
    run.worst = std::max(run.worst, column.worst);
  }
}

}  // namespace

void checkSelection(Study const& study, TableSelection const& selection) {
  StudySelection selected(selection);
  study.database().query("SELECT DISTINCT unit, unit_id FROM study_sections ORDER BY unit, unit_id", {},
                         [&selected](DatabaseRow const& row) {
                           RunSection section;
                           section.unit = row.text(0);
                           section.unitId = row.text(1);
                           static_cast<void>(selected.has(section));
                         });
  selected.checkUnits(study.name());
}

RunValues readRunValues(Study const& study, std::string const& run, TableSelection const& selection) {
  auto data = study.read(run);
  StudySelection selected(selection);
  constexpr auto none = static_cast<std::size_t>(-1);
  std::vector<std::size_t> taken(data.sections.size(), none);
  RunValues values{std::move(data.run), {}};
  resetCounts(values.run);
  for (std::size_t i = 0; i < data.sections.size(); ++i) {
    if (!selected.has(data.sections[i])) continue;
    addCounts(values.run, data.sections[i]);
    taken[i] = values.sections.size();
    values.sections.push_back(takeSection(data.sections[i]));
  }
  std::size_t value = 0;
  for (std::size_t i = 0; i < data.elements.size(); ++i) {
    auto const section = taken[data.elements[i].section];
    auto row = takeRow(data.elements[i], i, data.values, value);
    if (section == none || row.cells.empty()) continue;
    values.run.valueCount += row.cells.size();
    values.sections[section].rows.push_back(std::move(row));
  }
  return values;
}

}  // namespace Kestrel::ResultTables

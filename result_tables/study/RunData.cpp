#include "result_tables/study/RunData.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

#include "result_tables/base/Digest.h"
#include "result_tables/base/Error.h"
#include "result_tables/base/Family.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/tables/Findings.h"

namespace Kestrel::ResultTables {

namespace {

/// A text that different layouts never share: each part behind its length.
class LayoutText {
 public:
  void add(std::string_view text) {
    add(text.size());
    m_text += text;
  }
  void add(std::size_t number) {
    appendInteger(m_text, number);
    m_text += ' ';
  }
  [[nodiscard]] std::string const& text() const { return m_text; }

 private:
  std::string m_text;
};

class RunAssembly {
 public:
  explicit RunAssembly(StudyRun run) : m_data{std::move(run), {}, {}, {}} {}

  void add(ResultTable const& table);
  [[nodiscard]] RunData take();

 private:
  void addSection(ResultTable const& table, std::size_t group);
  void addElement(ResultTable const& table, ResultTable::Place const& place, std::size_t occurrence);
  void addValue(TableValue const& value, std::size_t column, bool isValid);
  void check(std::string_view text) const { checkStorable(m_data.run.file, text); }

  RunData m_data;
};

void RunAssembly::add(ResultTable const& table) {
  m_data.run.counts.invalid += findInvalidItems(table).size();
  for (std::size_t i = 0; i < table.container().groups.size(); ++i) addSection(table, i);
}

void RunAssembly::addSection(ResultTable const& table, std::size_t group) {
  auto const& container = table.container();
  auto const& from = container.groups[group];
  auto& section = m_data.sections.emplace_back();
  section.unit = table.unit().getSimulationUnitName();
  section.unitId = container.simulationUnitId.toString();
  section.family = container.dataType;
  section.name = from.name;
  section.isTeaching = from.isTeachingGroup;
  check(section.unit);
  for (auto const& column : table.columns(group))
    section.columns.push_back({column.key, column.unit, column.limit, {}, {}});
  section.firstElement = m_data.elements.size();
  for (std::size_t i = 0; i < from.subGroups.size(); ++i) {
    check(from.subGroups[i].name);
    std::map<std::string_view, std::size_t> met;
    for (std::size_t k = 0; k < from.subGroups[i].items.size(); ++k)
      addElement(table, {group, i, k, 0}, met[from.subGroups[i].items[k].name]++);
  }
  section.elementCount = m_data.elements.size() - section.firstElement;
}

void RunAssembly::addElement(ResultTable const& table, ResultTable::Place const& place,
                             std::size_t occurrence) {
  auto const& subGroup = table.container().groups[place.group].subGroups[place.subGroup];
  auto const& item = subGroup.items[place.item];
  check(item.name);
  m_data.elements.push_back({m_data.sections.size() - 1, subGroup.name, item.name, occurrence});
  auto const row = table.genRow(place.group, place.subGroup, place.item);
  bool const isValid = table.isValid(item);
  for (std::size_t i = 0; i < row.size(); ++i) addValue(row[i], i, isValid);
}

void RunAssembly::addValue(TableValue const& value, std::size_t column, bool isValid) {
  auto const& origin = value.origin;
  m_data.values.push_back({static_cast<std::uint32_t>(m_data.elements.size() - 1),
                           static_cast<std::uint32_t>(column), value.value, origin.step, origin.companion,
                           origin.count, origin.nanCount, isValid, value.isExceeded});
  auto& of = m_data.sections.back().columns[column];
  if (!of.limit) return;
  of.counts.addLimited(value, isValid);
  if (auto const utilisation = utilisationOf(value, of.limit, isValid))
    of.worst = std::max(of.worst.value_or(0.0), *utilisation);
}

RunData RunAssembly::take() {
  auto& run = m_data.run;
  run.valueCount = m_data.values.size();
  for (auto const& section : m_data.sections) {
    for (auto const& column : section.columns) {
      run.counts.add(column.counts);
      run.worst = std::max(run.worst, column.worst);
    }
  }
  return std::move(m_data);
}

}  // namespace

TableValue RunValue::asTableValue() const { return {value, {{}, step, time, count, nans}, isExceeded}; }

std::string RunData::layoutDigest() const {
  LayoutText text;
  text.add(sections.size());
  for (auto const& section : sections) {
    text.add(section.unit);
    text.add(section.unitId);
    text.add(familyName(section.family));
    text.add(section.name);
    text.add(static_cast<std::size_t>(section.isTeaching));
    text.add(section.elementCount);
    text.add(section.columns.size());
    for (auto const& column : section.columns) {
      text.add(column.key);
      text.add(column.unit);
    }
  }
  for (auto const& element : elements) {
    text.add(element.subGroup);
    text.add(element.item);
  }
  return toHexadecimal(sha256Of(text.text()));
}

RunData genRunData(StudyRun run, std::vector<ResultTable> const& tables) {
  RunAssembly assembly(std::move(run));
  for (auto const& table : tables) assembly.add(table);
  return assembly.take();
}

void checkStorable(std::string_view what, std::string_view text) {
  if (text.find('\0') != std::string_view::npos) {
    throw Error(tr("{}: expected names without NUL, as databases have none in texts, found {}",
                   toPrintable(what), quote(text)));
  }
  if (findInvalidUtf8(text)) throw Error(tr("{}: expected UTF-8, found {}", toPrintable(what), quote(text)));
}

}  // namespace Kestrel::ResultTables

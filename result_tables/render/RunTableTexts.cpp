#include "result_tables/render/RunTableTexts.h"

#include <map>
#include <set>
#include <string_view>
#include <unordered_set>

#include "result_tables/base/Family.h"
#include "result_tables/base/Text.h"

namespace Kestrel::ResultTables {

namespace {

void appendNamePart(std::string& name, std::string_view part) {
  for (char const c : part) {
    if (c == '/' || c == '\\') name += '\\';
    name += c;
  }
}

/// The parts of a name that an element's columns have in common.
std::string nameOfElement(RunTableSection const& section, RunTableElement const& element, bool hasId) {
  std::string name;
  appendNamePart(name, section.unit);
  if (hasId) (name += '/') += section.unitId;
  for (auto const part : {familyName(section.family), std::string_view(section.name),
                          std::string_view(element.subGroup), std::string_view(element.item)}) {
    name += '/';
    appendNamePart(name, part);
  }
  name += '/';
  appendInteger(name, element.occurrence);
  return name;
}

}  // namespace

std::vector<std::string> genColumnNames(RunTable const& table) {
  std::map<std::string, bool> isAmbiguous;
  std::unordered_set<std::string> known;
  std::vector<std::string> names;
  names.reserve(table.columns().size());
  for (auto const& column : table.columns()) {
    auto const& section = table.section(column);
    auto [unit, isNew] = isAmbiguous.emplace(section.unit, false);
    if (isNew) unit->second = table.isAmbiguous(section.unit);
    auto name = nameOfElement(section, table.element(column), unit->second);
    name += '/';
    appendNamePart(name, table.quantity(column).key);
    auto const length = name.size();
    for (std::size_t i = 2; !known.insert(name).second; ++i) {
      name.resize(length);
      name += '/';
      appendInteger(name, i);
    }
    names.push_back(std::move(name));
  }
  return names;
}

std::vector<std::string> labelNamesOf(std::vector<StudyRun> const& runs) {
  std::set<std::string> names;
  for (auto const& run : runs) {
    for (auto const& [name, value] : run.labels) names.insert(name);
  }
  return {names.begin(), names.end()};
}

std::string labelOf(StudyRun const& run, std::string const& name) {
  auto const found = run.labels.find(name);
  return found == run.labels.end() ? std::string() : found->second;
}

}  // namespace Kestrel::ResultTables

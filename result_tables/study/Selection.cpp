#include "result_tables/study/Selection.h"

#include <algorithm>
#include <string_view>

#include "result_tables/base/Error.h"
#include "result_tables/base/Family.h"
#include "result_tables/base/Suggestion.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

namespace {

/// Ids are hexadecimal digits: ASCII letters regardless of case.
bool isSameId(std::string_view one, std::string_view other) {
  auto const lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return std::ranges::equal(one, other, {}, lower, lower);
}

}  // namespace

bool isOfFamilies(TableSelection const& selection, RunSection const& section) {
  auto const& families = selection.families;
  if (!families.empty() && std::ranges::find(families, section.family) == families.end()) return false;
  bool const isAskedFor = section.isTeaching && familyOf(section.family).asking == FamilyAsking::clamps;
  return selection.teaching || !isAskedFor;
}

bool StudySelection::has(RunSection const& section) {
  bool isOfUnit = m_selection.units.empty();
  for (std::size_t i = 0; i < m_selection.units.size(); ++i) {
    auto const& unit = m_selection.units[i];
    if (unit != section.unit && !isSameId(unit, section.unitId)) continue;
    m_isMet[i] = true;
    isOfUnit = true;
  }
  if (m_known.empty() || m_known.back() != section.unit) m_known.push_back(section.unit);
  return isOfUnit && isOfFamilies(m_selection, section);
}

void StudySelection::checkUnits(std::string const& name) const {
  std::vector<std::string_view> const known(m_known.begin(), m_known.end());
  for (std::size_t i = 0; i < m_isMet.size(); ++i) {
    if (m_isMet[i]) continue;
    throw Error(tr("{}: expected the id or the name of a unit of the study ({}), found {}", name,
                   quotedListOf(known), quote(m_selection.units[i])) +
                suggestion(m_selection.units[i], known));
  }
}

}  // namespace Kestrel::ResultTables

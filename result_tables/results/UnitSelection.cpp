#include "result_tables/results/UnitSelection.h"

#include <algorithm>
#include <cassert>
#include <string_view>

#include "result_tables/base/Error.h"
#include "result_tables/base/Suggestion.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

NamedUnits namedUnitsOf(ResultsFile const& file) {
  NamedUnits of{toPrintable(file.name), {}};
  of.units.reserve(file.units.size());
  for (auto const& unit : file.units) of.units.push_back(unit.unit.get());
  return of;
}

std::string describeUnits(NamedUnits const& of) {
  std::vector<std::string_view> names;
  for (auto const* unit : of.units) names.emplace_back(unit->getSimulationUnitName());
  return quotedListOf(names);
}

bool isNamedBy(SimulationUnit const& unit, std::string const& idOrName) {
  return isNamedBy(unit.getID(), unit.getSimulationUnitName(), idOrName);
}

void refuseUnit(NamedUnits const& of, std::string const& wanted) {
  throw Error(tr("{}: expected the id or the name of one of its units ({}), found {}", of.name,
                 describeUnits(of), quote(wanted)));
}

std::vector<ResultsUnit const*> selectUnits(ResultsFile const& file, std::vector<std::string> const& wanted) {
  std::vector<ResultsUnit const*> selected;
  std::vector<bool> found(wanted.size(), false);
  for (auto const& unit : file.units) {
    bool isSelected = wanted.empty();
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      if (!isNamedBy(*unit.unit, wanted[i])) continue;
      isSelected = true;
      found[i] = true;
    }
    assert(unit.hasTools || !isSelected);
    if (isSelected) selected.push_back(&unit);
  }
  auto const missing = std::find(found.begin(), found.end(), false);
  if (missing != found.end())
    refuseUnit(namedUnitsOf(file), wanted[static_cast<std::size_t>(missing - found.begin())]);
  return selected;
}

}  // namespace Kestrel::ResultTables

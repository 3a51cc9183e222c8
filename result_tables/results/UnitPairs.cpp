#include "result_tables/results/UnitPairs.h"

#include <map>
#include <utility>

namespace Kestrel::ResultTables {

namespace {

std::vector<SimulationUnitId> idsOf(NamedUnits const& of) {
  std::vector<SimulationUnitId> ids;
  for (auto const* unit : of.units) ids.push_back(unit->getID());
  return ids;
}

/// The pairs of one name in which only one side has a unit.
struct LeftOver {
  std::vector<IndexPair*> before;
  std::vector<IndexPair*> after;
};

void pairByName(std::vector<IndexPair>& pairs, NamedUnits const& before, NamedUnits const& after) {
  std::map<std::string, LeftOver> leftOver;
  for (auto& pair : pairs) {
    if (!pair.after) leftOver[before.units[*pair.before]->getSimulationUnitName()].before.push_back(&pair);
    if (!pair.before) leftOver[after.units[*pair.after]->getSimulationUnitName()].after.push_back(&pair);
  }
  for (auto const& [name, units] : leftOver) {
    if (units.before.size() == 1 && units.after.size() == 1)
      std::swap(units.before.front()->after, units.after.front()->after);
  }
  std::erase(pairs, IndexPair{});
}

bool isOneOf(NamedUnits const& of, std::optional<std::size_t> index, std::string const& idOrName) {
  return index && isNamedBy(*of.units[*index], idOrName);
}

}  // namespace

std::vector<IndexPair> pairUnits(NamedUnits const& before, NamedUnits const& after) {
  auto pairs = pairEqualKeys(idsOf(before), idsOf(after));
  pairByName(pairs, before, after);
  return pairs;
}

std::vector<IndexPair> selectUnitPairs(NamedUnits const& before, NamedUnits const& after,
                                       std::vector<std::string> const& wanted) {
  auto pairs = pairUnits(before, after);
  if (wanted.empty()) return pairs;
  std::vector<bool> isSelected(pairs.size(), false);
  for (auto const& idOrName : wanted) {
    bool isInBefore = false;
    bool isInAfter = false;
    for (std::size_t i = 0; i < pairs.size(); ++i) {
      if (!isOneOf(before, pairs[i].before, idOrName) && !isOneOf(after, pairs[i].after, idOrName)) continue;
      isSelected[i] = true;
      isInBefore = isInBefore || pairs[i].before;
      isInAfter = isInAfter || pairs[i].after;
    }
    if (!isInBefore) refuseUnit(before, idOrName);
    if (!isInAfter) refuseUnit(after, idOrName);
  }
  std::vector<IndexPair> selected;
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    if (isSelected[i]) selected.push_back(pairs[i]);
  }
  return selected;
}

}  // namespace Kestrel::ResultTables

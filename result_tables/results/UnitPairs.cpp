#include "result_tables/results/UnitPairs.h"

#include <algorithm>
#include <map>
#include <utility>

#include "result_tables/base/Pairs.h"
#include "result_tables/results/UnitSelection.h"

namespace Kestrel::ResultTables {

namespace {

std::vector<SimulationUnitId> idsOf(ResultsFile const& file) {
  std::vector<SimulationUnitId> ids;
  for (auto const& unit : file.units) ids.push_back(unit.unit->getID());
  return ids;
}

ResultsUnit const* unitAt(ResultsFile const& file, std::optional<std::size_t> index) {
  return index ? &file.units[*index] : nullptr;
}

/// The units of one name that only one of the files has by id.
struct LeftOver {
  std::vector<UnitPair*> before;
  std::vector<UnitPair*> after;
};

void pairByName(std::vector<UnitPair>& pairs) {
  std::map<std::string, LeftOver> leftOver;
  for (auto& pair : pairs) {
    if (pair.after == nullptr) leftOver[pair.before->unit->getSimulationUnitName()].before.push_back(&pair);
    if (pair.before == nullptr) leftOver[pair.after->unit->getSimulationUnitName()].after.push_back(&pair);
  }
  for (auto const& [name, units] : leftOver) {
    if (units.before.size() == 1 && units.after.size() == 1)
      std::swap(units.before.front()->after, units.after.front()->after);
  }
  std::erase_if(pairs, [](UnitPair const& pair) { return pair.before == nullptr && pair.after == nullptr; });
}

bool isEitherNamedBy(UnitPair const& pair, std::string const& idOrName) {
  return (pair.before != nullptr && isNamedBy(*pair.before->unit, idOrName)) ||
         (pair.after != nullptr && isNamedBy(*pair.after->unit, idOrName));
}

}  // namespace

std::vector<UnitPair> pairUnits(ResultsFile const& before, ResultsFile const& after) {
  std::vector<UnitPair> pairs;
  for (auto const& [beforeIndex, afterIndex] : pairEqualKeys(idsOf(before), idsOf(after)))
    pairs.push_back({unitAt(before, beforeIndex), unitAt(after, afterIndex)});
  pairByName(pairs);
  return pairs;
}

std::vector<UnitPair> selectUnitPairs(ResultsFile const& before, ResultsFile const& after,
                                      std::vector<std::string> const& wanted) {
  auto pairs = pairUnits(before, after);
  if (wanted.empty()) return pairs;
  std::vector<bool> isSelected(pairs.size(), false);
  for (auto const& idOrName : wanted) {
    bool isInBefore = false;
    bool isInAfter = false;
    for (std::size_t i = 0; i < pairs.size(); ++i) {
      if (!isEitherNamedBy(pairs[i], idOrName)) continue;
      isSelected[i] = true;
      isInBefore = isInBefore || pairs[i].before != nullptr;
      isInAfter = isInAfter || pairs[i].after != nullptr;
    }
    if (!isInBefore) refuseUnit(before, idOrName);
    if (!isInAfter) refuseUnit(after, idOrName);
  }
  std::vector<UnitPair> selected;
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    if (isSelected[i]) selected.push_back(pairs[i]);
  }
  return selected;
}

}  // namespace Kestrel::ResultTables

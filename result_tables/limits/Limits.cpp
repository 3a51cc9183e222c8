#include "result_tables/limits/Limits.h"

#include <algorithm>
#include <map>
#include <set>

#include "result_tables/base/Error.h"
#include "result_tables/base/Suggestion.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"
#include "result_tables/limits/LimitType.h"

namespace Kestrel::ResultTables {

namespace {

/// The limit at a position of the collection; null for a child that is none.
std::shared_ptr<TablePropertyLimit const> limitAt(TablePropertiesData const& limits, std::size_t position) {
  return std::dynamic_pointer_cast<TablePropertyLimit const>(limits.getChild(position));
}

[[noreturn]] void refuseKind(TablePropertiesData const& limits, SimulationUnit const& unit,
                             TablePropertyLimitType type) {
  throw Error(tr("--type: expected a kind of limit that the unit {} has (one of {}), found {}",
                 quote(unit.getSimulationUnitName()), listOf(limitKindsOf(limits, unit.getID())),
                 limitTypeName(type)));
}

}  // namespace

std::vector<SimulationUnitId> unitIdsOf(ResultsFile const& file) {
  std::vector<SimulationUnitId> ids;
  ids.reserve(file.units.size());
  for (auto const& unit : file.units) ids.push_back(unit.unit->getID());
  return ids;
}

std::shared_ptr<TablePropertiesData> genDefaultLimits(ResultsFile const& file) {
  auto limits = std::make_shared<TablePropertiesData>();
  limits->updateLimits(unitIdsOf(file));
  return limits;
}

std::vector<std::string_view> limitKindsOf(TablePropertiesData const& limits, SimulationUnitId const& unit) {
  std::vector<std::string_view> kinds;
  for (std::size_t i = 0; i < limits.getChildCount(); ++i) {
    auto const limit = limitAt(limits, i);
    if (!limit || limit->getSimUnitID() != unit) continue;
    auto const name = limitTypeName(limit->getType());
    if (!name.empty()) kinds.push_back(name);
  }
  return kinds;
}

void setLimits(TablePropertiesData const& limits, std::vector<ResultsUnit const*> const& units,
               TablePropertyLimitType type, double value) {
  std::vector<std::shared_ptr<TablePropertyLimit>> found;
  for (auto const* unit : units) {
    found.push_back(limits.getLimit(unit->unit->getID(), type));
    if (!found.back()) refuseKind(limits, *unit->unit, type);
  }
  for (auto const& limit : found) limit->setLimit(value);
}

void resetLimits(TablePropertiesData& limits, ResultsFile const& file,
                 std::vector<ResultsUnit const*> const& units) {
  std::set<SimulationUnitId> reset;
  for (auto const* unit : units) reset.insert(unit->unit->getID());
  auto const all = unitIdsOf(file);
  auto kept = all;
  std::erase_if(kept, [&reset](SimulationUnitId const& id) { return reset.count(id) != 0; });
  // Units that went and came again are new.
  limits.updateLimits(kept);
  limits.updateLimits(all);
}

std::vector<ListedLimit> listLimits(TablePropertiesData const& limits, ResultsFile const& file,
                                    std::vector<ResultsUnit const*> const& units) {
  std::map<SimulationUnitId, SimulationUnit const*> wanted;
  for (auto const* unit : units) wanted.emplace(unit->unit->getID(), unit->unit.get());
  auto const defaults = genDefaultLimits(file);
  std::vector<ListedLimit> listed;
  for (std::size_t i = 0; i < limits.getChildCount(); ++i) {
    auto const limit = limitAt(limits, i);
    if (!limit) continue;
    auto const unit = wanted.find(limit->getSimUnitID());
    if (unit == wanted.end()) continue;
    auto const standard = defaults->getLimit(limit->getSimUnitID(), limit->getType());
    bool const isDefault = standard && standard->getLimit() == limit->getLimit() &&
                           standard->getUnitString() == limit->getUnitString();
    listed.push_back({unit->second, limit, isDefault});
  }
  return listed;
}

}  // namespace Kestrel::ResultTables

#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "Business_TableProperties/TablePropertiesData.h"
#include "result_tables/results/ResultsFile.h"

namespace Kestrel::ResultTables {

/// The units of the file, in its order, as the limits are brought in step with them.
[[nodiscard]] std::vector<SimulationUnitId> unitIdsOf(ResultsFile const& file);

/// Limits in step with the units of the file, all at their defaults.
[[nodiscard]] std::shared_ptr<TablePropertiesData> genDefaultLimits(ResultsFile const& file);

/// The names of the kinds that the unit has limits of, in the order of the collection.
[[nodiscard]] std::vector<std::string_view> limitKindsOf(TablePropertiesData const& limits,
                                                         SimulationUnitId const& unit);

/// Sets the limit of a kind in each of the units. An `Error` when one of them has none of that kind; then
/// nothing is set.
void setLimits(TablePropertiesData const& limits, std::vector<ResultsUnit const*> const& units,
               TablePropertyLimitType type, double value);

/// Puts the units' limits back to what a unit that is new gets. Limits of kinds without a default, which only
/// documents bring along, go. REQUIRES: limits in step with the file, to which the units belong.
void resetLimits(TablePropertiesData& limits, ResultsFile const& file,
                 std::vector<ResultsUnit const*> const& units);

/// A limit as it is listed.
struct ListedLimit {
  SimulationUnit const* unit;
  std::shared_ptr<TablePropertyLimit const> limit;
  bool isDefault;  ///< in value and unit text
};

/// The limits of the units in the order of the collection, in which each unit's limits lie together. The list
/// refers to the units. REQUIRES: limits in step with the file, to which the units belong.
[[nodiscard]] std::vector<ListedLimit> listLimits(TablePropertiesData const& limits, ResultsFile const& file,
                                                  std::vector<ResultsUnit const*> const& units);

}  // namespace Kestrel::ResultTables

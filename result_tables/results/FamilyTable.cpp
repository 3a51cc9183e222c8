#include "result_tables/results/FamilyTable.h"

namespace Kestrel::ResultTables {

namespace {

using DataType = MaxValueGroupContainer::DataType;

SimUnitMaxValuesProvider::ToolGrouping groupingOf(ResultsUnit const& unit, DataType dataType) {
  auto const grouping = unit.toolGroupings.find(dataType);
  return grouping == unit.toolGroupings.end() ? SimUnitMaxValuesProvider::ToolGrouping() : grouping->second;
}

}  // namespace

std::shared_ptr<MaxValueGroupContainer> genFamilyTable(ResultsUnit const& unit, Family const& family,
                                                       bool teaching) {
  SimUnitMaxValuesProvider const provider(*unit.unit, unit.result);
  switch (family.asking) {
    case FamilyAsking::plain:
      break;
    case FamilyAsking::clamps:
      return provider.genGetClampMaxValuesCollection(family.dataType, teaching);
    case FamilyAsking::grouped:
      return provider.genGetToolMaxValuesCollection(groupingOf(unit, family.dataType), family.dataType);
  }
  return provider.genGetMaxValuesCollection(family.dataType);
}

}  // namespace Kestrel::ResultTables

#pragma once

#include <vector>

#include "result_tables/import/ImportMap.h"
#include "result_tables/results/UnitRecords.h"

namespace Kestrel::ResultTables {

/// The units of the map with the values that their formulas have. The histories that the map refers to must
/// still exist; what is made does not refer to them. Linear in the number of values.
[[nodiscard]] std::vector<UnitRecords> genUnitRecords(ImportMap const& map);

}  // namespace Kestrel::ResultTables

#include "result_tables/tables/Tables.h"

#include <algorithm>
#include <iterator>

#include "result_tables/results/UnitSelection.h"

namespace Kestrel::ResultTables {

TablesFile genTablesFile(ResultsFile const& file, TableSelection const& selection,
                         ResultLimits const& limits) {
  TablesFile read{file.givenName, {}, limits.source};
  for (auto const* unit : selectUnits(file, selection.units))
    read.units.push_back(unit->unit->getSimulationUnitName());
  return read;
}

Tables genTables(ResultsFile const& file, TableSelection const& selection, ResultLimits const& limits) {
  Tables tables{genResultTables(file, selection, limits), {genTablesFile(file, selection, limits)}};
  tables.files.front().tableCount = tables.tables.size();
  return tables;
}

void Tables::append(Tables&& others) {
  std::ranges::move(others.tables, std::back_inserter(tables));
  std::ranges::move(others.files, std::back_inserter(files));
}

}  // namespace Kestrel::ResultTables

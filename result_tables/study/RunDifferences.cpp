#include "result_tables/study/RunDifferences.h"

#include "result_tables/base/Translate.h"
#include "result_tables/study/StoredTables.h"

namespace Kestrel::ResultTables {

namespace {

/// A run as a side of a comparison, where it goes by its name.
ComparedSide sideOf(StoredTables const& tables, TableSelection const& selection) {
  auto const& run = tables.run();
  return {{run.name, {}, run.limitsDigest.empty() ? std::string() : tr("stored with the run")},
          tables.units(),
          [&tables, &selection](std::size_t unit) { return tables.genTables(unit, selection); }};
}

}  // namespace

ResultDifferences genRunDifferences(Study const& study, std::string const& before, std::string const& after,
                                    TableSelection const& selection, Tolerance const& tolerance) {
  StoredTables const tablesBefore(study.name(), study.read(before));
  StoredTables const tablesAfter(study.name(), study.read(after));
  return genDifferences(sideOf(tablesBefore, selection), sideOf(tablesAfter, selection), selection.units,
                        tolerance);
}

}  // namespace Kestrel::ResultTables

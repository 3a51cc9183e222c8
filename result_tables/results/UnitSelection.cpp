#include "result_tables/results/UnitSelection.h"

#include <fmt/format.h>

#include <algorithm>
#include <boost/algorithm/string/predicate.hpp>
#include <locale>

#include "result_tables/base/Error.h"
#include "result_tables/base/Text.h"

namespace Kestrel::ResultTables {

namespace {

bool isNamedBy(SimulationUnit const& unit, std::string const& idOrName) {
  return unit.getSimulationUnitName() == idOrName ||
         boost::algorithm::iequals(unit.getID().toString(), idOrName, std::locale::classic());
}

}  // namespace

std::vector<ResultsUnit const*> selectUnits(ResultsFile const& file, std::string const& fileName,
                                            std::vector<std::string> const& wanted) {
  std::vector<ResultsUnit const*> selected;
  std::vector<bool> found(wanted.size(), false);
  for (auto const& unit : file.units) {
    bool isSelected = wanted.empty();
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      if (!isNamedBy(*unit.unit, wanted[i])) continue;
      isSelected = true;
      found[i] = true;
    }
    if (isSelected) selected.push_back(&unit);
  }
  auto const missing = std::find(found.begin(), found.end(), false);
  if (missing != found.end()) {
    throw Error(fmt::format("{}: expected the id or the name of one of its units, found {}",
                            toPrintable(fileName),
                            quote(wanted[static_cast<std::size_t>(missing - found.begin())])));
  }
  return selected;
}

}  // namespace Kestrel::ResultTables

#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Persistence_DaoAdapter/SolverTableDataKeys.h"
#include "result_tables/tables/ResultTable.h"

namespace Kestrel::ResultTables {

/// A unit with the identifier and the name of `unit` and, for each value of the container, a series of that
/// one value under the item's name. Lives as long as the program.
inline SimulationUnit const& genUnitOf(MaxValueGroupContainer const& container, SimulationUnit const& unit) {
  static std::deque<SimulationUnit> units;
  auto& filled = units.emplace_back(unit.getID(), unit.getSimulationUnitName());
  for (auto const& group : container.groups) {
    for (auto const& subGroup : group.subGroups) {
      for (auto const& item : subGroup.items) {
        filled.addTool(item.name, ToolForceDataType::tool);
        for (std::size_t i = 0; i < std::min(item.maxValues.size(), group.valueNames.size()); ++i) {
          StepValues<double> const series(std::vector<double>{item.maxValues[i]});
          if (group.valueNames[i] == SolverTableDataKeys::getNameOfJoinTangentialForce())
            filled.setJoinTangentialForce(item.name, series);
          else
            filled.addToolForce(item.name, group.valueNames[i], std::make_shared<StepValues<double>>(series));
        }
      }
    }
  }
  return filled;
}

/// The table of a container that no provider has made, of a file "r.json": each value is the only one of its
/// series.
inline ResultTable genTable(SimulationUnit const& unit,
                            std::shared_ptr<MaxValueGroupContainer> const& container,
                            ResultLimits const& limits) {
  return {"r.json", genUnitOf(*container, unit), {}, container, limits};
}

/// The tables of a unit OP20 with one clamp, "Clamp 1", that has these series, with the default limits.
inline std::vector<ResultTable> genClampTables(std::string const& series) {
  static std::deque<ResultsFile> files;
  auto const& file =
      files.emplace_back(readResults("r.json", R"({"format": "simulation-results", "version": 1, "units": [
      {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP20",
       "tools": [{"id": "Clamp 1", "kind": "clamp", "series": )" +
                                                   series + "}]}]}"));
  ResultLimits limits;
  limits.collection->updateLimits({file.units.front().unit->getID()});
  return genResultTables(file, {}, limits);
}

}  // namespace Kestrel::ResultTables

#include <cstdio>
#include <memory>
#include <vector>

#include "Business_SimulationResult/SimulationUnit.h"
#include "Business_TableProperties/SimUnitMaxValuesProvider.h"

using namespace Kestrel;

int main() {
  // The host's side: a simulation unit with one clamp and the series that the solver stored for it.
  SimulationUnit unit(SimulationUnitId(), "OP20");
  unit.addTool("Clamp 1", ToolForceDataType::clamp);
  unit.addToolForce("Clamp 1", "ClampClosingForce",
                    std::make_shared<StepValues<double>>(std::vector<double>{0.0, -12.0, 8.0}));
  auto const result = std::make_shared<SimulationResult>(std::vector<std::shared_ptr<SimulationStep>>());

  // The library's side: one family's table.
  SimUnitMaxValuesProvider const provider(unit, result);
  auto const table = provider.genGetMaxValuesCollection(MaxValueGroupContainer::DataType::Clamps);

  for (auto const& group : table->groups) {
    std::printf("%s, %s\n", table->title.c_str(), group.name.c_str());
    for (auto const& subGroup : group.subGroups) {
      for (auto const& item : subGroup.items) {
        for (std::size_t column = 0; column < item.maxValues.size(); ++column) {
          std::printf("  %s, %s: %g\n", item.name.c_str(), group.valueNames[column].c_str(),
                      item.maxValues[column]);
        }
      }
    }
  }
}

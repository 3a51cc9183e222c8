#include "Business_TableProperties/MaxValueGroupContainer.h"

namespace Kestrel {

MaxValueGroupContainer::MaxValueGroupContainer(DataType type, SimulationUnitId const& unitId)
    : dataType(type), simulationUnitId(unitId) {}

MaxValueGroupContainer::~MaxValueGroupContainer() = default;

}  // namespace Kestrel

#include "Business_TableProperties/MaxValueGroupContainer.h"

namespace Kestrel {

MaxValueGroupContainer::MaxValueGroupContainer(DataType type, SimulationUnitId const& unitId)
    : dataType(type), simulationUnitId(unitId) {}

}  // namespace Kestrel

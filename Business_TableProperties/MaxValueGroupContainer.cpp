#include "Business_TableProperties/MaxValueGroupContainer.h"

namespace Kestrel {

MaxValueGroupContainer::MaxValueGroupContainer(DataType type, SimulationUnitId const& unitId)
    : dataType(type), simulationUnitId(unitId) {}

MaxValueGroupContainer::MaxValueGroupContainer(MaxValueGroupContainer const& other) = default;

MaxValueGroupContainer::MaxValueGroupContainer(MaxValueGroupContainer&& other) noexcept = default;

MaxValueGroupContainer::~MaxValueGroupContainer() = default;

}  // namespace Kestrel

#include "Business_IncSimulationPrimitives/GlobalForcesDefinition.h"

namespace Kestrel {

std::string const GlobalForcesDefinition::s_totalToolForces = "TotalToolForces";

}  // namespace Kestrel

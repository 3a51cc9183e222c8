#include "Business_IncSimulationPrimitives/ToolForceBusinessName.h"

#include "Business_IncSimulationPrimitives/GlobalForcesDefinition.h"
#include "StrictHost/CallLog.h"

namespace Kestrel {

std::string const GlobalForcesDefinition::s_totalToolForces = "TotalToolForces";

std::string ToolForceBusinessName::getTranslated(std::string const& name) {
  StrictHost::callLog().push_back("getTranslated " + name);
  return "business name of " + name;
}

}  // namespace Kestrel

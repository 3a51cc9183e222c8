#include "result_tables/base/Family.h"

#include <algorithm>

#include "Business_IncSimulationPrimitives/GlobalForcesDefinition.h"
#include "Business_IncSimulationPrimitives/ToolForceBusinessName.h"
#include "VantaService_Translator/Translator.h"

namespace Kestrel::ResultTables {

Family const* familyNamed(std::string_view name) {
  auto const* const found = std::find_if(s_families.begin(), s_families.end(),
                                         [name](Family const& family) { return family.name == name; });
  return found == s_families.end() ? nullptr : found;
}

std::vector<std::string> groupedFamilyNames() {
  std::vector<std::string> names;
  for (auto const& family : s_families) {
    if (family.asking == FamilyAsking::grouped) names.emplace_back(family.name);
  }
  return names;
}

std::string familyTitle(MaxValueGroupContainer::DataType dataType) {
  return Translator::translate("SimUnitMaxValuesProvider", familyOf(dataType).title, nullptr, -1);
}

std::string columnKey(std::string const& valueName) {
  auto const& totalForce = GlobalForcesDefinition::s_totalToolForces;
  return valueName == ToolForceBusinessName::getTranslated(totalForce) ? totalForce : valueName;
}

std::string valueNameOf(std::string const& key) {
  auto const& totalForce = GlobalForcesDefinition::s_totalToolForces;
  return key == totalForce ? ToolForceBusinessName::getTranslated(totalForce) : key;
}

}  // namespace Kestrel::ResultTables

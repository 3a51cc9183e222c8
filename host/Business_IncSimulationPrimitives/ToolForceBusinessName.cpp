#include "Business_IncSimulationPrimitives/ToolForceBusinessName.h"

#include <mutex>
#include <unordered_map>
#include <utility>

#include "Business_IncSimulationPrimitives/GlobalForcesDefinition.h"
#include "VantaService_Translator/Translator.h"

namespace Kestrel {

std::string const& ToolForceBusinessName::getTranslated(std::string const& name) {
  static std::mutex mutex;
  static std::unordered_map<std::string, std::string> translatedNames;  // nodes stay where they are
  std::scoped_lock const lock(mutex);
  auto const known = translatedNames.find(name);
  if (known != translatedNames.end()) return known->second;
  auto translated = name == GlobalForcesDefinition::s_totalToolForces
                        ? Translator::translate("ToolForceBusinessName", "Total Tool Forces", nullptr, -1)
                        : name;
  return translatedNames.emplace(name, std::move(translated)).first->second;
}

}  // namespace Kestrel

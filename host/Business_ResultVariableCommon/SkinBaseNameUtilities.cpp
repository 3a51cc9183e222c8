#include "Business_ResultVariableCommon/SkinBaseNameUtilities.h"

#include "VantaService_Translator/Translator.h"

namespace Kestrel {

std::string SkinBaseNameUtilities::getSkinDisplayName(std::string const& name) {
  return Translator::translate("SkinBaseNameUtilities", name.c_str(), "Skin display name", -1);
}

std::string SkinBaseNameUtilities::getSkinShortDisplayName(std::string const& name) {
  return Translator::translate("SkinBaseNameUtilities", name.c_str(), "Skin short display name", -1);
}

}  // namespace Kestrel

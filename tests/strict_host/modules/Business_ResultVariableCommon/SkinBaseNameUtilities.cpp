#include "Business_ResultVariableCommon/SkinBaseNameUtilities.h"

namespace Kestrel {

std::string SkinBaseNameUtilities::getSkinDisplayName(std::string const& name) { return "skin " + name; }

std::string SkinBaseNameUtilities::getSkinShortDisplayName(std::string const& name) {
  return "short skin " + name;
}

}  // namespace Kestrel

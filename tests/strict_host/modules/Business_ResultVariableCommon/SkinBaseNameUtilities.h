#pragma once

#include <string>

namespace Kestrel {

class SkinBaseNameUtilities {
 public:
  static std::string getSkinDisplayName(std::string const& name);
  static std::string getSkinShortDisplayName(std::string const& name);
};

}  // namespace Kestrel

#pragma once

#include <string>

namespace Kestrel {

class GlobalForcesDefinition {
 public:
  static std::string const s_totalToolForces;
};

}  // namespace Kestrel

#pragma once

#include <string>

namespace Kestrel {

/// Internal names of the force quantities that are summed over a whole tool.
class GlobalForcesDefinition {
 public:
  GlobalForcesDefinition() = delete;

  static std::string const s_totalToolForces;  ///< total force of a tool, N
};

}  // namespace Kestrel

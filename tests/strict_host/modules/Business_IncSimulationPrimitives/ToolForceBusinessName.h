#pragma once

#include <string>

namespace Kestrel {

class ToolForceBusinessName {
 public:
  static std::string getTranslated(std::string const& name);
};

}  // namespace Kestrel

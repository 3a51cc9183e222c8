#pragma once

#include <string>

namespace Kestrel {

class SkinBaseName {
 public:
  static std::string const LINE_JOIN_DIST_TO_INPUT;
  static std::string const LINE_JOIN_GAP;
  static std::string const LINE_JOIN_SUMFORCE_N;
  static std::string const LINE_JOIN_SUMFORCE_T;
};

}  // namespace Kestrel

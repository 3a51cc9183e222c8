#pragma once

#include <string>

namespace Kestrel {

/// Names of the result variables that line joins keep as skins.
class SkinBaseName {
 public:
  SkinBaseName() = delete;

  static std::string const LINE_JOIN_SUMFORCE_N;     ///< summed normal force, N
  static std::string const LINE_JOIN_SUMFORCE_T;     ///< summed tangential force, N
  static std::string const LINE_JOIN_DIST_TO_INPUT;  ///< distance to the input line, mm
  static std::string const LINE_JOIN_GAP;            ///< gap between the joined parts, mm
};

}  // namespace Kestrel

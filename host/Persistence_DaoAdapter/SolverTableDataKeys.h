#pragma once

#include <string>

namespace Kestrel {

/// Storage keys of the result quantities that the solver writes. `getNameOf<X>()` returns the key "<X>"; the
/// reference is valid as long as the process.
class SolverTableDataKeys {
 public:
  SolverTableDataKeys() = delete;

  ///@{
  /// The key of the quantity that the operation is named after.
  static std::string const& getNameOfClampNormalForce();
  static std::string const& getNameOfClampClosingForce();
  static std::string const& getNameOfClampSupportingForce();
  static std::string const& getNameOfClampTangentialForce();
  static std::string const& getNameOfClampNormalDisplacement();
  static std::string const& getNameOfClampTeachingDistanceX();
  static std::string const& getNameOfClampTeachingDistanceY();
  static std::string const& getNameOfClampTeachingDistanceZ();
  static std::string const& getNameOfClampTotalVariation();
  static std::string const& getNameOfToolForceInWorkingDir();
  static std::string const& getNameOfPilotForce();
  static std::string const& getNameOfJoiningTongNormalForce();
  static std::string const& getNameOfJoiningTongClosingForce();
  static std::string const& getNameOfJoiningTongSupportingForce();
  static std::string const& getNameOfJoiningTongDistance();
  static std::string const& getNameOfJoiningTongGap();
  static std::string const& getNameOfJoiningTeachingX();
  static std::string const& getNameOfJoiningTeachingY();
  static std::string const& getNameOfJoiningTeachingZ();
  static std::string const& getNameOfJoiningTeachingTotalVariation();
  static std::string const& getNameOfJoinForceN();
  static std::string const& getNameOfJoinTangentialForce();
  static std::string const& getNameOfSuctionZoneForceX();
  static std::string const& getNameOfSuctionZoneForceY();
  static std::string const& getNameOfSuctionZoneForceZ();
  static std::string const& getNameOfSuctionZoneAbsForce();
  static std::string const& getNameOfSuctionDistance();
  ///@}
};

}  // namespace Kestrel

#include "Persistence_DaoAdapter/SolverTableDataKeys.h"

namespace Kestrel {

std::string const& SolverTableDataKeys::getNameOfClampNormalForce() {
  static std::string const key = "solver.ClampNormalForce";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfClampClosingForce() {
  static std::string const key = "solver.ClampClosingForce";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfClampSupportingForce() {
  static std::string const key = "solver.ClampSupportingForce";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfClampTangentialForce() {
  static std::string const key = "solver.ClampTangentialForce";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfClampNormalDisplacement() {
  static std::string const key = "solver.ClampNormalDisplacement";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfClampTeachingDistanceX() {
  static std::string const key = "solver.ClampTeachingDistanceX";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfClampTeachingDistanceY() {
  static std::string const key = "solver.ClampTeachingDistanceY";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfClampTeachingDistanceZ() {
  static std::string const key = "solver.ClampTeachingDistanceZ";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfClampTotalVariation() {
  static std::string const key = "solver.ClampTotalVariation";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfToolForceInWorkingDir() {
  static std::string const key = "solver.ToolForceInWorkingDir";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfPilotForce() {
  static std::string const key = "solver.PilotForce";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfJoiningTongNormalForce() {
  static std::string const key = "solver.JoiningTongNormalForce";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfJoiningTongClosingForce() {
  static std::string const key = "solver.JoiningTongClosingForce";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfJoiningTongSupportingForce() {
  static std::string const key = "solver.JoiningTongSupportingForce";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfJoiningTongDistance() {
  static std::string const key = "solver.JoiningTongDistance";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfJoiningTongGap() {
  static std::string const key = "solver.JoiningTongGap";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfJoiningTeachingX() {
  static std::string const key = "solver.JoiningTeachingX";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfJoiningTeachingY() {
  static std::string const key = "solver.JoiningTeachingY";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfJoiningTeachingZ() {
  static std::string const key = "solver.JoiningTeachingZ";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfJoiningTeachingTotalVariation() {
  static std::string const key = "solver.JoiningTeachingTotalVariation";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfJoinForceN() {
  static std::string const key = "solver.JoinForceN";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfJoinTangentialForce() {
  static std::string const key = "solver.JoinTangentialForce";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfSuctionZoneForceX() {
  static std::string const key = "solver.SuctionZoneForceX";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfSuctionZoneForceY() {
  static std::string const key = "solver.SuctionZoneForceY";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfSuctionZoneForceZ() {
  static std::string const key = "solver.SuctionZoneForceZ";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfSuctionZoneAbsForce() {
  static std::string const key = "solver.SuctionZoneAbsForce";
  return key;
}

std::string const& SolverTableDataKeys::getNameOfSuctionDistance() {
  static std::string const key = "solver.SuctionDistance";
  return key;
}

}  // namespace Kestrel

#include "Business_TableProperties/FamilySections.h"

#include <utility>

#include "Persistence_DaoAdapter/SolverTableDataKeys.h"

namespace Kestrel::FamilySections {

namespace {

using enum TablePropertyLimitType;
using Keys = SolverTableDataKeys;

// Bolts are clamps to the solver; the tables differ only in what the forces are checked against.
std::vector<SectionDefinition> clampSections(std::vector<TablePropertyLimitType> forceLimits) {
  return {
      {"Forces",
       false,
       true,
       std::move(forceLimits),
       {Keys::getNameOfClampNormalForce(), Keys::getNameOfClampClosingForce(),
        Keys::getNameOfClampSupportingForce(), Keys::getNameOfClampTangentialForce()}},
      {"Distances", false, false, {NoLimit}, {Keys::getNameOfClampNormalDisplacement()}},
      {"Teaching",
       true,
       false,
       {NoLimit, NoLimit, NoLimit},
       {Keys::getNameOfClampTeachingDistanceX(), Keys::getNameOfClampTeachingDistanceY(),
        Keys::getNameOfClampTeachingDistanceZ()}},
  };
}

}  // namespace

FamilyDefinition clamps() {
  return {"Clamps", ToolForceDataType::clamp, true,
          clampSections({NoLimit, ClampClosingForce, NoLimit, NoLimit})};
}

FamilyDefinition bolts() {
  return {"Bolts", ToolForceDataType::bolt, true,
          clampSections({BoltNormalForce, NoLimit, NoLimit, NoLimit})};
}

FamilyDefinition pilots() {
  return {"Pilots",
          ToolForceDataType::pilot,
          false,
          {{"Forces", false, true, {PilotForce}, {Keys::getNameOfPilotForce()}}}};
}

FamilyDefinition joiningTongs() {
  return {"Joining Tools",
          ToolForceDataType::joiningTong,
          false,
          {{"Forces",
            false,
            true,
            {JoiningTongNormalForce, NoLimit, NoLimit},
            {Keys::getNameOfJoiningTongNormalForce(), Keys::getNameOfJoiningTongClosingForce(),
             Keys::getNameOfJoiningTongSupportingForce()}},
           {"Distances",
            false,
            false,
            {JoiningTongDistance, JoiningTongGap},
            {Keys::getNameOfJoiningTongDistance(), Keys::getNameOfJoiningTongGap()}},
           {"Teaching",
            true,
            false,
            {JoiningTeachingX, JoiningTeachingY, JoiningTeachingZ},
            {Keys::getNameOfJoiningTeachingX(), Keys::getNameOfJoiningTeachingY(),
             Keys::getNameOfJoiningTeachingZ()}}}};
}

}  // namespace Kestrel::FamilySections

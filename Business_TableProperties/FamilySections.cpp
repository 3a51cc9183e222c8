#include "Business_TableProperties/FamilySections.h"

#include <utility>

#include "Business_IncSimulationPrimitives/GlobalForcesDefinition.h"
#include "Business_IncSimulationPrimitives/ToolForceBusinessName.h"
#include "Persistence_DaoAdapter/SolverTableDataKeys.h"
#include "Persistence_SkinBaseName/SkinBaseName.h"

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

FamilyDefinition tools(MaxValueGroupContainer::DataType dataType) {
  using enum MaxValueGroupContainer::DataType;
  auto const family = [](char const* title, bool isDefaultFamily,
                         std::vector<TablePropertyLimitType> limitTypes) {
    return FamilyDefinition{
        title,
        ToolForceDataType::tool,
        isDefaultFamily,
        {{"Forces",
          false,
          true,
          std::move(limitTypes),
          {ToolForceBusinessName::getTranslated(GlobalForcesDefinition::s_totalToolForces)}}}};
  };
  switch (dataType) {
    case ClampingTools:  // two limits for the one column: its own and that of the clamps' closing force
      return family("Clamping Tools", true, {ClampingToolForce, ClampClosingForce});
    case Rollers:
      return family("Rollers", false, {RollerForce});
    case Steels:
      return family("Steels", false, {SteelForce});
    case HemmingBed:
      return family("Hemming Bed", false, {HemmingBedForce});
    default:
      return {"", ToolForceDataType::tool, true, {{"Forces", false, true, {}, {}}}};
  }
}

// The one section of forces that is not marked as such: its second column is a distance.
FamilyDefinition suctionZones() {
  return {"Suction Zones",
          ToolForceDataType::suctionZone,
          true,
          {{"Forces",
            false,
            false,
            {SuctionZoneForce, SuctionDistance},
            {Keys::getNameOfSuctionZoneAbsForce(), Keys::getNameOfSuctionDistance()}}}};
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

FamilyDefinition spotWelds() {
  return {"Joins",
          ToolForceDataType::spotWeld,
          true,
          {{"Forces",
            false,
            true,
            {JoinNormalForce, JoinTangentialForce},
            {Keys::getNameOfJoinForceN(), Keys::getNameOfJoinTangentialForce()}}}};
}

FamilyDefinition lineWelds() {
  return {"Line Joins",
          ToolForceDataType{},
          true,
          {{"Values",
            false,
            false,
            {NoLimit, NoLimit},
            {SkinBaseName::LINE_JOIN_SUMFORCE_N, SkinBaseName::LINE_JOIN_SUMFORCE_T}}}};
}

FamilyDefinition lineJoiningTools() {
  return {"Line Joining Tools",
          ToolForceDataType{},
          true,
          {{"Values",
            false,
            false,
            {LineJoiningToolDistanceToInput, LineJoiningToolGap},
            {SkinBaseName::LINE_JOIN_DIST_TO_INPUT, SkinBaseName::LINE_JOIN_GAP}}}};
}

}  // namespace Kestrel::FamilySections

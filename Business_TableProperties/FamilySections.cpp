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
using Sections = std::vector<SectionDefinition>;

// The kinds of tools by the host's numbers; how it names them is its own matter.
constexpr auto noTools = static_cast<ToolForceDataType>(0);
constexpr auto pilotTools = static_cast<ToolForceDataType>(2);
constexpr auto clampTools = static_cast<ToolForceDataType>(3);
constexpr auto formingTools = static_cast<ToolForceDataType>(5);
constexpr auto spotWeldTools = static_cast<ToolForceDataType>(6);
constexpr auto joiningTongTools = static_cast<ToolForceDataType>(7);
constexpr auto suctionZoneTools = static_cast<ToolForceDataType>(8);
constexpr auto boltTools = static_cast<ToolForceDataType>(9);

// Bolts are clamps to the solver; the tables differ only in what the forces are checked against.
Sections clampSections(std::vector<TablePropertyLimitType> forceLimits) {
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

Sections toolSections(std::vector<TablePropertyLimitType> limitTypes) {
  return {{"Forces",
           false,
           true,
           std::move(limitTypes),
           {ToolForceBusinessName::getTranslated(GlobalForcesDefinition::s_totalToolForces)}}};
}

}  // namespace

FamilyDefinition clamps() {
  return {"Clamps", clampTools, true, [] {
            return clampSections({NoLimit, ClampClosingForce, NoLimit, NoLimit});
          }};
}

FamilyDefinition bolts() {
  return {"Bolts", boltTools, true, [] {
            return clampSections({BoltNormalForce, NoLimit, NoLimit, NoLimit});
          }};
}

FamilyDefinition pilots() {
  return {"Pilots", pilotTools, false, [] {
            return Sections{{"Forces", false, true, {PilotForce}, {Keys::getNameOfPilotForce()}}};
          }};
}

FamilyDefinition tools(MaxValueGroupContainer::DataType dataType) {
  using enum MaxValueGroupContainer::DataType;
  switch (dataType) {
    case ClampingTools:  // two limits for the one column: its own and that of the clamps' closing force
      return {"Clamping Tools", formingTools, true, [] {
                return toolSections({ClampingToolForce, ClampClosingForce});
              }};
    case Rollers:
      return {"Rollers", formingTools, false, [] { return toolSections({RollerForce}); }};
    case Steels:
      return {"Steels", formingTools, false, [] { return toolSections({SteelForce}); }};
    case HemmingBed:
      return {"Hemming Bed", formingTools, false, [] { return toolSections({HemmingBedForce}); }};
    case Clamps:
    case JoiningTongs:
    case Pilots:
    case Bolts:
    case LineJoiningTools:
    case SuctionZones:
    case SpotWelds:
    case LineWelds:
      break;
  }
  return {"", formingTools, true, [] { return Sections{{"Forces", false, true, {}, {}}}; }};
}

// The one section of forces that is not marked as such: its second column is a distance.
FamilyDefinition suctionZones() {
  return {"Suction Zones", suctionZoneTools, true, [] {
            return Sections{{"Forces",
                             false,
                             false,
                             {SuctionZoneForce, SuctionDistance},
                             {Keys::getNameOfSuctionZoneAbsForce(), Keys::getNameOfSuctionDistance()}}};
          }};
}

FamilyDefinition joiningTongs() {
  return {"Joining Tools", joiningTongTools, false, [] {
            return Sections{
                {"Forces",
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
                  Keys::getNameOfJoiningTeachingZ()}}};
          }};
}

FamilyDefinition spotWelds() {
  return {"Joins", spotWeldTools, true, [] {
            return Sections{{"Forces",
                             false,
                             true,
                             {JoinNormalForce, JoinTangentialForce},
                             {Keys::getNameOfJoinForceN(), Keys::getNameOfJoinTangentialForce()}}};
          }};
}

FamilyDefinition lineWelds() {
  return {"Line Joins", noTools, true, [] {
            return Sections{{"Values",
                             false,
                             false,
                             {NoLimit, NoLimit},
                             {SkinBaseName::LINE_JOIN_SUMFORCE_N, SkinBaseName::LINE_JOIN_SUMFORCE_T}}};
          }};
}

FamilyDefinition lineJoiningTools() {
  return {"Line Joining Tools", noTools, true, [] {
            return Sections{{"Values",
                             false,
                             false,
                             {LineJoiningToolDistanceToInput, LineJoiningToolGap},
                             {SkinBaseName::LINE_JOIN_DIST_TO_INPUT, SkinBaseName::LINE_JOIN_GAP}}};
          }};
}

}  // namespace Kestrel::FamilySections

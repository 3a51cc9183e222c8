#include <gmock/gmock.h>

#include <string>

#include "Business_TableProperties/TablePropertySettings.h"
#include "StrictHost/CallLog.h"

namespace Kestrel {
namespace {

using Settings = TablePropertySettings;

std::string textsOf(std::string const& key) {
  return Settings::getDisplayName(key) + '|' + Settings::getShortDisplayName(key) + '|' +
         Settings::getTableDisplayName(key) + '|' + Settings::getShortTableDisplayName(key) + '|' +
         Settings::getUnitString(key);
}

struct CatalogueRow {
  char const* key;
  char const* texts;
};

TEST(CatalogueOnAStrictHost, HasTheTextsOfEveryKey) {
  constexpr CatalogueRow rows[] = {
      {"DescriptionEntry", "DisplayName|ShortDisplayName|TableDisplayName|ShortTableDisplayName|Unit"},
      {"solver.ClampNormalForce", "[Normal Force]|[Norm F]|[Max Normal Force]|[Max Norm F]|N"},
      {"solver.ClampClosingForce", "[Closing Force]|[Clos F]|[Max Closing Force]|[Max Clos F]|N"},
      {"solver.ClampSupportingForce", "[Supporting Force]|[Sup F]|[Max Supporting Force]|[Max Sup F]|N"},
      {"solver.ClampTangentialForce", "[Tangential Force]|[Tang F]|[Max Tangential Force]|[Max Tang F]|N"},
      {"solver.ClampNormalDisplacement", "[Distance]|[Distance]|[Max Distance]|[Max Dist]|mm"},
      {"solver.ClampTeachingDistanceX", "[Teaching \u0394X]|[\u0394X]|[Teaching \u0394X]|[\u0394X]|mm"},
      {"solver.ClampTeachingDistanceY", "[Teaching \u0394Y]|[\u0394Y]|[Teaching \u0394Y]|[\u0394Y]|mm"},
      {"solver.ClampTeachingDistanceZ", "[Teaching \u0394Z]|[\u0394Z]|[Teaching \u0394Z]|[\u0394Z]|mm"},
      {"solver.ClampTotalVariation", "[Teaching Distance]|[Distance]|[Teaching Distance]|[Distance]|mm"},
      {"solver.ToolForceInWorkingDir",
       "[Force in Working Direction]|[F WorkDir]|[Max Force in Working Direction]|[Max Force]|N"},
      {"business name of TotalToolForces",
       "[Force in Working Direction]|[F WorkDir]|[Max Force in Working Direction]|[Max Force]|N"},
      {"solver.PilotForce", "[Force]|[Force]|[Max Force]|[Max Force]|N"},
      {"solver.JoiningTongNormalForce", "[Normal Force]|[Norm F]|[Normal Force]|[Norm F]|N"},
      {"solver.JoiningTongClosingForce", "[Closing Force]|[Clos F]|[Closing Force]|[Clos F]|N"},
      {"solver.JoiningTongSupportingForce", "[Supporting Force]|[Sup F]|[Supporting Force]|[Sup F]|N"},
      {"solver.JoiningTongDistance", "[Distance]|[Distance]|[Distance]|[Distance]|mm"},
      {"solver.JoiningTongGap", "[Gap]|[Gap]|[Gap]|[Gap]|mm"},
      {"solver.JoiningTeachingX", "[Teaching \u0394X]|[\u0394X]|[\u0394Teaching \u0394X]|[\u0394X]|mm"},
      {"solver.JoiningTeachingY", "[Teaching \u0394Y]|[\u0394Y]|[\u0394Teaching \u0394Y]|[\u0394Y]|mm"},
      {"solver.JoiningTeachingZ", "[Teaching \u0394Z]|[\u0394Z]|[\u0394Teaching \u0394Z]|[\u0394Z]|mm"},
      {"solver.JoiningTeachingTotalVariation",
       "[Teaching Distance]|[Distance]|[Teaching Distance]|[Distance]|mm"},
      {"skin.DistToInput", "[Max Distance]|[Max Distance]|[Max Distance]|[Max Distance]|mm"},
      {"skin.Gap", "[Max Gap]|[Max Gap]|[Max Gap]|[Max Gap]|mm"},
      {"solver.JoinForceN", "[Normal Force]|[Norm F]|[Max Normal Force]|[Max Norm F]|N"},
      {"solver.JoinTangentialForce", "[Tangential Force]|[Tang F]|[Max Tangential Force]|[Max Tang F]|N"},
      {"skin.SumForceN", "skin Normal Force|short skin Norm F|[Max Normal Force]|[Max Norm F]|N"},
      {"skin.SumForceT", "skin Tangential Force|short skin Tang F|[Max Tangential Force]|[Max Tang F]|N"},
      {"solver.SuctionZoneForceX", "[Suction Force X]|[Frc X]|[Frc X]|[Frc X]|N"},
      {"solver.SuctionZoneForceY", "[Suction Force Y]|[Frc Y]|[Frc Y]|[Frc Y]|N"},
      {"solver.SuctionZoneForceZ", "[Suction Force Z]|[Frc Z]|[Frc Z]|[Frc Z]|N"},
      {"solver.SuctionZoneAbsForce", "[Suction Force]|[Force]|[Force]|[Force]|N"},
      {"solver.SuctionDistance", "[Distance]|[Distance]|[Distance]|[Distance]|mm"},
      {"solver.Unknown", "||||"},
      {"", "||||"},
  };
  for (auto const& row : rows) EXPECT_EQ(textsOf(row.key), row.texts) << row.key;
}

TEST(CatalogueOnAStrictHost, IsFilledOnce) {
  ASSERT_EQ(Settings::getUnitString("solver.PilotForce"), "N");
  StrictHost::callLog().clear();
  EXPECT_EQ(Settings::getUnitString("solver.PilotForce"), "N");
  EXPECT_THAT(StrictHost::callLog(), testing::IsEmpty());
}

}  // namespace
}  // namespace Kestrel

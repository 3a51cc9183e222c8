#include "result_tables/limits/FamilyColumns.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string_view>

#include "Business_TableProperties/TablePropertiesData.h"
#include "result_tables/base/Family.h"
#include "result_tables/base/File.h"

namespace Kestrel::ResultTables {
namespace {

/// Each column by its key and the number of its kind of limit.
using Columns = std::vector<std::pair<std::string, unsigned int>>;

Columns columnsOf(MaxValueGroupContainer::DataType dataType) {
  Columns columns;
  for (auto const& column : familyColumns(dataType))
    columns.emplace_back(column.key, static_cast<unsigned int>(column.limitType));
  return columns;
}

std::map<std::string_view, Columns> const s_columns = {
    {"Clamps",
     {{"ClampNormalForce", 0},
      {"ClampClosingForce", 24},
      {"ClampSupportingForce", 0},
      {"ClampTangentialForce", 0},
      {"ClampNormalDisplacement", 0},
      {"ClampTeachingDistanceX", 0},
      {"ClampTeachingDistanceY", 0},
      {"ClampTeachingDistanceZ", 0}}},
    {"ClampingTools", {{"TotalToolForces", 10}}},
    {"JoiningTongs",
     {{"JoiningTongNormalForce", 1},
      {"JoiningTongClosingForce", 0},
      {"JoiningTongSupportingForce", 0},
      {"JoiningTongDistance", 2},
      {"JoiningTongGap", 3},
      {"JoiningTeachingX", 11},
      {"JoiningTeachingY", 12},
      {"JoiningTeachingZ", 13}}},
    {"Pilots", {{"PilotForce", 19}}},
    {"Bolts",
     {{"ClampNormalForce", 23},
      {"ClampClosingForce", 0},
      {"ClampSupportingForce", 0},
      {"ClampTangentialForce", 0},
      {"ClampNormalDisplacement", 0},
      {"ClampTeachingDistanceX", 0},
      {"ClampTeachingDistanceY", 0},
      {"ClampTeachingDistanceZ", 0}}},
    {"LineJoiningTools", {{"LineJoinDistToInput", 4}, {"LineJoinGap", 9}}},
    {"SuctionZones", {{"SuctionZoneAbsForce", 18}, {"SuctionDistance", 17}}},
    {"Rollers", {{"TotalToolForces", 20}}},
    {"Steels", {{"TotalToolForces", 21}}},
    {"HemmingBed", {{"TotalToolForces", 22}}},
    {"SpotWelds", {{"JoinForceN", 5}, {"JoinTangentialForce", 6}}},
    {"LineWelds", {{"LineJoinSumForceN", 0}, {"LineJoinSumForceT", 0}}},
};

TEST(FamilyColumns, AreThoseOfTheTableOfEachFamily) {
  ASSERT_EQ(s_columns.size(), s_families.size());
  for (auto const& family : s_families)
    EXPECT_EQ(columnsOf(family.dataType), s_columns.at(family.name)) << family.name;
}

/// The columns of a family that units have no kind of limit for by default, as a row of the page.
std::string genRow(Family const& family) {
  TablePropertiesData defaults;
  defaults.updateLimits({SimulationUnitId()});
  std::string keys;
  for (auto const& column : familyColumns(family.dataType)) {
    if (defaults.getLimit(SimulationUnitId(), column.limitType)) continue;
    keys += (keys.empty() ? "`" : ", `") + column.key + '`';
  }
  return keys.empty() ? "" : "| `" + std::string(family.name) + "` | " + keys + " |\n";
}

TEST(FamilyColumns, AreDocumentedWhereTextsCanLimitThem) {
  std::string table = "| family | columns |\n|---|---|\n";
  for (auto const& family : s_families) table += genRow(family);
  EXPECT_THAT(readFile(KESTREL_SOURCE_DIR "/docs/limits-text.md"), testing::HasSubstr(table + '\n'));
}

}  // namespace
}  // namespace Kestrel::ResultTables

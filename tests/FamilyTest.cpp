#include "result_tables/base/Family.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Business_IncSimulationPrimitives/ToolForceBusinessName.h"
#include "result_tables/results/Sample.h"
#include "result_tables/tables/ResultTable.h"

namespace Kestrel::ResultTables {
namespace {

using DataType = MaxValueGroupContainer::DataType;
using testing::ElementsAre;

TEST(Families, AreInTheOrderOfTheirNumbers) {
  std::vector<std::string_view> names;
  for (std::size_t i = 0; i < s_families.size(); ++i) {
    EXPECT_EQ(static_cast<std::size_t>(s_families[i].dataType), i);
    names.push_back(s_families[i].name);
  }
  EXPECT_THAT(names,
              ElementsAre("Clamps", "ClampingTools", "JoiningTongs", "Pilots", "Bolts", "LineJoiningTools",
                          "SuctionZones", "Rollers", "Steels", "HemmingBed", "SpotWelds", "LineWelds"));
}

TEST(Families, AreFoundByTheirNames) {
  ASSERT_NE(familyNamed("SpotWelds"), nullptr);
  EXPECT_EQ(familyNamed("SpotWelds")->dataType, DataType::SpotWelds);
  EXPECT_EQ(familyNamed("spotwelds"), nullptr);
  EXPECT_EQ(familyNamed(""), nullptr);
  EXPECT_EQ(familyName(DataType::HemmingBed), "HemmingBed");
  EXPECT_EQ(familyName(static_cast<DataType>(12)), "") << "no family has the number";
}

TEST(Families, AreGroupedWhereTheyAreOfFormingTools) {
  EXPECT_THAT(groupedFamilyNames(), ElementsAre("ClampingTools", "Rollers", "Steels", "HemmingBed"));
  for (auto const& family : s_families)
    EXPECT_EQ(family.asking == FamilyAsking::grouped, family.toolKind == ToolForceDataType::tool)
        << family.name;
}

TEST(ColumnKey, IsTheSameInEveryLanguage) {
  EXPECT_EQ(columnKey("ClampNormalForce"), "ClampNormalForce");
  EXPECT_EQ(columnKey(ToolForceBusinessName::getTranslated("TotalToolForces")), "TotalToolForces");
  EXPECT_EQ(columnKey(""), "");
  EXPECT_EQ(valueNameOf("ClampNormalForce"), "ClampNormalForce");
  EXPECT_EQ(valueNameOf("TotalToolForces"), ToolForceBusinessName::getTranslated("TotalToolForces"));
}

TEST(Families, HaveTheTitlesOfTheirTables) {
  auto const sample = readSample();
  std::vector<std::string> titles;
  for (auto const& table : genResultTables(sample, {}, ResultLimits())) {
    EXPECT_EQ(familyTitle(table.container().dataType), table.container().title);
    titles.push_back(table.title());
  }
  EXPECT_THAT(titles, testing::IsSupersetOf({"Clamps", "Clamping Tools", "Joining Tools", "Pilots", "Bolts",
                                             "Line Joining Tools", "Suction Zones", "Rollers", "Steels",
                                             "Hemming Bed", "Joins", "Line Joins"}));
}

}  // namespace
}  // namespace Kestrel::ResultTables

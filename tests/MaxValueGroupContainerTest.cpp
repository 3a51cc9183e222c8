#include "Business_TableProperties/MaxValueGroupContainer.h"

#include <gmock/gmock.h>

#include <functional>
#include <type_traits>

#include "support/TestUnit.h"

namespace Kestrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(MaxValueGroupContainer, TheFamiliesKeepTheirNumbers) {
  static_assert(sizeof(DataType) == 4 && std::is_unsigned_v<std::underlying_type_t<DataType>>);
  EXPECT_EQ(static_cast<unsigned int>(DataType::Clamps), 0u);
  EXPECT_EQ(static_cast<unsigned int>(DataType::ClampingTools), 1u);
  EXPECT_EQ(static_cast<unsigned int>(DataType::JoiningTongs), 2u);
  EXPECT_EQ(static_cast<unsigned int>(DataType::Pilots), 3u);
  EXPECT_EQ(static_cast<unsigned int>(DataType::Bolts), 4u);
  EXPECT_EQ(static_cast<unsigned int>(DataType::LineJoiningTools), 5u);
  EXPECT_EQ(static_cast<unsigned int>(DataType::SuctionZones), 6u);
  EXPECT_EQ(static_cast<unsigned int>(DataType::Rollers), 7u);
  EXPECT_EQ(static_cast<unsigned int>(DataType::Steels), 8u);
  EXPECT_EQ(static_cast<unsigned int>(DataType::HemmingBed), 9u);
  EXPECT_EQ(static_cast<unsigned int>(DataType::SpotWelds), 10u);
  EXPECT_EQ(static_cast<unsigned int>(DataType::LineWelds), 11u);
}

TEST(MaxValueGroupContainer, StartsEmptyAsADefaultFamily) {
  auto const id = idEndingIn<SimulationUnitId>('3');
  MaxValueGroupContainer const table(DataType::Steels, id);
  EXPECT_EQ(table.dataType, DataType::Steels);
  EXPECT_EQ(table.simulationUnitId, id);
  EXPECT_THAT(table.groups, IsEmpty());
  EXPECT_THAT(table.elementNames, IsEmpty());
  EXPECT_THAT(table.valuesAreValid, IsEmpty());
  EXPECT_EQ(table.invalidValuesText, "");
  EXPECT_EQ(table.invalidValuesNameAppendix, "");
  EXPECT_EQ(table.unitTitle, "");
  EXPECT_EQ(table.title, "");
  EXPECT_TRUE(table.isDefaultFamily);
}

TEST(MaxValueGroupContainer, ItsFieldsLieInTheDocumentedOrder) {
  MaxValueGroupContainer const table(DataType::Clamps, {});
  void const* const fields[] = {&table.dataType,
                                &table.simulationUnitId,
                                &table.groups,
                                &table.elementNames,
                                &table.valuesAreValid,
                                &table.invalidValuesText,
                                &table.invalidValuesNameAppendix,
                                &table.unitTitle,
                                &table.title,
                                &table.isDefaultFamily};
  EXPECT_TRUE(std::is_sorted(std::begin(fields), std::end(fields), std::less<>()));
}

TEST(MaxValueGroupContainer, ACopySharesNothing) {
  MaxValueGroupContainer table(DataType::Clamps, {});
  table.groups.push_back({"Forces", false, true, {}, {"F"}, {{"", {{"Clamp 1", {1.0}}}}}});
  MaxValueGroupContainer const copy = table;
  table.groups[0].subGroups[0].items[0].maxValues[0] = 2.0;
  EXPECT_THAT(rowsOf(copy.groups[0]), ElementsAre(Row{"", "Clamp 1", {1.0}}));
}

TEST(MaxValueGroupContainer, ValidityIsOrderedByBytes) {
  MaxValueGroupContainer table(DataType::SuctionZones, {});
  for (char const* name : {"\xC3\x84", "b", "B", "a 10", "a 2"}) table.valuesAreValid[name] = true;
  std::vector<std::string> names;
  for (auto const& entry : table.valuesAreValid) names.push_back(entry.first);
  EXPECT_THAT(names, ElementsAre("B", "a 10", "a 2", "b", "\xC3\x84"));
}

TEST(MaxValueGroup, HoldsItsFieldsInTheDocumentedOrder) {
  MaxValueGroup const group{"Forces", true,          false, {TablePropertyLimitType::PilotForce},
                            {"F"},    {{"Left", {}}}};
  EXPECT_EQ(group.name, "Forces");
  EXPECT_TRUE(group.isTeachingGroup);
  EXPECT_FALSE(group.isForceGroup);
  EXPECT_THAT(numbersOf(group.limitTypes), ElementsAre(19u));
  EXPECT_THAT(group.valueNames, ElementsAre("F"));
  EXPECT_EQ(group.subGroups.at(0).name, "Left");
}

}  // namespace
}  // namespace Kestrel

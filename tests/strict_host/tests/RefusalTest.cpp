#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "Business_TableProperties/TablePropertiesData.h"
#include "Business_TableProperties/TablePropertyLimit.h"
#include "StrictHost/Archive.h"
#include "VantaService_PersistenceArchiver/ObjectRecord.h"

// Each of these tests runs in a process of its own, whose environment says what the host refuses.

namespace Kestrel {
namespace {

using StrictHost::Archive;
using testing::AllOf;
using testing::HasSubstr;
using testing::ThrowsMessage;

std::shared_ptr<TablePropertiesData> genCollection() {
  auto data = std::make_shared<TablePropertiesData>();
  data->updateLimits({SimulationUnitId(1)});
  return data;
}

template <typename T>
auto save(std::shared_ptr<T> const& object) {
  return [object] {
    Archive archive;
    savePointer(archive, object);
  };
}

template <typename T>
void load(StrictHost::Document const& document) {
  Archive archive(document);
  std::shared_ptr<T> object;
  loadPointer(archive, object);
}

TEST(RefusedLimitClass, IsSaidWhenLimitsAreSaved) {
  EXPECT_FALSE(TablePropertyLimit::s_force_serialization_registration);
  EXPECT_TRUE(TablePropertiesData::s_force_serialization_registration);
  auto const isSaid =
      ThrowsMessage<std::runtime_error>(AllOf(HasSubstr("TablePropertyLimit"), HasSubstr("not registered")));
  auto const data = genCollection();
  EXPECT_THAT(save(data), isSaid);
  EXPECT_THAT(save(data->getLimit(SimulationUnitId(1), TablePropertyLimitType::PilotForce)), isSaid);
}

TEST(RefusedLimitClass, IsSaidWhenLimitsAreLoaded) {
  Archive archive;
  PersistenceArchiver& out = archive;
  saveRecord(out, Archive::identifierOf("TablePropertiesData"), [&] {
    saveRecord(out, Archive::identifierOf("Object"), [&] { out << std::string() << 0U; });
    out << 25U;
    saveRecord(out, 0xBBAFA6C8, [&] {
      out << 1U;
      saveRecord(out, 0xBBAFA6C8, [&] {});
    });
  });
  auto const document = archive.genDocument();
  auto const isSaid =
      ThrowsMessage<std::runtime_error>(AllOf(HasSubstr("TablePropertyLimit"), HasSubstr("not registered")));
  EXPECT_THAT([&] { load<TablePropertiesData>(document); }, isSaid);
  EXPECT_THAT([&] { load<TablePropertyLimit>(document); }, isSaid);
}

TEST(RefusedLimitClass, LimitsAreThereNevertheless) {
  auto const data = genCollection();
  auto const limit = data->getLimit(SimulationUnitId(1), TablePropertyLimitType::PilotForce);
  limit->setLimit(3.0);
  data->updateLimits({SimulationUnitId(2), SimulationUnitId(1)});
  EXPECT_EQ(data->getLimit(SimulationUnitId(1), TablePropertyLimitType::PilotForce)->getLimit(), 3.0);
}

TEST(RefusedCollectionClass, IsSaidWhenItIsUsed) {
  EXPECT_FALSE(TablePropertiesData::s_force_serialization_registration);
  auto const isSaid =
      ThrowsMessage<std::runtime_error>(AllOf(HasSubstr("TablePropertiesData"), HasSubstr("not registered")));
  EXPECT_THAT(save(genCollection()), isSaid);
  Archive archive;
  saveRecord(archive, 0xBBAFA6C8, [] {});
  auto const document = archive.genDocument();
  EXPECT_THAT([&] { load<TablePropertiesData>(document); }, isSaid);
}

TEST(RefusedObjectClass, IsSaidWhenObjectsAreSaved) {
  auto const isSaid =
      ThrowsMessage<std::runtime_error>(AllOf(HasSubstr("Object"), HasSubstr("not registered")));
  EXPECT_THAT(save(genCollection()), isSaid);
}

TEST(RefusedCasters, ParentIsNotRegistered) {
  auto const isSaid = ThrowsMessage<std::runtime_error>(testing::StrEq("Parent not registered"));
  auto const data = genCollection();
  EXPECT_THAT(save(data), isSaid);
  EXPECT_THAT(save(data->getLimit(SimulationUnitId(1), TablePropertyLimitType::PilotForce)), isSaid);
}

TEST(RefusedCasters, ParentIsNotRegisteredBeforeAnythingIsWrittenOrRead) {
  auto const isSaid = ThrowsMessage<std::runtime_error>(testing::StrEq("Parent not registered"));
  BaseClassRegister record;
  TablePropertyLimit limit(TablePropertyLimitType::PilotForce, SimulationUnitId(1), 2.0, "N");
  TablePropertyLimit::serialization_register(&record);
  Archive archive;
  PersistenceArchiver& archiver = archive;
  EXPECT_THAT([&] { record.save(archiver, &limit, 500002); }, isSaid);
  EXPECT_THAT([&] { record.load(archiver, &limit, 500002); }, isSaid);
  TablePropertiesData data;
  TablePropertiesData::serialization_register(&record);
  EXPECT_THAT([&] { record.save(archiver, &data, 500002); }, isSaid);
  EXPECT_THAT([&] { record.load(archiver, &data, 500002); }, isSaid);
  EXPECT_EQ(archiver.tellp(), 0U);
  EXPECT_EQ(archiver.tellg(), 0U);
}

}  // namespace
}  // namespace Kestrel

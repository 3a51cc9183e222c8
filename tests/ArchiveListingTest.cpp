#include "VantaService_Parameterization/ArchiveListing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <variant>

#include "Business_TableProperties/TablePropertiesData.h"
#include "VantaService_PersistenceArchiver/Document.h"
#include "support/DamagedDocument.h"
#include "support/LimitsWriter.h"

namespace Kestrel {
namespace {

SimulationUnitId const s_unit(GUIdentifier::fromString("0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01").value());

std::string genDocumentWith(double limit) {
  return LimitsWriter{.limits = {{23, s_unit, limit, "N"}}}.genDocument();
}

TEST(ArchiveListing, SaysWhereEachRecordAndEachFieldStands) {
  auto const listing = genArchiveListing(genDocumentWith(31.5));
  EXPECT_EQ(listing.damage, "");
  ASSERT_EQ(listing.records.size(), 6U);
  auto const& limit = listing.records[3];
  EXPECT_EQ(limit.offset, 50U);
  EXPECT_EQ(limit.depth, 2U);
  EXPECT_EQ(limit.className, "TablePropertyLimit");
  EXPECT_EQ(limit.version, 500002U);
  ASSERT_EQ(limit.fields.size(), 3U);
  EXPECT_EQ(limit.fields[0].offset, 60U);
  EXPECT_EQ(std::get<unsigned int>(limit.fields[0].value), 23U);
  EXPECT_EQ(limit.fields[1].offset, 67U);
  EXPECT_EQ(std::get<double>(limit.fields[1].value), 31.5);
  EXPECT_EQ(limit.fields[2].offset, 75U);
  EXPECT_EQ(std::get<std::string>(limit.fields[2].value), "N");
}

TEST(ArchiveListing, ShowsWhatNoClassReadsAsBytes) {
  LimitsWriter writer;
  writer.hasUnknownFields = true;
  auto const listing = genArchiveListing(writer.genDocument());
  auto const& bytes = std::get<ArchiveField::Bytes>(listing.records.at(0).fields.back().value);
  EXPECT_TRUE(bytes.isUnread);
  // Two bytes of a number, eight of a real, one of a text.
  EXPECT_EQ(bytes.bytes.size(), 11U);
}

TEST(ArchiveListing, GoesOnBehindAChecksumThatDoesNotMatch) {
  auto document = genDocumentWith(31.5);
  document[67 + 7] = '\x41';
  auto const listing = genArchiveListing(document);
  EXPECT_THAT(listing.damage, testing::HasSubstr("the checksum does not match"));
  ASSERT_EQ(listing.records.size(), 6U);
  EXPECT_GT(std::get<double>(listing.records[3].fields[1].value), 31.5);
}

TEST(ArchiveListing, EndsWhereTheRecordsCannotBeRead) {
  auto document = genDocumentWith(31.5);
  document[55] = '\x70';
  auto const listing = genArchiveListing(genResealedDocument(document));
  EXPECT_EQ(listing.damage, "byte 56: expected one of 4 classes, found number 112");
  EXPECT_EQ(listing.records.size(), 5U);
}

TEST(ArchiveListing, SaysTheFirstOfTwoDamages) {
  auto document = genDocumentWith(31.5);
  document[55] = '\x70';
  auto const listing = genArchiveListing(document);
  EXPECT_THAT(listing.damage, testing::HasSubstr("the checksum does not match"));
  EXPECT_EQ(listing.records.size(), 5U);
}

TEST(ArchiveListing, IsEmptyWhereTheTablesAreGone) {
  auto const document = genDocumentWith(31.5);
  auto const listing = genArchiveListing(document.substr(0, 100));
  EXPECT_EQ(listing.damage, "byte 12: expected 189 bytes, found 100");
  EXPECT_TRUE(listing.records.empty());
}

TEST(ArchiveListing, SaysThatSomethingStandsBehindTheRoot) {
  PersistenceArchiver archive;
  savePointer(archive, std::make_shared<TablePropertiesData>());
  archive.mark_null_pointer();
  auto const listing = genArchiveListing(archive.genDocument());
  EXPECT_EQ(listing.damage, "byte 45: expected the end of the records");
  EXPECT_EQ(listing.records.size(), 3U);
}

TEST(ArchiveListing, NamesAClassThatTheProgramDoesNotHave) {
  BaseClassRegister record;
  TablePropertiesData::serialization_register(&record);
  auto const* const foreign = PersistenceArchiver::registerFactory("ForeignRoot", record, 7);
  ASSERT_NE(foreign, nullptr);
  auto const identifier = foreign->identifier;
  PersistenceArchiver archive;
  saveRecord(archive, identifier, [] {});
  auto const document = archive.genDocument();
  PersistenceArchiver::withdrawFactory(identifier);
  auto const listing = genArchiveListing(document);
  EXPECT_THAT(listing.damage, testing::HasSubstr("not registered in this program"));
  ASSERT_EQ(listing.records.size(), 1U);
  EXPECT_EQ(listing.records[0].className, "ForeignRoot");
  EXPECT_EQ(listing.records[0].version, 7U);
}

}  // namespace
}  // namespace Kestrel

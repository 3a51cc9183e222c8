#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include "Business_TableProperties/TablePropertiesData.h"
#include "Business_TableProperties/TablePropertyLimit.h"
#include "VantaService_ExceptionHandling/KeException.h"
#include "VantaService_Parameterization/ArchiveListing.h"
#include "VantaService_Parameterization/ObjectHelper.h"
#include "VantaService_PersistenceArchiver/ArchiveException.h"
#include "VantaService_PersistenceArchiver/Document.h"
#include "support/DamagedDocument.h"
#include "support/LimitsWriter.h"
#include "support/TablePropertiesDataTestAccess.h"
#include "support/TablePropertyLimitTestAccess.h"

// How the collection and its limits are stored in a document and read again.

namespace Kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Access = TablePropertiesDataTestAccess;
using LimitList = std::vector<std::shared_ptr<TablePropertyLimit>>;
using Type = TablePropertyLimitType;

SimulationUnitId unit(char digit) {
  std::string text = "00000000-0000-4000-8000-000000000000";
  text[0] = digit;
  return SimulationUnitId(GUIdentifier::fromString(text).value());
}

std::shared_ptr<TablePropertyLimit> genLimit(Type type, SimulationUnitId const& id, double value,
                                             std::string const& unitString) {
  return std::make_shared<TablePropertyLimit>(type, id, value, unitString);
}

void add(TablePropertiesData& data, LimitList const& limits) {
  ObjectHelper::addToVectorAtEnd(&data, limits, Access::limits(data), "TablePropertyLimit", 1, false);
  Access::setupLimitsAccessMap(data);
}

/// A collection that holds exactly these limits.
std::shared_ptr<TablePropertiesData> genCollection(LimitList const& limits) {
  auto data = std::make_shared<TablePropertiesData>();
  add(*data, limits);
  return data;
}

LimitList const& limitsOf(std::shared_ptr<TablePropertiesData> const& data) { return Access::limits(*data); }

std::shared_ptr<TablePropertiesData> reload(std::shared_ptr<TablePropertiesData> const& data) {
  return loadDocument<TablePropertiesData>(genDocument(data));
}

/// "type value unit" of each limit.
std::vector<std::string> describe(LimitList const& limits) {
  std::vector<std::string> texts;
  for (auto const& limit : limits) {
    std::ostringstream text;
    if (limit)
      text << static_cast<unsigned int>(limit->getType()) << ' ' << limit->getLimit() << ' '
           << limit->getUnitString();
    texts.push_back(text.str());
  }
  return texts;
}

/// What stands in a record, without the offsets.
std::vector<std::string> describe(ArchiveRecord const& record) {
  struct Describe {
    std::string operator()(ArchiveField::Null) const { return "null"; }
    std::string operator()(ArchiveField::Reference) const { return "reference"; }
    std::string operator()(unsigned int number) const { return std::to_string(number); }
    std::string operator()(double number) const { return "real " + std::to_string(number); }
    std::string operator()(std::string const& text) const { return '"' + text + '"'; }
    std::string operator()(ArchiveField::Bytes const& bytes) const {
      return std::to_string(bytes.bytes.size()) + (bytes.isUnread ? " unread bytes" : " bytes");
    }
  };
  std::string const depth(record.depth, '>');
  std::vector<std::string> texts{record.className.empty()
                                     ? depth + "container"
                                     : depth + record.className + ' ' + std::to_string(record.version)};
  for (auto const& field : record.fields) texts.push_back(std::visit(Describe(), field.value));
  return texts;
}

std::vector<std::vector<std::string>> describeRecords(std::string const& document) {
  auto const listing = genArchiveListing(document);
  EXPECT_EQ(listing.damage, "");
  std::vector<std::vector<std::string>> records;
  for (auto const& record : listing.records) records.push_back(describe(record));
  return records;
}

template <typename T>
BaseClassRegister registrationRecordOf() {
  BaseClassRegister record;
  T::serialization_register(&record);
  return record;
}

std::string messageOf(std::function<void()> const& operation) {
  try {
    operation();
  } catch (std::exception const& error) {
    return error.what();
  }
  return "no exception";
}

template <typename T>
class RegistrationTest : public testing::Test {};

struct ClassNames {
  template <typename T>
  static std::string GetName(int /*index*/) {
    return std::is_same_v<T, TablePropertiesData> ? "TablePropertiesData" : "TablePropertyLimit";
  }
};
using PersistentClasses = testing::Types<TablePropertiesData, TablePropertyLimit>;
TYPED_TEST_SUITE(RegistrationTest, PersistentClasses, ClassNames);

TYPED_TEST(RegistrationTest, GivesTheClassItsNameAndVersion) {
  auto const record = registrationRecordOf<TypeParam>();
  EXPECT_EQ(record.name, ClassNames::GetName<TypeParam>(0));
  EXPECT_EQ(record.currentVersion, 500002U);
  EXPECT_EQ(record.readVersion, 500002U);
  EXPECT_NE(record.identifier, 0U);
  EXPECT_EQ(record.tracking, 1U);
  EXPECT_TRUE(TypeParam::s_force_serialization_registration);
}

TYPED_TEST(RegistrationTest, IsFoundByTheNameOfTheRunTimeType) {
  auto const hash = PersistenceArchiver::getHashForName(typeid(TypeParam).name());
  EXPECT_EQ(PersistenceArchiver::getHashForType(hash), registrationRecordOf<TypeParam>().identifier);
}

TYPED_TEST(RegistrationTest, MakesDefaultObjectsAndTheirPointerMap) {
  auto const record = registrationRecordOf<TypeParam>();
  auto const object = record.factory();
  ASSERT_NE(object, nullptr);
  EXPECT_EQ(record.dynamicType(object.get()), record.identifier);
  auto const map = record.pointerMapFactory();
  EXPECT_NE(dynamic_cast<PointerMapContainer<TypeParam>*>(map.get()), nullptr);
}

TYPED_TEST(RegistrationTest, ConvertsBetweenTheClassAndItsObjectPart) {
  auto const record = registrationRecordOf<TypeParam>();
  auto const* const caster =
      PersistenceArchiver::getCaster(registrationRecordOf<Object>().identifier, record.identifier);
  ASSERT_NE(caster, nullptr);
  auto const owner = std::static_pointer_cast<TypeParam>(record.factory());
  Object* const part = owner.get();
  EXPECT_EQ(caster->upCast(owner.get()), part);
  EXPECT_EQ(caster->downCast(static_cast<void*>(part)), owner.get());
  EXPECT_EQ(caster->upCast(nullptr), nullptr);
  Object other;
  EXPECT_EQ(caster->downCast(static_cast<void*>(&other)), nullptr);
}

TYPED_TEST(RegistrationTest, IsNeededToSaveAndLoad) {
  using ClassAccess = std::conditional_t<std::is_same_v<TypeParam, TablePropertiesData>, Access,
                                         TablePropertyLimitTestAccess>;
  auto const record = registrationRecordOf<TypeParam>();
  auto const object = record.factory();

  PersistenceArchiver writer;
  auto const begin = writer.tellp();
  ClassAccess::isParentRegisteredForSave() = false;
  EXPECT_EQ(messageOf([&] { record.save(writer, object.get(), 500002); }), "Parent not registered");
  ClassAccess::isParentRegisteredForSave() = true;
  EXPECT_EQ(writer.tellp(), begin);
  record.save(writer, object.get(), 500002);
  auto const document = writer.genDocument();

  PersistenceArchiver reader{std::string_view(document)};
  ClassAccess::isParentRegisteredForLoad() = false;
  EXPECT_EQ(messageOf([&] { record.load(reader, object.get(), 500002); }), "Parent not registered");
  ClassAccess::isParentRegisteredForLoad() = true;
  EXPECT_EQ(reader.tellg(), begin);
  record.load(reader, object.get(), 500002);
  EXPECT_NO_THROW(reader.checkEndOfRecords());
}

TEST(LimitsPersistence, WritesAnEmptyCollectionAsBasePartDataVersionAndNoLimits) {
  EXPECT_THAT(describeRecords(genDocument(std::make_shared<TablePropertiesData>())),
              ElementsAre(ElementsAre("TablePropertiesData 500002", "25"),
                          ElementsAre(">Object 500002", "\"\"", "0", "4294967295", "0"),
                          ElementsAre(">container", "0")));
}

TEST(LimitsPersistence, WritesALimitAsBasePartTypeUnitValueAndUnitText) {
  auto const limit = genLimit(Type::BoltNormalForce, unit('a'), 31.5, "N");
  limit->setMaxDisplayName("not stored");
  auto const records = describeRecords(genDocument(genCollection({limit})));
  ASSERT_EQ(records.size(), 6U);
  EXPECT_THAT(records[2], ElementsAre(">container", "1"));
  EXPECT_THAT(records[3], ElementsAre(">>TablePropertyLimit 500002", "23", "real 31.500000", "\"N\""));
  EXPECT_THAT(records[4][0], ">>>Object 500002");
  EXPECT_THAT(records[4][1], "\"TablePropertyLimit\"");
  EXPECT_THAT(records[5], ElementsAre(">>>SimulationUnitId 500002", "16 bytes"));
}

TEST(LimitsPersistence, WritesTheCurrentDataVersionWhateverTheCollectionSays) {
  auto const data = std::make_shared<TablePropertiesData>();
  Access::dataVersion(*data) = 7;
  EXPECT_THAT(describeRecords(genDocument(data))[0], ElementsAre("TablePropertiesData 500002", "25"));
}

TEST(LimitsPersistence, ReadsTheFieldsOfALimit) {
  auto const limit = genLimit(Type::PilotForce, unit('b'), -12.25, "kN");
  limit->setMaxDisplayName("shown");
  auto const loaded = reload(genCollection({limit}));
  ASSERT_EQ(limitsOf(loaded).size(), 1U);
  auto const& read = limitsOf(loaded).front();
  EXPECT_EQ(read->getType(), Type::PilotForce);
  EXPECT_EQ(read->getSimUnitID(), unit('b'));
  EXPECT_EQ(read->getLimit(), -12.25);
  EXPECT_EQ(read->getUnitString(), "kN");
  EXPECT_EQ(read->getMaxLimitDisplayName(), "");
  EXPECT_EQ(loaded->getLimit(unit('b'), Type::PilotForce), read);
}

TEST(LimitsPersistence, KeepsTheOrderOfTheLimits) {
  auto const loaded = reload(genCollection({genLimit(Type::SuctionDistance, unit('b'), 1, "mm"),
                                            genLimit(Type::JoinNormalForce, unit('a'), 2, "N"),
                                            genLimit(Type::SuctionDistance, unit('a'), 3, "mm")}));
  EXPECT_THAT(describe(limitsOf(loaded)), ElementsAre("17 1 mm", "5 2 N", "17 3 mm"));
}

TEST(LimitsPersistence, WritesALimitThatIsHeldTwiceOnceAndSharesItAgain) {
  auto const limit = genLimit(Type::JoinNormalForce, unit('a'), 2, "N");
  auto const data = genCollection({limit});
  Access::limits(*data).push_back(limit);
  auto const document = genDocument(data);

  auto const listing = genArchiveListing(document);
  auto const& container = listing.records.at(2);
  ASSERT_EQ(container.fields.size(), 2U);
  EXPECT_EQ(std::get<ArchiveField::Reference>(container.fields[1].value).address, listing.records[3].offset);

  auto const loaded = loadDocument<TablePropertiesData>(document);
  ASSERT_EQ(limitsOf(loaded).size(), 2U);
  EXPECT_EQ(limitsOf(loaded)[0], limitsOf(loaded)[1]);
  EXPECT_EQ(loaded->getChildCount(), 1U);
  // Both places of the list, both of the map, the tree and this.
  auto const shared = limitsOf(loaded)[0];
  EXPECT_EQ(shared.use_count(), 6);
}

TEST(LimitsPersistence, KeepsEmptyPlacesOfTheList) {
  auto const data = genCollection({genLimit(Type::JoinNormalForce, unit('a'), 2, "N")});
  Access::limits(*data).insert(Access::limits(*data).begin(), nullptr);
  auto const document = genDocument(data);
  EXPECT_THAT(describeRecords(document)[2], ElementsAre(">container", "2", "null"));
  auto const loaded = loadDocument<TablePropertiesData>(document);
  EXPECT_THAT(describe(limitsOf(loaded)), ElementsAre("", "5 2 N"));
  loaded->updateLimits({unit('a')});
  EXPECT_THAT(describe(limitsOf(loaded)), ElementsAre("5 2 N"));
}

/// A kind of limit that another library might add.
class RatedLimit : public TablePropertyLimit {
 public:
  RatedLimit() : TablePropertyLimit(Type::NoLimit, SimulationUnitId(), 0.0, "") {}
  RatedLimit(double limit, unsigned int grade)
      : TablePropertyLimit(Type::PilotForce, unit('a'), limit, "N"), m_grade(grade) {}

  static void serialization_register(void* record) { fillRegistration<RatedLimit>(record, "RatedLimit", 3); }
  [[nodiscard]] unsigned int getGrade() const { return m_grade; }

 private:
  friend class Kestrel::ArchiveAccess;

  void save(PersistenceArchiver& archive, unsigned int /*version*/) const {
    savePart<TablePropertyLimit>(archive, *this);
    archive << m_grade;
  }
  void load(PersistenceArchiver& archive, unsigned int /*version*/) {
    loadPart<TablePropertyLimit>(archive, *this);
    archive >> m_grade;
  }

  unsigned int m_grade = 0;
};

bool const s_isRatedLimitRegistered =
    registerClass<RatedLimit>() && registerParent<TablePropertyLimit, RatedLimit>();

TEST(LimitsPersistence, WritesASubclassByItsOwnSaveAndReadsItAsSuch) {
  ASSERT_TRUE(s_isRatedLimitRegistered);
  auto const rated = std::make_shared<RatedLimit>(7.5, 42);
  auto const data = genCollection({genLimit(Type::JoinNormalForce, unit('a'), 2, "N"), rated});
  Access::limits(*data).push_back(rated);
  auto const document = genDocument(data);
  EXPECT_THAT(describeRecords(document)[6], ElementsAre(">>RatedLimit 3", "42"));

  auto const loaded = loadDocument<TablePropertiesData>(document);
  EXPECT_THAT(describe(limitsOf(loaded)), ElementsAre("5 2 N", "19 7.5 N", "19 7.5 N"));
  auto const read = std::dynamic_pointer_cast<RatedLimit>(limitsOf(loaded)[1]);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(read->getGrade(), 42U);
  EXPECT_EQ(limitsOf(loaded)[2], read);
  EXPECT_EQ(loaded->getChild(1), read);
}

/// Nobody has told the archive of it.
class UnknownLimit : public TablePropertyLimit {
 public:
  using TablePropertyLimit::TablePropertyLimit;
};

TEST(LimitsPersistence, WritesASubclassThatIsNotRegisteredAsALimit) {
  auto const loaded = reload(
      genCollection({std::make_shared<UnknownLimit>(Type::PilotForce, unit('a'), 7.5, std::string("N"))}));
  EXPECT_THAT(describe(limitsOf(loaded)), ElementsAre("19 7.5 N"));
  EXPECT_EQ(loaded->getChild(0), limitsOf(loaded)[0]);
}

TEST(LimitsPersistence, RestoresTheTree) {
  auto const data = std::make_shared<TablePropertiesData>();
  data->updateLimits({unit('b'), unit('a')});
  // New child ids, and a limit that left the tree without leaving the list.
  data->updateLimits({unit('a'), unit('b'), unit('c')});
  data->removeChild(Access::limits(*data)[3]);
  auto const loaded = reload(data);

  ASSERT_EQ(limitsOf(loaded).size(), 48U);
  ASSERT_EQ(loaded->getChildCount(), 47U);
  EXPECT_EQ(loaded->getParentObject(), nullptr);
  EXPECT_EQ(loaded->getChildId(), data->getChildId());
  for (std::size_t i = 0; i < 48; ++i) {
    auto const& written = Access::limits(*data)[i];
    auto const& read = limitsOf(loaded)[i];
    EXPECT_EQ(read->getObjectName(), "TablePropertyLimit");
    EXPECT_EQ(read->getChildId(), written->getChildId());
    EXPECT_EQ(read->getParentObject(), i == 3 ? nullptr : loaded.get());
    EXPECT_EQ(loaded->getChildPosition(*read), data->getChildPosition(*written));
  }
}

TEST(LimitsPersistence, GivesNewLimitsChildIdsThatNoLimitOfTheDocumentHas) {
  auto const data = std::make_shared<TablePropertiesData>();
  data->updateLimits({unit('a')});
  auto const loaded = reload(data);
  Access::setupLimitsForSimUnit(*loaded, unit('b'));
  std::set<int> ids;
  for (auto const& limit : limitsOf(loaded)) ids.insert(limit->getChildId());
  EXPECT_EQ(ids.size(), 32U);
}

TEST(LimitsPersistence, UpdatesAReadCollectionAsAFreshOne) {
  auto const data = std::make_shared<TablePropertiesData>();
  data->updateLimits({unit('a'), unit('b')});
  data->getLimit(unit('b'), Type::BoltNormalForce)->setLimit(77);
  auto const loaded = reload(data);
  loaded->updateLimits({unit('c'), unit('b')});
  ASSERT_EQ(limitsOf(loaded).size(), 32U);
  EXPECT_EQ(loaded->getChildCount(), 32U);
  EXPECT_EQ(limitsOf(loaded)[0]->getSimUnitID(), unit('b'));
  EXPECT_EQ(loaded->getLimit(unit('b'), Type::BoltNormalForce)->getLimit(), 77.0);
  EXPECT_EQ(loaded->getLimit(unit('c'), Type::BoltNormalForce)->getLimit(), 30.0);
  EXPECT_EQ(loaded->getLimit(unit('a'), Type::BoltNormalForce), nullptr);
}

TEST(LimitsPersistence, DiscardsTheLimitsOfOldCollections) {
  LimitsWriter writer;
  writer.collectionVersion = 500001;
  writer.limits = {{1, unit('a'), 5.0, "N"}, {2, unit('a'), 6.0, "mm"}};
  auto const loaded = loadDocument<TablePropertiesData>(writer.genDocument());
  EXPECT_THAT(limitsOf(loaded), IsEmpty());
  EXPECT_THAT(Access::limitsAccessMap(*loaded), IsEmpty());
  EXPECT_EQ(Access::dataVersion(*loaded), 25);
  EXPECT_EQ(loaded->getChildCount(), 0U);
  loaded->updateLimits({unit('a')});
  EXPECT_EQ(limitsOf(loaded).size(), 16U);
  EXPECT_EQ(loaded->getLimit(unit('a'), Type::JoiningTongNormalForce)->getLimit(), 500.0);
}

/// Outlives the collection that is read.
class KeptLimit : public TablePropertyLimit {
 public:
  KeptLimit() : TablePropertyLimit(Type::NoLimit, SimulationUnitId(), 0.0, "") {}

  static std::shared_ptr<Object>& lastRead() {
    static std::shared_ptr<Object> object;
    return object;
  }
  static void serialization_register(void* record) { fillRegistration<KeptLimit>(record, "KeptLimit", 1); }

 private:
  friend class Kestrel::ArchiveAccess;

  void save(PersistenceArchiver& archive, unsigned int /*version*/) const {
    savePart<TablePropertyLimit>(archive, *this);
  }
  void load(PersistenceArchiver& archive, unsigned int /*version*/) {
    loadPart<TablePropertyLimit>(archive, *this);
    lastRead() = shared_from_this();
  }
};

bool const s_isKeptLimitRegistered =
    registerClass<KeptLimit>() && registerParent<TablePropertyLimit, KeptLimit>();

TEST(LimitsPersistence, LeavesADiscardedLimitNobodysChild) {
  ASSERT_TRUE(s_isKeptLimitRegistered);
  PersistenceArchiver writer;
  auto& collection = writer.getMapOfClasses().at(registrationRecordOf<TablePropertiesData>().identifier);
  collection.currentVersion = 500001;
  savePointer(writer, genCollection({std::make_shared<KeptLimit>()}));
  auto const loaded = loadDocument<TablePropertiesData>(writer.genDocument());
  EXPECT_THAT(limitsOf(loaded), IsEmpty());
  auto const discarded = std::exchange(KeptLimit::lastRead(), nullptr);
  ASSERT_NE(discarded, nullptr);
  EXPECT_EQ(discarded->getParentObject(), nullptr);
  EXPECT_EQ(discarded.use_count(), 1);
}

/// The root of a document around a collection; keeps the reports of all roots that are read.
class ReportingRoot : public Object {
 public:
  static std::vector<ObjectTreeChangeReasonEx>& reports() {
    static std::vector<ObjectTreeChangeReasonEx> all;
    return all;
  }
  static void serialization_register(void* record) {
    fillRegistration<ReportingRoot>(record, "ReportingRoot", 1);
  }

  void propagateTreeChanged(ObjectTreeChangeReasonEx reason,
                            std::vector<std::shared_ptr<Object>> const& /*objects*/) override {
    reports().push_back(reason);
  }
  void propagateTreeChanged(ObjectTreeChangeReasonEx reason, std::shared_ptr<Object> /*object*/) override {
    reports().push_back(reason);
  }

  std::vector<std::shared_ptr<TablePropertiesData>> collection;

 private:
  friend class Kestrel::ArchiveAccess;

  void save(PersistenceArchiver& archive, unsigned int /*version*/) const {
    savePart<Object>(archive, *this);
    savePointer(archive, collection.front());
  }
  void load(PersistenceArchiver& archive, unsigned int /*version*/) {
    loadPart<Object>(archive, *this);
    loadPointer(archive, collection.emplace_back());
  }
};

bool const s_isReportingRootRegistered =
    registerClass<ReportingRoot>() && registerParent<Object, ReportingRoot>();

TEST(LimitsPersistence, DiscardsTheLimitsOfOldCollectionsWithoutReports) {
  ASSERT_TRUE(s_isReportingRootRegistered);
  auto const root = std::make_shared<ReportingRoot>();
  std::vector const written{std::make_shared<TablePropertiesData>()};
  ObjectHelper::addToVectorAtEnd(root.get(), written, root->collection, std::nullopt, 1, false);
  written.front()->updateLimits({unit('a')});
  PersistenceArchiver writer;
  writer.getMapOfClasses().at(registrationRecordOf<TablePropertiesData>().identifier).currentVersion = 500001;
  savePointer(writer, root);
  auto const document = writer.genDocument();
  ReportingRoot::reports().clear();

  auto const loaded = loadDocument<ReportingRoot>(document);

  EXPECT_THAT(ReportingRoot::reports(), IsEmpty());
  auto const& collection = *loaded->collection.front();
  EXPECT_EQ(collection.getParentObject(), loaded.get());
  EXPECT_EQ(collection.getChildCount(), 0U);
  EXPECT_EQ(collection.getLimit(unit('a'), Type::PilotForce), nullptr);
}

TEST(LimitsPersistence, ReadsOldLimitsWithoutUnitText) {
  LimitsWriter writer;
  writer.limitVersion = 500001;
  writer.limits = {{1, unit('a'), 5.0, "never written"}, {2, unit('a'), 6.0, ""}};
  auto const loaded = loadDocument<TablePropertiesData>(writer.genDocument());
  EXPECT_THAT(describe(limitsOf(loaded)), ElementsAre("1 5 ", "2 6 "));
}

TEST(LimitsPersistence, LeavesASetOfTheCurrentDataVersionAsItIs) {
  LimitsWriter writer;
  writer.limits = {{24, unit('a'), 5.0, "N"}};
  auto const loaded = loadDocument<TablePropertiesData>(writer.genDocument());
  EXPECT_THAT(describe(limitsOf(loaded)), ElementsAre("24 5 N"));
  EXPECT_NE(loaded->getLimit(unit('a'), Type::ClampClosingForce), nullptr);
}

TEST(LimitsPersistence, AddsWhatAnOlderDataVersionLacks) {
  LimitsWriter writer;
  writer.dataVersion = 20;
  writer.limits = {{1, unit('a'), 5.0, "N"}};
  auto const loaded = loadDocument<TablePropertiesData>(writer.genDocument());
  EXPECT_EQ(Access::dataVersion(*loaded), 25);
  EXPECT_EQ(limitsOf(loaded).size(), 16U);
  EXPECT_EQ(loaded->getChildCount(), 16U);
  EXPECT_EQ(loaded->getLimit(unit('a'), Type::JoiningTongNormalForce)->getLimit(), 5.0);
  EXPECT_EQ(loaded->getLimit(unit('a'), Type::BoltNormalForce)->getLimit(), 30.0);
  std::set<int> ids;
  for (auto const& limit : limitsOf(loaded)) ids.insert(limit->getChildId());
  EXPECT_EQ(ids.size(), 16U);
}

TEST(LimitsPersistence, ReplacesEachLimitOfANewerDataVersionByASetOfDefaults) {
  LimitsWriter writer;
  writer.dataVersion = 30;
  writer.limits = {{1, unit('a'), 5.0, "N"}, {2, unit('a'), 6.0, "mm"}};
  auto const loaded = loadDocument<TablePropertiesData>(writer.genDocument());
  EXPECT_EQ(Access::dataVersion(*loaded), 25);
  EXPECT_EQ(limitsOf(loaded).size(), 32U);
  EXPECT_EQ(loaded->getChildCount(), 32U);
  EXPECT_EQ(loaded->getLimit(unit('a'), Type::JoiningTongNormalForce)->getLimit(), 500.0);
}

TEST(LimitsPersistence, ReadsANegativeDataVersionAsAnOlderOne) {
  LimitsWriter writer;
  writer.dataVersion = 0xFFFFFFFF;
  writer.limits = {{1, unit('a'), 5.0, "N"}};
  EXPECT_EQ(limitsOf(loadDocument<TablePropertiesData>(writer.genDocument())).size(), 16U);
}

TEST(LimitsPersistence, SkipsWhatANewerProgramAppendsToAnyRecord) {
  LimitsWriter writer;
  writer.collectionVersion = 500003;
  writer.limitVersion = 500007;
  writer.hasUnknownFields = true;
  writer.limits = {{1, unit('a'), 5.0, "N"}, {2, unit('b'), 6.0, "mm"}};
  auto const loaded = loadDocument<TablePropertiesData>(writer.genDocument());
  EXPECT_THAT(describe(limitsOf(loaded)), ElementsAre("1 5 N", "2 6 mm"));
  EXPECT_EQ(loaded->getChildCount(), 2U);
}

TEST(LimitsPersistence, GoesOnToReadADocumentOfItsOwnBytes) {
  auto const data = std::make_shared<TablePropertiesData>();
  data->updateLimits({unit('a'), unit('b')});
  auto const document = genDocument(data);
  EXPECT_EQ(genDocument(loadDocument<TablePropertiesData>(document)), document);
}

/// A document whose root is written by `writeContent` between the marks of a collection's record, behind an
/// `Object` part without children.
template <typename WriteContent>
std::string genCollectionDocument(WriteContent const& writeContent) {
  PersistenceArchiver archive;
  saveRecord(archive, registrationRecordOf<TablePropertiesData>().identifier, [&] {
    saveRecord(archive, registrationRecordOf<Object>().identifier,
               [&] { archive << std::string() << 0U << 0xFFFFFFFFU << 0U; });
    archive << 25U;
    saveRecord(archive, PersistenceArchiver::noTypeHash, [&] { writeContent(archive); });
  });
  return archive.genDocument();
}

TEST(LimitsPersistence, RefusesMoreLimitsThanTheDocumentCanHold) {
  EXPECT_EQ(damageOf<TablePropertiesData>(genCollectionDocument([](auto& archive) { archive << 1U; })),
            "byte 45: expected a container of at most 0 elements, found one of 1");
}

TEST(LimitsPersistence, RefusesAnObjectOfAnotherClassInPlaceOfALimit) {
  auto const document = genCollectionDocument([](auto& archive) {
    archive << 1U;
    savePointer(archive, std::make_shared<TablePropertiesData>());
  });
  EXPECT_THAT(damageOf<TablePropertiesData>(document),
              testing::EndsWith("expected a TablePropertyLimit, found a TablePropertiesData"));
}

TEST(LimitsPersistence, RefusesALimitOfAClassThatThisProgramDoesNotHave) {
  std::string document;
  {
    BaseClassRegister record = registrationRecordOf<TablePropertyLimit>();
    auto const* const added = PersistenceArchiver::registerFactory("ForeignLimit", record, 1);
    ASSERT_NE(added, nullptr);
    auto const identifier = added->identifier;
    document = genCollectionDocument([&](auto& archive) {
      archive << 1U;
      saveRecord(archive, identifier, [] {});
    });
    PersistenceArchiver::withdrawFactory(identifier);
  }
  EXPECT_THAT(damageOf<TablePropertiesData>(document), testing::HasSubstr("not registered in this program"));
}

TEST(LimitsPersistence, RefusesALimitInPlaceOfACollection) {
  EXPECT_THAT(damageOf<TablePropertiesData>(genDocument(genLimit(Type::PilotForce, unit('a'), 1, "N"))),
              testing::EndsWith("expected a TablePropertiesData, found a TablePropertyLimit"));
}

TEST(LimitsPersistence, RefusesADocumentWithoutACollection) {
  EXPECT_THAT(damageOf<TablePropertiesData>(genDocument(std::shared_ptr<TablePropertiesData>())),
              testing::EndsWith("expected a TablePropertiesData, found nothing"));
}

}  // namespace
}  // namespace Kestrel

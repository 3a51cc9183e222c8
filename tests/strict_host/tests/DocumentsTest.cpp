#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Business_TableProperties/TablePropertiesData.h"
#include "Business_TableProperties/TablePropertyLimit.h"
#include "Limits.h"
#include "StrictHost/Archive.h"
#include "StrictHost/ObjectView.h"
#include "TablePropertiesDataTestAccess.h"
#include "VantaService_PersistenceArchiver/ObjectRecord.h"

namespace Kestrel {
namespace {

using StrictHost::Archive;
using StrictHost::Document;
using StrictHost::ObjectView;
using TestAccess = TablePropertiesDataTestAccess;

constexpr unsigned int noType = 0xBBAFA6C8;

SimulationUnitId const a(1);
SimulationUnitId const b(2);

template <typename T>
Document save(std::shared_ptr<T> const& object) {
  Archive archive;
  savePointer(archive, object);
  return archive.genDocument();
}

template <typename T = TablePropertiesData>
std::shared_ptr<T> load(Document const& document) {
  Archive archive(document);
  std::shared_ptr<T> object;
  loadPointer(archive, object);
  EXPECT_TRUE(archive.isReadToTheEnd());
  return object;
}

std::shared_ptr<TablePropertyLimit> limit(unsigned int type, SimulationUnitId const& unit, double value,
                                          std::string const& unitString) {
  return std::make_shared<TablePropertyLimit>(TablePropertyLimitType(type), unit, value, unitString);
}

/// Documents of other programs, written by hand.
struct Writer {
  struct Limit {
    unsigned int type;
    SimulationUnitId unit;
    double value;
  };

  unsigned int collectionVersion = 500002;
  unsigned int limitVersion = 500002;
  unsigned int dataVersion = 25;
  std::vector<Limit> limits = {};
  bool hasUnknownFields = false;
  unsigned int limitClass = Archive::identifierOf("TablePropertyLimit");

  [[nodiscard]] Document genDocument() const {
    Archive archive;
    archive.setVersion("TablePropertiesData", collectionVersion);
    archive.setVersion("TablePropertyLimit", limitVersion);
    PersistenceArchiver& out = archive;
    saveRecord(out, Archive::identifierOf("TablePropertiesData"), [&] {
      writeObject(out);
      out << dataVersion;
      saveRecord(out, noType, [&] {
        out << static_cast<unsigned int>(limits.size());
        for (auto const& written : limits) saveRecord(out, limitClass, [&] { write(out, written); });
      });
      writeUnknownFields(out);
    });
    return archive.genDocument();
  }

 private:
  static void writeObject(PersistenceArchiver& out) {
    saveRecord(out, Archive::identifierOf("Object"), [&] { out << std::string("TablePropertyLimit") << 3U; });
  }
  void write(PersistenceArchiver& out, Limit const& written) const {
    writeObject(out);
    out << written.type;
    savePart(out, written.unit);
    out << written.value;
    if (limitVersion >= 500002) out << std::string("kN");
    writeUnknownFields(out);
  }
  void writeUnknownFields(PersistenceArchiver& out) const {
    if (hasUnknownFields) out << 4711U << 0.5 << std::string("of a newer program");
  }
};

TEST(DocumentOnAStrictHost, HoldsTheLimits) {
  auto const data = std::make_shared<TablePropertiesData>();
  data->updateLimits({b, a});
  auto const changed = data->getLimit(b, TablePropertyLimitType::PilotForce);
  changed->setLimit(-0.25);
  changed->setMaxDisplayName("Not stored");
  auto const read = load(save(data));
  EXPECT_EQ(describeUnit(*read, a), describeUnit(*data, a));
  EXPECT_EQ(describeUnit(*read, b),
            "1=500N 2=1mm 3=1mm 4=1mm 5=500N 6=500N 7=500N 8=500N 9=1mm 17=1mm 18=500N 19=-0.25N 20=500N "
            "21=500N 22=500N 23=30N ");
  EXPECT_EQ(TestAccess::limits(*read).size(), 32U);
  EXPECT_EQ(TestAccess::dataVersion(*read), 25);
  auto const readLimit = read->getLimit(b, TablePropertyLimitType::PilotForce);
  EXPECT_EQ(readLimit->getLimitDisplayName(), "");
  EXPECT_EQ(ObjectView::nameOf(*readLimit), "TablePropertyLimit");
  read->updateLimits({a});
  EXPECT_EQ(describeUnit(*read, b), "");
  EXPECT_EQ(ObjectView::childrenOf(*read).size(), 16U);
}

TEST(DocumentOnAStrictHost, OfAnEmptyCollectionHasItsPartsAndNoLimits) {
  Archive archive(save(std::make_shared<TablePropertiesData>()));
  PersistenceArchiver& in = archive;
  unsigned int number = 0;
  std::string text;
  auto const collection = in.read_to_address_header();
  EXPECT_EQ(collection.address, 4U);
  in >> number;
  EXPECT_EQ(number, Archive::identifierOf("TablePropertiesData"));
  auto const base = in.read_to_address_header();
  in >> number;
  EXPECT_EQ(number, Archive::identifierOf("Object"));
  in.end_read_to_address(base.end);
  in >> number;
  EXPECT_EQ(number, 25U);
  auto const limits = in.read_to_address_header();
  in >> number;
  EXPECT_EQ(number, 0xBBAFA6C8);
  in >> number;
  EXPECT_EQ(number, 0U);
  EXPECT_EQ(in.tellg(), limits.end);
  EXPECT_EQ(limits.end, collection.end);
}

TEST(DocumentOnAStrictHost, OfALimitHasItsFieldsInOrder) {
  Archive archive(save(limit(19, b, 2.5, "N")));
  PersistenceArchiver& in = archive;
  unsigned int number = 0;
  double real = 0.0;
  std::string text;
  auto const record = in.read_to_address_header();
  in >> number;
  EXPECT_EQ(number, Archive::identifierOf("TablePropertyLimit"));
  in.end_read_to_address(in.read_to_address_header().end);
  in >> number;
  EXPECT_EQ(number, 19U);
  auto const unit = in.read_to_address_header();
  in >> number;
  EXPECT_EQ(number, Archive::identifierOf("SimulationUnitId"));
  in >> number;
  EXPECT_EQ(number, 2U);
  in.end_read_to_address(unit.end);
  in >> real >> text;
  EXPECT_EQ(real, 2.5);
  EXPECT_EQ(text, "N");
  EXPECT_EQ(in.tellg(), record.end);
}

TEST(DocumentOnAStrictHost, HoldsNoLimitTwice) {
  auto const data = std::make_shared<TablePropertiesData>();
  auto const twice = limit(19, a, 2.0, "N");
  TestAccess::limits(*data) = {twice, nullptr, limit(19, b, 3.0, "N"), twice};
  auto const read = load(save(data));
  auto const& limits = TestAccess::limits(*read);
  ASSERT_EQ(limits.size(), 4U);
  EXPECT_EQ(limits[0]->getLimit(), 2.0);
  EXPECT_EQ(limits[1], nullptr);
  EXPECT_EQ(limits[2]->getLimit(), 3.0);
  EXPECT_EQ(limits[3], limits[0]);
  EXPECT_EQ(limits[0].use_count(), 4);  // twice here, in the map twice
}

TEST(DocumentOnAStrictHost, OfAnOlderClassVersionLosesItsLimits) {
  auto const read =
      load(Writer{.collectionVersion = 500001, .dataVersion = 20, .limits = {{1, a, 2.0}}}.genDocument());
  EXPECT_TRUE(TestAccess::limits(*read).empty());
  EXPECT_TRUE(ObjectView::childrenOf(*read).empty());
  EXPECT_EQ(TestAccess::dataVersion(*read), 25);
  read->updateLimits({a});
  EXPECT_EQ(read->getLimit(a, TablePropertyLimitType::JoiningTongNormalForce)->getLimit(), 500.0);
}

TEST(DocumentOnAStrictHost, OfAnOlderLimitHasNoUnitText) {
  auto const read = load(Writer{.limitVersion = 500001, .limits = {{1, a, 2.0}}}.genDocument());
  EXPECT_EQ(describeUnit(*read, a), "1=2 ");
}

TEST(DocumentOnAStrictHost, OfAnEarlierDataVersionIsExtended) {
  auto const read = load(Writer{.dataVersion = 20, .limits = {{1, a, 2.0}, {24, a, 3.0}}}.genDocument());
  EXPECT_EQ(
      describeUnit(*read, a),
      "1=2kN 2=1mm 3=1mm 4=1mm 5=500N 6=500N 7=500N 8=500N 9=1mm 17=1mm 18=500N 19=500N 20=500N 21=500N "
      "22=500N 23=30N 24=3kN ");
  EXPECT_EQ(TestAccess::dataVersion(*read), 25);
}

TEST(DocumentOnAStrictHost, OfALaterDataVersionIsReplacedByDefaults) {
  auto const read = load(Writer{.dataVersion = 30, .limits = {{1, a, 2.0}, {24, a, 3.0}}}.genDocument());
  EXPECT_EQ(
      describeUnit(*read, a),
      "1=500N 2=1mm 3=1mm 4=1mm 5=500N 6=500N 7=500N 8=500N 9=1mm 17=1mm 18=500N 19=500N 20=500N 21=500N "
      "22=500N 23=30N ");
  EXPECT_EQ(TestAccess::limits(*read).size(), 32U);
  EXPECT_EQ(ObjectView::childrenOf(*read).size(), 32U);
  EXPECT_EQ(TestAccess::dataVersion(*read), 25);
}

TEST(DocumentOnAStrictHost, OfTheCurrentDataVersionIsNotExtended) {
  auto const read = load(Writer{.limits = {{1, a, 2.0}, {99, b, 3.0}}}.genDocument());
  EXPECT_EQ(describeUnit(*read, a), "1=2kN ");
  EXPECT_EQ(TestAccess::limits(*read).size(), 2U);
  EXPECT_EQ(read->getLimit(b, TablePropertyLimitType(99))->getLimit(), 3.0);
}

TEST(DocumentOnAStrictHost, MayHoldFieldsOfANewerProgram) {
  auto const read = load(Writer{
      .collectionVersion = 500009, .limitVersion = 500009, .limits = {{1, a, 2.0}}, .hasUnknownFields = true}
                             .genDocument());
  EXPECT_EQ(describeUnit(*read, a), "1=2kN ");
}

TEST(DocumentOnAStrictHost, WithTooManyLimitsIsRefusedByTheArchive) {
  Archive archive;
  PersistenceArchiver& out = archive;
  saveRecord(out, Archive::identifierOf("TablePropertiesData"), [&] {
    saveRecord(out, Archive::identifierOf("Object"), [&] { out << std::string() << 0U; });
    out << 25U;
    saveRecord(out, noType, [&] { out << 0x10000000U; });
  });
  EXPECT_THROW(load(archive.genDocument()), StrictHost::DamagedDocument);
}

TEST(DocumentOnAStrictHost, WithALimitOfAnotherClassIsDamaged) {
  Writer const writer{.limits = {{1, a, 2.0}}, .limitClass = Archive::identifierOf("SimulationUnitId")};
  EXPECT_THROW(load(writer.genDocument()), StrictHost::DamagedDocument);
}

TEST(DocumentOnAStrictHost, WithALimitOfAnUnknownClassIsDamaged) {
  auto document = Writer{.limits = {{1, a, 2.0}}}.genDocument();
  document.versions.erase(Archive::identifierOf("TablePropertyLimit"));
  // It is still the class of the pointer; the program's own version counts.
  EXPECT_EQ(describeUnit(*load(document), a), "1=2kN ");
  document = Writer{.limits = {{1, a, 2.0}}, .limitClass = Archive::identifierOf("Object")}.genDocument();
  document.versions.erase(Archive::identifierOf("Object"));
  EXPECT_THROW(load(document), StrictHost::DamagedDocument);
}

// Whether damage ends the reading is for the archive to say.
TEST(DocumentOnAStrictHost, ElementThatTheArchiveSkipsStaysEmpty) {
  Writer const writer{.limits = {{1, a, 2.0}}, .limitClass = Archive::identifierOf("SimulationUnitId")};
  Archive archive(writer.genDocument());
  archive.skipDamage();
  std::shared_ptr<TablePropertiesData> read;
  loadPointer(archive, read);
  EXPECT_GT(archive.getDamageCount(), 0U);
  EXPECT_TRUE(archive.isReadToTheEnd());
  ASSERT_EQ(TestAccess::limits(*read).size(), 1U);
  EXPECT_EQ(TestAccess::limits(*read).front(), nullptr);
}

/// A limit with a remark, of a class of its own.
class RemarkedLimit : public TablePropertyLimit {
 public:
  RemarkedLimit() : TablePropertyLimit(TablePropertyLimitType::NoLimit, SimulationUnitId(), 0.0, "") {}
  RemarkedLimit(double limit, std::string remark)
      : TablePropertyLimit(TablePropertyLimitType::SteelForce, a, limit, "N"), m_remark(std::move(remark)) {}

  static void serialization_register(void* record) {
    fillRegistration<RemarkedLimit>(record, "RemarkedLimit", 3);
  }

  void save(PersistenceArchiver& archive, unsigned int version) const {
    savePart<TablePropertyLimit>(archive, *this);
    archive << m_remark + " of version " + std::to_string(version);
  }
  void load(PersistenceArchiver& archive, unsigned int version) {
    loadPart<TablePropertyLimit>(archive, *this);
    archive >> m_remark;
    m_remark += ", read as " + std::to_string(version);
  }

  std::string m_remark;
};

/// A limit of a class that the archive does not know.
class UnknownLimit : public TablePropertyLimit {
 public:
  UnknownLimit() : TablePropertyLimit(TablePropertyLimitType::SteelForce, a, 8.0, "N") {}
};

TEST(DocumentOnAStrictHost, HoldsLimitsOfDerivedClasses) {
  ASSERT_TRUE(registerClass<RemarkedLimit>());
  ASSERT_TRUE((registerParent<TablePropertyLimit, RemarkedLimit>()));
  auto const data = std::make_shared<TablePropertiesData>();
  auto const remarked = std::make_shared<RemarkedLimit>(7.0, "remark");
  TestAccess::limits(*data) = {remarked, std::make_shared<UnknownLimit>(), remarked};
  auto const read = load(save(data));
  auto const& limits = TestAccess::limits(*read);
  ASSERT_EQ(limits.size(), 3U);
  auto const first = std::dynamic_pointer_cast<RemarkedLimit>(limits[0]);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->getLimit(), 7.0);
  EXPECT_EQ(first->m_remark, "remark of version 3, read as 3");
  EXPECT_EQ(limits[1]->getLimit(), 8.0);
  EXPECT_EQ(limits[2], limits[0]);
}

}  // namespace
}  // namespace Kestrel

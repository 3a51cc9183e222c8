#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "Business_TableProperties/TablePropertiesData.h"
#include "Business_TableProperties/TablePropertyLimit.h"
#include "VantaService_Parameterization/ObjectHelper.h"
#include "VantaService_PersistenceArchiver/ArchiveException.h"
#include "VantaService_PersistenceArchiver/Document.h"
#include "support/DamagedDocument.h"
#include "support/ObjectTestAccess.h"
#include "support/TablePropertiesDataTestAccess.h"

// Collections of all kinds come back as they were; damaged documents do no harm.

namespace Kestrel {
namespace {

using Access = TablePropertiesDataTestAccess;

/// A limit with something of its own.
class TaggedLimit : public TablePropertyLimit {
 public:
  TaggedLimit() : TaggedLimit({}, {}, {}, {}) {}
  using TablePropertyLimit::TablePropertyLimit;

  static void serialization_register(void* record) {
    fillRegistration<TaggedLimit>(record, "TaggedLimit", 1);
  }

  std::string tag;

 private:
  friend class Kestrel::ArchiveAccess;

  void save(PersistenceArchiver& archive, unsigned int /*version*/) const {
    savePart<TablePropertyLimit>(archive, *this);
    archive << tag;
  }
  void load(PersistenceArchiver& archive, unsigned int /*version*/) {
    loadPart<TablePropertyLimit>(archive, *this);
    archive >> tag;
  }
};

bool const s_isRegistered = registerClass<TaggedLimit>() && registerParent<TablePropertyLimit, TaggedLimit>();

/// Makes up collections; the same number makes the same one.
class Inventor {
 public:
  explicit Inventor(unsigned int number) : m_random(number) {}

  std::shared_ptr<TablePropertiesData> genCollection() {
    auto data = std::make_shared<TablePropertiesData>();
    auto& list = Access::limits(*data);
    for (auto count = below(40); count != 0; --count) {
      switch (below(8)) {
        case 0:
          list.push_back(nullptr);
          break;
        case 1:
          if (!list.empty()) list.push_back(list[below(list.size())]);
          break;
        default:
          addLimit(*data, genLimit());
      }
    }
    if (below(4) == 0) removeSome(*data);
    if (below(4) == 0) std::shuffle(list.begin(), list.end(), m_random);
    return data;
  }

 private:
  std::size_t below(std::size_t bound) {
    return std::uniform_int_distribution<std::size_t>(0, bound - 1)(m_random);
  }

  std::string genText() {
    static std::vector<std::string> const texts{"",
                                                "N",
                                                "mm",
                                                "µm",
                                                "Schließkraft",
                                                "締付力",
                                                "Сила",
                                                "قوة",
                                                "कल",
                                                "👩‍🔧",
                                                "a\nb",
                                                "\xFF\xC0",
                                                "0123456789abcdef",
                                                "Å",
                                                std::string(1, '\0')};
    std::string text;
    for (auto parts = below(4); parts != 0; --parts) text += texts[below(texts.size())];
    return text;
  }

  double genValue() {
    static std::vector<std::uint64_t> const bits{
        0x0000000000000000, 0x8000000000000000, 0x7FF0000000000000, 0xFFF0000000000000, 0x7FF8000000000000,
        0xFFF80000DEADBEEF, 0x7FF0000000000001, 0x0000000000000001, 0x7FEFFFFFFFFFFFFF, 0x407F400000000000};
    return std::bit_cast<double>(below(2) == 0 ? bits[below(bits.size())] : m_random());
  }

  SimulationUnitId genUnit() {
    boost::uuids::uuid uuid{};
    uuid.data[below(2) * 15] = static_cast<std::uint8_t>(below(6));
    return SimulationUnitId(GUIdentifier(uuid));
  }

  std::shared_ptr<TablePropertyLimit> genLimit() {
    auto const type =
        static_cast<TablePropertyLimitType>(below(4) == 0 ? m_random() & 0xFFFFFFFF : below(25));
    auto const id = genUnit();
    auto const value = genValue();
    auto const text = genText();
    if (below(5) != 0) return std::make_shared<TablePropertyLimit>(type, id, value, text);
    auto limit = std::make_shared<TaggedLimit>(type, id, value, text);
    limit->tag = genText();
    return limit;
  }

  void addLimit(TablePropertiesData& data, std::shared_ptr<TablePropertyLimit> const& limit) {
    ObjectHelper::addToVectorAtEnd(&data, {limit}, Access::limits(data), genText(), 1, false);
    if (below(8) == 0) ObjectTestAccess::setChildId(*limit, static_cast<int>(m_random()));
  }

  void removeSome(TablePropertiesData& data) {
    for (auto const& limit : Access::limits(data))
      if (below(3) == 0) data.removeChild(limit);
  }

  std::mt19937_64 m_random;
};

/// Whether the limits are the same to the bit.
void expectSameLimit(TablePropertyLimit const& written, TablePropertyLimit const& read) {
  EXPECT_EQ(typeid(written), typeid(read));
  EXPECT_EQ(written.getType(), read.getType());
  EXPECT_EQ(written.getSimUnitID(), read.getSimUnitID());
  EXPECT_EQ(std::bit_cast<std::uint64_t>(written.getLimit()), std::bit_cast<std::uint64_t>(read.getLimit()));
  EXPECT_EQ(written.getUnitString(), read.getUnitString());
  EXPECT_EQ(written.getObjectName(), read.getObjectName());
  EXPECT_EQ(written.getChildId(), read.getChildId());
  if (auto const* const tagged = dynamic_cast<TaggedLimit const*>(&written)) {
    EXPECT_EQ(tagged->tag, dynamic_cast<TaggedLimit const&>(read).tag);
  }
}

void expectSameCollection(TablePropertiesData& written, TablePropertiesData& read) {
  auto const& from = Access::limits(written);
  auto const& to = Access::limits(read);
  ASSERT_EQ(from.size(), to.size());
  EXPECT_EQ(written.getChildCount(), read.getChildCount());
  std::map<TablePropertyLimit*, TablePropertyLimit*> twins;
  for (std::size_t i = 0; i < from.size(); ++i) {
    ASSERT_EQ(from[i] == nullptr, to[i] == nullptr);
    if (!from[i]) continue;
    EXPECT_EQ(twins.try_emplace(from[i].get(), to[i].get()).first->second, to[i].get()) << "shared";
    expectSameLimit(*from[i], *to[i]);
    EXPECT_EQ(written.getChildPosition(*from[i]), read.getChildPosition(*to[i]));
  }
}

TEST(LimitsRoundTrip, BringsAnyCollectionBack) {
  ASSERT_TRUE(s_isRegistered);
  constexpr unsigned int count = 2000;
  for (unsigned int number = 0; number < count && !HasFailure(); ++number) {
    SCOPED_TRACE(number);
    auto const written = Inventor(number).genCollection();
    auto const document = genDocument(written);
    auto const read = loadDocument<TablePropertiesData>(document);
    expectSameCollection(*written, *read);
    EXPECT_EQ(genDocument(read), document);
  }
}

/// A collection of a few limits, one of them shared.
std::string genSmallDocument() {
  auto const data = std::make_shared<TablePropertiesData>();
  auto const unit =
      SimulationUnitId(GUIdentifier::fromString("0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01").value());
  auto& list = Access::limits(*data);
  for (double const value : {500.0, -1.0})
    ObjectHelper::addToVectorAtEnd(
        data.get(),
        {std::make_shared<TablePropertyLimit>(TablePropertyLimitType::PilotForce, unit, value, "N")}, list,
        "TablePropertyLimit", 1, false);
  list.push_back(list.front());
  return genDocument(data);
}

TEST(DamagedLimitsDocument, IsRefusedWhereverItIsCut) {
  auto const document = genSmallDocument();
  for (std::size_t size = 0; size < document.size(); ++size)
    EXPECT_THROW(static_cast<void>(loadDocument<TablePropertiesData>(document.substr(0, size))),
                 ArchiveException)
        << size;
}

TEST(DamagedLimitsDocument, IsRefusedWhicheverByteHasChangedToWhatever) {
  auto const document = genSmallDocument();
  for (std::size_t at = 0; at < document.size(); ++at)
    for (int bits = 1; bits < 256; ++bits) {
      EXPECT_THROW(
          static_cast<void>(loadDocument<TablePropertiesData>(genFlippedDocument(document, at, bits))),
          ArchiveException)
          << at;
    }
}

/// Reads what is either damaged or a document, which then can be used and written.
void tryDocument(std::string const& document) {
  std::shared_ptr<TablePropertiesData> data;
  try {
    data = loadDocument<TablePropertiesData>(document);
  } catch (ArchiveException const& error) {
    EXPECT_THAT(error.what(), testing::StartsWith("byte "));
    return;
  }
  auto const written = genDocument(data);
  EXPECT_EQ(genDocument(loadDocument<TablePropertiesData>(written)), written);
}

// What a bad program could write, with lengths and checksums that are right.
TEST(DamagedLimitsDocument, DoesNoHarmEvenWithARightChecksum) {
  auto const document = genSmallDocument();
  for (std::size_t at = 0; at < document.size(); ++at)
    for (int bits = 1; bits < 256; ++bits) {
      SCOPED_TRACE(at);
      tryDocument(genResealedDocument(genFlippedDocument(document, at, bits)));
    }
  for (std::size_t size = 28; size < document.size(); ++size)
    tryDocument(genResealedDocument(document.substr(0, size)));
}

}  // namespace
}  // namespace Kestrel

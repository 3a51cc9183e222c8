#include "VantaService_PersistenceArchiver/PersistenceArchiver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <bit>
#include <boost/endian/conversion.hpp>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "VantaService_ExceptionHandling/KeException.h"
#include "VantaService_PersistenceArchiver/ArchiveException.h"
#include "VantaService_PersistenceArchiver/ClassRegistration.h"
#include "VantaService_PersistenceArchiver/Document.h"
#include "support/DamagedDocument.h"

namespace Kestrel {
namespace {

/// A persistent class: a value, a text and pointers to others of its kind.
class Node {
 public:
  virtual ~Node() = default;

  static void serialization_register(void* record) { fillRegistration<Node>(record, "Node", 3); }

  double value = 0.0;
  std::string text;
  std::vector<std::shared_ptr<Node>> links;
  unsigned int versionRead = 0;

 private:
  friend class Kestrel::ArchiveAccess;

  void save(PersistenceArchiver& archive, unsigned int /*version*/) const {
    archive << value << text << static_cast<unsigned int>(links.size());
    for (auto const& link : links) savePointer(archive, link);
    archive << std::string("what a newer program appends");
  }
  void load(PersistenceArchiver& archive, unsigned int version) {
    unsigned int count = 0;
    archive >> value >> text >> count;
    archive.check_container_size(count);
    links.resize(count);
    for (auto& link : links) loadPointer(archive, link);
    versionRead = version;
  }
};

class SpecialNode : public Node {
 public:
  static void serialization_register(void* record) {
    fillRegistration<SpecialNode>(record, "SpecialNode", 1);
  }

  unsigned int mark = 0;

 private:
  friend class Kestrel::ArchiveAccess;

  void save(PersistenceArchiver& archive, unsigned int /*version*/) const { archive << mark; }
  void load(PersistenceArchiver& archive, unsigned int /*version*/) { archive >> mark; }
};

class PersistenceArchiverTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    ASSERT_TRUE(registerClass<Node>());
    ASSERT_TRUE(registerClass<SpecialNode>());
    static bool const isRelated = registerParent<Node, SpecialNode>();
    ASSERT_TRUE(isRelated);
  }

  static std::string write(std::shared_ptr<Node> const& root) {
    PersistenceArchiver archive;
    savePointer(archive, root);
    return archive.genDocument();
  }
  static std::shared_ptr<Node> read(std::string const& document) {
    PersistenceArchiver archive{std::string_view(document)};
    std::shared_ptr<Node> root;
    loadPointer(archive, root);
    archive.checkEndOfRecords();
    return root;
  }
  /// A root with a null link, a node that two links share, and a special one.
  static std::shared_ptr<Node> genTree() {
    auto root = std::make_shared<Node>();
    root->value = std::bit_cast<double>(std::uint64_t{0x7FF800000000ABCD});
    root->text = "Spannkraft, 締付力";
    auto const shared = std::make_shared<Node>();
    shared->value = -0.0;
    auto const special = std::make_shared<SpecialNode>();
    special->mark = 0xFFFFFFFF;
    root->links = {nullptr, shared, shared, special};
    return root;
  }
};

/// The document with another byte at a position, and the right checksum.
std::string damagedAt(std::string document, std::size_t position, int byte) {
  document[position] = static_cast<char>(byte);
  return genResealedDocument(document);
}

TEST_F(PersistenceArchiverTest, ReadsWhatItWroteBitForBit) {
  auto const root = read(write(genTree()));
  EXPECT_EQ(std::bit_cast<std::uint64_t>(root->value), 0x7FF800000000ABCD);
  EXPECT_EQ(root->text, "Spannkraft, 締付力");
  ASSERT_EQ(root->links.size(), 4U);
  EXPECT_EQ(root->links[0], nullptr);
  EXPECT_EQ(std::bit_cast<std::uint64_t>(root->links[1]->value), std::uint64_t{1} << 63);
}

TEST_F(PersistenceArchiverTest, WritesAnObjectOnceAndSharesItAgain) {
  auto const root = read(write(genTree()));
  EXPECT_EQ(root->links[1], root->links[2]);
  EXPECT_EQ(root->links[1].use_count(), 2);
}

TEST_F(PersistenceArchiverTest, KeepsTheRunTimeClassOfAnObject) {
  auto const root = read(write(genTree()));
  auto const special = std::dynamic_pointer_cast<SpecialNode>(root->links[3]);
  ASSERT_NE(special, nullptr);
  EXPECT_EQ(special->mark, 0xFFFFFFFFU);
}

// ---- objects whose base does not stand at their beginning

struct Tag {
  virtual ~Tag() = default;
  double before = 0.25;
};

/// Its `Node` part stands behind another.
class TaggedNode : public Tag, public Node {
 public:
  static void serialization_register(void* record) { fillRegistration<TaggedNode>(record, "TaggedNode", 1); }

  unsigned int mark = 0;

 private:
  friend class Kestrel::ArchiveAccess;

  void save(PersistenceArchiver& archive, unsigned int /*version*/) const { archive << mark; }
  void load(PersistenceArchiver& archive, unsigned int /*version*/) { archive >> mark; }
};

struct OtherTag {
  virtual ~OtherTag() = default;
  double before = 0.5;
};

/// Its `TaggedNode` part stands behind another, too, and nobody has registered that it is a `Node`.
class DeepNode : public OtherTag, public TaggedNode {
 public:
  static void serialization_register(void* record) { fillRegistration<DeepNode>(record, "DeepNode", 1); }

 private:
  friend class Kestrel::ArchiveAccess;

  void save(PersistenceArchiver& archive, unsigned int /*version*/) const { archive << mark; }
  void load(PersistenceArchiver& archive, unsigned int /*version*/) { archive >> mark; }
};

class PointersToParts : public PersistenceArchiverTest {
 protected:
  static void SetUpTestSuite() {
    PersistenceArchiverTest::SetUpTestSuite();
    ASSERT_TRUE(registerClass<TaggedNode>());
    ASSERT_TRUE(registerClass<DeepNode>());
    static bool const isRelated =
        registerParent<Node, TaggedNode>() && registerParent<TaggedNode, DeepNode>();
    ASSERT_TRUE(isRelated);
  }

  /// The object that a pointer to its `Node` part comes back as.
  template <typename T>
  static std::shared_ptr<T> readBack(std::shared_ptr<T> const& object) {
    std::shared_ptr<Node> const node = read(write(object));
    EXPECT_NE(static_cast<void*>(static_cast<Node*>(object.get())), static_cast<void*>(object.get()));
    return std::dynamic_pointer_cast<T>(node);
  }
};

TEST_F(PointersToParts, LeadToThePartAgain) {
  auto const written = std::make_shared<TaggedNode>();
  written->mark = 77;
  auto const found = readBack(written);
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->mark, 77U);
  EXPECT_EQ(found->before, 0.25);
  EXPECT_TRUE(found->text.empty());
}

TEST_F(PointersToParts, LeadThereOverFurtherClasses) {
  auto const written = std::make_shared<DeepNode>();
  written->mark = 78;
  auto const found = readBack(written);
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->mark, 78U);
  EXPECT_EQ(found->TaggedNode::before, 0.25);
  EXPECT_EQ(found->OtherTag::before, 0.5);
}

TEST_F(PointersToParts, ShareTheObjectWithPointersToTheWhole) {
  auto const written = std::make_shared<DeepNode>();
  PersistenceArchiver writer;
  savePointer(writer, std::shared_ptr<Node>(written));
  savePointer(writer, written);
  savePointer(writer, std::shared_ptr<TaggedNode>(written));
  auto const document = writer.genDocument();
  PersistenceArchiver reader{std::string_view(document)};
  std::shared_ptr<Node> node;
  std::shared_ptr<DeepNode> whole;
  std::shared_ptr<TaggedNode> tagged;
  loadPointer(reader, node);
  loadPointer(reader, whole);
  loadPointer(reader, tagged);
  ASSERT_NE(whole, nullptr);
  EXPECT_EQ(node, whole);
  EXPECT_EQ(tagged, whole);
  EXPECT_EQ(reader.getPointerMap(registrationOf<DeepNode>().identifier, registrationOf<DeepNode>()).size(),
            1U);
}

// ---- documents

TEST_F(PersistenceArchiverTest, TellsTheVersionOfTheClassAndSkipsWhatANewerWriterAppended) {
  EXPECT_EQ(read(write(genTree()))->versionRead, 3U);
}

TEST_F(PersistenceArchiverTest, ReadsANullPointerAsOne) { EXPECT_EQ(read(write(nullptr)), nullptr); }

TEST_F(PersistenceArchiverTest, RefusesToWriteACycle) {
  auto const node = std::make_shared<Node>();
  node->links = {node};
  EXPECT_THROW(static_cast<void>(write(node)), KeException);
  node->links.clear();
}

TEST_F(PersistenceArchiverTest, RefusesADocumentCutAnywhere) {
  auto const document = write(genTree());
  for (std::size_t size = 0; size < document.size(); ++size) {
    EXPECT_THROW(static_cast<void>(read(document.substr(0, size))), ArchiveException) << size;
  }
}

TEST_F(PersistenceArchiverTest, RefusesADocumentWithAnyByteChanged) {
  auto const document = write(genTree());
  for (std::size_t at = 0; at < document.size(); ++at) {
    for (int const bits : {0x01, 0x80, 0xFF}) {
      EXPECT_THROW(static_cast<void>(read(genFlippedDocument(document, at, bits))), ArchiveException) << at;
    }
  }
}

TEST_F(PersistenceArchiverTest, RefusesMoreRecordsThanTheDocumentCanHold) {
  PersistenceArchiver writer;
  saveRecord(writer, PersistenceArchiver::noTypeHash, [&] { writer << 0xFFFFFFFFU; });
  auto const document = writer.genDocument();
  PersistenceArchiver reader{std::string_view(document)};
  loadRecord(reader, [&](unsigned int typeHash) {
    EXPECT_EQ(typeHash, 0xBBAFA6C8U);
    unsigned int count = 0;
    reader >> count;
    EXPECT_THROW(reader.check_container_size(count), ArchiveException);
    EXPECT_NO_THROW(reader.check_container_size(0));
  });
}

TEST_F(PersistenceArchiverTest, SharesNoOwnershipWithAPointerThatIsToHaveNone) {
  auto const document = write(genTree());
  PersistenceArchiver archive{std::string_view(document)};
  std::shared_ptr<Node> root;
  loadPointer(archive, root, PointerOwnership::none);
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(root->text, "Spannkraft, 締付力");
  EXPECT_EQ(root.use_count(), 1);
  // The archive holds the object, and so does whoever asks it.
  auto& objects = archive.getPointerMap(registrationOf<Node>().identifier, registrationOf<Node>());
  auto const owner = dynamic_cast<PointerMapContainer<Node>&>(objects).get(24);
  EXPECT_EQ(owner, root);
  EXPECT_EQ(owner.use_count(), 2);
}

/// Writes a root with one value, one text and two links, the second of which is written by `writeLink`.
template <typename WriteLink>
std::string genRootWith(WriteLink const& writeLink) {
  PersistenceArchiver archive;
  auto const node = registrationOf<Node>().identifier;
  saveRecord(archive, node, [&] {
    archive << 0.0 << std::string() << 2U;
    saveRecord(archive, node, [&] { archive << 0.0 << std::string("first") << 0U; });
    writeLink(archive, node);
  });
  return archive.genDocument();
}

std::string damageOf(std::string const& document) {
  try {
    PersistenceArchiver archive{std::string_view(document)};
    std::shared_ptr<Node> root;
    loadPointer(archive, root);
    archive.checkEndOfRecords();
  } catch (ArchiveException const& error) {
    EXPECT_THAT(error.what(), testing::StartsWith("byte " + std::to_string(error.getOffset()) + ": "));
    return error.what();
  }
  return "none";
}

/// Damage of a root whose second link leads to an address.
std::string damageOfLinkTo(unsigned int address) {
  return damageOf(
      genRootWith([&](auto& archive, unsigned int node) { archive.mark_pointer(address, node); }));
}

// The root's record has the address 24, that of its first link 39, and the second link stands at 50.
TEST_F(PersistenceArchiverTest, FollowsALinkToTheBeginningOfAnObject) {
  EXPECT_EQ(damageOfLinkTo(39), "none");
}

TEST_F(PersistenceArchiverTest, RefusesALinkIntoTheMiddleOfARecord) {
  EXPECT_EQ(damageOfLinkTo(38), "byte 55: no object of this class begins at byte 38");
  EXPECT_EQ(damageOfLinkTo(40), "byte 55: no object of this class begins at byte 40");
}

TEST_F(PersistenceArchiverTest, RefusesALinkOutOfTheRecordsBeforeIt) {
  for (unsigned int const address : {0U, 4U, 23U, 50U, 54U, 1000U, 0x7FFFFFFFU})
    EXPECT_EQ(damageOfLinkTo(address), "byte 54: expected a pointer to an object before this place");
}

TEST_F(PersistenceArchiverTest, RefusesALinkToTheObjectThatHoldsIt) {
  // The writer refuses it, too: the link is to another address and changed afterwards.
  auto document = damagedAt(
      genRootWith([](auto& archive, unsigned int node) { archive.mark_pointer(39, node); }), 50, 24);
  EXPECT_EQ(damageOf(document), "byte 54: the object points to itself or to one that it is part of");
}

TEST_F(PersistenceArchiverTest, RefusesAPointerInPlaceOfARecord) {
  PersistenceArchiver writer;
  saveRecord(writer, PersistenceArchiver::noTypeHash, [] {});
  writer.mark_pointer(24, PersistenceArchiver::noTypeHash);
  writer.mark_null_pointer();
  auto const document = writer.genDocument();
  for (bool const isNull : {false, true}) {
    PersistenceArchiver archive{std::string_view(document)};
    loadRecord(archive, [](unsigned int /*typeHash*/) {});
    if (isNull) archive.end_read_to_address(archive.read_to_address_header().end);
    EXPECT_THROW(loadRecord(archive, [](unsigned int /*typeHash*/) {}), ArchiveException) << isNull;
  }
}

TEST_F(PersistenceArchiverTest, RefusesAnUnknownClassNumber) {
  auto const document = genRootWith([](auto& archive, unsigned int node) { archive.mark_pointer(39, node); });
  EXPECT_EQ(damageOf(damagedAt(document, 24, 2)), "byte 25: expected one of 1 classes, found number 2");
}

TEST_F(PersistenceArchiverTest, RefusesAnUnknownText) {
  auto const document = genRootWith([](auto& archive, unsigned int node) { archive.mark_pointer(39, node); });
  EXPECT_EQ(damageOf(damagedAt(document, 33, 9)), "byte 34: expected one of 3 texts, found number 9");
}

TEST_F(PersistenceArchiverTest, RefusesARecordThatIsLongerThanTheOneAroundIt) {
  auto const document = genRootWith([](auto& archive, unsigned int node) { archive.mark_pointer(39, node); });
  EXPECT_EQ(damageOf(damagedAt(document, 35, 17)),
            "byte 39: expected a record of at most 16 bytes, found one of 17");
}

TEST_F(PersistenceArchiverTest, RefusesAClassThatTheProgramDoesNotHave) {
  auto document = genRootWith([](auto& archive, unsigned int node) { archive.mark_pointer(39, node); });
  auto const name = document.rfind("Node");
  EXPECT_THAT(damageOf(damagedAt(document, name, 'M')),
              testing::HasSubstr("the class of the object is not registered in this program"));
}

TEST_F(PersistenceArchiverTest, RefusesWhatStandsBehindTheRoot) {
  PersistenceArchiver archive;
  savePointer(archive, genTree());
  archive.mark_null_pointer();
  EXPECT_THAT(damageOf(archive.genDocument()), testing::HasSubstr("expected the end of the records"));
}

TEST_F(PersistenceArchiverTest, RefusesWhatStandsBehindTheTables) {
  // 34 bytes: no texts and no classes at 24 and 25, then the checksum.
  auto const document = write(nullptr);
  EXPECT_EQ(damageOf(genResealedDocument(document.substr(0, 26) + std::string(9, '\0'))),
            "byte 26: expected the end of the tables");
  EXPECT_EQ(damageOf(genResealedDocument(document)), "none");
}

TEST_F(PersistenceArchiverTest, LooksAtLengthThenMarkThenVersionBeforeAnythingElse) {
  auto const document = write(nullptr);
  EXPECT_EQ(damageOf(document.substr(0, 27)), "byte 0: expected at least 28 bytes, found 27");
  EXPECT_EQ(damageOf(std::string(64, 'x')), "byte 0: expected the mark of an object archive");
  EXPECT_EQ(damageOf(damagedAt(document, 8, 2)), "byte 8: expected format version 1, found 2");
  EXPECT_EQ(damageOf(document + "x"), "byte 12: expected 34 bytes, found 35");
  auto damaged = document;
  damaged[20] = 1;
  EXPECT_EQ(damageOf(damaged),
            "byte 26: the checksum does not match: the document was damaged after it had been written");
}

std::shared_ptr<Node> genChain(int length) {
  auto root = std::make_shared<Node>();
  auto last = root;
  for (int i = 1; i < length; ++i) {
    last->links = {std::make_shared<Node>()};
    last = last->links[0];
  }
  return root;
}

TEST_F(PersistenceArchiverTest, BoundsTheDepthOfRecordsWhenItWritesAndWhenItReads) {
  EXPECT_EQ(damageOf(write(genChain(256))), "none");
  EXPECT_THROW(static_cast<void>(write(genChain(257))), std::length_error);
  // What no writer of this program makes: records in records, each with its length and class.
  constexpr unsigned int depth = 300;
  std::string bytes;
  for (unsigned int i = 0; i < depth; ++i) {
    // A root and its links have a value, a text and a count before the next record.
    std::string outer(4, '\0');
    auto const content = std::string("\x01") + std::string(8, '\0') + std::string(1, '\0') +
                         (bytes.empty() ? std::string(1, '\0') : '\x01' + bytes);
    boost::endian::store_little_u32(reinterpret_cast<unsigned char*>(outer.data()),
                                    static_cast<unsigned int>(content.size()));
    bytes = outer + content;
  }
  auto const frame = write(nullptr);
  auto const tables = std::string("\x02\x00\x04Node\x01\x01\x03\x00", 11);
  auto document = frame.substr(0, 16) + std::string(4, '\0') + bytes + tables + std::string(8, '\0');
  boost::endian::store_little_u32(reinterpret_cast<unsigned char*>(document.data()) + 16,
                                  static_cast<unsigned int>(20 + bytes.size()));
  EXPECT_THAT(damageOf(genResealedDocument(document)),
              testing::HasSubstr("the records are nested too deeply"));
}

/// Bytes of a document's size that take no memory.
class BytesOf2GiB {
 public:
  static constexpr std::size_t size = std::size_t{1} << 31;

  BytesOf2GiB()
      : m_bytes(::mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)) {
    if (m_bytes == MAP_FAILED) throw std::bad_alloc();
  }
  BytesOf2GiB(BytesOf2GiB const&) = delete;
  BytesOf2GiB& operator=(BytesOf2GiB const&) = delete;
  ~BytesOf2GiB() { ::munmap(m_bytes, size); }

  [[nodiscard]] std::string_view get(std::size_t count) const { return {static_cast<char*>(m_bytes), count}; }

 private:
  void* m_bytes;
};

TEST_F(PersistenceArchiverTest, RefusesADocumentOf2GiB) {
  BytesOf2GiB const bytes;
  auto const damageOfFirst = [&](std::size_t count) -> std::string {
    try {
      PersistenceArchiver const archive(bytes.get(count));
    } catch (ArchiveException const& error) {
      return error.what();
    }
    return "none";
  };
  EXPECT_EQ(damageOfFirst(0x80000000), "byte 0: a document cannot be larger than 2 GiB");
  EXPECT_EQ(damageOfFirst(0x7FFFFFFF), "byte 0: expected the mark of an object archive");
}

TEST_F(PersistenceArchiverTest, RefusesToWrite2GiB) {
  BytesOf2GiB const bytes;
  PersistenceArchiver archive;
  EXPECT_THROW(archive.write_bytes(bytes.get(0x7FFFFFFF)), std::length_error);
}

// ---- classes of a document

/// Many classes, registered as long as this lives.
class ManyClasses {
 public:
  explicit ManyClasses(unsigned int count) {
    for (unsigned int i = 0; i < count; ++i)
      m_identifiers.push_back(
          PersistenceArchiver::registerFactory("Class " + std::to_string(i), registrationOf<Node>(), i)
              ->identifier);
  }
  ManyClasses(ManyClasses const&) = delete;
  ManyClasses& operator=(ManyClasses const&) = delete;
  ~ManyClasses() {
    for (auto const identifier : m_identifiers) PersistenceArchiver::withdrawFactory(identifier);
  }

  [[nodiscard]] unsigned int operator[](std::size_t i) const { return m_identifiers[i]; }

 private:
  std::vector<unsigned int> m_identifiers;
};

/// The type hash of the record at the read position.
unsigned int readHash(PersistenceArchiver& archive) {
  unsigned int found = 0;
  loadRecord(archive, [&](unsigned int typeHash) { found = typeHash; });
  return found;
}

TEST_F(PersistenceArchiverTest, NumbersClassesInTheOrderInWhichTheyAreWritten) {
  ManyClasses const classes(4);
  PersistenceArchiver archive;
  for (std::size_t const i : {2U, 0U, 2U, 3U, 0U}) saveRecord(archive, classes[i], [] {});
  saveRecord(archive, PersistenceArchiver::noTypeHash, [] {});
  archive.mark_pointer(24, classes[2]);
  std::string const document = archive.genDocument();
  // Each record has its length, 1, and the number of its class; the pointer is to address 24.
  EXPECT_EQ(document.substr(20, 35), std::string("\x01\0\0\0\x01\x01\0\0\0\x02\x01\0\0\0\x01\x01\0\0\0\x03"
                                                 "\x01\0\0\0\x02\x01\0\0\0\0\x18\0\0\x80\x01",
                                                 35));
  // Texts and classes: name, version, no objects.
  EXPECT_EQ(document.substr(55, document.size() - 63),
            std::string("\x03\x07"
                        "Class 2\x07"
                        "Class 0\x07"
                        "Class 3\x03\x00\x02\x00\x01\x00\x00\x02\x03\x00",
                        35));
}

TEST_F(PersistenceArchiverTest, CountsTheObjectsOfEachClass) {
  auto const root = std::make_shared<Node>();
  auto const node = std::make_shared<Node>();
  root->links = {std::make_shared<SpecialNode>(), node, node};
  auto const document = write(root);
  // Two classes: name, version, objects. The names are the texts 2 and 3.
  EXPECT_EQ(document.substr(document.size() - 15, 7), "\x02\x02\x03\x02\x03\x01\x01");
}

TEST_F(PersistenceArchiverTest, KeepsApartAsManyClassesAsThereAre) {
  constexpr std::size_t count = 300;
  ManyClasses const classes(count);
  PersistenceArchiver writer;
  for (std::size_t i = 0; i < 3 * count; ++i) {
    saveRecord(writer, classes[i * 7 % count], [] {});
    saveRecord(writer, classes[i % 5], [] {});
    saveRecord(writer, PersistenceArchiver::noTypeHash, [] {});
  }
  auto const document = writer.genDocument();
  PersistenceArchiver reader{std::string_view(document)};
  EXPECT_EQ(reader.getMapOfClasses().size(), 300U);
  EXPECT_EQ(reader.getMapOfClasses().at(classes[299]).readVersion, 299U);
  for (std::size_t i = 0; i < 3 * count; ++i) {
    ASSERT_EQ(readHash(reader), classes[i * 7 % count]) << i;
    ASSERT_EQ(readHash(reader), classes[i % 5]) << i;
    ASSERT_EQ(readHash(reader), 0xBBAFA6C8) << i;
  }
}

TEST_F(PersistenceArchiverTest, KeepsTheObjectsOfEachClassApart) {
  ManyClasses const classes(40);
  auto const object = std::make_shared<int>(0);
  PersistenceArchiver writer;
  for (unsigned int i = 0; i < 40; ++i)
    EXPECT_EQ(writer.getStreamposMap(classes[i]).findOrInsert(object, i + 1), 0U);
  for (unsigned int i = 0; i < 40; ++i)
    EXPECT_EQ(writer.getStreamposMap(classes[i]).findOrInsert(object, 99), i + 1);
  auto const document = write(nullptr);
  PersistenceArchiver reader{std::string_view(document)};
  for (unsigned int i = 0; i < 40; ++i) {
    auto& first = reader.getPointerMap(classes[i], registrationOf<Node>());
    first.insert(24 + i, object);
    auto& again = reader.getPointerMap(classes[i / 2], registrationOf<Node>());
    EXPECT_NE(again.find(24 + i / 2), nullptr);
    EXPECT_EQ(again.size(), 1U);
  }
}

TEST_F(PersistenceArchiverTest, RefusesToWriteAClassThatIsNotRegistered) {
  EXPECT_THROW(PersistenceArchiver().mark_object_start(24, 12345), KeException);
  EXPECT_THROW(PersistenceArchiver().mark_pointer(24, 12345), KeException);
  EXPECT_THROW(static_cast<void>(PersistenceArchiver().getStreamposMap(12345)), KeException);
}

TEST_F(PersistenceArchiverTest, AnswersWhatIsUnknownToTheRegistry) {
  EXPECT_EQ(PersistenceArchiver::getHashForType(12345), 0xBBAFA6C8U);
  EXPECT_EQ(PersistenceArchiver::getCaster(registrationOf<Node>().identifier, 12345), nullptr);
  EXPECT_EQ(PersistenceArchiver::registerFactory("Node", registrationOf<Node>(), 1), nullptr);
}

}  // namespace
}  // namespace Kestrel

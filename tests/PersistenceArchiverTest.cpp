#include "VantaService_PersistenceArchiver/PersistenceArchiver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "VantaService_ExceptionHandling/KeException.h"
#include "VantaService_PersistenceArchiver/ArchiveException.h"
#include "VantaService_PersistenceArchiver/ClassRegistration.h"
#include "VantaService_PersistenceArchiver/ObjectRecord.h"

namespace Kestrel {
namespace {

/// A persistent class: a value, a text and pointers to others of its kind.
class Node {
 public:
  virtual ~Node() = default;

  static ClassRegistration<Node>& registration() {
    static ClassRegistration<Node> entry("Node", 3);
    return entry;
  }
  static void serialization_register(void* record) {
    *static_cast<BaseClassRegister*>(record) = registration().getRecord();
  }

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
  static ClassRegistration<SpecialNode>& registration() {
    static ClassRegistration<SpecialNode> entry("SpecialNode", 1);
    return entry;
  }
  static void serialization_register(void* record) {
    *static_cast<BaseClassRegister*>(record) = registration().getRecord();
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
      auto damaged = document;
      damaged[at] = static_cast<char>(static_cast<unsigned char>(damaged[at]) ^ bits);
      EXPECT_THROW(static_cast<void>(read(damaged)), ArchiveException) << at;
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

TEST_F(PersistenceArchiverTest, AnswersWhatIsUnknownToTheRegistry) {
  EXPECT_EQ(PersistenceArchiver::getHashForType(12345), 0xBBAFA6C8U);
  EXPECT_EQ(PersistenceArchiver::getCaster(Node::registration().getRecord().identifier, 12345), nullptr);
  EXPECT_EQ(PersistenceArchiver::registerFactory("Node", Node::registration().getRecord(), 1), nullptr);
}

}  // namespace
}  // namespace Kestrel

// What callers promise is asserted in debug builds.

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "VantaService_Parameterization/ChildList.h"
#include "VantaService_Parameterization/Object.h"
#include "VantaService_Parameterization/ObjectHelper.h"
#include "VantaService_PersistenceArchiver/ByteReader.h"
#include "VantaService_PersistenceArchiver/ByteWriter.h"
#include "VantaService_PersistenceArchiver/PersistenceArchiver.h"
#include "VantaService_PersistenceArchiver/StreamposMap.h"

namespace Kestrel {
namespace {

class PreconditionsDeathTest : public testing::Test {
 protected:
  void SetUp() override {
#ifdef NDEBUG
    GTEST_SKIP() << "nothing is asserted in this build";
#endif
  }

  static constexpr auto none = PersistenceArchiver::noTypeHash;
};

TEST_F(PreconditionsDeathTest, OfAByteReader) {
  ByteReader reader(std::string_view("1234"));
  EXPECT_DEATH(reader.set(3, 2), "position <= end");
  EXPECT_DEATH(reader.set(3, 5), "end <= m_bytes.size");
}

TEST_F(PreconditionsDeathTest, OfAByteWriter) {
  ByteWriter writer;
  writer.writeWord(0);
  EXPECT_DEATH(writer.replaceWord(1, 0), "position");
}

TEST_F(PreconditionsDeathTest, OfAStreamposMap) {
  StreamposMap map;
  EXPECT_DEATH(static_cast<void>(map.findOrInsert(std::make_shared<int>(1), 0)), "address != 0");
}

TEST_F(PreconditionsDeathTest, OfAnArchiveThatWrites) {
  PersistenceArchiver archive;
  EXPECT_DEATH(archive.mark_object_start(25, none), "address == getPosition");
  EXPECT_DEATH(archive.mark_object_end(24, 20), "address == getRecordAddress");
  EXPECT_DEATH(static_cast<void>(archive.getStreamposMap(none)), "typeHash");
  EXPECT_DEATH(static_cast<void>(archive.tellg()), "m_reader");
  archive.mark_object_start(24, none);
  EXPECT_DEATH(archive.mark_object_end(23, archive.tellp()), "address == getRecordAddress");
  EXPECT_DEATH(archive.mark_object_end(24, archive.tellp() - 1), "endPosition == getPosition");
  EXPECT_DEATH(static_cast<void>(archive.genDocument()), "m_open.empty");
}

TEST_F(PreconditionsDeathTest, OfAnArchiveThatReads) {
  PersistenceArchiver writer;
  writer.mark_object_start(24, none);
  writer.mark_object_end(24, writer.tellp());
  auto const document = writer.genDocument();
  PersistenceArchiver archive{std::string_view(document)};
  EXPECT_DEATH(archive.end_read_to_address(25), "m_open.empty");
  auto const header = archive.read_to_address_header();
  EXPECT_DEATH(archive.end_read_to_address(header.end - 1), "end == m_open.back");
  EXPECT_DEATH(archive.check_container_size(0, 0), "elementSize != 0");
  EXPECT_DEATH(static_cast<void>(archive.tellp()), "m_writer");
  EXPECT_DEATH(archive << 1U, "m_writer");
}

TEST_F(PreconditionsDeathTest, OfAChildList) {
  ChildList list;
  auto const child = std::make_shared<Object>();
  EXPECT_DEATH(list.append(child), "m_slots.capacity");
  EXPECT_DEATH(list.remove(*child), "holds");
  EXPECT_DEATH(static_cast<void>(list.positionOf(*child)), "holds");
  EXPECT_DEATH(static_cast<void>(list.at(0)), "position < m_size");
  list.reserve(2);
  EXPECT_DEATH(list.append(nullptr), "child");
  list.append(child);
  EXPECT_DEATH(list.openSlots(1), "m_slots.empty");
  EXPECT_DEATH(static_cast<void>(list.at(1)), "position < m_size");
  ChildList open;
  open.openSlots(1);
  EXPECT_DEATH(static_cast<void>(open.put(nullptr, 0)), "child");
}

TEST_F(PreconditionsDeathTest, OfATree) {
  using Children = std::vector<std::shared_ptr<Object>>;
  auto const root = std::make_shared<Object>();
  auto const child = std::make_shared<Object>();
  auto const grandchild = std::make_shared<Object>();
  Children target;
  auto const add = [&](Object& parent, std::shared_ptr<Object> const& below) {
    ObjectHelper::addToVectorAtEnd(&parent, Children{below}, target, std::nullopt, 1, false);
  };
  add(*root, child);
  add(*child, grandchild);
  EXPECT_DEATH(add(*root, root), "isBelowOrElsewhere");
  EXPECT_DEATH(add(*child, root), "isBelowOrElsewhere");
  EXPECT_DEATH(add(*grandchild, root), "isBelowOrElsewhere");
}

}  // namespace
}  // namespace Kestrel

#include "VantaService_PersistenceArchiver/StreamposMap.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <memory>
#include <random>
#include <vector>

namespace Kestrel {
namespace {

/// Objects of one byte that lie side by side.
class Memory {
 public:
  explicit Memory(std::size_t size) : m_bytes(std::make_shared<std::vector<char>>(size)) {}

  [[nodiscard]] std::shared_ptr<void const> at(std::size_t place) const {
    return {m_bytes, m_bytes->data() + place};
  }
  [[nodiscard]] long getUseCount() const { return m_bytes.use_count(); }

 private:
  std::shared_ptr<std::vector<char>> m_bytes;
};

TEST(StreamposMap, RemembersTheAddressOfAnObject) {
  Memory const memory(2);
  StreamposMap map;
  EXPECT_EQ(map.size(), 0U);
  EXPECT_EQ(map.findOrInsert(memory.at(0), 24), 0U);
  EXPECT_EQ(map.findOrInsert(memory.at(1), 50), 0U);
  EXPECT_EQ(map.findOrInsert(memory.at(0), 99), 24U);
  EXPECT_EQ(map.findOrInsert(memory.at(1), 99), 50U);
  EXPECT_EQ(map.size(), 2U);
}

TEST(StreamposMap, HoldsItsObjects) {
  Memory const memory(1);
  {
    StreamposMap map;
    static_cast<void>(map.findOrInsert(memory.at(0), 24));
    EXPECT_EQ(memory.getUseCount(), 2);
    static_cast<void>(map.findOrInsert(memory.at(0), 25));
    EXPECT_EQ(memory.getUseCount(), 2);
  }
  EXPECT_EQ(memory.getUseCount(), 1);
}

// Places are kept in units of 64 bytes, so that these collide.
TEST(StreamposMap, TellsObjectsOfTheSameUnitApart) {
  Memory const memory(64);
  StreamposMap map;
  for (unsigned int i = 0; i < 64; ++i) ASSERT_EQ(map.findOrInsert(memory.at(i), i + 1), 0U);
  for (unsigned int i = 0; i < 64; ++i) ASSERT_EQ(map.findOrInsert(memory.at(i), 1000), i + 1);
  EXPECT_EQ(map.size(), 64U);
}

// The table is doubled for the 33rd object, the 65th, and so on.
TEST(StreamposMap, KnowsItsObjectsWhenItHasGrown) {
  constexpr unsigned int count = 1000;
  Memory const memory(std::size_t{count} * 100);
  StreamposMap map;
  for (unsigned int i = 0; i < count; ++i) {
    ASSERT_EQ(map.findOrInsert(memory.at(std::size_t{i} * 100), i + 1), 0U);
    ASSERT_EQ(map.findOrInsert(memory.at(0), 5000), 1U);
    ASSERT_EQ(map.findOrInsert(memory.at(std::size_t{i / 2} * 100), 5000), i / 2 + 1);
  }
  for (unsigned int i = 0; i < count; ++i)
    ASSERT_EQ(map.findOrInsert(memory.at(std::size_t{i} * 100), 5000), i + 1);
  EXPECT_EQ(map.size(), 1000U);
}

TEST(StreamposMap, DoesWhatASearchTreeDoes) {
  for (unsigned int seed = 0; seed < 11; ++seed) {
    std::mt19937 random(seed);
    // From objects that share their units to objects on pages of their own.
    std::size_t const distance = std::size_t{8} << seed;
    Memory const memory(3000 * distance);
    StreamposMap map;
    std::map<void const*, unsigned int> slow;
    for (unsigned int address = 1; address < 5000; ++address) {
      auto const object = memory.at(random() % 3000 * distance);
      auto const [entry, isNew] = slow.try_emplace(object.get(), address);
      ASSERT_EQ(map.findOrInsert(object, address), isNew ? 0U : entry->second) << "seed " << seed;
      ASSERT_EQ(map.size(), slow.size());
    }
  }
}

}  // namespace
}  // namespace Kestrel

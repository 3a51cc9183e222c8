#include "VantaService_PersistenceArchiver/PointerMapContainer.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <stdexcept>

namespace Kestrel {
namespace {

using Map = PointerMapContainer<int>;

/// A table of numbers that equal their addresses.
std::unique_ptr<Map> genMap(std::initializer_list<unsigned int> addresses) {
  auto map = std::make_unique<Map>();
  for (auto const address : addresses) map->insert(address, std::make_shared<int>(address));
  return map;
}

TEST(PointerMapContainer, IsEmptyAtFirst) {
  Map const map;
  EXPECT_EQ(map.size(), 0U);
  EXPECT_EQ(map.find(0), nullptr);
  EXPECT_EQ(map.find(24), nullptr);
  EXPECT_EQ(map.get(24), nullptr);
}

TEST(PointerMapContainer, FindsItsObjectsInAnyOrder) {
  auto const map = genMap({24, 50, 51, 90});
  EXPECT_EQ(map->size(), 4U);
  for (int const address : {24, 50, 51, 90, 90, 51, 24, 24, 90, 50})
    EXPECT_EQ(*map->get(static_cast<unsigned int>(address)), address);
}

TEST(PointerMapContainer, HasNothingBesideItsAddresses) {
  auto const map = genMap({24, 50});
  for (unsigned int const address : {0U, 23U, 25U, 49U, 51U, 0xFFFFFFFFU}) {
    EXPECT_EQ(map->find(address), nullptr) << address;
    EXPECT_EQ(map->get(address), nullptr) << address;
    EXPECT_EQ(*map->get(24), 24);
  }
}

TEST(PointerMapContainer, SharesItsObjects) {
  auto map = genMap({24});
  auto const object = map->get(24);
  EXPECT_EQ(object.use_count(), 2);
  map.reset();
  EXPECT_EQ(object.use_count(), 1);
}

TEST(PointerMapContainer, RefusesAddressesThatDoNotAscend) {
  auto const map = genMap({24, 50});
  EXPECT_THROW(map->insert(50, std::make_shared<int>(1)), std::logic_error);
  EXPECT_THROW(map->insert(49, std::make_shared<int>(1)), std::logic_error);
  EXPECT_EQ(map->size(), 2U);
  map->insert(51, std::make_shared<int>(51));
  EXPECT_EQ(*map->get(51), 51);
}

TEST(PointerMapContainer, KeepsItsObjectsWhenItMakesRoom) {
  auto const map = genMap({24});
  map->reserve(1000);
  EXPECT_EQ(map->size(), 1U);
  EXPECT_EQ(*map->get(24), 24);
  EXPECT_EQ(map->find(25), nullptr);
}

TEST(PointerMapContainer, DoesWhatASearchTreeDoes) {
  for (unsigned int seed = 0; seed < 10; ++seed) {
    std::mt19937 random(seed);
    Map map;
    std::map<unsigned int, std::shared_ptr<int>> slow;
    unsigned int last = 0;
    for (int i = 0; i < 2000; ++i) {
      if (random() % 3 == 0) {
        last += 1 + static_cast<unsigned int>(random()) % 4;
        auto const object = std::make_shared<int>(i);
        map.insert(last, object);
        slow.emplace(last, object);
      }
      auto const address = static_cast<unsigned int>(random()) % (last + 3);
      for (auto const asked : {address, address + 1}) {
        auto const entry = slow.find(asked);
        ASSERT_EQ(map.get(asked), entry != slow.end() ? entry->second : nullptr) << "seed " << seed;
      }
    }
    EXPECT_EQ(map.size(), slow.size());
  }
}

}  // namespace
}  // namespace Kestrel

#include "VantaService_Parameterization/ChildList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "VantaService_Parameterization/Object.h"
#include "support/AllocationFailure.h"
#include "support/MemoryLimit.h"
#include "support/ObjectTestAccess.h"

namespace Kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Objects = std::vector<std::shared_ptr<Object>>;

constexpr int greatestId = std::numeric_limits<int>::max();

std::shared_ptr<Object> genObject(int childId = Object::noChildId) {
  auto object = std::make_shared<Object>();
  ObjectTestAccess::setChildId(*object, childId);
  return object;
}

void append(ChildList& list, std::shared_ptr<Object> const& child) {
  list.reserve(1);
  list.append(child);
}

/// New objects with the child ids 0, 1, ... at the end of the list.
Objects appendObjects(ChildList& list, int count) {
  Objects objects;
  for (int i = 0; i < count; ++i) append(list, objects.emplace_back(genObject(i)));
  return objects;
}

std::vector<int> idsOf(ChildList const& list) {
  std::vector<int> ids;
  list.forEach([&](auto const& child) { ids.push_back(child->getChildId()); });
  return ids;
}

std::vector<int> genFreshIds(ChildList& list, std::size_t count) {
  std::vector<int> ids{-3};
  list.genFreshIds(count, ids);
  return ids;
}

/// A list whose children have the ids.
ChildList genListWithIds(std::vector<int> const& ids) {
  ChildList list;
  for (int const id : ids) append(list, genObject(id));
  return list;
}

TEST(ChildList, IsEmptyAtFirst) {
  ChildList const list;
  EXPECT_EQ(list.size(), 0U);
  EXPECT_FALSE(list.holds(*genObject()));
  EXPECT_THAT(idsOf(list), IsEmpty());
}

TEST(ChildList, KeepsTheOrderInWhichChildrenCame) {
  ChildList list;
  auto const objects = appendObjects(list, 3);
  EXPECT_EQ(list.size(), 3U);
  EXPECT_THAT(idsOf(list), ElementsAre(0, 1, 2));
  EXPECT_EQ(list.at(0), objects[0]);
  EXPECT_EQ(list.at(2), objects[2]);
  EXPECT_EQ(list.positionOf(*objects[0]), 0U);
  EXPECT_EQ(list.positionOf(*objects[2]), 2U);
}

TEST(ChildList, HoldsItsChildrenAndNoOthers) {
  ChildList list;
  ChildList other;
  auto const objects = appendObjects(list, 2);
  auto const others = appendObjects(other, 3);
  EXPECT_TRUE(list.holds(*objects[1]));
  EXPECT_FALSE(list.holds(*others[1])) << "has the slot of another";
  EXPECT_FALSE(list.holds(*others[2])) << "has a slot beyond all";
  list.remove(*objects[1]);
  EXPECT_FALSE(list.holds(*objects[1]));
}

// Slots are counted in words of 64, and the words in a tree: 200 children take four words.
TEST(ChildList, KnowsPositionsAcrossTheWordsOfItsSlots) {
  ChildList list;
  auto const objects = appendObjects(list, 200);
  for (std::size_t const i : {0U, 63U, 64U, 127U, 128U, 191U, 192U, 199U}) {
    EXPECT_EQ(list.positionOf(*objects[i]), i);
    EXPECT_EQ(list.at(i), objects[i]);
  }
  for (std::size_t i = 0; i < 200; i += 2) list.remove(*objects[i]);
  EXPECT_EQ(list.size(), 100U);
  EXPECT_EQ(list.at(0), objects[1]);
  EXPECT_EQ(list.at(31), objects[63]);
  EXPECT_EQ(list.at(32), objects[65]);
  EXPECT_EQ(list.at(63), objects[127]);
  EXPECT_EQ(list.at(64), objects[129]);
  EXPECT_EQ(list.at(99), objects[199]);
  EXPECT_EQ(list.positionOf(*objects[63]), 31U);
  EXPECT_EQ(list.positionOf(*objects[65]), 32U);
  EXPECT_EQ(list.positionOf(*objects[199]), 99U);
}

TEST(ChildList, PassesOverWordsWithoutChildren) {
  ChildList list;
  auto const objects = appendObjects(list, 320);
  for (std::size_t i = 10; i < 300; ++i) list.remove(*objects[i]);
  EXPECT_EQ(list.at(9), objects[9]);
  EXPECT_EQ(list.at(10), objects[300]);
  EXPECT_EQ(list.at(29), objects[319]);
  EXPECT_EQ(list.positionOf(*objects[300]), 10U);
}

TEST(ChildList, AppendsBehindGapsAtItsEnd) {
  ChildList list;
  auto objects = appendObjects(list, 66);
  for (std::size_t i = 60; i < 66; ++i) list.remove(*objects[i]);
  auto const last = genObject(99);
  append(list, last);
  EXPECT_EQ(list.positionOf(*last), 60U);
  EXPECT_EQ(list.at(60), last);
}

TEST(ChildList, ClosesItsGapsWhenItNeedsRoom) {
  for (std::size_t const removed : {64U, 66U, 70U, 100U, 128U, 129U}) {
    for (std::size_t const count : {128U, 130U}) {
      if (removed >= count) continue;
      SCOPED_TRACE(std::to_string(removed) + " of " + std::to_string(count));
      ChildList list;
      auto const objects = appendObjects(list, static_cast<int>(count));
      for (std::size_t i = 0; i < removed; ++i) list.remove(*objects[i]);
      list.reserve(1000);
      ASSERT_EQ(list.size(), count - removed);
      for (std::size_t i = removed; i < count; ++i) {
        ASSERT_EQ(list.positionOf(*objects[i]), i - removed);
        ASSERT_EQ(list.at(i - removed), objects[i]);
      }
      auto const last = genObject(500);
      list.append(last);
      EXPECT_EQ(list.positionOf(*last), count - removed);
      EXPECT_EQ(list.at(count - removed), last);
      list.remove(*objects[count - 1]);
      EXPECT_EQ(list.positionOf(*last), count - removed - 1);
      EXPECT_EQ(list.at(count - removed - 1), last);
    }
  }
}

TEST(ChildList, StartsAnewWhenTheLastChildIsGone) {
  ChildList list;
  auto objects = appendObjects(list, 70);
  for (auto const& object : objects) list.remove(*object);
  EXPECT_EQ(list.size(), 0U);
  EXPECT_FALSE(list.holds(*objects[69]));
  EXPECT_THAT(genFreshIds(list, 2), ElementsAre(0, 1));
  objects = appendObjects(list, 3);
  EXPECT_EQ(list.at(2), objects[2]);
  EXPECT_EQ(list.positionOf(*objects[2]), 2U);
}

TEST(ChildList, TakesChildrenIntoOpenSlotsInAnyOrder) {
  ChildList list;
  list.openSlots(130);
  auto const a = genObject(1);
  auto const b = genObject(2);
  auto const c = genObject(3);
  EXPECT_TRUE(list.put(c, 129));
  EXPECT_TRUE(list.put(a, 0));
  EXPECT_TRUE(list.put(b, 64));
  EXPECT_EQ(list.size(), 3U);
  EXPECT_THAT(idsOf(list), ElementsAre(1, 2, 3));
  EXPECT_EQ(list.positionOf(*c), 2U);
  EXPECT_EQ(list.at(1), b);
  auto const d = genObject(4);
  append(list, d);
  EXPECT_EQ(list.positionOf(*d), 3U);
}

TEST(ChildList, RefusesASlotThatIsTakenOrNotThere) {
  ChildList list;
  list.openSlots(2);
  ASSERT_TRUE(list.put(genObject(1), 1));
  EXPECT_FALSE(list.put(genObject(2), 1));
  EXPECT_FALSE(list.put(genObject(2), 2));
  EXPECT_EQ(list.size(), 1U);
  EXPECT_THAT(idsOf(list), ElementsAre(1));
}

TEST(ChildList, HoldsAChildTwiceAtItsLastPlace) {
  ChildList list;
  auto const objects = appendObjects(list, 2);
  append(list, objects[0]);
  append(list, genObject(7));
  append(list, objects[0]);
  EXPECT_THAT(idsOf(list), ElementsAre(0, 1, 0, 7, 0));
  EXPECT_EQ(list.positionOf(*objects[0]), 4U);
  list.remove(*objects[0]);
  EXPECT_THAT(idsOf(list), ElementsAre(0, 1, 0, 7));
  EXPECT_EQ(list.positionOf(*objects[0]), 2U);
  list.remove(*objects[1]);
  EXPECT_EQ(list.positionOf(*objects[0]), 1U);
  list.remove(*objects[0]);
  EXPECT_TRUE(list.holds(*objects[0]));
  EXPECT_EQ(list.positionOf(*objects[0]), 0U);
  list.remove(*objects[0]);
  EXPECT_FALSE(list.holds(*objects[0]));
  EXPECT_THAT(idsOf(list), ElementsAre(7));
}

TEST(ChildList, KeepsTheLastPlaceOfAChildWhenItClosesItsGaps) {
  ChildList list;
  auto const objects = appendObjects(list, 3);
  append(list, objects[1]);
  list.remove(*objects[0]);
  list.remove(*objects[2]);
  list.reserve(100);
  EXPECT_THAT(idsOf(list), ElementsAre(1, 1));
  EXPECT_EQ(list.positionOf(*objects[1]), 1U);
  list.remove(*objects[1]);
  EXPECT_EQ(list.positionOf(*objects[1]), 0U);
}

TEST(ChildList, LetsGoOfItsChildren) {
  ChildList list;
  auto const objects = appendObjects(list, 2);
  list.remove(*objects[0]);
  EXPECT_EQ(objects[0].use_count(), 1);
  EXPECT_EQ(objects[1].use_count(), 2);
  list.releaseAll();
  EXPECT_EQ(objects[1].use_count(), 1);
}

// Slots come in words of 64, so that the 1st, the 65th and the 129th child need one.
TEST(ChildList, NeedsNoMemoryForChildrenItHasMadeRoomFor) {
  for (std::size_t const count : {1U, 64U, 65U, 128U, 129U}) {
    ChildList list;
    Objects objects;
    for (std::size_t i = 0; i < count; ++i) objects.push_back(genObject());
    list.reserve(count);
    {
      TestSupport::AllocationFailure const failure(0);
      for (auto const& object : objects) list.append(object);
      EXPECT_FALSE(failure.hasHappened());
    }
    EXPECT_EQ(list.size(), count);
  }
}

TEST(ChildList, MakesRoomOfItsGapsOnceTheyAreHalfOfIt) {
  for (std::size_t const removed : {63U, 64U, 127U}) {
    ChildList list;
    list.reserve(128);
    auto const objects = appendObjects(list, 128);
    for (std::size_t i = 0; i < removed; ++i) list.remove(*objects[2 * i % 127]);
    bool needsMemory = false;
    {
      TestSupport::AllocationFailure const failure(0);
      try {
        list.reserve(removed);
      } catch (std::bad_alloc const&) {
        needsMemory = true;
      }
    }
    EXPECT_EQ(needsMemory, removed == 63) << removed;
    EXPECT_EQ(list.size(), 128 - removed);
    EXPECT_EQ(list.at(127 - removed), objects[127]);
  }
}

// ---- child ids

TEST(ChildListIds, AreTheSmallestOnesAtFirst) {
  ChildList list;
  EXPECT_THAT(genFreshIds(list, 0), IsEmpty());
  EXPECT_THAT(genFreshIds(list, 3), ElementsAre(0, 1, 2));
  EXPECT_THAT(genFreshIds(list, 2), ElementsAre(0, 1)) << "nobody took them";
}

TEST(ChildListIds, GoOnBehindTheGreatestOne) {
  auto list = genListWithIds({0, 1, 2});
  EXPECT_THAT(genFreshIds(list, 2), ElementsAre(3, 4));
  append(list, genObject(7));
  EXPECT_THAT(genFreshIds(list, 2), ElementsAre(8, 9));
  append(list, genObject(5));
  EXPECT_THAT(genFreshIds(list, 2), ElementsAre(8, 9));
}

TEST(ChildListIds, DoNotMindChildrenWithoutOne) {
  auto list = genListWithIds({-1, -1, -7, std::numeric_limits<int>::min()});
  EXPECT_THAT(genFreshIds(list, 2), ElementsAre(0, 1));
}

TEST(ChildListIds, FillTheLongestGapWhenTheGreatestOneIsTaken) {
  auto list = genListWithIds({-7, -1, 2, 2, 10, 100, greatestId});
  EXPECT_THAT(genFreshIds(list, 3), ElementsAre(101, 102, 103));
  append(list, genObject(101));
  EXPECT_THAT(genFreshIds(list, 2), ElementsAre(102, 103));
}

TEST(ChildListIds, FillTheGapBeforeAllWhenItIsTheLongest) {
  auto list = genListWithIds({greatestId - 1, greatestId - 4, greatestId});
  EXPECT_THAT(genFreshIds(list, 2), ElementsAre(0, 1));
}

TEST(ChildListIds, DoNotComeFromBelow0) {
  auto list = genListWithIds({std::numeric_limits<int>::min(), 5, greatestId});
  EXPECT_THAT(genFreshIds(list, 2), ElementsAre(6, 7));
}

TEST(ChildListIds, UseThoseBehindTheGreatestOneToTheLast) {
  auto list = genListWithIds({0, greatestId - 2});
  EXPECT_THAT(genFreshIds(list, 2), ElementsAre(greatestId - 1, greatestId));
  EXPECT_THAT(genFreshIds(list, 3), ElementsAre(1, 2, 3));
  EXPECT_THAT(genFreshIds(list, 1), ElementsAre(1)) << "goes on in the gap";
}

TEST(ChildListIds, ComeFromShorterGapsWhenTheLongestIsUsedUp) {
  constexpr int step = 1 << 21;
  ChildList list;
  for (int i = 0; i < 1024; ++i) append(list, genObject(i * step + (i == 1 ? 1 : 0)));
  append(list, genObject(greatestId));
  // Child 1 makes the gap before it one longer than the others, and that behind it one shorter.
  auto const ids = genFreshIds(list, std::size_t{2} * step);
  ASSERT_EQ(ids.size(), 4'194'304U);
  EXPECT_EQ(ids[0], 1);
  EXPECT_EQ(ids[2'097'151], 2'097'152);
  EXPECT_EQ(ids[2'097'152], 4'194'305);
  EXPECT_EQ(ids[4'194'302], 6'291'455);
  EXPECT_EQ(ids[4'194'303], 6'291'457);
}

TEST(ChildListIds, AreRefusedWhenThereAreNotSoMany) {
  constexpr std::size_t all = std::size_t{1} << 31;
  std::vector<int> ids;
  EXPECT_THROW(ChildList().genFreshIds(all + 1, ids), std::length_error);
  auto list = genListWithIds({5});
  EXPECT_THROW(list.genFreshIds(all, ids), std::length_error);
}

// The one id below the child's is one of those that there are: then it is memory that is missing.
TEST(ChildListIdsDeathTest, CountAGapOfOne) {
  if (TestSupport::s_isSanitized) GTEST_SKIP() << "sanitizers take address space of their own";
  auto const generate = [] {
    auto list = genListWithIds({1});
    TestSupport::limitMemory(std::size_t{64} << 20);
    std::vector<int> ids;
    try {
      list.genFreshIds((std::size_t{1} << 31) - 1, ids);
    } catch (std::bad_alloc const&) {
      ::_exit(0);
    } catch (std::length_error const&) {
      ::_exit(1);
    }
    ::_exit(2);
  };
  EXPECT_EXIT(generate(), testing::ExitedWithCode(0), "");
}

// ---- compared with a list that is searched

/// What a `ChildList` does, by search.
class SlowList {
 public:
  void append(std::shared_ptr<Object> const& child) { m_children.push_back(child); }
  void remove(std::size_t position) {
    m_children.erase(m_children.begin() + static_cast<std::ptrdiff_t>(position));
  }
  [[nodiscard]] Objects const& getChildren() const { return m_children; }
  [[nodiscard]] std::set<int> getIds() const {
    std::set<int> ids;
    for (auto const& child : m_children) ids.insert(child->getChildId());
    return ids;
  }

 private:
  Objects m_children;
};

void expectSame(ChildList const& list, SlowList const& slow) {
  auto const& children = slow.getChildren();
  ASSERT_EQ(list.size(), children.size());
  Objects visited;
  list.forEach([&](auto const& child) { visited.push_back(child); });
  ASSERT_EQ(visited, children);
  for (std::size_t i = 0; i < children.size(); ++i) {
    ASSERT_TRUE(list.holds(*children[i]));
    ASSERT_EQ(list.positionOf(*children[i]), i);
    ASSERT_EQ(list.at(i), children[i]);
  }
}

void expectFresh(std::vector<int> const& ids, std::size_t count, std::set<int> const& used) {
  ASSERT_EQ(ids.size(), count);
  ASSERT_EQ(std::set<int>(ids.begin(), ids.end()).size(), count);
  for (int const id : ids) {
    ASSERT_GE(id, 0);
    ASSERT_FALSE(used.contains(id));
  }
}

/// Appends a few children, with fresh ids or with any.
void appendSome(ChildList& list, SlowList& slow, std::mt19937& random) {
  std::size_t const count = random() % 20;
  auto ids = genFreshIds(list, count);
  expectFresh(ids, count, slow.getIds());
  if (random() % 4 == 0)
    for (int& id : ids) id = random() % 2 == 0 ? static_cast<int>(random() % 500) : greatestId;
  list.reserve(count);
  for (int const id : ids) {
    auto const child = genObject(id);
    list.append(child);
    slow.append(child);
  }
}

void removeSome(ChildList& list, SlowList& slow, std::mt19937& random) {
  for (std::size_t count = random() % 30; count != 0 && list.size() != 0; --count) {
    std::size_t const position = random() % list.size();
    auto const child = list.at(position);
    list.remove(*child);
    slow.remove(position);
    ASSERT_FALSE(list.holds(*child));
  }
}

TEST(ChildList, DoesWhatASearchedListDoes) {
  for (unsigned int seed = 0; seed < 40; ++seed) {
    std::mt19937 random(seed);
    ChildList list;
    SlowList slow;
    for (int round = 0; round < 60; ++round) {
      // Now it grows, now it shrinks.
      if (random() % 3 != (round / 20 % 2 == 0 ? 0U : 1U))
        appendSome(list, slow, random);
      else
        removeSome(list, slow, random);
      expectSame(list, slow);
      if (HasFatalFailure()) FAIL() << "seed " << seed << ", round " << round;
    }
  }
}

}  // namespace
}  // namespace Kestrel

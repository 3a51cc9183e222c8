#include "VantaService_Parameterization/Object.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <numeric>
#include <random>
#include <stdexcept>

#include "support/ObjectTestAccess.h"
#include "support/RecordingNode.h"
#include "support/VirtualTable.h"

namespace Kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::addChildren;
using TestSupport::childIdsOf;
using TestSupport::childNamesOf;
using TestSupport::genNodes;
using TestSupport::NodeList;
using TestSupport::RecordingNode;
using TestSupport::slotOf;
using TestSupport::TreeReport;

using Objects = std::vector<std::shared_ptr<Object>>;
using Reason = ObjectTreeChangeReasonEx;

TEST(ObjectVirtualTable, HasItsOperationsInTheFixedOrder) {
  EXPECT_EQ(slotOf(&Object::registerInterfaces), 0U);
  EXPECT_EQ(slotOf(&Object::unregisterInterfaces), 1U);
  // The destructor takes two.
  EXPECT_EQ(slotOf(&Object::convertKEDDataToCurrent), 4U);
  EXPECT_EQ(slotOf(&Object::finalizeLoading), 5U);
  EXPECT_EQ(slotOf(&Object::blockFinalizeLoading), 6U);
  EXPECT_EQ(slotOf(&Object::getSigmaVariationParameters), 7U);
  EXPECT_EQ(slotOf(&Object::getRelevantChildren), 8U);
  EXPECT_EQ(slotOf(&Object::getStandardPath), 9U);
  EXPECT_EQ(slotOf(&Object::isDesignRootObject), 10U);
  EXPECT_EQ(slotOf(&Object::isNominalRealization), 11U);
  EXPECT_EQ(slotOf<void (Object::*)(Reason, Objects const&)>(&Object::propagateTreeChanged), 12U);
  EXPECT_EQ(slotOf<void (Object::*)(Reason, std::shared_ptr<Object>)>(&Object::propagateTreeChanged), 13U);
}

TEST(ObjectVirtualTable, HasTheseDefaults) {
  auto const object = std::make_shared<Object>();
  EXPECT_FALSE(object->blockFinalizeLoading());
  EXPECT_THAT(object->getSigmaVariationParameters(), IsEmpty());
  EXPECT_THAT(object->getRelevantChildren(), IsEmpty());
  EXPECT_EQ(object->getStandardPath(), "");
  EXPECT_FALSE(object->isDesignRootObject());
  EXPECT_TRUE(object->isNominalRealization());
}

TEST(Object, IsNewWithoutParentChildrenNameAndId) {
  auto const object = std::make_shared<Object>();
  EXPECT_EQ(object->getParentObject(), nullptr);
  EXPECT_EQ(object->getRootObject(), object.get());
  EXPECT_EQ(object->getChildCount(), 0U);
  EXPECT_EQ(object->getObjectName(), "");
  EXPECT_EQ(object->getChildId(), -1);
}

TEST(Object, HandsOutSharedPointersToItself) {
  auto const object = std::make_shared<Object>();
  EXPECT_EQ(object->shared_from_this(), object);
}

TEST(Object, KnowsItsChildrenByPosition) {
  RecordingNode parent;
  auto const nodes = genNodes({"a", "b", "c"});
  addChildren(parent, nodes);
  ASSERT_EQ(parent.getChildCount(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(parent.getChild(i), nodes[i]);
    EXPECT_EQ(parent.getChildPosition(*nodes[i]), i);
    EXPECT_TRUE(parent.existChild(nodes[i]));
    EXPECT_EQ(nodes[i]->getParentObject(), &parent);
  }
  EXPECT_THAT(childIdsOf(parent), ElementsAre(0, 1, 2));
}

TEST(Object, KnowsWhoIsNotItsChild) {
  RecordingNode parent;
  RecordingNode other;
  addChildren(parent, genNodes({"a", "b"}));
  auto const stranger = genNodes({"c"});
  addChildren(other, stranger);
  EXPECT_FALSE(parent.existChild(nullptr));
  EXPECT_FALSE(parent.existChild(stranger.front()));
  EXPECT_EQ(parent.getChildPosition(*stranger.front()), std::nullopt);
  EXPECT_EQ(RecordingNode().getChildPosition(*stranger.front()), std::nullopt);
}

TEST(Object, FindsTheRootAndThePathThroughAllLevels) {
  auto const root = std::make_shared<RecordingNode>("root");
  auto const middle = genNodes({"middle"});
  auto const leaf = genNodes({"leaf"});
  addChildren(*root, middle);
  addChildren(*middle.front(), leaf);
  EXPECT_EQ(leaf.front()->getRootObject(), root.get());
  EXPECT_EQ(leaf.front()->getStandardPath(), "root/middle/leaf");
}

TEST(ObjectRemoval, KeepsTheOrderOfTheOthers) {
  RecordingNode parent;
  auto const nodes = genNodes({"a", "b", "c", "d"});
  addChildren(parent, nodes);
  parent.removeChild(nodes[1]);
  EXPECT_THAT(childNamesOf(parent), ElementsAre("a", "c", "d"));
  EXPECT_EQ(parent.getChildPosition(*nodes[0]), 0U);
  EXPECT_EQ(parent.getChildPosition(*nodes[2]), 1U);
  EXPECT_EQ(parent.getChildPosition(*nodes[3]), 2U);
  EXPECT_EQ(parent.getChild(1), nodes[2]);
  EXPECT_EQ(nodes[1]->getParentObject(), nullptr);
  EXPECT_FALSE(parent.existChild(nodes[1]));
}

TEST(ObjectRemoval, LeavesNameAndIdOfTheRemovedChild) {
  RecordingNode parent;
  auto const nodes = genNodes({"a", "b"});
  addChildren(parent, nodes);
  parent.removeChild(nodes[1]);
  EXPECT_EQ(nodes[1]->getObjectName(), "b");
  EXPECT_EQ(nodes[1]->getChildId(), 1);
}

TEST(ObjectRemoval, IsReportedOnceFromTheParentUpToTheRoot) {
  auto const root = std::make_shared<RecordingNode>("root");
  auto const middle = genNodes({"middle"});
  auto const leaves = genNodes({"a", "b"});
  addChildren(*root, middle);
  addChildren(*middle.front(), leaves);
  root->forgetReports();
  middle.front()->forgetReports();

  middle.front()->removeChild(leaves[0]);

  TreeReport const expected{static_cast<Reason>(5), {leaves[0].get()}, false};
  EXPECT_THAT(middle.front()->getReports(), ElementsAre(expected));
  EXPECT_THAT(root->getReports(), ElementsAre(expected));
  EXPECT_THAT(leaves[0]->getReports(), IsEmpty());
  EXPECT_THAT(leaves[1]->getReports(), IsEmpty());
}

TEST(ObjectRemoval, OfNothingOrAStrangerChangesAndReportsNothing) {
  RecordingNode parent;
  RecordingNode other;
  auto const nodes = genNodes({"a"});
  auto const strangers = genNodes({"b"});
  addChildren(parent, nodes);
  addChildren(other, strangers);
  parent.forgetReports();
  parent.removeChild(nullptr);
  parent.removeChild(strangers.front());
  parent.removeChild(std::make_shared<RecordingNode>());
  RecordingNode().removeChild(strangers.front());
  EXPECT_THAT(childNamesOf(parent), ElementsAre("a"));
  EXPECT_EQ(strangers.front()->getParentObject(), &other);
  EXPECT_THAT(parent.getReports(), IsEmpty());
}

TEST(ObjectRemoval, OfTheLastReferenceDestroysTheChild) {
  RecordingNode parent;
  auto nodes = genNodes({"a"});
  addChildren(parent, nodes);
  std::weak_ptr<Object> const child = nodes.front();
  nodes.clear();
  EXPECT_FALSE(child.expired());
  parent.removeChild(child.lock());
  EXPECT_TRUE(child.expired());
}

enum class RemovalOrder { Front, Back, Random };

class ObjectRemovalAtScale : public testing::TestWithParam<RemovalOrder> {};

TEST_P(ObjectRemovalAtScale, KnowsThePositionAfterEachOf160000Removals) {
  constexpr std::size_t count = 160'000;
  Object parent;
  std::vector<std::shared_ptr<Object>> nodes(count);
  for (auto& node : nodes) node = std::make_shared<Object>();
  std::vector<std::shared_ptr<Object>> target;
  ObjectHelper::addToVectorAtEnd(&parent, nodes, target, std::nullopt, 1, false);

  std::vector<std::size_t> order(count);
  std::iota(order.begin(), order.end(), std::size_t{0});
  if (GetParam() == RemovalOrder::Back) std::reverse(order.begin(), order.end());
  if (GetParam() == RemovalOrder::Random) std::shuffle(order.begin(), order.end(), std::mt19937(7));

  // The last to go stands behind those that come before it and are still there.
  std::size_t const last = order.back();
  std::size_t before = last;
  for (std::size_t i = 0; i + 1 < count; ++i) {
    parent.removeChild(nodes[order[i]]);
    if (order[i] < last) --before;
    ASSERT_EQ(parent.getChildPosition(*nodes[last]), before);
    ASSERT_EQ(parent.getChild(before), nodes[last]);
  }
  EXPECT_EQ(parent.getChildCount(), 1U);
  parent.removeChild(nodes[last]);
  EXPECT_EQ(parent.getChildCount(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Orders, ObjectRemovalAtScale,
                         testing::Values(RemovalOrder::Front, RemovalOrder::Back, RemovalOrder::Random));

TEST(ObjectChildren, StayInOrderUnderRandomAdditionsAndRemovals) {
  for (unsigned int seed = 0; seed < 20; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    RecordingNode parent;
    NodeList model;
    for (int step = 0; step < 200; ++step) {
      // Additions prevail first, removals later, so that gaps are closed and the list gets empty.
      if (model.empty() || random() % 200 >= static_cast<unsigned int>(step)) {
        auto const nodes = genNodes(std::vector<std::string>(1 + random() % 20, "x"));
        addChildren(parent, nodes);
        model.insert(model.end(), nodes.begin(), nodes.end());
      } else {
        for (std::size_t i = std::min<std::size_t>(model.size(), 1 + random() % 40); i > 0; --i) {
          auto const victim = model.begin() + static_cast<std::ptrdiff_t>(random() % model.size());
          parent.removeChild(*victim);
          model.erase(victim);
        }
      }
      ASSERT_EQ(parent.getChildCount(), model.size());
      for (std::size_t i = 0; i < model.size(); ++i) {
        ASSERT_EQ(parent.getChild(i), model[i]);
        ASSERT_EQ(parent.getChildPosition(*model[i]), i);
      }
      ASSERT_EQ(parent.getRelevantChildren(), Objects(model.begin(), model.end()));
      auto ids = childIdsOf(parent);
      std::sort(ids.begin(), ids.end());
      ASSERT_EQ(std::adjacent_find(ids.begin(), ids.end()), ids.end());
    }
  }
}

TEST(ObjectChildIds, AreNotThoseOfOtherChildren) {
  RecordingNode parent;
  auto const nodes = genNodes({"a", "b", "c"});
  addChildren(parent, nodes);
  parent.removeChild(nodes[0]);
  parent.removeChild(nodes[2]);
  addChildren(parent, genNodes({"d", "e"}));
  EXPECT_THAT(childIdsOf(parent), ElementsAre(1, 3, 4));
}

TEST(ObjectChildIds, StartAnewWhenAllChildrenAreGone) {
  RecordingNode parent;
  auto const nodes = genNodes({"a", "b"});
  addChildren(parent, nodes);
  for (auto const& node : nodes) parent.removeChild(node);
  addChildren(parent, nodes);
  EXPECT_THAT(childIdsOf(parent), ElementsAre(0, 1));
}

TEST(ObjectChildIds, StayFreeUntilAChildHasThem) {
  RecordingNode parent;
  addChildren(parent, genNodes({"a"}));
  EXPECT_THAT(ObjectTestAccess::getUniqueChildIds(parent, 2), ElementsAre(1, 2));
  EXPECT_THAT(ObjectTestAccess::getUniqueChildIds(parent, 3), ElementsAre(1, 2, 3));
  EXPECT_THAT(ObjectTestAccess::getUniqueChildIds(parent, 0), IsEmpty());
  EXPECT_THAT(ObjectTestAccess::getUniqueChildIds(RecordingNode(), 2), ElementsAre(0, 1));
}

/// Makes children of `parent` that bring their ids with them.
void addChildrenWithIds(Object& parent, std::vector<int> const& ids) {
  NodeList ignored;
  for (int const id : ids) {
    auto const nodes = genNodes({"brought"});
    ObjectTestAccess::setChildId(*nodes.front(), id);
    ObjectHelper::addToVectorAtEnd(&parent, nodes, ignored, std::nullopt, 0, false);
  }
}

constexpr int maxId = std::numeric_limits<int>::max();

TEST(ObjectChildIds, FollowTheOnesThatChildrenBroughtWithThem) {
  RecordingNode parent;
  addChildrenWithIds(parent, {7, 3, -5});
  EXPECT_THAT(ObjectTestAccess::getUniqueChildIds(parent, 2), ElementsAre(8, 9));
}

TEST(ObjectChildIds, ComeFromTheLongestGapOnceTheHighestIsTaken) {
  RecordingNode parent;
  addChildrenWithIds(parent, {10, -1, -1, -5, maxId - 2, maxId});
  EXPECT_THAT(ObjectTestAccess::getUniqueChildIds(parent, 2), ElementsAre(11, 12));
  addChildren(parent, genNodes({"a"}));
  EXPECT_EQ(parent.getChild(6)->getChildId(), 11);
  EXPECT_THAT(ObjectTestAccess::getUniqueChildIds(parent, 1), ElementsAre(12));
}

TEST(ObjectChildIds, UseTheHighestNumber) {
  RecordingNode parent;
  addChildrenWithIds(parent, {maxId - 2});
  EXPECT_THAT(ObjectTestAccess::getUniqueChildIds(parent, 2), ElementsAre(maxId - 1, maxId));
  EXPECT_THAT(ObjectTestAccess::getUniqueChildIds(parent, 3), ElementsAre(0, 1, 2));
}

TEST(ObjectLifetime, ADestroyedParentLeavesNoLinkInItsSurvivingChildren) {
  auto const nodes = genNodes({"a", "b"});
  {
    auto const parent = std::make_shared<RecordingNode>("parent");
    addChildren(*parent, nodes);
    parent->removeChild(nodes[0]);
  }
  EXPECT_EQ(nodes[0]->getParentObject(), nullptr);
  EXPECT_EQ(nodes[1]->getParentObject(), nullptr);
  EXPECT_EQ(nodes[1]->getRootObject(), nodes[1].get());
  EXPECT_EQ(nodes[1]->getStandardPath(), "b");

  RecordingNode parent;
  addChildren(parent, nodes);
  EXPECT_THAT(childNamesOf(parent), ElementsAre("a", "b"));
}

TEST(ObjectLifetime, ADestroyedParentReleasesItsChildren) {
  std::weak_ptr<Object> child;
  {
    RecordingNode parent;
    auto const nodes = genNodes({"a"});
    child = nodes.front();
    addChildren(parent, nodes);
  }
  EXPECT_TRUE(child.expired());
}

class LoadingNode : public Object {
 public:
  LoadingNode(std::string const& name, bool isBlocked, std::vector<std::string>& log)
      : m_isBlocked(isBlocked), m_log(log) {
    setObjectName(name);
  }
  void finalizeLoading() override {
    m_log.push_back(getObjectName());
    Object::finalizeLoading();
  }
  [[nodiscard]] bool blockFinalizeLoading() const override { return m_isBlocked; }

 private:
  bool m_isBlocked;
  std::vector<std::string>& m_log;
};

TEST(ObjectLoading, IsFinalizedFromTheRootDownExceptBelowWhatBlocksIt) {
  std::vector<std::string> log;
  auto const gen = [&](std::string const& name, bool isBlocked) {
    return std::make_shared<LoadingNode>(name, isBlocked, log);
  };
  auto const root = gen("root", false);
  auto const open = gen("open", false);
  auto const blocked = gen("blocked", true);
  std::vector<std::shared_ptr<LoadingNode>> target;
  ObjectHelper::addToVectorAtEnd(root.get(), {open, blocked}, target, std::nullopt, 1, false);
  ObjectHelper::addToVectorAtEnd(open.get(), {gen("below open", false)}, target, std::nullopt, 1, false);
  ObjectHelper::addToVectorAtEnd(blocked.get(), {gen("below blocked", false)}, target, std::nullopt, 1,
                                 false);
  root->finalizeLoading();
  EXPECT_THAT(log, ElementsAre("root", "open", "below open"));
}

class ObjectSignal : public testing::Test {
 protected:
  std::shared_ptr<Object> m_object = std::make_shared<Object>();
  std::vector<int> m_calls;

  Signals::Connection connect(int number) {
    return m_object->connectToSigChanged([this, number] { m_calls.push_back(number); });
  }
};

TEST_F(ObjectSignal, WithoutSlotsCallsNobody) { EXPECT_NO_THROW(m_object->emitSigChanged()); }

TEST_F(ObjectSignal, CallsItsSlotsInTheOrderOfConnectionOnEachEmission) {
  connect(1);
  connect(2);
  m_object->emitSigChanged();
  m_object->emitSigChanged();
  EXPECT_THAT(m_calls, ElementsAre(1, 2, 1, 2));
}

TEST_F(ObjectSignal, NoLongerCallsADisconnectedSlot) {
  auto const first = connect(1);
  connect(2);
  first.disconnect();
  EXPECT_FALSE(first.connected());
  m_object->emitSigChanged();
  EXPECT_THAT(m_calls, ElementsAre(2));
}

TEST_F(ObjectSignal, LetsASlotDisconnectItselfAndOthers) {
  Signals::Connection own;
  Signals::Connection next;
  own = m_object->connectToSigChanged([&] {
    m_calls.push_back(1);
    own.disconnect();
    next.disconnect();
  });
  next = connect(2);
  connect(3);
  m_object->emitSigChanged();
  m_object->emitSigChanged();
  EXPECT_THAT(m_calls, ElementsAre(1, 3, 3));
}

TEST_F(ObjectSignal, LetsASlotEmitAgain) {
  m_object->connectToSigChanged([&] {
    m_calls.push_back(1);
    if (m_calls.size() == 1) m_object->emitSigChanged();
  });
  connect(2);
  m_object->emitSigChanged();
  EXPECT_THAT(m_calls, ElementsAre(1, 1, 2, 2));
}

TEST_F(ObjectSignal, CallsNoSlotAfterTheOneThatDestroysTheObject) {
  Object const* const object = m_object.get();
  m_object->connectToSigChanged([&] {
    m_calls.push_back(1);
    m_object.reset();
  });
  auto const next = connect(2);
  connect(3);
  object->emitSigChanged();
  EXPECT_EQ(m_object, nullptr);
  EXPECT_FALSE(next.connected());
  EXPECT_THAT(m_calls, ElementsAre(1));
}

TEST_F(ObjectSignal, DisconnectsItsSlotsWithTheObject) {
  auto const connection = connect(1);
  EXPECT_TRUE(connection.connected());
  m_object.reset();
  EXPECT_FALSE(connection.connected());
}

TEST_F(ObjectSignal, PassesOnWhatASlotThrows) {
  connect(1);
  m_object->connectToSigChanged([] { throw std::runtime_error("slot"); });
  connect(3);
  EXPECT_THROW(m_object->emitSigChanged(), std::runtime_error);
  EXPECT_THAT(m_calls, ElementsAre(1));
}

}  // namespace
}  // namespace Kestrel

#include "VantaService_Parameterization/ObjectHelper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <type_traits>

#include "VantaService_ExceptionHandling/KeException.h"
#include "VantaService_Parameterization/ObjectException.h"
#include "support/AllocationFailure.h"
#include "support/RecordingNode.h"

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
using TestSupport::TreeReport;

constexpr auto childrenAdded = static_cast<ObjectTreeChangeReasonEx>(4);

/// A parent below a root, with the children "a" and "b", which are also the target.
class ObjectHelperTest : public testing::Test {
 protected:
  ObjectHelperTest() {
    addChildren(*m_root, {m_parent});
    ObjectHelper::addToVectorAtEnd(m_parent.get(), genNodes({"a", "b"}), m_target, std::nullopt, 1, false);
    m_root->forgetReports();
    m_parent->forgetReports();
  }

  void add(NodeList const& added, std::optional<std::string> const& name = std::nullopt, int idMode = 1,
           bool reversed = false) {
    ObjectHelper::addToVectorAtEnd(m_parent.get(), added, m_target, name, idMode, reversed);
  }

  [[nodiscard]] std::vector<std::string> namesOfTarget() const {
    std::vector<std::string> names;
    for (auto const& node : m_target) names.push_back(node ? node->getObjectName() : "(empty)");
    return names;
  }

  void expectRefusal(NodeList const& added, std::string const& message) {
    try {
      add(added, "renamed");
      FAIL() << "nothing thrown, expected: " << message;
    } catch (ObjectException const& exception) {
      EXPECT_EQ(exception.what(), message);
      EXPECT_EQ(static_cast<int>(exception.getType()), 1);
    }
    expectNothingChanged();
  }

  void expectNothingChanged() const {
    EXPECT_THAT(childNamesOf(*m_parent), ElementsAre("a", "b"));
    EXPECT_THAT(childIdsOf(*m_parent), ElementsAre(0, 1));
    EXPECT_THAT(namesOfTarget(), ElementsAre("a", "b"));
    EXPECT_THAT(m_parent->getReports(), IsEmpty());
    EXPECT_THAT(m_root->getReports(), IsEmpty());
  }

  std::shared_ptr<RecordingNode> m_root = std::make_shared<RecordingNode>("root");
  std::shared_ptr<RecordingNode> m_parent = std::make_shared<RecordingNode>("parent");
  NodeList m_target;
};

TEST_F(ObjectHelperTest, AddsBehindWhatIsThere) {
  auto const nodes = genNodes({"c", "d"});
  add(nodes);
  EXPECT_THAT(namesOfTarget(), ElementsAre("a", "b", "c", "d"));
  EXPECT_THAT(childNamesOf(*m_parent), ElementsAre("a", "b", "c", "d"));
  EXPECT_THAT(childIdsOf(*m_parent), ElementsAre(0, 1, 2, 3));
  EXPECT_EQ(m_parent->getChildPosition(*nodes[1]), 3U);
  EXPECT_EQ(nodes[0]->getParentObject(), m_parent.get());
}

TEST_F(ObjectHelperTest, AddsToTheTargetOnlyWhatItWasGiven) {
  NodeList target;
  ObjectHelper::addToVectorAtEnd(m_parent.get(), genNodes({"c"}), target, std::nullopt, 1, false);
  ASSERT_EQ(target.size(), 1U);
  EXPECT_EQ(target.front()->getObjectName(), "c");
  EXPECT_THAT(childNamesOf(*m_parent), ElementsAre("a", "b", "c"));
}

TEST_F(ObjectHelperTest, ReportsAdditionsOnceOnTheRoot) {
  auto const nodes = genNodes({"c", "d"});
  add(nodes);
  EXPECT_THAT(m_root->getReports(),
              ElementsAre(TreeReport{childrenAdded, {nodes[0].get(), nodes[1].get()}, true}));
  EXPECT_THAT(m_parent->getReports(), IsEmpty());
}

TEST_F(ObjectHelperTest, ReportsAdditionsOnAParentThatIsTheRoot) {
  auto const nodes = genNodes({"c"});
  ObjectHelper::addToVectorAtEnd(m_root.get(), nodes, m_target, std::nullopt, 1, false);
  EXPECT_THAT(m_root->getReports(), ElementsAre(TreeReport{childrenAdded, {nodes[0].get()}, true}));
}

TEST_F(ObjectHelperTest, AddingNothingChangesAndReportsNothing) {
  add({}, "renamed");
  expectNothingChanged();
}

TEST_F(ObjectHelperTest, NamesWhatItAddsOnlyWhenAskedTo) {
  add(genNodes({"c", "d"}), "renamed");
  add(genNodes({"e"}), std::nullopt);
  add(genNodes({"f"}), "");
  EXPECT_THAT(namesOfTarget(), ElementsAre("a", "b", "renamed", "renamed", "e", ""));
}

TEST_F(ObjectHelperTest, GivesChildIdsOnlyInIdModeOne) {
  for (int const idMode : {0, 2, -1}) {
    auto const nodes = genNodes({"c"});
    add(nodes, std::nullopt, idMode);
    EXPECT_EQ(nodes.front()->getChildId(), -1);
  }
  auto const nodes = genNodes({"d"});
  add(nodes, std::nullopt, 1);
  EXPECT_EQ(nodes.front()->getChildId(), 2);
}

TEST_F(ObjectHelperTest, AddsInReverseOrderWhenAskedTo) {
  auto const nodes = genNodes({"c", "d", "e"});
  add(nodes, std::nullopt, 1, true);
  EXPECT_THAT(namesOfTarget(), ElementsAre("a", "b", "e", "d", "c"));
  EXPECT_THAT(childNamesOf(*m_parent), ElementsAre("a", "b", "e", "d", "c"));
  EXPECT_EQ(nodes[0]->getChildId(), 2);
  EXPECT_EQ(nodes[2]->getChildId(), 4);
  EXPECT_THAT(m_root->getReports(),
              ElementsAre(TreeReport{childrenAdded, {nodes[2].get(), nodes[1].get(), nodes[0].get()}, true}));
}

TEST_F(ObjectHelperTest, AnObjectThatIsAddedTwiceAtOnceIsTwoChildrenWithTheLaterId) {
  auto const nodes = genNodes({"c", "d"});
  add({nodes[0], nodes[1], nodes[0]});
  EXPECT_THAT(namesOfTarget(), ElementsAre("a", "b", "c", "d", "c"));
  EXPECT_THAT(childNamesOf(*m_parent), ElementsAre("a", "b", "c", "d", "c"));
  EXPECT_THAT(childIdsOf(*m_parent), ElementsAre(0, 1, 4, 3, 4));
  EXPECT_EQ(m_parent->getChildPosition(*nodes[0]), 4U);
  EXPECT_THAT(m_root->getReports(),
              ElementsAre(TreeReport{childrenAdded, {nodes[0].get(), nodes[1].get(), nodes[0].get()}, true}));
}

TEST_F(ObjectHelperTest, AnObjectThatIsAddedTwiceInReverseOrderHasTheLaterIdToo) {
  auto const nodes = genNodes({"c", "d"});
  add({nodes[0], nodes[1], nodes[0]}, std::nullopt, 1, true);
  EXPECT_THAT(childNamesOf(*m_parent), ElementsAre("a", "b", "c", "d", "c"));
  EXPECT_EQ(nodes[0]->getChildId(), 4);
  EXPECT_EQ(nodes[1]->getChildId(), 3);
}

TEST_F(ObjectHelperTest, AnObjectThatIsTwoChildrenIsRemovedOneByOne) {
  auto const nodes = genNodes({"c", "d"});
  add({nodes[0], nodes[1], nodes[0]});
  m_parent->removeChild(nodes[0]);
  EXPECT_THAT(childNamesOf(*m_parent), ElementsAre("a", "b", "c", "d"));
  EXPECT_EQ(m_parent->getChildPosition(*nodes[0]), 2U);
  EXPECT_EQ(nodes[0]->getParentObject(), m_parent.get());
  m_parent->removeChild(nodes[0]);
  EXPECT_THAT(childNamesOf(*m_parent), ElementsAre("a", "b", "d"));
  EXPECT_EQ(nodes[0]->getParentObject(), nullptr);
}

TEST_F(ObjectHelperTest, RemovalTakesOutAnObjectThatIsTwoChildren) {
  auto const nodes = genNodes({"c"});
  add({nodes[0], nodes[0]});
  ObjectHelper::removeAllFromVector(m_parent.get(), m_target);
  EXPECT_EQ(m_parent->getChildCount(), 0U);
  EXPECT_EQ(nodes[0]->getParentObject(), nullptr);
}

TEST_F(ObjectHelperTest, AddsTheTargetToItself) {
  RecordingNode other;
  NodeList nodes = genNodes({"c", "d"});
  ObjectHelper::addToVectorAtEnd(&other, nodes, nodes, std::nullopt, 1, false);
  ASSERT_EQ(nodes.size(), 4U);
  EXPECT_EQ(nodes[2], nodes[0]);
  EXPECT_EQ(nodes[3], nodes[1]);
  EXPECT_THAT(childNamesOf(other), ElementsAre("c", "d"));
}

TEST_F(ObjectHelperTest, RefusesAnEmptyPointer) {
  auto const node = std::make_shared<RecordingNode>("c");
  expectRefusal({node, nullptr}, "ObjectHelper::addToVectorAtEnd: Nullptr add attempted");
  EXPECT_EQ(node->getParentObject(), nullptr);
  EXPECT_EQ(node->getObjectName(), "c");
  EXPECT_EQ(node->getChildId(), -1);
}

TEST_F(ObjectHelperTest, RefusesAChildOfTheParent) {
  expectRefusal({std::make_shared<RecordingNode>("c"), m_target[1]},
                "ObjectHelper::addToVectorAtEnd: Element already exists in child collection");
}

TEST_F(ObjectHelperTest, RefusesAChildOfAnother) {
  auto const nodes = genNodes({"c"});
  addChildren(*m_target[0], nodes);
  m_root->forgetReports();
  m_parent->forgetReports();
  expectRefusal({std::make_shared<RecordingNode>("d"), nodes[0]},
                "ObjectHelper::addToVectorAtEnd: Element is already child of another");
  EXPECT_EQ(nodes[0]->getParentObject(), m_target[0].get());
}

TEST_F(ObjectHelperTest, ChecksTheObjectsInOrder) {
  auto const nodes = genNodes({"c"});
  RecordingNode other;
  addChildren(other, nodes);
  expectRefusal({nodes[0], nullptr, m_target[0]},
                "ObjectHelper::addToVectorAtEnd: Element is already child of another");
  expectRefusal({m_target[0], nodes[0], nullptr},
                "ObjectHelper::addToVectorAtEnd: Element already exists in child collection");
  expectRefusal({nullptr, m_target[0], nodes[0]}, "ObjectHelper::addToVectorAtEnd: Nullptr add attempted");
}

TEST_F(ObjectHelperTest, RefusesWithAnExceptionOfTheHost) {
  static_assert(std::is_base_of_v<KeException, ObjectException>);
  static_assert(std::is_base_of_v<std::exception, KeException>);
  EXPECT_THROW(add({nullptr}), KeException);
}

TEST_F(ObjectHelperTest, AddingChangesNothingWhenMemoryRunsOut) {
  struct Subject {
    std::unique_ptr<RecordingNode> parent = std::make_unique<RecordingNode>("a name that needs a block");
    NodeList target;
    NodeList added = genNodes({"c", "d"});
  };
  auto const result = TestSupport::failEachAllocation(
      [] {
        Subject subject;
        ObjectHelper::addToVectorAtEnd(subject.parent.get(), genNodes({"a", "b"}), subject.target,
                                       std::nullopt, 1, false);
        subject.parent->forgetReports();
        return subject;
      },
      [](Subject& subject) {
        ObjectHelper::addToVectorAtEnd(subject.parent.get(), subject.added, subject.target,
                                       "another name that needs a block", 1, false);
      },
      [](Subject& subject) {
        // The report comes last and may itself run out of memory.
        bool const hasReported = subject.parent->getChildCount() == 4;
        if (!hasReported) {
          EXPECT_THAT(childNamesOf(*subject.parent), ElementsAre("a", "b"));
          EXPECT_EQ(subject.target.size(), 2U);
          for (auto const& node : subject.added) {
            EXPECT_EQ(node->getParentObject(), nullptr);
            EXPECT_EQ(node->getChildId(), -1);
          }
          EXPECT_EQ(subject.added[0]->getObjectName(), "c");
          ObjectHelper::addToVectorAtEnd(subject.parent.get(), subject.added, subject.target, std::nullopt, 1,
                                         false);
        }
        EXPECT_THAT(childIdsOf(*subject.parent), ElementsAre(0, 1, 2, 3));
        EXPECT_EQ(subject.target.size(), 4U);
      });
  EXPECT_GE(result.count, 6U);
  EXPECT_EQ(result.swallowed, 0U);
  EXPECT_EQ(result.leaking, 0U);
}

TEST_F(ObjectHelperTest, RemovesAllInOrderWithAReportEach) {
  auto const nodes = m_target;
  ObjectHelper::removeAllFromVector(m_parent.get(), m_target);
  EXPECT_THAT(m_target, IsEmpty());
  EXPECT_EQ(m_parent->getChildCount(), 0U);
  EXPECT_EQ(nodes[0]->getParentObject(), nullptr);
  constexpr auto childRemoved = static_cast<ObjectTreeChangeReasonEx>(5);
  EXPECT_THAT(m_root->getReports(), ElementsAre(TreeReport{childRemoved, {nodes[0].get()}, false},
                                                TreeReport{childRemoved, {nodes[1].get()}, false}));
}

/// A parent that looks at a list whenever one of its children goes.
class WatchingNode : public RecordingNode {
 public:
  void propagateTreeChanged(ObjectTreeChangeReasonEx /*reason*/,
                            std::shared_ptr<Object> /*object*/) override {
    onRemoval();
  }
  using RecordingNode::propagateTreeChanged;

  std::function<void()> onRemoval;
};

TEST(ObjectHelperRemoval, KeepsEveryElementInTheListUntilAllAreReported) {
  WatchingNode parent;
  NodeList target;
  auto const nodes = genNodes({"a", "b"});
  ObjectHelper::addToVectorAtEnd(&parent, nodes, target, std::nullopt, 1, false);
  std::vector<NodeList> seen;
  parent.onRemoval = [&] { seen.push_back(target); };
  ObjectHelper::removeAllFromVector(&parent, target);
  EXPECT_THAT(seen, ElementsAre(nodes, nodes));
  EXPECT_THAT(target, IsEmpty());
}

TEST(ObjectHelperRemoval, LosesNoElementWhenAReportThrows) {
  WatchingNode parent;
  NodeList target;
  auto const nodes = genNodes({"a", "b"});
  ObjectHelper::addToVectorAtEnd(&parent, nodes, target, std::nullopt, 1, false);
  parent.onRemoval = [] { throw std::runtime_error("report"); };
  EXPECT_THROW(ObjectHelper::removeAllFromVector(&parent, target), std::runtime_error);
  EXPECT_EQ(target, nodes);
  EXPECT_THAT(childNamesOf(parent), ElementsAre("b"));
}

TEST_F(ObjectHelperTest, DetachesAllWithoutReports) {
  auto const nodes = m_target;
  m_target.insert(m_target.begin(), nullptr);
  m_target.push_back(std::make_shared<RecordingNode>("stranger"));
  ObjectHelper::detachAllFromVector(m_parent.get(), m_target);
  EXPECT_THAT(m_target, IsEmpty());
  EXPECT_EQ(m_parent->getChildCount(), 0U);
  EXPECT_EQ(nodes[0]->getParentObject(), nullptr);
  EXPECT_THAT(m_root->getReports(), IsEmpty());
}

TEST_F(ObjectHelperTest, RemovesOnlyWhatTheVectorHolds) {
  addChildren(*m_parent, genNodes({"c"}));
  ObjectHelper::removeAllFromVector(m_parent.get(), m_target);
  EXPECT_THAT(childNamesOf(*m_parent), ElementsAre("c"));
}

TEST_F(ObjectHelperTest, RemovalPassesOverEmptyPointersAndStrangers) {
  m_target.insert(m_target.begin(), nullptr);
  m_target.insert(m_target.begin(), std::make_shared<RecordingNode>("stranger"));
  ObjectHelper::removeAllFromVector(m_parent.get(), m_target);
  EXPECT_THAT(m_target, IsEmpty());
  EXPECT_EQ(m_parent->getChildCount(), 0U);
  EXPECT_EQ(m_root->getReports().size(), 2U);
}

TEST_F(ObjectHelperTest, RemovedObjectsLiveAsLongAsTheyHaveOwners) {
  std::shared_ptr<Object> const kept = m_target[0];
  std::weak_ptr<Object> const dropped = m_target[1];
  ObjectHelper::removeAllFromVector(m_parent.get(), m_target);
  EXPECT_EQ(kept->getObjectName(), "a");
  // The report of the removal only has its address.
  EXPECT_TRUE(dropped.expired());
}

}  // namespace
}  // namespace Kestrel

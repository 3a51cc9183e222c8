#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "VantaService_Parameterization/Object.h"
#include "VantaService_Parameterization/ObjectHelper.h"
#include "VantaService_PersistenceArchiver/ArchiveException.h"
#include "VantaService_PersistenceArchiver/Document.h"
#include "support/DamagedDocument.h"
#include "support/ObjectTestAccess.h"

// The `Object` part of a document: names, child ids and the links of the tree.

namespace Kestrel {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

/// A persistent node that holds its children in a list, which need not be in their order.
class Branch : public Object {
 public:
  Branch() = default;
  explicit Branch(std::string const& name) { setObjectName(name); }

  static void serialization_register(void* record) { fillRegistration<Branch>(record, "Branch", 1); }

  std::vector<std::shared_ptr<Branch>> held;

 private:
  friend class Kestrel::ArchiveAccess;

  void save(PersistenceArchiver& archive, unsigned int /*version*/) const {
    savePart<Object>(archive, *this);
    archive << static_cast<unsigned int>(held.size());
    for (auto const& child : held) savePointer(archive, child);
  }
  void load(PersistenceArchiver& archive, unsigned int /*version*/) {
    loadPart<Object>(archive, *this);
    unsigned int count = 0;
    archive >> count;
    archive.check_container_size(count);
    held.resize(count);
    for (auto& child : held) loadPointer(archive, child);
  }
};

bool const s_isRegistered = registerClass<Branch>() && registerParent<Object, Branch>();

std::shared_ptr<Branch> genBranch(std::vector<std::string> const& childNames) {
  auto parent = std::make_shared<Branch>("parent");
  std::vector<std::shared_ptr<Branch>> children;
  children.reserve(childNames.size());
  for (auto const& name : childNames) children.push_back(std::make_shared<Branch>(name));
  ObjectHelper::addToVectorAtEnd(parent.get(), children, parent->held, std::nullopt, 1, false);
  return parent;
}

std::shared_ptr<Branch> reload(std::shared_ptr<Branch> const& root) {
  return loadDocument<Branch>(genDocument(root));
}

/// "name id" of each child, in order.
std::vector<std::string> childrenOf(Object const& parent) {
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < parent.getChildCount(); ++i) {
    auto const child = parent.getChild(i);
    EXPECT_EQ(child->getParentObject(), &parent);
    EXPECT_EQ(parent.getChildPosition(*child), i);
    texts.push_back(child->getObjectName() + ' ' + std::to_string(child->getChildId()));
  }
  return texts;
}

TEST(ObjectTreePersistence, KeepsNamesAndChildIdsOfTheWholeTree) {
  ASSERT_TRUE(s_isRegistered);
  auto const root = genBranch({"a", "b"});
  auto const below = genBranch({"Spannkraft", "締付力"});
  ObjectHelper::addToVectorAtEnd(root.get(), {below}, root->held, std::nullopt, 1, false);
  auto const read = reload(root);
  EXPECT_EQ(read->getObjectName(), "parent");
  EXPECT_EQ(read->getChildId(), Object::noChildId);
  EXPECT_EQ(read->getParentObject(), nullptr);
  EXPECT_THAT(childrenOf(*read), ElementsAre("a 0", "b 1", "parent 2"));
  EXPECT_THAT(childrenOf(*read->held[2]), ElementsAre("Spannkraft 0", "締付力 1"));
}

TEST(ObjectTreePersistence, KeepsTheOrderOfTheChildrenWhateverTheOrderInWhichTheyAreWritten) {
  auto const root = genBranch({"a", "b", "c", "d"});
  std::swap(root->held[0], root->held[3]);
  std::swap(root->held[1], root->held[2]);
  auto const read = reload(root);
  EXPECT_THAT(childrenOf(*read), ElementsAre("a 0", "b 1", "c 2", "d 3"));
  EXPECT_EQ(read->held[0]->getObjectName(), "d");
}

TEST(ObjectTreePersistence, KeepsTheIdsThatRemovedChildrenHaveLeft) {
  auto const root = genBranch({"a", "b", "c", "d"});
  root->removeChild(root->held[1]);
  ObjectTestAccess::setChildId(*root->held[3], 1000);
  auto const read = reload(root);
  EXPECT_THAT(childrenOf(*read), ElementsAre("a 0", "c 2", "d 1000"));
  EXPECT_EQ(read->held[1]->getParentObject(), nullptr);
  EXPECT_EQ(read->held[1]->getObjectName(), "b");
  EXPECT_EQ(read->held[1]->getChildId(), 1);
}

TEST(ObjectTreePersistence, ClosesTheGapOfAChildThatNobodyWrote) {
  auto const root = genBranch({"a", "b", "c"});
  root->held.erase(root->held.begin() + 1);
  auto const read = reload(root);
  EXPECT_THAT(childrenOf(*read), ElementsAre("a 0", "c 2"));
  std::vector<std::shared_ptr<Branch>> ignored;
  ObjectHelper::addToVectorAtEnd(read.get(), {std::make_shared<Branch>("new")}, ignored, std::nullopt, 1,
                                 false);
  EXPECT_THAT(childrenOf(*read), ElementsAre("a 0", "c 2", "new 3"));
}

TEST(ObjectTreePersistence, ReadsAsATreeThatCanBeChanged) {
  std::vector<std::string> names;
  names.reserve(200);
  for (int i = 0; i < 200; ++i) names.push_back(std::to_string(i));
  auto const read = reload(genBranch(names));
  for (int i = 0; i < 200; i += 2) read->removeChild(read->held[static_cast<std::size_t>(i)]);
  ASSERT_EQ(read->getChildCount(), 100U);
  EXPECT_EQ(read->getChild(99)->getObjectName(), "199");
  EXPECT_EQ(read->getChildPosition(*read->held[51]), 25U);
}

TEST(ObjectTreePersistence, DoesNotLinkAChildWhoseParentIsNotInTheDocument) {
  auto const root = genBranch({"a"});
  auto const read = reload(root->held[0]);
  EXPECT_EQ(read->getObjectName(), "a");
  EXPECT_EQ(read->getChildId(), 0);
  EXPECT_EQ(read->getParentObject(), nullptr);
}

TEST(ObjectTreePersistence, LinksTheChildrenThatAreWrittenAfterTheirParent) {
  auto const parent = genBranch({"before", "after"});
  auto const root = std::make_shared<Branch>("root");
  root->held = {parent->held[0], parent};
  auto const read = reload(root);
  EXPECT_EQ(read->held[0]->getParentObject(), nullptr);
  EXPECT_THAT(childrenOf(*read->held[1]), ElementsAre("after 1"));
}

/// Writes a parent with two child ids and one child, whose links say what the test wants.
std::string genLinkedDocument(unsigned int parentAddress, unsigned int position) {
  BaseClassRegister branch;
  Branch::serialization_register(&branch);
  BaseClassRegister object;
  Object::serialization_register(&object);
  PersistenceArchiver archive;
  auto const writeChild = [&] {
    saveRecord(archive, branch.identifier, [&] {
      saveRecord(archive, object.identifier,
                 [&] { archive << std::string("child") << parentAddress << position << 0U; });
      archive << 0U;
    });
  };
  saveRecord(archive, branch.identifier, [&] {
    saveRecord(archive, object.identifier, [&] { archive << std::string() << 0U << 0U << 2U << 10U << 11U; });
    archive << 2U;
    writeChild();
    writeChild();
  });
  return archive.genDocument();
}

TEST(ObjectTreePersistence, RefusesAParentThatIsNotThere) {
  EXPECT_EQ(damageOf<Branch>(genLinkedDocument(0, 0)), "none");
  EXPECT_THAT(damageOf<Branch>(genLinkedDocument(24, 0)), EndsWith("the parent of the object is not there"));
  EXPECT_THAT(damageOf<Branch>(genLinkedDocument(1000, 0)),
              EndsWith("the parent of the object is not there"));
}

TEST(ObjectTreePersistence, RefusesAPlaceThatIsTakenOrBeyondTheChildren) {
  // The first child takes its place, the second one asks for the same.
  EXPECT_THAT(damageOf<Branch>(genLinkedDocument(29, 1)), HasSubstr("is not free"));
  EXPECT_THAT(damageOf<Branch>(genLinkedDocument(29, 2)), HasSubstr("is not free"));
}

std::shared_ptr<Branch> genChain(int length) {
  auto root = std::make_shared<Branch>();
  auto last = root;
  for (int i = 1; i < length; ++i) {
    ObjectHelper::addToVectorAtEnd(last.get(), {std::make_shared<Branch>()}, last->held, std::nullopt, 1,
                                   false);
    last = last->held[0];
  }
  return root;
}

TEST(ObjectTreePersistence, RefusesToWriteATreeThatIsTooDeepToBeRead) {
  // Each level is a record, and the innermost one has its base part in it.
  EXPECT_EQ(reload(genChain(255))->getChildCount(), 1U);
  EXPECT_THROW(static_cast<void>(genDocument(genChain(256))), std::length_error);
}

}  // namespace
}  // namespace Kestrel

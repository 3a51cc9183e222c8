#include "VantaService_PersistenceArchiver/ClassRegistry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "VantaService_PersistenceArchiver/PersistenceArchiver.h"

namespace Kestrel {
namespace {

// ---- names and identifiers

TEST(ClassRegistryHashes, AreFixedByTheNames) {
  EXPECT_EQ(PersistenceArchiver::getHashForName("Object"), 0xC466335B);
  EXPECT_EQ(PersistenceArchiver::getHashForName("TablePropertyLimit"), 0xF27AFD33);
  EXPECT_EQ(PersistenceArchiver::getHashForName(""), 0x38D394C2);
}

TEST(ClassRegistryHashes, AreNeitherNullNorThatOfNoClass) {
  // The low halves of their XXH3 hashes are 0 and 0xBBAFA6C8.
  EXPECT_EQ(PersistenceArchiver::getHashForName("qcpdmxca"), 1U);
  EXPECT_EQ(PersistenceArchiver::getHashForName("pufoxdia"), 1U);
}

/// Keeps a class registered as long as it lives.
class Registered {
 public:
  explicit Registered(std::string const& name, unsigned int version = 1)
      : m_record(PersistenceArchiver::registerFactory(name, {}, version)),
        m_identifier(PersistenceArchiver::getHashForName(name)) {}
  Registered(Registered const&) = delete;
  Registered& operator=(Registered const&) = delete;
  ~Registered() { PersistenceArchiver::withdrawFactory(m_identifier); }

  [[nodiscard]] BaseClassRegister const& getRecord() const { return *m_record; }

 private:
  BaseClassRegister const* m_record;
  unsigned int m_identifier;
};

TEST(ClassRegistry, GivesAClassItsNameVersionsAndIdentifier) {
  Registered const registered("First", 7);
  auto const& record = registered.getRecord();
  EXPECT_EQ(record.name, "First");
  EXPECT_EQ(record.currentVersion, 7U);
  EXPECT_EQ(record.readVersion, 7U);
  EXPECT_EQ(record.identifier, PersistenceArchiver::getHashForName("First"));
  EXPECT_EQ(record.tracking, 1U);
}

TEST(ClassRegistry, TakesTheVersionOfTheProgramWhereItIsAskedTo) {
  Registered const registered("First", 0xFFFFFFFF);
  EXPECT_EQ(registered.getRecord().currentVersion, 500002U);
  EXPECT_EQ(registered.getRecord().readVersion, 500002U);
}

TEST(ClassRegistry, RefusesANameThatItHas) {
  Registered const registered("First", 7);
  EXPECT_EQ(PersistenceArchiver::registerFactory("First", {}, 8), nullptr);
  EXPECT_EQ(registered.getRecord().currentVersion, 7U);
}

TEST(ClassRegistry, ForgetsAClassWithItsAliases) {
  auto const identifier = PersistenceArchiver::getHashForName("First");
  {
    Registered const first("First");
    Registered const second("Second");
    PersistenceArchiver::registerHash(1001, first.getRecord().identifier);
    PersistenceArchiver::registerHash(1002, first.getRecord().identifier);
    PersistenceArchiver::registerHash(1003, second.getRecord().identifier);
    EXPECT_EQ(PersistenceArchiver::getHashForType(1001), identifier);
    EXPECT_EQ(PersistenceArchiver::getHashForType(1002), identifier);
    PersistenceArchiver::withdrawFactory(identifier);
    EXPECT_EQ(PersistenceArchiver::getHashForType(1001), 0xBBAFA6C8U);
    EXPECT_EQ(PersistenceArchiver::getHashForType(1002), 0xBBAFA6C8U);
    EXPECT_EQ(PersistenceArchiver::getHashForType(1003), PersistenceArchiver::getHashForName("Second"));
    EXPECT_FALSE(PersistenceArchiver().getMapOfClasses().contains(identifier));
    Registered const again("First", 3);
    EXPECT_EQ(PersistenceArchiver().getMapOfClasses().at(identifier).currentVersion, 3U);
  }
  EXPECT_FALSE(ClassRegistry::instance().find(identifier));
}

// ---- casters

struct Left {
  virtual ~Left() = default;
  int left = 1;
};
struct Right {
  virtual ~Right() = default;
  int right = 2;
};
struct Both : Left, Right {
  int both = 3;
};
struct Other {
  virtual ~Other() = default;
  int other = 4;
};
/// Its `Right` part stands neither at its own beginning nor at that of its `Both` part.
struct Deep : Other, Both {};
struct VirtualBoth : virtual Right {
  int own = 5;
};
struct PlainBase {
  int value = 6;
};
struct PlainDerived : Other, PlainBase {};

void* placeOf(void* object) { return object; }

TEST(CasterAccess, ConvertsToABaseThatStandsInsideTheObject) {
  CasterAccess<Right, Both, 1, 0> const caster;
  Both both;
  void* const right = placeOf(static_cast<Right*>(&both));
  ASSERT_NE(right, placeOf(&both));
  EXPECT_EQ(caster.upCast(&both), right);
  EXPECT_EQ(caster.downCast(right), placeOf(&both));
}

TEST(CasterAccess, LeavesNullAsItIs) {
  CasterAccess<Right, Both, 1, 0> const polymorphic;
  EXPECT_EQ(polymorphic.upCast(nullptr), nullptr);
  EXPECT_EQ(polymorphic.downCast(static_cast<void*>(nullptr)), nullptr);
  CasterAccess<PlainBase, PlainDerived, 0, 0> const plain;
  EXPECT_EQ(plain.upCast(nullptr), nullptr);
  EXPECT_EQ(plain.downCast(static_cast<void*>(nullptr)), nullptr);
}

TEST(CasterAccess, KnowsAnObjectOfAnotherClass) {
  CasterAccess<Right, Both, 1, 0> const caster;
  Right right;
  EXPECT_EQ(caster.downCast(placeOf(&right)), nullptr);
}

TEST(CasterAccess, ConvertsWithoutRunTimeClassesAndOutOfVirtualBases) {
  CasterAccess<PlainBase, PlainDerived, 0, 0> const plain;
  PlainDerived object;
  void* const base = placeOf(static_cast<PlainBase*>(&object));
  EXPECT_EQ(plain.upCast(&object), base);
  EXPECT_EQ(plain.downCast(base), placeOf(&object));
  CasterAccess<Right, VirtualBoth, 1, 1> const virtualBase;
  VirtualBoth other;
  void* const right = placeOf(static_cast<Right*>(&other));
  EXPECT_EQ(virtualBase.upCast(&other), right);
  EXPECT_EQ(virtualBase.downCast(right), placeOf(&other));
}

/// Identifiers of classes that have a caster and no registration.
enum : unsigned int { right = 9001, both, deep, unrelated, detour };

template <typename Base, typename Derived>
using Access = CasterAccess<Base, Derived, 1, 0>;

TEST(ClassRegistryCasters, AreTheOnesThatWereAdded) {
  Access<Right, Both> caster;
  EXPECT_EQ(PersistenceArchiver::getCaster(right, both), nullptr);
  EXPECT_TRUE(PersistenceArchiver::registerCaster(right, both, &caster));
  EXPECT_EQ(PersistenceArchiver::getCaster(right, both), &caster);
  EXPECT_EQ(PersistenceArchiver::getCaster(both, right), nullptr);
  EXPECT_EQ(PersistenceArchiver::getCaster(right, unrelated), nullptr);
  EXPECT_EQ(PersistenceArchiver::getCaster(unrelated, both), nullptr);
}

TEST(ClassRegistryCasters, AreAddedOnce) {
  Access<Right, Both> caster;
  Access<Right, Both> again;
  EXPECT_FALSE(PersistenceArchiver::registerCaster(right, both, nullptr));
  EXPECT_TRUE(PersistenceArchiver::registerCaster(right, both, &caster));
  EXPECT_FALSE(PersistenceArchiver::registerCaster(right, both, &again));
  EXPECT_EQ(PersistenceArchiver::getCaster(right, both), &caster);
}

TEST(ClassRegistryCasters, AreWithdrawnWhenTheyAreDestroyed) {
  auto caster = std::make_unique<Access<Right, Both>>();
  Access<Both, Deep> other;
  ASSERT_TRUE(PersistenceArchiver::registerCaster(right, both, caster.get()));
  ASSERT_TRUE(PersistenceArchiver::registerCaster(both, deep, &other));
  ASSERT_NE(PersistenceArchiver::getCaster(right, deep), nullptr);
  caster.reset();
  EXPECT_EQ(PersistenceArchiver::getCaster(right, both), nullptr);
  EXPECT_EQ(PersistenceArchiver::getCaster(right, deep), nullptr);
  EXPECT_EQ(PersistenceArchiver::getCaster(both, deep), &other);
}

TEST(ClassRegistryCasters, AreFoundByTheHashOfAClassThatIsRegisteredLater) {
  constexpr unsigned int hash = 9100;
  Access<Right, Both> caster;
  Access<Right, Both> again;
  ASSERT_TRUE(PersistenceArchiver::registerCaster(right, hash, &caster));
  Registered const registered("First");
  auto const identifier = registered.getRecord().identifier;
  PersistenceArchiver::registerHash(hash, identifier);
  EXPECT_EQ(PersistenceArchiver::getCaster(right, identifier), &caster);
  EXPECT_EQ(PersistenceArchiver::getCaster(right, hash), &caster);
  EXPECT_FALSE(PersistenceArchiver::registerCaster(right, identifier, &again));
}

TEST(ClassRegistryCasters, ArePutTogetherOverFurtherClasses) {
  Access<Right, Both> upper;
  Access<Both, Deep> lower;
  ASSERT_TRUE(PersistenceArchiver::registerCaster(both, deep, &lower));
  ASSERT_TRUE(PersistenceArchiver::registerCaster(right, both, &upper));
  auto const* const chain = PersistenceArchiver::getCaster(right, deep);
  ASSERT_NE(chain, nullptr);
  EXPECT_EQ(PersistenceArchiver::getCaster(right, deep), chain) << "is made once";

  Deep object;
  void* const part = placeOf(static_cast<Right*>(&object));
  ASSERT_NE(part, placeOf(static_cast<Both*>(&object)));
  ASSERT_NE(part, placeOf(&object));
  EXPECT_EQ(chain->upCast(&object), part);
  EXPECT_EQ(chain->downCast(part), placeOf(&object));
  EXPECT_EQ(chain->upCast(nullptr), nullptr);
  EXPECT_EQ(chain->downCast(static_cast<void*>(nullptr)), nullptr);
  Both other;
  EXPECT_EQ(chain->downCast(placeOf(static_cast<Right*>(&other))), nullptr) << "is no Deep";
  Right another;
  EXPECT_EQ(chain->downCast(placeOf(&another)), nullptr) << "is not even a Both";
}

/// Notes that it was used.
class NotingCaster final : public Caster {
 public:
  NotingCaster(char name, std::string& used) : m_name(name), m_used(used) {}
  void* upCast(void* derived) const override { return note(derived); }
  void* downCast(void* base) const override { return note(base); }

 private:
  void* note(void* object) const {
    m_used += m_name;
    return object;
  }

  char m_name;
  std::string& m_used;
};

TEST(ClassRegistryCasters, TakeTheShortestWay) {
  std::string used;
  NotingCaster a('a', used);
  NotingCaster b('b', used);
  NotingCaster c('c', used);
  NotingCaster d('d', used);
  // right - a - detour - b - both - c - deep, and d from right to both.
  ASSERT_TRUE(PersistenceArchiver::registerCaster(right, detour, &a));
  ASSERT_TRUE(PersistenceArchiver::registerCaster(detour, both, &b));
  ASSERT_TRUE(PersistenceArchiver::registerCaster(both, deep, &c));
  int object = 0;
  static_cast<void>(PersistenceArchiver::getCaster(right, deep)->downCast(placeOf(&object)));
  EXPECT_EQ(used, "abc");
  static_cast<void>(PersistenceArchiver::getCaster(right, deep)->upCast(&object));
  EXPECT_EQ(used, "abccba");
  used.clear();
  static_cast<void>(PersistenceArchiver::getCaster(detour, deep)->downCast(placeOf(&object)));
  EXPECT_EQ(used, "bc");
  used.clear();
  ASSERT_TRUE(PersistenceArchiver::registerCaster(right, both, &d));
  static_cast<void>(PersistenceArchiver::getCaster(right, both)->downCast(placeOf(&object)));
  EXPECT_EQ(used, "d");
}

TEST(ClassRegistryCasters, TakeTheShorterOfTwoWaysWhateverCameFirst) {
  std::string used;
  NotingCaster a('a', used);
  NotingCaster b('b', used);
  NotingCaster c('c', used);
  NotingCaster d('d', used);
  ASSERT_TRUE(PersistenceArchiver::registerCaster(right, detour, &a));
  ASSERT_TRUE(PersistenceArchiver::registerCaster(detour, both, &b));
  ASSERT_TRUE(PersistenceArchiver::registerCaster(right, both, &d));
  ASSERT_TRUE(PersistenceArchiver::registerCaster(both, deep, &c));
  int object = 0;
  static_cast<void>(PersistenceArchiver::getCaster(right, deep)->downCast(placeOf(&object)));
  EXPECT_EQ(used, "dc");
}

}  // namespace
}  // namespace Kestrel

#include "Business_TableProperties/TablePropertiesData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <pthread.h>

#include <algorithm>
#include <boost/endian/conversion.hpp>
#include <boost/uuid/uuid.hpp>
#include <latch>
#include <stdexcept>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "support/AllocationFailure.h"
#include "support/RecordingNode.h"
#include "support/TablePropertiesDataTestAccess.h"

// The sanitizers have a pthread_mutex_lock of their own.
#if !defined(__SANITIZE_THREAD__) && !defined(__SANITIZE_ADDRESS__) && !defined(__clang__)
#define KESTREL_COUNTS_LOCKS

namespace {
thread_local std::size_t s_locks = 0;  ///< mutexes that this thread has locked
}

extern "C" [[gnu::visibility("default")]] int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
  static auto* const lock =
      reinterpret_cast<int (*)(pthread_mutex_t*)>(::dlsym(RTLD_NEXT, "pthread_mutex_lock"));
  ++s_locks;
  return lock(mutex);
}
#endif

namespace Kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::RecordingNode;

using Access = TablePropertiesDataTestAccess;
using Ids = std::vector<SimulationUnitId>;
using LimitList = std::vector<std::shared_ptr<TablePropertyLimit>>;
using Type = TablePropertyLimitType;

/// Identifiers in the order of their numbers.
SimulationUnitId unit(unsigned int number) {
  boost::uuids::uuid uuid{};
  boost::endian::store_big_u32(uuid.data, number);
  return SimulationUnitId(GUIdentifier(uuid));
}

/// The default set of a unit: type, value and unit text.
std::vector<std::tuple<unsigned int, double, std::string>> const defaults{
    {1, 500.0, "N"},  {2, 1.0, "mm"},   {3, 1.0, "mm"},   {4, 1.0, "mm"},   {5, 500.0, "N"}, {6, 500.0, "N"},
    {7, 500.0, "N"},  {8, 500.0, "N"},  {9, 1.0, "mm"},   {19, 500.0, "N"}, {23, 30.0, "N"}, {20, 500.0, "N"},
    {21, 500.0, "N"}, {22, 500.0, "N"}, {18, 500.0, "N"}, {17, 1.0, "mm"}};

// First, because it needs a process in which nothing has filled the table yet.
TEST(TablePropertiesDataDefaults, AreFilledOnceWhoeverComesFirstAlsoAfterAFailure) {
  {
    TestSupport::AllocationFailure const failure(0);
    EXPECT_THROW((void)Access::initDefaultLimits(), std::bad_alloc);
  }
  constexpr std::size_t threadCount = 64;
  std::latch start(threadCount);
  std::vector<void const*> tables(threadCount);
  std::vector<std::size_t> sizes(threadCount);
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < threadCount; ++i)
    threads.emplace_back([&, i] {
      start.arrive_and_wait();
      auto const& table = Access::initDefaultLimits();
      tables[i] = &table;
      sizes[i] = table.size();
    });
  for (auto& thread : threads) thread.join();
  EXPECT_THAT(tables, testing::Each(&Access::initDefaultLimits()));
  EXPECT_THAT(sizes, testing::Each(16U));
}

TEST(TablePropertiesDataDefaults, AreTheseRowsInThisOrder) {
  std::vector<std::tuple<unsigned int, double, std::string>> rows;
  for (auto const& [type, limit, text] : Access::initDefaultLimits())
    rows.emplace_back(static_cast<unsigned int>(type), limit, text);
  EXPECT_EQ(rows, defaults);
}

/// A collection below a root that keeps the reports.
class TablePropertiesDataTest : public testing::Test {
 protected:
  TablePropertiesDataTest() {
    std::vector<std::shared_ptr<TablePropertiesData>> ignored;
    ObjectHelper::addToVectorAtEnd(m_root.get(), {m_data}, ignored, std::nullopt, 1, false);
    m_root->forgetReports();
  }

  [[nodiscard]] LimitList& limits() const { return Access::limits(*m_data); }

  [[nodiscard]] double limitOf(unsigned int number, Type type) const {
    return m_data->getLimit(unit(number), type)->getLimit();
  }

  void addLimit(unsigned int number, Type type, double value) {
    ObjectHelper::addToVectorAtEnd(m_data.get(),
                                   {std::make_shared<TablePropertyLimit>(type, unit(number), value, "N")},
                                   limits(), std::nullopt, 1, false);
  }

  /// Expects that the limits are those of `numbers` in order, each with one full default set.
  void expectDefaultSets(std::vector<unsigned int> const& numbers) const {
    ASSERT_EQ(limits().size(), 16 * numbers.size());
    for (std::size_t i = 0; i < limits().size(); ++i) {
      SCOPED_TRACE(i);
      auto const& [type, value, text] = defaults[i % 16];
      EXPECT_EQ(static_cast<unsigned int>(limits()[i]->getType()), type);
      EXPECT_EQ(limits()[i]->getLimit(), value);
      EXPECT_EQ(limits()[i]->getUnitString(), text);
      EXPECT_EQ(limits()[i]->getSimUnitID(), unit(numbers[i / 16]));
      EXPECT_EQ(limits()[i]->getLimitDisplayName(), "");
    }
  }

  /// Expects that the children of the collection are its limits, named and with ids from 0 on.
  void expectLimitsAreTheChildren() const {
    ASSERT_EQ(m_data->getChildCount(), limits().size());
    for (std::size_t i = 0; i < limits().size(); ++i) {
      SCOPED_TRACE(i);
      EXPECT_EQ(m_data->getChild(i), limits()[i]);
      EXPECT_EQ(limits()[i]->getParentObject(), m_data.get());
      EXPECT_EQ(limits()[i]->getObjectName(), "TablePropertyLimit");
      EXPECT_EQ(limits()[i]->getChildId(), static_cast<int>(i));
    }
  }

  /// Numbers of objects in the reports that the root got: additions positive, removals negative.
  [[nodiscard]] std::vector<int> reportSizes() const {
    std::vector<int> sizes;
    for (auto const& report : m_root->getReports()) {
      int const size = static_cast<int>(report.objects.size());
      sizes.push_back(report.reason == static_cast<ObjectTreeChangeReasonEx>(4) ? size : -size);
    }
    return sizes;
  }

  std::shared_ptr<RecordingNode> m_root = std::make_shared<RecordingNode>("root");
  std::shared_ptr<TablePropertiesData> m_data = std::make_shared<TablePropertiesData>();
};

TEST_F(TablePropertiesDataTest, IsNewWithoutLimitsInTheCurrentVersion) {
  EXPECT_THAT(limits(), IsEmpty());
  EXPECT_FALSE(Access::hasAnyLimits(*m_data));
  EXPECT_EQ(Access::dataVersion(*m_data), 25);
  EXPECT_EQ(m_data->getLimit(unit(1), Type::PilotForce), nullptr);
}

TEST_F(TablePropertiesDataTest, GivesNewUnitsTheDefaultsInTheGivenOrder) {
  m_data->updateLimits({unit(2), unit(1)});
  EXPECT_TRUE(Access::hasAnyLimits(*m_data));
  expectDefaultSets({2, 1});
  expectLimitsAreTheChildren();
  EXPECT_THAT(reportSizes(), ElementsAre(16, 16));
}

TEST_F(TablePropertiesDataTest, OfNoUnitsStaysEmpty) {
  m_data->updateLimits({});
  EXPECT_FALSE(Access::hasAnyLimits(*m_data));
  EXPECT_THAT(m_root->getReports(), IsEmpty());
}

TEST_F(TablePropertiesDataTest, FindsALimitByUnitAndType) {
  m_data->updateLimits({unit(1), unit(2)});
  EXPECT_EQ(m_data->getLimit(unit(1), Type::JoiningTongNormalForce), limits()[0]);
  EXPECT_EQ(m_data->getLimit(unit(2), Type::BoltNormalForce), limits()[26]);
  EXPECT_EQ(m_data->getLimit(unit(2), Type::SuctionDistance), limits()[31]);
}

TEST_F(TablePropertiesDataTest, FindsNothingForUnknownUnitsAndTypesWithoutLimit) {
  m_data->updateLimits({unit(1)});
  EXPECT_EQ(m_data->getLimit(unit(2), Type::PilotForce), nullptr);
  EXPECT_EQ(m_data->getLimit(SimulationUnitId(), Type::PilotForce), nullptr);
  for (unsigned int const type : {0U, 10U, 11U, 12U, 13U, 14U, 15U, 16U, 24U, 25U, 33U, 4294967295U})
    EXPECT_EQ(m_data->getLimit(unit(1), static_cast<Type>(type)), nullptr) << type;
}

TEST_F(TablePropertiesDataTest, FindsTheFirstOfSeveralLimitsOfOneType) {
  addLimit(1, Type::PilotForce, 1.0);
  addLimit(1, Type::PilotForce, 2.0);
  Access::setupLimitsAccessMap(*m_data);
  EXPECT_EQ(limitOf(1, Type::PilotForce), 1.0);
}

TEST_F(TablePropertiesDataTest, FindsATypeWithoutDefaultWhenADocumentHeldIt) {
  addLimit(1, Type::ClampClosingForce, 77.0);
  Access::setupLimitsAccessMap(*m_data);
  EXPECT_EQ(limitOf(1, Type::ClampClosingForce), 77.0);
}

TEST_F(TablePropertiesDataTest, KeepsSurvivorsDropsTheGoneAndAppendsTheNew) {
  m_data->updateLimits({unit(3), unit(1), unit(2)});
  m_data->getLimit(unit(3), Type::PilotForce)->setLimit(42.0);
  std::weak_ptr<TablePropertyLimit> const gone = m_data->getLimit(unit(1), Type::PilotForce);
  auto const kept = m_data->getLimit(unit(3), Type::PilotForce);
  m_root->forgetReports();

  m_data->updateLimits({unit(3), unit(0), unit(2), unit(9)});

  EXPECT_EQ(m_data->getLimit(unit(3), Type::PilotForce), kept);
  EXPECT_EQ(limitOf(3, Type::PilotForce), 42.0);
  EXPECT_TRUE(gone.expired());
  EXPECT_EQ(m_data->getLimit(unit(1), Type::PilotForce), nullptr);
  kept->setLimit(500.0);
  // Survivors by identifier, then the new ones as they were given.
  expectDefaultSets({2, 3, 0, 9});
  expectLimitsAreTheChildren();
  std::vector<int> expected(48, -1);
  expected.insert(expected.end(), {16, 16, 16, 16});
  EXPECT_EQ(reportSizes(), expected);
}

TEST_F(TablePropertiesDataTest, DetachesAndAdoptsEveryLimitAgainForTheSameUnits) {
  m_data->updateLimits({unit(2), unit(1)});
  m_data->getLimit(unit(1), Type::SteelForce)->setLimit(-3.0);
  auto const limitsOfUnit1 = LimitList(limits().begin() + 16, limits().end());
  for (auto const& limit : limitsOfUnit1) EXPECT_GE(limit->getChildId(), 16);
  Access::limitsAccessMap(*m_data)[unit(1)].reserve(1000);
  m_root->forgetReports();

  m_data->updateLimits({unit(2), unit(1)});

  EXPECT_EQ(limitOf(1, Type::SteelForce), -3.0);
  EXPECT_TRUE(std::equal(limitsOfUnit1.begin(), limitsOfUnit1.end(), limits().begin()));
  expectLimitsAreTheChildren();
  std::vector<int> expected(32, -1);
  expected.insert(expected.end(), {16, 16});
  EXPECT_EQ(reportSizes(), expected);
  // The map is still the one that was given room before.
  EXPECT_GE(Access::limitsAccessMap(*m_data)[unit(1)].capacity(), 1000U);
}

TEST_F(TablePropertiesDataTest, RebuildsTheMapWhenUnitsComeOrGo) {
  m_data->updateLimits({unit(1), unit(2)});
  m_data->updateLimits({unit(1)});
  EXPECT_EQ(Access::limitsAccessMap(*m_data).size(), 1U);
  EXPECT_EQ(Access::limitsAccessMap(*m_data)[unit(1)], limits());
  m_data->updateLimits({unit(1), unit(3)});
  EXPECT_EQ(Access::limitsAccessMap(*m_data).size(), 2U);
  EXPECT_EQ(Access::limitsAccessMap(*m_data)[unit(3)], LimitList(limits().begin() + 16, limits().end()));
}

TEST_F(TablePropertiesDataTest, EmptiesTheMapBeforeItFillsIt) {
  m_data->updateLimits({unit(1)});
  std::weak_ptr<TablePropertyLimit> const inMapAlone = limits()[0];
  for (auto& limit : limits()) m_data->removeChild(std::exchange(limit, nullptr));
  limits()[0] = std::make_shared<TablePropertyLimit>(Type::PilotForce, unit(2), 42.0, "N");
  {
    TestSupport::AllocationFailure const failure(0);
    EXPECT_THROW(Access::setupLimitsAccessMap(*m_data), std::bad_alloc);
  }
  EXPECT_TRUE(inMapAlone.expired());
  EXPECT_THAT(Access::limitsAccessMap(*m_data), IsEmpty());
  Access::setupLimitsAccessMap(*m_data);
  EXPECT_EQ(limitOf(2, Type::PilotForce), 42.0);
}

TEST_F(TablePropertiesDataTest, HoldsItsThreeFieldsSideBySideInOrder) {
  auto const* const begin = reinterpret_cast<char const*>(&limits());
  EXPECT_EQ(reinterpret_cast<char const*>(&Access::limitsAccessMap(*m_data)) - begin, 24);
  EXPECT_EQ(reinterpret_cast<char const*>(&Access::dataVersion(*m_data)) - begin, 72);
  EXPECT_EQ(begin - reinterpret_cast<char const*>(m_data.get()), sizeof(Object));
}

TEST_F(TablePropertiesDataTest, OfAnEmptyListLosesAllLimits) {
  m_data->updateLimits({unit(1), unit(2)});
  std::weak_ptr<TablePropertyLimit> const gone = m_data->getLimit(unit(2), Type::PilotForce);
  m_data->updateLimits({});
  EXPECT_FALSE(Access::hasAnyLimits(*m_data));
  EXPECT_EQ(m_data->getChildCount(), 0U);
  EXPECT_TRUE(gone.expired());
  EXPECT_EQ(m_data->getLimit(unit(2), Type::PilotForce), nullptr);
  EXPECT_THAT(Access::limitsAccessMap(*m_data), IsEmpty());
}

TEST_F(TablePropertiesDataTest, LeavesADroppedLimitToWhoHoldsIt) {
  m_data->updateLimits({unit(1)});
  auto const held = m_data->getLimit(unit(1), Type::PilotForce);
  held->setLimit(42.0);
  m_data->updateLimits({unit(2)});
  EXPECT_EQ(held->getLimit(), 42.0);
  EXPECT_EQ(held->getParentObject(), nullptr);
}

TEST_F(TablePropertiesDataTest, GivesANewUnitThatIsListedTwiceTwoSets) {
  m_data->updateLimits({unit(1)});
  m_data->updateLimits({unit(2), unit(1), unit(2)});
  expectDefaultSets({1, 2, 2});
  expectLimitsAreTheChildren();
  EXPECT_EQ(m_data->getLimit(unit(2), Type::JoiningTongNormalForce), limits()[16]);
}

TEST_F(TablePropertiesDataTest, GivesAUnitThatIsListedTwiceTwoSetsAlsoAtFirst) {
  m_data->updateLimits({unit(1), unit(1)});
  expectDefaultSets({1, 1});
}

TEST_F(TablePropertiesDataTest, KeepsOneSetForAKnownUnitThatIsListedTwice) {
  m_data->updateLimits({unit(1)});
  m_data->updateLimits({unit(1), unit(1)});
  expectDefaultSets({1});
}

TEST_F(TablePropertiesDataTest, KeepsBothSetsOfAUnitThatHasTwo) {
  m_data->updateLimits({unit(1), unit(1)});
  m_data->updateLimits({unit(1), unit(2)});
  expectDefaultSets({1, 1, 2});
}

TEST_F(TablePropertiesDataTest, SetsUpAfreshWhenAllUnitsWereGone) {
  m_data->updateLimits({unit(1)});
  m_data->getLimit(unit(1), Type::PilotForce)->setLimit(42.0);
  m_data->updateLimits({});
  m_data->updateLimits({unit(2), unit(1)});
  expectDefaultSets({2, 1});
}

TEST_F(TablePropertiesDataTest, ReplacesAllLimitsWhenItIsSetUpAgain) {
  m_data->updateLimits({unit(1), unit(2)});
  m_data->getLimit(unit(1), Type::PilotForce)->setLimit(42.0);
  Access::setupLimits(*m_data, {unit(3), unit(1)});
  expectDefaultSets({3, 1});
  expectLimitsAreTheChildren();
  EXPECT_EQ(limitOf(1, Type::PilotForce), 500.0);
  EXPECT_EQ(m_data->getLimit(unit(2), Type::PilotForce), nullptr);
}

TEST_F(TablePropertiesDataTest, AppendsASetWithoutTouchingTheMap) {
  m_data->updateLimits({unit(1)});
  Access::setupLimitsForSimUnit(*m_data, unit(2));
  Access::setupLimitsForSimUnit(*m_data, unit(1));
  expectDefaultSets({1, 2, 1});
  expectLimitsAreTheChildren();
  EXPECT_EQ(m_data->getLimit(unit(2), Type::PilotForce), nullptr);
  EXPECT_EQ(Access::limitsAccessMap(*m_data)[unit(1)].size(), 16U);
  Access::setupLimitsAccessMap(*m_data);
  EXPECT_EQ(m_data->getLimit(unit(2), Type::JoiningTongNormalForce), limits()[16]);
  EXPECT_EQ(Access::limitsAccessMap(*m_data)[unit(1)].size(), 32U);
}

TEST_F(TablePropertiesDataTest, FindsRemovedLimitsThroughTheMapUntilItIsRebuilt) {
  m_data->updateLimits({unit(1)});
  m_data->getLimit(unit(1), Type::PilotForce)->setLimit(42.0);
  ObjectHelper::removeAllFromVector(m_data.get(), limits());
  EXPECT_EQ(limitOf(1, Type::PilotForce), 42.0);
  EXPECT_EQ(m_data->getLimit(unit(1), Type::PilotForce)->getParentObject(), nullptr);
  Access::setupLimitsAccessMap(*m_data);
  EXPECT_EQ(m_data->getLimit(unit(1), Type::PilotForce), nullptr);
}

TEST_F(TablePropertiesDataTest, KeepsTheLimitsOfAUnitInListOrderInTheMap) {
  addLimit(2, Type::PilotForce, 1.0);
  addLimit(1, Type::SteelForce, 2.0);
  addLimit(2, Type::JoinNormalForce, 3.0);
  Access::setupLimitsAccessMap(*m_data);
  auto const& map = Access::limitsAccessMap(*m_data);
  ASSERT_EQ(map.size(), 2U);
  EXPECT_EQ(map.begin()->first, unit(1));
  EXPECT_THAT(map.begin()->second, ElementsAre(limits()[1]));
  EXPECT_THAT(map.rbegin()->second, ElementsAre(limits()[0], limits()[2]));
}

TEST_F(TablePropertiesDataTest, SynchronizesTheUnitsOfTheMapNotOfTheList) {
  m_data->updateLimits({unit(1)});
  Access::setupLimitsForSimUnit(*m_data, unit(2));
  auto const notInMap = limits()[16];
  Access::synchronizeLimits(*m_data, {unit(1), unit(2)});
  expectDefaultSets({1, 2});
  EXPECT_NE(limits()[16], notInMap);
}

TEST_F(TablePropertiesDataTest, SurvivesEmptyPointersAndALimitThatIsHeldTwice) {
  addLimit(1, Type::PilotForce, 42.0);
  limits().push_back(nullptr);
  limits().push_back(limits()[0]);
  Access::setupLimitsAccessMap(*m_data);
  EXPECT_EQ(limitOf(1, Type::PilotForce), 42.0);
  m_data->updateLimits({unit(1)});
  ASSERT_EQ(limits().size(), 2U);
  EXPECT_EQ(limits()[0], limits()[1]);
  EXPECT_EQ(limits()[0]->getLimit(), 42.0);
  EXPECT_EQ(m_data->getChildCount(), 2U);
}

TEST_F(TablePropertiesDataTest, LeavesALimitThatOutlivesItWithoutParent) {
  m_data->updateLimits({unit(1)});
  auto const held = m_data->getLimit(unit(1), Type::PilotForce);
  std::weak_ptr<TablePropertyLimit> const notHeld = m_data->getLimit(unit(1), Type::SteelForce);
  m_root.reset();
  m_data.reset();
  EXPECT_EQ(held->getParentObject(), nullptr);
  held->setLimit(1.0);
  EXPECT_EQ(held->getLimit(), 1.0);
  EXPECT_TRUE(notHeld.expired());
}

#ifdef KESTREL_COUNTS_LOCKS
TEST_F(TablePropertiesDataTest, LocksTheDefaultsOncePerOperation) {
  auto const locksOf = [](auto const& operate) {
    s_locks = 0;
    operate();
    return s_locks;
  };
  EXPECT_EQ(locksOf([&] { m_data->updateLimits({unit(1), unit(2), unit(3)}); }), 1U);
  EXPECT_EQ(locksOf([&] { m_data->updateLimits({unit(1), unit(4), unit(5)}); }), 1U);
  EXPECT_EQ(locksOf([&] { m_data->updateLimits({unit(1), unit(4), unit(5)}); }), 0U);
  Access::dataVersion(*m_data) = 24;
  EXPECT_EQ(locksOf([&] { Access::extendLimits(*m_data); }), 1U);
  Access::dataVersion(*m_data) = 26;
  EXPECT_EQ(locksOf([&] { Access::extendLimits(*m_data); }), 1U);
  EXPECT_EQ(locksOf([&] { Access::setupLimitsAccessMap(*m_data); }), 0U);
}
#endif

class TablePropertiesDataExtension : public TablePropertiesDataTest {
 protected:
  void extendFrom(std::int32_t version) {
    Access::dataVersion(*m_data) = version;
    m_root->forgetReports();
    Access::extendLimits(*m_data);
    EXPECT_EQ(Access::dataVersion(*m_data), 25);
  }

  [[nodiscard]] std::vector<std::pair<unsigned int, unsigned int>> typesAndUnits() const {
    std::vector<std::pair<unsigned int, unsigned int>> result;
    for (auto const& limit : limits())
      for (unsigned int number = 0; number < 4; ++number)
        if (limit->getSimUnitID() == unit(number))
          result.emplace_back(static_cast<unsigned int>(limit->getType()), number);
    return result;
  }
};

TEST_F(TablePropertiesDataExtension, AddsTheMissingTypesOfAnOlderDocument) {
  addLimit(1, Type::JoiningTongNormalForce, 123.0);
  Access::setupLimitsAccessMap(*m_data);
  extendFrom(20);
  ASSERT_EQ(limits().size(), 16U);
  EXPECT_EQ(limitOf(1, Type::JoiningTongNormalForce), 123.0);
  limits()[0]->setLimit(500.0);
  expectDefaultSets({1});
  EXPECT_EQ(limitOf(1, Type::BoltNormalForce), 30.0);
  EXPECT_EQ(limits()[15]->getObjectName(), "TablePropertyLimit");
  EXPECT_EQ(limits()[15]->getChildId(), 15);
  EXPECT_THAT(reportSizes(), ElementsAre(15));
}

TEST_F(TablePropertiesDataExtension, AddsTypeByTypeAndByUnitWithinAType) {
  // Unit 2 lacks the types 1, 22 and 17; unit 1 has only a type that has no default.
  for (unsigned int const type : {2U, 3U, 4U, 5U, 6U, 7U, 8U, 9U, 19U, 23U, 20U, 21U, 18U})
    addLimit(2, static_cast<Type>(type), 7.0);
  addLimit(1, Type::ClampingToolForce, 7.0);
  Access::setupLimitsAccessMap(*m_data);
  extendFrom(24);
  auto const all = typesAndUnits();
  std::vector<std::pair<unsigned int, unsigned int>> const added(all.begin() + 14, all.end());
  EXPECT_THAT(added,
              ElementsAre(std::pair(1U, 1U), std::pair(1U, 2U), std::pair(2U, 1U), std::pair(3U, 1U),
                          std::pair(4U, 1U), std::pair(5U, 1U), std::pair(6U, 1U), std::pair(7U, 1U),
                          std::pair(8U, 1U), std::pair(9U, 1U), std::pair(19U, 1U), std::pair(23U, 1U),
                          std::pair(20U, 1U), std::pair(21U, 1U), std::pair(22U, 1U), std::pair(22U, 2U),
                          std::pair(18U, 1U), std::pair(17U, 1U), std::pair(17U, 2U)));
  EXPECT_THAT(reportSizes(), ElementsAre(19));
  EXPECT_EQ(limitOf(2, Type::PilotForce), 7.0);
  EXPECT_EQ(limitOf(2, Type::SuctionDistance), 1.0);
  EXPECT_EQ(limitOf(1, Type::ClampingToolForce), 7.0);
}

TEST_F(TablePropertiesDataExtension, DoesNotTakeAnUnknownTypeForADefaultOne) {
  addLimit(1, static_cast<Type>(33), 7.0);
  addLimit(1, static_cast<Type>(4294967295U), 7.0);
  Access::setupLimitsAccessMap(*m_data);
  extendFrom(0);
  EXPECT_EQ(limits().size(), 18U);
  EXPECT_EQ(limitOf(1, Type::JoiningTongNormalForce), 500.0);
}

TEST_F(TablePropertiesDataExtension, AddsNothingToADocumentWithoutLimits) {
  extendFrom(0);
  EXPECT_THAT(limits(), IsEmpty());
  EXPECT_THAT(m_root->getReports(), IsEmpty());
  m_data->updateLimits({unit(1)});
  expectDefaultSets({1});
}

TEST_F(TablePropertiesDataExtension, AddsNothingToACompleteOlderDocument) {
  m_data->updateLimits({unit(1)});
  m_data->getLimit(unit(1), Type::PilotForce)->setLimit(42.0);
  extendFrom(-1);
  EXPECT_EQ(limits().size(), 16U);
  EXPECT_EQ(limitOf(1, Type::PilotForce), 42.0);
  EXPECT_THAT(m_root->getReports(), IsEmpty());
}

TEST_F(TablePropertiesDataExtension, LeavesTheCurrentVersionAlone) {
  addLimit(1, Type::PilotForce, 42.0);
  Access::setupLimitsAccessMap(*m_data);
  extendFrom(25);
  EXPECT_EQ(limits().size(), 1U);
  EXPECT_EQ(limitOf(1, Type::PilotForce), 42.0);
}

TEST_F(TablePropertiesDataExtension, ReplacesEachLimitOfALaterDocumentByASetOfDefaults) {
  addLimit(1, Type::PilotForce, 42.0);
  addLimit(1, Type::ClampClosingForce, 42.0);
  extendFrom(30);
  expectDefaultSets({1, 1});
  expectLimitsAreTheChildren();
  EXPECT_EQ(limitOf(1, Type::PilotForce), 500.0);
  EXPECT_EQ(m_data->getLimit(unit(1), Type::ClampClosingForce), nullptr);
  EXPECT_THAT(reportSizes(), ElementsAre(-1, -1, 16, 16));
}

TEST_F(TablePropertiesDataExtension, GoesByTheOrderOfTheLimitsOfALaterDocument) {
  addLimit(2, Type::PilotForce, 42.0);
  addLimit(1, Type::PilotForce, 42.0);
  limits().push_back(nullptr);
  addLimit(2, Type::SteelForce, 42.0);
  extendFrom(26);
  expectDefaultSets({2, 1, 2});
}

/// Two of three units stay, with values of the user, and a new one comes.
struct Update {
  std::unique_ptr<TablePropertiesData> data = std::make_unique<TablePropertiesData>();

  Update() {
    data->updateLimits({unit(1), unit(2), unit(3)});
    data->getLimit(unit(1), Type::PilotForce)->setLimit(42.0);
    data->getLimit(unit(3), Type::SuctionDistance)->setLimit(43.0);
  }
  void operator()() const { data->updateLimits({unit(3), unit(4), unit(1)}); }
};

TEST(TablePropertiesDataMemory, KeepsTheUsersValuesWhereverAnUpdateFails) {
  Update const first;  // makes what is made once per process
  auto const result = TestSupport::failEachAllocation(
      [] { return Update(); }, [](Update& update) { update(); },
      [](Update& update) {
        TablePropertiesData& data = *update.data;
        auto const& limits = Access::limits(data);
        EXPECT_EQ(std::count(limits.begin(), limits.end(), data.getLimit(unit(1), Type::PilotForce)), 1);
        EXPECT_EQ(std::count(limits.begin(), limits.end(), data.getLimit(unit(3), Type::SuctionDistance)), 1);
        update();
        EXPECT_EQ(data.getLimit(unit(1), Type::PilotForce)->getLimit(), 42.0);
        EXPECT_EQ(data.getLimit(unit(3), Type::SuctionDistance)->getLimit(), 43.0);
        EXPECT_EQ(data.getLimit(unit(4), Type::PilotForce)->getLimit(), 500.0);
        EXPECT_EQ(data.getLimit(unit(2), Type::PilotForce), nullptr);
        EXPECT_EQ(Access::limits(data).size(), 48U);
        EXPECT_EQ(data.getChildCount(), 48U);
      });
  // At least one allocation per new limit.
  EXPECT_GE(result.count, 32U);
  EXPECT_EQ(result.swallowed, 0U);
  EXPECT_EQ(result.leaking, 0U);
}

TEST(TablePropertiesDataMemory, CompletesTheFirstUpdateAfterItFailedAnywhere) {
  Update const first;  // makes what is made once per process
  auto const result = TestSupport::failEachAllocation(
      [] { return std::make_unique<TablePropertiesData>(); },
      [](auto& data) {
        data->updateLimits({unit(2), unit(1)});
      },
      [](auto& data) {
        data->updateLimits({unit(2), unit(1)});
        EXPECT_EQ(data->getLimit(unit(1), Type::PilotForce)->getLimit(), 500.0);
        EXPECT_EQ(Access::limits(*data).size(), 32U);
        EXPECT_EQ(data->getChildCount(), 32U);
        EXPECT_EQ(data->getChild(0), data->getLimit(unit(2), Type::JoiningTongNormalForce));
      });
  EXPECT_GE(result.count, 32U);
  EXPECT_EQ(result.swallowed, 0U);
  EXPECT_EQ(result.leaking, 0U);
}

TEST(TablePropertiesDataMemory, IsReleasedWhereverAnExtensionFails) {
  Update const first;  // makes what is made once per process
  auto const result = TestSupport::failEachAllocation(
      [] {
        Update update;
        for (auto& limit : Access::limits(*update.data))
          if (limit->getType() == Type::PilotForce) update.data->removeChild(std::exchange(limit, nullptr));
        Access::setupLimitsAccessMap(*update.data);
        Access::dataVersion(*update.data) = 20;
        return update;
      },
      [](Update& update) { Access::extendLimits(*update.data); },
      [](Update& update) { EXPECT_EQ(Access::dataVersion(*update.data), 20); });
  EXPECT_GE(result.count, 6U);
  EXPECT_EQ(result.swallowed, 0U);
  EXPECT_EQ(result.leaking, 0U);
}

/// A root that fails in one of the reports that it gets.
class FailingRoot : public Object {
 public:
  void failAfter(int reports) { m_reportsLeft = reports; }

  void propagateTreeChanged(ObjectTreeChangeReasonEx, std::vector<std::shared_ptr<Object>> const&) override {
    countReport();
  }
  void propagateTreeChanged(ObjectTreeChangeReasonEx, std::shared_ptr<Object>) override { countReport(); }

 private:
  void countReport() {
    if (m_reportsLeft-- == 0) throw std::runtime_error("report");
  }

  int m_reportsLeft = -1;
};

TEST(TablePropertiesDataReports, LoseNoValuesWhicheverThrows) {
  // 48 removals, and an addition for each unit that stays and each that comes.
  for (int reports = 0; reports < 51; ++reports) {
    SCOPED_TRACE(reports);
    Update update;
    FailingRoot root;
    std::vector<std::shared_ptr<TablePropertiesData>> child{std::move(update.data)};
    std::vector<std::shared_ptr<TablePropertiesData>> ignored;
    ObjectHelper::addToVectorAtEnd(&root, child, ignored, std::nullopt, 1, false);
    TablePropertiesData& data = *child.front();
    root.failAfter(reports);
    EXPECT_THROW(data.updateLimits({unit(3), unit(4), unit(1)}), std::runtime_error);
    data.updateLimits({unit(3), unit(4), unit(1)});
    EXPECT_EQ(data.getLimit(unit(1), Type::PilotForce)->getLimit(), 42.0);
    EXPECT_EQ(data.getLimit(unit(3), Type::SuctionDistance)->getLimit(), 43.0);
    EXPECT_EQ(data.getLimit(unit(4), Type::PilotForce)->getLimit(), 500.0);
    EXPECT_EQ(Access::limits(data).size(), 48U);
    EXPECT_EQ(data.getChildCount(), 48U);
  }
}

TEST(TablePropertiesDataAtScale, KeepsAndReplacesTheLimitsOf10000Units) {
  TablePropertiesData data;
  Ids ids;
  // Scattered over all identifiers.
  for (unsigned int i = 0; i < 10'000; ++i) ids.push_back(unit(i * 2'654'435'761U));
  data.updateLimits(ids);
  EXPECT_EQ(Access::limits(data).size(), 160'000U);
  for (auto const& id : ids) data.getLimit(id, Type::PilotForce)->setLimit(42.0);
  data.updateLimits(ids);
  for (std::size_t i = 0; i < 5'000; ++i) ids[i] = unit(static_cast<unsigned int>(i) * 2'654'435'761U + 1);
  data.updateLimits(ids);
  EXPECT_EQ(Access::limits(data).size(), 160'000U);
  EXPECT_EQ(data.getChildCount(), 160'000U);
  for (std::size_t i = 0; i < ids.size(); ++i)
    ASSERT_EQ(data.getLimit(ids[i], Type::PilotForce)->getLimit(), i < 5'000 ? 500.0 : 42.0);
}

}  // namespace
}  // namespace Kestrel

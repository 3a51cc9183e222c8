#include "Business_TableProperties/TablePropertyLimit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <vector>

#include "support/AllocationFailure.h"
#include "support/TablePropertyLimitTestAccess.h"
#include "support/VirtualTable.h"

namespace Kestrel {
namespace {

using testing::ElementsAre;
using TestSupport::slotOf;

SimulationUnitId unitId(char const* text) { return SimulationUnitId(GUIdentifier::fromString(text).value()); }

SimulationUnitId const op20 = unitId("0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01");

std::shared_ptr<TablePropertyLimit> genLimit() {
  return std::make_shared<TablePropertyLimit>(TablePropertyLimitType::PilotForce, op20, 500.0, "N");
}

TEST(TablePropertyLimitType, HasTheseNumbers) {
  using enum TablePropertyLimitType;
  static_assert(std::is_same_v<std::underlying_type_t<TablePropertyLimitType>, std::uint32_t>);
  std::vector<std::pair<TablePropertyLimitType, unsigned int>> const numbers{
      {NoLimit, 0},
      {JoiningTongNormalForce, 1},
      {JoiningTongDistance, 2},
      {JoiningTongGap, 3},
      {LineJoiningToolDistanceToInput, 4},
      {JoinNormalForce, 5},
      {JoinTangentialForce, 6},
      {ForceLimit7, 7},
      {ForceLimit8, 8},
      {LineJoiningToolGap, 9},
      {ClampingToolForce, 10},
      {JoiningTeachingX, 11},
      {JoiningTeachingY, 12},
      {JoiningTeachingZ, 13},
      {Reserved14, 14},
      {Reserved15, 15},
      {Reserved16, 16},
      {SuctionDistance, 17},
      {SuctionZoneForce, 18},
      {PilotForce, 19},
      {RollerForce, 20},
      {SteelForce, 21},
      {HemmingBedForce, 22},
      {BoltNormalForce, 23},
      {ClampClosingForce, 24}};
  for (auto const& [type, number] : numbers) EXPECT_EQ(static_cast<unsigned int>(type), number);
}

/// Takes no value by `setLimit`.
class FixedLimit : public TablePropertyLimit {
 public:
  using TablePropertyLimit::TablePropertyLimit;
  void setLimit(double /*limit*/) override {}
};

TEST(TablePropertyLimit, SetsTheMaxLimitWithoutTheSetLimitOfADerivedClass) {
  auto const limit = std::make_shared<FixedLimit>(TablePropertyLimitType::PilotForce, op20, 500.0, "N");
  std::vector<double> notified;
  Signals::Connection const connection =
      limit->connectToSigLimitsChanged([&] { notified.push_back(limit->getLimit()); });
  limit->setMaxLimit(7.5);
  EXPECT_EQ(limit->getLimit(), 7.5);
  EXPECT_THAT(notified, ElementsAre(7.5));
}

TEST(TablePropertyLimit, HoldsWhatItWasMadeOf) {
  TablePropertyLimit const limit(TablePropertyLimitType::SuctionDistance, op20, 1.5, "mm");
  EXPECT_EQ(limit.getType(), TablePropertyLimitType::SuctionDistance);
  EXPECT_EQ(limit.getSimUnitID(), op20);
  EXPECT_EQ(limit.getLimit(), 1.5);
  EXPECT_EQ(limit.getMaxLimit(), 1.5);
  EXPECT_EQ(limit.getUnitString(), "mm");
  EXPECT_EQ(limit.getLimitDisplayName(), "");
  EXPECT_EQ(limit.getMaxLimitDisplayName(), "");
}

TEST(TablePropertyLimit, IsMadeOfAnythingWithoutValidation) {
  TablePropertyLimit const limit(static_cast<TablePropertyLimitType>(4711), SimulationUnitId(), -0.0,
                                 "furlong");
  EXPECT_EQ(static_cast<unsigned int>(limit.getType()), 4711U);
  EXPECT_TRUE(std::signbit(limit.getLimit()));
  EXPECT_EQ(limit.getUnitString(), "furlong");
}

TEST(TablePropertyLimit, IsEmptyWhenTheArchiveMakesIt) {
  static_assert(!std::is_default_constructible_v<TablePropertyLimit>);
  auto const limit = TablePropertyLimitTestAccess::genDefault();
  EXPECT_EQ(limit->getType(), TablePropertyLimitType::NoLimit);
  EXPECT_EQ(limit->getSimUnitID().toString(), "00000000-0000-0000-0000-000000000000");
  EXPECT_EQ(limit->getLimit(), 0.0);
  EXPECT_EQ(limit->getUnitString(), "");
  EXPECT_EQ(limit->getLimitDisplayName(), "");
}

TEST(TablePropertyLimit, HasItsBasesInThisOrder) {
  auto const limit = genLimit();
  void const* const whole = limit.get();
  EXPECT_EQ(static_cast<void const*>(static_cast<LimitAccessInterface const*>(limit.get())), whole);
  EXPECT_GT(static_cast<void const*>(static_cast<Object const*>(limit.get())), whole);
  // The interface has no data of its own: the object part follows its table pointer.
  EXPECT_EQ(static_cast<void const*>(static_cast<Object const*>(limit.get())),
            static_cast<void const*>(static_cast<std::byte const*>(whole) + sizeof(void*)));
}

TEST(TablePropertyLimit, HandsOutSharedPointersToItself) {
  auto const limit = genLimit();
  EXPECT_EQ(std::static_pointer_cast<TablePropertyLimit>(limit->shared_from_this()), limit);
}

TEST(LimitAccessInterface, HasItsOperationsInTheFixedOrder) {
  // The destructor takes the first two.
  EXPECT_EQ(slotOf(&LimitAccessInterface::getLimit), 2U);
  EXPECT_EQ(slotOf(&LimitAccessInterface::setLimit), 3U);
  EXPECT_EQ(slotOf(&LimitAccessInterface::getLimitDisplayName), 4U);
  EXPECT_EQ(slotOf(&LimitAccessInterface::getUnitString), 5U);
  EXPECT_EQ(slotOf(&LimitAccessInterface::connectToSigLimitsChanged), 6U);
}

TEST(LimitAccessInterface, ReachesTheLimit) {
  auto const limit = genLimit();
  LimitAccessInterface& access = *limit;
  limit->setMaxDisplayName("Pilot force");
  int calls = 0;
  access.connectToSigLimitsChanged([&] { ++calls; });
  access.setLimit(12.0);
  EXPECT_EQ(access.getLimit(), 12.0);
  EXPECT_EQ(access.getLimitDisplayName(), "Pilot force");
  EXPECT_EQ(access.getUnitString(), "N");
  EXPECT_EQ(limit->getLimit(), 12.0);
  EXPECT_EQ(calls, 1);
}

TEST(TablePropertyLimit, HasOneValueUnderTwoNames) {
  auto const limit = genLimit();
  limit->setMaxLimit(7.5);
  EXPECT_EQ(limit->getLimit(), 7.5);
  limit->setLimit(2.0);
  EXPECT_EQ(limit->getMaxLimit(), 2.0);
}

TEST(TablePropertyLimit, StoresEveryDoubleAsItIs) {
  auto const limit = genLimit();
  for (double const value : {-1.0, 0.0, 1e308, std::numeric_limits<double>::denorm_min(),
                             -std::numeric_limits<double>::infinity()}) {
    limit->setLimit(value);
    EXPECT_EQ(limit->getLimit(), value);
    limit->setMaxLimit(value);
    EXPECT_EQ(limit->getLimit(), value);
  }
  limit->setLimit(std::numeric_limits<double>::quiet_NaN());
  EXPECT_TRUE(std::isnan(limit->getMaxLimit()));
}

TEST(TablePropertyLimit, NotifiesOnEveryCallAlsoWithTheSameValue) {
  auto const limit = genLimit();
  int calls = 0;
  limit->connectToSigLimitsChanged([&] { ++calls; });
  limit->setLimit(500.0);
  EXPECT_EQ(calls, 1);
  limit->setLimit(500.0);
  EXPECT_EQ(calls, 2);
  limit->setMaxLimit(500.0);
  EXPECT_EQ(calls, 3);
}

TEST(TablePropertyLimit, NotifiesTheSlotsOfItsObjectPart) {
  auto const limit = genLimit();
  std::vector<int> calls;
  limit->connectToSigChanged([&] { calls.push_back(1); });
  limit->connectToSigLimitsChanged([&] { calls.push_back(2); });
  limit->setLimit(1.0);
  EXPECT_THAT(calls, ElementsAre(1, 2));
  limit->emitSigChanged();
  EXPECT_THAT(calls, ElementsAre(1, 2, 1, 2));
}

TEST(TablePropertyLimit, HasStoredTheValueWhenItNotifies) {
  auto const limit = genLimit();
  std::vector<double> seen;
  limit->connectToSigLimitsChanged([&] { seen.push_back(limit->getLimit()); });
  limit->setLimit(3.0);
  limit->setMaxLimit(4.0);
  EXPECT_THAT(seen, ElementsAre(3.0, 4.0));
}

TEST(TablePropertyLimit, NoLongerNotifiesADisconnectedSlot) {
  auto const limit = genLimit();
  int calls = 0;
  auto const connection = limit->connectToSigLimitsChanged([&] { ++calls; });
  EXPECT_TRUE(connection.connected());
  connection.disconnect();
  limit->setLimit(1.0);
  EXPECT_EQ(calls, 0);
}

TEST(TablePropertyLimit, LetsASlotDisconnectWhileItIsNotified) {
  auto const limit = genLimit();
  int calls = 0;
  Signals::Connection connection;
  connection = limit->connectToSigLimitsChanged([&] {
    ++calls;
    connection.disconnect();
  });
  limit->setLimit(1.0);
  limit->setLimit(2.0);
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(limit->getLimit(), 2.0);
}

TEST(TablePropertyLimit, LetsASlotSetTheLimitAgain) {
  auto const limit = genLimit();
  std::vector<double> seen;
  limit->connectToSigLimitsChanged([&] {
    seen.push_back(limit->getLimit());
    if (limit->getLimit() > 100.0) limit->setLimit(100.0);
  });
  limit->setLimit(250.0);
  EXPECT_THAT(seen, ElementsAre(250.0, 100.0));
  EXPECT_EQ(limit->getLimit(), 100.0);
}

TEST(TablePropertyLimit, LetsASlotReleaseTheLimit) {
  auto limit = genLimit();
  std::weak_ptr<TablePropertyLimit> const observed = limit;
  std::vector<double> seen;
  limit->connectToSigLimitsChanged([&] {
    seen.push_back(limit->getLimit());
    limit.reset();
  });
  limit->connectToSigLimitsChanged([&] { seen.push_back(-1.0); });
  limit->connectToSigLimitsChanged([&] { seen.push_back(-2.0); });
  TablePropertyLimit& access = *limit;
  access.setLimit(3.0);
  EXPECT_TRUE(observed.expired());
  EXPECT_THAT(seen, ElementsAre(3.0));
}

TEST(TablePropertyLimit, PassesOnWhatASlotThrowsWithTheValueStored) {
  auto const limit = genLimit();
  limit->connectToSigLimitsChanged([] { throw std::runtime_error("slot"); });
  EXPECT_THROW(limit->setLimit(3.0), std::runtime_error);
  EXPECT_EQ(limit->getLimit(), 3.0);
}

TEST(TablePropertyLimit, KeepsItsDisplayNameToItself) {
  auto const limit = genLimit();
  int calls = 0;
  limit->connectToSigChanged([&] { ++calls; });
  limit->setMaxDisplayName("Größte Kraft");
  EXPECT_EQ(limit->getLimitDisplayName(), "Größte Kraft");
  EXPECT_EQ(limit->getMaxLimitDisplayName(), "Größte Kraft");
  limit->setMaxDisplayName(limit->getMaxLimitDisplayName());
  EXPECT_EQ(limit->getLimitDisplayName(), "Größte Kraft");
  EXPECT_EQ(calls, 0);
}

TEST(TablePropertyLimit, ReturnsTheFieldItselfForTheMaxLimitDisplayName) {
  auto const limit = genLimit();
  std::string const& name = limit->getMaxLimitDisplayName();
  limit->setMaxDisplayName("later");
  EXPECT_EQ(name, "later");
}

TEST(TablePropertyLimit, ReturnsTheUnitTextAsItIsStored) {
  TablePropertyLimit const limit(TablePropertyLimitType::PilotForce, op20, 1.0, "Joining Failed");
  EXPECT_EQ(limit.getUnitString(), "Joining Failed");
}

TEST(TablePropertyLimit, IsMadeWhollyOrNotAtAllWhenMemoryRunsOut) {
  struct Nothing {};
  std::string const unit = "a unit text that needs a block";
  auto const result = TestSupport::failEachAllocation(
      [] { return Nothing(); },
      [&](Nothing&) {
        auto const limit =
            std::make_shared<TablePropertyLimit>(TablePropertyLimitType::PilotForce, op20, 1.0, unit);
        limit->setMaxDisplayName(unit);
        limit->connectToSigLimitsChanged([] {});
        EXPECT_EQ(limit->getLimitDisplayName() + limit->getUnitString(), unit + unit);
      },
      [](Nothing&) {});
  EXPECT_GE(result.count, 6U);
  EXPECT_EQ(result.swallowed, 0U);
  EXPECT_EQ(result.leaking, 0U);
}

TEST(TablePropertyLimit, HasStoredTheValueWhenMemoryRunsOutInSetLimit) {
  // More tracked objects than the signal has room for on the stack: the emission has to allocate.
  struct Subject {
    std::vector<std::shared_ptr<int>> tracked;
    std::shared_ptr<TablePropertyLimit> limit = genLimit();
    std::shared_ptr<int> calls = std::make_shared<int>(0);
  };
  auto const result = TestSupport::failEachAllocation(
      [] {
        Subject subject;
        Signals::Slot<void()> slot([calls = subject.calls.get()] { ++*calls; });
        for (int i = 0; i < 40; ++i) subject.tracked.push_back(std::make_shared<int>(i));
        for (auto const& object : subject.tracked) slot.track_foreign(object);
        subject.limit->connectToSigLimitsChanged(slot);
        return subject;
      },
      [](Subject& subject) { subject.limit->setLimit(3.0); },
      [](Subject& subject) {
        EXPECT_EQ(subject.limit->getLimit(), 3.0);
        EXPECT_EQ(*subject.calls, 0);
        subject.limit->setLimit(4.0);
        EXPECT_EQ(*subject.calls, 1);
      });
  EXPECT_GE(result.count, 1U);
  EXPECT_EQ(result.swallowed, 0U);
  EXPECT_EQ(result.leaking, 0U);
}

}  // namespace
}  // namespace Kestrel

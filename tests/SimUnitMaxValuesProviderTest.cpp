#include "Business_TableProperties/SimUnitMaxValuesProvider.h"

#include <gmock/gmock.h>

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <random>
#include <type_traits>

#include "Persistence_DaoAdapter/SolverTableDataKeys.h"
#include "support/SimUnitMaxValuesProviderTestAccess.h"
#include "support/TestUnit.h"

namespace Kestrel {
namespace {

using Access = SimUnitMaxValuesProviderTestAccess;
using Keys = SolverTableDataKeys;
using Pairs = std::vector<StepValues<double>::Pair>;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

/// A result whose control block reports when its last reference, weak ones included, is gone.
class CountedResult {
 public:
  explicit CountedResult(bool& isGone)
      : m_result(new SimulationResult({}), std::default_delete<SimulationResult>(),
                 Allocator<SimulationResult>{&isGone}) {}

  [[nodiscard]] std::weak_ptr<SimulationResult> weak() const { return m_result; }
  [[nodiscard]] SimulationResult const* get() const { return m_result.get(); }
  [[nodiscard]] long useCount() const { return m_result.use_count(); }
  void release() { m_result.reset(); }

 private:
  template <typename T>
  struct Allocator {
    using value_type = T;
    bool* isGone;
    explicit Allocator(bool* flag) : isGone(flag) {}
    template <typename U>
    explicit Allocator(Allocator<U> const& other) : isGone(other.isGone) {}
    T* allocate(std::size_t n) { return std::allocator<T>().allocate(n); }
    void deallocate(T* memory, std::size_t n) {
      *isGone = true;
      std::allocator<T>().deallocate(memory, n);
    }
    friend bool operator==(Allocator const&, Allocator const&) = default;
  };

  std::shared_ptr<SimulationResult> m_result;
};

TEST(SimUnitMaxValuesProvider, IsAPlainClassOfThreeMembersInOrder) {
  static_assert(!std::is_polymorphic_v<SimUnitMaxValuesProvider>);
  static_assert(sizeof(SimUnitMaxValuesProvider) == sizeof(std::function<bool(double, double)>) +
                                                        sizeof(void const*) +
                                                        sizeof(std::weak_ptr<SimulationResult>));
  static_assert(!std::is_copy_assignable_v<SimUnitMaxValuesProvider>);
  TestUnit const test;
  SimUnitMaxValuesProvider provider(test.unit, {});
  void const* const members[] = {&Access::compare(provider), &Access::unit(provider),
                                 &Access::weakResult(provider)};
  EXPECT_TRUE(std::is_sorted(std::begin(members), std::end(members), std::less<>()));
  EXPECT_EQ(members[0], &provider);
  EXPECT_EQ(Access::unit(provider), &test.unit);
}

TEST(SimUnitMaxValuesProvider, HoldsTheResultWeaklyAndLetsGoOfItWithItsLastCopy) {
  TestUnit const test;
  bool isGone = false;
  CountedResult result(isGone);
  auto provider = std::make_unique<SimUnitMaxValuesProvider>(test.unit, result.weak());
  EXPECT_EQ(result.useCount(), 1);
  auto copy = std::make_unique<SimUnitMaxValuesProvider>(*provider);
  EXPECT_EQ(result.useCount(), 1);
  EXPECT_EQ(Access::result(*copy).get(), result.get());

  result.release();
  EXPECT_EQ(Access::result(*provider), nullptr);
  EXPECT_EQ(Access::result(*copy), nullptr);
  provider.reset();
  EXPECT_FALSE(isGone) << "the copy must hold a weak reference of its own";
  copy.reset();
  EXPECT_TRUE(isGone);
}

TEST(SimUnitMaxValuesProvider, ItsConstructorLeavesNoFurtherReferenceBehind) {
  TestUnit const test;
  bool isGone = false;
  CountedResult result(isGone);
  auto weak = result.weak();
  auto provider = std::make_unique<SimUnitMaxValuesProvider>(test.unit, weak);
  EXPECT_FALSE(weak.expired()) << "the caller keeps its reference";
  weak.reset();
  result.release();
  EXPECT_FALSE(isGone);
  provider.reset();
  EXPECT_TRUE(isGone);
}

TEST(SimUnitMaxValuesProvider, LocksTheResultForAsLongAsItIsUsed) {
  TestUnit const test;
  auto result = test.result();
  SimUnitMaxValuesProvider const provider(test.unit, result);
  auto const locked = Access::result(provider);
  EXPECT_EQ(locked, result);
  EXPECT_EQ(result.use_count(), 2);
}

TEST(SimUnitMaxValuesProvider, ACopyClonesTheComparatorAndSharesTheUnit) {
  TestUnit const test;
  SimUnitMaxValuesProvider provider(test.unit, {});
  auto const token = std::make_shared<int>(0);
  Access::compare(provider) = [token](double, double) { return true; };
  ASSERT_EQ(token.use_count(), 2);
  {
    SimUnitMaxValuesProvider copy(provider);
    EXPECT_EQ(token.use_count(), 3);
    EXPECT_EQ(Access::unit(copy), &test.unit);
    EXPECT_TRUE(Access::compare(copy)(2.0, 1.0));
  }
  EXPECT_EQ(token.use_count(), 2);
}

TEST(SimUnitMaxValuesProvider, ItsDestructorReleasesTheResultBeforeTheComparator) {
  struct ResultWatch {
    bool const& resultIsGone;
    bool& sawResultGone;
    ~ResultWatch() { sawResultGone = resultIsGone; }
  };
  TestUnit const test;
  bool isGone = false;
  bool sawResultGone = false;
  CountedResult result(isGone);
  {
    SimUnitMaxValuesProvider provider(test.unit, result.weak());
    result.release();
    std::shared_ptr<ResultWatch> watch(new ResultWatch{isGone, sawResultGone});
    Access::compare(provider) = [watch = std::move(watch)](double, double) { return false; };
  }
  EXPECT_TRUE(sawResultGone);
}

TEST(SimUnitMaxValuesProvider, ReadsTheUnitWhenAskedAndNotBefore) {
  TestUnit test;
  SimUnitMaxValuesProvider const provider(test.unit, {});
  EXPECT_THAT(provider.genGetMaxValuesCollection(DataType::Clamps)->groups, IsEmpty());
  test.addTool("Clamp 1", ToolForceDataType::clamp);
  EXPECT_THAT(provider.genGetMaxValuesCollection(DataType::Clamps)->groups, SizeIs(2));
}

TEST(SimUnitMaxValuesProvider, AppendixOfInvalidItemsBeginsWithABlank) {
  EXPECT_EQ(SimUnitMaxValuesProvider::s_invalidValues_elementNameAppendix, " (Joining Failed)");
}

TEST(SimUnitMaxValuesProvider, ToolFamiliesAndUnknownNumbersComeEmptyFromTheGeneralRequest) {
  TestUnit test;
  for (char const* id : {"2", "3", "5", "6", "7", "8", "9"})
    test.addTool(id, static_cast<ToolForceDataType>(*id - '0'));
  SimUnitMaxValuesProvider const provider(test.unit, {});
  for (unsigned int const number : {1u, 7u, 8u, 9u, 12u, 0xFFFFFFFFu}) {
    auto const table = provider.genGetMaxValuesCollection(static_cast<DataType>(number));
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(static_cast<unsigned int>(table->dataType), number);
    EXPECT_EQ(table->simulationUnitId, test.unit.getID());
    EXPECT_TRUE(isUntouched(*table)) << number;
  }
}

TEST(SimUnitMaxValuesProvider, EveryRequestGivesAContainerThatIsTheCallersAlone) {
  TestUnit test;
  test.addTool("Clamp 1", ToolForceDataType::clamp, {{"ClampNormalForce", {1.0, -2.0}}});
  SimUnitMaxValuesProvider const provider(test.unit, {});
  auto const first = provider.genGetMaxValuesCollection(DataType::Clamps);
  EXPECT_EQ(first.use_count(), 1);
  first->groups[0].subGroups.clear();
  auto const second = provider.genGetMaxValuesCollection(DataType::Clamps);
  EXPECT_THAT(rowsOf(second->groups[0]), ElementsAre(Row{"", "Clamp 1", {-2.0, 0.0, 0.0, 0.0}}));
}

// --- columns -----------------------------------------------------------------------------------------------

TEST(SimUnitMaxValuesProviderColumns, AreThePositionsOfTheNames) {
  TestUnit const test;
  SimUnitMaxValuesProvider const provider(test.unit, {});
  EXPECT_THAT(Access::columns(provider, {"b", "a", "c"}),
              ElementsAre(Pair("a", 1u), Pair("b", 0u), Pair("c", 2u)));
  EXPECT_THAT(Access::columns(provider, {}), IsEmpty());
}

TEST(SimUnitMaxValuesProviderColumns, OfARepeatedNameTheLastPositionCounts) {
  TestUnit const test;
  SimUnitMaxValuesProvider const provider(test.unit, {});
  EXPECT_THAT(Access::columns(provider, {"a", "b", "a"}), ElementsAre(Pair("a", 2u), Pair("b", 1u)));
}

// --- the value of largest magnitude ------------------------------------------------------------------------

class SimUnitMaxValuesProviderMaxValue : public ::testing::Test {
 protected:
  double maxValue(std::vector<double> values) {
    StepValues<double> plain(std::move(values));
    return Access::maxValue(m_provider, plain);
  }
  double maxValueOfPairs(Pairs pairs) {
    StepValues<double> paired(std::move(pairs));
    return Access::maxValue(m_provider, paired);
  }

  TestUnit m_test;
  SimUnitMaxValuesProvider m_provider{m_test.unit, {}};
};

TEST_F(SimUnitMaxValuesProviderMaxValue, KeepsItsSign) {
  EXPECT_EQ(maxValue({3.0, -7.5, 5.0}), -7.5);
  EXPECT_EQ(maxValue({-1.0, -4.0, -2.0}), -4.0);
  EXPECT_EQ(maxValue({0.5}), 0.5);
}

TEST_F(SimUnitMaxValuesProviderMaxValue, IsTheFirstOfEqualMagnitudes) {
  EXPECT_EQ(maxValue({2.0, -2.0}), 2.0);
  EXPECT_EQ(maxValue({-2.0, 2.0}), -2.0);
}

TEST_F(SimUnitMaxValuesProviderMaxValue, IsZeroWithoutAnyOtherNumber) {
  EXPECT_EQ(maxValue(std::vector<double>{}), 0.0);
  EXPECT_EQ(maxValueOfPairs(Pairs{}), 0.0);
  for (double const none : {maxValue({nan, nan}), maxValue({-0.0, 0.0}), maxValue({nan, -0.0})}) {
    EXPECT_EQ(none, 0.0);
    EXPECT_FALSE(std::signbit(none));
  }
}

TEST_F(SimUnitMaxValuesProviderMaxValue, IsNeverNotANumber) {
  EXPECT_EQ(maxValue({nan, 1.0, nan, -3.0, nan}), -3.0);
  EXPECT_EQ(maxValue({nan, -infinity, infinity}), -infinity);
}

TEST_F(SimUnitMaxValuesProviderMaxValue, CountsNoCompanion) {
  EXPECT_EQ(maxValueOfPairs(Pairs{{1.0, 100.0}, {-2.0, -100.0}, {0.5, infinity}}), -2.0);
}

TEST_F(SimUnitMaxValuesProviderMaxValue, TheConstructorsComparatorPrefersTheGreaterMagnitude) {
  auto const& isReplaced = Access::compare(m_provider);
  EXPECT_TRUE(isReplaced(3.0, -7.5));
  EXPECT_FALSE(isReplaced(-7.5, 3.0));
  EXPECT_FALSE(isReplaced(2.0, -2.0));
  EXPECT_FALSE(isReplaced(nan, 1.0));
  EXPECT_FALSE(isReplaced(1.0, nan));
}

TEST_F(SimUnitMaxValuesProviderMaxValue, AsksAnotherComparatorWithTheCurrentValueFirst) {
  std::vector<std::pair<double, double>> calls;
  Access::compare(m_provider) = [&calls](double current, double value) {
    calls.emplace_back(current, value);
    return value < 3.0;
  };
  EXPECT_EQ(maxValue({1.0, 4.0, 2.0}), 2.0);
  EXPECT_THAT(calls, ElementsAre(Pair(0.0, 1.0), Pair(1.0, 4.0), Pair(1.0, 2.0)));
}

struct CopyCounter {
  int* copies;
  int calls = 0;
  explicit CopyCounter(int& counter) : copies(&counter) {}
  CopyCounter(CopyCounter const& other) : copies(other.copies), calls(other.calls) { ++*copies; }
  CopyCounter& operator=(CopyCounter const&) = delete;
  bool operator()(double, double) { return calls++ == 0; }
};

TEST_F(SimUnitMaxValuesProviderMaxValue, CallsAnotherComparatorThroughAFreshCopyForEachValue) {
  int copies = 0;
  Access::compare(m_provider) = CopyCounter(copies);
  copies = 0;
  // Only the first call of each copy says yes, so the last value stays.
  EXPECT_EQ(maxValue({5.0, 3.0, 1.0}), 1.0);
  EXPECT_EQ(copies, 3);
  EXPECT_EQ(maxValueOfPairs(Pairs{{5.0, 0.0}, {3.0, 0.0}}), 3.0);
  EXPECT_EQ(copies, 5);
}

TEST_F(SimUnitMaxValuesProviderMaxValue, WithoutAComparatorIsAnErrorOnceThereIsAValue) {
  Access::compare(m_provider) = nullptr;
  EXPECT_THROW(maxValue({1.0}), std::bad_function_call);
  EXPECT_THROW(maxValueOfPairs(Pairs{{1.0, 0.0}}), std::bad_function_call);
  EXPECT_EQ(maxValue(std::vector<double>{}), 0.0);
}

double maxValueStepByStep(std::vector<double> const& values) {
  if (values.empty()) return 0.0;
  double current = 0.0;
  for (double const v : values) {
    double const magnitudeOfCurrent = current < 0.0 ? -current : current;
    double const magnitudeOfValue = v < 0.0 ? -v : v;
    if (magnitudeOfValue > magnitudeOfCurrent) current = v;
  }
  return current;
}

/// Numbers of every kind, many of them equal in magnitude.
double anyNumber(std::mt19937_64& random) {
  using Limits = std::numeric_limits<double>;
  static constexpr double special[] = {0.0,
                                       1.0,
                                       2.0,
                                       Limits::min(),
                                       infinity,
                                       Limits::max(),
                                       nan,
                                       Limits::denorm_min(),
                                       1e-310,
                                       1e308,
                                       Limits::signaling_NaN(),
                                       2.0 + 4e-16};
  auto const bits = random();
  double const sign = (bits & 1) != 0 ? -1.0 : 1.0;
  switch ((bits >> 1) % 3) {
    case 0:
      return std::copysign(special[(bits >> 8) % std::size(special)], sign);
    case 1:
      return sign * static_cast<double>((bits >> 8) % 4);
    default:
      return std::bit_cast<double>(random());
  }
}

TEST_F(SimUnitMaxValuesProviderMaxValue, IsBitForBitWhatItsThreeStepsGive) {
  std::mt19937_64 random(20240611);
  for (int round = 0; round < 20000; ++round) {
    std::vector<double> values(random() % 12);
    Pairs pairs;
    for (double& value : values) {
      value = anyNumber(random);
      pairs.emplace_back(value, anyNumber(random));
    }
    auto const expected = std::bit_cast<std::uint64_t>(maxValueStepByStep(values));
    ASSERT_EQ(std::bit_cast<std::uint64_t>(maxValue(values)), expected) << ::testing::PrintToString(values);
    ASSERT_EQ(std::bit_cast<std::uint64_t>(maxValueOfPairs(pairs)), expected)
        << ::testing::PrintToString(pairs);
  }
}

// --- rows of a section -------------------------------------------------------------------------------------

class SimUnitMaxValuesProviderGroup : public ::testing::Test {
 protected:
  void assemble(Names const& ids, Names const& names, Access::Columns const& columns) {
    Access::assembleGroup(m_provider, ids, names, columns, m_group);
  }

  TestUnit m_test;
  SimUnitMaxValuesProvider m_provider{m_test.unit, {}};
  MaxValueGroup m_group;
  Access::Columns const m_columns{{"F", 1}, {"N", 0}};
};

TEST_F(SimUnitMaxValuesProviderGroup, HasOneUnnamedSubGroupWithOneRowPerItem) {
  m_test.addTool("T1", ToolForceDataType::clamp, {{"F", {1.0, -3.0}}, {"N", {2.0}}});
  m_test.addTool("T2", ToolForceDataType::tool, {{"N", {-4.0, 4.0}}, {"F", {0.25}}});
  assemble({"T2", "T1"}, {"Second", "First"}, m_columns);
  EXPECT_THAT(m_group.subGroups, SizeIs(2));
  EXPECT_THAT(rowsOf(m_group), ElementsAre(Row{"", "Second", {-4.0, 0.25}}, Row{"", "First", {2.0, -3.0}}));
}

TEST_F(SimUnitMaxValuesProviderGroup, ChangesNothingButTheRows) {
  m_test.addTool("T1", ToolForceDataType::clamp);
  assemble({"T1"}, {"T1"}, m_columns);
  EXPECT_EQ(m_group.name, "");
  EXPECT_FALSE(m_group.isTeachingGroup);
  EXPECT_FALSE(m_group.isForceGroup);
  EXPECT_THAT(m_group.limitTypes, IsEmpty());
  EXPECT_THAT(m_group.valueNames, IsEmpty());
}

TEST_F(SimUnitMaxValuesProviderGroup, AppendsToTheRowsThatAreThere) {
  m_test.addTool("T1", ToolForceDataType::clamp);
  assemble({"T1"}, {"first"}, m_columns);
  assemble({"T1"}, {"second"}, m_columns);
  EXPECT_THAT(rowsOf(m_group), ElementsAre(Row{"", "first", {0.0, 0.0}}, Row{"", "second", {0.0, 0.0}}));
}

TEST_F(SimUnitMaxValuesProviderGroup, MakesRoomForAllItemsAtOnce) {
  assemble(Names(37, "T1"), Names(37, "T1"), m_columns);
  EXPECT_EQ(m_group.subGroups.capacity(), 37u);
  EXPECT_EQ(m_group.subGroups[0].items[0].maxValues.capacity(), 2u);
}

TEST_F(SimUnitMaxValuesProviderGroup, IsLeftAloneWhenIdsAndNamesDifferInNumber) {
  m_test.addTool("T1", ToolForceDataType::clamp);
  assemble({"T1"}, {}, m_columns);
  assemble({}, {"T1"}, m_columns);
  assemble({"T1", "T1"}, {"T1"}, m_columns);
  EXPECT_THAT(m_group.subGroups, IsEmpty());
  EXPECT_EQ(m_group.subGroups.capacity(), 0u);
}

TEST_F(SimUnitMaxValuesProviderGroup, HoldsZeroWhereAToolHasNoSeries) {
  m_test.addTool("T1", ToolForceDataType::clamp, {{"F", {5.0}}, {"no column", {9.0}}});
  assemble({"T1", "unknown"}, {"T1", "unknown"}, m_columns);
  EXPECT_THAT(rowsOf(m_group), ElementsAre(Row{"", "T1", {0.0, 5.0}}, Row{"", "unknown", {0.0, 0.0}}));
}

TEST_F(SimUnitMaxValuesProviderGroup, OfARepeatedQuantityTheLastSeriesCounts) {
  m_test.addTool("T1", ToolForceDataType::clamp, {{"F", {-9.0}}, {"N", {1.0}}, {"F", {2.0}}});
  assemble({"T1"}, {"T1"}, m_columns);
  EXPECT_THAT(rowsOf(m_group), ElementsAre(Row{"", "T1", {1.0, 2.0}}));
}

TEST_F(SimUnitMaxValuesProviderGroup, SkipsASeriesThatTheHostFailsToGive) {
  m_test.addTool("T1", ToolForceDataType::clamp, {{"F", {-9.0}}});
  m_test.unit.addToolForce("T1", "F", nullptr);
  m_test.unit.addToolForce("T1", "N", nullptr);
  assemble({"T1"}, {"T1"}, m_columns);
  EXPECT_THAT(rowsOf(m_group), ElementsAre(Row{"", "T1", {0.0, -9.0}}));
}

TEST_F(SimUnitMaxValuesProviderGroup, TakesTheTangentialForceFromTheSeriesThatIsMadeForIt) {
  Access::Columns const columns{{Keys::getNameOfJoinForceN(), 0}, {Keys::getNameOfJoinTangentialForce(), 1}};
  m_test.addTool("W1", ToolForceDataType::spotWeld, {{"JoinTangentialForce", {99.0}}, {"JoinForceN", {1.0}}});
  m_test.unit.setJoinTangentialForce("W1", StepValues<double>(Pairs{{0.5, 7.0}, {-0.75, 7.0}}));
  m_test.addTool("W2", ToolForceDataType::spotWeld, {{"JoinTangentialForce", {99.0}}});
  assemble({"W1", "W2", "unknown"}, {"W1", "W2", "unknown"}, columns);
  EXPECT_THAT(rowsOf(m_group), ElementsAre(Row{"", "W1", {1.0, -0.75}}, Row{"", "W2", {0.0, 0.0}},
                                           Row{"", "unknown", {0.0, 0.0}}));
}

TEST_F(SimUnitMaxValuesProviderGroup, DoesNotAskForTheTangentialForceWithoutItsColumn) {
  m_test.addTool("W1", ToolForceDataType::spotWeld, {{"F", {1.0}}});
  m_test.unit.setJoinTangentialForce("W1", StepValues<double>(std::vector<double>{8.0}));
  assemble({"W1"}, {"W1"}, m_columns);
  EXPECT_THAT(rowsOf(m_group), ElementsAre(Row{"", "W1", {0.0, 1.0}}));
}

TEST_F(SimUnitMaxValuesProviderGroup, HasAsManyValuesPerRowAsColumnsWithDifferentNames) {
  m_test.addTool("T1", ToolForceDataType::clamp, {{"a", {1.0}}, {"b", {2.0}}});
  assemble({"T1"}, {"T1"}, Access::columns(m_provider, {"a", "b", "a"}));
  EXPECT_THAT(rowsOf(m_group), ElementsAre(Row{"", "T1", {0.0, 2.0}}));
}

}  // namespace
}  // namespace Kestrel

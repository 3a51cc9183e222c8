#include "Business_TableProperties/LargestMagnitude.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace Kestrel {
namespace {

using Values = std::vector<double>;
using Pairs = std::vector<std::pair<double, double>>;
using Limits = std::numeric_limits<double>;

constexpr double nan = Limits::quiet_NaN();
constexpr double infinity = Limits::infinity();
constexpr double subnormal = Limits::denorm_min();

std::uint64_t bitsOf(double value) { return std::bit_cast<std::uint64_t>(value); }

/// The values with companions that would win if they counted.
Pairs pairsOf(Values const& values) {
  Pairs pairs;
  for (double const value : values) pairs.emplace_back(value, pairs.size() % 2 == 0 ? infinity : -infinity);
  return pairs;
}

/// Each test runs with each instruction set; one that the machine lacks is skipped.
class LargestMagnitude : public ::testing::TestWithParam<InstructionSet> {
 protected:
  void SetUp() override {
    if (GetParam() > widestInstructionSet()) GTEST_SKIP() << "the machine lacks the instructions";
  }

  /// Of the values, which pairs of them must have too.
  static double of(Values const& values) {
    double const result = largestMagnitude(values, GetParam());
    EXPECT_EQ(bitsOf(largestMagnitude(pairsOf(values), GetParam())), bitsOf(result)) << "of pairs";
    return result;
  }
};

INSTANTIATE_TEST_SUITE_P(Of, LargestMagnitude,
                         ::testing::Values(InstructionSet::baseline, InstructionSet::avx),
                         [](auto const& test) {
                           return std::string(test.param == InstructionSet::avx ? "Avx" : "Baseline");
                         });

TEST_P(LargestMagnitude, KeepsItsSign) {
  EXPECT_EQ(of({3.0, -7.5, 5.0}), -7.5);
  EXPECT_EQ(of({-1.0, 2.0, -3.0, 4.0, -5.0, 6.0, -7.0, 8.0, -9.0}), -9.0);
  EXPECT_EQ(of({9.0, -8.0, 7.0, -6.0, 5.0, -4.0, 3.0, -2.0, 1.0}), 9.0);
}

TEST_P(LargestMagnitude, OfNothingAndOfZerosIsZeroWithoutASign) {
  for (std::size_t const count : {0u, 1u, 3u, 4u, 9u, 512u, 1030u}) {
    EXPECT_EQ(bitsOf(of(Values(count, -0.0))), bitsOf(0.0)) << count;
    EXPECT_EQ(bitsOf(of(Values(count, nan))), bitsOf(0.0)) << count;
    EXPECT_EQ(bitsOf(of(Values(count, -Limits::signaling_NaN()))), bitsOf(0.0)) << count;
  }
}

TEST_P(LargestMagnitude, IsFoundAtEachPlaceOfEachLength) {
  for (std::size_t const count :
       {1u, 2u, 3u, 4u, 5u, 8u, 15u, 16u, 17u, 31u, 33u, 511u, 512u, 513u, 1024u, 1040u}) {
    for (std::size_t place = 0; place < count; ++place) {
      Values values(count, 1.0);
      values[place] = -2.0;
      ASSERT_EQ(of(values), -2.0) << place << " of " << count;
    }
  }
}

TEST_P(LargestMagnitude, IsTheFirstOfEqualOnesWhereverTheyAre) {
  for (std::size_t const count : {2u, 5u, 16u, 37u, 512u, 515u, 1026u}) {
    for (std::size_t const first : {std::size_t{0}, count / 3, count / 2}) {
      for (std::size_t second = first + 1; second < count; ++second) {
        Values values(count, -1.0);
        values[first] = 2.0;
        values[second] = -2.0;
        ASSERT_EQ(of(values), 2.0) << first << ", " << second << " of " << count;
        values[first] = -2.0;
        values[second] = 2.0;
        ASSERT_EQ(of(values), -2.0) << first << ", " << second << " of " << count;
      }
    }
  }
}

TEST_P(LargestMagnitude, IsNeverNotANumber) {
  for (std::size_t place = 0; place < 600; ++place) {
    Values values(600, nan);
    values[place] = -3.0;
    ASSERT_EQ(of(values), -3.0) << place;
  }
  Values values(600, 5.0);
  for (std::size_t i = 1; i < values.size(); i += 2) values[i] = -Limits::signaling_NaN();
  EXPECT_EQ(of(values), 5.0);
}

TEST_P(LargestMagnitude, CountsNumbersOfEverySize) {
  EXPECT_EQ(of(Values{1.0, -infinity, Limits::max(), infinity, 2.0, 3.0, 4.0, 5.0}), -infinity);
  EXPECT_EQ(of(Values{0.0, -subnormal, 0.0, -0.0, subnormal, 0.0, 0.0, 0.0}), -subnormal);
  EXPECT_EQ(of(Values{1e-310, -2e-310, 1.5e-310, 0.0, -0.0, 0.0, 0.0, 0.0, 0.0}), -2e-310);
  EXPECT_EQ(of(Values{1e308, -1e308, 0.0, nan, 1.0, -Limits::max(), 2.0, 3.0}), -Limits::max());
}

double stepByStep(std::span<double const> values) {
  double current = 0.0;
  for (double const value : values) {
    if (std::fabs(value) > std::fabs(current)) current = value;
  }
  return current;
}

/// What series of one kind are made of.
enum class Kind { anyBits, special, fewMagnitudes, oneMagnitude, ramp };

double number(std::mt19937_64& random, Kind kind, std::size_t place) {
  static constexpr double special[] = {0.0, 1.0,       Limits::min(),           infinity, Limits::max(),
                                       nan, subnormal, Limits::signaling_NaN(), 1e-310};
  auto const bits = random();
  double const sign = (bits & 1) != 0 ? -1.0 : 1.0;
  switch (kind) {
    case Kind::anyBits:
      return std::bit_cast<double>(bits);
    case Kind::special:
      return std::copysign(special[(bits >> 1) % std::size(special)], sign);
    case Kind::fewMagnitudes:
      return sign * static_cast<double>((bits >> 1) % 4);
    case Kind::oneMagnitude:
      return sign * 7.25;
    case Kind::ramp:
      return sign * std::floor(static_cast<double>(place) / 3);
  }
  return 0.0;
}

std::size_t anyLength(std::mt19937_64& random) {
  if (random() % 8 != 0) return random() % 40;
  return 512 * (random() % 3) + random() % 20;  // around the end of what is seen at once
}

/// How many series are made. `KESTREL_SERIES=1000000 build/release/tests/LargestMagnitudeTest` makes a
/// million.
std::size_t numberOfSeries() {
  auto const* const text = std::getenv("KESTREL_SERIES");
  return text == nullptr ? 20000 : std::stoul(text);
}

TEST_P(LargestMagnitude, IsBitForBitWhatTheStepsGive) {
  std::mt19937_64 random(20261122);
  std::vector<double> memory(2200);
  for (std::size_t series = 0; series < numberOfSeries(); ++series) {
    auto const kind = static_cast<Kind>(random() % 5);
    auto const length = anyLength(random);
    auto const start = random() % 8;  // 8 numbers are a line of the cache
    auto const values = std::span(memory).subspan(start, length);
    for (std::size_t i = 0; i < length; ++i) values[i] = number(random, kind, i);
    auto const expected = bitsOf(stepByStep(values));
    ASSERT_EQ(bitsOf(largestMagnitude(values, GetParam())), expected)
        << "series " << series << ", " << length << " values from " << start;

    Pairs pairs(start + length);
    for (std::size_t i = 0; i < length; ++i) pairs[start + i] = {values[i], number(random, kind, i)};
    ASSERT_EQ(bitsOf(largestMagnitude(std::span(pairs).subspan(start), GetParam())), expected)
        << "series " << series << ", " << length << " pairs from " << start;
  }
}

TEST(InstructionSets, AreChosenByTheMachine) {
  Values const values{1.0, -2.0, 0.5, 2.0, 1.5};
  EXPECT_EQ(largestMagnitude(values), -2.0);
  EXPECT_EQ(largestMagnitude(pairsOf(values)), -2.0);
  EXPECT_EQ(largestMagnitude(values, widestInstructionSet()), -2.0);
}

}  // namespace
}  // namespace Kestrel

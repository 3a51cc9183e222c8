#include "result_tables/base/FastNumber.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>

namespace Kestrel::ResultTables {
namespace {

using ::testing::Optional;

constexpr std::string_view s_behind = ", 1.0, 1.0]}]}";

/// The bits of the number, if it is read up to where it ends.
template <char Point = '.'>
std::optional<std::uint64_t> bitsOf(std::string const& number) {
  auto const text = number + std::string(s_behind);
  double value = 0.0;
  auto const* const end = readDecimal<Point>(text.data(), text.data() + text.size(), value);
  if (end == nullptr) return std::nullopt;
  EXPECT_EQ(std::string_view(end), s_behind) << number;
  return std::bit_cast<std::uint64_t>(value);
}

bool isPassed(std::string const& number) {
  auto const text = number + std::string(s_behind);
  auto const* const end = passDecimal(text.data(), text.data() + text.size());
  EXPECT_TRUE(end == nullptr || end == text.data() + number.size()) << number;
  return end != nullptr;
}

auto is(double value) { return Optional(std::bit_cast<std::uint64_t>(value)); }

TEST(LeadingDigits, AreCountedAndJoined) {
  auto const expect = [](char const* text, unsigned count, std::uint64_t number) {
    auto const digits = leadingDigits(text);
    EXPECT_EQ(digits.count, count) << text;
    EXPECT_EQ(digits.number, number) << text;
  };
  expect("12345678", 8, 12345678);
  expect("00000000", 8, 0);
  expect("99999999", 8, 99999999);
  expect("1234567.", 7, 1234567);
  expect("0.123456", 1, 0);
  expect("42,99999", 2, 42);
  expect("-1234567", 0, 0);
  expect("/1111111", 0, 0);
  expect(":1111111", 0, 0);
  expect("1\xFF\x80\x01 999", 1, 1);
  expect("123\3609999", 3, 123);
}

TEST(FastNumber, ReadsNumbersExactly) {
  EXPECT_THAT(bitsOf("0"), is(0.0));
  EXPECT_THAT(bitsOf("7"), is(7.0));
  EXPECT_THAT(bitsOf("-12.5"), is(-12.5));
  EXPECT_THAT(bitsOf("123.456789"), is(123.456789));
  EXPECT_THAT(bitsOf("12345678.12345678"), is(12345678.12345678));
  EXPECT_THAT(bitsOf("1e3"), is(1000.0));
  EXPECT_THAT(bitsOf("1E+3"), is(1000.0));
  EXPECT_THAT(bitsOf("2.5e-3"), is(0.0025));
  EXPECT_THAT(bitsOf("1e22"), is(1e22));
  EXPECT_THAT(bitsOf("1e23"), is(1e23));
  EXPECT_THAT(bitsOf("9007199254740993"), is(9007199254740992.0));  // halfway, to even
  EXPECT_THAT(bitsOf("9007199254740995"), is(9007199254740996.0));  // halfway, to even
  EXPECT_THAT(bitsOf("9007199254740993.00000000000000000001"), is(9007199254740994.0));
  EXPECT_THAT(bitsOf("0.1234567890123456789012"), is(0.12345678901234568));
  EXPECT_THAT(bitsOf("1.7976931348623157e300"), is(1.7976931348623157e300));
  EXPECT_THAT(bitsOf("179769313486231570000000000000000000000000000000"), is(1.7976931348623157e47));
  EXPECT_THAT(bitsOf("18446744073709551616"), is(18446744073709551616.0));  // where 64 bits wrap
  EXPECT_THAT(bitsOf("0.000000000000000000000000000001"), is(1e-30));
}

TEST(FastNumber, KeepsTheSignOfZero) {
  for (auto const* const zero : {"-0", "-0.0", "-0e0", "-0.000E-7", "-0e+300"})
    EXPECT_THAT(bitsOf(zero), is(-0.0)) << zero;
  EXPECT_THAT(bitsOf("0.0e-300"), is(0.0));
}

TEST(FastNumber, LeavesWhatIsNoNumber) {
  for (auto const* const text :
       {"", "-", "+1", ".5", "5.", "5.e3", "01", "-01.5", "00", "1e", "1e+", "1e-", "x", "NaN", "--1", "- 1"})
    EXPECT_EQ(bitsOf(text), std::nullopt) << text;
}

TEST(FastNumber, LeavesWhatIsBeyondTheRangeOrNearlySo) {
  for (auto const* const text : {"1e301", "0e309", "1e-301", "1e0300", "4.9e-324", "1e99999999999999999999"})
    EXPECT_EQ(bitsOf(text), std::nullopt) << text;
  EXPECT_EQ(bitsOf(std::string(310, '1')), std::nullopt);
  EXPECT_EQ(bitsOf("0." + std::string(310, '0') + "1"), std::nullopt);
}

TEST(FastNumber, ReadsNothingBehindTheEnd) {
  std::string const text = "1.5, 2.5";
  double value = 0.0;
  for (std::size_t size = 0; size <= text.size(); ++size) {
    std::string const exact = text.substr(0, size);  // the sanitizer watches what is behind
    static_cast<void>(readDecimal(exact.data(), exact.data() + exact.size(), value));
  }
  EXPECT_EQ(readDecimal(text.data() + 5, text.data() + text.size(), value), nullptr);
}

TEST(FastNumber, ReadsADecimalComma) {
  std::string const text = "-12,5;12345678901234567890,25;1.5;      ";
  auto const* const end = text.data() + text.size();
  double value = 0.0;
  auto const* at = readDecimal<','>(text.data(), end, value);
  ASSERT_EQ(at, text.data() + 5);
  EXPECT_EQ(value, -12.5);
  at = readDecimal<','>(at + 1, end, value);
  ASSERT_EQ(at, text.data() + 29);
  EXPECT_EQ(value, 12345678901234567890.25);
  at = readDecimal<','>(at + 1, end, value);
  ASSERT_EQ(at, text.data() + 31);
  EXPECT_EQ(value, 1.0);
}

/// Any number of the grammar, short and long.
std::string anyNumber(std::mt19937_64& random) {
  auto const below = [&](std::uint64_t end) { return random() % end; };
  auto const digits = [&](std::uint64_t count) {
    std::string text;
    for (std::uint64_t i = 0; i < count; ++i) text += static_cast<char>('0' + below(10));
    return text;
  };
  auto whole = digits(1 + below(below(4) == 0 ? 24 : 5));
  whole.erase(0, std::min(whole.find_first_not_of('0'), whole.size() - 1));
  auto number = (below(2) == 0 ? "-" : "") + whole;
  if (below(4) != 0) number += '.' + digits(1 + below(below(4) == 0 ? 24 : 9));
  if (below(3) == 0) number += (below(2) == 0 ? "e-" : "e") + std::to_string(below(40));
  return number;
}

TEST(FastNumber, GivesWhatTheStandardGives) {
  std::mt19937_64 random(20261122);
  for (int i = 0; i < 200'000; ++i) {
    auto const number = anyNumber(random);
    double expected = 0.0;
    std::from_chars(number.data(), number.data() + number.size(), expected);
    ASSERT_THAT(bitsOf(number), is(expected)) << number;
    ASSERT_TRUE(isPassed(number)) << number;
  }
}

TEST(FastNumber, PassesOverNothingElse) {
  for (auto const* const text : {"", "-", "+1", ".5", "5.", "5.e3", "01", "-01.5", "1e", "1e+", "x", "NaN",
                                 "1e301", "0e309", "1e0300", "10e300", "1e99999999999999999999"})
    EXPECT_FALSE(isPassed(text)) << text;
  EXPECT_FALSE(isPassed(std::string(310, '1')));
  EXPECT_FALSE(isPassed(std::string(200, '1') + "e200"));
  EXPECT_FALSE(isPassed("0." + std::string(310, '0') + "1"));
  EXPECT_TRUE(isPassed("-0.5e-300"));
}

TEST(FastNumber, ReadsTheShortestFormOfAnyDouble) {
  std::mt19937_64 random(20261123);
  for (int i = 0; i < 100'000; ++i) {
    auto const value = std::bit_cast<double>(random());
    if (!(std::abs(value) < 1e300 && std::abs(value) > 1e-280)) continue;
    std::array<char, 32> text;
    auto const* const end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    ASSERT_THAT(bitsOf(std::string(text.data(), static_cast<std::size_t>(end - text.data()))), is(value));
  }
}

}  // namespace
}  // namespace Kestrel::ResultTables

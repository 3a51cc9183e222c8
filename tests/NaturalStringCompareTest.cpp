#include "Business_TableProperties/NaturalStringCompare.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace Kestrel {
namespace {

using ::testing::ElementsAre;

NaturalStringCompare const isBefore{};

bool areEqual(std::string const& a, std::string const& b) { return !isBefore(a, b) && !isBefore(b, a); }

bool isOnlyBefore(std::string const& a, std::string const& b) { return isBefore(a, b) && !isBefore(b, a); }

TEST(NaturalStringCompare, OrdersNumbersByValue) {
  EXPECT_TRUE(isOnlyBefore("Joint 2", "Joint 10"));
  EXPECT_TRUE(isOnlyBefore("19", "21"));
  EXPECT_TRUE(isOnlyBefore("21", "199"));
  EXPECT_TRUE(isOnlyBefore("99999999999999999999999999999998", "99999999999999999999999999999999"));
  EXPECT_TRUE(isOnlyBefore("9999999999999999999999", "10000000000000000000000"));
  EXPECT_TRUE(isOnlyBefore("a1b2", "a1b10"));
  EXPECT_TRUE(isOnlyBefore("12a", "12b"));
  EXPECT_TRUE(areEqual("123", "123"));
}

TEST(NaturalStringCompare, HasNoRegardToCase) {
  EXPECT_TRUE(areEqual("weld", "WELD"));
  EXPECT_TRUE(isOnlyBefore("Weld A", "weld b"));
  EXPECT_TRUE(isOnlyBefore("weld a", "Weld B"));
  EXPECT_TRUE(isOnlyBefore("a", "_")) << "compared as the upper case letter";
}

TEST(NaturalStringCompare, ComparesNumbersWithLeadingZerosFromTheLeft) {
  EXPECT_TRUE(isOnlyBefore("a01", "a1"));
  EXPECT_TRUE(isOnlyBefore("a001", "a01"));
  EXPECT_TRUE(isOnlyBefore("a0", "a00"));
  EXPECT_TRUE(isOnlyBefore("a01", "a010"));
  EXPECT_TRUE(isOnlyBefore("a09", "a1"));
  EXPECT_TRUE(isOnlyBefore("a0999", "a1"));
  EXPECT_TRUE(isOnlyBefore("1.05", "1.5"));
  EXPECT_TRUE(isOnlyBefore("0", "1"));
  EXPECT_TRUE(isOnlyBefore("100", "101")) << "zeros inside a number are digits like others";
  EXPECT_TRUE(areEqual("a010", "a010"));
}

TEST(NaturalStringCompare, PassesOverWhiteSpace) {
  EXPECT_TRUE(areEqual("LJ1", "LJ 1"));
  EXPECT_TRUE(areEqual("ab", " \t\n\v\f\r a \t\n\v\f\r b \t\n\v\f\r "));
  EXPECT_TRUE(areEqual("", "  "));
  EXPECT_TRUE(isOnlyBefore("1 2", "12")) << "white space ends a number";
  EXPECT_TRUE(isOnlyBefore("1", "1 2"));
}

TEST(NaturalStringCompare, PutsTheEndBeforeAllAsciiCharacters) {
  EXPECT_TRUE(isOnlyBefore("", "a"));
  EXPECT_TRUE(isOnlyBefore("weld", "weld 1"));
  EXPECT_TRUE(isOnlyBefore("", "\x01"));
  EXPECT_TRUE(areEqual("", ""));
}

TEST(NaturalStringCompare, TakesBytesAsSigned) {
  EXPECT_TRUE(isOnlyBefore("\xC3\x84", "A"));
  EXPECT_TRUE(isOnlyBefore("\xC3\x84", "\x01"));
  EXPECT_TRUE(isOnlyBefore("a\xC3\x84", "a")) << "a negative byte is before the end";
  EXPECT_TRUE(isOnlyBefore("\x80", "\xFF"));
  EXPECT_TRUE(areEqual("\xC3\x84", "\xC3\x84"));
}

TEST(NaturalStringCompare, EndsNamesAtTheirFirstNul) {
  EXPECT_TRUE(areEqual(std::string("a\0b", 3), "a"));
  EXPECT_TRUE(areEqual(std::string("a\0b", 3), std::string("a\0c", 3)));
  EXPECT_TRUE(areEqual(std::string("1\0002", 3), "1"));
}

TEST(NaturalStringCompare, SortsTheNamesOfLineJoins) {
  std::vector<std::string> names{"LJ 2", "lj 10", "LJ 1"};
  std::sort(names.begin(), names.end(), isBefore);
  EXPECT_THAT(names, ElementsAre("LJ 1", "LJ 2", "lj 10"));
}

// --- properties --------------------------------------------------------------------------------------------

/// The comparison character by character: -1, 0 or 1.
int compareStepByStep(std::string const& a, std::string const& b) {
  auto const at = [](std::string const& s, std::size_t i) -> int {
    return static_cast<signed char>(s.c_str()[i]);
  };
  auto const isDigitAt = [&](std::string const& s, std::size_t i) {
    return at(s, i) >= '0' && at(s, i) <= '9';
  };
  auto const isSpaceAt = [&](std::string const& s, std::size_t i) {
    return at(s, i) == ' ' || (at(s, i) >= '\t' && at(s, i) <= '\r');
  };
  std::size_t i = 0;
  std::size_t k = 0;
  for (;; ++i, ++k) {
    while (isSpaceAt(a, i)) ++i;
    while (isSpaceAt(b, k)) ++k;
    if (isDigitAt(a, i) && isDigitAt(b, k)) {
      bool const fromTheLeft = at(a, i) == '0' || at(b, k) == '0';
      int sign = 0;
      for (std::size_t n = 0;; ++n) {
        bool const inA = isDigitAt(a, i + n);
        bool const inB = isDigitAt(b, k + n);
        if (inA && !inB) return 1;
        if (!inA && inB) return -1;
        if (!inA && !inB) break;
        int const difference = at(a, i + n) - at(b, k + n);
        if (difference != 0 && fromTheLeft) return difference < 0 ? -1 : 1;
        if (difference != 0 && sign == 0) sign = difference < 0 ? -1 : 1;
      }
      if (sign != 0) return sign;
    }
    auto const folded = [](int c) { return c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c; };
    int const x = folded(at(a, i));
    int const y = folded(at(b, k));
    if (x == 0 && y == 0) return 0;
    if (x != y) return x < y ? -1 : 1;
  }
}

/// Short names of few different characters, so that many share long prefixes and many are equal.
std::string anyName(std::mt19937& random) {
  static constexpr char alphabet[] = {'0', '0', '1',  '2', '9',    'a',    'A', 'b',
                                      '_', ' ', '\t', '.', '\xC3', '\x01', '\0'};
  std::string name(random() % 9, ' ');
  for (char& c : name)
    c = alphabet[random() % (random() % 8 == 0 ? std::size(alphabet) : std::size(alphabet) - 1)];
  return name;
}

TEST(NaturalStringCompare, IsWhatTheComparisonCharacterByCharacterGives) {
  std::mt19937 random(20240615);
  int equal = 0;
  for (int round = 0; round < 200000; ++round) {
    auto const a = anyName(random);
    auto const b = anyName(random);
    int const expected = compareStepByStep(a, b);
    ASSERT_EQ(isBefore(a, b), expected == -1) << ::testing::PrintToString(a) << ::testing::PrintToString(b);
    ASSERT_EQ(isBefore(b, a), expected == 1) << ::testing::PrintToString(a) << ::testing::PrintToString(b);
    if (expected == 0) ++equal;
  }
  EXPECT_GT(equal, 1000) << "the names are meant to be equal often";
}

TEST(NaturalStringCompare, IsAStrictWeakOrdering) {
  std::mt19937 random(20240616);
  for (int round = 0; round < 40; ++round) {
    std::vector<std::string> names(40);
    for (auto& name : names) name = anyName(random);
    for (auto const& a : names) {
      ASSERT_FALSE(isBefore(a, a)) << ::testing::PrintToString(a);
      for (auto const& b : names) {
        ASSERT_FALSE(isBefore(a, b) && isBefore(b, a)) << ::testing::PrintToString(std::pair(a, b));
        for (auto const& c : names) {
          bool const isOrdered = isBefore(a, b) && isBefore(b, c);
          bool const isLevel = areEqual(a, b) && areEqual(b, c);
          ASSERT_TRUE(!isOrdered || isBefore(a, c)) << ::testing::PrintToString(std::tuple(a, b, c));
          ASSERT_TRUE(!isLevel || areEqual(a, c)) << ::testing::PrintToString(std::tuple(a, b, c));
        }
      }
    }
  }
}

}  // namespace
}  // namespace Kestrel

#include "VantaService_PersistenceArchiver/TextTable.h"

#define XXH_INLINE_ALL
#include <gtest/gtest.h>
#include <xxhash.h>

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace Kestrel {
namespace {

using namespace std::string_view_literals;

TEST(TextTable, IsEmptyAtFirst) {
  TextTable const table;
  EXPECT_EQ(table.size(), 0U);
  EXPECT_EQ(table.getBytes(), "");
}

TEST(TextTable, NumbersTextsInTheOrderInWhichTheyCame) {
  TextTable table;
  EXPECT_EQ(table.add("Spannkraft"), 0U);
  EXPECT_EQ(table.add("N"), 1U);
  EXPECT_EQ(table.add(""), 2U);
  EXPECT_EQ(table.add("N"), 1U);
  EXPECT_EQ(table.add(""), 2U);
  EXPECT_EQ(table.add("Spannkraft"), 0U);
  EXPECT_EQ(table.size(), 3U);
  EXPECT_EQ(table.getBytes(), "\x0ASpannkraft\x01N\x00"sv);
}

TEST(TextTable, TakesTheEmptyTextFirst) {
  TextTable table;
  EXPECT_EQ(table.add(""), 0U);
  EXPECT_EQ(table.add(""), 0U);
  EXPECT_EQ(table.add("a"), 1U);
  EXPECT_EQ(table.getBytes(),
            "\x00\x01"
            "a"sv);
}

TEST(TextTable, TellsTextsApartThatBeginAlikeOrHoldZeros) {
  TextTable table;
  EXPECT_EQ(table.add("ab"), 0U);
  EXPECT_EQ(table.add("a"), 1U);
  EXPECT_EQ(table.add("abc"), 2U);
  EXPECT_EQ(table.add("a\0"sv), 3U);
  EXPECT_EQ(table.add("a\0b"sv), 4U);
  EXPECT_EQ(table.add("a"), 1U);
  EXPECT_EQ(table.add("a\0"sv), 3U);
}

TEST(TextTable, KnowsTextsAgainHoweverManyCameSince) {
  TextTable table;
  EXPECT_EQ(table.add("first"), 0U);
  for (std::uint32_t i = 1; i <= 20; ++i) {
    EXPECT_EQ(table.add(std::to_string(i)), i);
    EXPECT_EQ(table.add("first"), 0U);
    EXPECT_EQ(table.add(std::to_string(1 + i / 2)), 1 + i / 2);
  }
  EXPECT_EQ(table.size(), 21U);
}

/// Texts of four letters whose hash ends with the six bits: they have one slot in a table of 64.
std::vector<std::string> genTextsWithHashBits(std::uint64_t bits, std::size_t count) {
  std::vector<std::string> texts;
  for (int i = 1000; texts.size() < count; ++i) {
    auto const text = std::to_string(i);
    if (XXH3_64bits(text.data(), text.size()) % 64 == bits) texts.push_back(text);
  }
  return texts;
}

TEST(TextTable, TellsTextsOfTheSameSlotApart) {
  // Behind slot 63 comes slot 0. The 33rd text makes the table grow.
  for (std::uint64_t const bits : {0U, 30U, 63U}) {
    TextTable table;
    auto const texts = genTextsWithHashBits(bits, 40);
    for (std::uint32_t i = 0; i < 40; ++i) {
      ASSERT_EQ(table.add(texts[i]), i) << bits;
      for (std::uint32_t j = 0; j <= i; ++j) ASSERT_EQ(table.add(texts[j]), j) << bits;
    }
    EXPECT_EQ(table.size(), 40U);
  }
}

// Where the first eight bytes of 32 are those of the hash's secret, a factor of the hash is zero, and the
// eight bytes behind them do not count.
TEST(TextTable, TellsTextsOfTheSameHashApart) {
  std::string const begin = "\xB8\xFE\x6C\x39\x23\xA4\x4B\xBE";
  std::string const first = begin + "Spanner!" + "same to its end.";
  std::string const second = begin + "Bolzen!!" + "same to its end.";
  ASSERT_EQ(XXH3_64bits(first.data(), first.size()), XXH3_64bits(second.data(), second.size()));
  TextTable table;
  EXPECT_EQ(table.add(first), 0U);
  EXPECT_EQ(table.add(second), 1U);
  // They are not among the texts of late any more.
  for (std::uint32_t i = 2; i < 12; ++i) ASSERT_EQ(table.add(std::to_string(i)), i);
  EXPECT_EQ(table.add(second), 1U);
  EXPECT_EQ(table.add(first), 0U);
  EXPECT_EQ(table.size(), 12U);
}

TEST(TextTable, DoesWhatASearchTreeDoes) {
  for (unsigned int seed = 0; seed < 10; ++seed) {
    std::mt19937 random(seed);
    TextTable table;
    std::map<std::string, std::uint32_t> slow;
    std::string bytes;
    for (int i = 0; i < 5000; ++i) {
      std::string text(random() % 4, '\0');
      for (char& character : text) character = static_cast<char>(random() % (2 + 8 * seed));
      auto const [entry, isNew] = slow.try_emplace(text, static_cast<std::uint32_t>(slow.size()));
      if (isNew) bytes += static_cast<char>(text.size()) + text;
      ASSERT_EQ(table.add(text), entry->second) << "seed " << seed;
    }
    EXPECT_EQ(table.size(), slow.size());
    EXPECT_EQ(table.getBytes(), bytes);
  }
}

}  // namespace
}  // namespace Kestrel

#include "VantaService_Translator/MessageCatalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <boost/endian/conversion.hpp>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Kestrel {
namespace {

using testing::StrEq;

std::string const header = "Content-Type: text/plain; charset=UTF-8\n";

/// A compiled catalogue as the format describes it: seven words, the texts, the two tables and the hash
/// table.
struct Catalogue {
  /// Keys in ascending order; context and text of a key are separated by a byte 4.
  std::vector<std::pair<std::string, std::string>> messages{
      {"", header},
      {"Clamps", "ohne Kontext"},
      {"Family\4Clamps", "Spanner"},
      {"Family|\4Clamps", "leerer Kommentar"},
      {"Family|short\4Clamps", "Sp."},
      {"Family|short\4Bolts", "Bz."},
  };
  std::vector<std::uint32_t> hashTable;
  std::uint32_t revision = 0;
  bool isBigEndian = false;

  /// The tables are at the end: of the texts and of the keys, and behind them the hash table.
  [[nodiscard]] std::vector<char> genBytes() const {
    constexpr std::uint32_t headerSize = 28;
    auto const count = static_cast<std::uint32_t>(messages.size());
    std::string texts;
    std::vector<std::uint32_t> keyTable;
    std::vector<std::uint32_t> textTable;
    auto const append = [&](std::vector<std::uint32_t>& table, std::string const& text) {
      table.push_back(static_cast<std::uint32_t>(text.size()));
      table.push_back(headerSize + static_cast<std::uint32_t>(texts.size()));
      texts += text + '\0';
    };
    for (auto const& [key, text] : messages) {
      append(keyTable, key);
      append(textTable, text);
    }
    auto const tables = headerSize + static_cast<std::uint32_t>(texts.size());
    auto const hashSize = static_cast<std::uint32_t>(hashTable.size());
    std::vector<char> bytes;
    addWords(bytes, {0x950412de, revision, count, tables + 8 * count, tables, hashSize, tables + 16 * count});
    bytes.insert(bytes.end(), texts.begin(), texts.end());
    for (auto const& table : {textTable, keyTable, hashTable}) addWords(bytes, table);
    return bytes;
  }

 private:
  void addWords(std::vector<char>& bytes, std::vector<std::uint32_t> const& words) const {
    for (auto const word : words) {
      std::array<unsigned char, 4> stored{};
      if (isBigEndian)
        boost::endian::store_big_u32(stored.data(), word);
      else
        boost::endian::store_little_u32(stored.data(), word);
      bytes.insert(bytes.end(), stored.begin(), stored.end());
    }
  }
};

void expectMessages(std::optional<MessageCatalogue> const& catalogue) {
  ASSERT_TRUE(catalogue);
  EXPECT_THAT(catalogue->find(nullptr, "Clamps", -1), StrEq("ohne Kontext"));
  EXPECT_THAT(catalogue->find("Family", "Clamps", -1), StrEq("Spanner"));
  EXPECT_THAT(catalogue->find("Family|short", "Bolts", -1), StrEq("Bz."));
  EXPECT_EQ(catalogue->find(nullptr, "Bolts", -1), nullptr);
}

TEST(MessageCatalogueBytes, HoldACommentInTheContext) {
  auto const catalogue = MessageCatalogue::parse(Catalogue{}.genBytes());
  expectMessages(catalogue);
  EXPECT_THAT(catalogue->find("Family|short", "Clamps", -1), StrEq("Sp."));
  EXPECT_THAT(catalogue->find("Family|", "Clamps", -1), StrEq("leerer Kommentar"));
  EXPECT_EQ(catalogue->find("Family|long", "Clamps", -1), nullptr);
  EXPECT_EQ(catalogue->find("Family", "Bolts", -1), nullptr) << "is there with the comment only";
  EXPECT_EQ(catalogue->find("short", "Bolts", -1), nullptr);
}

TEST(MessageCatalogueBytes, ComeInEitherOrder) {
  for (bool const isBigEndian : {false, true}) {
    Catalogue catalogue;
    catalogue.isBigEndian = isBigEndian;
    catalogue.hashTable.assign(11, 0);
    expectMessages(MessageCatalogue::parse(catalogue.genBytes()));
  }
}

// It is an option of the format, and nobody has checked it.
TEST(MessageCatalogueBytes, AreReadWithoutTheHashTable) {
  for (std::size_t const size : {1U, 3U, 11U, 13U}) {
    // An empty table, tables that name one message only, and such that name none that there is.
    for (std::uint32_t const number : {0U, 1U, 2U, 6U, 7U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
      Catalogue catalogue;
      catalogue.hashTable.assign(size, number);
      SCOPED_TRACE(std::to_string(size) + " times " + std::to_string(number));
      expectMessages(MessageCatalogue::parse(catalogue.genBytes()));
    }
  }
}

TEST(MessageCatalogueBytes, AreReadWhereverTheHashTableIsSaidToBe) {
  for (std::uint32_t const offset : {0U, 27U, 100000U, 0xFFFFFFFFU}) {
    Catalogue catalogue;
    catalogue.hashTable.assign(11, 1);
    auto bytes = catalogue.genBytes();
    std::uint32_t const stored = boost::endian::native_to_little(offset);
    std::memcpy(bytes.data() + 24, &stored, sizeof stored);
    expectMessages(MessageCatalogue::parse(bytes));
  }
}

TEST(MessageCatalogueBytes, AreOfMajorRevision0Or1) {
  for (std::uint32_t const revision : {0U, 1U, 0xFFFFU, 0x10000U, 0x1FFFFU}) {
    Catalogue catalogue;
    catalogue.revision = revision;
    expectMessages(MessageCatalogue::parse(catalogue.genBytes()));
  }
  for (std::uint32_t const revision : {0x20000U, 0xFFFFFFFFU}) {
    Catalogue catalogue;
    catalogue.revision = revision;
    EXPECT_FALSE(MessageCatalogue::parse(catalogue.genBytes())) << revision;
  }
}

TEST(MessageCatalogueBytes, MayEndWithATableAndNotBeforeItsEnd) {
  auto bytes = Catalogue{}.genBytes();
  expectMessages(MessageCatalogue::parse(bytes));
  bytes.pop_back();
  EXPECT_FALSE(MessageCatalogue::parse(bytes));
}

TEST(MessageCatalogueBytes, HoldAsManyMessagesAsTheTablesHaveRoomFor) {
  Catalogue catalogue;
  for (char letter = 'a'; letter <= 'z'; ++letter)
    catalogue.messages.emplace_back(std::string(1, letter), "x");
  auto bytes = catalogue.genBytes();
  expectMessages(MessageCatalogue::parse(bytes));
  ASSERT_EQ(bytes[8], 32);
  bytes[8] = 33;  // the table of keys would reach beyond the end
  EXPECT_FALSE(MessageCatalogue::parse(bytes));
}

TEST(MessageCatalogueBytes, HaveNoTranslationWhereTheyHoldAnEmptyOne) {
  Catalogue catalogue;
  catalogue.messages.emplace_back("empty", "");
  catalogue.messages.emplace_back("step", std::string("\0viele", 6));
  auto const read = MessageCatalogue::parse(catalogue.genBytes());
  expectMessages(read);
  EXPECT_EQ(read->find(nullptr, "empty", -1), nullptr);
  EXPECT_EQ(read->find(nullptr, "empty", 1), nullptr);
  EXPECT_EQ(read->find(nullptr, "step", 1), nullptr);
  EXPECT_EQ(read->find(nullptr, "step", -1), nullptr);
  EXPECT_THAT(read->find(nullptr, "step", 2), StrEq("viele"));
}

TEST(MessageCatalogueBytes, BeginWithTheHeader) {
  Catalogue catalogue;
  catalogue.messages.erase(catalogue.messages.begin());
  catalogue.messages.front().second = header;
  EXPECT_FALSE(MessageCatalogue::parse(catalogue.genBytes()));
}

TEST(MessageCatalogueBytes, MayBeAHeaderAlone) {
  Catalogue catalogue;
  catalogue.messages.resize(1);
  auto const read = MessageCatalogue::parse(catalogue.genBytes());
  ASSERT_TRUE(read);
  EXPECT_EQ(read->find("Family", "Clamps", -1), nullptr);
}

/// A catalogue with a message in two forms, and a plural rule of `length` characters.
std::optional<MessageCatalogue> parseWithRule(std::size_t length) {
  std::string const rule = "n>4";
  Catalogue catalogue;
  catalogue.messages = {{"", header + "Plural-Forms: nplurals=2; plural=" +
                                 std::string(length - rule.size(), ' ') + rule + ";\n"},
                        {"step", std::string("wenige\0viele", 12)}};
  return MessageCatalogue::parse(catalogue.genBytes());
}

TEST(MessageCatalogueBytes, HaveAPluralRuleOfAtMost1000Characters) {
  for (std::size_t const length : {3U, 1000U}) {
    auto const catalogue = parseWithRule(length);
    ASSERT_TRUE(catalogue) << length;
    EXPECT_THAT(catalogue->find(nullptr, "step", 4), StrEq("wenige"));
    EXPECT_THAT(catalogue->find(nullptr, "step", 5), StrEq("viele"));
    EXPECT_THAT(catalogue->find(nullptr, "step", 0), StrEq("wenige"));
    EXPECT_THAT(catalogue->find(nullptr, "step", -1), StrEq("wenige"));
  }
  EXPECT_FALSE(parseWithRule(1001));
}

}  // namespace
}  // namespace Kestrel

#include "result_tables/base/Pairs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::nullopt_t none = std::nullopt;

using Keys = std::vector<std::string>;

TEST(Pairs, AreOfEqualKeysInTheOrderOfTheFirstListAndThenOfTheSecondAlone) {
  EXPECT_THAT(pairEqualKeys(Keys{"c", "a", "b"}, Keys{"e", "b", "d", "c"}),
              ElementsAre(IndexPair{0, 3}, IndexPair{1, none}, IndexPair{2, 1}, IndexPair{none, 0},
                          IndexPair{none, 2}));
}

TEST(Pairs, AreOfTheFirstOfAKeyWithTheFirst) {
  EXPECT_THAT(
      pairEqualKeys(Keys{"a", "b", "a", "a"}, Keys{"a", "a", "b", "b"}),
      ElementsAre(IndexPair{0, 0}, IndexPair{1, 2}, IndexPair{2, 1}, IndexPair{3, none}, IndexPair{none, 3}));
}

TEST(Pairs, AreNoneOfTwoEmptyLists) { EXPECT_THAT(pairEqualKeys(Keys(), Keys()), IsEmpty()); }

TEST(Pairs, AreFoundWithoutComparingAllWithAll) {
  constexpr std::size_t count = 160000;
  std::vector<std::size_t> before(count);
  std::vector<std::size_t> after(count);
  for (std::size_t i = 0; i < count; ++i) {
    before[i] = i;
    after[i] = count - i;
  }
  auto const pairs = pairEqualKeys(before, after);
  ASSERT_EQ(pairs.size(), 160001U);
  EXPECT_EQ(pairs[0], (IndexPair{0, none}));
  EXPECT_EQ(pairs[1], (IndexPair{1, 159999}));
  EXPECT_EQ(pairs[159999], (IndexPair{159999, 1}));
  EXPECT_EQ(pairs[160000], (IndexPair{none, 0}));
}

}  // namespace
}  // namespace Kestrel::ResultTables

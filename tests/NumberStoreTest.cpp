#include "result_tables/results/NumberStore.h"

#include <gmock/gmock.h>

#include <array>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace Kestrel::ResultTables {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Series = std::pair<std::shared_ptr<void const>, std::span<double const>>;

Series close(NumberStore<double>& store) {
  return store.close([](auto owner, auto numbers) { return Series(std::move(owner), numbers); });
}

TEST(NumberStore, GivesTheNumbersOfEachSeries) {
  NumberStore<double> store;
  EXPECT_THAT(close(store).second, IsEmpty());
  store.add(1);
  store.add(2);
  auto const first = close(store);
  store.add(3);
  auto const second = close(store);
  EXPECT_THAT(first.second, ElementsAre(1, 2));
  EXPECT_THAT(second.second, ElementsAre(3));
  EXPECT_EQ(first.first, second.first) << "one block for both";
  EXPECT_THAT(close(store).second, IsEmpty());
}

TEST(NumberStore, ForgetsTheNumbersOfASeriesThatIsDropped) {
  NumberStore<double> store;
  store.add(1);
  auto const first = close(store);
  store.add(2);
  store.drop();
  store.add(3);
  EXPECT_THAT(close(store).second, ElementsAre(3));
  EXPECT_THAT(first.second, ElementsAre(1));
}

TEST(NumberStore, KeepsABlockAsLongAsASeriesInIt) {
  Series series;
  std::weak_ptr<void const> block;
  {
    NumberStore<double> store;
    store.add(1);
    close(store);
    store.add(2);
    series = close(store);
    block = series.first;
  }
  EXPECT_THAT(series.second, ElementsAre(2));
  series = {};
  EXPECT_TRUE(block.expired());
}

/// Series of any length are kept as they were added, whatever blocks they begin and end in.
TEST(NumberStore, KeepsSeriesOfAnyLength) {
  NumberStore<double> store;
  std::vector<Series> kept;
  std::size_t const lengths[] = {1, 511, 512, 513, 0, 2000, 3, 300'000, 7, 1'000'000, 100, 262'144};
  double number = 0;
  for (auto const length : lengths) {
    for (std::size_t i = 0; i < length; ++i) store.add(number++);
    kept.push_back(close(store));
  }
  number = 0;
  for (std::size_t i = 0; i < std::size(lengths); ++i) {
    ASSERT_EQ(kept[i].second.size(), lengths[i]);
    for (auto const value : kept[i].second) ASSERT_EQ(value, number++);
  }
}

TEST(NumberStore, TakesSpareMemoryFirst) {
  auto const spare = std::make_shared<std::array<double, 1000>>();
  int asked = 0;
  NumberStore<double> store([&](std::size_t bytes) {
    EXPECT_LE(bytes, 8000u);
    return asked++ == 0 ? SpareMemory{spare, spare->data(), sizeof *spare} : SpareMemory{};
  });
  for (int i = 0; i < 990; ++i) store.add(i);
  auto const first = close(store);
  EXPECT_EQ(first.second.data(), spare->data());
  EXPECT_EQ(first.first, spare);
  for (int i = 0; i < 20; ++i) store.add(1000 + i);
  auto const second = close(store);
  EXPECT_EQ(asked, 2);
  EXPECT_NE(second.first, first.first) << "a series is in one piece";
  ASSERT_EQ(second.second.size(), 20u);
  EXPECT_EQ(second.second.front(), 1000);
  EXPECT_EQ(second.second.back(), 1019);
  EXPECT_EQ(first.second.back(), 989);
}

TEST(NumberStore, NeverGrowsSpareMemory) {
  auto const spare = std::make_shared<std::array<double, 600>>();
  bool isGiven = false;
  NumberStore<double> store([&](std::size_t) {
    return std::exchange(isGiven, true) ? SpareMemory{} : SpareMemory{spare, spare->data(), sizeof *spare};
  });
  for (int i = 0; i < 100'000; ++i) store.add(i);
  auto const series = close(store);
  ASSERT_EQ(series.second.size(), 100'000u);
  EXPECT_EQ(series.second[599], 599);
  EXPECT_EQ(series.second[99'999], 99'999);
  EXPECT_EQ(spare.use_count(), 1);
}

/// The block before it may be gone by then, which the address sanitizer would tell.
TEST(NumberStore, GrowsOutOfSpareMemoryThatFollowsABlockOfItsOwn) {
  auto spare = std::make_shared<std::array<double, 2000>>();
  std::weak_ptr<void const> const given = spare;
  int asked = 0;
  NumberStore<double> store([&](std::size_t) {
    if (++asked != 2) return SpareMemory{};
    auto* const data = spare->data();
    return SpareMemory{std::move(spare), data, sizeof(std::array<double, 2000>)};
  });
  for (int i = 0; i < 512; ++i) store.add(i);
  close(store);
  for (int i = 0; i < 5000; ++i) store.add(i);
  auto const series = close(store);
  EXPECT_EQ(asked, 3);
  ASSERT_EQ(series.second.size(), 5000u);
  EXPECT_EQ(series.second.front(), 0);
  EXPECT_EQ(series.second.back(), 4999);
  EXPECT_TRUE(given.expired()) << "nothing of the series is in it any more";
}

}  // namespace
}  // namespace Kestrel::ResultTables

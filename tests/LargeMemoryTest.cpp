#include "result_tables/base/LargeMemory.h"

#include <gmock/gmock.h>

#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Kestrel::ResultTables {
namespace {

constexpr std::size_t s_megabyte = std::size_t{1} << 20;

char* textOf(LargeMemory const& memory) { return static_cast<char*>(memory.data()); }

TEST(LargeMemory, OfNothingHasNoData) {
  EXPECT_EQ(LargeMemory().data(), nullptr);
  EXPECT_EQ(LargeMemory(0).data(), nullptr);
}

TEST(LargeMemory, HasAtLeastTheSizeThatIsAskedFor) {
  for (std::size_t const size :
       {std::size_t{1}, std::size_t{4096}, 2 * s_megabyte - 1, 2 * s_megabyte, 5 * s_megabyte + 1}) {
    LargeMemory const memory(size);
    EXPECT_GE(memory.size(), size);
    std::memset(memory.data(), 7, memory.size());
    EXPECT_EQ(textOf(memory)[memory.size() - 1], 7);
  }
}

TEST(LargeMemory, KeepsWhatIsThereWhenItGrows) {
  LargeMemory memory(4);
  std::memcpy(memory.data(), "text", 4);
  for (std::size_t const size :
       {std::size_t{100}, s_megabyte, 2 * s_megabyte, 9 * s_megabyte, 100 * s_megabyte}) {
    memory.grow(size);
    EXPECT_GE(memory.size(), size);
    EXPECT_EQ(std::string_view(textOf(memory), 4), "text") << size;
    std::memset(textOf(memory) + 4, 1, memory.size() - 4);
  }
}

TEST(LargeMemory, GrowsFromNothing) {
  LargeMemory memory;
  memory.grow(3);
  std::memcpy(memory.data(), "abc", 3);
  EXPECT_EQ(std::string_view(textOf(memory), 3), "abc");
}

TEST(LargeMemory, KeepsWhatIsBeforeThePartThatIsReleased) {
  for (std::size_t const size : {std::size_t{10'000}, 3 * s_megabyte}) {
    LargeMemory memory(size);
    std::memset(memory.data(), 7, memory.size());
    memory.release(5000);
    EXPECT_EQ(std::string_view(textOf(memory), 5000), std::string(5000, 7));
    std::memset(memory.data(), 8, memory.size());
    EXPECT_EQ(textOf(memory)[memory.size() - 1], 8) << "it is memory still";
    memory.release(memory.size());
    EXPECT_EQ(textOf(memory)[memory.size() - 1], 8);
  }
}

TEST(LargeMemory, HasOneOwner) {
  LargeMemory first(8);
  auto* const data = first.data();
  LargeMemory second(std::move(first));
  EXPECT_EQ(second.data(), data);
  LargeMemory third(3 * s_megabyte);
  third = std::move(second);
  EXPECT_EQ(third.data(), data);
}

TEST(LargeMemory, ThatThereIsNotIsBadAlloc) {
  EXPECT_THROW(LargeMemory{std::numeric_limits<std::size_t>::max()}, std::bad_alloc);
  EXPECT_THROW(LargeMemory{std::numeric_limits<std::size_t>::max() / 4}, std::bad_alloc);
  LargeMemory memory(3 * s_megabyte);
  std::memcpy(memory.data(), "text", 4);
  EXPECT_THROW(memory.grow(std::numeric_limits<std::size_t>::max()), std::bad_alloc);
  EXPECT_THROW(memory.grow(std::numeric_limits<std::size_t>::max() / 4), std::bad_alloc);
  EXPECT_EQ(std::string_view(textOf(memory), 4), "text");
}

TEST(LargeMemory, CanBeAskedForBehindAVector) {
  for (std::size_t const size : {std::size_t{1}, std::size_t{5000}, std::size_t{9} << 20}) {
    std::vector<char> memory(size, 'x');
    askForLargePages(memory.data(), memory.size());
    EXPECT_EQ(memory, std::vector<char>(size, 'x')) << size;
    memory.assign(size, 'y');
    EXPECT_EQ(memory, std::vector<char>(size, 'y')) << size;
  }
}

}  // namespace
}  // namespace Kestrel::ResultTables

#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <utility>

#include "result_tables/base/LargeMemory.h"

namespace Kestrel::ResultTables {

/// Memory that is there already and may be written to as long as the owner lives; none has no owner.
struct SpareMemory {
  std::shared_ptr<void const> owner;
  void* data = nullptr;
  std::size_t size = 0;  ///< in bytes
};

/// Gives at least so many bytes of such memory, aligned for numbers, or none.
using SpareMemorySource = std::function<SpareMemory(std::size_t bytes)>;

/// Keeps the numbers of many series in few blocks of memory, each series in one piece. What it gives shares
/// the block, which is freed with the last series in it.
template <typename Number>
class NumberStore {
 public:
  /// Takes spare memory before new one.
  explicit NumberStore(SpareMemorySource spareMemory = {}) : m_spareMemory(std::move(spareMemory)) {}

  /// Adds a number to the series that is open.
  void add(Number const& number) {
    if (m_end == m_room) grow();
    *m_end++ = number;
  }

  /// Ends the open series and gives what `make(owner, numbers)` makes of it; the next one is empty.
  template <typename Make>
  auto close(Make const& make) {
    std::span<Number const> const numbers(m_begin, m_end);
    m_begin = m_end;
    return make(m_owner, numbers);
  }

  /// Forgets the numbers of the open series.
  void drop() { m_end = m_begin; }

 private:
  /// New blocks double from the first size to the last, so that small files take little memory and large ones
  /// have little that is unused.
  static constexpr std::size_t s_smallestBlock = 512;
  static constexpr std::size_t s_largestBlock = std::size_t{1} << 18;

  void grow() {
    auto const count = static_cast<std::size_t>(m_end - m_begin);
    // A series that is alone in its block is a long one, and grows where it is.
    if (m_growable != nullptr && m_owner.use_count() == 1 && m_begin == m_growable->data()) {
      m_growable->grow(2 * count * sizeof(Number));
      use(m_growable->data(), m_growable->size(), count);
      return;
    }
    auto const leastSize = std::max(s_smallestBlock, 2 * count) * sizeof(Number);
    auto spare = m_spareMemory ? m_spareMemory(leastSize) : SpareMemory();
    m_growable = nullptr;
    if (!spare.owner) spare = newBlock(std::max(leastSize, m_newBlockSize));
    std::copy(m_begin, m_end, static_cast<Number*>(spare.data));
    m_owner = std::move(spare.owner);
    use(spare.data, spare.size, count);
  }

  SpareMemory newBlock(std::size_t bytes) {
    m_newBlockSize = std::min(2 * bytes, s_largestBlock * sizeof(Number));
    auto block = std::make_shared<LargeMemory>(bytes);
    m_growable = block.get();
    return {block, block->data(), block->size()};
  }

  /// Goes on in memory that has `count` numbers of the open series already.
  void use(void* data, std::size_t bytes, std::size_t count) {
    m_begin = static_cast<Number*>(data);
    m_end = m_begin + count;
    m_room = m_begin + bytes / sizeof(Number);
  }

  SpareMemorySource m_spareMemory;
  std::shared_ptr<void const> m_owner;
  LargeMemory* m_growable = nullptr;  ///< the owner; null where that was spare memory
  Number* m_begin = nullptr;          ///< of the open series
  Number* m_end = nullptr;
  Number* m_room = nullptr;
  std::size_t m_newBlockSize = 0;  ///< in bytes
};

}  // namespace Kestrel::ResultTables

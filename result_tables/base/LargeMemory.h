#pragma once

#include <cstddef>
#include <utility>

namespace Kestrel::ResultTables {

/// Memory for numbers or text that are written once and soon. From two megabytes on it has large pages, where
/// the system has them: filling it then takes a fault for each two megabytes, not one for each four
/// kilobytes. What is not written to takes no memory.
class LargeMemory {
 public:
  LargeMemory() = default;
  /// Of at least `bytes` bytes. Throws std::bad_alloc.
  explicit LargeMemory(std::size_t bytes);
  LargeMemory(LargeMemory&& other) noexcept { swap(other); }
  LargeMemory& operator=(LargeMemory&& other) noexcept {
    swap(other);
    return *this;
  }
  ~LargeMemory();

  [[nodiscard]] void* data() const { return m_data; }
  [[nodiscard]] std::size_t size() const { return m_size; }

  /// Makes it one of at least `bytes` bytes, which are more than `size()`. What is there stays and may move;
  /// where that is much, the system moves it without a copy. Throws std::bad_alloc, and nothing has happened.
  void grow(std::size_t bytes);

  /// Gives back to the system what it can of the bytes from `offset` on, whose content is nothing from then
  /// on.
  void release(std::size_t offset);

 private:
  void swap(LargeMemory& other) noexcept {
    std::swap(m_data, other.m_data);
    std::swap(m_size, other.m_size);
  }

  void* m_data = nullptr;
  std::size_t m_size = 0;
};

/// Asks for large pages behind memory of another kind that is going to be filled once and soon, such as what
/// a vector has reserved. Where there are none, and for less than two of them, nothing happens.
void askForLargePages(void const* memory, std::size_t bytes);

}  // namespace Kestrel::ResultTables

#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

namespace Kestrel {

/// The objects of one class that an archive has written, with the address of their first record.
///
/// The table shares the ownership of its objects: an object that is released while the archive is written
/// cannot leave its place in memory to another one, which would be taken for it.
///
/// Objects that lie side by side in memory do so in the table: their places are found by memory page, and in
/// order within it.
class StreamposMap {
 public:
  /// Address of the object's first record. An object that was not written yet is remembered with `address`,
  /// and 0 returned. Amortised O(1) on average. REQUIRES: an address other than 0.
  [[nodiscard]] unsigned int findOrInsert(std::shared_ptr<void const> object, unsigned int address);

  /// Number of objects.
  [[nodiscard]] std::size_t size() const { return m_entries.size(); }

 private:
  struct Entry {
    std::shared_ptr<void const> object;
    unsigned int address;
  };

  [[nodiscard]] std::size_t slotOf(void const* object) const;
  void grow();

  std::deque<Entry> m_entries;
  std::vector<std::uint32_t>
      m_slots;  ///< one more than the index of an entry; 0: free. Never more than half full
};

}  // namespace Kestrel

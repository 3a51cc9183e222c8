#pragma once

#include <cstddef>
#include <cstdint>
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
  /// Address of the object's first record; 0 when it was not written yet. O(1) on average.
  [[nodiscard]] unsigned int find(void const* object) const;

  /// Remembers where an object is written. REQUIRES: not there yet, an address other than 0. Amortised O(1).
  void insert(std::shared_ptr<void const> object, unsigned int address);

  [[nodiscard]] std::size_t size() const { return m_entries.size(); }

 private:
  struct Entry {
    std::shared_ptr<void const> object;
    unsigned int address;
  };

  [[nodiscard]] std::size_t slotOf(void const* object) const;
  void grow();

  std::vector<Entry> m_entries;
  std::vector<std::uint32_t>
      m_slots;  ///< one more than the index of an entry; 0: free. Never more than half full
};

}  // namespace Kestrel

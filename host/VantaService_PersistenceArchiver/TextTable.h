#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "VantaService_PersistenceArchiver/ByteWriter.h"

namespace Kestrel {

/// The texts of a document that is being written: each different one once, numbered in the order in which
/// they came.
class TextTable {
 public:
  /// Number of the text, which is copied when it is new. O(length).
  [[nodiscard]] std::uint32_t add(std::string_view text);

  /// Number of texts.
  [[nodiscard]] std::size_t size() const { return m_entries.size(); }
  /// The texts in their order, each as its length and its bytes.
  [[nodiscard]] std::string_view getBytes() const { return m_bytes.getBytes(); }

 private:
  struct Entry {
    std::uint32_t offset;  ///< of the text's bytes
    std::uint32_t length;
    std::uint64_t hash;
  };

  [[nodiscard]] bool isText(Entry const& entry, std::string_view text) const {
    return entry.length == text.size() &&
           std::char_traits<char>::compare(getBytes().data() + entry.offset, text.data(), text.size()) == 0;
  }
  [[nodiscard]] std::uint32_t findOrInsert(std::string_view text);
  void grow();

  ByteWriter m_bytes;
  std::vector<Entry> m_entries;
  std::vector<std::uint32_t> m_slots;  ///< one more than a text's number, by hash; 0: free. At most half full
  std::array<std::uint32_t, 4> m_recent{};  ///< numbers of texts that were added lately
  std::size_t m_next = 0;                   ///< the place in m_recent that is overwritten next
};

}  // namespace Kestrel

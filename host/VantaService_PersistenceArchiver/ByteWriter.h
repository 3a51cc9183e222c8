#pragma once

#include <boost/endian/conversion.hpp>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Kestrel {

/// Appends the archive's elementary values to bytes. std::length_error beyond 2 GiB. Amortised constant time
/// per byte.
class ByteWriter {
 public:
  /// Number of bytes so far.
  [[nodiscard]] unsigned int getPosition() const { return static_cast<unsigned int>(m_size); }
  /// What was written so far; valid until more is.
  [[nodiscard]] std::string_view getBytes() const { return {m_bytes.data(), m_size}; }

  /// 1 to 5 bytes, seven bits each, the lowest first.
  void writeNumber(std::uint32_t value) {
    char* at = reserve(5);
    for (; value >= 0x80; value >>= 7) *at++ = static_cast<char>(value | 0x80U);
    *at++ = static_cast<char>(value);
    m_size = static_cast<std::size_t>(at - m_bytes.data());
  }
  /// 4 bytes, the lowest first.
  void writeWord(std::uint32_t value) {
    boost::endian::store_little_u32(reinterpret_cast<unsigned char*>(reserve(4)), value);
    m_size += 4;
  }
  /// 8 bytes, the lowest first.
  void writeLongWord(std::uint64_t value) {
    boost::endian::store_little_u64(reinterpret_cast<unsigned char*>(reserve(8)), value);
    m_size += 8;
  }
  /// The bytes as they are.
  void writeBytes(std::string_view bytes) { m_size += bytes.copy(reserve(bytes.size()), bytes.size()); }

  /// Replaces the word at a position. REQUIRES: position + 4 <= getPosition().
  void replaceWord(unsigned int position, std::uint32_t value) {
    assert(std::size_t{position} + 4 <= m_size);
    boost::endian::store_little_u32(reinterpret_cast<unsigned char*>(m_bytes.data() + position), value);
  }

  /// Room to make for `count` more bytes than `size`: twice as much where that is more, never beyond 2 GiB.
  /// std::length_error when they do not fit. REQUIRES: a size of at most 2 GiB.
  [[nodiscard]] static std::size_t genRoom(std::size_t size, std::size_t count);

  /// Hands out the bytes and is empty afterwards.
  [[nodiscard]] std::string takeBytes();

 private:
  /// Where the next `count` bytes go.
  [[nodiscard]] char* reserve(std::size_t count) {
    if (m_bytes.size() - m_size < count) grow(count);
    return m_bytes.data() + m_size;
  }
  void grow(std::size_t count);

  std::string m_bytes;  ///< its size is the room that there is
  std::size_t m_size = 0;
};

}  // namespace Kestrel

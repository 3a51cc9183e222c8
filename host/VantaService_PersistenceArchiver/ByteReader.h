#pragma once

#include <boost/endian/conversion.hpp>
#include <cassert>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace Kestrel {

/// Reads the archive's elementary values from bytes, never beyond a bound. An ArchiveException names the
/// offset at which a value does not fit.
///
/// Refers to the bytes. Everything is constant time.
class ByteReader {
 public:
  ByteReader() = default;
  /// From the first byte to the last. REQUIRES: fewer than 2^32 bytes.
  explicit ByteReader(std::string_view bytes)
      : m_bytes(bytes), m_position(bytes.data()), m_end(bytes.data() + bytes.size()) {
    assert(bytes.size() <= std::numeric_limits<std::uint32_t>::max());
  }

  /// In bytes from the first one.
  [[nodiscard]] unsigned int getPosition() const {
    return static_cast<unsigned int>(m_position - m_bytes.data());
  }
  /// Up to the bound.
  [[nodiscard]] unsigned int getBytesLeft() const { return static_cast<unsigned int>(m_end - m_position); }

  /// Goes to another place and bound. REQUIRES: position <= end, both inside the bytes.
  void set(unsigned int position, unsigned int end) {
    assert(position <= end && end <= m_bytes.size());
    m_position = m_bytes.data() + position;
    m_end = m_bytes.data() + end;
  }

  /// 1 to 5 bytes, seven bits each, the lowest first.
  [[nodiscard]] std::uint32_t readNumber() {
    if (m_position != m_end && static_cast<unsigned char>(*m_position) < 0x80)
      return static_cast<unsigned char>(*m_position++);
    return readLongNumber();
  }
  /// 4 bytes, the lowest first.
  [[nodiscard]] std::uint32_t readWord() { return boost::endian::load_little_u32(readRaw(4)); }
  /// 8 bytes, the lowest first.
  [[nodiscard]] std::uint64_t readLongWord() { return boost::endian::load_little_u64(readRaw(8)); }
  /// `count` bytes, which are referred to.
  [[nodiscard]] std::string_view readBytes(unsigned int count) { return {take(count), count}; }

  /// Reports damage at the current position.
  [[noreturn]] void fail(std::string const& reason) const;

 private:
  [[nodiscard]] std::uint32_t readLongNumber();
  [[nodiscard]] char const* take(unsigned int count) {
    if (getBytesLeft() < count) failForWantOf(count);
    char const* const bytes = m_position;
    m_position += count;
    return bytes;
  }
  [[nodiscard]] unsigned char const* readRaw(unsigned int count) {
    return reinterpret_cast<unsigned char const*>(take(count));
  }
  [[noreturn]] void failForWantOf(unsigned int count) const;

  std::string_view m_bytes;
  char const* m_position = nullptr;
  char const* m_end = nullptr;
};

}  // namespace Kestrel

#include "VantaService_PersistenceArchiver/ByteWriter.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace Kestrel {

std::string ByteWriter::takeBytes() {
  m_bytes.resize(m_size);
  m_size = 0;
  return std::exchange(m_bytes, {});
}

void ByteWriter::grow(std::size_t count) {
  // An address takes 31 bits.
  constexpr std::size_t largest = 0x7FFFFFFF;
  constexpr std::size_t smallest = 512;
  if (largest - m_size < count) throw std::length_error("a document cannot be larger than 2 GiB");
  m_bytes.resize(std::min(largest, std::max({smallest, m_size + count, 2 * m_bytes.size()})));
}

}  // namespace Kestrel

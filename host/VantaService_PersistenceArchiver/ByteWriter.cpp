#include "VantaService_PersistenceArchiver/ByteWriter.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "VantaService_PersistenceArchiver/ArchiveFormat.h"

namespace Kestrel {

std::string ByteWriter::takeBytes() {
  m_bytes.resize(m_size);
  m_size = 0;
  return std::exchange(m_bytes, {});
}

std::size_t ByteWriter::genRoom(std::size_t size, std::size_t count) {
  constexpr std::size_t smallest = 512;
  if (count > ArchiveFormat::greatestSize - size)
    throw std::length_error("a document cannot be larger than 2 GiB");
  return std::min(ArchiveFormat::greatestSize, std::max({smallest, size + count, 2 * size}));
}

void ByteWriter::grow(std::size_t count) { m_bytes.resize(genRoom(m_size, count)); }

}  // namespace Kestrel

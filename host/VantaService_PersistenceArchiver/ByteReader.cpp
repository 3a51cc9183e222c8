#include "VantaService_PersistenceArchiver/ByteReader.h"

#include "VantaService_PersistenceArchiver/ArchiveException.h"

namespace Kestrel {

std::uint32_t ByteReader::readLongNumber() {
  constexpr unsigned int topBits = 28;
  std::uint32_t value = 0;
  for (unsigned int shift = 0; shift <= topBits; shift += 7) {
    auto const byte = static_cast<unsigned char>(*take(1));
    if (shift == topBits && byte > 0x0F) fail("the number is larger than 32 bits");
    if (byte == 0 && shift != 0) fail("the number is longer than it needs to be");
    value |= (byte & 0x7FU) << shift;
    if (byte < 0x80) break;
  }
  return value;
}

void ByteReader::fail(std::string const& reason) const { throw ArchiveException(getPosition(), reason); }

void ByteReader::failForWantOf(unsigned int count) const {
  fail("expected " + std::to_string(count) + " more bytes, found " + std::to_string(getBytesLeft()));
}

}  // namespace Kestrel

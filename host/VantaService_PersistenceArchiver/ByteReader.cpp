#include "VantaService_PersistenceArchiver/ByteReader.h"

#include "VantaService_PersistenceArchiver/ArchiveException.h"
#include "VantaService_PersistenceArchiver/ArchiveTexts.h"

namespace Kestrel {

std::uint32_t ByteReader::readLongNumber() {
  constexpr unsigned int topBits = 28;
  std::uint32_t value = 0;
  for (unsigned int shift = 0; shift <= topBits; shift += 7) {
    auto const byte = static_cast<unsigned char>(*take(1));
    if (shift == topBits && byte > 0x0F) fail(archiveText("the number is larger than 32 bits"));
    if (byte == 0 && shift != 0) fail(archiveText("the number is longer than it needs to be"));
    value |= (byte & 0x7FU) << shift;
    if (byte < 0x80) break;
  }
  return value;
}

void ByteReader::fail(std::string const& reason) const { throw ArchiveException(getPosition(), reason); }

void ByteReader::failForWantOf(unsigned int count) const {
  fail(archiveText("expected %1 more bytes, found %2", count, getBytesLeft()));
}

}  // namespace Kestrel

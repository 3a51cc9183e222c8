#include "VantaService_PersistenceArchiver/ArchiveFormat.h"

#include <xxhash.h>

namespace Kestrel::ArchiveFormat {

std::uint64_t checksumOf(std::string_view bytes) { return XXH3_64bits(bytes.data(), bytes.size()); }

}  // namespace Kestrel::ArchiveFormat

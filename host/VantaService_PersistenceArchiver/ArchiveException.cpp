#include "VantaService_PersistenceArchiver/ArchiveException.h"

namespace Kestrel {

ArchiveException::ArchiveException(unsigned int offset, std::string const& reason)
    : KeException("byte " + std::to_string(offset) + ": " + reason), m_offset(offset) {}

ArchiveException::~ArchiveException() = default;

}  // namespace Kestrel

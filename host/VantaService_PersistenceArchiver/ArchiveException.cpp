#include "VantaService_PersistenceArchiver/ArchiveException.h"

#include "VantaService_PersistenceArchiver/ArchiveTexts.h"

namespace Kestrel {

ArchiveException::ArchiveException(unsigned int offset, std::string const& reason)
    : KeException(archiveText("byte %1: %2", {std::to_string(offset), reason})), m_offset(offset) {}

ArchiveException::~ArchiveException() = default;

}  // namespace Kestrel

#pragma once

#include <string>

#include "VantaService_ExceptionHandling/KeException.h"

namespace Kestrel {

/// A document that cannot be read. `what()` is one line: "byte 1234: " and the reason.
class ArchiveException : public KeException {
 public:
  /// What is wrong at `offset`, in bytes from the beginning of the document.
  ArchiveException(unsigned int offset, std::string const& reason);
  ~ArchiveException() override;

  /// Where in the document the reader stood, in bytes from its beginning.
  [[nodiscard]] unsigned int getOffset() const noexcept { return m_offset; }

 private:
  unsigned int m_offset;
};

}  // namespace Kestrel

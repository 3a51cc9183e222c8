#pragma once

#include <cstdint>
#include <string>

#include "VantaService_ExceptionHandling/KeException.h"

namespace Kestrel {

/// A refused operation on the object tree. The message is the operation's name immediately followed by a
/// reason that begins with ": ".
class ObjectException : public KeException {
 public:
  /// Why the operation was refused.
  enum class ExceptionType : std::uint32_t {
    InvalidChild = 1,  ///< an object that cannot become a child of the parent that it was given to
  };

  /// `message` as the class says.
  ObjectException(std::string const& message, ExceptionType type);
  ~ObjectException() override;

  /// Why the operation was refused.
  [[nodiscard]] ExceptionType getType() const noexcept { return m_type; }

 private:
  ExceptionType m_type;
};

}  // namespace Kestrel

#pragma once

#include <cstdint>
#include <string>

#include "VantaService_ExceptionHandling/KeException.h"

namespace Kestrel {

class ObjectException : public KeException {
 public:
  enum class ExceptionType : std::uint32_t {};

  ObjectException(std::string const& message, ExceptionType type);
  ~ObjectException() override;

  char const* what() const noexcept override;

 private:
  std::string m_message;
};

}  // namespace Kestrel

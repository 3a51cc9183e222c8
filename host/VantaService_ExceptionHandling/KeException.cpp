#include "VantaService_ExceptionHandling/KeException.h"

#include <utility>

namespace Kestrel {

KeException::KeException(std::string message) : m_message(std::move(message)) {}

KeException::~KeException() = default;

char const* KeException::what() const noexcept { return m_message.c_str(); }

}  // namespace Kestrel

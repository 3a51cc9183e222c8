#include "VantaService_Parameterization/ObjectException.h"

namespace Kestrel {

ObjectException::ObjectException(std::string const& message, ExceptionType /*type*/) : m_message(message) {}

ObjectException::~ObjectException() = default;

char const* ObjectException::what() const noexcept { return m_message.c_str(); }

}  // namespace Kestrel

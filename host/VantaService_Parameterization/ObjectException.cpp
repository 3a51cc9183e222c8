#include "VantaService_Parameterization/ObjectException.h"

namespace Kestrel {

ObjectException::ObjectException(std::string const& message, ExceptionType type)
    : KeException(message), m_type(type) {}

ObjectException::~ObjectException() = default;

}  // namespace Kestrel

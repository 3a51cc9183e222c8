#include "VantaService_ExceptionHandling/KeException.h"

namespace Kestrel {

KeException::KeException() = default;

KeException::~KeException() = default;

}  // namespace Kestrel

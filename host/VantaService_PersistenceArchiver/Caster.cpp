#include "VantaService_PersistenceArchiver/Caster.h"

#include "VantaService_PersistenceArchiver/ClassRegistry.h"

namespace Kestrel {

Caster::~Caster() { ClassRegistry::instance().withdraw(*this); }

}  // namespace Kestrel

#pragma once

#include <memory>
#include <string>

namespace Kestrel {

class PersistenceArchiver;
class PointerMapContainerBase;

struct BaseClassRegister {
  std::string name;
  unsigned int currentVersion = 0;
  unsigned int readVersion = 0;
  void (*load)(PersistenceArchiver& archive, void* object, unsigned int version) = nullptr;
  void (*save)(PersistenceArchiver& archive, void const* object, unsigned int version) = nullptr;
  std::shared_ptr<void> (*factory)() = nullptr;
  unsigned int (*dynamicType)(void const* object) = nullptr;
  std::unique_ptr<PointerMapContainerBase> (*pointerMapFactory)() = nullptr;
  unsigned int identifier = 0;
  unsigned int tracking = 1;
};

}  // namespace Kestrel

#include <string>

#include "VantaService_Parameterization/Object.h"
#include "VantaService_PersistenceArchiver/ClassRegistration.h"
#include "VantaService_PersistenceArchiver/ObjectRecord.h"

// A library with a persistent class of its own, loaded and unloaded while the program runs.

namespace Kestrel {
namespace {

class PluginNode : public Object {
 public:
  static void serialization_register(void* record) { fillRegistration<PluginNode>(record, "PluginNode", 4); }

 private:
  friend class Kestrel::ArchiveAccess;

  void save(PersistenceArchiver& archive, unsigned int /*version*/) const {
    savePart<Object>(archive, *this);
    archive << m_number;
  }
  void load(PersistenceArchiver& archive, unsigned int /*version*/) {
    loadPart<Object>(archive, *this);
    archive >> m_number;
  }

  unsigned int m_number = 4711;
};

bool const s_isRegistered = registerClass<PluginNode>() && registerParent<Object, PluginNode>();

}  // namespace
}  // namespace Kestrel

extern "C" [[gnu::visibility("default")]] bool isPluginNodeRegistered() { return Kestrel::s_isRegistered; }

#include "VantaService_PersistenceArchiver/PersistenceArchiver.h"

#include "VantaService_PersistenceArchiver/ClassRegistry.h"

namespace Kestrel {

BaseClassRegister const* PersistenceArchiver::registerFactory(std::string const& name,
                                                              BaseClassRegister const& record,
                                                              unsigned int version) {
  return ClassRegistry::instance().add(name, record, version);
}

void PersistenceArchiver::withdrawFactory(unsigned int identifier) {
  ClassRegistry::instance().withdraw(identifier);
}

unsigned int PersistenceArchiver::getHashForName(std::string const& name) {
  return ClassRegistry::hashOf(name);
}

void PersistenceArchiver::registerHash(unsigned int hash, unsigned int identifier) {
  ClassRegistry::instance().addAlias(hash, identifier);
}

unsigned int PersistenceArchiver::getHashForType(unsigned int hash) {
  return ClassRegistry::instance().findAlias(hash);
}

bool PersistenceArchiver::registerCaster(unsigned int baseIdentifier, unsigned int derivedIdentifier,
                                         Caster* caster) {
  return ClassRegistry::instance().add(baseIdentifier, derivedIdentifier, caster);
}

Caster const* PersistenceArchiver::getCaster(unsigned int baseIdentifier, unsigned int derivedIdentifier) {
  return ClassRegistry::instance().findCaster(baseIdentifier, derivedIdentifier);
}

unsigned int PersistenceArchiver::getCurrentVersion(unsigned int /*product*/) { return 500002; }

PersistenceArchiver::PersistenceArchiver() : m_classes(ClassRegistry::instance().getClasses()) {
  m_writer.emplace(m_classes);
}

PersistenceArchiver::PersistenceArchiver(std::string_view document, Checksum checksum)
    : m_reader(std::in_place, document, checksum) {
  m_classes = m_reader->genClasses();
}

PersistenceArchiver::~PersistenceArchiver() = default;

}  // namespace Kestrel

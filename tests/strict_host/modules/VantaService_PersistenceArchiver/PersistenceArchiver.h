#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "VantaService_PersistenceArchiver/BaseClassRegister.h"
#include "VantaService_PersistenceArchiver/Caster.h"
#include "VantaService_PersistenceArchiver/PointerMapContainer.h"

namespace Kestrel {

namespace StrictHost {
class Archive;
}  // namespace StrictHost

/// The application makes archives and ends them (`StrictHost::Archive`); the library is handed one.
class PersistenceArchiver {
 public:
  PersistenceArchiver(PersistenceArchiver const&) = delete;

  static BaseClassRegister const* registerFactory(std::string const& name, BaseClassRegister const& record,
                                                  unsigned int version);
  static unsigned int getHashForName(std::string const& name);
  static void registerHash(unsigned int hash, unsigned int identifier);
  static unsigned int getHashForType(unsigned int hash);
  static bool registerCaster(unsigned int baseIdentifier, unsigned int derivedIdentifier, Caster* caster);
  static Caster* getCaster(unsigned int baseIdentifier, unsigned int derivedIdentifier);
  static unsigned int getCurrentVersion(unsigned int product);

  std::map<unsigned int, BaseClassRegister>& getMapOfClasses() { return m_classes; }

  unsigned int tellp();
  void mark_object_start(unsigned int address, unsigned int typeHash);
  void mark_object_end(unsigned int address, unsigned int endPosition);
  void mark_pointer(unsigned int address, unsigned int typeHash);
  void mark_null_pointer();
  std::map<void const*, unsigned int>& getStreamposMap(unsigned int typeHash);
  PersistenceArchiver& operator<<(unsigned int const& value);
  PersistenceArchiver& operator<<(double const& value);
  PersistenceArchiver& operator<<(std::string const& value);

  struct AddressHeader {
    unsigned int address;
    unsigned int end;
  };
  unsigned int tellg();
  AddressHeader read_to_address_header();
  void end_read_to_address(unsigned int end);
  void begin_read_pointer(unsigned int address);
  void end_read_pointer(unsigned int address);
  PointerMapContainerBase& getPointerMap(unsigned int typeHash, BaseClassRegister const& record);
  void check_container_size(unsigned int count);
  void handle_currupted_object();
  PersistenceArchiver& operator>>(unsigned int& value);
  PersistenceArchiver& operator>>(double& value);
  PersistenceArchiver& operator>>(std::string& value);

 private:
  friend class StrictHost::Archive;

  PersistenceArchiver() = default;

  void write(void const* data, std::size_t size);
  void read(void* data, std::size_t size);

  std::map<unsigned int, BaseClassRegister> m_classes;
  std::string m_bytes;
  std::vector<unsigned int> m_openRecords;  ///< addresses when writing, ends when reading
  std::map<unsigned int, std::map<void const*, unsigned int>> m_writtenObjects;
  unsigned int m_readPosition = 0;
  std::map<unsigned int, std::unique_ptr<PointerMapContainerBase>> m_readObjects;
  std::vector<unsigned int> m_objectsBeingRead;
  bool m_throwsAtDamage = true;
  unsigned int m_damageCount = 0;
};

}  // namespace Kestrel

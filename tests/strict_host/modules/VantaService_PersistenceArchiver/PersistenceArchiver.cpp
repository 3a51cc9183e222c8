#include "VantaService_PersistenceArchiver/PersistenceArchiver.h"

#include <cstdlib>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <utility>

#include "StrictHost/Archive.h"

namespace Kestrel {

namespace {

constexpr unsigned int unknownType = 0xBBAFA6C8;
constexpr unsigned int wordSize = 4;
constexpr unsigned int pointerBit = 0x80000000;

struct Registry {
  std::map<unsigned int, BaseClassRegister> classes;                 ///< by identifier, from 1
  std::map<unsigned int, unsigned int> aliases;                      ///< hash to identifier
  std::map<std::pair<unsigned int, unsigned int>, Caster*> casters;  ///< by base and derived class
};

// Never destroyed: libraries come and go while it is there.
Registry& registry() {
  static auto* const instance = new Registry;
  return *instance;
}

/// What the environment says that the host refuses, when libraries are loaded before any code could say so.
bool isRefused(char const* variable, std::string const& name) {
  char const* const value = std::getenv(variable);
  return value != nullptr && name == value;
}

void expect(bool isMet, char const* what) {
  if (!isMet) throw std::logic_error(what);
}

}  // namespace

Caster::~Caster() = default;

PointerMapContainerBase::~PointerMapContainerBase() = default;

std::shared_ptr<void> const* PointerMapContainerBase::find(unsigned int address) {
  auto const found = m_objects.find(address);
  return found != m_objects.end() ? &found->second : nullptr;
}

void PointerMapContainerBase::insert(unsigned int address, std::shared_ptr<void> object) {
  expect(m_objects.emplace(address, std::move(object)).second, "an object was read twice");
}

BaseClassRegister const* PersistenceArchiver::registerFactory(std::string const& name,
                                                              BaseClassRegister const& record,
                                                              unsigned int version) {
  static BaseClassRegister const withoutIdentifier;
  if (isRefused("STRICT_HOST_REFUSES", name)) return nullptr;
  if (isRefused("STRICT_HOST_GIVES_NO_IDENTIFIER_TO", name)) return &withoutIdentifier;
  auto& classes = registry().classes;
  auto const identifier = static_cast<unsigned int>(classes.size()) + 1;
  auto& registered = classes[identifier] = record;
  registered.name = name;
  registered.currentVersion = registered.readVersion = version;
  registered.identifier = identifier;
  return &registered;
}

unsigned int PersistenceArchiver::getHashForName(std::string const& name) {
  return static_cast<unsigned int>(std::hash<std::string>()(name)) | 0x100U;
}

void PersistenceArchiver::registerHash(unsigned int hash, unsigned int identifier) {
  registry().aliases[hash] = identifier;
}

unsigned int PersistenceArchiver::getHashForType(unsigned int hash) {
  auto const found = registry().aliases.find(hash);
  return found != registry().aliases.end() ? found->second : unknownType;
}

bool PersistenceArchiver::registerCaster(unsigned int baseIdentifier, unsigned int derivedIdentifier,
                                         Caster* caster) {
  if (std::getenv("STRICT_HOST_REFUSES_CASTERS") != nullptr) return false;
  return registry().casters.emplace(std::pair(baseIdentifier, derivedIdentifier), caster).second;
}

Caster* PersistenceArchiver::getCaster(unsigned int baseIdentifier, unsigned int derivedIdentifier) {
  auto const found = registry().casters.find({baseIdentifier, derivedIdentifier});
  return found != registry().casters.end() ? found->second : nullptr;
}

unsigned int PersistenceArchiver::getCurrentVersion(unsigned int /*product*/) { return 500002; }

unsigned int PersistenceArchiver::tellp() { return static_cast<unsigned int>(m_bytes.size()); }

void PersistenceArchiver::mark_object_start(unsigned int address, unsigned int typeHash) {
  expect(address == tellp() + wordSize, "a record was opened at another place");
  expect(typeHash == unknownType || m_classes.contains(typeHash), "a record of an unknown class");
  m_openRecords.push_back(address);
  *this << 0U << typeHash;
}

void PersistenceArchiver::mark_object_end(unsigned int address, unsigned int endPosition) {
  expect(!m_openRecords.empty() && m_openRecords.back() == address, "another record is open");
  expect(endPosition == tellp(), "a record was closed at another place");
  m_openRecords.pop_back();
  std::memcpy(&m_bytes[address - wordSize], &endPosition, wordSize);
}

void PersistenceArchiver::mark_pointer(unsigned int address, unsigned int typeHash) {
  *this << (pointerBit | address) << typeHash;
}

void PersistenceArchiver::mark_null_pointer() { *this << 0U; }

std::map<void const*, unsigned int>& PersistenceArchiver::getStreamposMap(unsigned int typeHash) {
  return m_writtenObjects[typeHash];
}

PersistenceArchiver& PersistenceArchiver::operator<<(unsigned int const& value) {
  write(&value, sizeof value);
  return *this;
}

PersistenceArchiver& PersistenceArchiver::operator<<(double const& value) {
  write(&value, sizeof value);
  return *this;
}

PersistenceArchiver& PersistenceArchiver::operator<<(std::string const& value) {
  *this << static_cast<unsigned int>(value.size());
  write(value.data(), value.size());
  return *this;
}

unsigned int PersistenceArchiver::tellg() { return m_readPosition; }

PersistenceArchiver::AddressHeader PersistenceArchiver::read_to_address_header() {
  unsigned int word = 0;
  *this >> word;
  if (word == 0) return {0, m_readPosition};
  bool const isPointer = (word & pointerBit) != 0;
  AddressHeader const header{isPointer ? word & ~pointerBit : m_readPosition,
                             isPointer ? m_readPosition + wordSize : word};
  m_openRecords.push_back(header.end);
  return header;
}

void PersistenceArchiver::end_read_to_address(unsigned int end) {
  expect(!m_openRecords.empty() && m_openRecords.back() == end, "another record is open");
  m_openRecords.pop_back();
  m_readPosition = end;
}

void PersistenceArchiver::begin_read_pointer(unsigned int address) { m_objectsBeingRead.push_back(address); }

void PersistenceArchiver::end_read_pointer(unsigned int address) {
  expect(!m_objectsBeingRead.empty() && m_objectsBeingRead.back() == address, "another object is being read");
  m_objectsBeingRead.pop_back();
}

PointerMapContainerBase& PersistenceArchiver::getPointerMap(unsigned int typeHash,
                                                            BaseClassRegister const& record) {
  auto& objects = m_readObjects[typeHash];
  if (!objects) objects = record.pointerMapFactory();
  return *objects;
}

void PersistenceArchiver::check_container_size(unsigned int count) {
  if (count > (m_bytes.size() - m_readPosition) / wordSize) throw StrictHost::DamagedDocument();
}

void PersistenceArchiver::handle_currupted_object() {
  ++m_damageCount;
  if (m_throwsAtDamage) throw StrictHost::DamagedDocument();
}

PersistenceArchiver& PersistenceArchiver::operator>>(unsigned int& value) {
  read(&value, sizeof value);
  return *this;
}

PersistenceArchiver& PersistenceArchiver::operator>>(double& value) {
  read(&value, sizeof value);
  return *this;
}

PersistenceArchiver& PersistenceArchiver::operator>>(std::string& value) {
  unsigned int size = 0;
  *this >> size;
  if (size > m_bytes.size() - m_readPosition) throw StrictHost::DamagedDocument();
  value.assign(m_bytes, m_readPosition, size);
  m_readPosition += size;
  return *this;
}

void PersistenceArchiver::write(void const* data, std::size_t size) {
  m_bytes.append(static_cast<char const*>(data), size);
}

void PersistenceArchiver::read(void* data, std::size_t size) {
  if (size > m_bytes.size() - m_readPosition) throw StrictHost::DamagedDocument();
  std::memcpy(data, m_bytes.data() + m_readPosition, size);
  m_readPosition += static_cast<unsigned int>(size);
}

namespace StrictHost {

Archive::Archive() { m_archiver.m_classes = registry().classes; }

Archive::Archive(Document const& document) {
  m_archiver.m_bytes = document.bytes;
  for (auto const& [identifier, version] : document.versions) {
    auto const registered = registry().classes.find(identifier);
    if (registered == registry().classes.end()) continue;
    auto& known = m_archiver.m_classes[identifier] = registered->second;
    known.readVersion = version;
  }
}

Archive::~Archive() = default;

void Archive::setVersion(std::string const& className, unsigned int version) {
  m_archiver.m_classes.at(identifierOf(className)).currentVersion = version;
}

unsigned int Archive::identifierOf(std::string const& className) {
  for (auto const& [identifier, record] : registry().classes)
    if (record.name == className) return identifier;
  throw std::invalid_argument("no such class: " + className);
}

Document Archive::genDocument() const {
  expect(m_archiver.m_openRecords.empty(), "a record is still open");
  Document document{m_archiver.m_bytes, {}};
  for (auto const& [identifier, record] : m_archiver.m_classes)
    document.versions[identifier] = record.currentVersion;
  return document;
}

bool Archive::isReadToTheEnd() const {
  return m_archiver.m_readPosition == m_archiver.m_bytes.size() && m_archiver.m_openRecords.empty() &&
         m_archiver.m_objectsBeingRead.empty();
}

}  // namespace StrictHost

}  // namespace Kestrel

#include "VantaService_PersistenceArchiver/PersistenceArchiver.h"

#include <xxhash.h>

#include <algorithm>
#include <bit>

#include "VantaService_ExceptionHandling/KeException.h"
#include "VantaService_PersistenceArchiver/ArchiveException.h"
#include "VantaService_PersistenceArchiver/ArchiveObserver.h"
#include "VantaService_PersistenceArchiver/ClassRegistry.h"

namespace Kestrel {

// The layout of a document (docs/limits-document.md). What is on disk is frozen.
namespace {

using namespace std::string_view_literals;

constexpr auto magic = "\x89KOA\r\n\x1a\n"sv;
constexpr std::uint32_t formatVersion = 1;
constexpr unsigned int lengthPosition = 12;
constexpr unsigned int tablesPosition = 16;
constexpr unsigned int headerSize = 20;
constexpr unsigned int checksumSize = 8;

/// An object takes at least its header, and the number of its class.
constexpr unsigned int smallestObject = 5;

std::uint64_t checksumOf(std::string_view bytes) { return XXH3_64bits(bytes.data(), bytes.size()); }

unsigned int sizeOf(std::string_view document) {
  constexpr std::size_t largest = 0x7FFFFFFF;
  if (document.size() > largest) throw ArchiveException(0, "a document cannot be larger than 2 GiB");
  return static_cast<unsigned int>(document.size());
}

}  // namespace

BaseClassRegister const* PersistenceArchiver::registerFactory(std::string const& name,
                                                              BaseClassRegister const& record,
                                                              unsigned int version) {
  return ClassRegistry::instance().add(name, record, version);
}

void PersistenceArchiver::withdrawFactory(unsigned int identifier) {
  ClassRegistry::instance().withdraw(identifier);
}

unsigned int PersistenceArchiver::getHashForName(std::string const& name) {
  auto const hash = static_cast<unsigned int>(XXH3_64bits(name.data(), name.size()));
  return hash == 0 || hash == noTypeHash ? 1 : hash;
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
  m_writer.writeBytes(magic);
  m_writer.writeWord(formatVersion);
  m_writer.writeWord(0);  // length
  m_writer.writeWord(0);  // position of the tables
}

PersistenceArchiver::PersistenceArchiver(std::string_view document, Checksum checksum)
    : m_reader(document.substr(0, sizeOf(document))) {
  checkFrame(document, checksum);
  readTables(document);
}

PersistenceArchiver::~PersistenceArchiver() = default;

void PersistenceArchiver::mark_pointer(unsigned int address, unsigned int typeHash) {
  if (std::ranges::any_of(m_open, [&](OpenRecord const& record) { return record.address == address; }))
    throw KeException("an object points to itself or to one that it is part of");
  m_writer.writeWord(referenceBit | address);
  m_writer.writeNumber(numberOf(typeHash));
}

void PersistenceArchiver::mark_null_pointer() { m_writer.writeWord(nullWord); }

std::string PersistenceArchiver::genDocument() {
  m_writer.replaceWord(tablesPosition, m_writer.getPosition());
  writeTables();
  m_writer.replaceWord(lengthPosition, m_writer.getPosition() + checksumSize);
  m_writer.writeLongWord(checksumOf(m_writer.getBytes()));
  return m_writer.takeBytes();
}

unsigned int PersistenceArchiver::findOrAddClass(unsigned int typeHash) {
  if (typeHash == noTypeHash) return 0;
  auto const count = static_cast<unsigned int>(m_writtenClasses.size());
  for (unsigned int i = 0; i < count; ++i)
    if (m_writtenClasses[i] == typeHash) return i + 1;
  if (!m_classes.contains(typeHash)) throw KeException("a class is not registered with the archive");
  m_writtenPositions.emplace_back();
  m_writtenClasses.push_back(typeHash);
  return count + 1;
}

void PersistenceArchiver::writeTables() {
  ByteWriter classes;
  classes.writeNumber(static_cast<std::uint32_t>(m_writtenClasses.size()));
  for (std::size_t i = 0; i < m_writtenClasses.size(); ++i) {
    auto const& record = m_classes.at(m_writtenClasses[i]);
    classes.writeNumber(m_texts.add(record.name));
    classes.writeNumber(record.currentVersion);
    classes.writeNumber(static_cast<std::uint32_t>(m_writtenPositions[i].size()));
  }
  m_writer.writeNumber(static_cast<std::uint32_t>(m_texts.size()));
  m_writer.writeBytes(m_texts.getBytes());
  m_writer.writeBytes(classes.getBytes());
}

void PersistenceArchiver::checkFrame(std::string_view document, Checksum checksum) {
  auto const size = sizeOf(document);
  auto const expect = [](unsigned int offset, bool isMet, std::string const& reason) {
    if (!isMet) throw ArchiveException(offset, reason);
  };
  std::string const found = ", found " + std::to_string(size);
  expect(0, size >= headerSize + checksumSize, "expected at least 28 bytes" + found);
  expect(0, document.starts_with(magic), "expected the mark of an object archive");
  ByteReader header(document);
  header.set(magic.size(), headerSize);
  auto const version = header.readWord();
  expect(magic.size(), version == formatVersion,
         "expected format version 1, found " + std::to_string(version));
  auto const length = header.readWord();
  expect(lengthPosition, length == size, "expected " + std::to_string(length) + " bytes" + found);
  if (checksum == Checksum::ignored) return;
  header.set(size - checksumSize, size);
  expect(size - checksumSize, header.readLongWord() == checksumOf(document.substr(0, size - checksumSize)),
         "the checksum does not match: the document was damaged after it had been written");
}

void PersistenceArchiver::readTables(std::string_view document) {
  auto const end = sizeOf(document) - checksumSize;
  m_reader.set(tablesPosition, end);
  m_recordsEnd = m_reader.readWord();
  if (m_recordsEnd < headerSize || m_recordsEnd > end)
    m_reader.fail("the tables are outside of the document");
  m_reader.set(m_recordsEnd, end);

  auto const textCount = m_reader.readNumber();
  if (textCount > m_reader.getBytesLeft()) m_reader.fail("expected fewer texts");
  m_storedTexts.reserve(textCount);
  while (m_storedTexts.size() < textCount) m_storedTexts.push_back(m_reader.readBytes(m_reader.readNumber()));

  auto const classCount = m_reader.readNumber();
  if (classCount > m_reader.getBytesLeft()) m_reader.fail("expected fewer classes");
  m_storedClasses.reserve(classCount);
  while (m_storedClasses.size() < classCount) readClass();
  if (m_reader.getBytesLeft() != 0) m_reader.fail("expected the end of the tables");
  m_reader.set(headerSize, m_recordsEnd);
  if (m_storedObjects > m_reader.getBytesLeft() / smallestObject) m_reader.fail("expected more objects");
}

void PersistenceArchiver::readClass() {
  StoredClass stored;
  stored.name = readText();
  stored.version = m_reader.readNumber();
  stored.objectCount = m_reader.readNumber();
  stored.typeHash = getHashForName(std::string(stored.name));
  m_storedObjects += stored.objectCount;
  if (!m_objectCounts.emplace(stored.typeHash, stored.objectCount).second)
    m_reader.fail("class number " + std::to_string(m_storedClasses.size() + 1) + " is there already");
  m_storedClasses.push_back(stored);
  if (auto record = ClassRegistry::instance().find(stored.typeHash)) {
    record->readVersion = stored.version;
    m_classes.emplace(stored.typeHash, std::move(*record));
  }
}

PersistenceArchiver::AddressHeader PersistenceArchiver::readUncommonHeader(unsigned int offset,
                                                                           std::uint32_t word) {
  if (word == nullWord) {
    if (m_observer != nullptr) m_observer->onNull(offset);
    return {0, tellg()};
  }
  if ((word & referenceBit) != 0) return readReference(offset, word & ~referenceBit);
  if (word > m_reader.getBytesLeft())
    m_reader.fail("expected a record of at most " + std::to_string(m_reader.getBytesLeft()) +
                  " bytes, found one of " + std::to_string(word));
  if (m_open.size() == greatestDepth) m_reader.fail("the records are nested too deeply");
  AddressHeader const header{tellg(), tellg() + word};
  open({header.address, header.end, false});
  if (m_observer != nullptr) reportRecord();
  return header;
}

PersistenceArchiver::AddressHeader PersistenceArchiver::readReference(unsigned int offset,
                                                                      unsigned int address) {
  if (address < headerSize + wordSize || address >= offset)
    m_reader.fail("expected a pointer to an object before this place");
  if (std::ranges::any_of(m_open, [&](OpenRecord const& record) { return record.address == address; }))
    m_reader.fail("the object points to itself or to one that it is part of");
  if (m_observer != nullptr) m_observer->onReference(offset, address);
  unsigned int const begin = tellg();
  static_cast<void>(m_reader.readNumber());
  unsigned int const end = tellg();
  m_reader.set(begin, end);
  if (m_open.size() == greatestDepth) m_reader.fail("the records are nested too deeply");
  open({begin, end, true});
  return {address, end};
}

void PersistenceArchiver::reportRecord() {
  auto const [address, end, isReference] = m_open.back();
  auto const index = m_reader.readNumber();
  m_reader.set(address, end);
  if (index == 0 || index > m_storedClasses.size())
    m_observer->onRecord(address, "", 0);
  else
    m_observer->onRecord(address, m_storedClasses[index - 1].name, m_storedClasses[index - 1].version);
}

void PersistenceArchiver::reportRecordEnd() {
  if (!m_open.back().isReference)
    m_observer->onRecordEnd(tellg(), m_reader.readBytes(m_reader.getBytesLeft()));
}

PointerMapContainerBase& PersistenceArchiver::findOrAddPointerMap(unsigned int typeHash,
                                                                  BaseClassRegister const& record) {
  auto& objects = m_pointerMaps[typeHash];
  if (!objects) {
    objects = record.pointerMapFactory();
    if (auto const count = m_objectCounts.find(typeHash); count != m_objectCounts.end())
      objects->reserve(count->second);
  }
  return *objects;
}

void PersistenceArchiver::check_container_size(unsigned int count, unsigned int elementSize) {
  auto const largest = m_reader.getBytesLeft() / elementSize;
  if (count > largest)
    m_reader.fail("expected a container of at most " + std::to_string(largest) + " elements, found one of " +
                  std::to_string(count));
}

void PersistenceArchiver::handle_currupted_object(std::string const& reason) { m_reader.fail(reason); }

void PersistenceArchiver::readHashOrReport(unsigned int& value) {
  unsigned int const offset = tellg();
  if (offset == m_hashPosition) {
    value = readTypeHash();
  } else {
    value = m_reader.readNumber();
    m_observer->onNumber(offset, value);
  }
}

PersistenceArchiver& PersistenceArchiver::operator>>(double& value) {
  unsigned int const offset = tellg();
  value = std::bit_cast<double>(m_reader.readLongWord());
  if (m_observer != nullptr) m_observer->onReal(offset, value);
  return *this;
}

PersistenceArchiver& PersistenceArchiver::operator>>(std::string& value) {
  std::string_view text;
  *this >> text;
  value.assign(text);
  return *this;
}

PersistenceArchiver& PersistenceArchiver::operator>>(std::string_view& value) {
  unsigned int const offset = tellg();
  value = readText();
  if (m_observer != nullptr) m_observer->onText(offset, value);
  return *this;
}

std::string_view PersistenceArchiver::read_bytes() {
  unsigned int const offset = tellg();
  auto const bytes = readText();
  if (m_observer != nullptr) m_observer->onBytes(offset, bytes);
  return bytes;
}

void PersistenceArchiver::checkEndOfRecords() {
  if (tellg() != m_recordsEnd) m_reader.fail("expected the end of the records");
}

unsigned int PersistenceArchiver::readTypeHash() {
  auto const index = m_reader.readNumber();
  if (index == 0) return noTypeHash;
  if (index > m_storedClasses.size())
    m_reader.fail("expected one of " + std::to_string(m_storedClasses.size()) + " classes, found number " +
                  std::to_string(index));
  return m_storedClasses[index - 1].typeHash;
}

std::string_view PersistenceArchiver::readText() {
  auto const index = m_reader.readNumber();
  if (index >= m_storedTexts.size())
    m_reader.fail("expected one of " + std::to_string(m_storedTexts.size()) + " texts, found number " +
                  std::to_string(index));
  return m_storedTexts[index];
}

}  // namespace Kestrel

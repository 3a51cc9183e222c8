#include "VantaService_PersistenceArchiver/ArchiveReader.h"

#include <algorithm>
#include <bit>

#include "VantaService_PersistenceArchiver/ArchiveException.h"
#include "VantaService_PersistenceArchiver/ArchiveObserver.h"
#include "VantaService_PersistenceArchiver/ArchiveTexts.h"
#include "VantaService_PersistenceArchiver/ClassRegistry.h"

namespace Kestrel {

namespace {

unsigned int sizeOf(std::string_view document) {
  if (document.size() > ArchiveFormat::greatestSize)
    throw ArchiveException(0, archiveText("a document cannot be larger than 2 GiB"));
  return static_cast<unsigned int>(document.size());
}

}  // namespace

ArchiveReader::ArchiveReader(std::string_view document, Checksum checksum)
    : m_bytes(document.substr(0, sizeOf(document))) {
  checkFrame(document, checksum);
  readTables(sizeOf(document) - ArchiveFormat::checksumSize);
}

void ArchiveReader::checkFrame(std::string_view document, Checksum checksum) {
  constexpr unsigned int versionPosition = ArchiveFormat::magic.size();
  auto const size = sizeOf(document);
  auto const expect = [](unsigned int offset, bool isMet, char const* text, auto... numbers) {
    if (!isMet) throw ArchiveException(offset, archiveText(text, numbers...));
  };
  expect(0, size >= ArchiveFormat::headerSize + ArchiveFormat::checksumSize,
         "expected at least 28 bytes, found %1", size);
  expect(0, document.starts_with(ArchiveFormat::magic), "expected the mark of an object archive");
  ByteReader header(document);
  header.set(versionPosition, ArchiveFormat::headerSize);
  auto const version = header.readWord();
  expect(versionPosition, version == ArchiveFormat::version, "expected format version 1, found %1", version);
  auto const length = header.readWord();
  expect(ArchiveFormat::lengthPosition, length == size, "expected %1 bytes, found %2", length, size);
  if (checksum == Checksum::ignored) return;
  unsigned int const end = size - ArchiveFormat::checksumSize;
  header.set(end, size);
  expect(end, header.readLongWord() == ArchiveFormat::checksumOf(document.substr(0, end)),
         "the checksum does not match: the document was damaged after it had been written");
}

void ArchiveReader::readTables(unsigned int end) {
  m_bytes.set(ArchiveFormat::tablesPosition, end);
  m_recordsEnd = m_bytes.readWord();
  if (m_recordsEnd < ArchiveFormat::headerSize || m_recordsEnd > end)
    fail(archiveText("the tables are outside of the document"));
  m_bytes.set(m_recordsEnd, end);
  readTexts();
  readClasses();
  if (m_bytes.getBytesLeft() != 0) fail(archiveText("expected the end of the tables"));
  m_bytes.set(ArchiveFormat::headerSize, m_recordsEnd);
  if (m_storedObjects > m_bytes.getBytesLeft() / ArchiveFormat::smallestObject)
    fail(archiveText("expected more objects"));
}

void ArchiveReader::readTexts() {
  auto const count = m_bytes.readNumber();
  if (count > m_bytes.getBytesLeft()) fail(archiveText("expected fewer texts"));
  m_storedTexts.reserve(count);
  while (m_storedTexts.size() < count) m_storedTexts.push_back(m_bytes.readBytes(m_bytes.readNumber()));
}

void ArchiveReader::readClasses() {
  auto const count = m_bytes.readNumber();
  if (count > m_bytes.getBytesLeft()) fail(archiveText("expected fewer classes"));
  m_storedClasses.reserve(count);
  while (m_storedClasses.size() < count) readClass();
}

void ArchiveReader::readClass() {
  StoredClass stored;
  stored.name = readStoredText();
  stored.version = m_bytes.readNumber();
  stored.objectCount = m_bytes.readNumber();
  stored.typeHash = ClassRegistry::hashOf(stored.name);
  m_storedObjects += stored.objectCount;
  if (!m_objectCounts.emplace(stored.typeHash, stored.objectCount).second)
    fail(archiveText("class number %1 is there already", m_storedClasses.size() + 1));
  m_storedClasses.push_back(stored);
}

ClassMap ArchiveReader::genClasses() const {
  ClassMap classes;
  for (auto const& stored : m_storedClasses) {
    if (auto record = ClassRegistry::instance().find(stored.typeHash)) {
      record->readVersion = stored.version;
      classes.emplace(stored.typeHash, std::move(*record));
    }
  }
  return classes;
}

ArchiveReader::AddressHeader ArchiveReader::openUncommonRecord(unsigned int offset, std::uint32_t word) {
  if (word == ArchiveFormat::nullWord) {
    if (m_observer != nullptr) m_observer->onNull(offset);
    return {0, getPosition()};
  }
  if ((word & ArchiveFormat::referenceBit) != 0)
    return openReference(offset, word & ~ArchiveFormat::referenceBit);
  if (word > m_bytes.getBytesLeft())
    fail(archiveText("expected a record of at most %1 bytes, found one of %2", m_bytes.getBytesLeft(), word));
  if (isFull()) fail(archiveText("the records are nested too deeply"));
  AddressHeader const header{getPosition(), getPosition() + word};
  open({header.address, header.end, false});
  if (m_observer != nullptr) reportRecord();
  return header;
}

ArchiveReader::AddressHeader ArchiveReader::openReference(unsigned int offset, unsigned int address) {
  if (address < ArchiveFormat::headerSize + ArchiveFormat::wordSize || address >= offset)
    fail(archiveText("expected a pointer to an object before this place"));
  if (std::ranges::any_of(m_open, [&](OpenRecord const& record) { return record.address == address; }))
    fail(archiveText("the object points to itself or to one that it is part of"));
  if (m_observer != nullptr) m_observer->onReference(offset, address);
  unsigned int const begin = getPosition();
  static_cast<void>(m_bytes.readNumber());
  unsigned int const end = getPosition();
  m_bytes.set(begin, end);
  if (isFull()) fail(archiveText("the records are nested too deeply"));
  open({begin, end, true});
  return {address, end};
}

PointerMapContainerBase& ArchiveReader::getObjects(unsigned int typeHash, BaseClassRegister const& record) {
  auto& objects = m_objects[typeHash];
  if (!objects) {
    objects = record.pointerMapFactory();
    if (auto const count = m_objectCounts.find(typeHash); count != m_objectCounts.end())
      objects->reserve(count->second);
  }
  return *objects;
}

std::uint32_t ArchiveReader::readHashOrReport() {
  unsigned int const offset = getPosition();
  if (offset == m_hashPosition) return readTypeHash();
  auto const value = m_bytes.readNumber();
  m_observer->onNumber(offset, value);
  return value;
}

unsigned int ArchiveReader::readTypeHash() {
  auto const number = m_bytes.readNumber();
  if (number == 0) return BaseClassRegister::noTypeHash;
  if (number > m_storedClasses.size())
    fail(archiveText("expected one of %1 classes, found number %2", m_storedClasses.size(), number));
  return m_storedClasses[number - 1].typeHash;
}

double ArchiveReader::readReal() {
  unsigned int const offset = getPosition();
  auto const value = std::bit_cast<double>(m_bytes.readLongWord());
  if (m_observer != nullptr) m_observer->onReal(offset, value);
  return value;
}

std::string_view ArchiveReader::readText() {
  unsigned int const offset = getPosition();
  auto const text = readStoredText();
  if (m_observer != nullptr) m_observer->onText(offset, text);
  return text;
}

std::string_view ArchiveReader::readBytes() {
  unsigned int const offset = getPosition();
  auto const bytes = readStoredText();
  if (m_observer != nullptr) m_observer->onBytes(offset, bytes);
  return bytes;
}

std::string_view ArchiveReader::readStoredText() {
  auto const number = m_bytes.readNumber();
  if (number >= m_storedTexts.size())
    fail(archiveText("expected one of %1 texts, found number %2", m_storedTexts.size(), number));
  return m_storedTexts[number];
}

void ArchiveReader::checkContainerSize(unsigned int count, unsigned int elementSize) const {
  assert(elementSize != 0);
  auto const largest = m_bytes.getBytesLeft() / elementSize;
  if (count > largest)
    fail(archiveText("expected a container of at most %1 elements, found one of %2", largest, count));
}

void ArchiveReader::checkEnd() const {
  if (getPosition() != m_recordsEnd) fail(archiveText("expected the end of the records"));
}

void ArchiveReader::reportRecord() {
  auto const [address, end, isReference] = m_open.back();
  auto const number = m_bytes.readNumber();
  m_bytes.set(address, end);
  if (number == 0 || number > m_storedClasses.size())
    m_observer->onRecord(address, "", 0);
  else
    m_observer->onRecord(address, m_storedClasses[number - 1].name, m_storedClasses[number - 1].version);
}

void ArchiveReader::reportRecordEnd() {
  if (!m_open.back().isReference)
    m_observer->onRecordEnd(getPosition(), m_bytes.readBytes(m_bytes.getBytesLeft()));
}

}  // namespace Kestrel

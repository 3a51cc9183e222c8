#pragma once

#include <boost/container/static_vector.hpp>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "VantaService_PersistenceArchiver/ArchiveFormat.h"
#include "VantaService_PersistenceArchiver/BaseClassRegister.h"
#include "VantaService_PersistenceArchiver/ByteReader.h"
#include "VantaService_PersistenceArchiver/PointerMapContainer.h"

namespace Kestrel {

class ArchiveObserver;

/// Reads a document, to which it refers. `PersistenceArchiver` says what each operation promises.
class ArchiveReader {
 public:
  /// Whether a document whose checksum is another is refused.
  enum class Checksum { mustMatch, ignored };

  /// What stands in front of a record.
  struct AddressHeader {
    unsigned int address;  ///< of the object's first record; 0: a null pointer
    unsigned int end;      ///< position behind the record that was opened
  };

  /// Checks the frame of the document, to which it refers, and reads its tables. Linear.
  ArchiveReader(std::string_view document, Checksum checksum);

  /// The classes of the document that are registered, with the document's versions as read versions.
  [[nodiscard]] ClassMap genClasses() const;

  ///@{
  /// The operation of `PersistenceArchiver` that this carries out says what it promises.
  [[nodiscard]] unsigned int getPosition() const { return m_bytes.getPosition(); }
  [[nodiscard]] unsigned int getRecordAddress() const { return m_open.empty() ? 0 : m_open.back().address; }

  [[nodiscard]] AddressHeader openRecord() {
    unsigned int const offset = getPosition();
    auto const word = m_bytes.readWord();
    // The bit and the null are beyond and before all lengths.
    if (word == ArchiveFormat::nullWord || word > m_bytes.getBytesLeft() || isFull() || m_observer != nullptr)
      return openUncommonRecord(offset, word);
    open({getPosition(), getPosition() + word, false});
    return {getPosition(), getPosition() + word};
  }
  void closeRecord(unsigned int end) {
    assert(!m_open.empty() && end == m_open.back().end);
    if (m_observer != nullptr) reportRecordEnd();
    m_open.pop_back();
    m_bytes.set(end, m_open.empty() ? m_recordsEnd : m_open.back().end);
  }
  ///@}

  /// The objects of a class that were read.
  [[nodiscard]] PointerMapContainerBase& getObjects(unsigned int typeHash, BaseClassRegister const& record);
  ///@{
  /// The operation of `PersistenceArchiver` that this carries out says what it promises.
  void beginObject(unsigned int address) const {
    if (getRecordAddress() != address)
      fail("no object of this class begins at byte " + std::to_string(address));
  }
  void endObject(unsigned int address) const {
    if (getRecordAddress() != address) throw std::logic_error("an object was read that left a record open");
  }
  ///@}

  /// Right behind the opening of a record the number is a type hash.
  [[nodiscard]] std::uint32_t readNumber() {
    if (m_observer == nullptr && getPosition() != m_hashPosition) return m_bytes.readNumber();
    return readHashOrReport();
  }
  ///@{
  /// The operation of `PersistenceArchiver` that this carries out says what it promises.
  [[nodiscard]] double readReal();
  [[nodiscard]] std::string_view readText();
  [[nodiscard]] std::string_view readBytes();

  void checkContainerSize(unsigned int count, unsigned int elementSize) const;
  void checkEnd() const;
  [[noreturn]] void fail(std::string const& reason) const { m_bytes.fail(reason); }

  void setObserver(ArchiveObserver* observer) { m_observer = observer; }
  ///@}

 private:
  struct OpenRecord {
    unsigned int address;
    unsigned int end;
    bool isReference;  ///< stands for a pointer to an object that was read already
  };
  /// One entry of the document's table of classes.
  struct StoredClass {
    unsigned int typeHash;
    std::string_view name;
    unsigned int version;
    unsigned int objectCount;
  };

  static void checkFrame(std::string_view document, Checksum checksum);
  void readTables(unsigned int end);
  void readTexts();
  void readClasses();
  void readClass();

  [[nodiscard]] bool isFull() const { return m_open.size() == ArchiveFormat::greatestDepth; }
  /// REQUIRES: !isFull().
  void open(OpenRecord const& record) {
    assert(!isFull());
    m_open.push_back(record);
    m_bytes.set(getPosition(), record.end);
    m_hashPosition = getPosition();
  }
  [[nodiscard]] AddressHeader openUncommonRecord(unsigned int offset, std::uint32_t word);
  [[nodiscard]] AddressHeader openReference(unsigned int offset, unsigned int address);
  [[nodiscard]] std::uint32_t readHashOrReport();
  [[nodiscard]] unsigned int readTypeHash();
  [[nodiscard]] std::string_view readStoredText();
  void reportRecord();
  void reportRecordEnd();

  ByteReader m_bytes;
  unsigned int m_recordsEnd = 0;
  unsigned int m_hashPosition = 0;  ///< where the number to be read is a type hash
  boost::container::static_vector<OpenRecord, ArchiveFormat::greatestDepth> m_open;
  std::vector<std::string_view> m_storedTexts;
  std::vector<StoredClass> m_storedClasses;
  std::map<unsigned int, unsigned int> m_objectCounts;  ///< of the stored classes, by type hash
  std::size_t m_storedObjects = 0;                      ///< sum of the counts
  std::map<unsigned int, std::unique_ptr<PointerMapContainerBase>> m_objects;
  ArchiveObserver* m_observer = nullptr;
};

}  // namespace Kestrel

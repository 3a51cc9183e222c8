#pragma once

#include <array>
#include <bit>
#include <boost/container/static_vector.hpp>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "VantaService_PersistenceArchiver/BaseClassRegister.h"
#include "VantaService_PersistenceArchiver/ByteReader.h"
#include "VantaService_PersistenceArchiver/ByteWriter.h"
#include "VantaService_PersistenceArchiver/PointerMapContainer.h"
#include "VantaService_PersistenceArchiver/StreamposMap.h"
#include "VantaService_PersistenceArchiver/TextTable.h"

namespace Kestrel {

class ArchiveObserver;
class Caster;

/// The object archive: writes objects into a document, or reads them from one.
///
/// An archive either writes or reads. It knows nothing of the layout of a class: the class's own functions
/// write and read its fields in a fixed order, between the marks that frame them as records. How the bytes of
/// a document look is the archive's own matter (docs/limits-document.md); `ObjectRecord.h` frames whole
/// objects and pointers.
///
/// A record is opened with its address, the write position plus 4, and its type hash: the identifier of a
/// registered class, or `noTypeHash`. It is closed with the position behind its last byte. A reader closes it
/// by that position, so that it may read less than was written. Records nest; the innermost one bounds what
/// can be read.
///
/// Errors: a document that cannot be read is answered by an ArchiveException that names the offset and the
/// reason, whatever its bytes are: never by undefined behaviour, and no memory is allocated for what the
/// document's size cannot hold. After an exception an archive can only be destroyed.
///
/// Ownership: an archive that reads refers to the bytes that it was given. The objects that it reads and
/// writes live at least as long as the archive.
///
/// Threads: an archive belongs to one thread; the registry of classes may be used from any number at once.
class PersistenceArchiver {
 public:
  /// No registered class: the type hash of nested containers, and of records whose class is known from where
  /// they stand.
  static constexpr unsigned int noTypeHash = 0xBBAFA6C8;

  // The registry. It is there before the first library uses it and never destroyed, so that libraries may be
  // loaded and unloaded in any order.

  /// Stores a class under its name, with `version` as its current and its read version. The identifier is the
  /// hash of the name. Returns the registry's copy with the identifier assigned, valid until the class is
  /// withdrawn; null when the registry has the name, or another name with the same hash.
  static BaseClassRegister const* registerFactory(std::string const& name, BaseClassRegister const& record,
                                                  unsigned int version);
  /// Takes a class out, with the hashes that are aliases of it. Archives that exist already keep it.
  static void withdrawFactory(unsigned int identifier);

  /// Hash of a type name, the same in every program; neither 0 nor `noTypeHash`.
  [[nodiscard]] static unsigned int getHashForName(std::string const& name);
  /// Makes the hash of a run-time type name an alias of an identifier.
  static void registerHash(unsigned int hash, unsigned int identifier);
  /// The identifier that the hash of a run-time type name stands for; `noTypeHash` if unknown.
  [[nodiscard]] static unsigned int getHashForType(unsigned int hash);

  /// Adds the caster between a base and a class derived from it. Both may be given by the hash of their
  /// run-time type name while they are not registered. False, and nothing happens, for a null pointer and for
  /// a pair that has a caster. The caster lives until it is destroyed by its owner, which withdraws it.
  static bool registerCaster(unsigned int baseIdentifier, unsigned int derivedIdentifier, Caster* caster);
  /// The caster between two identifiers, put together from others when they are related over further classes;
  /// null when they are not related. Valid until one of its parts is withdrawn.
  [[nodiscard]] static Caster const* getCaster(unsigned int baseIdentifier, unsigned int derivedIdentifier);

  /// The version of documents that this program writes; there is only product 0.
  [[nodiscard]] static unsigned int getCurrentVersion(unsigned int product);

  /// `ignored` is for those who look for the damage in a document; what they read may be wrong.
  enum class Checksum { mustMatch, ignored };

  /// An archive that writes. It knows the classes that are registered now.
  PersistenceArchiver();
  /// An archive that reads a document. Length, magic, format version and checksum are checked before anything
  /// else is looked at, then the tables are read. Linear in the size of the document.
  explicit PersistenceArchiver(std::string_view document, Checksum checksum = Checksum::mustMatch);
  PersistenceArchiver(PersistenceArchiver const&) = delete;
  PersistenceArchiver& operator=(PersistenceArchiver const&) = delete;
  ~PersistenceArchiver();

  /// The classes that this archive knows, by identifier. When writing: the registered ones; their current
  /// versions go into the document. When reading, the table of read records: those registered ones that the
  /// document names, with the document's versions as read versions; readers may add to it.
  [[nodiscard]] ClassMap& getMapOfClasses() { return m_classes; }

  /// Address of the innermost open record; 0 when none is open.
  [[nodiscard]] unsigned int getRecordAddress() const { return m_open.empty() ? 0 : m_open.back().address; }

  /// Notes that a library keeps while one document is written or read; empty at first.
  [[nodiscard]] std::shared_ptr<void>& getTreeState() { return m_treeState; }

  // Writing. Errors: std::length_error when the document would become too large (2 GiB) or records nest too
  // deeply; KeException as said. REQUIRES: an archive that writes.

  [[nodiscard]] unsigned int tellp() const { return m_writer.getPosition(); }  ///< the write position

  /// Opens a record. KeException for a hash that is neither `noTypeHash` nor a class that the archive knows.
  /// REQUIRES: address == tellp() + 4.
  void mark_object_start(unsigned int address, unsigned int typeHash) {
    if (m_open.size() == greatestDepth) throw std::length_error("objects are nested too deeply");
    m_open.push_back({address, 0, false});
    m_writer.writeWord(0);  // length
    m_writer.writeNumber(numberOf(typeHash));
  }
  /// Closes the innermost record. REQUIRES: its address, and tellp().
  void mark_object_end(unsigned int address, unsigned int endPosition) {
    m_open.pop_back();
    m_writer.replaceWord(address - wordSize, endPosition - address);
  }
  /// Writes a pointer to an object that was written, by the address of its first record and its type hash.
  /// KeException when that record is still open: a reader could not follow the cycle.
  void mark_pointer(unsigned int address, unsigned int typeHash);
  void mark_null_pointer();

  /// The objects of a class that this archive has written. The reference stays valid.
  [[nodiscard]] StreamposMap& getStreamposMap(unsigned int typeHash) {
    return m_writtenPositions[numberOf(typeHash) - 1];
  }

  PersistenceArchiver& operator<<(unsigned int const& value) {
    m_writer.writeNumber(value);
    return *this;
  }
  /// All bits, of a NaN too.
  PersistenceArchiver& operator<<(double const& value) {
    m_writer.writeLongWord(std::bit_cast<std::uint64_t>(value));
    return *this;
  }
  PersistenceArchiver& operator<<(std::string const& value) {
    write_bytes(value);
    return *this;
  }
  /// Writes bytes that are no text. Like texts they are stored once, however often they are written.
  void write_bytes(std::string_view bytes) { m_writer.writeNumber(m_texts.add(bytes)); }

  /// Ends the writing and returns the document. REQUIRES: no record is open; nothing is written afterwards.
  [[nodiscard]] std::string genDocument();

  // Reading. REQUIRES: an archive that reads.

  [[nodiscard]] unsigned int tellg() const { return m_reader.getPosition(); }  ///< the read position

  /// What stands in front of a record.
  struct AddressHeader {
    unsigned int address;  ///< of the object's first record; 0: a null pointer
    unsigned int end;      ///< position behind the record that was opened
  };

  /// Opens the record at the read position; the number read next is its type hash. A null pointer opens no
  /// record: there is nothing more to read and nothing to close. The header of a pointer to an object that
  /// was read already gives that object's address and hash.
  [[nodiscard]] AddressHeader read_to_address_header() {
    unsigned int const offset = tellg();
    auto const word = m_reader.readWord();
    // The bit and the null are beyond and before all lengths.
    if (word == nullWord || word > m_reader.getBytesLeft() || m_open.size() == greatestDepth ||
        m_observer != nullptr)
      return readUncommonHeader(offset, word);
    open({tellg(), tellg() + word, false});
    return {tellg(), tellg() + word};
  }
  /// Closes the innermost record, wherever in it the read position is. REQUIRES: `end` as its header gave it.
  void end_read_to_address(unsigned int end) {
    if (m_observer != nullptr) reportRecordEnd();
    m_open.pop_back();
    m_reader.set(end, m_open.empty() ? m_recordsEnd : m_open.back().end);
  }

  /// The objects of a class that this archive has read; `record` is its registration. The reference stays
  /// valid.
  [[nodiscard]] PointerMapContainerBase& getPointerMap(unsigned int typeHash,
                                                       BaseClassRegister const& record) {
    if (typeHash != m_lastPointerMap.first)
      m_lastPointerMap = {typeHash, &findOrAddPointerMap(typeHash, record)};
    return *m_lastPointerMap.second;
  }
  /// Called before the object at `address` is made and read, and after that. A damaged document when the
  /// innermost record is not the object's own: a pointer led to where no object was.
  void begin_read_pointer(unsigned int address) {
    if (getRecordAddress() != address)
      m_reader.fail("no object of this class begins at byte " + std::to_string(address));
  }
  void end_read_pointer(unsigned int address) {
    if (getRecordAddress() != address) throw std::logic_error("an object was read that left a record open");
  }

  /// A damaged document when the innermost record cannot hold `count` elements behind the read position, each
  /// of which takes at least `elementSize` bytes: those of a pointer, unless said otherwise.
  void check_container_size(unsigned int count, unsigned int elementSize = 4);
  /// Reports a damaged document at the read position. Does not return.
  [[noreturn]] void handle_currupted_object(std::string const& reason = "the object is damaged");

  PersistenceArchiver& operator>>(unsigned int& value) {
    if (m_observer == nullptr && tellg() != m_hashPosition)
      value = m_reader.readNumber();
    else
      readHashOrReport(value);
    return *this;
  }
  PersistenceArchiver& operator>>(double& value);
  PersistenceArchiver& operator>>(std::string& value);
  /// The text inside the document. Texts that are equal are the same characters of it.
  PersistenceArchiver& operator>>(std::string_view& value);
  /// What `write_bytes` wrote, inside the document.
  [[nodiscard]] std::string_view read_bytes();

  /// A damaged document unless all records were read.
  void checkEndOfRecords();

  /// Reports to `observer` what is read from now on; null: to nobody.
  void setObserver(ArchiveObserver* observer) { m_observer = observer; }

 private:
  /// Of records in records.
  static constexpr std::size_t greatestDepth = 256;
  static constexpr unsigned int wordSize = 4;
  static constexpr std::uint32_t nullWord = 0;
  static constexpr std::uint32_t referenceBit = 0x80000000;

  struct OpenRecord {
    unsigned int address;
    unsigned int end;  ///< when reading
    bool isReference;  ///< stands for a pointer to an object that was read already
  };
  /// One entry of the document's table of classes.
  struct StoredClass {
    unsigned int typeHash;
    std::string_view name;
    unsigned int version;
    unsigned int objectCount;
  };

  /// A class and its number in the table of classes, from 1; 0: no class.
  struct ClassNumber {
    unsigned int typeHash = noTypeHash;
    unsigned int number = 0;
  };

  [[nodiscard]] unsigned int numberOf(unsigned int typeHash) {
    auto& cached = m_classNumbers[typeHash % m_classNumbers.size()];
    if (cached.typeHash != typeHash) cached = {typeHash, findOrAddClass(typeHash)};
    return cached.number;
  }
  [[nodiscard]] unsigned int findOrAddClass(unsigned int typeHash);
  void writeTables();

  static void checkFrame(std::string_view document, Checksum checksum);
  void readTables(std::string_view document);
  void readClass();
  void readHashOrReport(unsigned int& value);
  [[nodiscard]] unsigned int readTypeHash();
  [[nodiscard]] std::string_view readText();
  [[nodiscard]] AddressHeader readReference(unsigned int offset, unsigned int address);
  [[nodiscard]] PointerMapContainerBase& findOrAddPointerMap(unsigned int typeHash,
                                                             BaseClassRegister const& record);
  [[nodiscard]] AddressHeader readUncommonHeader(unsigned int offset, std::uint32_t word);
  /// REQUIRES: fewer than greatestDepth records are open.
  void open(OpenRecord const& record) {
    m_open.push_back(record);
    m_reader.set(tellg(), record.end);
    m_hashPosition = tellg();
  }
  void reportRecord();
  void reportRecordEnd();

  ClassMap m_classes;
  boost::container::static_vector<OpenRecord, greatestDepth> m_open;
  std::shared_ptr<void> m_treeState;

  ByteWriter m_writer;
  TextTable m_texts;
  std::vector<unsigned int> m_writtenClasses;   ///< type hashes
  std::deque<StreamposMap> m_writtenPositions;  ///< at the index of their class
  std::array<ClassNumber, 16> m_classNumbers;   ///< those used last

  ByteReader m_reader;
  std::vector<std::string_view> m_storedTexts;
  std::vector<StoredClass> m_storedClasses;
  std::map<unsigned int, unsigned int> m_objectCounts;  ///< of the stored classes, by type hash
  std::size_t m_storedObjects = 0;                      ///< sum of the counts
  std::map<unsigned int, std::unique_ptr<PointerMapContainerBase>> m_pointerMaps;
  std::pair<unsigned int, PointerMapContainerBase*> m_lastPointerMap{};
  unsigned int m_recordsEnd = 0;
  unsigned int m_hashPosition = 0;  ///< where the number to be read is a type hash
  ArchiveObserver* m_observer = nullptr;
};

}  // namespace Kestrel

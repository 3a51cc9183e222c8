#pragma once

#include <cassert>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "VantaService_PersistenceArchiver/ArchiveReader.h"
#include "VantaService_PersistenceArchiver/ArchiveWriter.h"
#include "VantaService_PersistenceArchiver/BaseClassRegister.h"
#include "VantaService_PersistenceArchiver/PointerMapContainer.h"
#include "VantaService_PersistenceArchiver/StreamposMap.h"

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
  static constexpr unsigned int noTypeHash = BaseClassRegister::noTypeHash;

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
  using Checksum = ArchiveReader::Checksum;

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
  [[nodiscard]] unsigned int getRecordAddress() const {
    return m_writer ? m_writer->getRecordAddress() : reader().getRecordAddress();
  }

  /// Notes that a library keeps while one document is written or read; empty at first.
  [[nodiscard]] std::shared_ptr<void>& getTreeState() { return m_treeState; }

  // Writing. Errors: std::length_error when the document would become too large (2 GiB) or records nest too
  // deeply; KeException as said. REQUIRES: an archive that writes.

  [[nodiscard]] unsigned int tellp() const { return writer().getPosition(); }  ///< the write position

  /// Opens a record. KeException for a hash that is neither `noTypeHash` nor a class that the archive knows.
  /// REQUIRES: address == tellp() + 4.
  void mark_object_start(unsigned int address, unsigned int typeHash) {
    writer().openRecord(address, typeHash);
  }
  /// Closes the innermost record. REQUIRES: its address, and tellp().
  void mark_object_end(unsigned int address, unsigned int endPosition) {
    writer().closeRecord(address, endPosition);
  }
  /// Writes a pointer to an object that was written, by the address of its first record and its type hash.
  /// KeException when that record is still open: a reader could not follow the cycle.
  void mark_pointer(unsigned int address, unsigned int typeHash) {
    writer().writeReference(address, typeHash);
  }
  /// Writes a pointer to no object.
  void mark_null_pointer() { writer().writeNull(); }

  /// The objects of a class that this archive has written. The reference stays valid. KeException for a class
  /// that the archive does not know. REQUIRES: a hash other than `noTypeHash`.
  [[nodiscard]] StreamposMap& getStreamposMap(unsigned int typeHash) {
    return writer().getPositions(typeHash);
  }

  /// 1 to 5 bytes.
  PersistenceArchiver& operator<<(unsigned int const& value) {
    writer().writeNumber(value);
    return *this;
  }
  /// All bits, of a NaN too.
  PersistenceArchiver& operator<<(double const& value) {
    writer().writeReal(value);
    return *this;
  }
  /// Any bytes. A text is stored once, however often it is written.
  PersistenceArchiver& operator<<(std::string const& value) {
    writer().writeText(value);
    return *this;
  }
  /// Writes bytes that are no text. Like texts they are stored once, however often they are written.
  void write_bytes(std::string_view bytes) { writer().writeText(bytes); }

  /// Ends the writing and returns the document. REQUIRES: no record is open; nothing is written afterwards.
  [[nodiscard]] std::string genDocument() { return writer().genDocument(); }

  // Reading. REQUIRES: an archive that reads.

  [[nodiscard]] unsigned int tellg() const { return reader().getPosition(); }  ///< the read position

  /// What stands in front of a record: `address` of the object's first record, 0 for a null pointer; `end`,
  /// the position behind the record that was opened.
  using AddressHeader = ArchiveReader::AddressHeader;

  /// Opens the record at the read position; the number read next is its type hash. A null pointer opens no
  /// record: there is nothing more to read and nothing to close. The header of a pointer to an object that
  /// was read already gives that object's address and hash.
  [[nodiscard]] AddressHeader read_to_address_header() { return reader().openRecord(); }
  /// Closes the innermost record, wherever in it the read position is. REQUIRES: `end` as its header gave it.
  void end_read_to_address(unsigned int end) { reader().closeRecord(end); }

  /// The objects of a class that this archive has read; `record` is its registration. The reference stays
  /// valid.
  [[nodiscard]] PointerMapContainerBase& getPointerMap(unsigned int typeHash,
                                                       BaseClassRegister const& record) {
    return reader().getObjects(typeHash, record);
  }
  ///@{
  /// Called before the object at `address` is made and read, and after that. A damaged document when the
  /// innermost record is not the object's own: a pointer led to where no object was.
  void begin_read_pointer(unsigned int address) { reader().beginObject(address); }
  void end_read_pointer(unsigned int address) { reader().endObject(address); }
  ///@}

  /// A damaged document when the innermost record cannot hold `count` elements behind the read position, each
  /// of which takes at least `elementSize` bytes: those of a pointer, unless said otherwise. REQUIRES: an
  /// element size other than 0.
  void check_container_size(unsigned int count, unsigned int elementSize = 4) {
    reader().checkContainerSize(count, elementSize);
  }
  /// Reports a damaged document at the read position. Does not return.
  [[noreturn]] void handle_currupted_object(std::string const& reason = "the object is damaged") {
    reader().fail(reason);
  }

  /// A damaged document when there is no such number.
  PersistenceArchiver& operator>>(unsigned int& value) {
    value = reader().readNumber();
    return *this;
  }
  /// All bits, of a NaN too.
  PersistenceArchiver& operator>>(double& value) {
    value = reader().readReal();
    return *this;
  }
  /// A copy of the text.
  PersistenceArchiver& operator>>(std::string& value) {
    value.assign(reader().readText());
    return *this;
  }
  /// The text inside the document. Texts that are equal are the same characters of it.
  PersistenceArchiver& operator>>(std::string_view& value) {
    value = reader().readText();
    return *this;
  }
  /// What `write_bytes` wrote, inside the document.
  [[nodiscard]] std::string_view read_bytes() { return reader().readBytes(); }

  /// A damaged document unless all records were read.
  void checkEndOfRecords() { reader().checkEnd(); }

  /// Reports to `observer` what is read from now on; null: to nobody.
  void setObserver(ArchiveObserver* observer) { reader().setObserver(observer); }

 private:
  [[nodiscard]] ArchiveWriter& writer() {
    assert(m_writer);
    return *m_writer;
  }
  [[nodiscard]] ArchiveWriter const& writer() const {
    assert(m_writer);
    return *m_writer;
  }
  [[nodiscard]] ArchiveReader& reader() {
    assert(m_reader);
    return *m_reader;
  }
  [[nodiscard]] ArchiveReader const& reader() const {
    assert(m_reader);
    return *m_reader;
  }

  ClassMap m_classes;
  std::optional<ArchiveWriter> m_writer;  ///< refers to m_classes; only when the archive writes
  std::optional<ArchiveReader> m_reader;  ///< only when it reads
  std::shared_ptr<void> m_treeState;
};

}  // namespace Kestrel

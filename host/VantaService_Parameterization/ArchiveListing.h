#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Kestrel {

/// One value of a record.
struct ArchiveField {
  /// A pointer to no object.
  struct Null {};
  /// A pointer to an object whose record stands further in front.
  struct Reference {
    unsigned int address;  ///< of the object's record
  };
  /// Bytes that are no value of another kind.
  struct Bytes {
    std::string bytes;  ///< as they stand in the document
    bool isUnread;      ///< the class did not read them: a newer program wrote them
  };

  unsigned int offset;  ///< where in the document it begins
  /// What it holds, by its kind.
  std::variant<Null, Reference, unsigned int, double, std::string, Bytes> value;
};

/// One record of a document.
struct ArchiveRecord {
  unsigned int offset;               ///< its address
  unsigned int depth;                ///< number of records around it
  std::string className;             ///< empty: none of its own
  unsigned int version;              ///< of the class, as the document says; 0 without a class
  std::vector<ArchiveField> fields;  ///< its own, without those of the records in it
};

/// What a document holds, for people who look for the reason of a trouble.
struct ArchiveListing {
  std::vector<ArchiveRecord> records;  ///< in the order of the document
  std::string damage;                  ///< the first that was found; empty: none
};

/// Lists the records of any document. Fields are known by being read: what a class of this program does not
/// read of its record appears as bytes. Never throws for the sake of the document: a damaged one is listed as
/// far as it can be read, also beyond a checksum that does not match, and what it lists may then be wrong.
/// The record of a class that this program does not have is the last one, without fields.
[[nodiscard]] ArchiveListing genArchiveListing(std::string_view document);

}  // namespace Kestrel

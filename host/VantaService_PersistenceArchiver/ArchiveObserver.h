#pragma once

#include <string_view>

namespace Kestrel {

/// Is told what an archive reads, in the order of the document. Offsets are in bytes from the beginning of
/// the document.
class ArchiveObserver {
 public:
  virtual ~ArchiveObserver() = default;

  /// A record was opened. `className` is empty for a record without a class of its own.
  virtual void onRecord(unsigned int address, std::string_view className, unsigned int version) = 0;
  /// The innermost record was closed with bytes that nobody read, which may be none.
  virtual void onRecordEnd(unsigned int offset, std::string_view unread) = 0;

  /// A null pointer.
  virtual void onNull(unsigned int offset) = 0;
  /// A pointer to the object at `address`; opens a record without fields.
  virtual void onReference(unsigned int offset, unsigned int address) = 0;
  ///@{
  /// A value of the innermost record, with the offset at which it begins.
  virtual void onNumber(unsigned int offset, unsigned int value) = 0;
  virtual void onReal(unsigned int offset, double value) = 0;
  virtual void onText(unsigned int offset, std::string_view value) = 0;
  virtual void onBytes(unsigned int offset, std::string_view value) = 0;
  ///@}
};

}  // namespace Kestrel

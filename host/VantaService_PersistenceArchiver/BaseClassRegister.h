#pragma once

#include <map>
#include <memory>
#include <string>

namespace Kestrel {

class PersistenceArchiver;
class PointerMapContainerBase;

/// The entry under which an archive writes, makes and reads the objects of one class.
///
/// The entries are functions of the library that holds the class: a record is of use only while that library
/// is loaded. `load` and `save` get the version by which the class tells its layouts apart.
///
/// A value type: copies are independent of the registry.
struct BaseClassRegister {
  /// As the version asked for in `PersistenceArchiver::registerFactory`: the program's own,
  /// `PersistenceArchiver::getCurrentVersion(0)`.
  static constexpr unsigned int programVersion = 0xFFFFFFFF;

  /// As an identifier: of no registered class.
  static constexpr unsigned int noTypeHash = 0xBBAFA6C8;

  std::string name;                 ///< stored in documents; never changes its meaning
  unsigned int currentVersion = 0;  ///< what `save` gets, and what documents store
  unsigned int readVersion = 0;     ///< what `load` gets: of the document, when an archive that reads gave it

  /// Fills the object from the current position of the archive.
  void (*load)(PersistenceArchiver& archive, void* object, unsigned int version) = nullptr;
  /// Writes the object at the end of the archive.
  void (*save)(PersistenceArchiver& archive, void const* object, unsigned int version) = nullptr;
  /// A new, default-constructed object.
  std::shared_ptr<void> (*factory)() = nullptr;
  /// Identifier of the object's run-time class; `PersistenceArchiver::noTypeHash` when it is not registered.
  unsigned int (*dynamicType)(void const* object) = nullptr;
  /// An empty `PointerMapContainer` of the class.
  std::unique_ptr<PointerMapContainerBase> (*pointerMapFactory)() = nullptr;

  unsigned int identifier = 0;  ///< given by the registry; 0: not registered
  unsigned int tracking = 1;    ///< 1: an object is stored once, further pointers refer to it
};

/// Classes by identifier.
using ClassMap = std::map<unsigned int, BaseClassRegister>;

}  // namespace Kestrel

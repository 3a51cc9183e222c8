#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "VantaService_PersistenceArchiver/ClassRegistration.h"
#include "VantaService_PersistenceArchiver/PersistenceArchiver.h"

// How whole objects are framed.

namespace Kestrel {

/// Has the archive react to a damaged object, with the reason if it takes one. If that returns, the object is
/// left out.
template <typename Archive>
void reportDamage(Archive& archive, std::string const& reason) {
  if constexpr (requires { archive.handle_currupted_object(reason); })
    archive.handle_currupted_object(reason);
  else
    archive.handle_currupted_object();
}

/// The address at which an object of a class was written before; 0 for one that was not, which is remembered
/// with `address`. Positions that share the ownership of their objects are given the owner.
template <typename StreamPositions>
[[nodiscard]] unsigned int findOrRemember(StreamPositions& positions,
                                          std::shared_ptr<void const> const& object, unsigned int address) {
  if constexpr (requires { positions.findOrInsert(object, address); }) {
    return positions.findOrInsert(object, address);
  } else {
    auto const [entry, isNew] = positions.try_emplace(object.get(), address);
    return isNew ? 0 : entry->second;
  }
}

/// Writes a record with the type hash: calls `writeContent()` between its marks.
template <typename WriteContent>
void saveRecord(PersistenceArchiver& archive, unsigned int typeHash, WriteContent const& writeContent) {
  unsigned int const address = archive.tellp() + 4;
  archive.mark_object_start(address, typeHash);
  writeContent();
  archive.mark_object_end(address, archive.tellp());
}

/// Reads a record: calls `readContent(typeHash)` and skips what that did not read. A damaged document when
/// there is a pointer instead: none, or one to an object elsewhere.
template <typename ReadContent>
void loadRecord(PersistenceArchiver& archive, ReadContent const& readContent) {
  auto const header = archive.read_to_address_header();
  if (header.address == archive.tellg()) {
    unsigned int typeHash = noTypeHash;
    archive >> typeHash;
    readContent(typeHash);
  } else {
    reportDamage(archive, "expected a record, found a pointer to another");
  }
  if (header.address != 0) archive.end_read_to_address(header.end);
}

/// Writes an object whose class is known from where it stands as a record: a base part, a member.
template <typename T>
void savePart(PersistenceArchiver& archive, T const& part) {
  auto const& registration = usableRegistrationOf<T>();
  saveRecord(archive, registration.identifier,
             [&] { registration.save(archive, &part, registration.currentVersion); });
}

/// Reads what `savePart` wrote, with the version of the class that the document says.
template <typename T>
void loadPart(PersistenceArchiver& archive, T& part) {
  loadRecord(archive, [&](unsigned int typeHash) {
    auto const& registration = usableRegistrationOf<T>();
    auto const* record = &registration;
    if (typeHash != noTypeHash)
      record = &archive.getMapOfClasses().try_emplace(typeHash, registration).first->second;
    registration.load(archive, &part, record->readVersion);
  });
}

/// Writes a pointer and, on first sight, the object that it points to, by the save of its run-time class. An
/// object of a class that is not registered is written as a `T`.
///
/// Errors: std::runtime_error when the run-time class is registered without being related to `T`.
template <typename T>
void savePointer(PersistenceArchiver& archive, std::shared_ptr<T> const& pointer) {
  if (!pointer) return archive.mark_null_pointer();
  auto const* record = &usableRegistrationOf<T>();
  void const* object = pointer.get();
  auto const& classes = archive.getMapOfClasses();
  if (auto const found = classes.find(record->dynamicType(object)); found != classes.end()) {
    if (found->first != record->identifier) {
      auto* const caster = PersistenceArchiver::getCaster(record->identifier, found->first);
      if (caster == nullptr)
        throw std::runtime_error(found->second.name + " is not known to be a " + record->name);
      object = caster->downCast(const_cast<void*>(object));
      if (object == nullptr) throw std::runtime_error("the object is no " + found->second.name);
    }
    record = &found->second;
  }
  if (unsigned int const known =
          findOrRemember(archive.getStreamposMap(record->identifier),
                         std::shared_ptr<void const>(pointer, object), archive.tellp() + 4);
      known != 0)
    return archive.mark_pointer(known, record->identifier);
  saveRecord(archive, record->identifier, [&] { record->save(archive, object, record->currentVersion); });
}

/// The class of an object that a pointer leads to, and how to get from there to the class of the pointer.
struct PointedClass {
  BaseClassRegister const* record;                          ///< null: none that the pointer can lead to
  decltype(PersistenceArchiver::getCaster(0U, 0U)) caster;  ///< null: none is needed
};

/// The class that a type hash says. A damaged document when it is unknown or unrelated to `declared`.
inline PointedClass findPointedClass(PersistenceArchiver& archive, BaseClassRegister const& declared,
                                     unsigned int typeHash) {
  if (typeHash == noTypeHash) return {&declared, nullptr};
  auto const& classes = archive.getMapOfClasses();
  auto const found = classes.find(typeHash);
  if (typeHash == declared.identifier) return {found != classes.end() ? &found->second : &declared, nullptr};
  if (found == classes.end()) {
    reportDamage(archive, "the class of the object is not registered in this program");
    return {nullptr, nullptr};
  }
  auto* const caster = PersistenceArchiver::getCaster(declared.identifier, typeHash);
  if (caster != nullptr) return {&found->second, caster};
  reportDamage(archive, "expected a " + declared.name + ", found a " + found->second.name);
  return {nullptr, nullptr};
}

/// The object whose record was opened by `header`: the one that was read there, or a new one.
inline std::shared_ptr<void> loadObject(PersistenceArchiver& archive, unsigned int address,
                                        BaseClassRegister const& record) {
  auto& objects = archive.getPointerMap(record.identifier, record);
  if (auto const* const known = objects.find(address)) return *known;
  archive.begin_read_pointer(address);
  auto object = record.factory();
  objects.insert(address, object);
  record.load(archive, object.get(), record.readVersion);
  archive.end_read_pointer(address);
  return object;
}

/// Whether a pointer that is read shares the ownership of its object. One that does not is valid as long as
/// others hold the object: the archive itself, and the pointers that do.
enum class PointerOwnership { shared, none };

/// Reads a pointer: to a new object on first sight, to the same one from then on. A null pointer leaves
/// `pointer` as it is.
template <typename T>
void loadPointer(PersistenceArchiver& archive, std::shared_ptr<T>& pointer,
                 PointerOwnership ownership = PointerOwnership::shared) {
  auto const header = archive.read_to_address_header();
  if (header.address == 0) return;
  unsigned int typeHash = noTypeHash;
  archive >> typeHash;
  auto const [record, caster] = findPointedClass(archive, usableRegistrationOf<T>(), typeHash);
  if (record != nullptr) {
    auto object = loadObject(archive, header.address, *record);
    auto* const target = static_cast<T*>(caster != nullptr ? caster->upCast(object.get()) : object.get());
    pointer = ownership == PointerOwnership::shared ? std::shared_ptr<T>(std::move(object), target)
                                                    : std::shared_ptr<T>(target, [](T*) {});
  }
  archive.end_read_to_address(header.end);
}

}  // namespace Kestrel

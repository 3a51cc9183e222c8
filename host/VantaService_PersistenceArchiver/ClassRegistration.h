#pragma once

#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <typeinfo>

#include "VantaService_PersistenceArchiver/BaseClassRegister.h"
#include "VantaService_PersistenceArchiver/Caster.h"
#include "VantaService_PersistenceArchiver/PersistenceArchiver.h"
#include "VantaService_PersistenceArchiver/PointerMapContainer.h"

// Together with ObjectRecord.h this is made of the archive's own operations and of the classes' registration
// records, so that it goes with any archive that has them.

namespace Kestrel {

/// The type hash of records that are no object of a registered class: nested containers, and records whose
/// class is known from where they stand.
inline constexpr unsigned int noTypeHash = 0xBBAFA6C8;

/// Reaches the private `save`, `load` and default constructor of a persistent class, which declares it its
/// friend: `friend class ArchiveAccess;`.
class ArchiveAccess {
 public:
  /// Calls the class's own `load`.
  template <typename T>
  static void load(PersistenceArchiver& archive, void* object, unsigned int version) {
    static_cast<T*>(object)->load(archive, version);
  }

  /// Calls the class's own `save`.
  template <typename T>
  static void save(PersistenceArchiver& archive, void const* object, unsigned int version) {
    static_cast<T const*>(object)->save(archive, version);
  }

  /// A new object in one piece of memory with its reference counts, as std::make_shared would make it.
  template <typename T>
  [[nodiscard]] static std::shared_ptr<void> create() {
    return std::allocate_shared<T>(Maker<T>());
  }

 private:
  template <typename T>
  struct Maker : std::allocator<T> {
    Maker() = default;
    template <typename U>
    explicit Maker(Maker<U> const& other) noexcept : std::allocator<T>(other) {}
    template <typename U>
    void construct(U* memory) {
      ::new (static_cast<void*>(memory)) U();
    }
  };
};

/// A copy of the registration record of a class, taken when it is first asked for.
template <typename T>
[[nodiscard]] BaseClassRegister const& registrationOf() {
  static BaseClassRegister const record = [] {
    BaseClassRegister filled;
    T::serialization_register(&filled);
    return filled;
  }();
  return record;
}

/// The same for a class that is to be written or read.
///
/// Errors: std::runtime_error when the archive's registry refused the class.
template <typename T>
[[nodiscard]] BaseClassRegister const& usableRegistrationOf() {
  auto const& record = registrationOf<T>();
  if (record.identifier == 0) throw std::runtime_error(record.name + " is not registered with the archive");
  return record;
}

/// Keeps a class in the archive's registry, from its construction to its destruction. Made as a static object
/// of the library that holds the class, it registers the class when the library is loaded and withdraws it
/// when the library is unloaded.
template <typename T>
class ClassRegistration {
 public:
  /// See `PersistenceArchiver::registerFactory`.
  ClassRegistration(std::string const& name, unsigned int version) {
    BaseClassRegister record;
    record.load = &ArchiveAccess::load<T>;
    record.save = &ArchiveAccess::save<T>;
    record.factory = &ArchiveAccess::create<T>;
    record.dynamicType = &dynamicType;
    record.pointerMapFactory = &genPointerMap;
    auto const* const registered = PersistenceArchiver::registerFactory(name, record, version);
    if (registered == nullptr || registered->identifier == 0) {
      m_record.name = name;
      return;
    }
    m_record = *registered;
    PersistenceArchiver::registerHash(PersistenceArchiver::getHashForName(typeid(T).name()),
                                      m_record.identifier);
  }
  ClassRegistration(ClassRegistration const&) = delete;
  ClassRegistration& operator=(ClassRegistration const&) = delete;
  ~ClassRegistration() { withdraw<PersistenceArchiver>(m_record.identifier); }

  /// A copy of the registry's record; it has the name alone, and the identifier 0, when the registry refused
  /// the class.
  [[nodiscard]] BaseClassRegister const& getRecord() const { return m_record; }

 private:
  /// An archive without such an operation keeps its records as long as the process.
  template <typename Archive>
  static void withdraw([[maybe_unused]] unsigned int identifier) {
    if constexpr (requires { Archive::withdrawFactory(identifier); })
      if (identifier != 0) Archive::withdrawFactory(identifier);
  }

  [[nodiscard]] static unsigned int dynamicType(void const* object) {
    auto const& type = typeid(*static_cast<T const*>(object));
    // The same answer as that of the registry, without asking it.
    if (type == typeid(T)) return registrationOf<T>().identifier;
    return PersistenceArchiver::getHashForType(PersistenceArchiver::getHashForName(type.name()));
  }

  [[nodiscard]] static std::unique_ptr<PointerMapContainerBase> genPointerMap() {
    return std::make_unique<PointerMapContainer<T>>();
  }

  BaseClassRegister m_record;
};

/// What the `serialization_register` of a class does: registers the class, if that has not happened yet, and
/// copies its entry to `record`, a `BaseClassRegister`. The library that calls this holds the registration.
template <typename T>
void fillRegistration(void* record, std::string const& name, unsigned int version) {
  static ClassRegistration<T> const registration(name, version);
  *static_cast<BaseClassRegister*>(record) = registration.getRecord();
}

/// Registers a class, if that has not happened yet. False when the registry refused it.
template <typename T>
[[nodiscard]] bool registerClass() {
  return registrationOf<T>().identifier != 0;
}

/// Identifier of a class, or the hash of its run-time type name while it is not registered.
template <typename T>
[[nodiscard]] unsigned int identifierOf() {
  unsigned int const hash = PersistenceArchiver::getHashForName(typeid(T).name());
  unsigned int const identifier = PersistenceArchiver::getHashForType(hash);
  return identifier != noTypeHash ? identifier : hash;
}

/// Makes it known to the archive that `Derived` is derived from `Base`, for as long as the library that calls
/// this is loaded. Called once per pair; false when the archive refused it.
template <typename Base, typename Derived>
[[nodiscard]] bool registerParent() {
  static CasterAccess<Base, Derived, 1, 0> caster;
  return PersistenceArchiver::registerCaster(identifierOf<Base>(), identifierOf<Derived>(), &caster);
}

}  // namespace Kestrel

#pragma once

#include <map>
#include <memory>
#include <optional>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "VantaService_PersistenceArchiver/BaseClassRegister.h"
#include "VantaService_PersistenceArchiver/Caster.h"

namespace Kestrel {

/// The registry behind the static operations of `PersistenceArchiver`, which say what each of these promises.
///
/// Threads: any number at once.
class ClassRegistry {
 public:
  /// The one registry of the process, made when it is first asked for.
  [[nodiscard]] static ClassRegistry& instance();

  /// As `PersistenceArchiver::getHashForName`.
  [[nodiscard]] static unsigned int hashOf(std::string_view name);

  ///@{
  /// The operation of `PersistenceArchiver` that this carries out says what it promises.
  BaseClassRegister const* add(std::string const& name, BaseClassRegister const& record,
                               unsigned int version);
  void withdraw(unsigned int identifier);
  void addAlias(unsigned int hash, unsigned int identifier);
  [[nodiscard]] unsigned int findAlias(unsigned int hash) const;

  bool add(unsigned int baseIdentifier, unsigned int derivedIdentifier, Caster* caster);
  void withdraw(Caster const& caster);
  [[nodiscard]] Caster const* findCaster(unsigned int baseIdentifier, unsigned int derivedIdentifier);
  ///@}

  /// A copy of what is registered.
  [[nodiscard]] ClassMap getClasses() const;
  /// A copy of the record of a class; none of a class that is not registered.
  [[nodiscard]] std::optional<BaseClassRegister> find(unsigned int identifier) const;

 private:
  /// Identifiers of a base and of a class derived from it.
  using Relation = std::pair<unsigned int, unsigned int>;
  struct OwnedCaster {
    Relation relation;
    Caster* caster;
  };

  ClassRegistry() = default;

  [[nodiscard]] unsigned int resolve(unsigned int identifier) const;
  [[nodiscard]] Caster const* findDirectCaster(Relation const& relation) const;
  [[nodiscard]] std::vector<Caster*> findPath(Relation const& relation) const;

  mutable std::shared_mutex m_mutex;
  ClassMap m_classes;
  std::map<unsigned int, unsigned int> m_aliases;
  std::vector<OwnedCaster> m_casters;  ///< identifiers as they were given, perhaps before they had a class
  std::map<Relation, std::unique_ptr<Caster>> m_chains;  ///< over further classes, made when asked for
};

}  // namespace Kestrel

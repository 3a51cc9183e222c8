#include "VantaService_PersistenceArchiver/ClassRegistry.h"

#include <xxhash.h>

#include <deque>
#include <mutex>

#include "VantaService_PersistenceArchiver/PersistenceArchiver.h"

namespace Kestrel {

namespace {

/// Casters one after the other, from the base down to the derived class.
class CasterChain final : public Caster {
 public:
  explicit CasterChain(std::vector<Caster*> casters) : m_casters(std::move(casters)) {}

  void* upCast(void* derived) const override {
    for (auto caster = m_casters.rbegin(); caster != m_casters.rend(); ++caster) {
      derived = (*caster)->upCast(derived);
    }
    return derived;
  }

  void* downCast(void* base) const override {
    for (auto const* caster : m_casters) base = caster->downCast(base);
    return base;
  }

 private:
  std::vector<Caster*> m_casters;
};

}  // namespace

ClassRegistry& ClassRegistry::instance() {
  static auto* const registry = new ClassRegistry();
  return *registry;
}

unsigned int ClassRegistry::hashOf(std::string_view name) {
  auto const hash = static_cast<unsigned int>(XXH3_64bits(name.data(), name.size()));
  return hash == 0 || hash == BaseClassRegister::noTypeHash ? 1 : hash;
}

BaseClassRegister const* ClassRegistry::add(std::string const& name, BaseClassRegister const& record,
                                            unsigned int version) {
  std::unique_lock const lock(m_mutex);
  unsigned int const identifier = hashOf(name);
  auto const [entry, isNew] = m_classes.try_emplace(identifier, record);
  if (!isNew) return nullptr;
  if (version == BaseClassRegister::programVersion) version = PersistenceArchiver::getCurrentVersion(0);
  entry->second.name = name;
  entry->second.currentVersion = version;
  entry->second.readVersion = version;
  entry->second.identifier = identifier;
  return &entry->second;
}

void ClassRegistry::withdraw(unsigned int identifier) {
  std::unique_lock const lock(m_mutex);
  m_classes.erase(identifier);
  std::erase_if(m_aliases, [&](auto const& alias) { return alias.second == identifier; });
}

void ClassRegistry::addAlias(unsigned int hash, unsigned int identifier) {
  std::unique_lock const lock(m_mutex);
  m_aliases[hash] = identifier;
}

unsigned int ClassRegistry::findAlias(unsigned int hash) const {
  std::shared_lock const lock(m_mutex);
  auto const alias = m_aliases.find(hash);
  return alias != m_aliases.end() ? alias->second : BaseClassRegister::noTypeHash;
}

bool ClassRegistry::add(unsigned int baseIdentifier, unsigned int derivedIdentifier, Caster* caster) {
  std::unique_lock const lock(m_mutex);
  Relation const relation(resolve(baseIdentifier), resolve(derivedIdentifier));
  if (caster == nullptr || findDirectCaster(relation) != nullptr) return false;
  m_casters.push_back({{baseIdentifier, derivedIdentifier}, caster});
  return true;
}

void ClassRegistry::withdraw(Caster const& caster) {
  decltype(m_chains) withdrawn;
  std::unique_lock const lock(m_mutex);
  auto const count =
      std::erase_if(m_casters, [&](OwnedCaster const& known) { return known.caster == &caster; });
  // The chains are casters themselves, and are destroyed without the lock.
  if (count != 0) m_chains.swap(withdrawn);
}

Caster const* ClassRegistry::findCaster(unsigned int baseIdentifier, unsigned int derivedIdentifier) {
  {
    std::shared_lock const lock(m_mutex);
    Relation const relation(resolve(baseIdentifier), resolve(derivedIdentifier));
    if (auto const* const caster = findDirectCaster(relation)) return caster;
    if (auto const chain = m_chains.find(relation); chain != m_chains.end()) return chain->second.get();
  }
  std::unique_lock const lock(m_mutex);
  Relation const relation(resolve(baseIdentifier), resolve(derivedIdentifier));
  auto path = findPath(relation);
  if (path.empty()) return nullptr;
  auto& chain = m_chains[relation];
  if (!chain) chain = std::make_unique<CasterChain>(std::move(path));
  return chain.get();
}

ClassMap ClassRegistry::getClasses() const {
  std::shared_lock const lock(m_mutex);
  return m_classes;
}

std::optional<BaseClassRegister> ClassRegistry::find(unsigned int identifier) const {
  std::shared_lock const lock(m_mutex);
  auto const entry = m_classes.find(identifier);
  return entry != m_classes.end() ? std::optional(entry->second) : std::nullopt;
}

/// The identifier of a class that was given by the hash of its run-time type name, once it has one.
unsigned int ClassRegistry::resolve(unsigned int identifier) const {
  auto const alias = m_aliases.find(identifier);
  return alias != m_aliases.end() ? alias->second : identifier;
}

Caster const* ClassRegistry::findDirectCaster(Relation const& relation) const {
  for (auto const& known : m_casters)
    if (resolve(known.relation.first) == relation.first && resolve(known.relation.second) == relation.second)
      return known.caster;
  return nullptr;
}

/// The shortest way from the base down to the derived class; empty when there is none.
std::vector<Caster*> ClassRegistry::findPath(Relation const& relation) const {
  std::map<unsigned int, std::vector<Caster*>> paths{{relation.first, {}}};
  for (std::deque<unsigned int> queue{relation.first}; !queue.empty(); queue.pop_front()) {
    auto const from = queue.front();
    if (from == relation.second) return paths[from];
    for (auto const& known : m_casters) {
      auto const to = resolve(known.relation.second);
      if (resolve(known.relation.first) != from || paths.contains(to)) continue;
      auto path = paths[from];
      path.push_back(known.caster);
      paths.emplace(to, std::move(path));
      queue.push_back(to);
    }
  }
  return {};
}

}  // namespace Kestrel

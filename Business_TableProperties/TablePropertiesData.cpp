#include "Business_TableProperties/TablePropertiesData.h"

#include <algorithm>
#include <boost/thread/mutex.hpp>

#include "VantaService_Parameterization/ObjectHelper.h"
#include "VantaService_PersistenceArchiver/ClassRegistration.h"
#include "VantaService_PersistenceArchiver/ObjectRecord.h"

namespace Kestrel {

namespace {

constexpr unsigned int classVersion = 500002;
constexpr unsigned int firstVersionWithLastingLimits = 500002;

using LimitList = std::vector<std::shared_ptr<TablePropertyLimit>>;
using LimitMap = std::map<SimulationUnitId, LimitList>;

/// Has the memory of limits that are about to be used fetched, all at a time: in a large collection most of
/// it is in no cache.
void prefetch(LimitList const& limits) {
  for (auto const& limit : limits) {
    __builtin_prefetch(limit.get());
    __builtin_prefetch(&limit->getSimUnitID());
  }
}

/// A list of units compared with the units that have limits. Refers to both.
struct UnitMatch {
  std::vector<LimitList const*> known;           ///< the limits of the listed units, by identifier
  std::vector<SimulationUnitId const*> unknown;  ///< the listed units without limits, as they are listed

  UnitMatch(std::vector<SimulationUnitId> const& ids, LimitMap const& map) {
    std::vector<SimulationUnitId const*> sortedIds;
    sortedIds.reserve(ids.size());
    for (auto const& id : ids) sortedIds.push_back(&id);
    std::sort(sortedIds.begin(), sortedIds.end(), [](auto const* a, auto const* b) { return *a < *b; });
    auto entry = map.begin();
    bool isKnown = false;
    for (auto const* id : sortedIds) {
      while (entry != map.end() && entry->first < *id) {
        ++entry;
        isKnown = false;
      }
      if (entry == map.end() || !(entry->first == *id)) {
        unknown.push_back(id);
      } else if (!isKnown) {
        known.push_back(&entry->second);
        isKnown = true;
      }
    }
    std::sort(unknown.begin(), unknown.end());
  }
};

/// The kinds of the limits, one bit each; kinds without a bit have no default.
std::uint32_t kindsOf(LimitList const& limits) {
  std::uint32_t kinds = 0;
  for (auto const& limit : limits) {
    auto const kind = static_cast<std::uint32_t>(limit->getType());
    if (kind < 32) kinds |= std::uint32_t{1} << kind;
  }
  return kinds;
}

}  // namespace

bool TablePropertiesData::s_force_serialization_registration = registerClass<TablePropertiesData>();
bool TablePropertiesData::s_isParentRegisteredForSave = registerParent<Object, TablePropertiesData>();
bool TablePropertiesData::s_isParentRegisteredForLoad = s_isParentRegisteredForSave;

void TablePropertiesData::serialization_register(void* record) {
  fillRegistration<TablePropertiesData>(record, "TablePropertiesData", classVersion);
}

TablePropertiesData::TablePropertiesData() = default;

TablePropertiesData::~TablePropertiesData() = default;

std::shared_ptr<TablePropertyLimit> TablePropertiesData::getLimit(SimulationUnitId const& id,
                                                                  TablePropertyLimitType type) const {
  // Tables ask for one unit many times in a row.
  auto const* entry = m_lastFound.load(std::memory_order_relaxed);
  if (entry == nullptr || !(entry->first == id)) {
    auto const found = m_limitsAccessMap.find(id);
    if (found == m_limitsAccessMap.end()) return nullptr;
    entry = &*found;
    m_lastFound.store(entry, std::memory_order_relaxed);
    prefetch(entry->second);
  }
  for (auto const& limit : entry->second)
    if (limit->getType() == type) return limit;
  return nullptr;
}

void TablePropertiesData::updateLimits(std::vector<SimulationUnitId> const& ids) {
  if (hasAnyLimits())
    synchronizeLimits(ids);
  else
    setupLimits(ids);
}

bool TablePropertiesData::hasAnyLimits() const { return !m_limits.empty(); }

void TablePropertiesData::setupLimits(std::vector<SimulationUnitId> const& ids) {
  ObjectHelper::removeAllFromVector(this, m_limits);
  for (auto const& id : ids) setupLimitsForSimUnit(id);
  setupLimitsAccessMap();
}

void TablePropertiesData::setupLimitsForSimUnit(SimulationUnitId const& id) {
  auto const& defaults = initDefaultLimits();
  LimitList limits;
  limits.reserve(defaults.size());
  for (auto const& [type, limit, unit] : defaults)
    limits.push_back(std::make_shared<TablePropertyLimit>(type, id, limit, unit));
  addLimits(limits);
}

void TablePropertiesData::setupLimitsAccessMap() {
  LimitMap map;
  auto entry = map.end();
  for (auto const& limit : m_limits) {
    // A document may hold empty pointers.
    if (!limit) continue;
    // Limits of one unit lie side by side, mostly.
    if (entry == map.end() || !(entry->first == limit->getSimUnitID())) {
      entry = map.try_emplace(limit->getSimUnitID()).first;
      entry->second.reserve(initDefaultLimits().size());
    }
    entry->second.push_back(limit);
  }
  m_limitsAccessMap.swap(map);
  m_lastFound.store(nullptr, std::memory_order_relaxed);
}

void TablePropertiesData::synchronizeLimits(std::vector<SimulationUnitId> const& ids) {
  UnitMatch const match(ids, m_limitsAccessMap);
  ObjectHelper::removeAllFromVector(this, m_limits);
  try {
    for (std::size_t i = 0; i < match.known.size(); ++i) {
      if (i + 1 < match.known.size()) prefetch(*match.known[i + 1]);
      addLimits(*match.known[i]);
    }
  } catch (...) {
    // The limits that could not be adopted again stay in the list, so that the next update finds their
    // values.
    for (auto const* limits : match.known)
      if (limits->front()->getParentObject() != this)
        m_limits.insert(m_limits.end(), limits->begin(), limits->end());
    throw;
  }
  for (auto const* id : match.unknown) setupLimitsForSimUnit(*id);
  if (match.known.size() != m_limitsAccessMap.size() || !match.unknown.empty()) setupLimitsAccessMap();
}

void TablePropertiesData::extendLimits() {
  if (m_dataVersion < s_currentDataVersion) {
    addLimits(genMissingLimits());
    setupLimitsAccessMap();
  } else if (m_dataVersion > s_currentDataVersion) {
    replaceLimitsByDefaults();
  }
  m_dataVersion = s_currentDataVersion;
}

TablePropertiesData::LimitList TablePropertiesData::genMissingLimits() const {
  auto const& defaults = initDefaultLimits();
  std::vector<std::uint32_t> kinds;
  kinds.reserve(m_limitsAccessMap.size());
  for (auto const& [id, limits] : m_limitsAccessMap) kinds.push_back(kindsOf(limits));
  LimitList missing;
  missing.reserve(defaults.size() * m_limitsAccessMap.size());
  for (auto const& [type, limit, unit] : defaults) {
    auto kindsOfUnit = kinds.begin();
    for (auto const& [id, limits] : m_limitsAccessMap)
      if ((*kindsOfUnit++ >> static_cast<std::uint32_t>(type) & 1U) == 0)
        missing.push_back(std::make_shared<TablePropertyLimit>(type, id, limit, unit));
  }
  return missing;
}

void TablePropertiesData::replaceLimitsByDefaults() {
  std::vector<SimulationUnitId> ids;
  ids.reserve(m_limits.size());
  for (auto const& limit : m_limits)
    if (limit) ids.push_back(limit->getSimUnitID());
  // One set per limit, not per unit: a unit that had n limits gets n sets.
  setupLimits(ids);
}

void TablePropertiesData::save(PersistenceArchiver& archive, unsigned int /*version*/) const {
  if (!s_isParentRegisteredForSave) throw KeException("Parent not registered");
  savePart<Object>(archive, *this);
  archive << static_cast<unsigned int>(s_currentDataVersion);
  saveRecord(archive, PersistenceArchiver::noTypeHash, [&] {
    archive << static_cast<unsigned int>(m_limits.size());
    for (auto const& limit : m_limits) savePointer(archive, limit);
  });
}

void TablePropertiesData::load(PersistenceArchiver& archive, unsigned int version) {
  if (!s_isParentRegisteredForLoad) throw KeException("Parent not registered");
  loadPart<Object>(archive, *this);
  unsigned int dataVersion = 0;
  archive >> dataVersion;
  m_dataVersion = static_cast<std::int32_t>(dataVersion);
  loadLimits(archive);
  if (version < firstVersionWithLastingLimits) {
    m_dataVersion = 0;
    // They have become children while they were read.
    ObjectHelper::removeAllFromVector(this, m_limits);
  }
  setupLimitsAccessMap();
  if (m_dataVersion != s_currentDataVersion) extendLimits();
}

void TablePropertiesData::loadLimits(PersistenceArchiver& archive) {
  loadRecord(archive, [&](unsigned int /*typeHash*/) {
    unsigned int count = 0;
    archive >> count;
    archive.check_container_size(count);
    m_limits.resize(count);
    for (auto& limit : m_limits) loadPointer(archive, limit);
  });
}

void TablePropertiesData::addLimits(LimitList const& limits) {
  constexpr int freshIds = 1;
  ObjectHelper::addToVectorAtEnd(this, limits, m_limits, "TablePropertyLimit", freshIds, false);
}

TablePropertiesData::DefaultLimits const& TablePropertiesData::initDefaultLimits() {
  using enum TablePropertyLimitType;
  static boost::mutex mutex;
  static DefaultLimits table;
  boost::mutex::scoped_lock const lock(mutex);
  if (table.empty()) {
    table = {{JoiningTongNormalForce, 500.0, "N"},
             {JoiningTongDistance, 1.0, "mm"},
             {JoiningTongGap, 1.0, "mm"},
             {LineJoiningToolDistanceToInput, 1.0, "mm"},
             {JoinNormalForce, 500.0, "N"},
             {JoinTangentialForce, 500.0, "N"},
             {ForceLimit7, 500.0, "N"},
             {ForceLimit8, 500.0, "N"},
             {LineJoiningToolGap, 1.0, "mm"},
             {PilotForce, 500.0, "N"},
             {BoltNormalForce, 30.0, "N"},
             {RollerForce, 500.0, "N"},
             {SteelForce, 500.0, "N"},
             {HemmingBedForce, 500.0, "N"},
             {SuctionZoneForce, 500.0, "N"},
             {SuctionDistance, 1.0, "mm"}};
  }
  return table;
}

}  // namespace Kestrel

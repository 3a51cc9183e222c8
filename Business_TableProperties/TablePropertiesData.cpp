#include "Business_TableProperties/TablePropertiesData.h"

#include <algorithm>
#include <array>
#include <boost/thread/mutex.hpp>
#include <cstdint>
#include <stdexcept>

#include "VantaService_Parameterization/ObjectHelper.h"
#include "VantaService_PersistenceArchiver/ClassRegistration.h"
#include "VantaService_PersistenceArchiver/ObjectRecord.h"

namespace Kestrel {

namespace {

constexpr unsigned int classVersion = 500002;
constexpr unsigned int firstVersionWithLastingLimits = 500002;

using LimitList = std::vector<std::shared_ptr<TablePropertyLimit>>;
using LimitMap = std::map<SimulationUnitId, LimitList>;

struct DefaultLimit {
  TablePropertyLimitType type;
  double limit;
  char const* unit;
};

using enum TablePropertyLimitType;

/// What a new unit gets, in the order in which its limits are created.
constexpr std::array s_defaults = {DefaultLimit{JoiningTongNormalForce, 500.0, "N"},
                                   DefaultLimit{JoiningTongDistance, 1.0, "mm"},
                                   DefaultLimit{JoiningTongGap, 1.0, "mm"},
                                   DefaultLimit{LineJoiningToolDistanceToInput, 1.0, "mm"},
                                   DefaultLimit{JoinNormalForce, 500.0, "N"},
                                   DefaultLimit{JoinTangentialForce, 500.0, "N"},
                                   DefaultLimit{ForceLimit7, 500.0, "N"},
                                   DefaultLimit{ForceLimit8, 500.0, "N"},
                                   DefaultLimit{LineJoiningToolGap, 1.0, "mm"},
                                   DefaultLimit{PilotForce, 500.0, "N"},
                                   DefaultLimit{BoltNormalForce, 30.0, "N"},
                                   DefaultLimit{RollerForce, 500.0, "N"},
                                   DefaultLimit{SteelForce, 500.0, "N"},
                                   DefaultLimit{HemmingBedForce, 500.0, "N"},
                                   DefaultLimit{SuctionZoneForce, 500.0, "N"},
                                   DefaultLimit{SuctionDistance, 1.0, "mm"}};

/// One bit per kind of limit.
using Kinds = std::uint32_t;
constexpr std::uint32_t s_kindBits = 32;
static_assert(std::ranges::all_of(s_defaults, [](DefaultLimit const& row) {
  return static_cast<std::uint32_t>(row.type) < s_kindBits;
}));

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

/// The kinds of the limits. Documents may hold kinds without a bit; they have no default.
Kinds kindsOf(LimitList const& limits) {
  Kinds kinds = 0;
  for (auto const& limit : limits) {
    auto const kind = static_cast<std::uint32_t>(limit->getType());
    if (kind < s_kindBits) kinds |= Kinds{1} << kind;
  }
  return kinds;
}

/// Empties the list without reports. A host that makes objects children while it reads them takes them out of
/// the tree again; for others they are nobody's children yet.
template <typename Helper>
void dropLimitsThatWereRead(Object* parent, LimitList& limits) {
  if constexpr (requires { Helper::detachAllFromVector(parent, limits); })
    Helper::detachAllFromVector(parent, limits);
  else
    limits.clear();
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
  auto const entry = m_limitsAccessMap.find(id);
  if (entry == m_limitsAccessMap.end()) return nullptr;
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
  auto const& defaults = initDefaultLimits();
  for (auto const& id : ids) addLimits(genLimits(defaults, id));
  setupLimitsAccessMap();
}

void TablePropertiesData::setupLimitsForSimUnit(SimulationUnitId const& id) {
  addLimits(genLimits(initDefaultLimits(), id));
}

TablePropertiesData::LimitList TablePropertiesData::genLimits(DefaultLimits const& defaults,
                                                              SimulationUnitId const& id) {
  LimitList limits;
  limits.reserve(defaults.size());
  for (auto const& [type, limit, unit] : defaults)
    limits.push_back(std::make_shared<TablePropertyLimit>(type, id, limit, unit));
  return limits;
}

void TablePropertiesData::setupLimitsAccessMap() {
  // The entries keep their memory until the map is full, so that the limits of known units find room in it.
  for (auto& [id, limits] : m_limitsAccessMap) limits.clear();
  auto const eraseEmptyEntries = [this]() noexcept {
    std::erase_if(m_limitsAccessMap, [](auto const& entry) { return entry.second.empty(); });
  };
  try {
    auto entry = m_limitsAccessMap.end();
    for (auto const& limit : m_limits) {
      // A document may hold empty pointers.
      if (!limit) continue;
      // Limits of one unit lie side by side, mostly: 10,000 units are set up in 11 ms, in 18 ms with a search
      // for each limit (benchmarks/limits).
      if (entry == m_limitsAccessMap.end() || !(entry->first == limit->getSimUnitID())) {
        entry = m_limitsAccessMap.try_emplace(limit->getSimUnitID()).first;
        entry->second.reserve(s_defaults.size());
      }
      entry->second.push_back(limit);
    }
  } catch (...) {
    eraseEmptyEntries();
    throw;
  }
  eraseEmptyEntries();
}

void TablePropertiesData::synchronizeLimits(std::vector<SimulationUnitId> const& ids) {
  UnitMatch const match(ids, m_limitsAccessMap);
  ObjectHelper::removeAllFromVector(this, m_limits);
  try {
    for (auto const* limits : match.known) addLimits(*limits);
  } catch (...) {
    // The limits that could not be adopted again stay in the list, so that the next update finds their
    // values.
    for (auto const* limits : match.known)
      if (!existChild(limits->front())) m_limits.insert(m_limits.end(), limits->begin(), limits->end());
    throw;
  }
  if (!match.unknown.empty()) {
    auto const& defaults = initDefaultLimits();
    for (auto const* id : match.unknown) addLimits(genLimits(defaults, *id));
  }
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
  if (!s_isParentRegisteredForSave) throw std::runtime_error("Parent not registered");
  savePart<Object>(archive, *this);
  archive << static_cast<unsigned int>(s_currentDataVersion);
  saveRecord(archive, noTypeHash, [&] {
    archive << static_cast<unsigned int>(m_limits.size());
    for (auto const& limit : m_limits) savePointer(archive, limit);
  });
}

void TablePropertiesData::load(PersistenceArchiver& archive, unsigned int version) {
  if (!s_isParentRegisteredForLoad) throw std::runtime_error("Parent not registered");
  loadPart<Object>(archive, *this);
  unsigned int dataVersion = 0;
  archive >> dataVersion;
  m_dataVersion = static_cast<std::int32_t>(dataVersion);
  loadLimits(archive);
  if (version < firstVersionWithLastingLimits) {
    m_dataVersion = 0;
    dropLimitsThatWereRead<ObjectHelper>(this, m_limits);
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
  static boost::mutex mutex;
  static DefaultLimits table;
  boost::mutex::scoped_lock const lock(mutex);
  if (table.empty()) {
    DefaultLimits rows;
    rows.reserve(s_defaults.size());
    for (auto const& [type, limit, unit] : s_defaults) rows.emplace_back(type, limit, unit);
    table.swap(rows);
  }
  return table;
}

}  // namespace Kestrel

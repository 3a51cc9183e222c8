#include "Business_TableProperties/TablePropertyLimit.h"

#include <stdexcept>

#include "VantaService_PersistenceArchiver/ClassRegistration.h"
#include "VantaService_PersistenceArchiver/ObjectRecord.h"

namespace Kestrel {

namespace {

constexpr unsigned int classVersion = 500002;
constexpr unsigned int firstVersionWithUnitString = 500002;

}  // namespace

bool TablePropertyLimit::s_force_serialization_registration = registerClass<TablePropertyLimit>();
bool TablePropertyLimit::s_isParentRegisteredForSave = registerParent<Object, TablePropertyLimit>();
bool TablePropertyLimit::s_isParentRegisteredForLoad = s_isParentRegisteredForSave;

void TablePropertyLimit::serialization_register(void* record) {
  fillRegistration<TablePropertyLimit>(record, "TablePropertyLimit", classVersion);
}

TablePropertyLimit::TablePropertyLimit() = default;

TablePropertyLimit::TablePropertyLimit(TablePropertyLimitType type, SimulationUnitId const& id, double limit,
                                       std::string const& unit)
    : m_type(type), m_simUnitID(id), m_limit(limit), m_unitString(unit) {}

TablePropertyLimit::~TablePropertyLimit() = default;

double TablePropertyLimit::getLimit() const { return m_limit; }

void TablePropertyLimit::setLimit(double limit) {
  m_limit = limit;
  emitSigChanged();
}

std::string TablePropertyLimit::getLimitDisplayName() const { return m_maxLimitDisplayName; }

std::string TablePropertyLimit::getUnitString() const { return m_unitString; }

Signals::Connection TablePropertyLimit::connectToSigLimitsChanged(Signals::Slot<void()> const& slot) {
  return connectToSigChanged(slot);
}

double TablePropertyLimit::getMaxLimit() const { return m_limit; }

void TablePropertyLimit::setMaxLimit(double limit) {
  m_limit = limit;
  emitSigChanged();
}

std::string const& TablePropertyLimit::getMaxLimitDisplayName() const { return m_maxLimitDisplayName; }

void TablePropertyLimit::setMaxDisplayName(std::string const& name) { m_maxLimitDisplayName = name; }

SimulationUnitId const& TablePropertyLimit::getSimUnitID() const { return m_simUnitID; }

TablePropertyLimitType TablePropertyLimit::getType() const { return m_type; }

void TablePropertyLimit::save(PersistenceArchiver& archive, unsigned int /*version*/) const {
  if (!s_isParentRegisteredForSave) throw std::runtime_error("Parent not registered");
  savePart<Object>(archive, *this);
  archive << static_cast<unsigned int>(m_type);
  savePart(archive, m_simUnitID);
  archive << m_limit << m_unitString;
}

void TablePropertyLimit::load(PersistenceArchiver& archive, unsigned int version) {
  if (!s_isParentRegisteredForLoad) throw std::runtime_error("Parent not registered");
  loadPart<Object>(archive, *this);
  unsigned int type = 0;
  archive >> type;
  m_type = static_cast<TablePropertyLimitType>(type);
  loadPart(archive, m_simUnitID);
  archive >> m_limit;
  if (version >= firstVersionWithUnitString) archive >> m_unitString;
}

}  // namespace Kestrel

#include "Business_TableProperties/TablePropertyLimit.h"

namespace Kestrel {

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

void TablePropertyLimit::setMaxLimit(double limit) { setLimit(limit); }

std::string const& TablePropertyLimit::getMaxLimitDisplayName() const { return m_maxLimitDisplayName; }

void TablePropertyLimit::setMaxDisplayName(std::string const& name) { m_maxLimitDisplayName = name; }

}  // namespace Kestrel

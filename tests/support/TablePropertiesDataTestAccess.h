#pragma once

#include <cstdint>
#include <vector>

#include "Business_TableProperties/TablePropertiesData.h"

namespace Kestrel {

struct TablePropertiesDataTestAccess {
  static auto& limits(TablePropertiesData& data) { return data.m_limits; }
  static auto& limitsAccessMap(TablePropertiesData& data) { return data.m_limitsAccessMap; }
  static std::int32_t& dataVersion(TablePropertiesData& data) { return data.m_dataVersion; }
  static bool hasAnyLimits(TablePropertiesData const& data) { return data.hasAnyLimits(); }
  static void setupLimits(TablePropertiesData& data, std::vector<SimulationUnitId> const& ids) {
    data.setupLimits(ids);
  }
  static void setupLimitsForSimUnit(TablePropertiesData& data, SimulationUnitId const& id) {
    data.setupLimitsForSimUnit(id);
  }
  static void setupLimitsAccessMap(TablePropertiesData& data) { data.setupLimitsAccessMap(); }
  static void synchronizeLimits(TablePropertiesData& data, std::vector<SimulationUnitId> const& ids) {
    data.synchronizeLimits(ids);
  }
  static void extendLimits(TablePropertiesData& data) { data.extendLimits(); }
  static bool& isParentRegisteredForSave() { return TablePropertiesData::s_isParentRegisteredForSave; }
  static bool& isParentRegisteredForLoad() { return TablePropertiesData::s_isParentRegisteredForLoad; }
  static auto const& initDefaultLimits() { return TablePropertiesData::initDefaultLimits(); }
};

}  // namespace Kestrel

#pragma once

#include <sstream>
#include <string>

#include "Business_TableProperties/TablePropertiesData.h"
#include "StrictHost/ObjectView.h"

namespace Kestrel {

/// The limits that a unit has, found by kind from 0 to 24.
inline std::string describeUnit(TablePropertiesData const& data, SimulationUnitId const& unit) {
  std::ostringstream out;
  for (unsigned int type = 0; type <= 24; ++type)
    if (auto const limit = data.getLimit(unit, TablePropertyLimitType(type)))
      out << type << '=' << limit->getLimit() << limit->getUnitString() << ' ';
  return out.str();
}

/// Kinds of the collection's children in order, a line for each run of one unit.
inline std::string describeOrder(TablePropertiesData const& data) {
  std::ostringstream out;
  SimulationUnitId const units[] = {SimulationUnitId(1), SimulationUnitId(2), SimulationUnitId(3)};
  SimulationUnitId const* previous = nullptr;
  for (auto const& child : StrictHost::ObjectView::childrenOf(data)) {
    auto const& limit = dynamic_cast<TablePropertyLimit const&>(*child);
    for (unsigned int i = 0; i < 3; ++i) {
      if (!(units[i] == limit.getSimUnitID())) continue;
      if (previous != &units[i]) out << (previous != nullptr ? "\n" : "") << "unit " << i + 1 << ':';
      previous = &units[i];
    }
    out << ' ' << static_cast<unsigned int>(limit.getType());
  }
  if (previous != nullptr) out << '\n';
  return out.str();
}

}  // namespace Kestrel

#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "result_tables/tables/Findings.h"

namespace Kestrel::ResultTables {

/// A table of spot welds: two sections, one failed join, values beyond the default limit of 500 N.
class FindingsFixture : public testing::Test {
 protected:
  FindingsFixture() {
    m_limits.updateLimits({m_unit.getID()});
    m_container->valuesAreValid = {{"Spot 1", true}, {"Spot 2", false}};
    m_container->invalidValuesText = "Joining Failed";
    std::vector const types = {TablePropertyLimitType::JoinNormalForce,
                               TablePropertyLimitType::JoinTangentialForce};
    m_container->groups.push_back({"First", false, true, types, {"JoinForceN", "JoinTangentialForce"}, {}});
    m_container->groups.push_back({"Second", false, true, types, {"JoinForceN", "JoinTangentialForce"}, {}});
    m_container->groups[0].subGroups.push_back({"Left", {{"Spot 1", {-500.5, 600}}, {"Spot 2", {900, 900}}}});
    m_container->groups[1].subGroups.push_back({"", {{"Spot 1", {1, 501}}, {"Spot 2", {900, 900}}}});
  }

  TableFindings findings() const { return genFindings(ResultTable(m_unit, m_container, m_limits)); }
  FileFindings file() const { return {"r.json", {findings()}, std::nullopt}; }

  SimulationUnit const m_unit{SimulationUnitId(), "OP20"};
  std::shared_ptr<MaxValueGroupContainer> m_container =
      std::make_shared<MaxValueGroupContainer>(MaxValueGroupContainer::DataType::SpotWelds, m_unit.getID());
  TablePropertiesData m_limits;
};

}  // namespace Kestrel::ResultTables

#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "result_tables/tables/Findings.h"
#include "support/TableTesting.h"

namespace Kestrel::ResultTables {

/// A table of spot welds: two sections, one failed join, values beyond the default limit of 500 N.
class FindingsFixture : public testing::Test {
 protected:
  FindingsFixture() {
    m_limits.collection->updateLimits({m_unit.getID()});
    m_container->valuesAreValid = {{"Spot 1", true}, {"Spot 2", false}};
    m_container->invalidValuesText = "Joining Failed";
    std::vector const types = {TablePropertyLimitType::JoinNormalForce,
                               TablePropertyLimitType::JoinTangentialForce};
    m_container->groups.push_back({"First", false, true, types, {"JoinForceN", "JoinTangentialForce"}, {}});
    m_container->groups.push_back({"Second", false, true, types, {"JoinForceN", "JoinTangentialForce"}, {}});
    m_container->groups[0].subGroups.push_back({"Left", {{"Spot 1", {-500.5, 600}}, {"Spot 2", {900, 900}}}});
    m_container->groups[1].subGroups.push_back({"", {{"Spot 1", {1, 501}}, {"Spot 2", {900, 900}}}});
  }

  TableFindings findings() const { return genFindings(genTable(m_unit, m_container, m_limits)); }
  /// Those of a unit OP20 with one valid spot weld, "Spot 1", with these series, and the default limits.
  static TableFindings findingsOf(std::string const& series) {
    auto const file = readResults("r.json", R"({"format": "simulation-results", "version": 1, "units": [
      {"id": "0b6f6d3e-6c1e-4a57-9b52-0f6f2f1b6a01", "name": "OP20", "visibleSteps": {"first": 0, "last": 0},
       "tools": [{"id": "W1", "kind": "spotWeld", "series": )" +
                                                series + R"(}],
       "steps": [{"joins": [{"guid": "00000000-0000-0000-0000-000000000001", "id": "W1", "name": "Spot 1", "state": 2}]}]}]})");
    ResultLimits limits;
    limits.collection->updateLimits({file.units.front().unit->getID()});
    return genFindings(genResultTables(file, {}, limits).front());
  }
  FileFindings file() const { return {"r.json", {findings()}, std::nullopt}; }

  SimulationUnit const m_unit{SimulationUnitId(), "OP20"};
  std::shared_ptr<MaxValueGroupContainer> m_container =
      std::make_shared<MaxValueGroupContainer>(MaxValueGroupContainer::DataType::SpotWelds, m_unit.getID());
  ResultLimits m_limits;
};

}  // namespace Kestrel::ResultTables

#include <gmock/gmock.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Business_SimulationResult/SimulationResult.h"
#include "Business_SimulationResult/SimulationUnit.h"
#include "Business_Skin/Skin.h"
#include "Business_TableProperties/SimUnitMaxValueOrigins.h"
#include "Business_TableProperties/SimUnitMaxValuesProvider.h"

namespace Kestrel {
namespace {

using DataType = MaxValueGroupContainer::DataType;
using StrictHost::UnitContent;

using Steps = std::map<unsigned int, std::shared_ptr<SimulationStep>>;

/// The origin of the first value of a family's table.
MaxValueOrigin originIn(UnitContent const& content, Steps const& steps, DataType family) {
  SimulationUnit const unit(content);
  auto const result = std::make_shared<SimulationResult>(steps);
  auto const table = SimUnitMaxValuesProvider(unit, result).genGetMaxValuesCollection(family);
  return SimUnitMaxValueOrigins(unit, result, table).getOrigin({0, 0, 0, 0});
}

UnitContent::Series pairs(std::string name, std::vector<std::pair<double, double>> values) {
  return {std::move(name), std::make_shared<StepValues<double>>(std::move(values))};
}

// A host need not tell the companions of values.
TEST(OriginsOnAStrictHost, HaveNoCompanions) {
  UnitContent unit;
  unit.tools = {{3, "C1"}};
  unit.toolForces["C1"] = {pairs("solver.ClampNormalForce", {{1, 0.5}, {-7, 0.75}, {7, 1}})};
  auto const origin = originIn(unit, {}, DataType::Clamps);
  EXPECT_EQ(origin.step, 1U);
  EXPECT_EQ(origin.companion, std::nullopt);
  EXPECT_EQ(origin.count, 3U);
  EXPECT_EQ(origin.nanCount, 0U);
}

TEST(OriginsOnAStrictHost, AreFoundForPilotsWhoseSeriesDoNotOutliveTheVisit) {
  UnitContent unit;
  unit.tools = {{2, "Pilots"}};
  unit.toolForces["Pilots"] = {pairs("solver.PilotForce_P1", {{1, 0}, {3, 0}})};
  EXPECT_EQ(originIn(unit, {}, DataType::Pilots).step, 1U);
}

TEST(OriginsOnAStrictHost, AreTheStepsOfLineJoins) {
  UnitContent unit;
  unit.hasVisibleSteps = true;
  unit.firstVisibleStep = 1;
  unit.lastVisibleStep = 2;
  Steps steps;
  for (unsigned int i = 1; i < 3; ++i) {
    StrictHost::StepContent content;
    content.lineJoins = {
        {EvalLineJoinGUID(1), std::make_shared<SimulationBodyLineJoin>(
                                  "A", "LJ 1", 0U, 7U,
                                  SimulationBodyLineJoin::Skins{
                                      {"skin.SumForceN", std::make_shared<Skin<double>>(-1.0 * i, 0.5)}})}};
    steps[i] = std::make_shared<SimulationStep>(std::move(content));
  }
  auto const origin = originIn(unit, steps, DataType::LineWelds);
  EXPECT_EQ(origin.step, 2U);
  EXPECT_EQ(origin.count, 2U);
}

}  // namespace
}  // namespace Kestrel

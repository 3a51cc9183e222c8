#pragma once

#include <optional>
#include <string>

#include "Business_SimulationResult/SimulationUnit.h"

namespace Kestrel::ResultTables {

/// A tool of a results file, before its unit is known.
struct ToolDraft {
  std::string id;
  ToolForceDataType type{};
  SimulationUnit::ToolForces series;
  std::optional<StepValues<double>> tangentialForce;
};

}  // namespace Kestrel::ResultTables

#pragma once

#include <memory>
#include <vector>

#include "Business_SimulationResult/SimulationStep.h"

namespace Kestrel {

/// The steps of one simulation unit's result, numbered from 0.
class SimulationResult {
 public:
  explicit SimulationResult(std::vector<std::shared_ptr<SimulationStep>> steps);

  /// The step with the number `step`; empty when the step has no data or there is no such step.
  [[nodiscard]] std::shared_ptr<SimulationStep> getStep(unsigned int step) const;

 private:
  std::vector<std::shared_ptr<SimulationStep>> m_steps;
};

}  // namespace Kestrel

#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "Business_SimulationResult/SimulationStep.h"

namespace Kestrel {

/// The steps of one simulation unit's result, numbered from 0.
class SimulationResult {
 public:
  /// Takes the steps in the order of their numbers; null for one without data.
  explicit SimulationResult(std::vector<std::shared_ptr<SimulationStep>> steps);

  /// Steps without data count too; no step has this number or a greater one.
  [[nodiscard]] std::size_t getNumberOfSteps() const { return m_steps.size(); }

  /// The step with the number `step`; empty when the step has no data or there is no such step.
  [[nodiscard]] std::shared_ptr<SimulationStep> getStep(unsigned int step) const;

 private:
  std::vector<std::shared_ptr<SimulationStep>> m_steps;
};

}  // namespace Kestrel

#pragma once

#include <map>
#include <memory>
#include <utility>

#include "Business_SimulationResult/SimulationStep.h"

namespace Kestrel {

class SimulationResult {
 public:
  explicit SimulationResult(std::map<unsigned int, std::shared_ptr<SimulationStep>> steps)
      : m_steps(std::move(steps)) {}
  SimulationResult(SimulationResult const&) = delete;

  std::shared_ptr<SimulationStep> getStep(unsigned int step);

 private:
  std::map<unsigned int, std::shared_ptr<SimulationStep>> m_steps;
};

}  // namespace Kestrel

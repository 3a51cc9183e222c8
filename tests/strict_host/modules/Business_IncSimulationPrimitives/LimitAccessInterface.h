#pragma once

#include <string>

#include "VantaService_Parameterization/Signals.h"

namespace Kestrel {

// The destructor is listed as protected and virtual.
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor)
class LimitAccessInterface {
 protected:
  LimitAccessInterface() = default;
  virtual ~LimitAccessInterface() = default;

 public:
  virtual double getLimit() const = 0;
  virtual void setLimit(double limit) = 0;
  virtual std::string getLimitDisplayName() const = 0;
  virtual std::string getUnitString() const = 0;
  virtual Signals::Connection connectToSigLimitsChanged(Signals::Slot<void()> const& slot) = 0;
};

}  // namespace Kestrel

#pragma once

#include <string>

#include "VantaService_Parameterization/Signals.h"

namespace Kestrel {

/// A limit as the user interface sees it: a value that can be read, set and observed. Owners do not destroy a
/// limit through this interface.
// The destructor has its slot in the binary interface, and nobody but its owner destroys a limit.
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor)
class LimitAccessInterface {
 protected:
  LimitAccessInterface() = default;
  LimitAccessInterface(LimitAccessInterface const&) = default;
  LimitAccessInterface& operator=(LimitAccessInterface const&) = default;
  virtual ~LimitAccessInterface() = default;

 public:
  [[nodiscard]] virtual double getLimit() const = 0;
  virtual void setLimit(double limit) = 0;
  [[nodiscard]] virtual std::string getLimitDisplayName() const = 0;
  [[nodiscard]] virtual std::string getUnitString() const = 0;
  /// Calls `slot` after every change of the limit until the returned connection is disconnected.
  virtual Signals::Connection connectToSigLimitsChanged(Signals::Slot<void()> const& slot) = 0;
};

}  // namespace Kestrel

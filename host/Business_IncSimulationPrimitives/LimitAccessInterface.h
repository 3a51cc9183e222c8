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
  /// For derived classes alone, so that no limit is cut.
  LimitAccessInterface(LimitAccessInterface const&) = default;
  /// As the copy.
  LimitAccessInterface& operator=(LimitAccessInterface const&) = default;
  virtual ~LimitAccessInterface() = default;

 public:
  /// The value, in the unit that `getUnitString` names.
  [[nodiscard]] virtual double getLimit() const = 0;
  /// Stores the value, which may be any double, and tells the connected slots.
  virtual void setLimit(double limit) = 0;
  /// The name that the user sees; empty where there is none.
  [[nodiscard]] virtual std::string getLimitDisplayName() const = 0;
  /// The unit of the value, "N" or "mm" for example.
  [[nodiscard]] virtual std::string getUnitString() const = 0;
  /// Calls `slot` after every change of the limit until the returned connection is disconnected.
  virtual Signals::Connection connectToSigLimitsChanged(Signals::Slot<void()> const& slot) = 0;
};

}  // namespace Kestrel

#pragma once

#include <string>
#include <utility>

#include "VantaService_Identifier/GUIdentifier.h"

namespace Kestrel {

/// Identifier of a suction zone in the evaluation.
class EvalSuctionZoneGUID : public GUIdentifier {
 public:
  EvalSuctionZoneGUID() = default;
  /// The same identifier as one of a suction zone.
  explicit EvalSuctionZoneGUID(GUIdentifier const& id) : GUIdentifier(id) {}
};

/// A suction zone in one simulation step; never changes once it is made.
class EvalSuctionZone {
 public:
  /// A record of the zone that is shown as `presentationName`.
  EvalSuctionZone(std::string presentationName, bool active)
      : m_presentationName(std::move(presentationName)), m_active(active) {}

  /// The name that the user sees.
  [[nodiscard]] std::string const& getSuctionZonePresentationName() const { return m_presentationName; }
  /// Whether the zone holds the part in this step.
  [[nodiscard]] bool getActive() const { return m_active; }

 private:
  std::string m_presentationName;
  bool m_active;
};

}  // namespace Kestrel

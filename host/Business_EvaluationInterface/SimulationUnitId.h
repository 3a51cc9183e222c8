#pragma once

#include "VantaService_Identifier/GUIdentifier.h"

namespace Kestrel {

class ArchiveAccess;
class PersistenceArchiver;

/// Identifier of a simulation unit; ordered, compared and printed as the `GUIdentifier` that it is.
class SimulationUnitId : public GUIdentifier {
 public:
  SimulationUnitId() = default;
  /// The same identifier as one of a simulation unit.
  explicit SimulationUnitId(GUIdentifier const& id) : GUIdentifier(id) {}

  /// Fills `record` (a `BaseClassRegister`) with the entry under which the archive stores the identifier.
  static void serialization_register(void* record);

 private:
  friend class ArchiveAccess;

  /// The sixteen bytes, in order.
  void save(PersistenceArchiver& archive, unsigned int version) const;
  void load(PersistenceArchiver& archive, unsigned int version);
};

}  // namespace Kestrel

// Doxygen finds no scope for specialisations of others' templates.
/// \cond
template <>
struct std::hash<Kestrel::SimulationUnitId> : std::hash<Kestrel::GUIdentifier> {};
/// \endcond

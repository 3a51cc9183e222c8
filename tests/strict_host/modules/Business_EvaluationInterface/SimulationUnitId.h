#pragma once

#include "VantaService_Identifier/GUIdentifier.h"

namespace Kestrel {

class ArchiveAccess;
class PersistenceArchiver;

class SimulationUnitId : public GUIdentifier {
 public:
  SimulationUnitId() : GUIdentifier(0) {}
  SimulationUnitId(SimulationUnitId const&) = default;
  SimulationUnitId(SimulationUnitId&&) = default;
  explicit SimulationUnitId(unsigned int number) : GUIdentifier(number) {}

  static void serialization_register(void* record);

 private:
  friend class ArchiveAccess;

  void save(PersistenceArchiver& archive, unsigned int version) const;
  void load(PersistenceArchiver& archive, unsigned int version);
};

}  // namespace Kestrel

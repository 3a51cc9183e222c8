#include "Business_EvaluationInterface/SimulationUnitId.h"

#include "VantaService_PersistenceArchiver/ClassRegistration.h"

namespace Kestrel {

namespace {

bool const s_isIdRegistered = registerClass<SimulationUnitId>();

}  // namespace

void SimulationUnitId::serialization_register(void* record) {
  fillRegistration<SimulationUnitId>(record, "SimulationUnitId", PersistenceArchiver::getCurrentVersion(0));
}

void SimulationUnitId::save(PersistenceArchiver& archive, unsigned int /*version*/) const {
  archive << m_number;
}

void SimulationUnitId::load(PersistenceArchiver& archive, unsigned int /*version*/) { archive >> m_number; }

}  // namespace Kestrel

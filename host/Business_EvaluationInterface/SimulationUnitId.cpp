#include "Business_EvaluationInterface/SimulationUnitId.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "VantaService_PersistenceArchiver/ArchiveTexts.h"
#include "VantaService_PersistenceArchiver/ClassRegistration.h"

namespace Kestrel {

namespace {

bool const s_isRegistered = registerClass<SimulationUnitId>();

}  // namespace

void SimulationUnitId::serialization_register(void* record) {
  fillRegistration<SimulationUnitId>(record, "SimulationUnitId", BaseClassRegister::programVersion);
}

void SimulationUnitId::save(PersistenceArchiver& archive, unsigned int /*version*/) const {
  auto const& uuid = getUuid();
  archive.write_bytes({reinterpret_cast<char const*>(uuid.begin()), uuid.size()});
}

void SimulationUnitId::load(PersistenceArchiver& archive, unsigned int /*version*/) {
  auto const bytes = archive.read_bytes();
  boost::uuids::uuid uuid;
  if (bytes.size() != uuid.size())
    archive.handle_currupted_object(
        archiveText("expected an identifier of 16 bytes, found %1", bytes.size()));
  std::copy(bytes.begin(), bytes.end(), uuid.begin());
  *this = SimulationUnitId(GUIdentifier(uuid));
}

}  // namespace Kestrel

#include "Persistence_DaoAdapter/SolverTableDataKeys.h"

namespace Kestrel {

// The keys are local statics because other libraries ask for them while they are being loaded.
#define KESTREL_DEFINE_KEY(name)                              \
  std::string const& SolverTableDataKeys::getNameOf##name() { \
    static std::string const key = #name;                     \
    return key;                                               \
  }

KESTREL_DEFINE_KEY(ClampNormalForce)
KESTREL_DEFINE_KEY(ClampClosingForce)
KESTREL_DEFINE_KEY(ClampSupportingForce)
KESTREL_DEFINE_KEY(ClampTangentialForce)
KESTREL_DEFINE_KEY(ClampNormalDisplacement)
KESTREL_DEFINE_KEY(ClampTeachingDistanceX)
KESTREL_DEFINE_KEY(ClampTeachingDistanceY)
KESTREL_DEFINE_KEY(ClampTeachingDistanceZ)
KESTREL_DEFINE_KEY(ClampTotalVariation)
KESTREL_DEFINE_KEY(ToolForceInWorkingDir)
KESTREL_DEFINE_KEY(PilotForce)
KESTREL_DEFINE_KEY(JoiningTongNormalForce)
KESTREL_DEFINE_KEY(JoiningTongClosingForce)
KESTREL_DEFINE_KEY(JoiningTongSupportingForce)
KESTREL_DEFINE_KEY(JoiningTongDistance)
KESTREL_DEFINE_KEY(JoiningTongGap)
KESTREL_DEFINE_KEY(JoiningTeachingX)
KESTREL_DEFINE_KEY(JoiningTeachingY)
KESTREL_DEFINE_KEY(JoiningTeachingZ)
KESTREL_DEFINE_KEY(JoiningTeachingTotalVariation)
KESTREL_DEFINE_KEY(JoinForceN)
KESTREL_DEFINE_KEY(JoinTangentialForce)
KESTREL_DEFINE_KEY(SuctionZoneForceX)
KESTREL_DEFINE_KEY(SuctionZoneForceY)
KESTREL_DEFINE_KEY(SuctionZoneForceZ)
KESTREL_DEFINE_KEY(SuctionZoneAbsForce)
KESTREL_DEFINE_KEY(SuctionDistance)

#undef KESTREL_DEFINE_KEY

}  // namespace Kestrel

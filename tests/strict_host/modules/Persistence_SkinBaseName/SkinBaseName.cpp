#include "Persistence_SkinBaseName/SkinBaseName.h"

namespace Kestrel {

std::string const SkinBaseName::LINE_JOIN_DIST_TO_INPUT = "skin.DistToInput";
std::string const SkinBaseName::LINE_JOIN_GAP = "skin.Gap";
std::string const SkinBaseName::LINE_JOIN_SUMFORCE_N = "skin.SumForceN";
std::string const SkinBaseName::LINE_JOIN_SUMFORCE_T = "skin.SumForceT";

}  // namespace Kestrel

#include "Persistence_SkinBaseName/SkinBaseName.h"

namespace Kestrel {

std::string const SkinBaseName::LINE_JOIN_SUMFORCE_N = "LineJoinSumForceN";
std::string const SkinBaseName::LINE_JOIN_SUMFORCE_T = "LineJoinSumForceT";
std::string const SkinBaseName::LINE_JOIN_DIST_TO_INPUT = "LineJoinDistToInput";
std::string const SkinBaseName::LINE_JOIN_GAP = "LineJoinGap";

}  // namespace Kestrel

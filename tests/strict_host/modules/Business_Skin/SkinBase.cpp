#include "Business_Skin/SkinBase.h"

namespace Kestrel {

SkinBase::~SkinBase() = default;

}  // namespace Kestrel

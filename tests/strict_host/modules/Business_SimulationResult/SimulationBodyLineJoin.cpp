#include "Business_SimulationResult/SimulationBodyLineJoin.h"

namespace Kestrel {

std::shared_ptr<SkinBase> SimulationBodyLineJoin::getSkin(SkinKey const& key) {
  for (auto const& [name, skin] : m_skins)
    if (key == SkinKey(name, 0, "", "")) return skin;
  return nullptr;
}

}  // namespace Kestrel

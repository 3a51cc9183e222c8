#pragma once

#include <vector>

#include "VantaService_Parameterization/Object.h"

namespace Kestrel {

struct ObjectTestAccess {
  static void setChildId(Object& object, int id) { object.m_childId = id; }
  static std::vector<int> getUniqueChildIds(Object const& parent, std::size_t count) {
    std::vector<int> ids;
    parent.getUniqueChildIds(count, ids);
    return ids;
  }
};

}  // namespace Kestrel

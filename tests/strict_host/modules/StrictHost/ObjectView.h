#pragma once

#include <memory>
#include <string>
#include <vector>

#include "VantaService_Parameterization/Object.h"

namespace Kestrel::StrictHost {

/// The tree as the application sees it.
struct ObjectView {
  static std::string const& nameOf(Object const& object) { return object.m_name; }
  static int childIdOf(Object const& object) { return object.m_childId; }
  static Object const* parentOf(Object const& object) { return object.m_parent; }
  static std::vector<std::shared_ptr<Object>> const& childrenOf(Object const& object) {
    return object.m_children;
  }
};

}  // namespace Kestrel::StrictHost

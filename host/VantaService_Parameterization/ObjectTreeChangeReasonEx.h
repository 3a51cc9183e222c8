#pragma once

#include <cstdint>

namespace Kestrel {

/// What happened to the object tree. The numbers are fixed; observers outside this program know them.
enum class ObjectTreeChangeReasonEx : std::uint32_t {
  ChildrenAdded = 4,
  ChildRemoved = 5,
};

}  // namespace Kestrel

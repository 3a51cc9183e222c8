#pragma once

#include <cstdint>

namespace Kestrel {

enum class ObjectTreeChangeReasonEx : std::uint32_t {};

}  // namespace Kestrel

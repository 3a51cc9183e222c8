#pragma once

#include <cstdint>

namespace Kestrel {

enum class ToolForceDataType : std::uint32_t {};

}  // namespace Kestrel

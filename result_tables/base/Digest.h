#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace Kestrel::ResultTables {

using Sha256 = std::array<std::uint8_t, 32>;

/// The SHA-256 digest of some bytes.
[[nodiscard]] Sha256 sha256Of(std::string_view bytes);

/// Its 64 hexadecimal digits, in lower case.
[[nodiscard]] std::string toHexadecimal(Sha256 const& digest);

}  // namespace Kestrel::ResultTables

#include "result_tables/base/Digest.h"

#include <fmt/format.h>
#include <nettle/sha2.h>

namespace Kestrel::ResultTables {

Sha256 sha256Of(std::string_view bytes) {
  sha256_ctx context;
  sha256_init(&context);
  sha256_update(&context, bytes.size(), reinterpret_cast<std::uint8_t const*>(bytes.data()));
  Sha256 digest{};
  sha256_digest(&context, digest.size(), digest.data());
  return digest;
}

std::string toHexadecimal(Sha256 const& digest) {
  std::string text;
  for (auto const byte : digest) text += fmt::format("{:02x}", byte);
  return text;
}

}  // namespace Kestrel::ResultTables

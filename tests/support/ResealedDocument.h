#pragma once

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <boost/endian/conversion.hpp>
#include <cstddef>
#include <string>

namespace Kestrel {

/// The document with its length and its checksum made right again, so that damage gets past them.
inline std::string genResealedDocument(std::string document) {
  constexpr std::size_t lengthPosition = 12;
  constexpr std::size_t headerSize = 20;
  constexpr std::size_t checksumSize = 8;
  if (document.size() < headerSize + checksumSize) return document;
  auto* const bytes = reinterpret_cast<unsigned char*>(document.data());
  auto const contentSize = document.size() - checksumSize;
  boost::endian::store_little_u32(bytes + lengthPosition, static_cast<unsigned int>(document.size()));
  boost::endian::store_little_u64(bytes + contentSize, XXH3_64bits(bytes, contentSize));
  return document;
}

}  // namespace Kestrel

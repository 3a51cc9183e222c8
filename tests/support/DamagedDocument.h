#pragma once

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <boost/endian/conversion.hpp>
#include <cstddef>
#include <string>

#include "VantaService_PersistenceArchiver/ArchiveException.h"
#include "VantaService_PersistenceArchiver/Document.h"

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

/// The document with some bits of one byte the other way round.
inline std::string genFlippedDocument(std::string document, std::size_t position, int bits) {
  document[position] = static_cast<char>(static_cast<unsigned char>(document[position]) ^ bits);
  return document;
}

/// What the archive says of a document that does not hold a `T`; "none" when it does.
template <typename T>
std::string damageOf(std::string const& document) {
  try {
    static_cast<void>(loadDocument<T>(document));
  } catch (ArchiveException const& error) {
    return error.what();
  }
  return "none";
}

}  // namespace Kestrel

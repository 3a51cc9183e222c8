#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// The layout of a document (docs/limits-document.md). What is on disk is frozen.
namespace Kestrel::ArchiveFormat {

inline constexpr std::string_view magic = "\x89KOA\r\n\x1a\n";
inline constexpr std::uint32_t version = 1;
inline constexpr unsigned int lengthPosition = 12;
inline constexpr unsigned int tablesPosition = 16;
inline constexpr unsigned int headerSize = 20;
inline constexpr unsigned int checksumSize = 8;

/// Of a document, in bytes: an address takes 31 bits.
inline constexpr std::size_t greatestSize = 0x7FFFFFFF;
/// Of records in records.
inline constexpr std::size_t greatestDepth = 256;

inline constexpr unsigned int wordSize = 4;
inline constexpr std::uint32_t nullWord = 0;
inline constexpr std::uint32_t referenceBit = 0x80000000;
/// An object takes at least its header, and the number of its class.
inline constexpr unsigned int smallestObject = 5;

[[nodiscard]] std::uint64_t checksumOf(std::string_view bytes);

}  // namespace Kestrel::ArchiveFormat

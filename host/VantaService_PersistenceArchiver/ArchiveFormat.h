#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// The layout of a document (docs/limits-document.md). What is on disk is frozen.
namespace Kestrel::ArchiveFormat {

/// The bytes that every document begins with.
inline constexpr std::string_view magic = "\x89KOA\r\n\x1a\n";
inline constexpr std::uint32_t version = 1;         ///< of this format
inline constexpr unsigned int lengthPosition = 12;  ///< of the word that says the length of the document
inline constexpr unsigned int tablesPosition = 16;  ///< of the word that says where the tables begin
inline constexpr unsigned int headerSize = 20;      ///< the records begin behind it
inline constexpr unsigned int checksumSize = 8;     ///< at the end of the document

/// Of a document, in bytes: an address takes 31 bits.
inline constexpr std::size_t greatestSize = 0x7FFFFFFF;
/// Of records in records.
inline constexpr std::size_t greatestDepth = 256;

inline constexpr unsigned int wordSize = 4;   ///< in bytes
inline constexpr std::uint32_t nullWord = 0;  ///< in place of a record's length: a null pointer
/// In place of a record's length, with the address of another record in the other bits: a reference to it.
inline constexpr std::uint32_t referenceBit = 0x80000000;
/// An object takes at least its header, and the number of its class.
inline constexpr unsigned int smallestObject = 5;

/// XXH3 of the bytes, 64 bits, seed 0. Linear.
[[nodiscard]] std::uint64_t checksumOf(std::string_view bytes);

}  // namespace Kestrel::ArchiveFormat

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Kestrel::ResultTables {

/// The double nearest to the number that `text` is from its first to its last character: decimal point
/// whatever the locale, an optional sign, an exponent after e or E, "NaN", "Inf", "Infinity" in any case; and
/// as Fortran prints them, an exponent after d or D, or of three digits without a letter ("1.234-105"). Empty
/// for anything else, and for a number beyond the range of doubles.
[[nodiscard]] std::optional<double> parseNumber(std::string_view text);

/// `text` without blanks (spaces, tabs) and a carriage return at its ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// Throws the `Error` "SOURCE: line LINE, byte BYTE: expected UTF-8 text, found byte 0xFC" for the first byte
/// of `text` that is part of no character; BYTE counts from 1 in its line.
void refuseWhatIsNotUtf8(std::string_view source, std::string_view text);

/// Throws the `Error` "SOURCE: line LINE: expected EXPECTED, found FOUND".
[[noreturn]] void failAtLine(std::string_view source, std::size_t line, std::string_view expected,
                             std::string_view found);

}  // namespace Kestrel::ResultTables

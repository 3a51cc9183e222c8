#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Kestrel::ResultTables {

/// The digits and letters of ASCII, whatever the locale.
[[nodiscard]] constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }
[[nodiscard]] constexpr bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

/// What stands between words.
[[nodiscard]] constexpr bool isBlank(char c) { return c == ' ' || c == '\t'; }

/// The double nearest to the number that `text` is from its first to its last character: decimal point
/// whatever the locale, an optional sign, an exponent after e or E, "NaN", "Inf", "Infinity" in any case; and
/// as Fortran prints them, an exponent after d or D, or of three digits without a letter ("1.234-105"). Empty
/// for anything else, and for a number beyond the range of doubles.
[[nodiscard]] std::optional<double> parseNumber(std::string_view text);

/// `text` without blanks (spaces, tabs) and a carriage return at its ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// The next run of characters other than blanks, taken off the front of `rest`; empty at the end.
[[nodiscard]] std::string_view takeWord(std::string_view& rest);

/// The same, up to the sign of the next number where Fortran's columns touch ("-1.5E+00-2.5E+00"). Only a
/// number with a decimal point, and none of whole digits such as a date, ends at a sign.
[[nodiscard]] std::string_view takeNumberText(std::string_view& rest);

/// `text` without blanks at its ends and with one for each run of blanks in it.
[[nodiscard]] std::string withSingleBlanks(std::string_view text);

/// Throws the `Error` "SOURCE: line LINE, byte BYTE: expected UTF-8 text, found byte 0xFC" for the first byte
/// of `text` that is part of no character; BYTE counts from 1 in its line.
void refuseWhatIsNotUtf8(std::string_view source, std::string_view text);

/// Throws the `Error` "SOURCE: line LINE: expected EXPECTED, found FOUND".
[[noreturn]] void failAtLine(std::string_view source, std::size_t line, std::string_view expected,
                             std::string_view found);

}  // namespace Kestrel::ResultTables

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Kestrel::ResultTables {

/// `text` as valid UTF-8: every byte that is part of no character becomes U+FFFD.
[[nodiscard]] std::string toValidUtf8(std::string_view text);

/// Appends the same to `out`.
void appendValidUtf8(std::string& out, std::string_view text);

/// The bytes of the character at the beginning of `text`; empty where the first byte is part of none.
[[nodiscard]] std::string_view firstCharacter(std::string_view text);

/// Where the first byte of `text` stands that is part of no character of UTF-8; nothing where all is UTF-8.
/// Text in ASCII takes hardly longer than reading it from memory.
[[nodiscard]] std::optional<std::size_t> findInvalidUtf8(std::string_view text);

/// `text` for a terminal, a pager or an XML document: valid UTF-8 in which control characters are shown by
/// their pictures, so that a name can neither break a line nor send a command to the terminal; other
/// characters that break or turn a line, and those that Unicode keeps from being characters, become U+FFFD.
[[nodiscard]] std::string toPrintable(std::string_view text);

/// Number of terminal columns that printable text takes; wide characters take two, combining marks none.
[[nodiscard]] std::size_t displayWidth(std::string_view printable);

/// `text` for a message: printable and cut after 60 characters.
[[nodiscard]] std::string brief(std::string_view text);

/// The same in quotation marks.
[[nodiscard]] std::string quote(std::string_view text);

/// A byte that is part of no character, for a message: "byte 0xFC".
[[nodiscard]] std::string describeByte(char byte);

/// The shortest decimal form that reads back to the same double; "nan", "inf", "-inf". Independent of the
/// locale.
[[nodiscard]] std::string shortestForm(double value);

/// Appends the same to `out`, with `decimalMark` for the point.
void appendShortestForm(std::string& out, double value, char decimalMark = '.');

/// Appends the decimal digits of `value` to `out`.
void appendInteger(std::string& out, std::uint64_t value);

/// `value` with up to `digits` significant digits, for people: no zeros at the end, an exponent where the
/// number is long without; "nan", "inf", "-inf". Independent of the locale. `decimalMark` stands for the
/// point.
[[nodiscard]] std::string formatNumber(double value, int digits, char decimalMark = '.');

/// The same with a unit behind, which is made printable: "-12.5 N"; without one, the number alone.
[[nodiscard]] std::string withUnit(double value, std::string_view unit, int digits, char decimalMark = '.');

/// The double nearest to the number at the beginning of `text`, as the C library reads it, with a decimal
/// point in every locale; infinity where there is no such double, 0 where there is no number.
[[nodiscard]] double nearestDouble(std::string const& text);

/// The number that `text` is from its first character to its last, as the C library reads it: decimal or
/// hexadecimal, with a sign or without, "inf", "nan", the nearest double where there is no such one.
/// Independent of the locale. Nothing for any other text, and for one that begins with a blank.
[[nodiscard]] std::optional<double> numberFromText(std::string const& text);

}  // namespace Kestrel::ResultTables

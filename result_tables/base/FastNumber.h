#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <system_error>

namespace Kestrel::ResultTables {

/// Eight characters of a text as a word, the first one in the lowest byte.
[[nodiscard]] inline std::uint64_t eightCharacters(char const* at) {
  static_assert(std::endian::native == std::endian::little, "the first character is the lowest byte");
  std::uint64_t word = 0;
  std::memcpy(&word, at, sizeof word);
  return word;
}

/// How many decimal digits such a word begins with.
[[nodiscard]] inline unsigned countLeadingDigits(std::uint64_t characters) {
  constexpr std::uint64_t inEach = 0x0101010101010101;
  auto const digits = characters ^ ('0' * inEach);
  // A byte above 9 gets its highest bit; what it carries spoils only bytes behind it.
  auto const others = ((digits + (0x7F - 9) * inEach) | digits) & (0x80 * inEach);
  return others == 0 ? 8U : static_cast<unsigned>(std::countr_zero(others)) / 8;
}

/// The decimal digits at the beginning of eight characters.
struct LeadingDigits {
  unsigned count;        ///< 0 to 8
  std::uint64_t number;  ///< that they make; 0 for none
};

/// Looks at all eight characters at once: three multiplications join the digits.
[[nodiscard]] inline LeadingDigits leadingDigits(char const* at) {
  auto word = eightCharacters(at);
  auto const count = countLeadingDigits(word);
  if (count == 0) return {0, 0};
  word = (word ^ 0x3030303030303030) << (8 * (8 - count));  // zeros come before the digits
  word = word * 10 + (word >> 8);
  constexpr std::uint64_t everyFourth = 0x000000FF000000FF;
  word = (word & everyFourth) * (100 + (1000000ULL << 32)) +
         ((word >> 16) & everyFourth) * (1 + (10000ULL << 32));
  return {count, word >> 32};
}

namespace Detail {

constexpr int s_mostDigits = 300;
constexpr int s_greatestExponent = 300;

/// Reads a run of digits, joins them to `mantissa`, which wraps behind the 19th, and adds their number to
/// `count`. Returns where the run ends; null less than eight characters before `end`, and for too many.
[[nodiscard]] inline char const* readDigits(char const* at, char const* end, std::uint64_t& mantissa,
                                            int& count) {
  static constexpr std::array<std::uint64_t, 9> powersOfTen = {1,      10,      100,      1000,     10000,
                                                               100000, 1000000, 10000000, 100000000};
  for (;;) {
    if (end - at < 8 || count > s_mostDigits) return nullptr;
    auto const digits = leadingDigits(at);
    mantissa = mantissa * powersOfTen[digits.count] + digits.number;
    count += static_cast<int>(digits.count);
    at += digits.count;
    if (digits.count < 8) return at;
  }
}

/// Passes over a run of digits and adds their number to `count`. Returns as `readDigits`.
[[nodiscard]] inline char const* passDigits(char const* at, char const* end, int& count) {
  for (;;) {
    if (end - at < 8 || count > s_mostDigits) return nullptr;
    auto const digits = countLeadingDigits(eightCharacters(at));
    count += static_cast<int>(digits);
    at += digits;
    if (digits < 8) return at;
  }
}

/// Reads `[+|-]digits`. Returns where they end; null close to `end`, for none, and for too great an exponent.
[[nodiscard]] inline char const* readExponent(char const* at, char const* end, int& exponent) {
  bool const isNegative = at != end && *at == '-';
  if (isNegative || (at != end && *at == '+')) ++at;
  std::uint64_t number = 0;
  int count = 0;
  at = readDigits(at, end, number, count);
  if (at == nullptr || count == 0 || count > 3 || number > s_greatestExponent) return nullptr;
  exponent =
      static_cast<int>(isNegative ? -static_cast<std::int64_t>(number) : static_cast<std::int64_t>(number));
  return at;
}

/// The nearest double by the standard's own way. False beyond the range of doubles, or nearly so.
template <char Point>
[[nodiscard]] bool convertSlowly(char const* begin, char const* end, double& value) {
  if constexpr (Point == '.') {
    return std::from_chars(begin, end, value).ec == std::errc();
  } else {
    std::array<char, 2 * s_mostDigits + 32> text;
    auto const* const copied = std::replace_copy(begin, end, text.begin(), Point, '.');
    return std::from_chars(text.data(), copied, value).ec == std::errc();
  }
}

}  // namespace Detail

/// Reads `[-]digits[.digits][e[+|-]digits]` as JSON writes numbers, with `Point` for the point, and gives the
/// nearest double, -0.0 included. Returns where the number ends, which the caller checks for what may follow;
/// null, `value` being anything, where there is none, and where it is left to a slower reader: within some
/// characters of `end`, with more than 300 digits, and beyond the range of doubles or exponents of 300.
///
/// Digits that make an integer of 53 bits, with a power of ten of at most 22, are the quotient or the product
/// of two exact doubles, and so the nearest double themselves; std::from_chars does all others.
template <char Point = '.'>
[[nodiscard]] inline char const* readDecimal(char const* at, char const* end, double& value) {
  static constexpr std::array powersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                             1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                             1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  constexpr std::uint64_t greatestExactInteger = std::uint64_t{1} << 53;
  constexpr int greatestExactPower = static_cast<int>(powersOfTen.size()) - 1;

  auto const* const begin = at;
  bool const isNegative = at != end && *at == '-';
  if (isNegative) ++at;
  std::uint64_t mantissa = 0;
  int count = 0;
  auto const* const digits = at;
  at = Detail::readDigits(at, end, mantissa, count);
  if (at == nullptr || count == 0 || (*digits == '0' && count > 1)) return nullptr;
  int power = 0;
  if (*at == Point) {
    int const whole = count;
    at = Detail::readDigits(at + 1, end, mantissa, count);
    if (at == nullptr || count == whole) return nullptr;
    power = whole - count;
  }
  if (*at == 'e' || *at == 'E') {
    int exponent = 0;
    at = Detail::readExponent(at + 1, end, exponent);
    if (at == nullptr) return nullptr;
    power += exponent;
  }
  if (count <= 19 && mantissa <= greatestExactInteger && std::abs(power) <= greatestExactPower) {
    auto const integer = static_cast<double>(mantissa);
    auto const scale = powersOfTen[static_cast<std::size_t>(std::abs(power))];
    auto const number = power < 0 ? integer / scale : integer * scale;
    value = isNegative ? -number : number;
    return at;
  }
  return Detail::convertSlowly<Point>(begin, at, value) ? at : nullptr;
}

/// Passes over a number that `readDecimal` reads whose value nobody needs. One that is nearly beyond the
/// range of doubles it leaves as well. Returns where it ends; null as above.
[[nodiscard]] inline char const* passDecimal(char const* at, char const* end) {
  if (at != end && *at == '-') ++at;
  int count = 0;
  auto const* const digits = at;
  at = Detail::passDigits(at, end, count);
  if (at == nullptr || count == 0 || (*digits == '0' && count > 1)) return nullptr;
  int const whole = count;
  if (*at == '.') {
    at = Detail::passDigits(at + 1, end, count);
    if (at == nullptr || count == whole) return nullptr;
  }
  if (*at == 'e' || *at == 'E') {
    int exponent = 0;
    at = Detail::readExponent(at + 1, end, exponent);
    if (at == nullptr || whole + exponent > Detail::s_greatestExponent) return nullptr;
  }
  return at;
}

}  // namespace Kestrel::ResultTables

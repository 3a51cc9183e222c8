#include "result_tables/base/Text.h"

#include <fmt/compile.h>
#include <fmt/format.h>
#include <locale.h>
#include <utf8proc.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>

#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

namespace {

constexpr utf8proc_int32_t s_replacement = 0xFFFD;

/// What `strtod` finds at the beginning of `text`; `end` is where it stops.
double readDouble(char const* text, char** end) {
  static locale_t const c = ::newlocale(LC_ALL_MASK, "C", nullptr);
  return ::strtod_l(text, end, c);
}

/// Bytes of the character at the beginning of `text`; 0 where the first byte is part of none.
std::size_t characterLength(std::string_view text) {
  utf8proc_int32_t codePoint = 0;
  auto const length = utf8proc_iterate(reinterpret_cast<utf8proc_uint8_t const*>(text.data()),
                                       static_cast<utf8proc_ssize_t>(text.size()), &codePoint);
  return length > 0 ? static_cast<std::size_t>(length) : 0;
}

bool isAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }

/// Whether all of `Size` bytes are ASCII; compiles to vector instructions.
template <std::size_t Size>
bool areAscii(char const* bytes) {
  unsigned char all = 0;
  for (std::size_t i = 0; i < Size; ++i)
    all = static_cast<unsigned char>(all | static_cast<unsigned char>(bytes[i]));
  return isAscii(static_cast<char>(all));
}

/// Bytes at the beginning of `text` that are ASCII.
std::size_t runOfAscii(std::string_view text) {
  constexpr std::size_t block = 64;
  std::size_t length = 0;
  while (text.size() - length >= block && areAscii<block>(text.data() + length)) length += block;
  while (length < text.size() && isAscii(text[length])) ++length;
  return length;
}

/// Whether every byte is a character that takes one column and disturbs no line.
bool isPrintableAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

/// Code points that Unicode keeps from being characters for ever. Two of them, U+FFFE and U+FFFF, XML
/// forbids.
bool isNoncharacter(utf8proc_int32_t codePoint) {
  return (codePoint & 0xFFFE) == 0xFFFE || (codePoint >= 0xFDD0 && codePoint <= 0xFDEF);
}

/// Calls `visit(codePoint, bytes)` with every character; a byte that is part of none is U+FFFD.
template <typename Visitor>
void forEachCharacter(std::string_view text, Visitor visit) {
  auto const* bytes = reinterpret_cast<utf8proc_uint8_t const*>(text.data());
  std::size_t position = 0;
  while (position < text.size()) {
    utf8proc_int32_t codePoint = 0;
    auto const left = static_cast<utf8proc_ssize_t>(text.size() - position);
    auto const length = utf8proc_iterate(bytes + position, left, &codePoint);
    if (length <= 0) {
      visit(s_replacement, std::string_view("\xEF\xBF\xBD"));
      ++position;
    } else {
      visit(codePoint, text.substr(position, static_cast<std::size_t>(length)));
      position += static_cast<std::size_t>(length);
    }
  }
}

void appendPicture(std::string& out, utf8proc_int32_t control) {
  if (control < 0x20 || control == 0x7F) {
    auto const picture = control == 0x7F ? 0x2421 : 0x2400 + control;
    utf8proc_uint8_t encoded[4];
    auto const length = utf8proc_encode_char(picture, encoded);
    out.append(reinterpret_cast<char const*>(encoded), static_cast<std::size_t>(length));
  } else {
    out += "\xEF\xBF\xBD";
  }
}

/// Control characters, line and paragraph separators, the marks that turn the direction of a line, and
/// noncharacters.
bool disturbsALine(utf8proc_int32_t codePoint) {
  switch (utf8proc_category(codePoint)) {
    case UTF8PROC_CATEGORY_CC:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
      return true;
    default:
      return (codePoint >= 0x202A && codePoint <= 0x202E) || (codePoint >= 0x2066 && codePoint <= 0x2069) ||
             isNoncharacter(codePoint);
  }
}

}  // namespace

std::string toValidUtf8(std::string_view text) {
  std::string valid;
  valid.reserve(text.size());
  appendValidUtf8(valid, text);
  return valid;
}

void appendValidUtf8(std::string& out, std::string_view text) {
  if (!findInvalidUtf8(text)) {
    out += text;
  } else {
    forEachCharacter(text, [&](utf8proc_int32_t, std::string_view bytes) { out += bytes; });
  }
}

std::string_view firstCharacter(std::string_view text) { return text.substr(0, characterLength(text)); }

std::optional<std::size_t> findInvalidUtf8(std::string_view text) {
  std::size_t position = 0;
  for (;;) {
    position += runOfAscii(text.substr(position));
    if (position == text.size()) return std::nullopt;
    auto const length = characterLength(text.substr(position));
    if (length == 0) return position;
    position += length;
  }
}

std::string toPrintable(std::string_view text) {
  if (isPrintableAscii(text)) return std::string(text);
  std::string printable;
  printable.reserve(text.size());
  forEachCharacter(text, [&](utf8proc_int32_t codePoint, std::string_view bytes) {
    if (disturbsALine(codePoint)) {
      appendPicture(printable, codePoint);
    } else {
      printable += bytes;
    }
  });
  return printable;
}

std::size_t displayWidth(std::string_view printable) {
  if (isPrintableAscii(printable)) return printable.size();
  std::size_t width = 0;
  forEachCharacter(printable, [&](utf8proc_int32_t codePoint, std::string_view) {
    width += static_cast<std::size_t>(utf8proc_charwidth(codePoint));
  });
  return width;
}

std::string brief(std::string_view text) {
  constexpr std::size_t longest = 60;
  std::string out;
  std::size_t characters = 0;
  forEachCharacter(toPrintable(text), [&](utf8proc_int32_t, std::string_view bytes) {
    if (characters++ < longest) out += bytes;
  });
  return characters > longest ? out + "…" : out;
}

std::string quote(std::string_view text) { return '"' + brief(text) + '"'; }

std::string describeByte(char byte) {
  return tr("byte {}", fmt::format("0x{:02X}", static_cast<unsigned char>(byte)));
}

std::string formatNumber(double value, int digits, char decimalMark) {
  auto number = fmt::format(FMT_COMPILE("{:.{}g}"), value, digits);
  if (decimalMark != '.') std::replace(number.begin(), number.end(), '.', decimalMark);
  return number;
}

std::string withUnit(double value, std::string_view unit, int digits, char decimalMark) {
  auto const number = formatNumber(value, digits, decimalMark);
  return unit.empty() ? number : number + ' ' + toPrintable(unit);
}

std::string shortestForm(double value) {
  std::string form;
  appendShortestForm(form, value);
  return form;
}

void appendShortestForm(std::string& out, double value, char decimalMark) {
  constexpr std::size_t longest = 24;  // "-2.2250738585072014e-308"
  char form[longest];
  auto* const end =
      std::isnan(value) ? std::copy_n("nan", 3, form) : fmt::format_to(form, FMT_COMPILE("{}"), value);
  if (decimalMark != '.') std::replace(form, end, '.', decimalMark);
  out.append(form, end);
}

void appendInteger(std::string& out, std::uint64_t value) {
  char digits[std::numeric_limits<std::uint64_t>::digits10 + 1];
  out.append(digits, std::to_chars(std::begin(digits), std::end(digits), value).ptr);
}

double nearestDouble(std::string const& text) { return readDouble(text.c_str(), nullptr); }

std::optional<double> numberFromText(std::string const& text) {
  // The C library would pass over blanks.
  if (text.empty() || std::string_view(" \t\n\v\f\r").find(text.front()) != std::string_view::npos)
    return std::nullopt;
  char* end = nullptr;
  double const number = readDouble(text.c_str(), &end);
  return end == text.c_str() + text.size() ? std::optional(number) : std::nullopt;
}

}  // namespace Kestrel::ResultTables

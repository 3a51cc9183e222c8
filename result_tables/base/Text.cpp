#include "result_tables/base/Text.h"

#include <fmt/format.h>
#include <locale.h>
#include <utf8proc.h>

#include <cmath>
#include <cstdlib>

namespace Kestrel::ResultTables {

namespace {

constexpr utf8proc_int32_t s_replacement = 0xFFFD;

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
/// non-characters, which XML does not take.
bool disturbsALine(utf8proc_int32_t codePoint) {
  switch (utf8proc_category(codePoint)) {
    case UTF8PROC_CATEGORY_CC:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
      return true;
    default:
      return (codePoint >= 0x202A && codePoint <= 0x202E) || (codePoint >= 0x2066 && codePoint <= 0x2069);
  }
}

}  // namespace

std::string toValidUtf8(std::string_view text) {
  std::string valid;
  valid.reserve(text.size());
  forEachCharacter(text, [&](utf8proc_int32_t, std::string_view bytes) { valid += bytes; });
  return valid;
}

std::string_view firstCharacter(std::string_view text) {
  utf8proc_int32_t codePoint = 0;
  auto const length = utf8proc_iterate(reinterpret_cast<utf8proc_uint8_t const*>(text.data()),
                                       static_cast<utf8proc_ssize_t>(text.size()), &codePoint);
  return text.substr(0, length > 0 ? static_cast<std::size_t>(length) : 0);
}

std::string toPrintable(std::string_view text) {
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

std::string shortestForm(double value) {
  if (std::isnan(value)) return "nan";
  return fmt::format("{}", value);
}

std::optional<double> numberFromText(std::string const& text) {
  static locale_t const c = ::newlocale(LC_ALL_MASK, "C", nullptr);
  // The C library would pass over blanks.
  if (text.empty() || std::string_view(" \t\n\v\f\r").find(text.front()) != std::string_view::npos)
    return std::nullopt;
  char* end = nullptr;
  double const number = ::strtod_l(text.c_str(), &end, c);
  return end == text.c_str() + text.size() ? std::optional(number) : std::nullopt;
}

}  // namespace Kestrel::ResultTables

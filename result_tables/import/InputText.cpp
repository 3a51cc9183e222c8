#include "result_tables/import/InputText.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <system_error>

#include "result_tables/base/Error.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

namespace {

bool isSign(char c) { return c == '+' || c == '-'; }

/// Whether the sign at `place` begins an exponent: behind a letter, or of three digits to the next number.
bool beginsExponent(std::string_view word, std::size_t place) {
  constexpr std::string_view letters = "eEdD";
  auto const before = word[place - 1];
  if (letters.find(before) != letters.npos) return place > 1;
  constexpr std::size_t digits = 3;
  auto const mantissa = word.substr(0, place);
  auto const after = word.substr(place + 1);
  return mantissa.find_first_of(letters) == mantissa.npos && after.size() >= digits &&
         std::all_of(after.begin(), after.begin() + digits, isDigit) &&
         (after.size() == digits || isSign(after[digits]));
}

/// Reads a double at the beginning of `text`; returns what is left, or nothing where there is none.
std::optional<std::string_view> readDouble(std::string_view text, double& value) {
  auto const* const end = text.data() + text.size();
  auto const result = std::from_chars(text.data(), end, value);
  if (result.ec != std::errc()) return std::nullopt;
  return std::string_view(result.ptr, static_cast<std::size_t>(end - result.ptr));
}

/// The exponent that follows a mantissa in Fortran's own spelling; empty for any other text.
std::string_view fortranExponent(std::string_view mantissa, std::string_view rest) {
  if (rest.front() == 'd' || rest.front() == 'D') return rest.substr(1);
  bool const isSigned = rest.front() == '+' || rest.front() == '-';
  constexpr std::size_t signAndThreeDigits = 4;
  // A date or a range of numbers has no decimal point.
  bool const isExponent =
      isSigned && rest.size() == signAndThreeDigits && mantissa.find('.') != mantissa.npos;
  return isExponent ? rest : std::string_view();
}

}  // namespace

std::optional<double> parseNumber(std::string_view text) {
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  double value = 0.0;
  auto const rest = readDouble(text, value);
  if (!rest) return std::nullopt;
  if (rest->empty()) return value;

  auto const mantissa = text.substr(0, text.size() - rest->size());
  auto const exponent = fortranExponent(mantissa, *rest);
  if (exponent.empty()) return std::nullopt;
  auto const usual = fmt::format("{}e{}", mantissa, exponent);
  auto const restOfUsual = readDouble(usual, value);
  return restOfUsual && restOfUsual->empty() ? std::optional(value) : std::nullopt;
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r";
  auto const first = text.find_first_not_of(blanks);
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view takeWord(std::string_view& rest) {
  std::size_t begin = 0;
  while (begin < rest.size() && isBlank(rest[begin])) ++begin;
  std::size_t end = begin;
  while (end < rest.size() && !isBlank(rest[end])) ++end;
  auto const word = rest.substr(begin, end - begin);
  rest.remove_prefix(end);
  return word;
}

std::string_view takeNumberText(std::string_view& rest) {
  auto const word = takeWord(rest);
  for (std::size_t place = 1; place < word.size(); ++place) {
    auto const number = word.substr(0, place);
    if (!isSign(word[place]) || beginsExponent(word, place)) continue;
    if (number.find('.') == number.npos || !parseNumber(number)) return word;
    rest = std::string_view(word.data() + place, rest.data() + rest.size());
    return number;
  }
  return word;
}

std::string withSingleBlanks(std::string_view text) {
  std::string single;
  for (auto word = takeWord(text); !word.empty(); word = takeWord(text)) {
    if (!single.empty()) single += ' ';
    single += word;
  }
  return single;
}

void refuseWhatIsNotUtf8(std::string_view source, std::string_view text) {
  auto const position = findInvalidUtf8(text);
  if (!position) return;
  auto const before = text.substr(0, *position);
  auto const line = 1 + std::count(before.begin(), before.end(), '\n');
  auto const byte = before.size() - (before.rfind('\n') + 1) + 1;
  throw Error(tr("{}: line {}, byte {}: expected {}, found {}", toPrintable(source), line, byte,
                 tr("UTF-8 text"), describeByte(text[*position])),
              std::string(source), tr("line {}, byte {}", line, byte));
}

void failAtLine(std::string_view source, std::size_t line, std::string_view expected,
                std::string_view found) {
  throw Error(tr("{}: line {}: expected {}, found {}", toPrintable(source), line, expected, found),
              std::string(source), tr("line {}", line));
}

}  // namespace Kestrel::ResultTables

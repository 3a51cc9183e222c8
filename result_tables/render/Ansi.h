#pragma once

#include <string>
#include <string_view>

namespace Kestrel::ResultTables {

// `text` between the escape sequences of a terminal, or as it is without `colour`. To be applied to text that
// is printable and laid out already, as the sequences take bytes but no columns.

[[nodiscard]] inline std::string withAnsiCode(std::string_view code, std::string_view text, bool colour) {
  std::string out;
  if (colour) out.append("\x1b[").append(code).append("m");
  out += text;
  if (colour) out += "\x1b[0m";
  return out;
}

[[nodiscard]] inline std::string bold(std::string_view text, bool colour) {
  return withAnsiCode("1", text, colour);
}
[[nodiscard]] inline std::string red(std::string_view text, bool colour) {
  return withAnsiCode("31", text, colour);
}
[[nodiscard]] inline std::string green(std::string_view text, bool colour) {
  return withAnsiCode("32", text, colour);
}
[[nodiscard]] inline std::string yellow(std::string_view text, bool colour) {
  return withAnsiCode("33", text, colour);
}

}  // namespace Kestrel::ResultTables

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Kestrel::ResultTables {

/// What stands between the columns of a text table, and for a value that there is none of.
inline constexpr std::string_view s_gap = "   ";
inline constexpr std::string_view s_noData = "–";

/// Ends the line of `out` that begins at `begin`, without the blanks at its end.
inline void endLine(std::string& out, std::size_t begin) {
  while (out.size() > begin && out.back() == ' ') out.pop_back();
  out += '\n';
}

/// Adds the line without the blanks at its end.
inline void appendLine(std::string& out, std::string_view line) {
  auto const begin = out.size();
  out += line;
  endLine(out, begin);
}

/// A printable text on as few lines as the width allows, broken behind separators alone; the blanks at the
/// end of a line are left out.
[[nodiscard]] std::vector<std::string> wrap(std::string_view printable, std::size_t width,
                                            std::string_view separator);

/// Appends an enumeration, parted by ", ", on lines that are all indented and end within `width` columns (0:
/// on one line).
void appendWrapped(std::string& out, std::size_t indentation, std::string_view printable, std::size_t width);

/// What marks mean, on as few lines of `width` as there is room for (0: on one).
[[nodiscard]] std::string genLegend(std::vector<std::string> const& entries, std::size_t width);

}  // namespace Kestrel::ResultTables

#pragma once

#include <string>
#include <string_view>

namespace Kestrel::ResultTables {

/// What stands between the columns of a text table, and for a value that there is none of.
inline constexpr std::string_view s_gap = "   ";
inline constexpr std::string_view s_noData = "–";

/// Adds the line without the blanks at its end.
inline void appendLine(std::string& out, std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  out += line;
  out += '\n';
}

}  // namespace Kestrel::ResultTables

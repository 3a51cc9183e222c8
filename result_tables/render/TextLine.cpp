#include "result_tables/render/TextLine.h"

#include <fmt/format.h>

#include <algorithm>

#include "result_tables/base/Text.h"

namespace Kestrel::ResultTables {

std::vector<std::string> wrap(std::string_view printable, std::size_t width, std::string_view separator) {
  std::vector<std::string> lines;
  while (!printable.empty()) {
    auto const end = std::min(printable.find(separator), printable.size());
    auto const piece = printable.substr(0, end + separator.size());
    printable.remove_prefix(piece.size());
    auto const shown = piece.substr(0, piece.find_last_not_of(' ') + 1);
    if (lines.empty() || displayWidth(lines.back()) + displayWidth(shown) > width) lines.emplace_back();
    lines.back() += piece;
  }
  for (auto& line : lines) line.erase(line.find_last_not_of(' ') + 1);
  return lines;
}

void appendWrapped(std::string& out, std::size_t indentation, std::string_view printable, std::size_t width) {
  auto const room = width == 0 ? displayWidth(printable) : width - std::min(width, indentation);
  for (auto const& line : wrap(printable, room, ", ")) appendLine(out, std::string(indentation, ' ') + line);
}

std::string genLegend(std::vector<std::string> const& entries, std::size_t width) {
  auto const text = fmt::format("{}", fmt::join(entries, s_gap));
  std::string legend;
  for (auto const& line : wrap(text, width == 0 ? displayWidth(text) : width, s_gap))
    appendLine(legend, line);
  return legend;
}

}  // namespace Kestrel::ResultTables

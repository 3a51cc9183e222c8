#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "result_tables/command/Arguments.h"

namespace Kestrel::ResultTables {

/// What the program, or one of its commands, does and takes, in lines of at most `width` columns, of which
/// there are at least 40; a word that is longer has a line of its own. `sections` follow in order.
[[nodiscard]] std::string genHelp(CLI::App const& command, std::vector<HelpSection> const& sections,
                                  std::size_t width);

/// The words of a text on lines of at most `width` columns. Between wide characters, which have no blanks
/// between words, a line may end too, but not before a closing mark and not in square brackets.
[[nodiscard]] std::vector<std::string> wrapWords(std::string_view text, std::size_t width);

}  // namespace Kestrel::ResultTables

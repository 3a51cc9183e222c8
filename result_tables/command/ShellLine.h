#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Kestrel::ResultTables {

/// A command line as it is typed in a shell, up to the cursor: what the quotation marks, backslashes and
/// redirections of bash and zsh leave of it. Variables and commands in it are not replaced.
struct ShellLine {
  std::vector<std::string> words;  ///< before the one at the cursor, without quoting
  std::string word;                ///< at the cursor, without quoting; empty behind a blank
  std::string typed;               ///< the same as it is typed
  char openQuote = '\0';           ///< the quotation mark that `typed` leaves open
  std::size_t openQuoteEnd = 0;    ///< in `typed`, behind that mark
  bool isRedirected = false;       ///< the word at the cursor is the file behind < or >
};

[[nodiscard]] ShellLine parseShellLine(std::string_view line);

/// `text` as it is typed within that quotation mark, or, where it is '\0', without any.
[[nodiscard]] std::string quoteForShell(std::string_view text, char openQuote);

/// What bash puts in place of the end of the word at the cursor, so that the word becomes `word`: all of it,
/// but without what stands before an open quotation mark, or else up to the last of `breaks`
/// (COMP_WORDBREAKS) that is not quoted. REQUIRES: `word` begins with line.word.
[[nodiscard]] std::string replacementInBash(ShellLine const& line, std::string_view word,
                                            std::string_view breaks);

}  // namespace Kestrel::ResultTables

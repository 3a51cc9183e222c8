#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "result_tables/command/Arguments.h"
#include "result_tables/command/ShellLine.h"

namespace Kestrel::ResultTables {

/// What a shell offers for the word at the cursor.
struct Completion {
  struct Candidate {
    std::string value;    ///< without what of the word stays in front of it
    std::string meaning;  ///< one line, which may be empty
  };

  std::string kept;                   ///< of the word, in front of each candidate: "--format="
  std::vector<Candidate> candidates;  ///< that begin with what is typed of them
  bool offersFiles = false;           ///< rather than candidates
};

/// What `program`, whose commands are `declared`, takes next. Of the words behind the cursor, `rest`, only
/// names of results files matter: where units are asked for, those files are read, in which errors are passed
/// over, and for commands without operands the built-in sample.
[[nodiscard]] Completion genCompletion(CLI::App const& program, std::vector<Arguments const*> const& declared,
                                       ShellLine const& line, std::vector<std::string> const& rest);

/// For the scripts in `completion/`: a line that says "files" or "words", then one for each candidate. Bash
/// gets what it puts in place of the end of the word, see `replacementInBash`.
[[nodiscard]] std::string renderForBash(Completion const& completion, ShellLine const& line,
                                        std::string_view breaks);
/// Zsh, which quotes by itself, gets value, tab and meaning.
[[nodiscard]] std::string renderForZsh(Completion const& completion);

}  // namespace Kestrel::ResultTables

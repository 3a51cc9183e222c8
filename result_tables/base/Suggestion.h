#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Kestrel::ResultTables {

/// How many characters must be inserted, removed, replaced, or swapped with their neighbour (each at most
/// once) to make one text out of the other; bytes count as characters, ASCII letters regardless of case.
[[nodiscard]] std::size_t editDistance(std::string_view one, std::string_view other);

/// The one of `known` that a person who wrote `word` probably meant: the nearest, of equally near ones the
/// first; empty where none is near.
[[nodiscard]] std::string_view nearestWord(std::string_view word, std::vector<std::string_view> const& known);

/// `; did you mean "show"?` for the end of a message about `word`; empty where no known word is near.
[[nodiscard]] std::string suggestion(std::string_view word, std::vector<std::string_view> const& known);

/// For a message: "text, csv, json".
[[nodiscard]] std::string listOf(std::vector<std::string_view> const& words);

/// For a message about names of a file: in quotation marks, each once, as many as a person cares to read;
/// "none" where there is none.
[[nodiscard]] std::string quotedListOf(std::vector<std::string_view> const& names);

/// Throws the `Error` for a name that is none of the `known` ones; `what` says what was named.
[[noreturn]] void refuseName(std::string_view what, std::vector<std::string_view> const& known,
                             std::string const& found);

/// The row of that name. An unknown name is an `Error` that says `what` was named and the rows that there
/// are.
template <typename Rows>
auto const& rowNamed(std::string_view what, Rows const& rows, std::string const& name) {
  std::vector<std::string_view> known;
  for (auto const& row : rows) {
    if (row.name == name) return row;
    known.push_back(row.name);
  }
  refuseName(what, known, name);
}

}  // namespace Kestrel::ResultTables

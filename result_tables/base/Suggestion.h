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

}  // namespace Kestrel::ResultTables

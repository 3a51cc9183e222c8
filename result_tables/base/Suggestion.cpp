#include "result_tables/base/Suggestion.h"

#include <fmt/format.h>

#include <algorithm>

#include "result_tables/base/Error.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

namespace {

bool isSameLetter(char one, char other) {
  auto const lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return lower(one) == lower(other);
}

}  // namespace

std::size_t editDistance(std::string_view one, std::string_view other) {
  // Distances between the first i characters of one text and the first j of the other: the row of i, and the
  // two before it.
  std::vector<std::size_t> beforeLast;
  std::vector<std::size_t> last;
  std::vector<std::size_t> row(other.size() + 1);
  for (std::size_t j = 0; j <= other.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= one.size(); ++i) {
    beforeLast = std::move(last);
    last = row;
    row[0] = i;
    for (std::size_t j = 1; j <= other.size(); ++j) {
      auto const replaced = last[j - 1] + (isSameLetter(one[i - 1], other[j - 1]) ? 0 : 1);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, replaced});
      bool const areSwapped =
          i > 1 && j > 1 && isSameLetter(one[i - 1], other[j - 2]) && isSameLetter(one[i - 2], other[j - 1]);
      if (areSwapped) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
    }
  }
  return row.back();
}

std::string_view nearestWord(std::string_view word, std::vector<std::string_view> const& known) {
  std::string_view nearest;
  auto smallest = (word.size() + 1) / 4 + 1;  // one slip in a short word, one more for every four characters
  for (auto const& candidate : known) {
    auto const distance = editDistance(word, candidate);
    if (distance >= smallest) continue;
    smallest = distance;
    nearest = candidate;
  }
  return nearest;
}

std::string suggestion(std::string_view word, std::vector<std::string_view> const& known) {
  auto const nearest = nearestWord(word, known);
  return nearest.empty() ? std::string() : tr("; did you mean {}?", quote(nearest));
}

std::string listOf(std::vector<std::string_view> const& words) {
  return fmt::format("{}", fmt::join(words, ", "));
}

std::string quotedListOf(std::vector<std::string_view> const& names) {
  constexpr std::size_t most = 20;
  std::vector<std::string> quoted;
  for (auto const name : names) {
    auto text = quote(name);
    if (std::find(quoted.begin(), quoted.end(), text) != quoted.end()) continue;
    if (quoted.size() == most) {
      quoted.emplace_back("…");
      break;
    }
    quoted.push_back(std::move(text));
  }
  return quoted.empty() ? tr("none") : fmt::format("{}", fmt::join(quoted, ", "));
}

void refuseName(std::string_view what, std::vector<std::string_view> const& known, std::string const& found) {
  throw Error(tr("{}: expected one of {}, found {}", what, listOf(known), quote(found)) +
              suggestion(found, known));
}

}  // namespace Kestrel::ResultTables

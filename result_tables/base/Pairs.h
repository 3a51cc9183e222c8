#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <vector>

namespace Kestrel::ResultTables {

/// What two lists have in common, by index; one of the two is none where only one list has it.
struct IndexPair {
  std::optional<std::size_t> before;
  std::optional<std::size_t> after;

  friend bool operator==(IndexPair const&, IndexPair const&) = default;
};

/// Pairs what has the same key; of several with one key the first with the first, the second with the second
/// and so on. In the order of `before`, then what `after` alone has, in its order. Takes O(n log n)
/// comparisons.
template <typename Key>
[[nodiscard]] std::vector<IndexPair> pairEqualKeys(std::vector<Key> const& before,
                                                   std::vector<Key> const& after) {
  std::map<Key, std::vector<std::size_t>> unpaired;  // the first at the end
  for (auto i = after.size(); i > 0; --i) unpaired[after[i - 1]].push_back(i - 1);
  std::vector<bool> isPaired(after.size(), false);
  std::vector<IndexPair> pairs;
  for (std::size_t i = 0; i < before.size(); ++i) {
    auto& pair = pairs.emplace_back(IndexPair{i, std::nullopt});
    auto const equal = unpaired.find(before[i]);
    if (equal == unpaired.end() || equal->second.empty()) continue;
    pair.after = equal->second.back();
    isPaired[*pair.after] = true;
    equal->second.pop_back();
  }
  for (std::size_t i = 0; i < after.size(); ++i) {
    if (!isPaired[i]) pairs.push_back({std::nullopt, i});
  }
  return pairs;
}

}  // namespace Kestrel::ResultTables

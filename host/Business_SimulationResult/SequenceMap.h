#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace Kestrel {

/// Pairs of key and value in the order in which they were stored; a key may occur more than once.
template <typename Key, typename Value>
class SequenceMap {
 public:
  /// A key and its value.
  using value_type = std::pair<Key, Value>;
  /// Over the pairs in stored order, which may change values.
  using iterator = typename std::vector<value_type>::iterator;
  /// Over the pairs in stored order.
  using const_iterator = typename std::vector<value_type>::const_iterator;

  /// Makes room for `size` pairs in all.
  void reserve(std::size_t size) { m_entries.reserve(size); }
  /// Appends a pair, also of a key that is there already. Amortised O(1); ends the validity of iterators.
  void append(Key key, Value value) { m_entries.emplace_back(std::move(key), std::move(value)); }

  ///@{
  /// The first pair, and behind the last one.
  [[nodiscard]] iterator begin() { return m_entries.begin(); }
  [[nodiscard]] iterator end() { return m_entries.end(); }
  [[nodiscard]] const_iterator begin() const { return m_entries.begin(); }
  [[nodiscard]] const_iterator end() const { return m_entries.end(); }
  ///@}

  /// Number of pairs.
  [[nodiscard]] std::size_t size() const { return m_entries.size(); }

 private:
  std::vector<value_type> m_entries;
};

}  // namespace Kestrel

#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace Kestrel {

/// Pairs of key and value in the order in which they were stored; a key may occur more than once.
template <typename Key, typename Value>
class SequenceMap {
 public:
  using value_type = std::pair<Key, Value>;
  using iterator = typename std::vector<value_type>::iterator;
  using const_iterator = typename std::vector<value_type>::const_iterator;

  void reserve(std::size_t size) { m_entries.reserve(size); }
  void append(Key key, Value value) { m_entries.emplace_back(std::move(key), std::move(value)); }

  [[nodiscard]] iterator begin() { return m_entries.begin(); }
  [[nodiscard]] iterator end() { return m_entries.end(); }
  [[nodiscard]] const_iterator begin() const { return m_entries.begin(); }
  [[nodiscard]] const_iterator end() const { return m_entries.end(); }
  [[nodiscard]] std::size_t size() const { return m_entries.size(); }

 private:
  std::vector<value_type> m_entries;
};

}  // namespace Kestrel

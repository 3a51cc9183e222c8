#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace Kestrel {

/// Pairs in stored order. What an iterator gives is a value of its own, which ends with the visit.
template <typename Key, typename Value>
class SequenceMap {
 public:
  class Iterator {
   public:
    Iterator(std::vector<std::pair<Key, Value>> const* pairs, std::size_t position)
        : m_pairs(pairs), m_position(position) {}

    std::pair<Key, Value> operator*() const { return (*m_pairs)[m_position]; }
    Iterator& operator++() {
      ++m_position;
      return *this;
    }
    friend bool operator!=(Iterator const& a, Iterator const& b) { return a.m_position != b.m_position; }

   private:
    std::vector<std::pair<Key, Value>> const* m_pairs;
    std::size_t m_position;
  };

  explicit SequenceMap(std::vector<std::pair<Key, Value>> pairs) : m_pairs(std::move(pairs)) {}
  SequenceMap(SequenceMap const&) = delete;

  Iterator begin() { return {&m_pairs, 0}; }
  Iterator end() { return {&m_pairs, m_pairs.size()}; }

 private:
  std::vector<std::pair<Key, Value>> m_pairs;
};

}  // namespace Kestrel

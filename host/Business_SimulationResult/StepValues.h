#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace Kestrel {

/// One result quantity over the stored steps, either as plain values or as pairs of a value and a companion
/// (the time of the value, for example), in stored order.
///
/// The numbers never change once the series is made, so copies of a series share them: a copy costs no
/// allocation and may be read on another thread. Several series can share one block of memory.
template <typename Value>
class StepValues {
 public:
  /// A value and its companion.
  using Pair = std::pair<Value, Value>;

  /// An empty series of plain values.
  StepValues() = default;
  /// A series of plain values.
  explicit StepValues(std::vector<Value> values) : StepValues(own(std::move(values))) {}
  /// A series of pairs.
  explicit StepValues(std::vector<Pair> pairs) : StepValues(own(std::move(pairs))) {}

  /// Of numbers that are there and stay as they are as long as `owner` or a copy of it is.
  StepValues(std::shared_ptr<void const> owner, std::span<Value const> values)
      : m_owner(std::move(owner)), m_numbers(values.data()), m_size(values.size()) {}
  /// The same for pairs.
  StepValues(std::shared_ptr<void const> owner, std::span<Pair const> pairs)
      : m_owner(std::move(owner)), m_numbers(pairs.data()), m_size(pairs.size()), m_isPairs(true) {}

  /// Number of values, companions not counted.
  [[nodiscard]] std::size_t size() const { return m_size; }

  /// The plain values in stored order; empty for pairs. Valid as long as the series or a copy of it.
  [[nodiscard]] std::span<Value const> values() const {
    return m_isPairs ? std::span<Value const>() : std::span(static_cast<Value const*>(m_numbers), m_size);
  }

  /// The pairs in stored order; empty for plain values. Valid as long as the series or a copy of it.
  [[nodiscard]] std::span<Pair const> pairs() const {
    return m_isPairs ? std::span(static_cast<Pair const*>(m_numbers), m_size) : std::span<Pair const>();
  }

  /// Calls `visit` with every value, first to last, and with no companion.
  template <typename Visitor>
  void forEachValue(Visitor&& visit) const {
    for (auto const& value : values()) visit(value);
    for (auto const& pair : pairs()) visit(pair.first);
  }

  /// Calls `visit(value, companion)` with every pair, first to last. Returns false, and calls nothing, for
  /// plain values.
  template <typename Visitor>
  [[nodiscard]] bool forEachPair(Visitor&& visit) const {
    for (auto const& [value, companion] : pairs()) visit(value, companion);
    return m_isPairs;
  }

 private:
  template <typename Number>
  static StepValues own(std::vector<Number> numbers) {
    auto owner = std::make_shared<std::vector<Number> const>(std::move(numbers));
    std::span<Number const> const stored(*owner);
    return StepValues(std::move(owner), stored);
  }

  std::shared_ptr<void const> m_owner;
  void const* m_numbers = nullptr;
  std::size_t m_size = 0;
  bool m_isPairs = false;
};

}  // namespace Kestrel

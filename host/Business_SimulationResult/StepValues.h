#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <variant>
#include <vector>

namespace Kestrel {

/// One result quantity over the stored steps, either as plain values or as pairs of a value and a companion
/// (the time of the value, for example), in stored order.
///
/// The numbers never change once the series is made, so copies of a series share them: a copy costs no
/// allocation and may be read on another thread.
template <typename Value>
class StepValues {
 public:
  using Pair = std::pair<Value, Value>;

  /// An empty series of plain values.
  StepValues() : StepValues(std::vector<Value>()) {}
  explicit StepValues(std::vector<Value> values)
      : m_stored(std::make_shared<std::vector<Value> const>(std::move(values))) {}
  explicit StepValues(std::vector<Pair> pairs)
      : m_stored(std::make_shared<std::vector<Pair> const>(std::move(pairs))) {}

  /// Number of values, companions not counted.
  [[nodiscard]] std::size_t size() const {
    return std::visit([](auto const& stored) { return stored->size(); }, m_stored);
  }

  /// Calls `visit` with every value, first to last, and with no companion.
  template <typename Visitor>
  void forEachValue(Visitor&& visit) const {
    std::visit(
        [&visit](auto const& stored) {
          for (auto const& element : *stored) visit(valueOf(element));
        },
        m_stored);
  }

  /// Calls `visit(value, companion)` with every pair, first to last. Returns false, and calls nothing, for
  /// plain values.
  template <typename Visitor>
  [[nodiscard]] bool forEachPair(Visitor&& visit) const {
    auto const* const pairs = std::get_if<std::shared_ptr<std::vector<Pair> const>>(&m_stored);
    if (pairs == nullptr) return false;
    for (auto const& [value, companion] : **pairs) visit(value, companion);
    return true;
  }

 private:
  static Value const& valueOf(Value const& value) { return value; }
  static Value const& valueOf(Pair const& pair) { return pair.first; }

  std::variant<std::shared_ptr<std::vector<Value> const>, std::shared_ptr<std::vector<Pair> const>> m_stored;
};

}  // namespace Kestrel

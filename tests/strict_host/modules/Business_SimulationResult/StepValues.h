#pragma once

#include <utility>
#include <vector>

namespace Kestrel {

template <typename Value>
class StepValues {
 public:
  explicit StepValues(std::vector<Value> values) : m_values(std::move(values)) {}
  explicit StepValues(std::vector<std::pair<Value, Value>> pairs) : m_pairs(std::move(pairs)) {}
  StepValues(StepValues const&) = delete;

  template <typename Visitor>
  void forEachValue(Visitor&& visit) {
    for (Value const value : m_values) visit(value);
    for (auto const& [value, companion] : m_pairs) visit(value);
  }

 private:
  std::vector<Value> m_values;
  std::vector<std::pair<Value, Value>> m_pairs;
};

}  // namespace Kestrel

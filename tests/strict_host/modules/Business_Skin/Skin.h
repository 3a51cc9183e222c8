#pragma once

#include <optional>

#include "Business_Skin/SkinBase.h"

namespace Kestrel {

template <typename Value>
class Skin : public SkinBase {
 public:
  Skin(std::optional<Value> rangeMinimum, std::optional<Value> rangeMaximum)
      : m_rangeMinimum(rangeMinimum), m_rangeMaximum(rangeMaximum) {}

  std::optional<Value> getRangeMinimum() { return m_rangeMinimum; }
  std::optional<Value> getRangeMaximum() { return m_rangeMaximum; }

 private:
  std::optional<Value> m_rangeMinimum;
  std::optional<Value> m_rangeMaximum;
};

}  // namespace Kestrel

#pragma once

#include <optional>
#include <utility>

#include "Business_Skin/SkinBase.h"

namespace Kestrel {

/// A field of values of one type, of which the evaluation reads the range. Each bound may be absent.
template <typename Value>
class Skin : public SkinBase {
 public:
  Skin() = default;
  /// A field whose values lie between the bounds.
  Skin(std::optional<Value> rangeMinimum, std::optional<Value> rangeMaximum)
      : m_rangeMinimum(std::move(rangeMinimum)), m_rangeMaximum(std::move(rangeMaximum)) {}

  ///@{
  /// The least and the greatest value of the field; none where the field has no such bound.
  [[nodiscard]] std::optional<Value> const& getRangeMinimum() const { return m_rangeMinimum; }
  [[nodiscard]] std::optional<Value> const& getRangeMaximum() const { return m_rangeMaximum; }
  ///@}

 private:
  std::optional<Value> m_rangeMinimum;
  std::optional<Value> m_rangeMaximum;
};

}  // namespace Kestrel

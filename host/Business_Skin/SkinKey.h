#pragma once

#include <compare>
#include <string>
#include <utility>

namespace Kestrel {

/// Key of a skin: the name of the result variable and what tells variants of one variable apart.
class SkinKey {
 public:
  /// The variant `variant`, with the number `index` and in the scope `scope`, of the variable `name`. Tables
  /// ask for 0 and two empty texts.
  SkinKey(std::string name, int index, std::string variant, std::string scope)
      : m_name(std::move(name)), m_index(index), m_variant(std::move(variant)), m_scope(std::move(scope)) {}

  /// The name of the result variable.
  [[nodiscard]] std::string const& getName() const { return m_name; }

  ///@{
  /// Compares name, number, variant and scope, in this order.
  friend bool operator==(SkinKey const&, SkinKey const&) = default;
  friend auto operator<=>(SkinKey const&, SkinKey const&) = default;
  ///@}

 private:
  std::string m_name;
  int m_index;
  std::string m_variant;
  std::string m_scope;
};

}  // namespace Kestrel

#pragma once

#include <compare>
#include <string>
#include <utility>

namespace Kestrel {

/// Key of a skin: the name of the result variable and what tells variants of one variable apart.
class SkinKey {
 public:
  SkinKey(std::string name, int index, std::string variant, std::string scope)
      : m_name(std::move(name)), m_index(index), m_variant(std::move(variant)), m_scope(std::move(scope)) {}

  [[nodiscard]] std::string const& getName() const { return m_name; }

  friend bool operator==(SkinKey const&, SkinKey const&) = default;
  friend auto operator<=>(SkinKey const&, SkinKey const&) = default;

 private:
  std::string m_name;
  int m_index;
  std::string m_variant;
  std::string m_scope;
};

}  // namespace Kestrel

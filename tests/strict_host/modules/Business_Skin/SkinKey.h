#pragma once

#include <string>

namespace Kestrel {

class SimulationBodyLineJoin;

/// Made where it is used: neither copied nor kept.
class SkinKey {
 public:
  SkinKey(std::string const& name, int index, std::string const& variant, std::string const& scope)
      : m_name(name), m_index(index), m_variant(variant), m_scope(scope) {}
  SkinKey(SkinKey const&) = delete;

 private:
  friend class SimulationBodyLineJoin;

  friend bool operator==(SkinKey const&, SkinKey const&) = default;

  std::string m_name;
  int m_index;
  std::string m_variant;
  std::string m_scope;
};

}  // namespace Kestrel

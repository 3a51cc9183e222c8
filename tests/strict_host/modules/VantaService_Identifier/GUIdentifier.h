#pragma once

namespace Kestrel {

/// Copied, compared and ordered; never assigned.
class GUIdentifier {
 public:
  explicit GUIdentifier(unsigned int number) : m_number(number) {}
  GUIdentifier(GUIdentifier const&) = default;
  GUIdentifier& operator=(GUIdentifier const&) = delete;

  friend bool operator==(GUIdentifier const& a, GUIdentifier const& b) { return a.m_number == b.m_number; }
  friend bool operator<(GUIdentifier const& a, GUIdentifier const& b) { return a.m_number < b.m_number; }

 protected:
  unsigned int m_number;
};

}  // namespace Kestrel

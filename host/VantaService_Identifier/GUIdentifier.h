#pragma once

#include <boost/uuid/uuid.hpp>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace Kestrel {

/// A 128-bit identifier that is unique in the document. A default one is nil (all bits zero).
///
/// A value type: copies are independent, all operations are thread safe on distinct objects and none but
/// `toString` allocates. Identifiers are ordered by their sixteen bytes, first to last, unsigned.
class GUIdentifier {
 public:
  GUIdentifier() : m_uuid{} {}
  /// The identifier with these sixteen bytes.
  explicit GUIdentifier(boost::uuids::uuid const& uuid) : m_uuid(uuid) {}

  /// Reads "8-4-4-4-12" hexadecimal digits of either case; nothing else is an identifier.
  [[nodiscard]] static std::optional<GUIdentifier> fromString(std::string_view text);

  /// The identifier in the form "8-4-4-4-12", in lower case.
  [[nodiscard]] std::string toString() const;

  /// The sixteen bytes.
  [[nodiscard]] boost::uuids::uuid const& getUuid() const { return m_uuid; }

  ///@{
  /// Compares the sixteen bytes, first to last, unsigned.
  friend bool operator==(GUIdentifier const& a, GUIdentifier const& b) { return a.m_uuid == b.m_uuid; }
  friend bool operator<(GUIdentifier const& a, GUIdentifier const& b) { return a.m_uuid < b.m_uuid; }
  ///@}

 private:
  boost::uuids::uuid m_uuid;
};

}  // namespace Kestrel

// Doxygen finds no scope for specialisations of others' templates.
/// \cond
template <>
struct std::hash<Kestrel::GUIdentifier> {
  std::size_t operator()(Kestrel::GUIdentifier const& id) const noexcept { return hash_value(id.getUuid()); }
};
/// \endcond

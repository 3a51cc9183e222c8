#include "VantaService_Identifier/GUIdentifier.h"

#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid_io.hpp>

namespace Kestrel {

namespace {

// The generator of the library also takes braces and digits without hyphens, which are no identifiers here.
bool hasCanonicalShape(std::string_view text) {
  constexpr std::string_view shape = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
  if (text.size() != shape.size()) return false;
  for (std::size_t i = 0; i < shape.size(); ++i) {
    char const c = text[i];
    bool const isHexDigit = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    if (shape[i] == 'x' ? !isHexDigit : c != shape[i]) return false;
  }
  return true;
}

}  // namespace

std::optional<GUIdentifier> GUIdentifier::fromString(std::string_view text) {
  if (!hasCanonicalShape(text)) return std::nullopt;
  return GUIdentifier(boost::uuids::string_generator()(text.begin(), text.end()));
}

std::string GUIdentifier::toString() const { return boost::uuids::to_string(m_uuid); }

}  // namespace Kestrel

#pragma once

#include <string>

namespace Kestrel {

/// Conversions between the encodings of texts.
class UnicodeTools {
 public:
  UnicodeTools() = delete;

  /// `text` in UTF-8. A unit that is no Unicode scalar value becomes U+FFFD.
  static std::string wstring_to_utf8(std::wstring const& text);
};

}  // namespace Kestrel

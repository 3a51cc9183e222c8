#pragma once

#include <string>

namespace Kestrel {

class UnicodeTools {
 public:
  static std::string wstring_to_utf8(std::wstring const& text);
};

}  // namespace Kestrel

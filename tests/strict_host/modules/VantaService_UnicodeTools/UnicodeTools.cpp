#include "VantaService_UnicodeTools/UnicodeTools.h"

namespace Kestrel {

// The application has characters of up to two bytes only.
std::string UnicodeTools::wstring_to_utf8(std::wstring const& text) {
  std::string utf8;
  for (wchar_t const character : text) {
    auto const code = static_cast<unsigned int>(character);
    if (code < 0x80) {
      utf8 += static_cast<char>(code);
    } else {
      utf8 += static_cast<char>(0xC0U | code >> 6U);
      utf8 += static_cast<char>(0x80U | (code & 0x3FU));
    }
  }
  return utf8;
}

}  // namespace Kestrel

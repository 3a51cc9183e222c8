#include "VantaService_UnicodeTools/UnicodeTools.h"

#include <boost/locale/utf.hpp>
#include <iterator>

namespace Kestrel {

std::string UnicodeTools::wstring_to_utf8(std::wstring const& text) {
  using boost::locale::utf::code_point;
  static_assert(sizeof(wchar_t) == sizeof(code_point), "a wide character is a whole code point here");
  std::string utf8;
  auto out = std::back_inserter(utf8);
  for (wchar_t const unit : text) {
    auto const value = static_cast<code_point>(unit);
    out = boost::locale::utf::utf_traits<char>::encode(
        boost::locale::utf::is_valid_codepoint(value) ? value : 0xFFFD, out);
  }
  return utf8;
}

}  // namespace Kestrel

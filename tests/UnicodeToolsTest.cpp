#include "VantaService_UnicodeTools/UnicodeTools.h"

#include <gtest/gtest.h>

#include <string>

namespace Kestrel {
namespace {

std::string utf8(std::wstring const& text) { return UnicodeTools::wstring_to_utf8(text); }

std::string utf8(unsigned unit) { return utf8(std::wstring(1, static_cast<wchar_t>(unit))); }

TEST(UnicodeTools, EncodesTheCapitalDelta) { EXPECT_EQ(utf8(L"\u0394"), "\xCE\x94"); }

TEST(UnicodeTools, EncodesTheFirstAndTheLastCharacterOfEachLength) {
  EXPECT_EQ(utf8(0x1), "\x01");
  EXPECT_EQ(utf8(0x7F), "\x7F");
  EXPECT_EQ(utf8(0x80), "\xC2\x80");
  EXPECT_EQ(utf8(0x7FF), "\xDF\xBF");
  EXPECT_EQ(utf8(0x800), "\xE0\xA0\x80");
  EXPECT_EQ(utf8(0xFFFF), "\xEF\xBF\xBF");
  EXPECT_EQ(utf8(0x10000), "\xF0\x90\x80\x80");
  EXPECT_EQ(utf8(0x10FFFF), "\xF4\x8F\xBF\xBF");
}

TEST(UnicodeTools, KeepsTheOrderAndNulCharacters) {
  EXPECT_EQ(utf8(L""), "");
  EXPECT_EQ(utf8(std::wstring(L"a\0\u00DF\u529B", 4)), std::string("a\0\xC3\x9F\xE5\x8A\x9B", 7));
}

TEST(UnicodeTools, WritesAReplacementForWhatIsNoCharacter) {
  for (unsigned const unit : {0xD800U, 0xDBFFU, 0xDC00U, 0xDFFFU, 0x110000U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
    EXPECT_EQ(utf8(unit), "\xEF\xBF\xBD") << unit;
  }
}

}  // namespace
}  // namespace Kestrel

#include "result_tables/base/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "support/HostileLocale.h"

namespace Kestrel::ResultTables {
namespace {

using namespace std::string_literals;

TEST(Text, ReplacesEveryByteThatIsPartOfNoCharacter) {
  EXPECT_EQ(toValidUtf8(""), "");
  EXPECT_EQ(toValidUtf8("Clamp, Größe 漢 😀"), "Clamp, Größe 漢 😀");
  EXPECT_EQ(toValidUtf8("a\xFF"
                        "b"),
            "a\uFFFDb");
  EXPECT_EQ(toValidUtf8("\xE2\x82"), "\uFFFD\uFFFD") << "a character that is cut";
  EXPECT_EQ(toValidUtf8("\xC0\x80"), "\uFFFD\uFFFD") << "an overlong form";
  EXPECT_EQ(toValidUtf8("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD") << "a surrogate";
  EXPECT_EQ(toValidUtf8("\xF4\x90\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD") << "beyond the last character";
  EXPECT_EQ(toValidUtf8("a\0b"s), "a\0b"s);
}

TEST(Text, AppendsValidUtf8) {
  std::string text = "a";
  appendValidUtf8(text, "");
  appendValidUtf8(text, "Größe");
  appendValidUtf8(text, "b\xFF");
  EXPECT_EQ(text, "aGrößeb\uFFFD");
}

TEST(Text, FindsTheFirstCharacter) {
  EXPECT_EQ(firstCharacter("ab"), "a");
  EXPECT_EQ(firstCharacter("漢字"), "漢");
  EXPECT_EQ(firstCharacter("\0a"s), "\0"s);
  EXPECT_EQ(firstCharacter(""), "");
  EXPECT_EQ(firstCharacter("\x82x"), "");
  EXPECT_EQ(firstCharacter("\xE2\x82"), "");
}

TEST(Text, ShowsControlCharactersAsPictures) {
  EXPECT_EQ(toPrintable("a\nb\tc\r"), "a␊b␉c␍");
  EXPECT_EQ(toPrintable("\x1B[31mred\x7F"), "␛[31mred␡");
  EXPECT_EQ(toPrintable("\0"s), "␀");
  EXPECT_EQ(toPrintable("\x1F "), "␟ ");
  EXPECT_EQ(toPrintable("\u0085\u009B"), "\uFFFD\uFFFD") << "control characters without pictures";
}

TEST(Text, ReplacesWhatBreaksOrTurnsALine) {
  EXPECT_EQ(toPrintable("a\u2028b\u2029c"), "a\uFFFDb\uFFFDc");
  // NOLINTNEXTLINE(misc-misleading-bidirectional): the marks that are to be replaced
  EXPECT_EQ(toPrintable("\u202A\u202E\u2066\u2069"), "\uFFFD\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(toPrintable("\u2027\u202F\u2065\u206A"), "\u2027\u202F\u2065\u206A") << "their neighbours";
  EXPECT_EQ(toPrintable("\xFFÄ"), "\uFFFDÄ");
}

/// The bytes of any code point in UTF-8.
std::string utf8(std::uint32_t codePoint) {
  auto const tail = [codePoint](int shift) {
    return static_cast<char>(0x80U | (codePoint >> shift & 0x3FU));
  };
  if (codePoint < 0x80) return {static_cast<char>(codePoint)};
  if (codePoint < 0x800) return {static_cast<char>(0xC0U | codePoint >> 6), tail(0)};
  if (codePoint < 0x10000) return {static_cast<char>(0xE0U | codePoint >> 12), tail(6), tail(0)};
  return {static_cast<char>(0xF0U | codePoint >> 18), tail(12), tail(6), tail(0)};
}

struct CodePoints {
  std::uint32_t first;
  std::uint32_t last;
};

bool isIn(std::vector<CodePoints> const& ranges, std::uint32_t codePoint) {
  return std::any_of(ranges.begin(), ranges.end(), [codePoint](CodePoints const& range) {
    return codePoint >= range.first && codePoint <= range.last;
  });
}

TEST(Text, LeavesEveryCodePointAsItIsOrShowsAPictureOrTheReplacement) {
  std::vector<CodePoints> const withPictures = {{0, 0x1F}, {0x7F, 0x7F}};
  std::vector<CodePoints> replaced = {{0x80, 0x9F},     {0x2028, 0x2029}, {0x202A, 0x202E},
                                      {0x2066, 0x2069}, {0xD800, 0xDFFF}, {0xFDD0, 0xFDEF}};
  for (std::uint32_t plane = 0; plane <= 0x10; ++plane)
    replaced.push_back({plane << 16 | 0xFFFE, plane << 16 | 0xFFFF});
  for (std::uint32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
    auto const bytes = utf8(codePoint);
    auto const printable = toPrintable(bytes);
    if (isIn(withPictures, codePoint)) {
      ASSERT_EQ(printable, utf8(codePoint == 0x7F ? 0x2421 : 0x2400 + codePoint)) << codePoint;
    } else if (isIn(replaced, codePoint)) {
      ASSERT_TRUE(printable.starts_with("\uFFFD")) << codePoint;
      ASSERT_EQ(findInvalidUtf8(printable), std::nullopt) << codePoint;
    } else {
      ASSERT_EQ(printable, bytes) << codePoint;
    }
  }
}

TEST(Text, FindsTheFirstByteThatIsPartOfNoCharacter) {
  EXPECT_EQ(findInvalidUtf8(""), std::nullopt);
  EXPECT_EQ(findInvalidUtf8("Größe 漢 😀 and more than eight bytes of ASCII"), std::nullopt);
  EXPECT_EQ(findInvalidUtf8("\0\x7F"s), std::nullopt);
  EXPECT_EQ(findInvalidUtf8("\xFC"), 0U);
  EXPECT_EQ(findInvalidUtf8("Gr\xF6\xDF"
                            "e"),
            2U);
  EXPECT_EQ(findInvalidUtf8("12345678\xE2\x82"), 8U) << "a character that is cut";
  EXPECT_EQ(findInvalidUtf8("\xC0\x80"), 0U) << "an overlong form";
  EXPECT_EQ(findInvalidUtf8("a\xED\xA0\x80"), 1U) << "a surrogate";
  EXPECT_EQ(findInvalidUtf8("\xF4\x90\x80\x80"), 0U) << "beyond the last character";
}

TEST(Text, FindsTheByteWhereverItStands) {
  for (std::size_t length = 0; length < 150; ++length) {
    for (std::size_t at = 0; at < length; ++at) {
      std::string text(length, 'x');
      text[at] = '\x80';
      ASSERT_EQ(findInvalidUtf8(text), at) << length;
      ASSERT_EQ(findInvalidUtf8("ä" + text), at + 2) << length;
    }
  }
}

TEST(Text, DescribesAByte) {
  EXPECT_EQ(describeByte('\xFC'), "byte 0xFC");
  EXPECT_EQ(describeByte('\x09'), "byte 0x09");
}

TEST(Text, ReadsTheNumberAtTheBeginning) {
  HostileLocale const hostile;
  EXPECT_EQ(nearestDouble("1234.5]"), 1234.5);
  EXPECT_EQ(nearestDouble("-1e999,"), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(nearestDouble("4.9e-324 "), std::numeric_limits<double>::denorm_min());
  EXPECT_EQ(nearestDouble("x"), 0.0);
}

TEST(Text, MeasuresTerminalColumns) {
  EXPECT_EQ(displayWidth(""), 0u);
  EXPECT_EQ(displayWidth("Clamp 1"), 7u);
  EXPECT_EQ(displayWidth("Größe"), 5u);
  EXPECT_EQ(displayWidth("漢字"), 4u);
  EXPECT_EQ(displayWidth("e\u0301"), 1u) << "a combining accent";
  EXPECT_EQ(displayWidth("😀"), 2u);
  EXPECT_EQ(displayWidth("␊…\uFFFD"), 3u);
}

TEST(Text, CutsLongTextsForMessages) {
  std::string const sixty(60, 'x');
  EXPECT_EQ(brief(sixty), sixty);
  EXPECT_EQ(brief(sixty + "y"), sixty + "…");
  std::string umlauts;
  for (int i = 0; i < 60; ++i) umlauts += "ä";
  EXPECT_EQ(brief(umlauts), umlauts) << "characters count, not bytes";
  EXPECT_EQ(brief("a\nb"), "a␊b");
}

TEST(Text, QuotesForMessages) {
  EXPECT_EQ(quote(""), "\"\"");
  EXPECT_EQ(quote("Clamp\n1"), "\"Clamp␊1\"");
  EXPECT_EQ(quote(std::string(61, 'x')), '"' + std::string(60, 'x') + "…\"");
}

TEST(Text, WritesNumbersInTheirShortestForm) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(shortestForm(0.0), "0");
  EXPECT_EQ(shortestForm(-0.0), "-0");
  EXPECT_EQ(shortestForm(3.5), "3.5");
  EXPECT_EQ(shortestForm(-1314.547), "-1314.547");
  EXPECT_EQ(shortestForm(0.1), "0.1");
  EXPECT_EQ(shortestForm(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(shortestForm(100000.0), "100000");
  EXPECT_EQ(shortestForm(1e300), "1e+300");
  EXPECT_EQ(shortestForm(5e-324), "5e-324");
  EXPECT_EQ(shortestForm(1.7976931348623157e308), "1.7976931348623157e+308");
  EXPECT_EQ(shortestForm(infinity), "inf");
  EXPECT_EQ(shortestForm(-infinity), "-inf");
  EXPECT_EQ(shortestForm(notANumber), "nan");
  EXPECT_EQ(shortestForm(std::copysign(notANumber, -1.0)), "nan");
}

TEST(Text, AppendsNumbers) {
  std::string text = "a";
  appendShortestForm(text, -2.2250738585072014e-308);
  appendShortestForm(text, -1.25, ',');
  appendShortestForm(text, std::numeric_limits<double>::infinity(), ',');
  appendShortestForm(text, std::copysign(std::numeric_limits<double>::quiet_NaN(), -1.0));
  EXPECT_EQ(text, "a-2.2250738585072014e-308-1,25infnan");
  appendInteger(text, 0);
  appendInteger(text, 18446744073709551615U);
  EXPECT_EQ(text, "a-2.2250738585072014e-308-1,25infnan018446744073709551615");
}

TEST(Text, NumbersReadBackToTheSameDouble) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 20000; ++i) {
    auto const value = std::bit_cast<double>(random());
    if (std::isnan(value)) continue;
    auto const text = shortestForm(value);
    auto const readBack = std::strtod(text.c_str(), nullptr);
    ASSERT_EQ(std::bit_cast<std::uint64_t>(readBack), std::bit_cast<std::uint64_t>(value)) << text;
  }
}

TEST(Text, WritesNumbersTheSameInEveryLocale) {
  HostileLocale const locale;
  std::ostringstream stream;
  stream << 1234.5;
  ASSERT_EQ(stream.str(), "1.234,5");
  EXPECT_EQ(shortestForm(1234567.25), "1234567.25");
}

TEST(Text, ReadsNumbersAsTheCLibraryDoes) {
  EXPECT_EQ(numberFromText("500"), 500.0);
  EXPECT_EQ(numberFromText("-0.5"), -0.5);
  EXPECT_EQ(numberFromText("+1.5e3"), 1500.0);
  EXPECT_EQ(numberFromText(".5"), 0.5);
  EXPECT_EQ(numberFromText("5."), 5.0);
  EXPECT_EQ(numberFromText("-0x1.8p-3"), -0.1875);
  EXPECT_EQ(numberFromText("0XFF"), 255.0);
  EXPECT_EQ(numberFromText("inf"), std::numeric_limits<double>::infinity());
  EXPECT_EQ(numberFromText("-INFINITY"), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(numberFromText("1e999"), std::numeric_limits<double>::infinity()) << "too large";
  EXPECT_EQ(numberFromText("1e-999"), 0.0) << "too small";
  EXPECT_EQ(numberFromText("4.9e-324"), std::numeric_limits<double>::denorm_min());
  EXPECT_EQ(std::bit_cast<std::uint64_t>(numberFromText("-0").value()), 0x8000000000000000u);
  EXPECT_EQ(std::bit_cast<std::uint64_t>(numberFromText("nan").value()), 0x7FF8000000000000u);
  EXPECT_EQ(std::bit_cast<std::uint64_t>(numberFromText("-nan(0x4d2)").value()), 0xFFF80000000004D2u);
}

TEST(Text, ReadsNothingButAWholeNumber) {
  for (auto const* const text :
       {"",   " ",   " 5",  "5 ",       "\t5",  "\n5",    "5\n",   "5N", "5,5", "1.000,5", "0x",
        "1e", "--5", "+-5", "infinite", "nan(", "nan(-)", "1_000", "e5", ".",   "five"}) {
    EXPECT_EQ(numberFromText(text), std::nullopt) << '"' << text << '"';
  }
  EXPECT_EQ(numberFromText("5\0"s), std::nullopt);
}

TEST(Text, ReadsNumbersIndependentlyOfTheLocale) {
  HostileLocale const hostile;
  EXPECT_EQ(numberFromText("1234.5"), 1234.5);
  EXPECT_EQ(numberFromText("1234,5"), std::nullopt);
}

TEST(NumberWithUnit, HasItsUnitBehind) {
  EXPECT_EQ(withUnit(-12.5, "N", 7), "-12.5 N");
  EXPECT_EQ(withUnit(1234.5678, "a\nb", 5), "1234.6 a␊b");
  EXPECT_EQ(withUnit(7, "", 7), "7");
  EXPECT_EQ(withUnit(-12.5, "1.2 N", 7, ','), "-12,5 1.2 N");
}

}  // namespace
}  // namespace Kestrel::ResultTables

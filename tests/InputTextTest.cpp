#include "result_tables/import/InputText.h"

#include <gmock/gmock.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "support/ImportTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double s_infinity = std::numeric_limits<double>::infinity();

struct NumberCase {
  char const* text;
  double value;
};

TEST(ParseNumber, ReadsEveryUsualSpelling) {
  NumberCase const cases[] = {
      {"0", 0.0},
      {"7", 7.0},
      {"+7", 7.0},
      {"-7.25", -7.25},
      {"+.5", 0.5},
      {"1.", 1.0},
      {"0.1000000E+01", 1.0},
      {"-1.122702E-04", -1.122702e-4},
      {"1e3", 1000.0},
      {"1E003", 1000.0},
      {"4.9406564584124654e-324", std::numeric_limits<double>::denorm_min()},
      {"1.7976931348623157e308", std::numeric_limits<double>::max()},
      {"Infinity", s_infinity},
      {"+Infinity", s_infinity},
      {"-Infinity", -s_infinity},
      {"inf", s_infinity},
  };
  for (auto const& c : cases) EXPECT_EQ(parseNumber(c.text), c.value) << c.text;
}

TEST(ParseNumber, ReadsNotANumber) {
  for (auto const* text : {"NaN", "nan", "-NaN"}) {
    auto const value = parseNumber(text);
    ASSERT_TRUE(value.has_value()) << text;
    EXPECT_TRUE(std::isnan(*value)) << text;
  }
}

TEST(ParseNumber, ReadsTheExponentsOfFortran) {
  NumberCase const cases[] = {
      {"1.5D+03", 1500.0},        {"1.5d-3", 0.0015},        {"1.234-105", 1.234e-105},
      {"-9.876+123", -9.876e123}, {"+1.0000-310", 1.0e-310},
  };
  for (auto const& c : cases) EXPECT_EQ(parseNumber(c.text), c.value) << c.text;
}

TEST(ParseNumber, KeepsTheSignOfZero) {
  auto const value = parseNumber("-0.000000E+00");
  ASSERT_TRUE(value.has_value());
  EXPECT_EQ(std::bit_cast<std::uint64_t>(*value), 0x8000000000000000U);
}

TEST(ParseNumber, RefusesEverythingElse) {
  for (auto const* text :
       {"",          "+",        "-",       ".",       "+-1",       "++1",           "--1",
        "-+1",       "1,5",      "1 ",      " 1",      "1x",        "0x10",          "1e",
        "1e+",       "1.5D",     "1.5Dx",   "1.5e3D2", "1.5e3-105", "2024-105",      "1.5-10",
        "1.5-1000",  "1.5-1e5",  "1.5--05", "inf-105", "e5",        "*************", "1e999",
        "-1.0D+400", "1.0e-400", "nanx"}) {
    EXPECT_EQ(parseNumber(text), std::nullopt) << text;
  }
}

TEST(Trimmed, TakesBlanksAndCarriageReturnsOffTheEnds) {
  EXPECT_EQ(trimmed(" \t a b\t \r"), "a b");
  EXPECT_EQ(trimmed(" \t\r"), "");
  EXPECT_EQ(trimmed(""), "");
}

/// What `take` takes off the text, piece by piece.
std::vector<std::string> pieces(std::string_view text, std::string_view (&take)(std::string_view&)) {
  std::vector<std::string> taken;
  for (auto piece = take(text); !piece.empty(); piece = take(text)) taken.emplace_back(piece);
  return taken;
}

TEST(TakeWord, TakesWhatStandsBetweenBlanks) {
  EXPECT_THAT(pieces(" a \t-1.5-2.5 ", takeWord), ElementsAre("a", "-1.5-2.5"));
  EXPECT_THAT(pieces("  ", takeWord), IsEmpty());
}

TEST(TakeNumberText, EndsWhereTheNextNumberBegins) {
  EXPECT_THAT(pieces(" -1.0E+00-2.0E-01+3.5 4.", takeNumberText),
              ElementsAre("-1.0E+00", "-2.0E-01", "+3.5", "4."));
  EXPECT_THAT(pieces("1.5-105-2.5+300-1.5-100.5", takeNumberText),
              ElementsAre("1.5-105", "-2.5+300", "-1.5", "-100.5"));
  EXPECT_THAT(pieces("1.5D-05-2.5d+05", takeNumberText), ElementsAre("1.5D-05", "-2.5d+05"));
}

TEST(TakeNumberText, KeepsWhatIsNotOfAFortranColumn) {
  EXPECT_THAT(pieces("2026-11-22 a-b 1-2 -Infinity", takeNumberText),
              ElementsAre("2026-11-22", "a-b", "1-2", "-Infinity"));
  EXPECT_THAT(pieces("- +-1 E-5", takeNumberText), ElementsAre("-", "+-1", "E-5"));
}

TEST(WithSingleBlanks, LeavesOneBlankBetweenWords) {
  EXPECT_EQ(withSingleBlanks("  a \t b  c "), "a b c");
  EXPECT_EQ(withSingleBlanks(" "), "");
}

TEST(FailAtLine, NamesTheSourceTheLineAndBothSides) {
  EXPECT_EQ(errorOf([] { failAtLine("a.dat", 12, "a number", "none"); }),
            "a.dat: line 12: expected a number, found none");
}

TEST(RefuseWhatIsNotUtf8, NamesLineAndByte) {
  EXPECT_EQ(errorOf([] { refuseWhatIsNotUtf8("a.csv", "time,Größe\n0,1\n"); }), "no error");
  EXPECT_EQ(errorOf([] {
              refuseWhatIsNotUtf8("a.csv",
                                  "time,Gr\xF6\xDF"
                                  "e\n0,1\n");
            }),
            "a.csv: line 1, byte 8: expected UTF-8 text, found byte 0xF6");
  EXPECT_EQ(errorOf([] { refuseWhatIsNotUtf8("a.csv", "ä\n\n\xFF"); }),
            "a.csv: line 3, byte 1: expected UTF-8 text, found byte 0xFF");
  EXPECT_EQ(errorOf([] { refuseWhatIsNotUtf8("a.csv", "t,a\n0,\xE2\x82"); }),
            "a.csv: line 2, byte 3: expected UTF-8 text, found byte 0xE2");
}

TEST(RefuseWhatIsNotUtf8, KeepsTheMessageOnItsLine) {
  EXPECT_EQ(errorOf([] { refuseWhatIsNotUtf8("a\n.csv", "\xFF"); }),
            "a␊.csv: line 1, byte 1: expected UTF-8 text, found byte 0xFF");
  EXPECT_EQ(errorOf([] { failAtLine("a\n.csv", 2, "a", "b"); }), "a␊.csv: line 2: expected a, found b");
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include "result_tables/import/CsvHistories.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <string_view>

#include "support/ImportTesting.h"

namespace Kestrel::ResultTables {
namespace {

using testing::ElementsAre;

Histories read(std::string_view text) { return readCsvHistories("h.csv", text); }

std::vector<double> const& timesOf(Histories const& histories, std::string_view name) {
  return histories.find(name).at(0).table->times;
}

TEST(CsvHistories, OfTheLongFormAreNamedByEntityAndQuantity) {
  auto const histories = read(
      "entity,quantity,time,value\n"
      "C1,fz,0,1.5\n"
      "C2,fz,0,-2\n"
      "C1,fx,0.5,3\n"
      "C1,fz,0.25,+4\n");
  EXPECT_THAT(valuesOf(histories, "C1.fz"), ElementsAre(1.5, 4));
  EXPECT_THAT(timesOf(histories, "C1.fz"), ElementsAre(0, 0.25));
  EXPECT_THAT(valuesOf(histories, "C1.fx"), ElementsAre(3));
  EXPECT_THAT(valuesOf(histories, "C2.fz"), ElementsAre(-2));
}

TEST(CsvHistories, OfTheWideFormAreNamedByTheirHeaders) {
  auto const histories = read("t,C1.fz,punch force\n0,1.5,-2\n0.25,4,+6e1\n");
  EXPECT_THAT(valuesOf(histories, "C1.fz"), ElementsAre(1.5, 4));
  EXPECT_THAT(valuesOf(histories, "punch force"), ElementsAre(-2, 60));
  EXPECT_THAT(timesOf(histories, "punch force"), ElementsAre(0, 0.25));
  EXPECT_TRUE(histories.find("t").empty());
}

TEST(CsvHistories, AreSeparatedByTheFirstSeparatorOfTheHeader) {
  EXPECT_THAT(valuesOf(read("time;a,b\n0;1\n"), "a,b"), ElementsAre(1));
  EXPECT_THAT(valuesOf(read("time\ta;b\n0\t1\n"), "a;b"), ElementsAre(1));
  EXPECT_THAT(valuesOf(read("time,a b\n0,1\n"), "a b"), ElementsAre(1));
  EXPECT_THAT(valuesOf(read("  time   a  b\n 0\t1   2  \n"), "a"), ElementsAre(1));
  EXPECT_THAT(valuesOf(read("time \"a, b; c\" d\n0 1 2\n"), "a, b; c"), ElementsAre(1));
}

TEST(CsvHistories, MayHaveBlanksAroundTheirFields) {
  auto const histories = read(" time ,  a , b\n 0 , 1 ,\t2 \n");
  EXPECT_THAT(valuesOf(histories, "a"), ElementsAre(1));
  EXPECT_THAT(valuesOf(histories, "b"), ElementsAre(2));
}

TEST(CsvHistories, MayHaveCommentsAndEmptyLines) {
  auto const histories = read("# made by hand, \"today\n\ntime,a\n  # first\n0,1\n\n   \n#,,,\n1,2\n");
  EXPECT_THAT(valuesOf(histories, "a"), ElementsAre(1, 2));
}

TEST(CsvHistories, MayHaveCarriageReturnsAByteOrderMarkAndNoLastLineEnd) {
  EXPECT_THAT(valuesOf(read("\xEF\xBB\xBFtime,a\r\n0,1\r\n1,2\r\n\r\n"), "a"), ElementsAre(1, 2));
  EXPECT_THAT(valuesOf(read("time a\r\n0 1 \r\n1 2\r"), "a"), ElementsAre(1, 2));
  EXPECT_THAT(valuesOf(read("time,\"a\"\r\n0,\"1\"\r\n1,2"), "a"), ElementsAre(1, 2));
}

TEST(CsvHistories, MayHaveFieldsInQuotationMarks) {
  auto const histories = read(
      "\"entity\";quantity;time;value\n"
      "\"clamp \"\"left\"\"; no. 1\" ;\"fz\";\"0\";\"1.5\"\n"
      "\"two\nlines\";fz;0;2\n"
      "\"#3\";\"\"\"\";0;3\n");
  EXPECT_THAT(valuesOf(histories, "clamp \"left\"; no. 1.fz"), ElementsAre(1.5));
  EXPECT_THAT(valuesOf(histories, "two\nlines.fz"), ElementsAre(2));
  EXPECT_THAT(valuesOf(histories, "#3.\""), ElementsAre(3));
}

TEST(CsvHistories, HoldNotANumberAndInfinity) {
  auto const histories = read("time,a,b\n0,NaN,Infinity\n1,nan,-inf\n");
  EXPECT_TRUE(std::isnan(valuesOf(histories, "a")[0]));
  EXPECT_TRUE(std::isnan(valuesOf(histories, "a")[1]));
  EXPECT_THAT(valuesOf(histories, "b"),
              ElementsAre(std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()));
}

Histories readWithComma(std::string_view text) { return readCsvHistories("h.csv", text, DecimalMark::comma); }

TEST(CsvHistories, MayHaveDecimalCommas) {
  auto const histories = readWithComma("time;a;b\n0,25;-1,5e3;\"+0,125\"\n1;7;NaN\n");
  EXPECT_THAT(timesOf(histories, "a"), ElementsAre(0.25, 1));
  EXPECT_THAT(valuesOf(histories, "a"), ElementsAre(-1500, 7));
  EXPECT_EQ(valuesOf(histories, "b")[0], 0.125);
  EXPECT_TRUE(std::isnan(valuesOf(histories, "b")[1]));
  EXPECT_THAT(valuesOf(readWithComma("time\ta\n0\t1,5\n"), "a"), ElementsAre(1.5));
  EXPECT_THAT(valuesOf(readWithComma("time  a\n0  1,5\n"), "a"), ElementsAre(1.5));
  EXPECT_THAT(valuesOf(readWithComma("time;a,b\n0;1,5\n"), "a,b"), ElementsAre(1.5));
  EXPECT_THAT(valuesOf(readWithComma("entity;quantity;time;value\nC1;fz;0,5;-2,75\n"), "C1.fz"),
              ElementsAre(-2.75));
}

TEST(CsvHistories, MayHaveARowOfUnitsUnderTheHeader) {
  auto const histories = read("t;a;b;c\n\n[s];N;(mm);\n0;1;2;3\n");
  auto const& table = *histories.find("a").at(0).table;
  EXPECT_THAT(table.units, ElementsAre("N", "mm", ""));
  EXPECT_EQ(table.timeUnit, "s");
  EXPECT_THAT(valuesOf(histories, "c"), ElementsAre(3));
  EXPECT_THAT(read("t,a,b\n-,%,N/mm²\n0,1,2\n").find("a").at(0).table->units, ElementsAre("%", "N/mm²"));
  EXPECT_TRUE(read("t,a\n0,1\n").find("a").at(0).table->units.empty());
}

TEST(CsvHistories, OfTheLongFormMayHaveOneUnitForAllValues) {
  for (auto const* nothing : {";", "-;-", "[-];[-]"}) {
    auto const histories =
        read(fmt::format("entity;quantity;time;value\n{};ms;kN\nC1;fz;0;1\nC2;fz;0;2\n", nothing));
    EXPECT_THAT(histories.find("C1.fz").at(0).table->units, ElementsAre("kN"));
    EXPECT_THAT(histories.find("C2.fz").at(0).table->units, ElementsAre("kN"));
    EXPECT_EQ(histories.find("C2.fz").at(0).table->timeUnit, "ms");
  }
}

TEST(CsvHistories, HaveUnitsOnlyWhereNoValueIsLost) {
  EXPECT_EQ(errorOf([] { read("t;a\n0,5;1,5\n1;2\n"); }),
            R"(h.csv: line 2: expected a time, found "0,5" (--decimal-comma reads decimal commas))");
  EXPECT_EQ(errorOf([] { read("t;a\n1.234,5;1.234,5\n1;2\n"); }),
            R"(h.csv: line 2: expected a time, found "1.234,5")");
  EXPECT_EQ(errorOf([] { read("t;a\n22.11.2026 10:00;1\n"); }),
            R"(h.csv: line 2: expected a time, found "22.11.2026 10:00")");
  EXPECT_EQ(errorOf([] { read("t;a\ns;N\nms;kN\n0;1\n"); }), R"(h.csv: line 3: expected a time, found "ms")");
  EXPECT_EQ(errorOf([] { read("entity;quantity;time;value\nC1;fz;O;I\n"); }),
            R"(h.csv: line 2: expected a time, found "O")");
  EXPECT_EQ(errorOf([] { read("t;a\n;\ns;N\n"); }),
            "h.csv: line 3: expected rows of values after the header, found the end of the file");
}

TEST(CsvHistories, HaveNoValueWhereACellIsEmpty) {
  auto const histories = read("t;a;b;c\ns;N;mm;\n0;1;;\n0.5;;4;\"\"\n1;3;NaN;\n;;;\n");
  EXPECT_THAT(valuesOf(histories, "a"), ElementsAre(1, 3));
  EXPECT_THAT(timesOf(histories, "a"), ElementsAre(0, 1));
  EXPECT_THAT(timesOf(histories, "b"), ElementsAre(0.5, 1));
  EXPECT_EQ(valuesOf(histories, "b")[0], 4);
  EXPECT_TRUE(std::isnan(valuesOf(histories, "b")[1])) << "a value, unlike an empty cell";
  EXPECT_THAT(valuesOf(histories, "c"), ElementsAre());
  EXPECT_THAT(histories.find("b").at(0).table->units, ElementsAre("mm"));
  EXPECT_EQ(histories.find("b").at(0).table->timeUnit, "s");
}

TEST(CsvHistories, OfTheLongFormHaveNoValueWhereACellIsEmpty) {
  auto const histories =
      read("entity,quantity,time,value\nC1,fz,0,1\nC1,fz,0.5,\nC1,fz,1,3\nC2,fz,0,\n,,,\n");
  EXPECT_THAT(valuesOf(histories, "C1.fz"), ElementsAre(1, 3));
  EXPECT_THAT(timesOf(histories, "C1.fz"), ElementsAre(0, 1));
  EXPECT_THAT(valuesOf(histories, "C2.fz"), ElementsAre());
}

TEST(CsvHistories, AskForATimeAlsoWhereARowHasNoValue) {
  EXPECT_EQ(errorOf([] { read("t,a\n,1\n"); }), R"(h.csv: line 2: expected a time, found "")");
  EXPECT_EQ(errorOf([] { read("t,a\n1,1\n0.5,\n"); }),
            "h.csv: line 3: expected a time not before 1, found 0.5");
  EXPECT_EQ(errorOf([] { read("entity,quantity,time,value\nA,f,1,1\nA,f,0.5,\n"); }),
            "h.csv: line 3: expected a time not before 1, found 0.5");
}

TEST(CsvHistories, SayThatTheDecimalMarkIsTheOtherOne) {
  EXPECT_EQ(errorOf([] { read("time;a\n0;1,5\n"); }),
            R"(h.csv: line 2: expected a number, found "1,5" (--decimal-comma reads decimal commas))");
  EXPECT_EQ(errorOf([] { read("time a\n0 -1,5e3\n"); }),
            R"(h.csv: line 2: expected a number, found "-1,5e3" (--decimal-comma reads decimal commas))");
  EXPECT_EQ(errorOf([] { read("time,a\n0,1,5\n"); }),
            "h.csv: line 2: expected as many fields as in the header (2), found 3 (decimal commas need "
            "semicolons between the fields, and --decimal-comma)");
  EXPECT_EQ(errorOf([] { read("time,a\n0,1,x\n"); }),
            "h.csv: line 2: expected as many fields as in the header (2), found 3");
  EXPECT_EQ(errorOf([] { read("time,a\n0,1,2,3,4\n"); }),
            "h.csv: line 2: expected as many fields as in the header (2), found 5");
  EXPECT_EQ(errorOf([] { readWithComma("time;a\n0;1.5\n"); }),
            R"(h.csv: line 2: expected a number with a decimal comma, found "1.5")");
  EXPECT_EQ(errorOf([] { readWithComma("time;a\n0.5;1\n"); }),
            R"(h.csv: line 2: expected a time with a decimal comma, found "0.5")");
  EXPECT_EQ(errorOf([] { readWithComma("time;a\n0;1.234,5\n"); }),
            R"(h.csv: line 2: expected a number, found "1.234,5")");
  EXPECT_EQ(errorOf([] { readWithComma("time;a\n0;1,234,5\n"); }),
            R"(h.csv: line 2: expected a number, found "1,234,5")");
  EXPECT_EQ(errorOf([] { readWithComma("\ntime,a\n0,1\n"); }),
            "h.csv: line 2: expected semicolons, tabs or blanks between the fields, as commas are decimal, "
            R"(found ",")");
}

TEST(CsvHistories, MayHaveTheSameTimeTwice) {
  EXPECT_THAT(timesOf(read("time,a\n0,1\n0,2\n"), "a"), ElementsAre(0, 0));
}

struct BadTable {
  std::string_view text;
  char const* message;
};

TEST(CsvHistories, RefuseWhatIsNoTable) {
  BadTable const cases[] = {
      {"", "h.csv: line 1: expected a header, found the end of the file"},
      {"\n# nothing\n", "h.csv: line 1: expected a header, found the end of the file"},
      {"time,a\n", "h.csv: line 1: expected rows of values after the header, found the end of the file"},
      {"entity,quantity,time,value\n",
       "h.csv: line 1: expected rows of values after the header, found the end of the file"},
      {"time\n0\n",
       R"(h.csv: line 1: expected the header "entity,quantity,time,value", or a time and the names of histories, found "time")"},
      {"0,1\n1,2\n", "h.csv: line 1: expected a header, found the number 0"},
      {"time,a,\n0,1,2\n", "h.csv: line 1: expected the name of a history, found an empty field"},
      {"time,a,b,a\n0,1,2,3\n",
       R"(h.csv: line 1: expected another name for another history, found a second "a")"},
      {"time,a,b\n0,1\n", "h.csv: line 2: expected as many fields as in the header (3), found 2"},
      {"# x\ntime,a,b\n\n0,1,2,x\n", "h.csv: line 4: expected as many fields as in the header (3), found 4"},
      {"time a\n0 1 2\n", "h.csv: line 2: expected as many fields as in the header (2), found 3"},
      {"time;a\n0;1,5x\n", R"(h.csv: line 2: expected a number, found "1,5x")"},
      {"time,a\n0,1e999\n", R"(h.csv: line 2: expected a number, found "1e999")"},
      {"time,a\nx,1\n", R"(h.csv: line 2: expected a time, found "x")"},
      {"time,a\nInfinity,1\n", R"(h.csv: line 2: expected a time, found "Infinity")"},
      {"time,a\n0.5,1\n0.25,1\n", "h.csv: line 3: expected a time not before 0.5, found 0.25"},
      {"entity,quantity,time,value\nA,f,1,1\nB,f,0,1\nA,f,0.5,1\n",
       "h.csv: line 4: expected a time not before 1, found 0.5"},
      {"entity,quantity,time,value\nA,f,1\n",
       "h.csv: line 2: expected as many fields as in the header (4), found 3"},
      {"entity,quantity,time,value\n,f,1,1\n",
       "h.csv: line 2: expected an entity and a quantity, found an empty field"},
      {"entity,quantity,time,value\nA,\"\",1,1\n",
       "h.csv: line 2: expected an entity and a quantity, found an empty field"},
      {"entity,quantity,time,value\na.b,c,1,1\na,b.c,1,1\n",
       R"(h.csv: line 3: expected another name for another history, found a second "a.b.c")"},
      {"time,a\n0,\"1\n2,3\n", "h.csv: line 2: expected a closing quotation mark, found the end of the file"},
      {"time,\"a\" b\n0,1\n",
       R"(h.csv: line 1: expected a separator after the closing quotation mark, found "b")"},
      {"time,5\" pipe\n0,1\n",
       R"(h.csv: line 1: expected quotation marks around a whole field only, found "5"")"},
      {"time,\"two\nlines\"\n0,x\n", R"(h.csv: line 3: expected a number, found "x")"},
  };
  for (auto const& c : cases) {
    EXPECT_EQ(errorOf([&c] { read(c.text); }), c.message) << c.text;
  }
}

std::string printed(double value, std::mt19937_64& random) {
  auto text = fmt::format("{}", value);
  if (!std::signbit(value) && random() % 2 == 0) text.insert(0, 1, '+');
  return random() % 4 == 0 ? '"' + text + '"' : text;
}

TEST(CsvHistories, OfTheWideFormComeBackBitForBitFromEverySeparator) {
  std::mt19937_64 random(11);
  for (auto const* separator : {",", ";", "\t", " ", "   ", " , "}) {
    for (int round = 0; round < 20; ++round) {
      auto const count = 1 + random() % 6;
      auto const* const lineEnd = random() % 2 == 0 ? "\n" : "\r\n";
      std::vector<std::vector<double>> written(count);
      std::string text = "time";
      for (std::size_t i = 0; i < count; ++i) text += fmt::format("{}S{}.f", separator, i);
      text += lineEnd;
      for (int time = 0; time < 30; ++time) {
        if (random() % 8 == 0) text += fmt::format("# comment{}{}", separator, lineEnd);
        text += fmt::format("{}", 0.125 * time);
        for (auto& series : written) {
          series.push_back(anyDouble(random));
          text += separator + printed(series.back(), random);
        }
        text += lineEnd;
      }
      auto const histories = read(text);
      for (std::size_t i = 0; i < count; ++i)
        expectSameBits(valuesOf(histories, fmt::format("S{}.f", i)), written[i]);
    }
  }
}

TEST(CsvHistories, OfTheLongFormComeBackBitForBitFromEverySeparator) {
  std::mt19937_64 random(13);
  for (auto const* separator : {",", ";", "\t", "  "}) {
    for (int round = 0; round < 20; ++round) {
      std::vector<std::vector<double>> written(4);
      std::string text = fmt::format("entity{0}quantity{0}time{0}value\n", separator);
      for (int time = 0; time < 100; ++time) {
        auto const i = time < 4 ? static_cast<std::size_t>(time) : random() % written.size();
        written[i].push_back(anyDouble(random));
        text += fmt::format("S{1}{0}f{0}{2}{0}{3}\n", separator, i, 0.125 * time,
                            printed(written[i].back(), random));
      }
      auto const histories = read(text);
      for (std::size_t i = 0; i < written.size(); ++i) {
        expectSameBits(valuesOf(histories, fmt::format("S{}.f", i)), written[i]);
      }
    }
  }
}

TEST(CsvHistories, AreTextInUtf8AlsoWhereItIsPassedOver) {
  EXPECT_EQ(errorOf([] { (void)read("time,\"Kraft \xDC\"\n0,1\n"); }),
            "h.csv: line 1, byte 13: expected UTF-8 text, found byte 0xDC");
  EXPECT_EQ(errorOf([] { (void)read("time,a\n# \xFF\n0,1\n"); }),
            "h.csv: line 2, byte 3: expected UTF-8 text, found byte 0xFF");
}

// Rows behind the first are read as numbers without fields where they are plain enough; what follows is about
// the others among them.

TEST(CsvHistories, HaveTheSameNumbersInEverySpellingAndRow) {
  auto const histories = read(
      "t,a,b\n0,1,1\n1,+1.5,.5\n2,2.,1e2\n03,-0.0,007.25\n4,1d3,-1.5-105\n5,inf,-Infinity\n"
      "6,9007199254740993,0.1234567890123456789012\n 7 ,\t8, 9\t\n8,4.9e-324,1.7976931348623157e308\n");
  expectSameBits(valuesOf(histories, "a"), {1, 1.5, 2, -0.0, 1000, std::numeric_limits<double>::infinity(),
                                            9007199254740992, 8, 5e-324});
  expectSameBits(valuesOf(histories, "b"),
                 {1, 0.5, 100, 7.25, -1.5e-105, -std::numeric_limits<double>::infinity(),
                  0.1234567890123456789012, 9, 1.7976931348623157e308});
  EXPECT_THAT(timesOf(histories, "a"), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8));
}

TEST(CsvHistories, MayHaveDecimalCommasAndGapsInEveryRow) {
  auto const histories =
      readCsvHistories("h.csv", "t;a;b\n0;1,5;\n0,5;;-2,25e1\n1; ;3\n1,5;4;5\n;;\n2;6;7", DecimalMark::comma);
  EXPECT_THAT(timesOf(histories, "a"), ElementsAre(0, 1.5, 2));
  EXPECT_THAT(valuesOf(histories, "a"), ElementsAre(1.5, 4, 6));
  EXPECT_THAT(timesOf(histories, "b"), ElementsAre(0.5, 1, 1.5, 2));
  EXPECT_THAT(valuesOf(histories, "b"), ElementsAre(-22.5, 3, 5, 7));
}

TEST(CsvHistories, OfTheLongFormMayFollowEachOtherInAnyOrder) {
  auto const histories = read(
      "entity,quantity,time,value\n"
      "\"two\nlines\",f,0,1\n\"two\nlines\",f,1,2\n\"two\nlines\",f,2,3\n"
      "\"B, left\",f,0,4\n\"B, left\",f,1,5\n\"B, left\",f,2,6\n"
      "C,f,0,7\n\"B, left\",f,3,8\nC,f,1,9\n\"B, left\",f,4,\nC ,f,2,10\nC,f,3,\"11\"\n\"B, left\",f,5,12\n");
  EXPECT_THAT(valuesOf(histories, "two\nlines.f"), ElementsAre(1, 2, 3));
  EXPECT_THAT(valuesOf(histories, "B, left.f"), ElementsAre(4, 5, 6, 8, 12));
  EXPECT_THAT(timesOf(histories, "B, left.f"), ElementsAre(0, 1, 2, 3, 5));
  EXPECT_THAT(valuesOf(histories, "C.f"), ElementsAre(7, 9, 10, 11));
}

TEST(CsvHistories, SayTheLineOfARowBehindPlainOnes) {
  BadTable const cases[] = {
      {"t,a\n0,1\n1,2\n2,x\n3,4\n", R"(h.csv: line 4: expected a number, found "x")"},
      {"t,a\n0,1\n1,2\n2,1e400\n", R"(h.csv: line 4: expected a number, found "1e400")"},
      {"t,a\n0,1\n1,2\n0.5,2\n", "h.csv: line 4: expected a time not before 1, found 0.5"},
      {"t,a\n0,1\n1,2\nnan,2\n", R"(h.csv: line 4: expected a time, found "nan")"},
      {"t,a\n0,1\n1,2\n,2\n", R"(h.csv: line 4: expected a time, found "")"},
      {"t,a\n0,1\n1,2\n2,3,\n", "h.csv: line 4: expected as many fields as in the header (2), found 3"},
      {"t,a\n0,1\n1,2\n2\n3,4\n", "h.csv: line 4: expected as many fields as in the header (2), found 1"},
      {"t,a\n0,1\n1,2\n2,3\"\n",
       R"(h.csv: line 4: expected quotation marks around a whole field only, found "3"")"},
      {"t a\n0 1\n1 2\n2 3\r 4\n", "h.csv: line 4: expected as many fields as in the header (2), found 3"},
      {"entity,quantity,time,value\nA,f,0,1\nA,f,1,2\nA,f,2,3\nA,f,1,4\n",
       "h.csv: line 5: expected a time not before 2, found 1"},
      {"entity,quantity,time,value\n\"A\n\",f,0,1\n\"A\n\",f,1,2\n\"A\n\",f,2,3\n\"A\n\",f,3,x\n",
       R"(h.csv: line 8: expected a number, found "x")"},
  };
  for (auto const& c : cases) EXPECT_EQ(errorOf([&c] { read(c.text); }), c.message) << c.text;
}

/// A table in either form as it is usually written, and then damaged or not in some places, but for quotation
/// marks.
std::string genTable(std::mt19937_64& random, char separator, char point) {
  auto const number = [&] {
    auto text = fmt::format("{:.{}g}", anyDouble(random), 1 + random() % 20);
    if (random() % 2 == 0)
      text = fmt::format("{:.{}f}", 0.001 * static_cast<double>(random() % 1000000), random() % 12);
    std::replace(text.begin(), text.end(), '.', point);
    return text;
  };
  bool const isLong = random() % 2 == 0;
  std::string text = isLong ? "entity,quantity,time,value\n" : "t,a,b\n";
  std::replace(text.begin(), text.end(), ',', separator);
  auto const histories = 1 + random() % 3;
  for (unsigned int row = 0; row < 10; ++row) {
    if (isLong) text += fmt::format("C{1}{0}f{0}", separator, row % histories);
    text += std::to_string(row) + separator + number();
    if (!isLong) text += separator + number();
    text += random() % 4 == 0 ? "\r\n" : "\n";
  }
  constexpr std::string_view damage = "0123456789.,;  \t\r\n-+eEdnaif#x\0\xC3\xA4";
  for (auto count = random() % 4; count > 0; --count) {
    auto const place = random() % text.size();
    auto const length = random() % 3;
    if (random() % 2 == 0)
      text.replace(place, length, 1, damage[random() % damage.size()]);
    else
      text.erase(place, length);
  }
  return text;
}

/// The table with a comment before each line, behind which no row is read as numbers without fields.
std::string withComments(std::string const& table) {
  std::string text;
  for (char const c : table) {
    text += c;
    if (c == '\n') text += "#\n";
  }
  return text;
}

/// All that the histories are, or the message with the line that it had before there were comments.
std::string describe(std::string_view text, DecimalMark mark, bool hasComments) {
  try {
    std::string out;
    auto const histories = readCsvHistories("h.csv", text, mark);
    for (auto const& table : histories.tables()) {
      out += fmt::format("{} {} {}\n", table.entity, table.timeUnit, fmt::join(table.components, " "));
      for (auto const* list : {&table.times, &table.values}) {
        for (double const number : *list) out += fmt::format("{:x} ", std::bit_cast<std::uint64_t>(number));
      }
      out += fmt::format("{}\n", fmt::join(table.units, " "));
    }
    return out;
  } catch (Error const& error) {
    std::string message = error.what();
    auto const place = message.find("line ") + 5;
    std::size_t length = 0;
    auto const line = std::stoul(message.substr(place), &length);
    return message.replace(place, length, std::to_string(hasComments ? (line + 1) / 2 : line));
  }
}

TEST(CsvHistories, AreTheSameHoweverTheirRowsAreRead) {
  std::mt19937_64 random(17);
  std::size_t tables = 0;
  for (int round = 0; round < 1000; ++round) {
    for (char const separator : {',', ';', '\t', ' '}) {
      auto const mark = separator != ',' && random() % 2 == 0 ? DecimalMark::comma : DecimalMark::point;
      auto const text = genTable(random, separator, mark == DecimalMark::comma ? ',' : '.');
      auto const expected = describe(withComments(text), mark, true);
      ASSERT_EQ(describe(text, mark, false), expected) << text;
      tables += expected.starts_with("h.csv") ? 0U : 1U;
    }
  }
  EXPECT_GT(tables, 1000U) << "too many tables are damaged";
}

}  // namespace
}  // namespace Kestrel::ResultTables

#include "result_tables/json/JsonReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "result_tables/base/Error.h"
#include "result_tables/base/Text.h"
#include "support/HostileLocale.h"

namespace Kestrel::ResultTables {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;

constexpr auto s_required = JsonMember::Presence::required;
constexpr auto s_optional = JsonMember::Presence::optional;

std::string errorOf(std::string const& text, JsonShape const& shape) {
  try {
    JsonReader("x.json").read(text, shape);
    return "no error";
  } catch (Error const& error) {
    return error.what();
  }
}

JsonShape anyString() {
  return jsonString([](std::string_view) {});
}
JsonShape anyNumber() {
  return jsonNumber([](double) {});
}
JsonShape anySeriesNumber() {
  return jsonSeriesNumber([](double) {});
}
JsonShape smallInteger() {
  return jsonInteger(255, [](std::uint64_t) {});
}

/// An array of objects with a member of every kind.
JsonShape everything() {
  return jsonArray(jsonObject({
      {"string", s_optional, anyString()},
      {"number", s_optional, anyNumber()},
      {"integer", s_optional, smallInteger()},
      {"boolean", s_optional, jsonBoolean([](bool) {})},
      {"numbers", s_optional, jsonArray(anySeriesNumber())},
  }));
}

std::string stringOf(std::string const& text) {
  std::string result;
  JsonReader("x.json").read(text, jsonString([&](std::string_view value) { result = value; }));
  return result;
}

double numberOf(std::string const& text) {
  double result = 0.0;
  JsonReader("x.json").read(text, jsonSeriesNumber([&](double value) { result = value; }));
  return result;
}

std::uint64_t bitsOf(std::string const& text) { return std::bit_cast<std::uint64_t>(numberOf(text)); }

// --- values -----------------------------------------------------------------------------------------------

TEST(JsonReader, DecodesStrings) {
  EXPECT_EQ(stringOf(R"("")"), "");
  EXPECT_EQ(stringOf(R"("\"\\\/\b\f\n\r\t")"), "\"\\/\b\f\n\r\t");
  EXPECT_EQ(stringOf(R"("\u0041\u00e4\u20AC\ud83d\uDE00")"), "Aä€😀");
  EXPECT_EQ(stringOf("\"Größe 漢 😀 \x7F\""), "Größe 漢 😀 \x7F");
  EXPECT_EQ(stringOf(R"("a\u0000b")"), "a\0b"s);
  EXPECT_EQ(stringOf(R"("\uD7FF\uE000 \\udc00")"), "\uD7FF\uE000 \\udc00") << "next to the surrogates";
  std::string const lengthy(100'000, 'x');
  EXPECT_EQ(stringOf('"' + lengthy + '"'), lengthy);
}

TEST(JsonReader, ReadsTheNearestDouble) {
  EXPECT_EQ(numberOf("3.5"), 3.5);
  EXPECT_EQ(numberOf("-7.25e+2"), -725.0);
  EXPECT_EQ(numberOf("1E-2"), 0.01);
  EXPECT_EQ(numberOf("0.1"), 0.1);
  EXPECT_EQ(numberOf("9007199254740993"), 9007199254740992.0) << "half way, the even neighbour";
  EXPECT_EQ(numberOf("123456789012345678901234567890"), 123456789012345678901234567890.0);
  EXPECT_EQ(numberOf("1.7976931348623157e308"), std::numeric_limits<double>::max());
  EXPECT_EQ(numberOf("179769313486231570" + std::string(291, '0')), std::numeric_limits<double>::max());
  EXPECT_EQ(numberOf("2.2250738585072011e-308"), 2.2250738585072011e-308);
  EXPECT_EQ(numberOf("0." + std::string(400, '0') + "1e402"), 10.0);
  EXPECT_EQ(numberOf("0." + std::string(100'000, '3')), 1.0 / 3.0);
  EXPECT_EQ(numberOf("1" + std::string(300, '0') + "e-300"), 1.0);
}

TEST(JsonReader, KeepsTheSignOfZeroAndSubnormals) {
  EXPECT_EQ(bitsOf("0"), 0u);
  EXPECT_EQ(bitsOf("-0"), 0x8000000000000000u);
  EXPECT_EQ(bitsOf("-0.0e0"), 0x8000000000000000u);
  EXPECT_EQ(bitsOf("5e-324"), 1u);
  EXPECT_EQ(bitsOf("2.5e-324"), 1u) << "more than half of the smallest subnormal";
  EXPECT_EQ(bitsOf("2.4e-324"), 0u) << "less than half";
  EXPECT_EQ(bitsOf("1e-400"), 0u);
  EXPECT_EQ(bitsOf("-1e-400"), 0x8000000000000000u);
  EXPECT_EQ(bitsOf("1e-99999999999999999999"), 0u);
}

TEST(JsonReader, ReadsWhatIsNotFiniteInSeries) {
  EXPECT_TRUE(std::isnan(numberOf("null")));
  EXPECT_EQ(numberOf("\"Infinity\""), std::numeric_limits<double>::infinity());
  EXPECT_EQ(numberOf("\"-Infinity\""), -std::numeric_limits<double>::infinity());
}

TEST(JsonReader, ReadsIntegersUpToTheLargest) {
  std::vector<std::uint64_t> integers;
  auto const integer =
      jsonInteger(18446744073709551615U, [&](std::uint64_t value) { integers.push_back(value); });
  JsonReader("x.json").read("[0, 255, 18446744073709551615]", jsonArray(integer));
  EXPECT_THAT(integers, ElementsAre(0u, 255u, 18446744073709551615u));
}

TEST(JsonReader, ReadsBooleansAndNull) {
  std::vector<int> seen;
  auto const boolean = jsonBoolean([&](bool value) { seen.push_back(value ? 1 : 0); });
  JsonReader("x.json").read("[true, null, false]",
                            jsonArray(jsonOrNull(boolean, [&] { seen.push_back(-1); })));
  EXPECT_THAT(seen, ElementsAre(1, -1, 0));
}

TEST(JsonReader, CallsTheFunctionsOfAnObjectInOrder) {
  std::string log;
  auto const shape = jsonObject(
      {{"a", s_required, jsonNumber([&](double) { log += "a "; })},
       {"b", s_optional, jsonString([&](std::string_view) { log += "b "; })},
       {"c", s_optional,
        jsonArray(
            jsonBoolean([&](bool) { log += "c "; }), [&] { log += "[ "; }, [&] { log += "] "; })}},
      [&] { log += "{ "; }, [&] { log += "} "; });
  JsonReader("x.json").read(" { \"c\" : [ true , false ] , \"a\" : 1 } ", shape);
  EXPECT_EQ(log, "{ [ c c ] a } ");
}

TEST(JsonReader, ReadsObjectsWithNamesOfTheirOwn) {
  std::map<std::string, double> numbers;
  std::string current;
  bool hasBegun = false;
  auto const onName = [&](std::string_view name) {
    current = name;
    return numbers.emplace(name, 0.0).second;
  };
  auto const shape =
      jsonMap(onName, jsonNumber([&](double value) { numbers[current] = value; }), [&] { hasBegun = true; });
  JsonReader("x.json").read(R"({"": 1, "a\nb": 2})", shape);
  EXPECT_TRUE(hasBegun);
  EXPECT_THAT(numbers, ElementsAre(std::pair("", 1.0), std::pair("a\nb", 2.0)));

  numbers.clear();
  EXPECT_EQ(errorOf(R"({"a": 1, "b": 2, "a": 3})", shape),
            "x.json: /a: expected each member once, found a second \"a\"");
}

TEST(JsonReader, MayReadOneDocumentAfterAnother) {
  std::vector<double> numbers;
  auto const shape = jsonArray(jsonNumber([&](double value) { numbers.push_back(value); }));
  JsonReader json("x.json");
  json.read("[1]", shape);
  EXPECT_THROW(json.read("[2, [", shape), Error);
  json.read("[3]", shape);
  EXPECT_THAT(numbers, ElementsAre(1.0, 2.0, 3.0));
}

TEST(JsonReader, ReadsNumbersTheSameInEveryLocale) {
  HostileLocale const locale;
  EXPECT_EQ(numberOf("1234.5"), 1234.5);
  EXPECT_EQ(numberOf("4.9e-324"), 4.9e-324);
  EXPECT_EQ(bitsOf("123.5e-400"), 0u);
  EXPECT_EQ(errorOf("1234567.5e400", anyNumber()),
            "x.json: document: expected a number within the range of doubles, found 1234567.5e400");
  EXPECT_EQ(errorOf("{}", anyNumber()), "x.json: document: expected a number, found an object");
}

// --- at once ----------------------------------------------------------------------------------------------

/// Takes what has no bracket in it and notes it.
JsonReadAtOnce takingFlatTexts(std::vector<std::string>& taken) {
  return [&taken](char const* at, char const* end) -> char const* {
    std::string_view const rest(at, static_cast<std::size_t>(end - at));
    auto const bracket = rest.find_first_of("[]{}");
    if (bracket == rest.npos || rest[bracket] == '[' || rest[bracket] == '{') return nullptr;
    taken.emplace_back(rest.substr(0, bracket));
    return at + bracket;
  };
}

/// What happens on reading the text as arrays of numbers and objects with a member "n", some of them at once.
std::vector<std::string> eventsOf(std::string const& text, std::vector<std::string>& taken) {
  std::vector<std::string> events;
  auto const noted = [&events](char const* event) {
    return [&events, event] { events.emplace_back(event); };
  };
  auto const number =
      jsonNumber([&events](double value) { events.push_back(std::to_string(static_cast<int>(value))); });
  auto const array = jsonAtOnce(jsonArray(number, noted("["), noted("]")), takingFlatTexts(taken));
  auto const object =
      jsonAtOnce(jsonObject({{"n", JsonMember::Presence::required, number}}, noted("{"), noted("}")),
                 takingFlatTexts(taken));
  JsonReader json("x.json");
  json.read(text, jsonObject({{"arrays", JsonMember::Presence::optional, jsonArray(array)},
                              {"objects", JsonMember::Presence::optional, jsonArray(object)}}));
  return events;
}

TEST(JsonReader, LeavesToAFunctionWhatThatReadsAtOnce) {
  std::vector<std::string> taken;
  EXPECT_THAT(eventsOf(R"({"arrays": [[1, 2], []], "objects": [ {"m": "?"} ]})", taken),
              ElementsAre("[", "]", "[", "]", "{", "}"));
  EXPECT_THAT(taken, ElementsAre("1, 2", "", R"("m": "?")"));
}

TEST(JsonReader, ReadsByItselfWhatTheFunctionLeaves) {
  std::vector<std::string> taken;
  EXPECT_THAT(eventsOf(R"({"arrays": [[1, 2]]})", taken), ElementsAre("[", "]"));
  auto const leaving = [](char const*, char const*) -> char const* { return nullptr; };
  std::vector<double> numbers;
  auto const number = jsonNumber([&numbers](double value) { numbers.push_back(value); });
  JsonReader("x.json").read("[1, 2]", jsonAtOnce(jsonArray(number), leaving));
  EXPECT_THAT(numbers, ElementsAre(1, 2));
  EXPECT_EQ(errorOf(R"({"m": 1})",
                    jsonAtOnce(jsonObject({{"n", JsonMember::Presence::required, number}}), leaving)),
            "x.json: /m: expected one of the members n, found \"m\"");
}

TEST(JsonReader, GivesPlacesBehindWhatWasReadAtOnce) {
  std::vector<std::string> taken;
  try {
    eventsOf(R"({"arrays": [[1, 2], [3], [[4]]]})", taken);
    FAIL();
  } catch (Error const& error) {
    EXPECT_STREQ(error.what(), "x.json: /arrays/2/0: expected a number, found an array");
  }
}

TEST(JsonReader, CountsTheLinesOfATextThatWasForgotten) {
  std::string text = "[1,\n\n 2, \"\xC3\xA4\", 3,\n  \"\xC3\xA4\xC3\xA4\", 4 5]";
  JsonReader json("x.json");
  JsonShape element = jsonNumber([&](double) {
    auto const read = static_cast<std::size_t>(json.at() - text.data());
    json.forgetBefore(json.at());
    std::fill_n(text.begin(), read, '\n');
  });
  element.onString = [](std::string_view) {};
  try {
    json.read(text, jsonArray(element));
    FAIL();
  } catch (Error const& error) {
    EXPECT_STREQ(error.what(),
                 "x.json: line 4, column 11: expected a comma or a closing bracket, found \"5\"");
  }
}

// --- what is no JSON --------------------------------------------------------------------------------------

struct BadText {
  std::string text;
  std::string message;  ///< behind "x.json: "
};

BadText const s_badTexts[] = {
    {"", "line 1, column 1: expected a JSON document, found the end of the file"},
    {" \r\n\t", "line 2, column 2: expected a JSON document, found the end of the file"},
    {"\0"s, "line 1, column 1: expected a JSON document, found a zero byte"},
    {"\xEF\xBB\xBF[]", "line 1, column 1: expected a JSON value, found a byte order mark"},
    {"\xFF\xFE[\0]\0"s, "line 1, column 1: expected a JSON value, found byte 0xFF"},
    {"ä", "line 1, column 1: expected a JSON value, found \"ä\""},
    {"[", "line 1, column 2: expected a JSON value, found the end of the file"},
    {"[]\n]", "line 2, column 1: expected the end of the file after the document, found \"]\""},
    {"[] []", "line 1, column 4: expected the end of the file after the document, found \"[\""},
    {"[]\n\0"s, "line 2, column 1: expected the end of the file after the document, found a zero byte"},
    {"[\0]"s, "line 1, column 2: expected a JSON value, found a zero byte"},
    {"[{\"numbers\": [\0]}]"s, "line 1, column 15: expected a JSON value, found a zero byte"},
    {"[{},]", "line 1, column 5: expected a JSON value, found \"]\""},
    {"[{} {}]", "line 1, column 5: expected a comma or a closing bracket, found \"{\""},
    {"[{}}", "line 1, column 4: expected a comma or a closing bracket, found \"}\""},
    {"[{", "line 1, column 3: expected a member name in quotation marks, found the end of the file"},
    {"[{,", "line 1, column 3: expected a member name in quotation marks, found \",\""},
    {"[{number: 1}]", "line 1, column 3: expected a member name in quotation marks, found \"number\""},
    {"[{'number': 1}]", "line 1, column 3: expected a member name in quotation marks, found \"'\""},
    {"[{\"number\" 1}]", "line 1, column 12: expected a colon after the member name, found \"1\""},
    {"[{\"number\":}]", "line 1, column 12: expected a JSON value, found \"}\""},
    {"[{\"number\": 1,}]", "line 1, column 15: expected a member name in quotation marks, found \"}\""},
    {"[{\"number\": 1]", "line 1, column 14: expected a comma or a closing brace, found \"]\""},
    {"[{\"numbers\": [1}]", "line 1, column 16: expected a comma or a closing bracket, found \"}\""},
    {"[/* none */]", "line 1, column 2: expected a JSON value, found \"/\""},
    // words
    {"[nul]", "line 1, column 2: expected a JSON value, found \"nul\""},
    {"[{\"boolean\":\n True}]", "line 2, column 2: expected a JSON value, found \"True\""},
    {"[{\"boolean\": truely}]", "line 1, column 18: expected a comma or a closing brace, found \"ly\""},
    {"[{\"boolean\": falsch}]", "line 1, column 14: expected a JSON value, found \"falsch\""},
    {"[{\"number\": NaN}]", "line 1, column 13: expected a JSON value, found \"NaN\""},
    {"[{\"number\": -Infinity}]", "line 1, column 13: expected a JSON value, found \"-Infinity\""},
    {"[" + std::string(100, 'x'),
     "line 1, column 2: expected a JSON value, found \"" + std::string(60, 'x') + "…\""},
    // numbers
    {"[{\"number\": +1}]", "line 1, column 13: expected a JSON value, found \"+1\""},
    {"[{\"number\": .5}]", "line 1, column 13: expected a JSON value, found \".5\""},
    {"[{\"number\": -}]", "line 1, column 13: expected a JSON value, found \"-\""},
    {"[{\"number\": 01}]", "line 1, column 14: expected a comma or a closing brace, found \"1\""},
    {"[{\"number\": 1.}]", "line 1, column 15: expected a digit after the decimal point, found \"}\""},
    {"[{\"number\": 1.e5}]", "line 1, column 15: expected a digit after the decimal point, found \"e5\""},
    {"[{\"number\": 1e}]", "line 1, column 15: expected a digit in the exponent, found \"}\""},
    {"[{\"number\": 1e+}]", "line 1, column 16: expected a digit in the exponent, found \"}\""},
    {"[{\"number\": 1,5}]", "line 1, column 15: expected a member name in quotation marks, found \"5\""},
    {"[{\"number\": 0x10}]", "line 1, column 14: expected a comma or a closing brace, found \"x10\""},
    {"[{\"number\": 1.5.2}]", "line 1, column 16: expected a comma or a closing brace, found \".2\""},
    // strings
    {"[{\"string",
     "line 1, column 10: expected a quotation mark at the end of the string, found the end of the file"},
    {"[{\"st\0ring\""s,
     "line 1, column 6: expected a quotation mark at the end of the string, found a zero byte"},
    {"[{\"string\": \"a\nb\"}]",
     "line 1, column 15: expected an escape sequence in place of a control character, found \"␊\""},
    {"[{\"string\": \"a\tb\"}]",
     "line 1, column 15: expected an escape sequence in place of a control character, found \"␉\""},
    {"[{\"string\": \"a\\qb\"}]", "line 1, column 15: expected an escape sequence of JSON, found \"\\q\""},
    {"[{\"string\": \"a\\äb\"}]", "line 1, column 15: expected an escape sequence of JSON, found \"\\ä\""},
    {"[{\"string\": \"a\\", "line 1, column 15: expected an escape sequence of JSON, found \"\\\""},
    {"[{\"string\": \"\\u12\"}]",
     "line 1, column 14: expected four hexadecimal digits after \\u, found \"\\u12\""},
    {"[{\"string\": \"\\u", "line 1, column 14: expected four hexadecimal digits after \\u, found \"\\u\""},
    {"[{\"string\": \"\\u00G0\"}]",
     "line 1, column 14: expected four hexadecimal digits after \\u, found \"\\u00\""},
    {"[{\"string\": \"\\ud83d\"}]", "line 1, column 14: expected a surrogate pair, found \"\\ud83d\""},
    {"[{\"string\": \"\\\\udc00 \\udC00\"}]",
     "line 1, column 22: expected a surrogate pair, found \"\\udC00\""},
    {"[{\"string\": \"\\uD83D\\u0041\"}]", "line 1, column 14: expected a surrogate pair, found \"\\uD83D\""},
    {"[{\"string\": \"\\ud83d\\ude00 \\udE00\"}]",
     "line 1, column 27: expected a surrogate pair, found \"\\udE00\""},
    {"[{\"\\uDC00\": 1}]", "line 1, column 4: expected a surrogate pair, found \"\\uDC00\""},
    {"[{\"string\": \"\\n\\\\\\u0041\\uD7FF\\uDFFF\"}]",
     "line 1, column 30: expected a surrogate pair, found \"\\uDFFF\""},
    // bytes
    {"[{\"string\": \"a\xFF\"}]", "line 1, column 15: expected UTF-8 text in the string, found byte 0xFF"},
    {"[{\"string\": \"\xC3\"}]", "line 1, column 14: expected UTF-8 text in the string, found byte 0xC3"},
    {"[{\"string\": \"\xC0\x80\"}]", "line 1, column 14: expected UTF-8 text in the string, found byte 0xC0"},
    {"[{\"string\": \"\xED\xA0\x80\"}]",
     "line 1, column 14: expected UTF-8 text in the string, found byte 0xED"},
    {"[{\"string\": \"\xF4\x90\x80\x80\"}]",
     "line 1, column 14: expected UTF-8 text in the string, found byte 0xF4"},
    {"[{\"string\": \"\xF0", "line 1, column 14: expected UTF-8 text in the string, found byte 0xF0"},
    {"[{\"string\": \"\xF0\x9F\x98", "line 1, column 14: expected UTF-8 text in the string, found byte 0xF0"},
    {"[{\"stri\x80ng\": 1}]", "line 1, column 8: expected UTF-8 text in the string, found byte 0x80"},
    // places
    {"[\r\n{\"string\": \"\\n\\n\"},\n\n  x]", "line 4, column 3: expected a JSON value, found \"x\""},
    {"[{\"string\": \"\\n\\n\\q\"}]",
     "line 1, column 18: expected an escape sequence of JSON, found \"\\q\""},
    {"[{\"string\": \"Größe 漢 😀\"}, x]", "line 1, column 27: expected a JSON value, found \"x\""},
};

TEST(JsonReader, RefusesWhatIsNoJsonWithLineAndColumn) {
  for (auto const& bad : s_badTexts) EXPECT_EQ(errorOf(bad.text, everything()), "x.json: " + bad.message);
}

// --- what the shape does not provide for ------------------------------------------------------------------

TEST(JsonReader, RefusesAnotherTypeThanTheShapes) {
  struct Kind {
    JsonShape shape;
    std::string expected;
    std::string matching;
  };
  Kind const kinds[] = {
      {anyString(), "a string", "\"s\""},
      {jsonOrNull(anyString(), [] {}), "a string or null", "\"s\" null"},
      {anyNumber(), "a number", "1.5 7"},
      {anySeriesNumber(), "a number, null, \"Infinity\" or \"-Infinity\"", "1.5 7 null"},
      {smallInteger(), "an integer from 0 to 255", "7"},
      {jsonBoolean([](bool) {}), "true or false", "true false"},
      {jsonArray(anyNumber()), "an array", "[]"},
      {jsonObject({}), "an object", "{}"},
      {jsonMap([](std::string_view) { return true; }, anyNumber()), "an object", "{}"},
  };
  std::pair<std::string, std::string> const values[] = {
      {"\"s\"", "\"s\""}, {"1.5", "1.5"},   {"7", "7"},         {"true", "true"},
      {"false", "false"}, {"null", "null"}, {"[]", "an array"}, {"{}", "an object"},
  };
  for (auto const& [shape, expected, matching] : kinds) {
    for (auto const& [value, found] : values) {
      auto message = std::string("no error");
      if ((matching + " ").find(value + " ") == std::string::npos)
        message =
            std::string("x.json: document: expected ").append(expected).append(", found ").append(found);
      EXPECT_EQ(errorOf(value, shape), message);
    }
  }
}

TEST(JsonReader, RefusesWhatIsNotAnIntegerOrTooLarge) {
  for (std::string const text :
       {"-1", "-0", "1.0", "1e0", "1E+0", "0.5", "256", "18446744073709551616", "1e400", "-1e400"}) {
    EXPECT_EQ(errorOf(text, smallInteger()),
              "x.json: document: expected an integer from 0 to 255, found " + text);
  }
}

TEST(JsonReader, RefusesNumbersBeyondTheRangeOfDoubles) {
  auto const beyond = "17976931348623159" + std::string(292, '0');
  for (std::string const& text :
       {"1e309"s, "-1e309"s, "1e999"s, "10e308"s, "1.7976931348623159e308"s, "1e99999999999999999999"s,
        "0.001e312"s, "1" + std::string(58, '0') + "e9999"}) {
    auto const found = text.size() > 60 ? text.substr(0, 60) + "…" : text;
    EXPECT_EQ(errorOf("[" + text + "]", jsonArray(anyNumber())),
              "x.json: /0: expected a number within the range of doubles, found " + found);
  }
  for (auto const& text : {beyond, std::string(400, '9'), "9" + std::string(400, '0') + ".5e3"}) {
    EXPECT_EQ(errorOf("[0, " + text + "]", jsonArray(anySeriesNumber())),
              "x.json: /1: expected a number within the range of doubles, found " + text.substr(0, 60) + "…");
  }
}

TEST(JsonReader, RefusesNumbersInRangeThatTheParserCannotHold) {
  std::string const rule =
      "expected at most 308 digits before the decimal point and no exponent above 308, found ";
  EXPECT_EQ(errorOf("0e309", anyNumber()), "x.json: document: " + rule + "0e309");
  EXPECT_EQ(errorOf("[-0.0e999]", jsonArray(anySeriesNumber())), "x.json: /0: " + rule + "-0.0e999");
  EXPECT_EQ(errorOf("1" + std::string(400, '0') + "e-200", anyNumber()),
            "x.json: document: " + rule + "1" + std::string(59, '0') + "…");
}

TEST(JsonReader, RefusesANumberThatTheParserCannotHoldWhereNoneIsExpected) {
  EXPECT_EQ(errorOf("1e999", anyString()), "x.json: document: expected a string, found 1e999");
  EXPECT_EQ(errorOf("0e999", smallInteger()),
            "x.json: document: expected an integer from 0 to 255, found 0e999");
}

TEST(JsonReader, RefusesMissingUnknownAndRepeatedMembers) {
  auto const shape = jsonObject({{"a", s_required, anyNumber()}, {"b", s_optional, anyNumber()}});
  EXPECT_EQ(errorOf(R"({"b": 1})", shape), "x.json: document: expected a member \"a\", found none");
  EXPECT_EQ(errorOf(R"({"a": 1, "A": 2})", shape),
            "x.json: /A: expected one of the members a, b, found \"A\"");
  EXPECT_EQ(errorOf(R"({"a": 1, "": 2})", shape), "x.json: /: expected one of the members a, b, found \"\"");
  EXPECT_EQ(errorOf(R"({"a": 1, "b": 2, "a": 3})", shape),
            "x.json: /a: expected each member once, found a second \"a\"");
  EXPECT_EQ(errorOf(R"({"a": 1, "\u0061": 3})", shape),
            "x.json: /a: expected each member once, found a second \"a\"");
}

TEST(JsonReader, TellsAllOfSixtyFourMembersApart) {
  std::vector<JsonMember> members;
  std::string text;
  for (int i = 0; i < 64; ++i) {
    members.push_back({"m" + std::to_string(i), s_required, anyNumber()});
    text += (i == 0 ? "\"m" : ", \"m") + std::to_string(i) + "\": 1";
  }
  auto const shape = jsonObject(members);
  EXPECT_EQ(errorOf("{" + text + "}", shape), "no error");
  EXPECT_EQ(errorOf("{" + text + ", \"m63\": 1}", shape),
            "x.json: /m63: expected each member once, found a second \"m63\"");
  EXPECT_EQ(errorOf("{" + text.substr(0, text.rfind(',')) + "}", shape),
            "x.json: document: expected a member \"m63\", found none");
}

TEST(JsonReader, NamesThePlaceAsAJsonPointer) {
  auto const shape = jsonMap([](std::string_view) { return true; }, jsonArray(jsonArray(anyNumber())));
  EXPECT_EQ(errorOf(R"({"a/b~c": [[], [1, 2, "x"]]})", shape),
            "x.json: /a~1b~0c/1/2: expected a number, found \"x\"");
  EXPECT_EQ(errorOf(R"({"": [null]})", shape), "x.json: //0: expected an array, found null");
  EXPECT_EQ(errorOf(R"({"x": [], "y": 0})", shape), "x.json: /y: expected an array, found 0");
}

TEST(JsonReader, LetsTheShapesFunctionsRefuseWhatTheyRead) {
  JsonReader json("x.json");
  auto const refusedIn = [&](std::string const& text, JsonShape const& shape) -> std::string {
    try {
      json.read(text, shape);
      return "no error";
    } catch (Error const& error) {
      return error.what();
    }
  };
  auto const refuse = [&] { json.fail("better", "worse", "/within"); };
  auto const refusedNumber = jsonNumber([&](double) { json.fail("better", "worse"); });
  EXPECT_EQ(refusedIn("[[1]]", jsonArray(jsonArray(refusedNumber))),
            "x.json: /0/0: expected better, found worse");
  EXPECT_EQ(refusedIn("[{}]", jsonArray(jsonObject({}, {}, refuse))),
            "x.json: /0/within: expected better, found worse");
  EXPECT_EQ(refusedIn("[[]]", jsonArray(jsonArray(anyNumber(), {}, refuse))),
            "x.json: /0/within: expected better, found worse");
  EXPECT_EQ(refusedIn("{}", jsonObject({}, {}, [&] { json.fail("better", "worse"); })),
            "x.json: document: expected better, found worse");
}

TEST(JsonReader, NestsNoDeeperThanTheShape) {
  std::string const brackets(1'000'000, '[');
  EXPECT_EQ(errorOf(brackets, jsonArray(jsonArray(anyNumber()))),
            "x.json: /0/0: expected a number, found an array");
  std::string braces;
  for (int i = 0; i < 100'000; ++i) braces += "{\"string\":";
  EXPECT_EQ(errorOf("[" + braces, everything()), "x.json: /0/string: expected a string, found an object");
}

TEST(JsonReader, WritesEveryMessageOnOneLine) {
  auto const shape = jsonObject({{"a", s_optional, anyNumber()}});
  EXPECT_EQ(errorOf(R"({"a\nb\u001b\u202e": 1})", shape),
            "x.json: /a␊b␛\uFFFD: expected one of the members a, found \"a␊b␛\uFFFD\"");
  EXPECT_EQ(errorOf(R"({"a": "1\r\n2"})", shape), "x.json: /a: expected a number, found \"1␍␊2\"");
  EXPECT_EQ(errorOf("{\"" + std::string(1000, 'n') + "\": 1}", shape),
            "x.json: /" + std::string(60, 'n') + "…: expected one of the members a, found \"" +
                std::string(60, 'n') + "…\"");
  try {
    JsonReader("two\nlines\xFF.json").read("[", anyNumber());
    FAIL() << "no error";
  } catch (Error const& error) {
    EXPECT_STREQ(error.what(), "two␊lines\uFFFD.json: document: expected a number, found an array");
  }
}

TEST(JsonReader, PassesOnWhatTheShapesFunctionsThrow) {
  struct Mine {};
  EXPECT_THROW(JsonReader("x.json").read("1", jsonNumber([](double) { throw Mine(); })), Mine);
}

}  // namespace
}  // namespace Kestrel::ResultTables

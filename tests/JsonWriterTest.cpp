#include "result_tables/json/JsonWriter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

#include "support/HostileLocale.h"

namespace Kestrel::ResultTables {
namespace {

using namespace std::string_literals;

std::string written(double value) {
  JsonWriter json;
  json.number(value);
  return json.take();
}

std::string written(std::string_view text) {
  JsonWriter json;
  json.string(text);
  return json.take();
}

TEST(JsonWriter, WritesAnIndentedDocument) {
  JsonWriter json;
  json.beginObject();
  json.key("name");
  json.string("Clamp 1");
  json.key("numbers");
  json.beginInlineArray();
  json.number(1.5);
  json.null();
  json.integer(18446744073709551615U);
  json.boolean(false);
  json.endInlineArray();
  json.key("objects");
  json.beginArray();
  json.beginObject();
  json.endObject();
  json.beginObject();
  json.key("empty");
  json.beginInlineArray();
  json.endInlineArray();
  json.endObject();
  json.endArray();
  json.key("yes");
  json.boolean(true);
  json.endObject();
  EXPECT_EQ(json.take(), R"({
  "name": "Clamp 1",
  "numbers": [1.5, null, 18446744073709551615, false],
  "objects": [
    {},
    {
      "empty": []
    }
  ],
  "yes": true
}
)");
}

TEST(JsonWriter, KeepsArraysInAnInlineArrayOnItsLine) {
  JsonWriter json;
  json.beginObject();
  json.beginInlineArray("ranges");
  for (double const number : {1.5, 2.5}) {
    json.beginInlineArray();
    json.number(number);
    json.number(0);
    json.endInlineArray();
  }
  json.endInlineArray();
  json.beginArray("lines");
  json.integer(1);
  json.endArray();
  json.endObject();
  EXPECT_EQ(json.take(), "{\n  \"ranges\": [[1.5, 0], [2.5, 0]],\n  \"lines\": [\n    1\n  ]\n}\n");
}

TEST(JsonWriter, WritesMembersWithTheirKeys) {
  JsonWriter json;
  json.beginObject();
  json.text("text", "a");
  json.number("number", -0.5);
  json.number("infinite", std::numeric_limits<double>::infinity());
  json.integer("integer", 7);
  json.flag("flag", false);
  json.null("null");
  json.beginObject("object");
  json.endObject();
  json.beginArray("array");
  json.endArray();
  json.beginInlineArray("inline");
  json.integer(1);
  json.endInlineArray();
  json.endObject();
  EXPECT_EQ(json.take(), R"({
  "text": "a",
  "number": -0.5,
  "infinite": "Infinity",
  "integer": 7,
  "flag": false,
  "null": null,
  "object": {},
  "array": [],
  "inline": [1]
}
)");
}

TEST(JsonWriter, IsEmptyOnceItsDocumentIsTaken) {
  JsonWriter json;
  json.beginArray();
  json.endArray();
  EXPECT_EQ(json.take(), "[]\n");
  json.null();
  EXPECT_EQ(json.take(), "null\n");
}

TEST(JsonWriter, WritesNumbersInTheirShortestForm) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(written(0.0), "0\n");
  EXPECT_EQ(written(-0.0), "-0\n");
  EXPECT_EQ(written(0.1), "0.1\n");
  EXPECT_EQ(written(5e-324), "5e-324\n");
  EXPECT_EQ(written(1.7976931348623157e308), "1.7976931348623157e+308\n");
  EXPECT_EQ(written(infinity), "\"Infinity\"\n");
  EXPECT_EQ(written(-infinity), "\"-Infinity\"\n");
  EXPECT_EQ(written(std::nan("")), "null\n");
}

TEST(JsonWriter, EscapesWhatJsonDoesNotAllowInStrings) {
  EXPECT_EQ(written("a\"b\\c/d"), R"("a\"b\\c/d")"
                                  "\n");
  EXPECT_EQ(written("\b\f\n\r\t"), R"("\b\f\n\r\t")"
                                   "\n");
  EXPECT_EQ(written("\0\x1F"s), R"("\u0000\u001F")"
                                "\n");
  EXPECT_EQ(written("Größe 漢 😀"), "\"Größe 漢 😀\"\n");
}

TEST(JsonWriter, IsValidUtf8WhateverItIsGiven) {
  EXPECT_EQ(written("a\xFFz\xE2\x82"), "\"a\uFFFDz\uFFFD\uFFFD\"\n");
  JsonWriter json;
  json.beginObject();
  json.key("k\x80");
  json.null();
  json.endObject();
  EXPECT_EQ(json.take(), "{\n  \"k\uFFFD\": null\n}\n");
}

TEST(JsonWriter, WritesTheSameInEveryLocale) {
  HostileLocale const locale;
  EXPECT_EQ(written(1234567.25), "1234567.25\n");
  JsonWriter json;
  json.integer(1234567);
  EXPECT_EQ(json.take(), "1234567\n");
}

TEST(JsonWriter, GivesADocumentPartByPart) {
  JsonWriter json;
  json.beginArray();
  json.integer(1);
  auto const first = json.takeWritten();
  json.integer(2);
  json.endArray();
  EXPECT_EQ(first, "[\n  1");
  EXPECT_EQ(json.take(), ",\n  2\n]\n");
}

}  // namespace
}  // namespace Kestrel::ResultTables

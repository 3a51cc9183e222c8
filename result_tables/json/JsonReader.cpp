#include "result_tables/json/JsonReader.h"

#include <fmt/format.h>
#include <rapidjson/reader.h>

#include <algorithm>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>

#include "result_tables/Error.h"
#include "result_tables/Text.h"

namespace Kestrel::ResultTables {

namespace {

std::string_view expectationOf(rapidjson::ParseErrorCode code) {
  switch (code) {
    case rapidjson::kParseErrorDocumentEmpty:
      return "a JSON document";
    case rapidjson::kParseErrorDocumentRootNotSingular:
      return "the end of the file after the document";
    case rapidjson::kParseErrorObjectMissName:
      return "a member name in quotation marks";
    case rapidjson::kParseErrorObjectMissColon:
      return "a colon after the member name";
    case rapidjson::kParseErrorObjectMissCommaOrCurlyBracket:
      return "a comma or a closing brace";
    case rapidjson::kParseErrorArrayMissCommaOrSquareBracket:
      return "a comma or a closing bracket";
    case rapidjson::kParseErrorStringUnicodeEscapeInvalidHex:
      return "four hexadecimal digits after \\u";
    case rapidjson::kParseErrorStringUnicodeSurrogateInvalid:
      return "a surrogate pair";
    case rapidjson::kParseErrorStringEscapeInvalid:
      return "an escape sequence of JSON";
    case rapidjson::kParseErrorStringMissQuotationMark:
      return "a string closed by a quotation mark on its line";
    case rapidjson::kParseErrorStringInvalidEncoding:
      return "UTF-8 text in the string";
    case rapidjson::kParseErrorNumberMissFraction:
      return "a digit after the decimal point";
    case rapidjson::kParseErrorNumberMissExponent:
      return "a digit in the exponent";
    default:
      return "a JSON value";
  }
}

void appendPointerToken(std::string& pointer, std::string_view token) {
  pointer += '/';
  for (char const c : token) {
    if (c == '~') {
      pointer += "~0";
    } else if (c == '/') {
      pointer += "~1";
    } else {
      pointer += c;
    }
  }
}

/// The text of a number, cut after 60 characters.
std::string brief(std::string_view text) {
  return text.size() > 60 ? std::string(text.substr(0, 60)) + "…" : std::string(text);
}

locale_t const s_classicLocale = newlocale(LC_ALL_MASK, "C", locale_t{});

std::string listOfNames(std::vector<JsonMember> const& members) {
  std::string names;
  for (auto const& member : members) names += (names.empty() ? "" : ", ") + member.name;
  return names;
}

}  // namespace

JsonShape jsonString(std::function<void(std::string_view)> onString) {
  JsonShape shape;
  shape.expected = "a string";
  shape.onString = std::move(onString);
  return shape;
}

JsonShape jsonNumber(std::function<void(double)> onNumber) {
  JsonShape shape;
  shape.expected = "a number";
  shape.onNumber = std::move(onNumber);
  return shape;
}

JsonShape jsonSeriesNumber(std::function<void(double)> onNumber) {
  JsonShape shape;
  shape.expected = "a number, null, \"Infinity\" or \"-Infinity\"";
  shape.onNumber = std::move(onNumber);
  shape.mayBeNotFinite = true;
  return shape;
}

JsonShape jsonInteger(std::uint64_t largest, std::function<void(std::uint64_t)> onInteger) {
  JsonShape shape;
  shape.expected = fmt::format("an integer from 0 to {}", largest);
  shape.onInteger = std::move(onInteger);
  shape.largestInteger = largest;
  return shape;
}

JsonShape jsonBoolean(std::function<void(bool)> onBoolean) {
  JsonShape shape;
  shape.expected = "true or false";
  shape.onBoolean = std::move(onBoolean);
  return shape;
}

JsonShape jsonObject(std::vector<JsonMember> members, std::function<void()> onBegin,
                     std::function<void()> onEnd) {
  JsonShape shape;
  shape.expected = "an object";
  shape.object = std::make_shared<JsonObject const>(
      JsonObject{std::move(members), std::move(onBegin), std::move(onEnd), {}, {}});
  return shape;
}

JsonShape jsonMap(std::function<bool(std::string_view)> onName, JsonShape anyMember,
                  std::function<void()> onBegin) {
  JsonShape shape;
  shape.expected = "an object";
  shape.object = std::make_shared<JsonObject const>(
      JsonObject{{}, std::move(onBegin), {}, std::move(onName), std::move(anyMember)});
  return shape;
}

JsonShape jsonArray(JsonShape element, std::function<void()> onBegin, std::function<void()> onEnd) {
  JsonShape shape;
  shape.expected = "an array";
  shape.array =
      std::make_shared<JsonArray const>(JsonArray{std::move(element), std::move(onBegin), std::move(onEnd)});
  return shape;
}

JsonShape jsonOrNull(JsonShape shape, std::function<void()> onNull) {
  shape.expected += " or null";
  shape.onNull = std::move(onNull);
  return shape;
}

/// Follows the events of the parser through the shape.
class JsonReader::Handler {
 public:
  Handler(std::string const& fileName, std::string text, JsonShape const& root)
      : m_fileName(fileName), m_text(std::move(text)), m_stream(m_text.data()), m_root(root) {}

  void read();
  [[noreturn]] void fail(std::string_view expected, std::string_view found, std::string_view within) const;
  std::size_t countElementsAhead();

  // The events, in the parser's spelling.
  bool Null();
  bool Bool(bool value);
  bool RawNumber(char const* text, rapidjson::SizeType length, bool copy);
  bool String(char const* text, rapidjson::SizeType length, bool copy);
  bool StartObject();
  bool Key(char const* text, rapidjson::SizeType length, bool copy);
  bool EndObject(rapidjson::SizeType memberCount);
  bool StartArray();
  bool EndArray(rapidjson::SizeType elementCount);
  bool Int(int) { return false; }
  bool Uint(unsigned) { return false; }
  bool Int64(std::int64_t) { return false; }
  bool Uint64(std::uint64_t) { return false; }
  bool Double(double) { return false; }

 private:
  struct Frame {
    JsonShape const* shape;
    std::size_t element = 0;             ///< index of the current element
    std::uint64_t membersSeen = 0;       ///< one bit per member
    JsonMember const* member = nullptr;  ///< the current one
    std::string name;                    ///< of the current member where there are no fixed ones
  };

  [[noreturn]] void failAtOffset(std::size_t offset, std::string_view expected) const;
  [[nodiscard]] JsonShape const& shapeOfValue() const;
  /// What every value is followed by: the next element's turn.
  bool valueIsRead();
  void number(JsonShape const& shape, std::string_view text);
  void integer(JsonShape const& shape, std::string_view text);
  std::string_view decoded(char const* text, std::size_t length);
  [[nodiscard]] std::string pointer() const;

  std::string const& m_fileName;
  std::string m_text;
  rapidjson::InsituStringStream m_stream;
  JsonShape const& m_root;
  std::vector<Frame> m_frames;
  std::vector<char const*> m_decodedLineFeeds;  ///< line feeds in `m_text` that stand for an escape sequence
};

void JsonReader::Handler::read() {
  if (m_text.starts_with("\xEF\xBB\xBF")) {
    throw Error(
        fmt::format("{}: line 1, column 1: expected a JSON value, found a byte order mark", m_fileName));
  }
  rapidjson::Reader reader;
  constexpr unsigned flags = rapidjson::kParseInsituFlag | rapidjson::kParseNumbersAsStringsFlag |
                             rapidjson::kParseValidateEncodingFlag;
  auto const result = reader.Parse<flags>(m_stream, *this);
  if (result.Code() == rapidjson::kParseErrorNumberTooBig) {
    auto const text = std::string_view(m_text).substr(result.Offset());
    fail("a number within the range of doubles",
         brief(text.substr(0, text.find_first_not_of("+-.0123456789eE"))), {});
  }
  if (result.IsError()) failAtOffset(result.Offset(), expectationOf(result.Code()));
  // The parser takes a zero byte for the end of the text.
  if (m_stream.Tell() < m_text.size())
    failAtOffset(m_stream.Tell(), "the end of the file after the document");
}

void JsonReader::Handler::fail(std::string_view expected, std::string_view found,
                               std::string_view within) const {
  auto place = pointer().append(within);
  if (place.empty()) place = "document";
  throw Error(fmt::format("{}: {}: expected {}, found {}", m_fileName, toPrintable(place), expected, found));
}

void JsonReader::Handler::failAtOffset(std::size_t offset, std::string_view expected) const {
  offset = std::min(offset, m_text.size());
  std::size_t line = 1;
  auto const* lineBegin = m_text.data();
  auto const* const place = m_text.data() + offset;
  for (auto const* c = m_text.data(); c < place; ++c) {
    if (*c != '\n' || std::binary_search(m_decodedLineFeeds.begin(), m_decodedLineFeeds.end(), c)) continue;
    ++line;
    lineBegin = c + 1;
  }
  auto const found = offset == m_text.size() ? "the end of the file"
                     : *place == '\0'        ? "a zero byte"
                                             : quote(std::string_view(place, 1));
  throw Error(fmt::format("{}: line {}, column {}: expected {}, found {}", m_fileName, line,
                          place - lineBegin + 1, expected, found));
}

std::size_t JsonReader::Handler::countElementsAhead() {
  std::size_t commas = 0;
  std::size_t depth = 0;
  for (auto const* c = m_text.data() + m_stream.Tell(); *c != '\0'; ++c) {
    if (*c == ',') {
      commas += depth == 0 ? 1 : 0;
    } else if (*c == '[') {
      ++depth;
    } else if (*c == ']' && depth-- == 0) {
      break;
    }
  }
  return commas + 1;
}

bool JsonReader::Handler::Null() {
  auto const& shape = shapeOfValue();
  if (shape.mayBeNotFinite) {
    shape.onNumber(std::numeric_limits<double>::quiet_NaN());
  } else if (shape.onNull) {
    shape.onNull();
  } else {
    fail(shape.expected, "null", {});
  }
  return valueIsRead();
}

bool JsonReader::Handler::Bool(bool value) {
  auto const& shape = shapeOfValue();
  if (!shape.onBoolean) fail(shape.expected, value ? "true" : "false", {});
  shape.onBoolean(value);
  return valueIsRead();
}

bool JsonReader::Handler::RawNumber(char const* text, rapidjson::SizeType length, bool /*copy*/) {
  auto const& shape = shapeOfValue();
  std::string_view const digits(text, length);
  if (shape.onNumber) {
    number(shape, digits);
  } else if (shape.onInteger) {
    integer(shape, digits);
  } else {
    fail(shape.expected, brief(digits), {});
  }
  return valueIsRead();
}

bool JsonReader::Handler::String(char const* text, rapidjson::SizeType length, bool /*copy*/) {
  auto const& shape = shapeOfValue();
  auto const value = decoded(text, length);
  if (shape.onString) {
    shape.onString(value);
  } else if (shape.mayBeNotFinite && (value == "Infinity" || value == "-Infinity")) {
    auto const infinity = std::numeric_limits<double>::infinity();
    shape.onNumber(value.front() == '-' ? -infinity : infinity);
  } else {
    fail(shape.expected, quote(value), {});
  }
  return valueIsRead();
}

bool JsonReader::Handler::StartObject() {
  auto const& shape = shapeOfValue();
  if (!shape.object) fail(shape.expected, "an object", {});
  if (shape.object->onBegin) shape.object->onBegin();
  m_frames.push_back({&shape, 0, 0, nullptr, {}});
  return true;
}

bool JsonReader::Handler::Key(char const* text, rapidjson::SizeType length, bool /*copy*/) {
  auto& frame = m_frames.back();
  auto const& object = *frame.shape->object;
  auto const name = decoded(text, length);
  if (object.onName) {
    frame.name = name;
    if (!object.onName(name)) fail("each member once", "a second " + quote(name), {});
    return true;
  }
  auto const found = std::find_if(object.members.begin(), object.members.end(),
                                  [&](auto const& m) { return m.name == name; });
  frame.member = nullptr;
  frame.name = name;
  if (found == object.members.end())
    fail("one of the members " + listOfNames(object.members), quote(name), {});
  auto const bit = std::uint64_t{1} << (found - object.members.begin());
  if ((frame.membersSeen & bit) != 0) fail("each member once", "a second " + quote(name), {});
  frame.membersSeen |= bit;
  frame.member = &*found;
  return true;
}

bool JsonReader::Handler::EndObject(rapidjson::SizeType /*memberCount*/) {
  auto const& object = *m_frames.back().shape->object;
  auto const membersSeen = m_frames.back().membersSeen;
  m_frames.pop_back();
  for (std::size_t i = 0; i < object.members.size(); ++i) {
    auto const& member = object.members[i];
    if (member.presence == JsonMember::Presence::required && (membersSeen >> i & 1U) == 0) {
      fail("a member " + quote(member.name), "none", {});
    }
  }
  if (object.onEnd) object.onEnd();
  return valueIsRead();
}

bool JsonReader::Handler::StartArray() {
  auto const& shape = shapeOfValue();
  if (!shape.array) fail(shape.expected, "an array", {});
  if (shape.array->onBegin) shape.array->onBegin();
  m_frames.push_back({&shape, 0, 0, nullptr, {}});
  return true;
}

bool JsonReader::Handler::EndArray(rapidjson::SizeType /*elementCount*/) {
  auto const& array = *m_frames.back().shape->array;
  m_frames.pop_back();
  if (array.onEnd) array.onEnd();
  return valueIsRead();
}

JsonShape const& JsonReader::Handler::shapeOfValue() const {
  if (m_frames.empty()) return m_root;
  auto const& frame = m_frames.back();
  if (frame.shape->array) return frame.shape->array->element;
  return frame.member != nullptr ? frame.member->shape : frame.shape->object->anyMember;
}

bool JsonReader::Handler::valueIsRead() {
  if (!m_frames.empty()) ++m_frames.back().element;
  return true;
}

void JsonReader::Handler::number(JsonShape const& shape, std::string_view text) {
  double value = 0.0;
  auto const result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc()) {
    // Too small a number is the nearest double, too large a one is none. What follows the text ends the
    // number.
    value = strtod_l(text.data(), nullptr, s_classicLocale);
    if (std::isinf(value)) fail("a number within the range of doubles", brief(text), {});
  }
  shape.onNumber(value);
}

void JsonReader::Handler::integer(JsonShape const& shape, std::string_view text) {
  std::uint64_t value = 0;
  auto const* const end = text.data() + text.size();
  auto const result = std::from_chars(text.data(), end, value);
  if (result.ec != std::errc() || result.ptr != end || value > shape.largestInteger)
    fail(shape.expected, brief(text), {});
  shape.onInteger(value);
}

std::string_view JsonReader::Handler::decoded(char const* text, std::size_t length) {
  std::string_view const value(text, length);
  for (auto at = value.find('\n'); at != value.npos; at = value.find('\n', at + 1)) {
    m_decodedLineFeeds.push_back(text + at);
  }
  // The parser refuses surrogates in the text and a lone high one in an escape sequence, but not a lone low
  // one.
  for (auto at = value.find('\xED'); at != value.npos; at = value.find('\xED', at + 1)) {
    if (at + 1 < value.size() && static_cast<unsigned char>(value[at + 1]) >= 0xA0) {
      failAtOffset(static_cast<std::size_t>(text + at - m_text.data()), "a surrogate pair");
    }
  }
  return value;
}

std::string JsonReader::Handler::pointer() const {
  std::string place;
  for (auto const& frame : m_frames) {
    appendPointerToken(place, frame.shape->array ? std::to_string(frame.element) : frame.name);
  }
  return place;
}

JsonReader::JsonReader(std::string fileName) : m_fileName(std::move(fileName)) {}

JsonReader::~JsonReader() = default;

void JsonReader::read(std::string text, JsonShape const& shape) {
  m_handler = std::make_unique<Handler>(m_fileName, std::move(text), shape);
  m_handler->read();
  m_handler.reset();
}

void JsonReader::fail(std::string_view expected, std::string_view found, std::string_view within) const {
  m_handler->fail(expected, found, within);
}

std::size_t JsonReader::countElementsAhead() const { return m_handler->countElementsAhead(); }

}  // namespace Kestrel::ResultTables

#include "result_tables/json/JsonReader.h"

#include <fmt/format.h>
#include <rapidjson/reader.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

#include "result_tables/base/Error.h"
#include "result_tables/base/Text.h"
#include "result_tables/base/Translate.h"

namespace Kestrel::ResultTables {

namespace {

constexpr std::string_view s_hexDigits = "0123456789ABCDEFabcdef";
constexpr std::string_view s_wordCharacters =
    "+-.0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz";

std::string endOfDocument() { return tr("the end of the file after the document"); }
std::string surrogatePair() { return tr("a surrogate pair"); }

std::string expectationOf(rapidjson::ParseErrorCode code) {
  switch (code) {
    case rapidjson::kParseErrorDocumentEmpty:
      return tr("a JSON document");
    case rapidjson::kParseErrorDocumentRootNotSingular:
      return endOfDocument();
    case rapidjson::kParseErrorObjectMissName:
      return tr("a member name in quotation marks");
    case rapidjson::kParseErrorObjectMissColon:
      return tr("a colon after the member name");
    case rapidjson::kParseErrorObjectMissCommaOrCurlyBracket:
      return tr("a comma or a closing brace");
    case rapidjson::kParseErrorArrayMissCommaOrSquareBracket:
      return tr("a comma or a closing bracket");
    case rapidjson::kParseErrorStringUnicodeEscapeInvalidHex:
      return tr("four hexadecimal digits after \\u");
    case rapidjson::kParseErrorStringUnicodeSurrogateInvalid:
      return surrogatePair();
    case rapidjson::kParseErrorStringEscapeInvalid:
      return tr("an escape sequence of JSON");
    case rapidjson::kParseErrorStringMissQuotationMark:
      return tr("a quotation mark at the end of the string");
    case rapidjson::kParseErrorStringInvalidEncoding:
      return tr("UTF-8 text in the string");
    case rapidjson::kParseErrorNumberMissFraction:
      return tr("a digit after the decimal point");
    case rapidjson::kParseErrorNumberMissExponent:
      return tr("a digit in the exponent");
    default:
      return tr("a JSON value");
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

/// What stands at the beginning of `rest`: a word, an escape sequence, a character or a byte.
std::string describe(std::string_view rest) {
  if (rest.empty()) return tr("the end of the file");
  if (rest.front() == '\0') return tr("a zero byte");
  auto const word = rest.substr(0, rest.find_first_not_of(s_wordCharacters));
  if (!word.empty()) return quote(word);
  if (rest.starts_with("\\u")) {
    auto const escape = rest.substr(0, 6);
    return quote(escape.substr(0, escape.find_first_not_of(s_hexDigits, 2)));
  }
  if (rest.front() == '\\') return quote(rest.substr(0, 1 + firstCharacter(rest.substr(1)).size()));
  auto const character = firstCharacter(rest);
  return character.empty() ? describeByte(rest.front()) : quote(character);
}

/// Where the lone low surrogate stands that the text has at or after `at`.
std::size_t findLoneLowSurrogate(std::string_view text, std::size_t at) {
  for (;;) {
    at = text.find('\\', at);
    auto const escape = text.substr(at, 4);
    bool const isInRange = escape.starts_with("\\uD") || escape.starts_with("\\ud");
    auto const isOneOf = [&](std::string_view digits) {
      return isInRange && digits.find(escape[3]) != digits.npos;
    };
    if (isOneOf("CDEFcdef")) return at;
    at += isOneOf("89ABab") ? std::string_view("\\uD800\\uDC00").size() : 2;
  }
}

std::string listOfNames(std::vector<JsonMember> const& members) {
  std::string names;
  for (auto const& member : members) names += (names.empty() ? "" : ", ") + member.name;
  return names;
}

}  // namespace

/// The text as the parser reads it: never changed and never read beyond its end, which the parser would do
/// where a character of several bytes is cut. Strings are decoded into a buffer.
class TextStream {
 public:
  using Ch = char;

  TextStream(std::string_view text, std::string& decoded)
      : m_begin(text.data()), m_end(text.data() + text.size()), m_at(m_begin), m_decoded(&decoded) {}

  [[nodiscard]] char const* at() const { return m_at; }
  [[nodiscard]] char const* end() const { return m_end; }
  void moveTo(char const* at) { m_at = at; }

  // The operations, in the parser's spelling.
  [[nodiscard]] Ch Peek() const { return m_at == m_end ? '\0' : *m_at; }
  Ch Take() { return m_at == m_end ? '\0' : *m_at++; }
  [[nodiscard]] std::size_t Tell() const { return static_cast<std::size_t>(m_at - m_begin); }
  Ch* PutBegin() {
    m_decoded->clear();
    return nullptr;
  }
  void Put(Ch c) { m_decoded->push_back(c); }
  [[nodiscard]] std::size_t PutEnd(Ch const* /*begin*/) const { return m_decoded->size(); }

 private:
  char const* m_begin;
  char const* m_end;
  char const* m_at;
  std::string* m_decoded;
};

}  // namespace Kestrel::ResultTables

/// The parser reads numbers and strings through a copy, which the compiler keeps in registers.
template <>
struct rapidjson::StreamTraits<Kestrel::ResultTables::TextStream> {
  enum { copyOptimization = 1 };
};

namespace Kestrel::ResultTables {

JsonShape jsonString(std::function<void(std::string_view)> onString) {
  JsonShape shape;
  shape.expected = [] { return tr("a string"); };
  shape.onString = std::move(onString);
  return shape;
}

JsonShape jsonNumber(std::function<void(double)> onNumber) {
  JsonShape shape;
  shape.expected = [] { return tr("a number"); };
  shape.onNumber = std::move(onNumber);
  return shape;
}

JsonShape jsonSeriesNumber(std::function<void(double)> onNumber) {
  JsonShape shape;
  shape.expected = [] { return tr("a number, null, \"Infinity\" or \"-Infinity\""); };
  shape.onNumber = std::move(onNumber);
  shape.mayBeNotFinite = true;
  return shape;
}

JsonShape jsonInteger(std::uint64_t largest, std::function<void(std::uint64_t)> onInteger) {
  JsonShape shape;
  shape.expected = [largest] { return tr("an integer from 0 to {}", largest); };
  shape.onInteger = std::move(onInteger);
  shape.largestInteger = largest;
  return shape;
}

JsonShape jsonBoolean(std::function<void(bool)> onBoolean) {
  JsonShape shape;
  shape.expected = [] { return tr("true or false"); };
  shape.onBoolean = std::move(onBoolean);
  return shape;
}

JsonShape jsonObject(std::vector<JsonMember> members, std::function<void()> onBegin,
                     std::function<void()> onEnd) {
  JsonShape shape;
  shape.expected = [] { return tr("an object"); };
  shape.object = std::make_shared<JsonObject const>(
      JsonObject{std::move(members), std::move(onBegin), std::move(onEnd), {}, {}, {}});
  return shape;
}

JsonShape jsonMap(std::function<bool(std::string_view)> onName, JsonShape anyMember,
                  std::function<void()> onBegin) {
  JsonShape shape;
  shape.expected = [] { return tr("an object"); };
  shape.object = std::make_shared<JsonObject const>(
      JsonObject{{}, std::move(onBegin), {}, std::move(onName), std::move(anyMember), {}});
  return shape;
}

JsonShape jsonArray(JsonShape element, std::function<void()> onBegin, std::function<void()> onEnd) {
  JsonShape shape;
  shape.expected = [] { return tr("an array"); };
  shape.array = std::make_shared<JsonArray const>(
      JsonArray{std::move(element), std::move(onBegin), std::move(onEnd), {}});
  return shape;
}

JsonShape jsonAtOnce(JsonShape shape, JsonReadAtOnce readAtOnce) {
  if (shape.object) {
    auto object = *shape.object;
    object.readAtOnce = std::move(readAtOnce);
    shape.object = std::make_shared<JsonObject const>(std::move(object));
  } else {
    auto array = *shape.array;
    array.readAtOnce = std::move(readAtOnce);
    shape.array = std::make_shared<JsonArray const>(std::move(array));
  }
  return shape;
}

JsonShape jsonOrNull(JsonShape shape, std::function<void()> onNull) {
  shape.expected = [expected = std::move(shape.expected)] { return tr("{} or null", expected()); };
  shape.onNull = std::move(onNull);
  return shape;
}

/// Follows the events of the parser through the shape.
class JsonReader::Handler {
 public:
  Handler(std::string const& fileName, std::string_view text, JsonShape const& root)
      : m_fileName(fileName), m_text(text), m_stream(text, m_decoded), m_root(root) {}

  void read();
  [[noreturn]] void fail(std::string_view expected, std::string_view found, std::string_view within) const;
  [[nodiscard]] char const* at() const { return m_stream.at(); }
  void forgetBefore(char const* at);

  // The events, in the parser's spelling. The stream stands at the beginning of the number or the string, or
  // behind the bracket or the brace. Texts that are handed over are not used: the stream has them.
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
    JsonMember const* member = nullptr;  ///< the current one, where there are fixed ones
    std::string name;                    ///< of the current member
    bool isReadAtOnce = false;           ///< whose members the shape has not seen
  };

  /// Both count from 1; columns are characters.
  struct Place {
    std::size_t line = 1;
    std::size_t column = 1;
  };

  [[noreturn]] void failAsParser(rapidjson::ParseErrorCode code, std::size_t offset) const;
  [[noreturn]] void failAt(std::size_t line, std::size_t column, std::string_view expected,
                           std::string_view found) const;
  [[noreturn]] void failAtOffset(std::size_t offset, std::string_view expected) const;
  /// Of what stands behind `text`, which begins where the text does that is not forgotten.
  [[nodiscard]] Place placeBehind(std::string_view text) const;
  [[noreturn]] void refuse(JsonShape const& shape, std::string_view found) const;
  [[noreturn]] void refuseArray(JsonShape const& shape) const;
  [[noreturn]] void failAsRepeated(std::string_view member) const;
  [[noreturn]] void refuseNumber(std::size_t offset) const;
  [[nodiscard]] JsonShape const& shapeOfValue() const;
  /// Reads the value whose opening bracket was the last one, if that can be; the parser then finds nothing in
  /// it.
  bool takeAtOnce(JsonReadAtOnce const& readAtOnce);
  /// What every value is followed by: the next element's turn.
  bool valueIsRead();
  void number(JsonShape const& shape, std::string_view text);
  void integer(JsonShape const& shape, std::string_view text);
  /// The string that was decoded last.
  [[nodiscard]] std::string_view decodedString() const;
  [[nodiscard]] std::string pointer() const;

  std::string const& m_fileName;
  std::string_view m_text;
  std::string m_decoded;
  TextStream m_stream;
  JsonShape const& m_root;
  std::vector<Frame> m_frames;
  std::size_t m_forgotten = 0;  ///< characters at the beginning of the text
  Place m_placeOfRest;          ///< of the first character that is not forgotten
};

void JsonReader::Handler::read() {
  if (m_text.starts_with("\xEF\xBB\xBF")) {
    failAt(1, 1, tr("a JSON value"), tr("a byte order mark"));
  }
  rapidjson::Reader reader;
  // "In situ" is what hands strings to the stream and does not copy numbers.
  constexpr unsigned flags = rapidjson::kParseInsituFlag | rapidjson::kParseNumbersAsStringsFlag |
                             rapidjson::kParseValidateEncodingFlag;
  auto const result = reader.Parse<flags>(m_stream, *this);
  if (result.IsError()) failAsParser(result.Code(), result.Offset());
  // The parser takes a zero byte for the end of the text.
  if (m_stream.Tell() < m_text.size()) failAtOffset(m_stream.Tell(), endOfDocument());
}

void JsonReader::Handler::fail(std::string_view expected, std::string_view found,
                               std::string_view within) const {
  auto place = pointer().append(within);
  if (place.empty()) place = tr("document");
  auto const printable = toPrintable(place);
  throw Error(tr("{}: {}: expected {}, found {}", toPrintable(m_fileName), printable, expected, found),
              m_fileName, printable);
}

void JsonReader::Handler::refuse(JsonShape const& shape, std::string_view found) const {
  fail(shape.expected(), found, {});
}

void JsonReader::Handler::refuseArray(JsonShape const& shape) const { refuse(shape, tr("an array")); }

void JsonReader::Handler::failAsRepeated(std::string_view member) const {
  fail(tr("each member once"), tr("a second {}", quote(member)), {});
}

void JsonReader::Handler::failAsParser(rapidjson::ParseErrorCode code, std::size_t offset) const {
  if (code == rapidjson::kParseErrorNumberTooBig) refuseNumber(offset);
  if (code == rapidjson::kParseErrorStringEscapeInvalid && m_text[offset] != '\\') {
    failAtOffset(offset, tr("an escape sequence in place of a control character"));
  }
  // The parser stops inside a word, where it ceases to be one of its own.
  if (code == rapidjson::kParseErrorValueInvalid) {
    while (offset > 0 && s_wordCharacters.find(m_text[offset - 1]) != s_wordCharacters.npos) --offset;
  }
  failAtOffset(offset, expectationOf(code));
}

void JsonReader::Handler::failAtOffset(std::size_t offset, std::string_view expected) const {
  auto const place = placeBehind(m_text.substr(m_forgotten, offset - m_forgotten));
  failAt(place.line, place.column, expected, describe(m_text.substr(offset)));
}

JsonReader::Handler::Place JsonReader::Handler::placeBehind(std::string_view text) const {
  auto place = m_placeOfRest;
  if (auto const lastLine = text.rfind('\n') + 1; lastLine > 0) {
    place.line += static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    place.column = 1;
    text.remove_prefix(lastLine);
  }
  place.column += static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
  return place;
}

void JsonReader::Handler::forgetBefore(char const* at) {
  auto const offset = static_cast<std::size_t>(at - m_text.data());
  m_placeOfRest = placeBehind(m_text.substr(m_forgotten, offset - m_forgotten));
  m_forgotten = offset;
}

void JsonReader::Handler::failAt(std::size_t line, std::size_t column, std::string_view expected,
                                 std::string_view found) const {
  throw Error(tr("{}: line {}, column {}: expected {}, found {}", toPrintable(m_fileName), line, column,
                 expected, found),
              m_fileName, tr("line {}, column {}", line, column));
}

void JsonReader::Handler::refuseNumber(std::size_t offset) const {
  auto const rest = m_text.substr(offset);
  auto const digits = rest.substr(0, rest.find_first_not_of("+-.0123456789eE"));
  auto const& shape = shapeOfValue();
  if (!shape.onNumber) refuse(shape, brief(digits));
  if (std::isinf(nearestDouble(std::string(digits))))
    fail(tr("a number within the range of doubles"), brief(digits), {});
  fail(tr("at most 308 digits before the decimal point and no exponent above 308"), brief(digits), {});
}

bool JsonReader::Handler::Null() {
  auto const& shape = shapeOfValue();
  if (shape.mayBeNotFinite) {
    shape.onNumber(std::numeric_limits<double>::quiet_NaN());
  } else if (shape.onNull) {
    shape.onNull();
  } else {
    refuse(shape, "null");
  }
  return valueIsRead();
}

bool JsonReader::Handler::Bool(bool value) {
  auto const& shape = shapeOfValue();
  if (!shape.onBoolean) refuse(shape, value ? "true" : "false");
  shape.onBoolean(value);
  return valueIsRead();
}

bool JsonReader::Handler::RawNumber(char const* /*text*/, rapidjson::SizeType length, bool /*copy*/) {
  auto const& shape = shapeOfValue();
  auto const digits = m_text.substr(m_stream.Tell(), length);
  if (shape.onNumber) {
    number(shape, digits);
  } else if (shape.onInteger) {
    integer(shape, digits);
  } else {
    refuse(shape, brief(digits));
  }
  return valueIsRead();
}

bool JsonReader::Handler::String(char const* /*text*/, rapidjson::SizeType /*length*/, bool /*copy*/) {
  auto const& shape = shapeOfValue();
  auto const value = decodedString();
  if (shape.onString) {
    shape.onString(value);
  } else if (shape.mayBeNotFinite && (value == "Infinity" || value == "-Infinity")) {
    auto const infinity = std::numeric_limits<double>::infinity();
    shape.onNumber(value.front() == '-' ? -infinity : infinity);
  } else {
    refuse(shape, quote(value));
  }
  return valueIsRead();
}

bool JsonReader::Handler::StartObject() {
  auto const& shape = shapeOfValue();
  if (!shape.object) refuse(shape, tr("an object"));
  if (shape.object->onBegin) shape.object->onBegin();
  m_frames.push_back({&shape, 0, 0, nullptr, {}});
  m_frames.back().isReadAtOnce = takeAtOnce(shape.object->readAtOnce);
  return true;
}

bool JsonReader::Handler::Key(char const* /*text*/, rapidjson::SizeType /*length*/, bool /*copy*/) {
  auto& frame = m_frames.back();
  auto const& object = *frame.shape->object;
  auto const name = decodedString();
  if (object.onName) {
    frame.name = name;
    if (!object.onName(name)) failAsRepeated(name);
    return true;
  }
  auto const found = std::find_if(object.members.begin(), object.members.end(),
                                  [&](auto const& m) { return m.name == name; });
  frame.member = nullptr;
  frame.name = name;
  if (found == object.members.end())
    fail(tr("one of the members {}", listOfNames(object.members)), quote(name), {});
  auto const bit = std::uint64_t{1} << (found - object.members.begin());
  if ((frame.membersSeen & bit) != 0) failAsRepeated(name);
  frame.membersSeen |= bit;
  frame.member = &*found;
  return true;
}

bool JsonReader::Handler::EndObject(rapidjson::SizeType /*memberCount*/) {
  auto const& object = *m_frames.back().shape->object;
  auto const membersSeen = m_frames.back().membersSeen;
  auto const members = m_frames.back().isReadAtOnce ? 0 : object.members.size();
  m_frames.pop_back();
  for (std::size_t i = 0; i < members; ++i) {
    auto const& member = object.members[i];
    if (member.presence == JsonMember::Presence::required && (membersSeen >> i & 1U) == 0) {
      fail(tr("a member {}", quote(member.name)), tr("none"), {});
    }
  }
  if (object.onEnd) object.onEnd();
  return valueIsRead();
}

bool JsonReader::Handler::StartArray() {
  auto const& shape = shapeOfValue();
  if (!shape.array) refuseArray(shape);
  if (shape.array->onBegin) shape.array->onBegin();
  m_frames.push_back({&shape, 0, 0, nullptr, {}});
  static_cast<void>(takeAtOnce(shape.array->readAtOnce));
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

bool JsonReader::Handler::takeAtOnce(JsonReadAtOnce const& readAtOnce) {
  auto const* const closing = readAtOnce ? readAtOnce(m_stream.at(), m_stream.end()) : nullptr;
  if (closing != nullptr) m_stream.moveTo(closing);
  return closing != nullptr;
}

bool JsonReader::Handler::valueIsRead() {
  if (!m_frames.empty()) ++m_frames.back().element;
  return true;
}

void JsonReader::Handler::number(JsonShape const& shape, std::string_view text) {
  double value = 0.0;
  auto const result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc()) {
    // Too small a number is the nearest double, too large a one is none.
    value = nearestDouble(std::string(text));
    if (std::isinf(value)) refuseNumber(m_stream.Tell());
  }
  shape.onNumber(value);
}

void JsonReader::Handler::integer(JsonShape const& shape, std::string_view text) {
  std::uint64_t value = 0;
  auto const* const end = text.data() + text.size();
  auto const result = std::from_chars(text.data(), end, value);
  if (result.ec != std::errc() || result.ptr != end || value > shape.largestInteger)
    refuse(shape, brief(text));
  shape.onInteger(value);
}

std::string_view JsonReader::Handler::decodedString() const {
  auto const value = std::string_view(m_decoded).substr(0, m_decoded.size() - 1);  // closed by a zero byte
  // The parser refuses surrogates in the text and a lone high one in an escape sequence, but not a lone low
  // one.
  for (auto at = value.find('\xED'); at != value.npos; at = value.find('\xED', at + 1)) {
    if (static_cast<unsigned char>(value[at + 1]) >= 0xA0)
      failAtOffset(findLoneLowSurrogate(m_text, m_stream.Tell()), surrogatePair());
  }
  return value;
}

std::string JsonReader::Handler::pointer() const {
  std::string place;
  for (auto const& frame : m_frames) {
    appendPointerToken(place, frame.shape->array ? std::to_string(frame.element) : brief(frame.name));
  }
  return place;
}

std::string jsonPointerStep(std::string_view member) {
  std::string step;
  appendPointerToken(step, member);
  return step;
}

JsonReader::JsonReader(std::string_view fileName) : m_fileName(fileName) {}

JsonReader::~JsonReader() = default;

void JsonReader::read(std::string_view text, JsonShape const& shape) {
  m_handler = std::make_unique<Handler>(m_fileName, text, shape);
  m_handler->read();
  m_handler.reset();
}

char const* JsonReader::at() const { return m_handler->at(); }

void JsonReader::forgetBefore(char const* at) { m_handler->forgetBefore(at); }

void JsonReader::fail(std::string_view expected, std::string_view found, std::string_view within) const {
  m_handler->fail(expected, found, within);
}

}  // namespace Kestrel::ResultTables

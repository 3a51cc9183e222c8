#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Kestrel::ResultTables {

struct JsonArray;
struct JsonObject;

/// What may stand at one place of a document, and what is called when it does. Anything else is an error.
struct JsonShape {
  std::function<std::string()> expected;  ///< what to call it in a message: "a string"
  std::function<void(std::string_view)> onString;
  std::function<void(double)> onNumber;
  bool mayBeNotFinite = false;  ///< `onNumber` also takes null (not a number), "Infinity" and "-Infinity"
  std::function<void(std::uint64_t)> onInteger;
  std::uint64_t largestInteger = 0;
  std::function<void(bool)> onBoolean;
  std::function<void()> onNull;
  std::shared_ptr<JsonObject const> object;
  std::shared_ptr<JsonArray const> array;
};

/// Reads an object or an array at once, from behind its opening bracket at `at` on, instead of its members or
/// elements: returns where the closing bracket stands; null, nothing having happened, where it leaves the
/// value to the reader. What it takes it reads as the shape would. The text ends at `end`.
using JsonReadAtOnce = std::function<char const*(char const* at, char const* end)>;

/// One member that an object may have.
struct JsonMember {
  std::string name;
  enum class Presence { required, optional } presence;
  JsonShape shape;
};

/// An object with a fixed set of at most 64 members, in any order.
struct JsonObject {
  std::vector<JsonMember> members;
  std::function<void()> onBegin;
  std::function<void()> onEnd;
  /// An object with names of the document's own: called with each name, before its value; false when the name
  /// was there before. All values have the shape `anyMember`, and there are no `members`.
  std::function<bool(std::string_view)> onName;
  JsonShape anyMember;
  JsonReadAtOnce readAtOnce;  ///< called after `onBegin`; `onEnd` follows as ever
};

struct JsonArray {
  JsonShape element;
  std::function<void()> onBegin;
  std::function<void()> onEnd;
  JsonReadAtOnce readAtOnce;  ///< called after `onBegin`; `onEnd` follows as ever
};

JsonShape jsonString(std::function<void(std::string_view)> onString);
/// A finite number.
JsonShape jsonNumber(std::function<void(double)> onNumber);
/// A number, null (not a number), "Infinity" or "-Infinity".
JsonShape jsonSeriesNumber(std::function<void(double)> onNumber);
/// A number without sign, fraction and exponent, not greater than `largest`.
JsonShape jsonInteger(std::uint64_t largest, std::function<void(std::uint64_t)> onInteger);
JsonShape jsonBoolean(std::function<void(bool)> onBoolean);
JsonShape jsonObject(std::vector<JsonMember> members, std::function<void()> onBegin = {},
                     std::function<void()> onEnd = {});
/// An object with any member names.
JsonShape jsonMap(std::function<bool(std::string_view)> onName, JsonShape anyMember,
                  std::function<void()> onBegin = {});
JsonShape jsonArray(JsonShape element, std::function<void()> onBegin = {}, std::function<void()> onEnd = {});
/// `shape`, an object or an array, which is read at once where that can be.
JsonShape jsonAtOnce(JsonShape shape, JsonReadAtOnce readAtOnce);
/// `shape` or null.
JsonShape jsonOrNull(JsonShape shape, std::function<void()> onNull);

/// A step of a JSON pointer: "/a~1b" for the member "a/b".
[[nodiscard]] std::string jsonPointerStep(std::string_view member);

/// Reads documents strictly: what the shape does not provide for is an `Error` that names the file, the place
/// and what was expected and found, on one line. The place is a JSON pointer ("document" for the whole), or
/// line and column where the text is no JSON; columns count characters. The text is UTF-8 without a byte
/// order mark; a lone surrogate escape, a repeated member and a number beyond the range of doubles are
/// errors, and so is a number with more than 308 digits before the decimal point or an exponent above 308,
/// even if its value is in that range.
class JsonReader {
 public:
  /// `fileName` is what messages call the document.
  explicit JsonReader(std::string_view fileName);
  JsonReader(JsonReader const&) = delete;
  JsonReader& operator=(JsonReader const&) = delete;
  ~JsonReader();

  /// Reads `text` from front to back. Strings given to the shape's functions are valid during the call only.
  /// Needs no memory that grows with the text.
  void read(std::string_view text, JsonShape const& shape);

  /// For the shape's functions: refuses the value that is being read, or, in an object's `onEnd`, the object.
  /// `within` extends the place ("/guid").
  [[noreturn]] void fail(std::string_view expected, std::string_view found,
                         std::string_view within = {}) const;

  /// For the shape's functions: where in the text the reader stands, behind what it has read.
  [[nodiscard]] char const* at() const;

  /// For the shape's functions: the text before `at` is not needed any more and may change. It is looked
  /// through for the ends of lines, which messages count.
  void forgetBefore(char const* at);

 private:
  class Handler;

  std::string m_fileName;
  std::unique_ptr<Handler> m_handler;
};

}  // namespace Kestrel::ResultTables

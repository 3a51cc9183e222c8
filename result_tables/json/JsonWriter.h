#pragma once

#include <rapidjson/prettywriter.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Kestrel::ResultTables {

/// Writes one JSON document of UTF-8 text, indented, arrays of numbers on one line. The calls must nest as
/// JSON does.
class JsonWriter {
 public:
  JsonWriter();

  void beginObject();
  void endObject();
  void beginArray();
  void endArray();

  /// An array whose elements stay on the line; only plain values and further such arrays may stand in it.
  /// Closed by `endInlineArray`.
  void beginInlineArray();
  void endInlineArray();

  void key(std::string_view name);
  /// Bytes that are no UTF-8 become U+FFFD.
  void string(std::string_view text);
  /// The shortest form that reads back to the same double; "Infinity" and "-Infinity" as strings, NaN as
  /// null.
  void number(double value);
  void integer(std::uint64_t value);
  void boolean(bool value);
  void null();

  // The members of an object.
  void beginObject(std::string_view key);
  void beginArray(std::string_view key);
  void beginInlineArray(std::string_view key);
  void text(std::string_view key, std::string_view value);
  void number(std::string_view key, double value);
  void integer(std::string_view key, std::uint64_t value);
  void flag(std::string_view key, bool value);
  void null(std::string_view key);

  /// The document, closed by a line feed. The writer is empty afterwards.
  [[nodiscard]] std::string take();

  /// What has been written since the last time of a document that goes on.
  [[nodiscard]] std::string takeWritten();

 private:
  void raw(std::string_view json, rapidjson::Type type);

  /// Where the library's writer puts its characters, in that one's spelling.
  struct Output {
    using Ch = char;
    void Put(char c) { text += c; }
    void Flush() {}
    std::string text;
  };

  Output m_output;
  rapidjson::PrettyWriter<Output> m_writer;
  std::string m_value;             ///< that is being written
  std::size_t m_inlineArrays = 0;  ///< that are open
};

}  // namespace Kestrel::ResultTables
